// YToolTipCtrl.h: the library's tooltip control.
#pragma once

#include <afxcmn.h>

// A class of its own, so that all tooltips of the library's dialogs can be told apart from a host's.
class YToolTipCtrl : public CToolTipCtrl
{};
