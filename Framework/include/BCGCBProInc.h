// BCGCBProInc.h: the control library: windows, settings, appearance.
#pragma once

#include "BCGPEdit.h"
#include "BCGPGlobals.h"
#include "BCGPHeaderCtrl.h"
#include "BCGPInternalScrollBarWrapperWnd.h"
#include "BCGPListBox.h"
#include "BCGPListCtrl.h"
#include "BCGPRegistry.h"
#include "BCGPToolBar.h"
#include "BCGPToolbarButton.h"
#include "BCGPToolbarEditBoxButton.h"
#include "afxwin.h"
