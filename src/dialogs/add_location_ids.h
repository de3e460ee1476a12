#pragma once
// Template 104, the add-location dialog. OK is 1 and Cancel 2.

#define IDD_ADD_LOCATION 104
#define IDC_ADD_LOCATION_LABEL 1090
#define IDC_ADD_LOCATION_PATH 1052
#define IDC_ADD_LOCATION_FILE 1010
#define IDC_ADD_LOCATION_FOLDER 1011
