// DialogIds.h: the dialog of DialogTests.rc.
#pragma once

#define IDD_COMPLETION 100
#define IDC_PLAIN 101  // an edit without completion
#define IDC_COMPLETED 102  // with completion
#define IDC_ALL_KEYS 103  // the same, of the class below
#define IDC_OTHER 104

// An edit that wants all keys, also those that a dialog takes.
#define ALL_KEYS_EDIT "AllKeysEdit"
