// YFolders.h: where the application keeps its files, and folders that the user names.
#pragma once

#include "CommonUiApi.h"
#include "YUnicodeString.h"

#include <windows.h>

#include <shtypes.h>

class CWnd;
class IString;
class YReportMessageParams;

// Four folders of the process. The host sets them when it starts; empty until then. Null: empty.
// Any thread.
COMMONUI_API void SetOrxConfigPathSub(const wchar_t* path);
COMMONUI_API void SetOrxInstallPathSub(const wchar_t* path);
COMMONUI_API void SetOrxSshDataPathSub(const wchar_t* path);  // keys and known hosts
COMMONUI_API void SetOrxUserDataPathSub(const wchar_t* path);
COMMONUI_API void GetOrxConfigPathSub(IString* path);
COMMONUI_API void GetOrxInstallPathSub(IString* path);
COMMONUI_API void GetOrxSshDataPathSub(IString* path);
COMMONUI_API void GetOrxUserDataPathSub(IString* path);

// Whether files can be made in the folder: one is, and is gone again. True: folder is now its full
// path (as given, where that has more than 259 characters). False: error says why, the folder is
// its insert. Where nothing is known against a folder, the user's choice stands.
COMMONUI_API bool IsValidConfigFolder(YUnicodeString& folder, YReportMessageParams& error);

// What the user typed as a local path, in two parts. A path on a drive is a folder as a whole,
// which need not exist yet, and true says that the drive does. Of other paths the file name is
// split off, unless they are a folder; true: the path exists, or its folder does. Both parts are
// written in either case, but not for an empty path.
COMMONUI_API bool YExtractLocalDirectory(const wchar_t* path, YUnicodeString& directory,
                                         YUnicodeString& fileName);

// Lets the user choose a folder, over parent, and puts it into the edit control. The first of these
// that exists is selected to begin with: what the edit control holds, initialFolder, fallbackFolder
// (null: none). False, and the edit control as it was: the user cancelled, and error as well is as
// it was; or the folder cannot hold files, and error is what the dialog shows. User-interface
// thread; messages go on being handled meanwhile.
COMMONUI_API bool OnBrowseLocalFolderHelper(CWnd* parent, CWnd* edit, const wchar_t* title,
                                            YReportMessageParams& error,
                                            const wchar_t* initialFolder,
                                            const wchar_t* fallbackFolder);

// A folder that the system knows by an id, such as FOLDERID_RoamingAppData. False: it has none.
COMMONUI_API bool YGetKnownFolder(REFKNOWNFOLDERID id, YUnicodeString& folder);
