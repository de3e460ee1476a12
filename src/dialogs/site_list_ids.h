#pragma once
// Template 103: the site list of the storage and peer-assisted networking settings by site.

#define IDD_SITE_LIST 103
#define IDC_SITE_LIST_DESCRIPTION 1147
#define IDC_SITE_LIST_VIEW 1059
#define IDC_SITE_LIST_CHOICE_LABEL 1097
#define IDC_SITE_LIST_CHOICE 1096
#define IDC_SITE_LIST_ADD 1093
#define IDC_SITE_LIST_REMOVE 1094
#define IDC_SITE_LIST_CLOSE 1092
