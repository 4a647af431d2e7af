#include "textview/ClipboardBuffer.h"

#include "YUnicodeString.h"
#include "YUniqueHandle.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <string>
#include <string_view>
#include <utility>

namespace {

constexpr DWORD genericClipboardFailure = 0xE1330068;  // a message of ours
constexpr UINT blockFlags = GMEM_MOVEABLE | GMEM_ZEROINIT | GMEM_SHARE;

// Code page 1252, where these are the dashes and the double quotation marks.
constexpr unsigned char enDash = 150;
constexpr unsigned char emDash = 151;
constexpr unsigned char leftDoubleQuote = 147;
constexpr unsigned char rightDoubleQuote = 148;

// The bytes of a text up to its terminator. Another program filled the block: a missing terminator
// must not lead out of it.
template <class Character>
std::size_t TextBytes(const void* block, std::size_t size)
{
    const auto* const text = static_cast<const Character*>(block);
    const auto* const end = text + size / sizeof(Character);
    return static_cast<std::size_t>(std::find(text, end, Character()) - text) * sizeof(Character);
}

template <class Character>
bool HasLineBreaks(const Character* text, unsigned lines)
{
    const std::basic_string_view<Character> view(text);
    constexpr Character lineEnds[] = {'\r', '\n'};
    for (const Character lineEnd : lineEnds) {
        const auto count = std::count(view.begin(), view.end(), lineEnd);
        if (count > 0) {
            return static_cast<std::size_t>(count) >= lines;
        }
    }
    return false;
}

}  // namespace

ClipboardBuffer::ClipboardBuffer(unsigned textFormat, bool) : format(textFormat)
{
    if (!GetClipboardData()) {
        return;
    }
    const bool copied = SetBufferContents(memory);
    memory = nullptr;
    ::CloseClipboard();
    if (!copied) {
        ::SetLastError(genericClipboardFailure);
    }
}

ClipboardBuffer::ClipboardBuffer(const ClipboardBuffer& other) = default;

ClipboardBuffer::~ClipboardBuffer() = default;

void ClipboardBuffer::GetData(YUnicodeString& text) const
{
    if (!data) {
        text = YUnicodeString();
    } else if (IsUnicode()) {
        text = reinterpret_cast<const wchar_t*>(data.get());
    } else {
        text = YUnicodeString::FromBytes(reinterpret_cast<const char*>(data.get()));
    }
}

void ClipboardBuffer::GetData(unsigned char*& text) const
{
    text = data.get();
}

bool ClipboardBuffer::IsUnicode() const
{
    return format == CF_UNICODETEXT;
}

// Goes by way of a global block, as text from the clipboard does, so that both are cut and
// translated alike. The clipboard itself is left alone.
bool ClipboardBuffer::SetData(YUnicodeString& text)
{
    const std::string bytes = IsUnicode() ? std::string() : text.ToBytes();
    const std::size_t wideSize = text.GetLength() * sizeof(wchar_t);
    const std::size_t size = IsUnicode() ? wideSize : bytes.size();
    const YUniqueGlobalMemory block(
        ::GlobalAlloc(blockFlags, std::max(size, wideSize) + sizeof(wchar_t)));
    if (!block) {
        return false;
    }
    {
        const YGlobalLock lock(block.Get());
        if (!lock) {
            return false;
        }
        const void* const source = IsUnicode() ? static_cast<const void*>(text.c_str())
                                               : static_cast<const void*>(bytes.data());
        std::memcpy(lock.Get(), source, size);  // the terminator is there: zero-filled
    }
    return SetBufferContents(block.Get());
}

bool ClipboardBuffer::IsMultiline(unsigned lines) const
{
    if (!data) {
        return false;
    }
    if (lines == 0) {
        return true;
    }
    return IsUnicode() ? HasLineBreaks(reinterpret_cast<const wchar_t*>(data.get()), lines)
                       : HasLineBreaks(reinterpret_cast<const char*>(data.get()), lines);
}

// Takes the clipboard's block, which stays the clipboard's, or closes the clipboard. The last-error
// code is set before as well as after: what the system leaves there when it has no such text
// depends on why.
bool ClipboardBuffer::GetClipboardData()
{
    ::SetLastError(genericClipboardFailure);
    memory = ::GetClipboardData(format == asciiText ? CF_TEXT : format);
    if (!memory) {
        ::CloseClipboard();
        ::SetLastError(genericClipboardFailure);
        return false;
    }
    return true;
}

// Copies the text out of block, which the caller keeps. False, text unchanged: no memory.
bool ClipboardBuffer::SetBufferContents(HGLOBAL block)
{
    const YGlobalLock lock(block);
    if (!lock) {
        return false;
    }
    const std::size_t blockSize = ::GlobalSize(block);
    const std::size_t size = IsUnicode() ? TextBytes<wchar_t>(lock.Get(), blockSize)
                                         : TextBytes<char>(lock.Get(), blockSize);
    const std::size_t terminator = IsUnicode() ? sizeof(wchar_t) : sizeof(char);
    std::shared_ptr<unsigned char[]> copy;
    try {
        copy = std::make_shared<unsigned char[]>(size + terminator);  // zero-filled
    } catch (const std::bad_alloc&) {
        return false;
    }
    std::memcpy(copy.get(), lock.Get(), size);
    data = std::move(copy);
    if (format == asciiText) {
        TranslateToAscii();
    }
    return true;
}

// The single quotation marks stay: as apostrophes they are part of names.
void ClipboardBuffer::TranslateToAscii()
{
    for (unsigned char* at = data.get(); *at; ++at) {
        if (*at == enDash || *at == emDash) {
            *at = '-';
        } else if (*at == leftDoubleQuote || *at == rightDoubleQuote) {
            *at = '"';
        }
    }
}
