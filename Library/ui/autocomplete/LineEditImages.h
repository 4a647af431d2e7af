// LineEditImages.h: the ids of the bitmaps in the line edit's button. Also read by the resource
// compiler, so it holds preprocessor constants and nothing else.
#ifndef LINE_EDIT_IMAGES_H
#define LINE_EDIT_IMAGES_H

// 16 pixels square, for 96 DPI. A program whose resources have a bitmap of the same id shows that.
#define LINE_EDIT_IMAGE_SEARCH 17136
#define LINE_EDIT_IMAGE_SEARCH_COLOUR 17137
#define LINE_EDIT_IMAGE_CLEAR 17138
#define LINE_EDIT_IMAGE_CLEAR_COLOUR 17139
#define LINE_EDIT_IMAGE_BROWSE 3016

// Added to the id: the same image for 144 and for 192 DPI.
#define LINE_EDIT_IMAGES_AT_144_DPI 1000
#define LINE_EDIT_IMAGES_AT_192_DPI 2000

#endif
