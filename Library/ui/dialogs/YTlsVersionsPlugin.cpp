#include "dialogs/YTlsVersionsPlugin.h"

#include "YMessageBox.h"
#include "YMessages.h"
#include "YModule.h"
#include "YProfileTlsVersions.h"
#include "YReportMessageParams.h"
#include "dialogs/TlsVersionsIds.h"

#include <memory>

IMPLEMENT_DYNAMIC(YTlsVersionsPluginBase, YPluginDialog)
IMPLEMENT_DYNAMIC(YTlsVersionsPlugin, YTlsVersionsPluginBase)

YTlsVersionsPluginBase::YTlsVersionsPluginBase(YProfileTlsVersions* edited)
    : YPluginDialog(TLS_VERSIONS_DIALOG, YGetLibraryModule()), value(edited)
{}

YTlsVersionsPluginBase::~YTlsVersionsPluginBase() = default;

YTlsVersionsPlugin::YTlsVersionsPlugin(int placeholderId, YProfileTlsVersions* edited)
    : YTlsVersionsPluginBase(edited), placeholder(placeholderId)
{}

YTlsVersionsPlugin::~YTlsVersionsPlugin() = default;

// A creation that fails deletes the object as well: PostNcDestroy.
YTlsVersionsPlugin* YTlsVersionsPlugin::Create(CDialog* parent, int placeholderId,
                                               YProfileTlsVersions* value)
{
    auto* const plugin = new YTlsVersionsPlugin(placeholderId, value);
    return plugin->CreateChild(parent) ? plugin : nullptr;
}

BOOL YTlsVersionsPlugin::OnInitDialog()
{
    const BOOL setsFocus = YTlsVersionsPluginBase::OnInitDialog();
    InitSize();
    PopulateListBox();
    if (tooltip.CToolTipCtrl::Create(this)) {
        tooltip.Activate(TRUE);
    }
    return setsFocus;
}

// Into the place that the page keeps for it; there the frame takes all, the list what is inside.
void YTlsVersionsPlugin::InitSize()
{
    CRect place;
    if (CWnd* const kept = GetParent()->GetDlgItem(placeholder)) {
        kept->GetWindowRect(&place);
        GetParent()->ScreenToClient(&place);
        SetWindowPos(kept, place.left, place.top, place.Width(), place.Height(), SWP_NOACTIVATE);
    }
    CRect inside;
    GetClientRect(&inside);
    inside.DeflateRect(1, 1);
    GetDlgItem(TLS_VERSIONS_FRAME)->MoveWindow(0, 0, inside.Width(), inside.Height());
    inside.DeflateRect(1, 1);
    list.MoveWindow(1, 1, inside.Width(), inside.Height());
}

void YTlsVersionsPlugin::PopulateListBox()
{
    list.ResetContent();
    const DWORD mask = GetValue().GetMask();
    for (const auto* version = YProfileTlsVersions::GetVersions(); version->name; ++version) {
        AddListItem(version->name, (mask & version->bit) != 0, version->bit);
    }
}

void YTlsVersionsPlugin::AddListItem(const wchar_t* text, bool checked, DWORD bit)
{
    const int line = list.AddString(text);
    list.SetItemData(line, bit);
    list.SetCheck(line, checked ? BST_CHECKED : BST_UNCHECKED);
}

DWORD YTlsVersionsPlugin::GetCheckedBits() const
{
    DWORD bits = 0;
    for (int line = 0; line < list.GetCount(); ++line) {
        if (list.GetCheck(line) == BST_CHECKED) {
            bits |= static_cast<DWORD>(list.GetItemData(line));
        }
    }
    return bits;
}

void YTlsVersionsPlugin::DoDataExchange(CDataExchange* exchange)
{
    YTlsVersionsPluginBase::DoDataExchange(exchange);
    DDX_Control(exchange, TLS_VERSIONS_LIST, list);
    if (!exchange->m_bSaveAndValidate) {
        return;
    }
    if (const DWORD bits = GetCheckedBits()) {
        const DWORD others = GetValue().GetMask() & ~YProfileTlsVersions::versionBits;
        GetValue().SetMask(others | bits);
        return;
    }
    const YReportMessageParams message(MSG_NO_TLS_VERSION);
    YMessageBox(this, &message, MB_ICONEXCLAMATION);
    exchange->PrepareCtrl(TLS_VERSIONS_LIST);  // which gets the focus
    exchange->Fail();
}

BOOL YTlsVersionsPlugin::PreTranslateMessage(MSG* message)
{
    if (tooltip.GetSafeHwnd()) {
        tooltip.RelayEvent(message);
    }
    return YTlsVersionsPluginBase::PreTranslateMessage(message);
}
