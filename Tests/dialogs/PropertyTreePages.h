/* PropertyTreePages.h: the ids of the tests' pages. Also read by the resource compiler. */
#ifndef PROPERTY_TREE_PAGES_H
#define PROPERTY_TREE_PAGES_H

#define IDD_FIELDS 101
#define IDD_TEXT_ONLY 102
#define IDD_FAULTY 103

#define IDC_NUMBER 1001
#define IDC_LIST 1002
#define IDC_COMBO 1003

#endif
