// The real clipboard, read back with the system's own calls.

#include "YUnicodeString.h"
#include "YUnknownPointer.h"
#include "textview/ClipboardBuffer.h"
#include "textview/ClipboardFaults.h"
#include "textview/YClipboard.h"

#include <afxole.h>
#include <gtest/gtest.h>

#include <cstring>
#include <optional>
#include <string>

namespace {

using Buffer = YUnknownPointer<ClipboardBuffer>;

// Puts a block of bytes on the clipboard, without OLE.
void Offer(UINT format, const std::string& bytes)
{
    HGLOBAL block = ::GlobalAlloc(GMEM_MOVEABLE, bytes.size());
    std::memcpy(::GlobalLock(block), bytes.data(), bytes.size());
    ::GlobalUnlock(block);
    ::SetClipboardData(format, block);  // the clipboard owns it now
}

std::string BytesOf(const std::wstring& text)
{
    return {reinterpret_cast<const char*>(text.c_str()), (text.size() + 1) * sizeof(wchar_t)};
}

class ClipboardTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(AfxOleInit());
        window = ::CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr,
                                   nullptr);
        ASSERT_TRUE(Open());
        ::EmptyClipboard();
        ::CloseClipboard();
    }
    void TearDown() override
    {
        ::OleSetClipboard(nullptr);
        ::DestroyWindow(window);
    }

    bool Open() const { return ::OpenClipboard(window) != FALSE; }
    bool IsOpen() const { return ::GetOpenClipboardWindow() != nullptr; }

    // A buffer on a clipboard that offers these bytes.
    Buffer Read(UINT format, UINT offered, const std::string& bytes) const
    {
        EXPECT_TRUE(Open());
        ::EmptyClipboard();
        Offer(offered, bytes);
        Buffer buffer = Buffer::Make(format, false);
        EXPECT_FALSE(IsOpen());
        return buffer;
    }

    HWND window = nullptr;
};

std::string BytesIn(const Buffer& buffer)
{
    unsigned char* data = nullptr;
    buffer->GetData(data);
    return data ? reinterpret_cast<const char*>(data) : "none";
}

std::wstring TextIn(const Buffer& buffer)
{
    YUnicodeString text(L"before");
    buffer->GetData(text);
    return text.c_str();
}

}  // namespace

TEST_F(ClipboardTest, TextIsOfferedAsUtf16)
{
    EXPECT_TRUE(YCopyTextToClipboard(L"a\r\n\xD83D\xDE00 b"));
    EXPECT_EQ(ClipboardText(), L"a\r\n\xD83D\xDE00 b");
    EXPECT_TRUE(YCopyTextToClipboard(L""));
    EXPECT_EQ(ClipboardText(), L"");
    EXPECT_FALSE(YCopyTextToClipboard(nullptr));
    EXPECT_FALSE(YCopyBufferToClipboard(nullptr));
    EXPECT_EQ(ClipboardText(), L"");
}

TEST_F(ClipboardTest, ABufferKeepsItsTextWhenTheClipboardChanges)
{
    const Buffer wide = Read(CF_UNICODETEXT, CF_UNICODETEXT, BytesOf(L"w\xE9"));
    const Buffer narrow = Read(CF_TEXT, CF_TEXT, std::string("n\xE9", 3));
    EXPECT_TRUE(wide->IsValid());
    EXPECT_EQ(TextIn(wide), L"w\xE9");
    EXPECT_FALSE(narrow->IsUnicode());
    EXPECT_EQ(BytesIn(narrow), "n\xE9");
    EXPECT_EQ(TextIn(narrow), YUnicodeString::FromBytes("n\xE9").c_str());
}

TEST_F(ClipboardTest, TypographicPunctuationBecomesAscii)
{
    const std::string typographic("\x93quoted\x94 \x91single\x92 a\x96z a\x97z \xE9");
    const Buffer buffer = Read(ClipboardBuffer::asciiText, CF_TEXT, typographic + '\0');
    EXPECT_EQ(BytesIn(buffer), "\"quoted\" \x91single\x92 a-z a-z \xE9");
    EXPECT_EQ(BytesIn(Read(CF_TEXT, CF_TEXT, typographic + '\0')), typographic);
}

TEST_F(ClipboardTest, AnotherTextReplacesTheOneHeld)
{
    YUnicodeString text(L"new\r\nline");
    const Buffer wide = Read(CF_UNICODETEXT, CF_UNICODETEXT, BytesOf(L"old"));
    EXPECT_TRUE(wide->SetData(text));
    EXPECT_EQ(TextIn(wide), L"new\r\nline");
    EXPECT_TRUE(wide->IsMultiline(1));
    EXPECT_EQ(ClipboardText(), L"old");

    const Buffer ascii = Read(ClipboardBuffer::asciiText, CF_TEXT, std::string("old", 4));
    const Buffer shared = Buffer::Make(*ascii);
    YUnicodeString dash(YUnicodeString::FromBytes("a\x96z"));
    EXPECT_TRUE(ascii->SetData(dash));
    EXPECT_EQ(BytesIn(ascii), "a-z");
    EXPECT_EQ(BytesIn(shared), "old");  // it shared the text, not the object
}

TEST_F(ClipboardTest, ABufferCountsLineBreaksAlikeInBothWidths)
{
    const struct
    {
        std::string text;
        unsigned lines;
        bool multiline;
    } cases[] = {{"abc", 1, false},
                 {"", 0, true},
                 {"a\r\nb\r\n", 2, true},
                 {"a\r\nb", 2, false},
                 {"a\nb\nc\r", 2, false}};  // a CR hides the LFs
    for (const auto& [text, lines, multiline] : cases) {
        SCOPED_TRACE(testing::PrintToString(text));
        const std::string wide = BytesOf(std::wstring(text.begin(), text.end()));
        EXPECT_EQ(Read(CF_UNICODETEXT, CF_UNICODETEXT, wide)->IsMultiline(lines), multiline);
        EXPECT_EQ(Read(CF_TEXT, CF_TEXT, text + '\0')->IsMultiline(lines), multiline);
    }
}
