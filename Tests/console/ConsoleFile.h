// ConsoleFile.h: a file of the test's own, written as other programs write logs.
#pragma once

#include <windows.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

// Deleted with the object, and so is whatever else has got its name.
class ConsoleFile
{
public:
    ConsoleFile()
    {
        static unsigned count = 0;
        path = std::filesystem::temp_directory_path() /
               (L"console-" + std::to_wstring(::GetCurrentProcessId()) + L"-" +
                std::to_wstring(++count) + L".log");
    }
    explicit ConsoleFile(std::string_view text) : ConsoleFile() { Write(text); }
    ~ConsoleFile()
    {
        Delete();
        std::filesystem::remove(GetRotatedPath());
    }
    ConsoleFile(const ConsoleFile&) = delete;
    ConsoleFile& operator=(const ConsoleFile&) = delete;

    std::wstring GetPath() const { return path.wstring(); }
    bool Exists() const { return std::filesystem::exists(path); }
    void Write(std::string_view text) { Put(text, std::ios::trunc); }  // in place
    void Append(std::string_view text) { Put(text, std::ios::app); }
    void Delete() { std::filesystem::remove(path); }
    void MoveAway() { std::filesystem::rename(path, GetRotatedPath()); }

private:
    std::filesystem::path GetRotatedPath() const { return path.wstring() + L".1"; }
    void Put(std::string_view text, std::ios::openmode mode)
    {
        std::ofstream(path, std::ios::binary | mode) << text;
    }

    std::filesystem::path path;
};
