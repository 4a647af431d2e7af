// The certificate dialog, filled in by the keyboard; what it writes is read back.
#include "autocomplete/PopupKit.h"
#include "backends/ScratchFolder.h"
#include "support/DialogLayout.h"
#include "support/ImportHook.h"
#include "support/LeakCheck.h"
#include "support/ScriptedModal.h"

#include <YMessages.h>
#include <YProfileWindowPlacement.h>
#include <YReportMessageParams.h>
#include <YUniqueHandle.h>
#include <certificates/CertificateDialogIds.h>
#include <certificates/CreateCertificateDialog.h>
#include <certificates/YCertificatePath.h>
#include <gtest/gtest.h>
#include <openssl/YCertificateOpenSsl.h>

#include <commdlg.h>
#include <tlhelp32.h>

#include <ctime>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace {

namespace fs = std::filesystem;

std::wstring shownMessage;
int shownMessages = 0;
int answer = IDOK;

int WINAPI RecordMessage(HWND, LPCWSTR text, LPCWSTR, UINT)
{
    shownMessage = text;
    ++shownMessages;
    return answer;
}

// Of this process.
int CountThreads()
{
    const YUniqueKernelHandle snapshot(::CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
    THREADENTRY32 entry{};
    entry.dwSize = sizeof entry;
    int count = 0;
    for (BOOL more = ::Thread32First(snapshot.Get(), &entry); more;
         more = ::Thread32Next(snapshot.Get(), &entry)) {
        count += entry.th32OwnerProcessID == ::GetCurrentProcessId();
    }
    return count;
}

class TestDialog : public ScriptedModal<CreateCertificateDialog>
{
public:
    using ScriptedModal::ScriptedModal;

    HWND Control(int id) { return ::GetDlgItem(*this, id); }
    void Type(int id, const std::wstring& text)
    {
        ::SetFocus(Control(id));
        ::SendMessageW(Control(id), EM_SETSEL, 0, -1);
        TypeText(text);
    }
    std::wstring Explanation()
    {
        std::wstring text(300, L'\0');
        text.resize(static_cast<std::size_t>(
            ::GetWindowTextW(Control(CERTIFICATE_EXPLANATION), text.data(), 300)));
        return text;
    }
};

constexpr std::uint8_t withRequest = YCertificateParameters::requestFlag;

class CertificateDialogTest : public testing::Test
{
protected:
    CertificateDialogTest() : path(folder.GetPath() + L"\\host")
    {
        shownMessages = 0;
        answer = IDOK;
    }
    template <class Script>
    INT_PTR Run(Script script, std::uint8_t flags = withRequest)
    {
        TestDialog dialog(L"Test Product", SslLib::OpenSsl, flags, placement, nullptr);
        dialog.script = [&] { script(dialog); };
        const INT_PTR result = dialog.DoModal();
        written = dialog.GetPath().c_str();
        return result;
    }
    // The smallest key, to be quick.
    void Fill(TestDialog& dialog)
    {
        dialog.Type(CERTIFICATE_COMMON_NAME, L"host.example.org");
        dialog.Type(CERTIFICATE_PATH, path);
        ::SetFocus(dialog.Control(CERTIFICATE_KEY_SIZE));
        TypeKey(VK_HOME);
    }
    // By Return, until the dialog has ended or has told why not.
    static void Generate(TestDialog& dialog)
    {
        const HWND window = dialog;
        TypeKey(VK_RETURN);
        const auto isOver = [&] {
            return !::IsWindow(window) || ::IsWindowEnabled(dialog.Control(CERTIFICATE_GENERATE));
        };
        EXPECT_TRUE(PumpUntil(isOver, 60'000));
    }

    ScratchFolder folder;
    std::wstring path;
    std::wstring written;
    YProfileWindowPlacement* placement = nullptr;
    const ImportHook messages{L"CommonFramework.dll", "user32.dll", "MessageBoxW", &RecordMessage};
};

}  // namespace

TEST_F(CertificateDialogTest, WritesWhatItsUserHasEntered)
{
    constexpr std::int64_t day = 86'400;  // seconds
    const std::int64_t now = std::time(nullptr);
    const INT_PTR result = Run([&](TestDialog& dialog) {
        Fill(dialog);
        dialog.Type(CERTIFICATE_ORGANIZATION, L"Soci\xE9t\xE9 \x682A\x5F0F");
        dialog.Type(CERTIFICATE_ORGANIZATIONAL_UNIT, L" Unit ");
        dialog.Type(CERTIFICATE_COUNTRY, L"FRA");  // the third letter does not fit
        dialog.Type(CERTIFICATE_STATE, L"State");
        dialog.Type(CERTIFICATE_LOCALITY, L"Town");
        dialog.Type(CERTIFICATE_EMAIL, L"who@example.org");
        ::SetFocus(dialog.Control(CERTIFICATE_ALGORITHM));
        TypeKey(VK_HOME);  // SHA-1
        Generate(dialog);
    });
    EXPECT_EQ(result, IDOK);
    EXPECT_EQ(shownMessages, 0) << shownMessage;
    EXPECT_EQ(written, path + L".pfx");
    EXPECT_TRUE(fs::exists(path + L".csr"));
    YReportMessageParams error;
    const auto certificate = OpenSSL::YCertificate::Load(written.c_str(), error);
    ASSERT_TRUE(certificate) << error.GetText();
    const YCertificateContextBase& context = certificate->GetContext();
    using Name = YCertificateNameBase;
    const auto subject = context.GetSubject();
    const wchar_t* const expected[] = {
        L"host.example.org", L"Soci\xE9t\xE9 \x682A\x5F0F", L"Unit", L"FR", L"Town", L"State",
        L"who@example.org"};
    for (int field = 0; field < Name::fieldCount; ++field) {
        EXPECT_STREQ(subject->GetField(static_cast<Name::Field>(field)).c_str(), expected[field]);
    }
    EXPECT_EQ(context.GetPublicKeyBits(), 1024u);
    EXPECT_GE(context.GetNotAfter(), now + 364 * day);
    EXPECT_LE(context.GetNotAfter(), now + 367 * day);

    EXPECT_EQ(Run(
                  [&](TestDialog& dialog) {
                      path = folder.GetPath() + L"\\other.P12";
                      Fill(dialog);
                      Generate(dialog);
                  },
                  0),
              IDOK);
    EXPECT_EQ(written, path);
    EXPECT_FALSE(fs::exists(folder.GetPath() + L"\\other.csr"));
}

TEST_F(CertificateDialogTest, RefusesWhatACertificateCannotCarry)
{
    Run([&](TestDialog& dialog) {
        const auto refuses = [&](int control, unsigned messageId) {
            const int before = shownMessages;
            TypeKey(VK_RETURN);
            EXPECT_EQ(shownMessages, before + 1);
            const std::wstring text = YReportMessageParams(messageId).GetTrimmedText();
            EXPECT_EQ(shownMessage.find(text.substr(0, 12)), 0u) << messageId;
            EXPECT_EQ(::GetFocus(), dialog.Control(control));
        };
        Fill(dialog);
        dialog.Type(CERTIFICATE_COMMON_NAME, L" ");
        refuses(CERTIFICATE_COMMON_NAME, MSG_COMMON_NAME_MISSING);
        dialog.Type(CERTIFICATE_COMMON_NAME, std::wstring(65, L'x'));
        refuses(CERTIFICATE_COMMON_NAME, MSG_FIELD_TOO_LONG);
        dialog.Type(CERTIFICATE_COMMON_NAME, L"x");
        dialog.Type(CERTIFICATE_COUNTRY, L"F");
        refuses(CERTIFICATE_COUNTRY, MSG_COUNTRY_NOT_VALID);
        dialog.Type(CERTIFICATE_COUNTRY, L"FR");
        for (const wchar_t* const relative : {L" ", L"host", L"C:host", L"\\host"}) {
            dialog.Type(CERTIFICATE_PATH, relative);
            refuses(CERTIFICATE_PATH, MSG_CERTIFICATE_PATH_NOT_FULL);
        }
        dialog.Type(CERTIFICATE_PATH, folder.GetPath() + L"\\no folder\\host");
        Generate(dialog);  // made, but not to be written
        EXPECT_EQ(shownMessages, 8);
        EXPECT_TRUE(dialog.IsWindowVisible());
    });
    EXPECT_TRUE(fs::is_empty(folder.GetPath()));
}

TEST_F(CertificateDialogTest, AsksBeforeItOverwrites)
{
    std::ofstream(fs::path(path + L".pfx")) << "old";
    Run([&](TestDialog& dialog) {
        Fill(dialog);
        answer = IDNO;
        TypeKey(VK_RETURN);
        EXPECT_EQ(shownMessages, 1);
        EXPECT_TRUE(::IsWindowEnabled(dialog.Control(CERTIFICATE_GENERATE)));
        EXPECT_EQ(fs::file_size(path + L".pfx"), 3u);
        EXPECT_EQ(shownMessage.find(L"The certificate file already exists.  Do you want"), 0u);
        answer = IDYES;
        Generate(dialog);
    });
    EXPECT_EQ(shownMessages, 2);
    EXPECT_GT(fs::file_size(path + L".pfx"), 500u);
}

// The largest key takes seconds; the window answers all the time, and Escape gives up at once.
TEST_F(CertificateDialogTest, CancelGivesUpWhileTheKeyIsMade)
{
    const auto giveUp = [&] {
        return Run([&](TestDialog& dialog) {
            Fill(dialog);
            ::SetFocus(dialog.Control(CERTIFICATE_KEY_SIZE));
            TypeKey(VK_END);
            const ULONGLONG start = ::GetTickCount64();
            TypeKey(VK_RETURN);
            EXPECT_LT(::GetTickCount64() - start, 1'000u);
            for (const int id :
                 {CERTIFICATE_COMMON_NAME, CERTIFICATE_ALGORITHM, CERTIFICATE_GENERATE}) {
                EXPECT_FALSE(::IsWindowEnabled(dialog.Control(id)));
            }
            EXPECT_TRUE(::IsWindowVisible(dialog.Control(CERTIFICATE_PROGRESS)));
            EXPECT_EQ(::GetFocus(), dialog.Control(IDCANCEL));
            TypeKey(VK_ESCAPE);
        });
    };
    const auto settle = [&] {  // the thread ends by itself
        CWinThread().OnIdle(1);  // the framework's temporary objects go
        EXPECT_TRUE(PumpUntil([] { return CountThreads() == 1; }, 120'000));
    };
    EXPECT_EQ(giveUp(), IDCANCEL);
    settle();
    {
        const LeakCheck check;
        giveUp();
        settle();
    }
    EXPECT_TRUE(fs::is_empty(folder.GetPath()));
}

TEST_F(CertificateDialogTest, ExplainsTheFieldThatHasTheFocusAndShowsAllOfIt)
{
    Run([&](TestDialog& dialog) {
        EXPECT_EQ(::GetFocus(), dialog.Control(CERTIFICATE_COMMON_NAME));
        std::wstring last;
        for (int id = CERTIFICATE_COMMON_NAME; id <= CERTIFICATE_ALGORITHM; ++id) {
            ::SetFocus(dialog.Control(id));
            PumpMessages();
            const bool isOfPath = id == CERTIFICATE_BROWSE;
            EXPECT_EQ(dialog.Explanation() == last, isOfPath) << id;
            EXPECT_EQ(dialog.Explanation().empty(), id == CERTIFICATE_ALGORITHM) << id;
            EXPECT_EQ(FindLayoutFaults(dialog), std::vector<std::string>()) << id;
            last = dialog.Explanation();
        }
        EXPECT_EQ(FindKeyboardFaults(dialog), std::vector<std::string>());
        EXPECT_NE(GetTextOf(dialog.Control(CERTIFICATE_INTRODUCTION)).find(L"certificat"),
                  std::wstring::npos);
    });
}

namespace {

std::wstring chosenPath;
std::wstring fileDialogTitle;

BOOL WINAPI ChooseFile(OPENFILENAMEW* choice)
{
    fileDialogTitle = choice->lpstrTitle;
    chosenPath.copy(choice->lpstrFile, chosenPath.size());
    choice->lpstrFile[chosenPath.size()] = L'\0';
    return !chosenPath.empty();
}

}  // namespace

TEST_F(CertificateDialogTest, APathIsBrowsedForAndCompleted)
{
    const ImportHook chooser(L"CommonFramework.dll", "comdlg32.dll", "GetSaveFileNameW",
                             &ChooseFile);
    Run([&](TestDialog& dialog) {
        chosenPath = L"C:\\chosen.pfx";
        TypeChord({VK_MENU, 'B'});
        EXPECT_EQ(GetTextOf(dialog.Control(CERTIFICATE_PATH)), chosenPath);
        EXPECT_EQ(fileDialogTitle, L"Select Certificate File");
        chosenPath.clear();  // cancelled
        TypeChord({VK_MENU, 'B'});
        EXPECT_EQ(GetTextOf(dialog.Control(CERTIFICATE_PATH)), L"C:\\chosen.pfx");
    });
    const wchar_t* const cases[][2] = {
        {L"C:\\certs\\host", L"C:\\certs\\host.pfx"}, {L"C:\\certs\\host.", L"C:\\certs\\host.pfx"},
        {L"C:\\x\\cert.P12", L"C:\\x\\cert.P12"},     {L"C:\\x\\cert.PfX", L"C:\\x\\cert.PfX"},
        {L"C:\\x\\cert.pem", L"C:\\x\\cert.pem.pfx"}, {L"C:\\a.pfx\\host", L"C:\\a.pfx\\host.pfx"},
        {L"C:\\x\\pfx", L"C:\\x\\pfx.pfx"},
    };
    for (const auto& [typed, complete] : cases) {
        EXPECT_STREQ(YCompleteCertificatePath(YUnicodeString(typed)).c_str(), complete);
    }
}

TEST_F(CertificateDialogTest, ComesBackWhereItWasAndHasThreeKeySizes)
{
    YProfileWindowPlacement remembered(L"Certificate");
    placement = &remembered;
    CRect left;
    Run([&](TestDialog& dialog) {
        dialog.GetWindowRect(&left);
        left.InflateRect(0, 0, 90, 40);
        dialog.MoveWindow(&left);
        EXPECT_EQ(FindLayoutFaults(dialog), std::vector<std::string>());
        EXPECT_EQ(::SendMessageW(dialog.Control(CERTIFICATE_KEY_SIZE), CB_GETCOUNT, 0, 0), 3);
    });
    Run([&](TestDialog& dialog) {
        CRect now;
        dialog.GetWindowRect(&now);
        EXPECT_EQ(now.Size(), left.Size());
    });
    YUnicodeString text;
    EXPECT_TRUE(CreateCertificateDialog::GetKeySizeDisplayString(2, text));
    EXPECT_STREQ(text.c_str(), L"4096");
    EXPECT_FALSE(CreateCertificateDialog::GetKeySizeDisplayString(3, text));
}
