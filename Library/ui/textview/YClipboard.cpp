#include "textview/YClipboard.h"

#include "YUniqueHandle.h"

#include <afxole.h>

#include <cstring>
#include <cwchar>
#include <memory>
#include <new>

namespace {

constexpr UINT blockFlags = GMEM_MOVEABLE | GMEM_ZEROINIT | GMEM_SHARE;

bool FillBlock(HGLOBAL block, const wchar_t* text, std::size_t bytes)
{
    const YGlobalLock lock(block);
    if (!lock) {
        return false;
    }
    std::memcpy(lock.Get(), text, bytes);
    return true;
}

}  // namespace

bool YCopyBufferToClipboard(void* memory)
{
    YUniqueGlobalMemory block(memory);
    if (!block) {
        return false;
    }
    try {
        auto source = std::make_unique<COleDataSource>();
        source->CacheGlobalData(CF_UNICODETEXT, block.Get());
        static_cast<void>(block.Detach());  // the source frees it
        source.release()->SetClipboard();  // the clipboard deletes it
    } catch (...) {
        // Whatever the framework throws (a pointer or std::bad_alloc), the block goes with us.
        return false;
    }
    return true;
}

bool YCopyTextToClipboard(const wchar_t* text)
{
    if (!text) {
        return false;
    }
    const std::size_t bytes = (std::wcslen(text) + 1) * sizeof(wchar_t);
    YUniqueGlobalMemory block(::GlobalAlloc(blockFlags, bytes));
    if (!block || !FillBlock(block.Get(), text, bytes)) {
        return false;
    }
    return YCopyBufferToClipboard(block.Detach());
}
