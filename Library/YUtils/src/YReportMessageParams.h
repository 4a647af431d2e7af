// YReportMessageParams.h: the one carrier of failures and of what is said to the user.
#pragma once

#include "CommonUiApi.h"
#include "IReportMessageParams.h"
#include "YFormatMessage.h"
#include "YModule.h"
#include "YUnicodeString.h"
#include "YUniqueHandle.h"
#include "YUnknown.h"

#include <string>
#include <string_view>
#include <vector>

// Holds a message id or a Win32 or Winsock error code, the module whose message table is searched
// first, and the inserts for %1, %2, ... . The text is composed when it is first asked for, and
// kept: whichever form was asked for first is the text until Assign or SetErrorCode, whatever else
// is changed in between. Composing never throws, except when memory runs out, and never ends in an
// empty text. Used as a value as well as by reference; not synchronised but for its count.
class COMMONUI_API YReportMessageParams : public YUnknown<IReportMessageParams>
{
public:
    explicit YReportMessageParams(unsigned id = 0, HMODULE messages = YGetLibraryModule());
    // All but the composed text: the copy composes its own.
    YReportMessageParams(const YReportMessageParams& other);
    ~YReportMessageParams() override;

    // What IReportMessageParams is not of this class is ignored. The auxiliary code stays.
    void Assign(const IReportMessageParams& other);
    YReportMessageParams& operator=(const YReportMessageParams& other);
    // Becomes a new object for the code, in the library's module and without inserts.
    void SetErrorCode(unsigned code);

    void SetMessageId(unsigned id) { messageId = id; }
    unsigned GetMessageId() const override { return messageId; }
    HMODULE GetModule() const override { return module; }
    const std::vector<YUnicodeString>& GetInserts() const override { return inserts; }
    unsigned GetUserValue() const override { return userValue; }
    void SetUserValue(unsigned value) { userValue = value; }
    int GetAuxiliaryCode() const { return auxiliaryCode; }  // -1: none
    // Where it was reported. The name is borrowed for good: a literal.
    void SetLocation(const wchar_t* file, int line);

    // Null is an empty insert. 8-bit text is in the system's code page.
    void AddInsert(const wchar_t* insert);
    void AddInsert(const std::wstring& insert);
    void AddInsert(const char* insert);
    void AddInsert(const std::string& insert);
    // The pattern is a message text of one or two inserts: "%1!d!". Throws InvalidParameter for
    // one that the formatter refuses; nothing is added then.
    template <class First>
    void AddFormattedInsert(const wchar_t* format, First first)
    {
        inserts.emplace_back(YFormatText(format, first));
    }
    template <class First, class Second>
    void AddFormattedInsert(const wchar_t* format, First first, Second second)
    {
        inserts.emplace_back(YFormatText(format, first, second));
    }

    const wchar_t* GetText() const override;  // as in the table, normally with its line end
    const wchar_t* GetTextSingleLine() const override;  // line ends are spaces
    // Without one line end, or one space, at the end; that goes from the stored text.
    const wchar_t* GetTrimmedText() const override;
    const wchar_t* GetTrimmedTextSingleLine() const override;
    // Message formatId of the library with three inserts: the text, the file, the line. GetText()
    // where no location was set.
    const wchar_t* GetTextWithLocation(unsigned formatId) const override;

private:
    void CopyMessage(const YReportMessageParams& other);
    void DropText();
    const wchar_t* Compose(DWORD flags) const;
    void TrimStored(std::wstring_view end) const;
    wchar_t* GetStored() const { return static_cast<wchar_t*>(text.Get()); }

    int auxiliaryCode = -1;
    std::vector<YUnicodeString> inserts;
    unsigned messageId;
    HMODULE module;
    mutable YUniqueLocalMemory text = YUniqueLocalMemory();  // the formatter's; null until composed
    mutable unsigned textLength = 0;  // UTF-16 units, without the terminator
    const wchar_t* file = nullptr;
    int line = 0;
    unsigned userValue = 0;
    mutable std::wstring locationText;
    mutable bool isTrimmed = false;  // the stored text has lost its end
};

// The text of an error code or message id in one line, inserts unfilled, without the space at its
// end. Never empty.
COMMONUI_API std::wstring YGetErrorText(unsigned code, HMODULE module = YGetLibraryModule());
