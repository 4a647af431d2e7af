/* Dialogs.h: the ids of the dialog templates. Also read by the resource compiler. */
#ifndef DIALOGS_H
#define DIALOGS_H

#define IDD_OUTER 100
#define IDD_PAGE 101
#define IDD_BROKEN 102
#define IDD_VALUES 103
#define IDD_LISTS 104
#define IDD_SIZING 105

#define IDC_NAME 1001
#define IDC_PRESS 1002
#define IDC_FRAME 1003
#define IDC_FIRST 1011
#define IDC_SECOND 1012
#define IDC_NUMBER 1021
#define IDC_COUNT 1022
#define IDC_CHECK 1023
#define IDC_RADIO 1024
#define IDC_COMBO 1027
#define IDC_LIST 1028
#define IDC_TREE 1029

#endif
