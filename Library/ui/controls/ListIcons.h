// ListIcons.h: the ids of the arrows on the buttons beside a list. Also read by the resource compiler,
// so it holds preprocessor constants and nothing else.
#ifndef LIST_ICONS_H
#define LIST_ICONS_H

#define IDI_MOVE_DOWN 3027
#define IDI_MOVE_UP 3028
#define IDI_MOVE_DOWN_LARGE 3033
#define IDI_MOVE_UP_LARGE 3034

#endif
