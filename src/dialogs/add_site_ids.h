#pragma once
// Template 1076, the add-site dialog. OK is 1 and Cancel 2, as in every dialog.

#define IDD_ADD_SITE 1076
#define IDC_ADD_SITE_DOMAIN_LABEL 1145
#define IDC_ADD_SITE_DOMAIN 1144
#define IDC_ADD_SITE_PROMPT 1097
#define IDC_ADD_SITE_CHOICE 1096
