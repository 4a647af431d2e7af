#include "autocomplete/AddAutoComplete.h"

#include <afxwin.h>

#include <shlwapi.h>

void AddAutoComplete(CWnd* edit, bool foldersOnly)
{
    constexpr DWORD folders = 0x20;  // SHACF_FILESYS_DIRS, which not every header has
    ::SHAutoComplete(edit->m_hWnd, foldersOnly ? folders : SHACF_FILESYSTEM);
}
