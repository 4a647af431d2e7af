// IClipboardBuffer.h: a text taken from the clipboard.
#pragma once

#include <windows.h>

#include <unknwn.h>

class YUnicodeString;

// Reference counted; the library implements it and hands it to those who paste. User-interface
// thread. The order is binary contract.
class IClipboardBuffer : public IUnknown
{
public:
    virtual void GetData(YUnicodeString& text) const = 0;
    // Not copied, NUL-terminated, valid while the object lives and is not given another text; null
    // when it is empty. UTF-16 when IsUnicode.
    virtual void GetData(unsigned char*& text) const = 0;
    virtual bool IsUnicode() const = 0;
    virtual bool SetData(YUnicodeString& text) = 0;  // in place of the text held; false: no memory
    // Whether there are at least so many line breaks. CR counts when there is one, else LF.
    virtual bool IsMultiline(unsigned lines) const = 0;

protected:
    ~IClipboardBuffer() = default;  // adds no slot; nobody deletes through it
};
