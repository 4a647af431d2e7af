// afxwin.h: the framework's windows, threads and application.
#pragma once

#include "afx.h"
#include "afxcmd_.h"
#include "afxdd_.h"
#include "afxdlg_.h"
#include "afxfrm_.h"
#include "afxgdi_.h"
#include "afxlist_.h"
#include "afxmnu_.h"
#include "afxmsg_.h"
#include "afxres.h"
#include "afxthr_.h"
#include "afxwnd_.h"
