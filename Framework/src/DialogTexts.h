// DialogTexts.h: the texts that a user reads whose entry is refused. Also read by the resource
// compiler, so it holds preprocessor constants and nothing else.
#ifndef DIALOGTEXTS_H
#define DIALOGTEXTS_H

#define TEXT_ENTER_INTEGER 1
#define TEXT_ENTER_POSITIVE_INTEGER 2
#define TEXT_ENTER_BETWEEN 3
#define TEXT_ENTER_NO_MORE_THAN 4

#endif
