// The line store without a window, against bare copies of the same characters.
#include "Report.h"
#include "Subjects.h"
#include "support/ImportHook.h"

#include <textview/YTextViewBuffer.h>
#include <windows.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <random>

namespace {

using LineInfo = YTextViewBuffer::LineInfo;

constexpr unsigned lineLength = 80;
constexpr unsigned ringSize = 100'000;
constexpr unsigned appended = 1'000'000;
constexpr unsigned batch = 100;  // lines a call: what a read from a file or a socket brings

const std::vector<LineInfo>& SourceLines()
{
    static const std::vector<LineInfo> lines = [] {
        std::vector<LineInfo> made(1000);
        for (std::size_t i = 0; i < made.size(); ++i) {
            made[i].text.assign(lineLength, static_cast<wchar_t>(L'a' + i % 26));
        }
        return made;
    }();
    return lines;
}

void Fill(YTextViewBuffer& buffer, unsigned lines)
{
    unsigned removed = 0;
    const auto& source = SourceLines();
    for (unsigned done = 0; done < lines; done += batch) {
        buffer.AppendLines(&source[done % source.size()], batch, removed);
    }
}

void AppendInBatches(benchmark::State& state)
{
    YTextViewBuffer buffer(ringSize);
    Fill(buffer, ringSize);
    for (auto _ : state) {
        Fill(buffer, appended);
    }
}

void AppendOneByOne(benchmark::State& state)
{
    YTextViewBuffer buffer(ringSize);
    Fill(buffer, ringSize);
    const auto& source = SourceLines();
    for (auto _ : state) {
        unsigned removed = 0;
        for (unsigned i = 0; i < appended; ++i) {
            buffer.AppendLines(&source[i % source.size()], 1, removed);
        }
    }
}

// Bare: the same characters, line by line, into as many heap blocks, used round and round.
void CopyIntoBlocks(benchmark::State& state)
{
    const auto& source = SourceLines();
    std::vector<std::unique_ptr<wchar_t[]>> blocks(ringSize);
    for (auto& block : blocks) {
        block = std::make_unique<wchar_t[]>(lineLength);
    }
    for (auto _ : state) {
        unsigned slot = 0;
        for (unsigned i = 0; i < appended; ++i) {
            const auto& text = source[i % source.size()].text;
            std::memcpy(blocks[slot].get(), text.data(), text.size() * sizeof(wchar_t));
            slot = slot + 1 == ringSize ? 0 : slot + 1;
        }
        benchmark::ClobberMemory();
    }
}

long allocations = 0;

void* CountingMalloc(std::size_t size)
{
    ++allocations;
    return std::malloc(size);
}

// Lines of every length into a ring whose slots have held the longest.
void AppendWithoutAllocating(benchmark::State& state)
{
    YTextViewBuffer buffer(1000);
    std::vector<LineInfo> lines(1000);
    unsigned removed = 0;
    for (auto& line : lines) {
        line.text.assign(200, L'x');
    }
    buffer.AppendLines(lines.data(), 1000, removed);
    std::mt19937 random(1);
    for (auto& line : lines) {
        line.text.resize(random() % 200);
    }
    // Every operator new of every module of ours is a call of malloc by the C++ run time.
    const ImportHook hook(L"libstdc++-6.dll", "msvcrt.dll", "malloc", &CountingMalloc);
    const long before = allocations;
    for (auto _ : state) {
        for (const LineInfo& line : lines) {
            buffer.AppendLines(&line, 1, removed);
        }
        buffer.AppendLines(lines.data(), 1000, removed);
    }
    state.counters["allocations"] = static_cast<double>(allocations - before);
}

void AppendCold(benchmark::State& state)
{
    for (auto _ : state) {
        state.PauseTiming();
        auto buffer = std::make_unique<YTextViewBuffer>(ringSize);
        state.ResumeTiming();
        Fill(*buffer, ringSize);
        state.PauseTiming();
        buffer.reset();
        state.ResumeTiming();
    }
}

void Clear(benchmark::State& state)
{
    YTextViewBuffer buffer(ringSize);
    for (auto _ : state) {
        state.PauseTiming();
        Fill(buffer, ringSize);
        state.ResumeTiming();
        buffer.Clear();
    }
}

YTextViewBuffer& MillionLines()
{
    static YTextViewBuffer buffer(appended);
    if (buffer.GetLineCount() == 0) {
        Fill(buffer, appended);
    }
    return buffer;
}

void CopyAll(benchmark::State& state)
{
    YTextViewBuffer& buffer = MillionLines();
    for (auto _ : state) {
        void* memory = nullptr;
        unsigned length = 0;
        if (!buffer.CopyTextToBuffer(memory, length)) {
            state.SkipWithError("no memory for the copy");
            break;
        }
        ::GlobalFree(memory);
    }
}

constexpr std::size_t copyBytes = (lineLength + 2ull) * appended * sizeof(wchar_t) + 2;
constexpr UINT copyFlags = GMEM_MOVEABLE | GMEM_ZEROINIT | GMEM_SHARE;

// Bare: one memcpy of the same text into a block of the same kind.
void CopyFlat(benchmark::State& state)
{
    const std::vector<char> text(copyBytes, 'x');
    for (auto _ : state) {
        const HGLOBAL memory = ::GlobalAlloc(copyFlags, copyBytes);
        void* const target = ::GlobalLock(memory);
        if (!target) {
            state.SkipWithError("no memory for the copy");
            break;
        }
        std::memcpy(target, text.data(), copyBytes);
        benchmark::ClobberMemory();
        ::GlobalUnlock(memory);
        ::GlobalFree(memory);
    }
}

std::size_t CommittedBytes()
{
    std::size_t bytes = 0;
    MEMORY_BASIC_INFORMATION region{};
    for (const char* at = nullptr; ::VirtualQuery(at, &region, sizeof region) != 0;) {
        if (region.State == MEM_COMMIT && region.Type == MEM_PRIVATE) {
            bytes += region.RegionSize;
        }
        at = static_cast<const char*>(region.BaseAddress) + region.RegionSize;
    }
    return bytes;
}

// Committed private memory of the process, before and after a million lines.
void Memory(benchmark::State& state)
{
    double ratio = 0.0;
    SourceLines();
    for (auto _ : state) {
        const std::size_t before = CommittedBytes();
        auto buffer = std::make_unique<YTextViewBuffer>(appended);
        Fill(*buffer, appended);
        constexpr double allowed = appended * (lineLength * sizeof(wchar_t) + 32.0);
        ratio = static_cast<double>(CommittedBytes() - before) / allowed;
    }
    state.counters["ratio"] = ratio;
}

}  // namespace

void AddBufferSubjects(Report& report)
{
    constexpr auto milliseconds = benchmark::kMillisecond;
    benchmark::RegisterBenchmark("AppendInBatches", AppendInBatches)->Unit(milliseconds);
    benchmark::RegisterBenchmark("AppendOneByOne", AppendOneByOne)->Unit(milliseconds);
    benchmark::RegisterBenchmark("CopyIntoBlocks", CopyIntoBlocks)->Unit(milliseconds);
    report.CompareRate("append 1,000,000 lines to a full ring, 100 a call, to bare copies",
                       "AppendInBatches", "CopyIntoBlocks", 0.7);
    report.ShowRate("  the same, one line a call", "AppendOneByOne", "CopyIntoBlocks");
    benchmark::RegisterBenchmark("AppendWithoutAllocating", AppendWithoutAllocating)
        ->Iterations(100);
    report.CheckCounter("  allocations once the ring is warm", "AppendWithoutAllocating",
                        "allocations", 0);

    benchmark::RegisterBenchmark("Clear", Clear)->Unit(milliseconds)->Iterations(5);
    benchmark::RegisterBenchmark("AppendCold", AppendCold)->Unit(milliseconds)->Iterations(5);
    report.CompareCost("clear 100,000 lines, to appending them", "Clear", "AppendCold", 0.2);

    benchmark::RegisterBenchmark("CopyAll", CopyAll)->Unit(milliseconds)->Iterations(2);
    benchmark::RegisterBenchmark("CopyFlat", CopyFlat)->Unit(milliseconds)->Iterations(2);
    report.CompareRate("copy 1,000,000 lines, to a bare memcpy", "CopyAll", "CopyFlat", 0.7);

    benchmark::RegisterBenchmark("Memory", Memory)->Unit(milliseconds)->Iterations(1);
    report.CheckCounter("memory of 1,000,000 lines, to characters and 32 bytes a line", "Memory",
                        "ratio", 1.15);
}
