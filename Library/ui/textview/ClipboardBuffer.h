// ClipboardBuffer.h: reads the clipboard's text into a private copy.
#pragma once

#include "CommonUiApi.h"
#include "YUnknown.h"
#include "textview/IClipboardBuffer.h"

#include <memory>

// The caller opens the clipboard; construction reads the text and closes it again, whether or not
// there was one. An object without text is not valid, and GetLastError() is then 0xE1330068 ("Generic
// clipboard failure."), for the caller to report. Formats: CF_TEXT, CF_UNICODETEXT or asciiText.
class COMMONUI_API ClipboardBuffer : public YUnknown<IClipboardBuffer>
{
public:
    // 8-bit text whose typographic dashes and double quotation marks become ASCII.
    static constexpr unsigned asciiText = 19;

    ClipboardBuffer(unsigned format, bool unused);
    ClipboardBuffer(const ClipboardBuffer& other);  // shares the text
    ClipboardBuffer& operator=(const ClipboardBuffer&) = delete;
    ~ClipboardBuffer() override;

    bool IsValid() const { return memory || data; }

    void GetData(YUnicodeString& text) const override;
    void GetData(unsigned char*& text) const override;
    bool IsUnicode() const override;
    bool SetData(YUnicodeString& text) override;
    bool IsMultiline(unsigned lines) const override;

private:
    bool GetClipboardData();
    bool SetBufferContents(HGLOBAL block);
    void TranslateToAscii();

    HGLOBAL memory = nullptr;  // the clipboard's own block; null again after construction
    std::shared_ptr<unsigned char[]> data;  // NUL-terminated, 16-bit when format is Unicode
    unsigned format;
};
