// PropertyTreeIds.h: the templates of the property tree and the controls that they hold. Also read by
// the resource compiler, so it holds preprocessor constants and nothing else.
#ifndef PROPERTY_TREE_IDS_H
#define PROPERTY_TREE_IDS_H

// By the layout style, 0 to 3.
#define PROPERTY_TREE_PLAIN 5011
#define PROPERTY_TREE_WITH_APPLY 5017
#define PROPERTY_TREE_LARGE 5018
#define PROPERTY_TREE_COMPACT 5020

#define PROPERTY_TREE_TREE 5012
#define PROPERTY_TREE_PAGE 5013
#define PROPERTY_TREE_HEADER 5014

// The framework's own number, for frameworks without property sheets.
#define PROPERTY_TREE_APPLY 0x3021

#endif
