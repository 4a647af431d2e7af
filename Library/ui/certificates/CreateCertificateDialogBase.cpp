#include "certificates/CreateCertificateDialogBase.h"

#include "YMessageBox.h"
#include "YMessages.h"
#include "YReportMessageParams.h"
#include "certificates/CertificateDialogIds.h"
#include "certificates/CertificateGeneration.h"
#include "certificates/YCertificatePath.h"

#include <afxcmn.h>
#include <afxdtctl.h>
#include <afxlayout.h>

#include <iterator>
#include <string>

IMPLEMENT_DYNAMIC(CreateCertificateDialogBase, YDialog)

BEGIN_MESSAGE_MAP(CreateCertificateDialogBase, YDialog)
    ON_CONTROL_RANGE(EN_SETFOCUS, CERTIFICATE_COMMON_NAME, CERTIFICATE_PATH,
                     &CreateCertificateDialogBase::OnFieldFocus)
    ON_CONTROL_RANGE(BN_SETFOCUS, CERTIFICATE_BROWSE, CERTIFICATE_BROWSE,
                     &CreateCertificateDialogBase::OnFieldFocus)
    ON_CONTROL_RANGE(CBN_SETFOCUS, CERTIFICATE_KEY_SIZE, CERTIFICATE_ALGORITHM,
                     &CreateCertificateDialogBase::OnFieldFocus)
    ON_NOTIFY(NM_SETFOCUS, CERTIFICATE_EXPIRATION, &CreateCertificateDialogBase::OnDateFocus)
    ON_BN_CLICKED(CERTIFICATE_GENERATE, &CreateCertificateDialogBase::OnGenerateClicked)
    ON_BN_CLICKED(CERTIFICATE_BROWSE, &CreateCertificateDialogBase::OnBrowseClicked)
    ON_WM_TIMER()
    ON_WM_DESTROY()
END_MESSAGE_MAP()

namespace {

constexpr unsigned keySizes[] = {1024, 2048, 4096};
constexpr int usualKeySize = 1;
constexpr int longestCountry = 2;  // characters
constexpr UINT_PTR doneTimer = 1;
constexpr UINT doneInterval = 50;  // milliseconds between two looks whether it is done
constexpr int barInterval = 30;  // milliseconds between two steps of the bar

struct Algorithm
{
    unsigned messageId;
    const char* identifier;
};

constexpr Algorithm algorithms[] = {
    {MSG_SHA_1, YCertificateParameters::sha1WithRsa},
    {MSG_SHA_2, YCertificateParameters::sha256WithRsa},
};
constexpr int usualAlgorithm = 1;

struct Explanation
{
    int controlId;
    unsigned messageId;
};

constexpr Explanation explanations[] = {
    {CERTIFICATE_COMMON_NAME, MSG_EXPLAIN_COMMON_NAME},
    {CERTIFICATE_ORGANIZATION, MSG_EXPLAIN_ORGANIZATION},
    {CERTIFICATE_ORGANIZATIONAL_UNIT, MSG_EXPLAIN_ORGANIZATIONAL_UNIT},
    {CERTIFICATE_COUNTRY, MSG_EXPLAIN_COUNTRY},
    {CERTIFICATE_STATE, MSG_EXPLAIN_STATE},
    {CERTIFICATE_LOCALITY, MSG_EXPLAIN_LOCALITY},
    {CERTIFICATE_EMAIL, MSG_EXPLAIN_EMAIL},
    {CERTIFICATE_PATH, MSG_EXPLAIN_PATH},
    {CERTIFICATE_BROWSE, MSG_EXPLAIN_PATH},
    {CERTIFICATE_EXPIRATION, MSG_EXPLAIN_EXPIRATION},
    {CERTIFICATE_KEY_SIZE, MSG_EXPLAIN_KEY_SIZE},
};

// Where the field of a name is typed, in the order of YCertificateNameBase.
constexpr int nameControls[] = {
    CERTIFICATE_COMMON_NAME, CERTIFICATE_ORGANIZATION, CERTIFICATE_ORGANIZATIONAL_UNIT,
    CERTIFICATE_COUNTRY,     CERTIFICATE_LOCALITY,     CERTIFICATE_STATE,
    CERTIFICATE_EMAIL,
};

std::wstring LoadText(unsigned messageId)
{
    return YReportMessageParams(messageId).GetTrimmedText();
}

// A year from now; from the 29th of February to the 28th.
SYSTEMTIME GetUsualExpiration()
{
    SYSTEMTIME time{};
    ::GetLocalTime(&time);
    ++time.wYear;
    FILETIME valid{};
    if (!::SystemTimeToFileTime(&time, &valid)) {
        --time.wDay;
    }
    return time;
}

// Seconds since 1970, UTC.
std::int64_t ToSeconds(const SYSTEMTIME& local)
{
    constexpr std::int64_t ticksPerSecond = 10'000'000;
    constexpr std::int64_t secondsFrom1601To1970 = 11'644'473'600;
    SYSTEMTIME universal{};
    FILETIME file{};
    ::TzSpecificLocalTimeToSystemTime(nullptr, &local, &universal);
    ::SystemTimeToFileTime(&universal, &file);
    const std::int64_t ticks =
        static_cast<std::int64_t>(file.dwHighDateTime) << 32 | file.dwLowDateTime;
    return ticks / ticksPerSecond - secondsFrom1601To1970;
}

// "C:\\..." or "\\\\server\\...": whatever the current folder is.
bool IsFullPath(const CString& path)
{
    const bool isOnDrive =
        path.GetLength() > 3 && path[1] == L':' && (path[2] == L'\\' || path[2] == L'/');
    const bool isOnServer = path.GetLength() > 2 && path[0] == L'\\' && path[1] == L'\\';
    return isOnDrive || isOnServer;
}

bool Exists(const wchar_t* path)
{
    return ::GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES;
}

// The template's classes, before there is a window of them.
void RegisterControls()
{
    const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_DATE_CLASSES | ICC_PROGRESS_CLASS};
    ::InitCommonControlsEx(&classes);
}

}  // namespace

CreateCertificateDialogBase::CreateCertificateDialogBase(const wchar_t* productName, SslLib library,
                                                         std::uint8_t flags,
                                                         YProfileWindowPlacement* placement,
                                                         CWnd* parent, unsigned templateId,
                                                         HINSTANCE module)
    : YDialog(templateId, module, parent, placement),
      expiration(GetUsualExpiration()),
      keySizeIndex(usualKeySize),
      sslLib(library),
      creationFlags(flags),
      product(productName)
{
    RegisterControls();
}

CreateCertificateDialogBase::~CreateCertificateDialogBase() = default;

bool CreateCertificateDialogBase::GetKeySizeDisplayString(unsigned index, YUnicodeString& text)
{
    if (index >= std::size(keySizes)) {
        return false;
    }
    text = YUnicodeString(std::to_wstring(keySizes[index]));
    return true;
}

// Opening and closing

// The lists are filled before the entries are shown in them.
BOOL CreateCertificateDialogBase::OnInitDialog()
{
    auto& sizes = static_cast<CComboBox&>(*GetDlgItem(CERTIFICATE_KEY_SIZE));
    YUnicodeString size;
    for (unsigned i = 0; GetKeySizeDisplayString(i, size); ++i) {
        sizes.AddString(size.c_str());
    }
    auto& list = static_cast<CComboBox&>(*GetDlgItem(CERTIFICATE_ALGORITHM));
    for (const Algorithm& algorithm : algorithms) {
        const int index = list.AddString(LoadText(algorithm.messageId).c_str());
        list.SetItemData(index, reinterpret_cast<DWORD_PTR>(algorithm.identifier));
    }
    list.SetCurSel(usualAlgorithm);
    YReportMessageParams introduction(MSG_CERTIFICATE_INTRODUCTION);
    introduction.AddInsert(product.c_str());
    GetDlgItem(CERTIFICATE_INTRODUCTION)->SetWindowText(introduction.GetTrimmedText());
    ShowExplanation(CERTIFICATE_COMMON_NAME);
    return GetPlacement() ? InitDynamicLayoutDialog() : YDialog::OnInitDialog();
}

void CreateCertificateDialogBase::AddToDynamicLayout()
{
    using Layout = CMFCDynamicLayout;
    Layout& layout = *GetDynamicLayout();
    for (int id = CERTIFICATE_COMMON_NAME; id <= CERTIFICATE_PATH; ++id) {
        if (id != CERTIFICATE_COUNTRY) {
            layout.AddItem(static_cast<UINT>(id), Layout::MoveNone(), Layout::SizeHorizontal());
        }
    }
    layout.AddItem(UINT{CERTIFICATE_INTRODUCTION}, Layout::MoveNone(), Layout::SizeHorizontal());
    layout.AddItem(UINT{CERTIFICATE_BROWSE}, Layout::MoveHorizontal(), Layout::SizeNone());
    for (const UINT id : {UINT{CERTIFICATE_EXPLANATION_FRAME}, UINT{CERTIFICATE_EXPLANATION}}) {
        layout.AddItem(id, Layout::MoveNone(), Layout::SizeHorizontalAndVertical());
    }
    layout.AddItem(UINT{CERTIFICATE_PROGRESS}, Layout::MoveVertical(), Layout::SizeHorizontal());
    for (const UINT id : {UINT{CERTIFICATE_GENERATE}, UINT{IDCANCEL}}) {
        layout.AddItem(id, Layout::MoveHorizontalAndVertical(), Layout::SizeNone());
    }
}

// A generation goes on by itself and ends with nobody to ask for it.
void CreateCertificateDialogBase::OnDestroy()
{
    generation.Reset();
    SaveDynamicLayoutDialogPlacement();
    YDialog::OnDestroy();
}

void CreateCertificateDialogBase::OnOK()
{
    OnGenerate();
}

void CreateCertificateDialogBase::OnCancel()
{
    generation.Reset();
    YDialog::OnCancel();
}

// Entries

void CreateCertificateDialogBase::DoDataExchange(CDataExchange* exchange)
{
    YDialog::DoDataExchange(exchange);
    DDX_Text(exchange, CERTIFICATE_COMMON_NAME, commonName);
    DDX_Text(exchange, CERTIFICATE_ORGANIZATION, organization);
    DDX_Text(exchange, CERTIFICATE_ORGANIZATIONAL_UNIT, organizationalUnit);
    DDX_Text(exchange, CERTIFICATE_COUNTRY, country);
    DDV_MaxChars(exchange, country, longestCountry);
    DDX_Text(exchange, CERTIFICATE_STATE, state);
    DDX_Text(exchange, CERTIFICATE_LOCALITY, locality);
    DDX_Text(exchange, CERTIFICATE_EMAIL, email);
    DDX_Text(exchange, CERTIFICATE_PATH, path);
    auto& date = static_cast<CDateTimeCtrl&>(*GetDlgItem(CERTIFICATE_EXPIRATION));
    if (exchange->m_bSaveAndValidate) {
        date.GetTime(&expiration);
    } else {
        date.SetTime(&expiration);
    }
    DDX_CBIndex(exchange, CERTIFICATE_KEY_SIZE, keySizeIndex);
    int failedControl = 0;
    if (exchange->m_bSaveAndValidate && !SaveAndValidate(failedControl)) {
        exchange->PrepareEditCtrl(failedControl);
        exchange->Fail();
    }
}

YCertificateNameBase CreateCertificateDialogBase::CollectName() const
{
    YCertificateNameBase name;
    const CString* const texts[] = {
        &commonName, &organization, &organizationalUnit, &country, &locality, &state, &email};
    for (int field = 0; field < YCertificateNameBase::fieldCount; ++field) {
        CString text = *texts[field];
        text.Trim();
        name.SetField(static_cast<YCertificateNameBase::Field>(field),
                      YUnicodeString(text.GetString()));
    }
    return name;
}

bool CreateCertificateDialogBase::SaveAndValidate(int& failedControl)
{
    YCertificateNameBase::Field failed{};
    YReportMessageParams error;
    if (!CollectName().Validate(failed, error)) {
        failedControl = nameControls[failed];
        YMessageBox(this, &error);
        return false;
    }
    path.Trim();
    if (!IsFullPath(path)) {
        failedControl = CERTIFICATE_PATH;
        const YReportMessageParams message(MSG_CERTIFICATE_PATH_NOT_FULL);
        YMessageBox(this, &message);
        return false;
    }
    return true;
}

bool CreateCertificateDialogBase::InitializeCertificateName(YCertificateNameBase& name,
                                                            YReportMessageParams& error)
{
    YCertificateNameBase::Field failed{};
    name = CollectName();
    return name.Validate(failed, error);
}

const char* CreateCertificateDialogBase::GetAlgorithm() const
{
    const auto& list = static_cast<const CComboBox&>(*GetDlgItem(CERTIFICATE_ALGORITHM));
    return reinterpret_cast<const char*>(list.GetItemData(list.GetCurSel()));
}

void CreateCertificateDialogBase::OnFieldFocus(UINT controlId)
{
    ShowExplanation(static_cast<int>(controlId));
}

void CreateCertificateDialogBase::OnDateFocus(NMHDR*, LRESULT* result)
{
    ShowExplanation(CERTIFICATE_EXPIRATION);
    *result = 0;
}

// A field without an explanation, the algorithm, leaves none of another one behind.
void CreateCertificateDialogBase::ShowExplanation(int controlId)
{
    std::wstring text;
    for (const Explanation& explanation : explanations) {
        if (explanation.controlId == controlId) {
            text = LoadText(explanation.messageId);
        }
    }
    GetDlgItem(CERTIFICATE_EXPLANATION)->SetWindowText(text.c_str());
}

void CreateCertificateDialogBase::OnBrowseClicked()
{
    OnBrowse();
}

void CreateCertificateDialogBase::OnBrowse()
{
    CWnd& field = *GetDlgItem(CERTIFICATE_PATH);
    CString typed;
    field.GetWindowText(typed);
    YUnicodeString chosen(typed.GetString());
    if (BrowseForCertificateFile(this, LoadText(MSG_SELECT_CERTIFICATE_FILE).c_str(), chosen)) {
        field.SetWindowText(chosen.c_str());
    }
}

// Generation

void CreateCertificateDialogBase::OnGenerateClicked()
{
    OnGenerate();
}

void CreateCertificateDialogBase::OnGenerate()
{
    if (generation || !UpdateData(TRUE)) {
        return;
    }
    writtenPath = YCompleteCertificatePath(YUnicodeString(path.GetString()));
    if (MayWrite()) {
        StartGeneration();
    }
}

// Asks before an old file is overwritten.
bool CreateCertificateDialogBase::MayWrite()
{
    if (!Exists(writtenPath.c_str())) {
        return true;
    }
    const YReportMessageParams question(MSG_CERTIFICATE_FILE_EXISTS);
    return YMessageBox(this, &question, MB_YESNO) == IDYES;
}

void CreateCertificateDialogBase::StartGeneration()
{
    YCertificateNameBase name;
    YReportMessageParams error;
    if (!InitializeCertificateName(name, error)) {
        YMessageBox(this, &error);
        return;
    }
    YCertificateParameters parameters;
    parameters.expiration = ToSeconds(expiration);
    parameters.flags = creationFlags;
    parameters.keyBits = keySizes[keySizeIndex];
    parameters.signatureAlgorithm = GetAlgorithm();
    generation = YUnknownPointer<CertificateGeneration>::Make(sslLib, name, parameters);
    ShowGenerating(true);
    generation->Start();
    if (generation->IsDone() || !SetTimer(doneTimer, doneInterval)) {
        FinishGeneration();
    }
}

void CreateCertificateDialogBase::OnTimer(UINT_PTR timer)
{
    if (timer == doneTimer && generation && generation->IsDone()) {
        FinishGeneration();
    }
}

// Without a timer there is nothing to do but to wait.
void CreateCertificateDialogBase::FinishGeneration()
{
    while (!generation->IsDone()) {
        ::Sleep(doneInterval);
    }
    KillTimer(doneTimer);
    YReportMessageParams error;
    const YUnknownPointer<YCertificateBase> certificate = generation->Take(error);
    generation.Reset();
    ShowGenerating(false);
    if (certificate && certificate->Save(writtenPath.c_str(), error)) {
        EndDialog(IDOK);
    } else {
        YMessageBox(this, &error);
    }
}

// The focus is in no control that is disabled, so that Escape is heard.
void CreateCertificateDialogBase::ShowGenerating(bool on)
{
    CWnd* const focus = GetFocus();
    if (on) {
        GotoDlgCtrl(GetDlgItem(IDCANCEL));
    }
    for (CWnd* control = GetWindow(GW_CHILD); control; control = control->GetWindow(GW_HWNDNEXT)) {
        if (control->GetDlgCtrlID() != IDCANCEL) {
            control->EnableWindow(!on);
        }
    }
    auto& bar = static_cast<CProgressCtrl&>(*GetDlgItem(CERTIFICATE_PROGRESS));
    bar.EnableWindow();
    bar.ShowWindow(on ? SW_SHOW : SW_HIDE);
    bar.SetMarquee(on, barInterval);
    if (!on && focus) {
        GotoDlgCtrl(GetDlgItem(CERTIFICATE_GENERATE));
    }
}
