// YPolicy.h: what the administrator decides for the user.
#pragma once

#include "CommonUiApi.h"
#include "YUnicodeString.h"

#include <windows.h>

// The first of these places that holds the value as a DWORD decides; a value of another type or
// size is none:
// 1. HKEY_LOCAL_MACHINE, 2. HKEY_CURRENT_USER: Software\Policies\Orlith
// 3. HKEY_LOCAL_MACHINE: SOFTWARE\Orlith\Global
// 4. HKEY_LOCAL_MACHINE: GetProductKeyPath(product)\subKey
// 5. HKEY_LOCAL_MACHINE: SOFTWARE\Orlith Technologies\product 3.0\subKey, for the terminal, whose
//    settings of before it moved still count
// Any thread. No failure is told: what cannot be read is absent.

// Places 1 to 3. False: none of them has the value, which is then not touched.
COMMONUI_API bool ReadPolicyDWORD(const wchar_t* name, DWORD& value);

// All places; 4 and 5 only with a product and a sub-key (null or empty: none).
COMMONUI_API DWORD GetPolicyDWORD(const wchar_t* name, const wchar_t* product,
                                  const wchar_t* subKey, DWORD defaultValue);
COMMONUI_API bool GetPolicyBool(const wchar_t* name, const wchar_t* product, const wchar_t* subKey,
                                bool defaultValue);

// Where a product keeps its settings, below HKEY_LOCAL_MACHINE or HKEY_CURRENT_USER: the current
// place, unless only the old one exists in one of them.
COMMONUI_API YUnicodeString GetProductKeyPath(const wchar_t* product);

// False: the administrator demands validated cryptography ("Enable FIPS Mode") and does not exempt
// TLS ("Ignore FIPS Mode for TLS"). The TLS library must not even be loaded then.
COMMONUI_API bool YIsTlsLibraryAllowed();
