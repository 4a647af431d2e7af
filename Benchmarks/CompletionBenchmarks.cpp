// Completion: from an answer to its painted list, from a key to its request, and what a list holds.
#include "Report.h"
#include "Subjects.h"
#include "ViewHost.h"
#include "support/ImportHook.h"

#include <YUnknown.h>
#include <YUnknownPointer.h>
#include <autocomplete/IAutoCompleteDataSource.h>
#include <autocomplete/YAutoComplete.h>

#include <commctrl.h>

#include <atomic>
#include <condition_variable>
#include <malloc.h>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using Texts = std::vector<std::wstring>;

constexpr wchar_t popupClass[] = L"YAutoCompleteListViewParentWindowClass";

Texts MakeTexts(unsigned count, const std::wstring& beginning)
{
    Texts texts(count);
    for (unsigned i = 0; i < count; ++i) {
        texts[i] = beginning + L" completion number " + std::to_wstring(i);
    }
    return texts;
}

// Keeps the last request and who asked; answers nothing by itself.
class QuietSource : public YUnknown<IAutoCompleteDataSource>
{
public:
    void RequestCompletions(const wchar_t* text, IAutoCompleteDataSink* asking) override
    {
        ++requests;
        last = text;
        sink = YUnknownPointer<IAutoCompleteDataSink>(asking);
    }

    unsigned requests = 0;
    std::wstring last;
    YUnknownPointer<IAutoCompleteDataSink> sink;
};

// A visible edit in a window in front.
class EditHost
{
public:
    EditHost()
        : window(::CreateWindowExW(0, L"#32770", L"Benchmark", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 50,
                                   50, 600, 600, nullptr, nullptr, nullptr, nullptr)),
          edit(::CreateWindowExW(0, L"EDIT", L"", WS_CHILD | WS_VISIBLE | ES_AUTOHSCROLL, 10, 10,
                                 400, 22, window, nullptr, nullptr, nullptr))
    {
        if (edit == nullptr) {
            throw std::runtime_error("no window to measure");
        }
        ::SetForegroundWindow(window);
        ::SetFocus(edit);
        Pump();
    }
    ~EditHost()
    {
        ::DestroyWindow(window);
        Pump();
    }
    EditHost(const EditHost&) = delete;
    EditHost& operator=(const EditHost&) = delete;

    HWND window;
    HWND edit;
};

HWND FindList()
{
    return ::FindWindowExW(::FindWindowW(popupClass, nullptr), nullptr, WC_LISTVIEWW, nullptr);
}

// From the answer until the rows are on the screen; the list is up all the time.
void AnswerToPaintedList(benchmark::State& state, unsigned count)
{
    EditHost host;
    const auto source = YUnknownPointer<QuietSource>::Make();
    YAutoComplete::CreateAndAttach(host.edit, source.Get(), nullptr, true);
    ::SendMessageW(host.edit, WM_CHAR, 'a', 0);
    const Texts texts = MakeTexts(count, L"a");
    const HWND list = FindList();
    const auto answer = [&] {
        source->sink->OnAutoComplete(L"a", texts, source.Get());
        Pump();
        ::UpdateWindow(list);
    };
    answer();
    answer();
    if (!::IsWindowVisible(list)) {
        state.SkipWithError("the list is not shown");
    }
    for (auto _ : state) {
        answer();
    }
    source->sink.Reset();
}

// A list view in a bare pop-up whose texts are asked for, of the same size as ours: far wider than
// the pop-up.
class BareList
{
public:
    explicit BareList(const Texts& shown) : texts(shown)
    {
        popup = ::CreateWindowExW(WS_EX_NOACTIVATE | WS_EX_TOPMOST, L"#32770", L"",
                                  WS_POPUP | WS_BORDER | WS_CLIPCHILDREN, 60, 90, 400, 300, nullptr,
                                  nullptr, nullptr, nullptr);
        ::SetWindowLongPtrW(popup, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        ::SetWindowLongPtrW(popup, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Receive));
        list = ::CreateWindowExW(
            0, WC_LISTVIEWW, L"",
            WS_CHILD | WS_VISIBLE | LVS_REPORT | LVS_SINGLESEL | LVS_OWNERDATA | LVS_NOCOLUMNHEADER,
            0, 0, ::GetSystemMetrics(SM_CXMAXTRACK), 298, popup, nullptr, nullptr, nullptr);
        ::SendMessageW(list, LVM_SETEXTENDEDLISTVIEWSTYLE, 0,
                       LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER);
        LVCOLUMNW column{};
        column.mask = LVCF_WIDTH;
        column.cx = ::GetSystemMetrics(SM_CXMAXTRACK) - ::GetSystemMetrics(SM_CXVSCROLL);
        ::SendMessageW(list, LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));
        ::ShowWindow(popup, SW_SHOWNOACTIVATE);
        Pump();
    }
    ~BareList() { ::DestroyWindow(popup); }
    BareList(const BareList&) = delete;
    BareList& operator=(const BareList&) = delete;

    void Fill()
    {
        ::SendMessageW(list, LVM_SETITEMCOUNT, texts.size(), 0);
        ::InvalidateRect(list, nullptr, TRUE);
        ::UpdateWindow(list);
    }

private:
    static LRESULT CALLBACK Receive(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        auto* const self = reinterpret_cast<BareList*>(::GetWindowLongPtrW(window, GWLP_USERDATA));
        const auto* const header = reinterpret_cast<const NMHDR*>(lParam);
        if (message == WM_NOTIFY && header->code == LVN_GETDISPINFOW) {
            LVITEMW& item = reinterpret_cast<NMLVDISPINFOW*>(lParam)->item;
            if ((item.mask & LVIF_TEXT) != 0 && item.cchTextMax > 0) {
                const std::wstring& text = self->texts[static_cast<std::size_t>(item.iItem)];
                item.pszText[text.copy(item.pszText,
                                       static_cast<std::size_t>(item.cchTextMax) - 1)] = L'\0';
            }
            return 0;
        }
        return ::DefWindowProcW(window, message, wParam, lParam);
    }

    const Texts& texts;
    HWND popup;
    HWND list;
};

// Bare: the count, an invalidation and a paint.
void BareListFilled(benchmark::State& state, unsigned count)
{
    EditHost host;
    const Texts texts = MakeTexts(count, L"a");
    BareList list(texts);
    list.Fill();
    for (auto _ : state) {
        list.Fill();
    }
}

void TypeAndTakeBack(HWND edit)
{
    ::SendMessageW(edit, WM_CHAR, 'a', 0);
    ::SendMessageW(edit, WM_CHAR, VK_BACK, 0);
}

// Two keys, each until the data source is asked.
void TypeIntoCompletion(benchmark::State& state)
{
    EditHost host;
    const auto source = YUnknownPointer<QuietSource>::Make();
    YAutoComplete::CreateAndAttach(host.edit, source.Get(), nullptr, true);
    TypeAndTakeBack(host.edit);
    for (auto _ : state) {
        TypeAndTakeBack(host.edit);
    }
    if (source->requests < 2 * state.iterations()) {
        state.SkipWithError("a key was not asked about");
    }
    source->sink.Reset();
}

LRESULT CALLBACK PassOn(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                        DWORD_PTR)
{
    return ::DefSubclassProc(window, message, wParam, lParam);
}

LRESULT CALLBACK ReadOnChange(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                              DWORD_PTR data)
{
    if (message == WM_COMMAND && HIWORD(wParam) == EN_CHANGE) {
        const HWND edit = reinterpret_cast<HWND>(lParam);
        auto& text = *reinterpret_cast<std::wstring*>(data);
        text.resize(static_cast<std::size_t>(::GetWindowTextLengthW(edit)));
        ::GetWindowTextW(edit, text.data(), static_cast<int>(text.size()) + 1);
    }
    return ::DefSubclassProc(window, message, wParam, lParam);
}

// Bare: the same two keys, a subclass on the edit and one on its parent that reads the text.
void TypeIntoBareEdit(benchmark::State& state)
{
    EditHost host;
    std::wstring text;
    ::SetWindowSubclass(host.edit, &PassOn, 1, 0);
    ::SetWindowSubclass(host.window, &ReadOnChange, 1, reinterpret_cast<DWORD_PTR>(&text));
    TypeAndTakeBack(host.edit);
    for (auto _ : state) {
        TypeAndTakeBack(host.edit);
    }
    ::RemoveWindowSubclass(host.edit, &PassOn, 1);
    ::RemoveWindowSubclass(host.window, &ReadOnChange, 1);
}

// Answers the newest text 5 ms after it was asked about, on a thread of its own; a text that is no
// longer the newest by then is answered as well.
class SlowSource : public YUnknown<IAutoCompleteDataSource>
{
public:
    SlowSource() : thread([this] { Run(); }) {}
    ~SlowSource() override { Stop(); }
    void Stop()
    {
        {
            const std::lock_guard lock(mutex);
            ends = true;
        }
        wake.notify_one();
        if (thread.joinable()) {
            thread.join();
        }
    }
    void RequestCompletions(const wchar_t* text, IAutoCompleteDataSink* sink) override
    {
        {
            const std::lock_guard lock(mutex);
            requests.emplace_back(text, YUnknownPointer<IAutoCompleteDataSink>(sink));
        }
        wake.notify_one();
    }

private:
    void Run()
    {
        std::unique_lock lock(mutex);
        for (;;) {
            wake.wait(lock, [this] { return ends || !requests.empty(); });
            if (ends) {
                requests.clear();
                return;
            }
            auto [text, sink] = std::move(requests.front());
            requests.erase(requests.begin());
            lock.unlock();
            ::Sleep(5);
            sink->OnAutoComplete(text.c_str(), MakeTexts(100, text), this);
            sink.Reset();
            lock.lock();
        }
    }

    std::mutex mutex;
    std::condition_variable wake;
    std::vector<std::pair<std::wstring, YUnknownPointer<IAutoCompleteDataSink>>> requests;
    bool ends = false;
    std::thread thread;
};

// Watches the paints of the list: how many showed another text than the edit's although that had
// been typed so long ago that its answer was due.
struct PaintWatch
{
    HWND edit;
    ULONGLONG typedAt = 0;
    unsigned paints = 0;
    unsigned stale = 0;
};

LRESULT CALLBACK WatchPaint(HWND list, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                            DWORD_PTR data)
{
    const LRESULT result = ::DefSubclassProc(list, message, wParam, lParam);
    if (message == WM_PAINT && ::IsWindowVisible(list)) {
        auto& watch = *reinterpret_cast<PaintWatch*>(data);
        wchar_t shown[200] = L"";
        wchar_t typed[100] = L"";
        LVITEMW item{};
        item.pszText = shown;
        item.cchTextMax = 200;
        ::SendMessageW(list, LVM_GETITEMTEXTW, 0, reinterpret_cast<LPARAM>(&item));
        ::GetWindowTextW(watch.edit, typed, 100);
        const bool belongs = std::wstring(shown).rfind(std::wstring(typed) + L' ', 0) == 0;
        constexpr ULONGLONG due = 16;  // milliseconds: 5, and a tick of the clock
        ++watch.paints;
        watch.stale += !belongs && ::GetTickCount64() - watch.typedAt > due;
    }
    return result;
}

// 60 keys, 30 a second.
void TypeAtSpeed(benchmark::State& state)
{
    EditHost host;
    const auto source = YUnknownPointer<SlowSource>::Make();
    YAutoComplete::CreateAndAttach(host.edit, source.Get(), nullptr, true);
    PaintWatch watch{host.edit};
    const HWND list = FindList();
    ::SetWindowSubclass(list, &WatchPaint, 1, reinterpret_cast<DWORD_PTR>(&watch));
    for (auto _ : state) {
        ::SetWindowTextW(host.edit, L"");
        for (unsigned key = 0; key < 60; ++key) {
            const ULONGLONG start = ::GetTickCount64();
            ::SendMessageW(host.edit, WM_CHAR, L'a' + key % 26, 0);
            watch.typedAt = start;
            while (::GetTickCount64() - start < 33) {
                Pump();
                ::MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT);
            }
        }
    }
    ::RemoveWindowSubclass(list, &WatchPaint, 1);
    state.counters["stale"] = watch.stale;
    state.counters["paints"] = watch.paints;
    if (watch.paints < 30) {
        state.SkipWithError("the list was not painted");
    }
    source->Stop();
}

// Bytes of the heap that are in use by what operator new made, as the heap itself gives them.
class HeapWatch
{
public:
    HeapWatch()
    {
        mallocBefore = allocate.Original<void*(std::size_t)>();
        freeBefore = release.Original<void(void*)>();
        live = 0;
    }
    static double GetLive() { return static_cast<double>(live); }

private:
    static void* Allocate(std::size_t size)
    {
        void* const block = mallocBefore(size);
        live += static_cast<long long>(block != nullptr ? ::_msize(block) : 0);
        return block;
    }
    static void Release(void* block)
    {
        live -= static_cast<long long>(block != nullptr ? ::_msize(block) : 0);
        freeBefore(block);
    }

    static inline std::atomic<long long> live;
    static inline void* (*mallocBefore)(std::size_t);
    static inline void (*freeBefore)(void*);
    const ImportHook allocate{L"libstdc++-6.dll", "msvcrt.dll", "malloc", &Allocate};
    const ImportHook release{L"libstdc++-6.dll", "msvcrt.dll", "free", &Release};
};

// Held for 10,000 texts, to a vector of the same.
void MemoryOfList(benchmark::State& state)
{
    EditHost host;
    const auto source = YUnknownPointer<QuietSource>::Make();
    YAutoComplete::CreateAndAttach(host.edit, source.Get(), nullptr, true);
    ::SendMessageW(host.edit, WM_CHAR, 'a', 0);
    const Texts made = MakeTexts(10'000, L"a");
    for (auto _ : state) {
        const HeapWatch heap;
        std::optional<Texts> texts(made);  // without the room that is left from their making
        const double bare = HeapWatch::GetLive();
        source->sink->OnAutoComplete(L"a", *texts, source.Get());
        Pump();
        texts.reset();
        state.counters["ratio"] = HeapWatch::GetLive() / bare;
        source->sink->OnAutoComplete(L"a", {}, source.Get());
        Pump();
    }
    source->sink.Reset();
}

}  // namespace

void AddCompletionSubjects(Report& report)
{
    for (const unsigned count : {100u, 10'000u, 100'000u}) {
        const std::string number = std::to_string(count);
        const std::string ours = "AnswerToPaintedList" + number;
        const std::string bare = "BareListFilled" + number;
        const auto add = [count](const std::string& name,
                                 void (*run)(benchmark::State&, unsigned)) {
            benchmark::RegisterBenchmark(name.c_str(), run, count)->Unit(benchmark::kMillisecond);
        };
        add(ours, AnswerToPaintedList);
        add(bare, BareListFilled);
        report.CompareCost("answer to painted list, " + number + " rows, to a bare list", ours,
                           bare, 2);
    }
    benchmark::RegisterBenchmark("TypeIntoCompletion", TypeIntoCompletion)
        ->Unit(benchmark::kMicrosecond)
        ->Iterations(300);
    benchmark::RegisterBenchmark("TypeIntoBareEdit", TypeIntoBareEdit)
        ->Unit(benchmark::kMicrosecond)
        ->Iterations(300);
    report.CompareCost("key to request, to a bare subclassed edit", "TypeIntoCompletion",
                       "TypeIntoBareEdit", 1.2);
    benchmark::RegisterBenchmark("TypeAtSpeed", TypeAtSpeed)
        ->Unit(benchmark::kMillisecond)
        ->Iterations(1);
    report.CheckCounter("30 keys a second, answers after 5 ms: stale lists", "TypeAtSpeed", "stale",
                        0);
    benchmark::RegisterBenchmark("MemoryOfList", MemoryOfList)
        ->Unit(benchmark::kMillisecond)
        ->Iterations(1);
    report.CheckCounter("memory of 10,000 completions, to a vector of the same", "MemoryOfList",
                        "ratio", 1.5);
}
