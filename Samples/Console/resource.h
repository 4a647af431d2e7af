/* resource.h: the ids of the program; also read by the resource compiler. */
#ifndef SAMPLES_CONSOLE_RESOURCE_H
#define SAMPLES_CONSOLE_RESOURCE_H

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
#define ID_BUFFER_LOCKED 32784

/* Panes of the status bar: the strings give their widths. */
#define ID_INDICATOR_PROGRESS 32790
#define ID_INDICATOR_LINES 32791
#define ID_INDICATOR_POSITION 32792
#define ID_INDICATOR_SELECTION 32793

/* What the program says; the messages are in ConsoleMessages.mc. */
#define IDS_THOUSANDS 200
#define IDS_STATE_OPENING 201
#define IDS_STATE_STOPPED 202
#define IDS_STATE_LOADING 203
#define IDS_STATE_FOLLOWING 204
#define IDS_STATE_ENDED 205
#define IDS_ONE_LINE 206
#define IDS_LINES 207
#define IDS_AT_LINE 208
#define IDS_ONE_CHARACTER_SELECTED 209
#define IDS_CHARACTERS_SELECTED 210
#define IDS_LINES_SELECTED 211
#define IDS_NOTICE_ENDED 212
#define IDS_NOTICE_CANCELLED 213
#define IDS_NOTICE_TRUNCATED 214
#define IDS_NOTICE_REPLACED 215
#define IDS_FILE_FILTER 216
#define IDS_BUFFER_LOCKED 217

#endif
