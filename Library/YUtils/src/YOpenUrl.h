// YOpenUrl.h: opens addresses in the user's programs.
#pragma once

#include "CommonUiApi.h"
#include "YUnicodeString.h"

// Opens an address in the program that the user has chosen in the system, whatever the host's own
// settings say. The shell would start whatever an address names, programs and files of others too, so
// only http, https, ftp and mailto are let through, and no quotation mark, space or control
// character: these can become arguments of the program. False: refused, or nothing could be started.
// User-interface thread; messages may be handled meanwhile.
COMMONUI_API bool OpenURLWithoutConfig(const YUnicodeString& url);
