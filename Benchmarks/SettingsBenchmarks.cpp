// Registry, messages and settings, against the bare calls that they make.
#include "Report.h"
#include "Subjects.h"

#include <CommonUiInit.h>
#include <FolderProfile.h>
#include <YMessages.h>
#include <YProfileStore.h>
#include <YRegistryKey.h>
#include <YReportMessageParams.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr wchar_t testKey[] = L"Software\\CommonUiBenchmarks";
constexpr unsigned fewSettings = 10'000;
constexpr unsigned manySettings = 40'000;

// A DWORD in the registry

void ReadThroughRegistryKey(benchmark::State& state)
{
    YRegistryKey key(HKEY_CURRENT_USER, testKey, KEY_ALL_ACCESS, REG_OPTION_VOLATILE, nullptr,
                     true);
    key.WriteDWORD(L"Value", 5);
    DWORD value = 0;
    for (auto _ : state) {
        if (!key.ReadDWORD(L"Value", value) || value != 5) {
            state.SkipWithError("the value could not be read");
        }
    }
}

// Bare: type and size first, then the value, as reading without trust has to.
void ReadBare(benchmark::State& state)
{
    HKEY key = nullptr;
    const DWORD stored = 5;
    ::RegCreateKeyExW(HKEY_CURRENT_USER, testKey, 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS,
                      nullptr, &key, nullptr);
    ::RegSetValueExW(key, L"Value", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&stored),
                     sizeof(stored));
    for (auto _ : state) {
        DWORD type = 0;
        DWORD size = 0;
        DWORD value = 0;
        ::RegQueryValueExW(key, L"Value", nullptr, &type, nullptr, &size);
        ::RegQueryValueExW(key, L"Value", nullptr, &type, reinterpret_cast<BYTE*>(&value), &size);
        if (value != stored) {
            state.SkipWithError("the value could not be read");
        }
    }
    ::RegCloseKey(key);
}

// A message with two inserts

constexpr wchar_t first[] = L"C:\\Users\\somebody\\AppData\\Roaming";
constexpr wchar_t second[] = L"Settings";

constexpr unsigned messages = 1'000;  // an iteration

void ComposeMessages(benchmark::State& state)
{
    for (auto _ : state) {
        state.PauseTiming();
        std::vector<YReportMessageParams> reported(messages,
                                                   YReportMessageParams(MSG_FOLDER_DENIED));
        for (YReportMessageParams& message : reported) {
            message.AddInsert(first);
            message.AddInsert(second);
        }
        state.ResumeTiming();
        for (const YReportMessageParams& message : reported) {
            benchmark::DoNotOptimize(message.GetText());
        }
        state.PauseTiming();
        reported.clear();
        state.ResumeTiming();
    }
}

// Bare: the raw text, which tells what inserts it wants, then the text with them.
void FormatTwice(const DWORD_PTR* arguments)
{
    for (const DWORD ignore : {DWORD{FORMAT_MESSAGE_IGNORE_INSERTS}, DWORD{0}}) {
        wchar_t* text = nullptr;
        ::FormatMessageW(FORMAT_MESSAGE_FROM_HMODULE | FORMAT_MESSAGE_ALLOCATE_BUFFER |
                             FORMAT_MESSAGE_ARGUMENT_ARRAY | ignore,
                         YGetLibraryModule(), MSG_FOLDER_DENIED,
                         MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT),
                         reinterpret_cast<wchar_t*>(&text), 0,
                         reinterpret_cast<va_list*>(const_cast<DWORD_PTR*>(arguments)));
        ::LocalFree(text);
    }
}

void FormatMessages(benchmark::State& state)
{
    const DWORD_PTR arguments[] = {reinterpret_cast<DWORD_PTR>(first),
                                   reinterpret_cast<DWORD_PTR>(second)};
    for (auto _ : state) {
        for (unsigned i = 0; i < messages; ++i) {
            FormatTwice(arguments);
        }
    }
}

// Settings in a folder

fs::path GetFolder()
{
    return fs::temp_directory_path() /
           (L"commonui-benchmark-" + std::to_wstring(::GetCurrentProcessId()));
}

FolderProfileFactory* factory;

YProfileStoreFactory* GetFactory()
{
    return factory;
}

// A folder of settings for the life of a benchmark.
class Settings
{
public:
    Settings() : profiles(GetFolder().wstring(), {})
    {
        fs::create_directories(GetFolder());
        factory = &profiles;
        CommonUiInit(nullptr, &GetFactory, nullptr);
    }
    ~Settings() { fs::remove_all(GetFolder()); }
    Settings(const Settings&) = delete;
    Settings& operator=(const Settings&) = delete;

private:
    FolderProfileFactory profiles;
};

std::wstring NameOf(unsigned i)
{
    return L"Setting " + std::to_wstring(i);
}

void WriteSettings(const YProfileKey& key, unsigned count, DWORD round)
{
    for (unsigned i = 0; i < count; ++i) {
        if (i % 2 == 0) {
            key.WriteDWORD(NameOf(i).c_str(), i + round);
        } else {
            key.WriteString(NameOf(i).c_str(), YUnicodeString(L"Value " + NameOf(i + round)));
        }
    }
}

// All of them change between two saves; writing them is not counted.
void SaveFolder(benchmark::State& state)
{
    const Settings settings;
    const YProfileStore store;
    const YProfileKey key(store.GetRoot(), L"Benchmark");
    DWORD round = 0;
    for (auto _ : state) {
        state.PauseTiming();
        WriteSettings(key, fewSettings, ++round);
        state.ResumeTiming();
        if (!key.Flush()) {
            state.SkipWithError("the settings could not be saved");
        }
    }
}

bool WriteFlushReplace(const fs::path& path, const std::string& bytes)
{
    const fs::path temporary = path.wstring() + L".tmp";
    const HANDLE file = ::CreateFileW(temporary.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                      FILE_ATTRIBUTE_NORMAL, nullptr);
    DWORD written = 0;
    const bool complete =
        ::WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
        ::FlushFileBuffers(file);
    ::CloseHandle(file);
    return complete &&
           ::ReplaceFileW(path.c_str(), temporary.c_str(), nullptr, 0, nullptr, nullptr);
}

// Bare: the same bytes, without a thought for other programs.
void SaveBytes(benchmark::State& state)
{
    const Settings settings;
    {
        const YProfileStore store;
        const YProfileKey key(store.GetRoot(), L"Benchmark");
        WriteSettings(key, fewSettings, 1);
        key.Flush();
    }
    const fs::path path = GetFolder() / L"Benchmark.ini";
    std::ifstream file(path, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(file)), {});
    file.close();
    for (auto _ : state) {
        if (bytes.empty() || !WriteFlushReplace(path, bytes)) {
            state.SkipWithError("the bytes could not be saved");
        }
    }
}

void WriteAndSave(benchmark::State& state)
{
    const auto count = static_cast<unsigned>(state.range(0));
    const Settings settings;
    DWORD round = 0;
    for (auto _ : state) {
        const YProfileStore store;
        const YProfileKey key(store.GetRoot(), NameOf(++round).c_str());
        WriteSettings(key, count, round);
        if (!key.Flush()) {
            state.SkipWithError("the settings could not be saved");
        }
    }
}

}  // namespace

void AddSettingsSubjects(Report& report)
{
    benchmark::RegisterBenchmark("ReadThroughRegistryKey", ReadThroughRegistryKey);
    benchmark::RegisterBenchmark("ReadBare", ReadBare);
    report.CompareCost("read a DWORD through YRegistryKey, to the bare calls",
                       "ReadThroughRegistryKey", "ReadBare", 1.3);

    benchmark::RegisterBenchmark("ComposeMessages", ComposeMessages);
    benchmark::RegisterBenchmark("FormatMessages", FormatMessages);
    report.CompareCost("compose a message with two inserts, to the bare formatter",
                       "ComposeMessages", "FormatMessages", 1.5);

    benchmark::RegisterBenchmark("SaveFolder", SaveFolder)
        ->Unit(benchmark::kMillisecond)
        ->Iterations(5);
    benchmark::RegisterBenchmark("SaveBytes", SaveBytes)
        ->Unit(benchmark::kMillisecond)
        ->Iterations(5);
    report.CompareCost("save 10,000 settings, to a bare write, flush and replace", "SaveFolder",
                       "SaveBytes", 2);
    benchmark::RegisterBenchmark("WriteAndSaveFew", WriteAndSave)
        ->Arg(fewSettings)
        ->Unit(benchmark::kMillisecond)
        ->Iterations(1);
    benchmark::RegisterBenchmark("WriteAndSaveMany", WriteAndSave)
        ->Arg(manySettings)
        ->Unit(benchmark::kMillisecond)
        ->Iterations(1);
    report.CompareCost("write and save 40,000 settings, to four times 10,000", "WriteAndSaveMany",
                       "WriteAndSaveFew", 1.3, 4);
}
