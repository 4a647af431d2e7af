// YCertificateFile.h: a file that is never seen half-written.
#pragma once

#include "YUniqueHandle.h"

#include <windows.h>

#include <cstddef>
#include <string>

// Written under another name in the same folder, which nobody can guess and which is new, and put in
// the place of the old file when it is whole. Gone with the object unless committed.
class YCertificateFile
{
public:
    enum class Readers { Owner, Folder };  // of a new file: its owner alone, or those of the folder

    YCertificateFile(const wchar_t* path, Readers readers);
    YCertificateFile(const YCertificateFile&) = delete;
    YCertificateFile& operator=(const YCertificateFile&) = delete;
    ~YCertificateFile();

    // False, here and below: GetLastError() tells why.
    bool Create();
    // While it exists it can be opened and written by name; nobody can rename or delete it.
    const std::wstring& GetTemporaryPath() const { return temporaryPath; }
    bool Write(const void* bytes, std::size_t count);  // at its end
    // Closed by all who wrote. Flushes to the disk first: else the name might reach it before the
    // contents do.
    bool Commit();

private:
    std::wstring path;  // full
    std::wstring temporaryPath;
    Readers readers;
    YUniqueFile file;
    bool exists = false;
};
