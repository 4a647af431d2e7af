/* resource.h: the ids of the program; also read by the resource compiler. */
#ifndef CONSOLE_RESOURCE_H
#define CONSOLE_RESOURCE_H

#define IDR_MAINFRAME 128
#define IDR_CONTEXT 129
#define IDC_LINKED_BAR 130

#define ID_FILE_FOLLOW 32771
#define ID_FILE_RELOAD 32772
#define ID_FILE_CANCEL 32773
#define ID_VIEW_SPLIT 32774
#define ID_VIEW_OUTLINE 32775
#define ID_VIEW_FONT 32776
#define ID_VIEW_START 32777
#define ID_VIEW_END 32778

/* Consecutive; a factor of ten each. */
#define ID_BUFFER_1000 32780
#define ID_BUFFER_10000 32781
#define ID_BUFFER_100000 32782
#define ID_BUFFER_1000000 32783

/* Panes of the status bar: the strings give their widths. */
#define ID_INDICATOR_PROGRESS 32790
#define ID_INDICATOR_LINES 32791
#define ID_INDICATOR_POSITION 32792
#define ID_INDICATOR_SELECTION 32793

#endif
