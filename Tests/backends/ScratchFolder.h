// ScratchFolder.h: a folder of the test's own for settings files.
#pragma once

#include <windows.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <string_view>

// Deleted with all that is in it.
class ScratchFolder
{
public:
    ScratchFolder()
    {
        static unsigned count = 0;
        path = std::filesystem::temp_directory_path() /
               (L"backends-" + std::to_wstring(::GetCurrentProcessId()) + L"-" +
                std::to_wstring(++count));
        std::filesystem::remove_all(path);
        std::filesystem::create_directory(path);
    }
    ~ScratchFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    std::wstring GetPath() const { return path.wstring(); }
    std::wstring GetPath(const wchar_t* file) const { return (path / file).wstring(); }
    bool Has(const wchar_t* file) const { return std::filesystem::exists(path / file); }
    // Without the lock file, which stays once there has been a save.
    std::set<std::wstring> GetFiles() const
    {
        std::set<std::wstring> files;
        for (const auto& entry : std::filesystem::directory_iterator(path)) {
            files.insert(entry.path().filename().wstring());
        }
        files.erase(L".lock");
        return files;
    }
    void Write(const wchar_t* file, std::string_view bytes) const
    {
        std::ofstream(path / file, std::ios::binary | std::ios::trunc) << bytes;
    }
    std::string Read(const wchar_t* file) const
    {
        std::ifstream stream(path / file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

private:
    std::filesystem::path path;
};
