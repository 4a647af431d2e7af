// The clipboard functions and buffer when memory runs out under them.

#include "YUnicodeString.h"
#include "YUnknownPointer.h"
#include "textview/ClipboardBuffer.h"
#include "textview/ClipboardFaults.h"
#include "textview/YClipboard.h"

#include <afxole.h>
#include <gtest/gtest.h>

#include <new>

namespace {

using Buffer = YUnknownPointer<ClipboardBuffer>;

constexpr unsigned genericClipboardFailure = 0xE1330068;

// With a text on the clipboard.
class ClipboardFaultTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(AfxOleInit());
        ASSERT_TRUE(YCopyTextToClipboard(L"one\r\ntwo"));
        ::OleFlushClipboard();
    }
    void TearDown() override
    {
        ASSERT_TRUE(::OpenClipboard(nullptr));
        ::EmptyClipboard();
        ::CloseClipboard();
    }
};

using Faults = ClipboardFaults;

}  // namespace

TEST_F(ClipboardFaultTest, ABufferThatCannotReadSaysWhyAndClosesTheClipboard)
{
    const int calls = FailEachCall([](int call) {
        ASSERT_TRUE(::OpenClipboard(nullptr));
        ::SetLastError(0);
        Faults::FailAt(call);
        try {
            const Buffer buffer = Buffer::Make(unsigned{CF_UNICODETEXT}, false);
            const DWORD error = ::GetLastError();
            Faults::Stop();
            EXPECT_EQ(buffer->IsValid(), !Faults::HasFailed());
            EXPECT_EQ(buffer->IsMultiline(1), !Faults::HasFailed());
            EXPECT_TRUE(!Faults::HasFailed() || error == genericClipboardFailure);
            EXPECT_FALSE(::CloseClipboard());  // it is closed already
        } catch (const std::bad_alloc&) {
            ::CloseClipboard();  // there was not even an object to do it
        }
    });
    EXPECT_GE(calls, 3);  // the object, the lock, the copy
}

TEST_F(ClipboardFaultTest, ATextThatCannotBeTakenLeavesTheOldOne)
{
    for (const unsigned format : {unsigned{CF_UNICODETEXT}, unsigned{ClipboardBuffer::asciiText}}) {
        ASSERT_TRUE(::OpenClipboard(nullptr));
        const Buffer buffer = Buffer::Make(format, false);
        YUnicodeString text(L"a single line, longer than any small string");
        const int calls = FailEachCall([&buffer, &text](int call) {
            const Buffer copy = Buffer::Make(*buffer);
            bool taken = false;
            Faults::FailAt(call);
            try {
                taken = copy->SetData(text);
            } catch (const std::bad_alloc&) {}
            Faults::Stop();
            EXPECT_EQ(taken, !Faults::HasFailed());
            EXPECT_EQ(copy->IsMultiline(1), !taken);
        });
        EXPECT_GE(calls, 3);  // the block, its locks, the copy
    }
}
