// CheckListIds.h: dialogs for the check list and the link.
#pragma once

#define IDD_CHECK_LIST 200
#define IDD_LARGE_CHECK_LIST 201  // as at 144 DPI
#define IDD_LINKS 202

#define IDC_BEFORE 1000
#define IDC_PLACE 1001
#define IDC_SIGN 1002
#define IDC_ENCRYPT 1003
#define IDC_AFTER 1004
#define IDC_LINK 1005
#define IDC_CENTERED_LINK 1006

#define IDS_ADDRESS 300
#define IDC_CURSOR 301
