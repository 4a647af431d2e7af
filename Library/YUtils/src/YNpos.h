// YNpos.h: the value that stands for no line, all lines or the end.
#pragma once

// The largest 32-bit count: none, all or to the end wherever a line, column or index is expected.
inline constexpr unsigned npos = 0xFFFFFFFF;
