#pragma once
// The two site-list templates. 103 serves the storage and peer-assisted networking settings by
// site (one choice); 105 the camera and microphone (one choice for HTTPS pages, one for other
// connections). Their common controls have the same ids, so one dialog class runs both.

#define IDD_SITE_LIST 103
#define IDD_SITE_LIST_HTTPS 105

#define IDC_SITE_LIST_DESCRIPTION 1147
#define IDC_SITE_LIST_VIEW 1059
#define IDC_SITE_LIST_CHOICE_LABEL 1097
#define IDC_SITE_LIST_CHOICE 1096
#define IDC_SITE_LIST_ADD 1093
#define IDC_SITE_LIST_REMOVE 1094
#define IDC_SITE_LIST_CLOSE 1092

// Only in 105. The choice for other connections is the one choice of 103.
#define IDC_SITE_LIST_HTTPS_SECURE_LABEL 1171
#define IDC_SITE_LIST_HTTPS_SECURE_CHOICE 1170
#define IDC_SITE_LIST_HTTPS_OTHER_LABEL 1172
#define IDC_SITE_LIST_HTTPS_OTHER_CHOICE IDC_SITE_LIST_CHOICE
