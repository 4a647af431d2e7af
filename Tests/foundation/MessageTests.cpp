#include "TestMessages.h"
#include "YMessageBox.h"
#include "YMessages.h"
#include "YReportMessageParams.h"

#include "support/ImportHook.h"
#include "support/Input.h"
#include "support/LeakCheck.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>

namespace {

constexpr const wchar_t* library = L"CommonUi.dll";

bool IsFrench()
{
    return PRIMARYLANGID(::GetUserDefaultUILanguage()) == LANG_FRENCH;
}

HMODULE Host()
{
    return ::GetModuleHandleW(nullptr);
}

std::wstring TextOf(unsigned id, std::initializer_list<const wchar_t*> inserts = {})
{
    YReportMessageParams message(id, Host());
    for (const wchar_t* insert : inserts) {
        message.AddInsert(insert);
    }
    return message.GetText();
}

std::wstring Fallback(const wchar_t* hexadecimal)
{
    return (IsFrench() ? L"Impossible de r\xE9"
                         L"cup\xE9rer le texte du code d\x2019"
                         L"erreur 0x"
                       : L"Could not retrieve the error text for error code 0x") +
           std::wstring(hexadecimal) + L".\r\n";
}

}  // namespace

TEST(MessageLanguage, IsTheOneThatTheTestWasStartedFor)
{
    wchar_t locale[40] = L"";
    ::GetEnvironmentVariableW(L"COMMONUI_LOCALE", locale, 40);
    EXPECT_EQ(IsFrench(), std::wstring(locale).starts_with(L"fr"));
}

TEST(MessageLanguage, CanBeChosenByTheHost)
{
    YSetMessageLanguage(MAKELANGID(LANG_FRENCH, SUBLANG_FRENCH_CANADIAN));
    EXPECT_STREQ(YReportMessageParams(MSG_FIND_TITLE).GetText(), L"Rechercher\r\n");
    EXPECT_EQ(TextOf(TEST_TWELFTH), L"%12") << "there is no French one";
    YSetMessageLanguage(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US));
    EXPECT_STREQ(YReportMessageParams(MSG_FIND_TITLE).GetText(), L"Find\r\n");
    YSetMessageLanguage(MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT));
}

// The texts of others

TEST(YReportMessageParams, FillsInsertsOnlyWhenAllAreThere)
{
    const struct
    {
        unsigned id;
        std::initializer_list<const wchar_t*> inserts;
        const wchar_t* text;
    } cases[] = {{TEST_TWO_INSERTS, {L"a"}, L"%1 and %2\r\n"},
                 {TEST_TWO_INSERTS, {L"a", L"b"}, L"a and b\r\n"},
                 {TEST_TWO_INSERTS, {L"a", L"", L"c"}, L"a and \r\n"},
                 {TEST_TWO_INSERTS, {L"%2", L"%%"}, L"%2 and %%\r\n"},
                 {TEST_TWELFTH,
                  {L"1", L"2", L"3", L"4", L"5", L"6", L"7", L"8", L"9", L"10", L"11"},
                  L"%12"},
                 {TEST_PERCENT_AT_END, {}, L"all of it, 100%"}};
    for (const auto& c : cases) {
        EXPECT_EQ(TextOf(c.id, c.inserts), c.text);
    }
    // The width is an insert that the text does not name: nothing behind the inserts is read.
    EXPECT_NO_THROW(TextOf(TEST_STAR_WIDTH, {L"a"}));
}

TEST(YReportMessageParams, TrimsOneEndOnce)
{
    YReportMessageParams message(TEST_TWO_LINES, Host());
    EXPECT_STREQ(message.GetText(), L"first\r\nsecond\r\n\r\n");
    EXPECT_STREQ(message.GetTrimmedText(), L"first\r\nsecond\r\n");
    EXPECT_STREQ(message.GetTextSingleLine(), message.GetText()) << "the first form stays";

    YReportMessageParams line(TEST_TWO_INSERTS, Host());
    line.AddInsert(L"a");
    line.AddInsert(L"b");
    EXPECT_STREQ(line.GetTextSingleLine(), L"a and b ");
    EXPECT_STREQ(line.GetTrimmedTextSingleLine(), L"a and b");
}

TEST(YReportMessageParams, KeepsItsTextUntilItIsReset)
{
    YReportMessageParams message(ERROR_ACCESS_DENIED);
    const std::wstring denied = message.GetText();
    message.SetMessageId(ERROR_FILE_NOT_FOUND);
    message.AddInsert(L"x");
    EXPECT_EQ(message.GetText(), denied);
    EXPECT_NE(YReportMessageParams(message).GetText(), denied) << "a copy composes its own";

    message.SetUserValue(7);
    message.SetLocation(L"a.cpp", 12);
    message.SetErrorCode(ERROR_FILE_NOT_FOUND);
    EXPECT_NE(message.GetText(), denied);
    EXPECT_TRUE(message.GetInserts().empty());
    EXPECT_EQ(message.GetUserValue(), 0u);
    EXPECT_STREQ(message.GetTextWithLocation(TEST_LOCATION), message.GetText());
    message.SetLocation(L"a.cpp", 12);
    EXPECT_NE(
        std::wstring(message.GetTextWithLocation(MSG_FOLDER_DENIED)).find(message.GetTrimmedText()),
        std::wstring::npos);
}

TEST(YReportMessageParams, AssignTakesOverWhatACopyDoes)
{
    YReportMessageParams source(TEST_TWO_INSERTS, Host());
    source.AddInsert("a");
    source.AddFormattedInsert(L"%1!d!-%2", -5, L"b");
    source.SetUserValue(7);
    YReportMessageParams target(ERROR_ACCESS_DENIED);
    target.GetText();
    target.Assign(source);
    target.Assign(target);
    EXPECT_STREQ(target.GetText(), L"a and -5-b\r\n");
    EXPECT_EQ(target.GetUserValue(), 7u);
    EXPECT_THROW(target.AddFormattedInsert(L"%1!q", 1), InvalidParameter);
    EXPECT_EQ(target.GetInserts().size(), 2u);
}

// Where the text comes from

TEST(YReportMessageParams, HasATextForEveryCode)
{
    EXPECT_EQ(TextOf(0xE1337777), Fallback(L"e1337777"));
    EXPECT_EQ(YGetErrorText(ERROR_ACCESS_DENIED),
              IsFrench() ? L"Acc\xE8s refus\xE9." : L"Access denied.");
    for (unsigned code : {0u, 5u, 317u, 1812u, 1815u, 10035u, 15100u, 0x80004005u, 0xC0000005u}) {
        EXPECT_GT(std::wstring(YReportMessageParams(code).GetText()).size(), 4u) << code;
        EXPECT_FALSE(YGetErrorText(code).ends_with(L' ')) << code;
    }
    // The system's texts may refer to inserts that nobody has.
    EXPECT_NE(YGetErrorText(ERROR_BAD_EXE_FORMAT).find(L"%1"), std::wstring::npos);
}

namespace {

DWORD formatterError;

DWORD WINAPI FailingFormatter(DWORD, const void*, DWORD, DWORD, wchar_t*, DWORD, va_list*)
{
    ::SetLastError(formatterError);
    return 0;
}

DWORD WINAPI FormatterWithoutModules(DWORD flags, const void* source, DWORD id, DWORD language,
                                     wchar_t* buffer, DWORD size, va_list* arguments)
{
    if (flags & FORMAT_MESSAGE_FROM_HMODULE) {
        return FailingFormatter(0, nullptr, 0, 0, nullptr, 0, nullptr);
    }
    return ::FormatMessageW(flags, source, id, language, buffer, size, arguments);
}

}  // namespace

TEST(YReportMessageParams, FailuresOfTheFormatterEndInATextToo)
{
    {
        const ImportHook hook(library, "KERNEL32.dll", "FormatMessageW", &FormatterWithoutModules);
        const std::wstring plain =
            L"Could not retrieve the error text for error code 0xe133000b.\r\n";
        for (DWORD error : {317u, 1813u, 15100u}) {
            formatterError = error;
            EXPECT_EQ(TextOf(MSG_FOLDER_DENIED), plain) << error;
        }
        formatterError = ERROR_NOT_ENOUGH_MEMORY;  // the reason is the text
        EXPECT_EQ(TextOf(MSG_FOLDER_DENIED), YReportMessageParams(formatterError).GetText());
    }
    const ImportHook hook(library, "KERNEL32.dll", "FormatMessageW", &FailingFormatter);
    formatterError = ERROR_INVALID_PARAMETER;
    EXPECT_THROW(YFormatText(L"%1", 1), InvalidParameter);
    EXPECT_THROW(YFormatMessage(Host(), TEST_TWO_INSERTS, 0), InvalidParameter);
    formatterError = ERROR_RESOURCE_TYPE_NOT_FOUND;
    EXPECT_THROW(YFormatMessage(Host(), TEST_TWO_INSERTS, 0), MessageNotFound);
}

// The table: every text that the rest of the library relies on, in the language of this process.

TEST(MessageTable, HasTheTextsInTheUsersLanguage)
{
    const struct
    {
        unsigned id;
        unsigned value;
        const wchar_t* english;
        const wchar_t* french;
    } cases[] = {{MSG_CERTIFICATE_FILE_EXISTS, 0x6133000A,
                  L"The certificate file already exists.  Do you want to overwrite it?",
                  L"Le fichier de certificat existe d\xE9j\xE0.  Voulez-vous le remplacer ?"},
                 {MSG_END_OF_BUFFER, 0x61330019, L"End of buffer reached",
                  L"Fin de la m\xE9moire tampon atteinte"},
                 {MSG_FIND_TITLE, 0x61330024, L"Find", L"Rechercher"},
                 {MSG_COPY_SHORTCUT, 0x6133004C, L"Copy Shor&tcut", L"Copier le raccour&ci"},
                 {MSG_NO_TLS_VERSION, 0x6133006B, L"At least one TLS version must be checked.",
                  L"Au moins une version de TLS doit \xEAtre coch\xE9"
                  L"e."},
                 {MSG_UNEXPECTED_SOCKET_ERROR, 0xE1330001, L"Unexpected socket error.",
                  L"Erreur de socket inattendue."},
                 {MSG_CLIPBOARD_FAILURE, 0xE1330068, L"Generic clipboard failure.",
                  L"\xC9"
                  L"chec g\xE9n\xE9rique du presse-papiers."},
                 {MSG_CERTIFICATE_LIBRARY_NOT_AVAILABLE, 0xE10400CD,
                  L"The certificate library is not available.\r\n\r\n%1",
                  L"La biblioth\xE8que de certificats n\x2019"
                  L"est pas disponible.\r\n\r\n%1"}};
    for (const auto& c : cases) {
        EXPECT_EQ(c.id, c.value);
        YReportMessageParams message(c.id);
        EXPECT_EQ(message.GetText(), std::wstring(IsFrench() ? c.french : c.english) + L"\r\n");
    }
}

// Message boxes

namespace {

// Presses a button of the message box that appears, and tells what the box showed.
struct BoxWatch
{
    std::wstring caption;
    std::wstring text;
    CURSORINFO cursor{sizeof(CURSORINFO), 0, nullptr, {}};
} watched;

int buttonToPress = IDOK;

void CALLBACK PressButton(HWND, UINT, UINT_PTR timer, DWORD)
{
    const HWND box = ::FindWindowW(L"#32770", nullptr);
    if (!box) {
        return;
    }
    ::KillTimer(nullptr, timer);
    wchar_t text[400] = L"";
    ::GetWindowTextW(box, text, 400);
    watched.caption = text;
    ::GetDlgItemTextW(box, 0xFFFF, text, 400);
    watched.text = text;
    ::GetCursorInfo(&watched.cursor);
    ::PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(buttonToPress), 0);
}

int Answer(int button, const std::function<int()>& show)
{
    watched = {};
    buttonToPress = button;
    ::SetTimer(nullptr, 0, 20, &PressButton);
    return show();
}

unsigned shownStyle;
std::wstring shownCaption;
HWND shownOver;

int WINAPI RecordBox(HWND owner, const wchar_t*, const wchar_t* caption, UINT style)
{
    shownOver = owner;
    shownCaption = caption ? caption : L"";
    shownStyle = style;
    return IDIGNORE;
}

class MessageBoxTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(window.CreateEx(0, ::AfxRegisterWndClass(0), L"",
                                    WS_OVERLAPPEDWINDOW | WS_VISIBLE, 100, 100, 300, 200, nullptr,
                                    nullptr));
        PumpMessages();
    }
    void TearDown() override { window.DestroyWindow(); }

    CWnd window;
    YReportMessageParams message{MSG_FOLDER_NOT_VALID};
};

}  // namespace

TEST_F(MessageBoxTest, ShowsTheTextAndReturnsTheButton)
{
    message.AddInsert(L"C:\\x");
    ::ShowCursor(FALSE);
    EXPECT_EQ(Answer(IDNO, [&] { return YMessageBox(&window, &message, MB_YESNO, L"Question"); }),
              IDNO);
    EXPECT_EQ(watched.caption, L"Question");
    EXPECT_EQ(watched.text, message.GetText());
    EXPECT_EQ(watched.cursor.flags, static_cast<DWORD>(CURSOR_SHOWING));
    EXPECT_EQ(::ShowCursor(TRUE), 0) << "hidden again, once";
    EXPECT_EQ(Answer(IDOK, [&] { return YMessageBox(&message, MB_OK); }), IDOK);
}

TEST_F(MessageBoxTest, ChoosesIconAndCaption)
{
    const ImportHook parentBox(L"CommonFramework.dll", "USER32.dll", "MessageBoxW", &RecordBox);
    const std::pair<unsigned, unsigned> cases[] = {{MB_OK, MB_ICONEXCLAMATION},
                                                   {MB_YESNOCANCEL, MB_ICONQUESTION},
                                                   {MB_YESNO | MB_DEFBUTTON2, MB_ICONQUESTION},
                                                   {MB_YESNO | MB_ICONERROR, 0}};
    for (const auto& [style, icon] : cases) {
        EXPECT_EQ(YMessageBox(&window, &message, style), IDIGNORE);
        EXPECT_EQ(shownStyle, style | icon);
        EXPECT_EQ(shownCaption, YGetAppName());
        EXPECT_EQ(shownOver, window.m_hWnd);
    }
    EXPECT_EQ(YMessageBox(static_cast<CWnd*>(nullptr), &message, MB_OK), IDIGNORE);
}
