// A log of 500 MB in the sample host, against a bare read, decode and line split.
#include "Report.h"
#include "Subjects.h"
#include "ViewHost.h"

#include <ConsoleOptions.h>
#include <ConsoleSettings.h>
#include <ConsoleView.h>
#include <MainFrame.h>

#include <cwchar>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

constexpr std::size_t fileBytes = 500'000'000;
constexpr std::size_t chunkBytes = 1u << 20;

// Made once, removed at the end; read once, so that every reader finds it in the file cache.
class LogFile
{
public:
    LogFile() : path(std::filesystem::temp_directory_path() / L"commonui-benchmark.log")
    {
        std::ofstream file(path, std::ios::binary);
        std::string block;
        while (block.size() < chunkBytes) {
            block += "2026-01-31 12:00:00.000 host service[1234]: INFO request " +
                     std::to_string(block.size()) + " was answered in 12 ms\n";
        }
        for (std::size_t written = 0; written < fileBytes; written += block.size()) {
            file << block;
        }
    }
    ~LogFile()
    {
        std::error_code ignored;
        std::filesystem::remove(path, ignored);
    }
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;

    const std::wstring& GetPath() const { return path.native(); }

private:
    std::filesystem::path path;
};

const LogFile& GetLogFile()
{
    static const LogFile file;
    return file;
}

// Handles messages as the program's own loop does, asleep while there are none.
void WaitUntilLoaded(const MainFrame& frame)
{
    while (frame.IsLoading()) {
        ::MsgWaitForMultipleObjects(0, nullptr, FALSE, 100, QS_ALLINPUT);
        Pump();
    }
    Pump();
}

void LoadInSample(benchmark::State& state)
{
    const std::wstring path = GetLogFile().GetPath();
    ConsoleSettings settings;
    auto* frame = new MainFrame(settings);  // deletes itself with its window
    ConsoleOptions options;
    int show = SW_SHOWNORMAL;
    if (!frame->Load(options, show)) {
        state.SkipWithError("the sample's window could not be made");
        return;
    }
    frame->ShowWindow(SW_SHOWNORMAL);
    Pump();
    for (auto _ : state) {
        frame->OpenFile(path);
        WaitUntilLoaded(*frame);
    }
    if (!frame->GetViews().GetFirst().HasLines()) {
        state.SkipWithError("the file was not shown");
    }
    frame->DestroyWindow();
    Pump();
}

// Bare: one thread, nothing kept. Counts what it finds, so that nothing is optimised away.
void ReadDecodeSplit(benchmark::State& state)
{
    const std::wstring path = GetLogFile().GetPath();
    std::vector<char> bytes(chunkBytes);
    std::vector<wchar_t> text(chunkBytes);
    for (auto _ : state) {
        const HANDLE file = ::CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                          OPEN_EXISTING, 0, nullptr);
        std::size_t lines = 0;
        for (DWORD read = 0;
             ::ReadFile(file, bytes.data(), chunkBytes, &read, nullptr) && read > 0;) {
            const int length =
                ::MultiByteToWideChar(CP_UTF8, 0, bytes.data(), static_cast<int>(read), text.data(),
                                      static_cast<int>(text.size()));
            const wchar_t* const end = text.data() + length;
            const wchar_t* at = text.data();
            while (const wchar_t* found =
                       std::wmemchr(at, L'\n', static_cast<std::size_t>(end - at))) {
                ++lines;
                at = found + 1;
            }
        }
        ::CloseHandle(file);
        benchmark::DoNotOptimize(lines);
        if (lines == 0) {
            state.SkipWithError("the file could not be read");
        }
    }
}

}  // namespace

void AddLoadSubject(Report& report)
{
    benchmark::RegisterBenchmark("LoadInSample", LoadInSample)
        ->Unit(benchmark::kMillisecond)
        ->Iterations(1);
    benchmark::RegisterBenchmark("ReadDecodeSplit", ReadDecodeSplit)
        ->Unit(benchmark::kMillisecond)
        ->Iterations(1);
    report.CompareCost("load a log of 500 MB, to a bare read, decode and split", "LoadInSample",
                       "ReadDecodeSplit", 2);
}
