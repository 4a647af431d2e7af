#include "SessionsDialog.h"

#include "ConsoleMessages.h"
#include "ConsoleSettings.h"
#include "ConsoleText.h"
#include "Session.h"
#include "SessionDialog.h"
#include "resource.h"

#include <YReportMessageParams.h>
#include <afxlayout.h>

#include <algorithm>
#include <cwchar>
#include <cwctype>

namespace {

constexpr unsigned quiescence = 200;  // milliseconds
constexpr UINT fixedAtRight[] = {IDC_SESSION_UP, IDC_SESSION_DOWN, IDC_SESSION_ADD,
                                 IDC_SESSION_EDIT, IDC_SESSION_REMOVE};

enum Column { Number, Name, Host, Port, User };

Session& SessionOf(unsigned long data)
{
    return *reinterpret_cast<Session*>(data);
}

unsigned long DataOf(const Session& session)
{
    return reinterpret_cast<unsigned long>(&session);
}

int CompareNumbers(unsigned number1, unsigned number2)
{
    return number1 < number2 ? -1 : number1 > number2 ? 1 : 0;
}

int CompareTexts(const std::wstring& text1, const std::wstring& text2)
{
    return ::CompareStringEx(LOCALE_NAME_USER_DEFAULT, LINGUISTIC_IGNORECASE, text1.c_str(), -1,
                             text2.c_str(), -1, nullptr, nullptr, 0) -
           CSTR_EQUAL;
}

int CompareIn(const Session& session1, const Session& session2, int column)
{
    switch (column) {
    case Name: return CompareTexts(session1.name, session2.name);
    case Host: return CompareTexts(session1.peer.host, session2.peer.host);
    case Port: return CompareNumbers(session1.peer.port, session2.peer.port);
    case User: return CompareTexts(session1.user, session2.user);
    default: return CompareNumbers(session1.number, session2.number);
    }
}

// What is equal in the column stands in the user's order.
int Compare(unsigned long data1, unsigned long data2, int column, SortOrder order)
{
    const int difference = CompareIn(SessionOf(data1), SessionOf(data2), column);
    if (difference == 0) {
        return CompareNumbers(SessionOf(data1).number, SessionOf(data2).number);
    }
    return order == SortDescending ? -difference : difference;
}

bool Contains(std::wstring text, const YUnicodeString& lower)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](wchar_t unit) { return static_cast<wchar_t>(std::towlower(unit)); });
    return text.find(lower.c_str()) != std::wstring::npos;
}

}  // namespace

BEGIN_MESSAGE_MAP(SessionsDialog, YDialog)
    ON_WM_DESTROY()
    ON_EN_CHANGE(IDC_SESSION_FILTER, &SessionsDialog::OnFilterChange)
    ON_NOTIFY(LVN_ITEMCHANGED, IDC_SESSIONS, &SessionsDialog::OnItemChanged)
    ON_NOTIFY(NM_DBLCLK, IDC_SESSIONS, &SessionsDialog::OnDoubleClick)
    ON_NOTIFY(LVN_KEYDOWN, IDC_SESSIONS, &SessionsDialog::OnListKey)
    ON_BN_CLICKED(IDC_SESSION_UP, &SessionsDialog::OnUp)
    ON_BN_CLICKED(IDC_SESSION_DOWN, &SessionsDialog::OnDown)
    ON_BN_CLICKED(IDC_SESSION_ADD, &SessionsDialog::OnAdd)
    ON_BN_CLICKED(IDC_SESSION_EDIT, &SessionsDialog::OnEdit)
    ON_BN_CLICKED(IDC_SESSION_REMOVE, &SessionsDialog::OnRemove)
END_MESSAGE_MAP()

SessionsDialog::SessionsDialog(ConsoleSettings& remembered, CWnd* parent)
    : YDialog(IDD_SESSIONS, ::AfxGetResourceHandle(), parent, &remembered.GetSessionsPlacement()),
      settings(remembered),
      list(L"Sessions", &remembered.GetColumnWidths())
{
    list.SetItemHelper(this);
    list.SetFilterHelper(this);
    list.SetSortSink(this);
    list.SetFilterQuiescent(quiescence);
    list.SetSortCompareItemsFunction(&Compare);
}

void SessionsDialog::DoDataExchange(CDataExchange* exchange)
{
    YDialog::DoDataExchange(exchange);
    DDX_Control(exchange, IDC_SESSIONS, list);
    DDX_Control(exchange, IDC_SESSION_FILTER, filter);
    for (std::size_t i = 0; i < std::size(buttons); ++i) {
        DDX_Control(exchange, static_cast<int>(fixedAtRight[i]), buttons[i]);
    }
}

BOOL SessionsDialog::OnInitDialog()
{
    InitDynamicLayoutDialog();
    filter.InitControl(LoadText(IDS_SESSIONS_HINT).c_str(), YLineEdit::SearchButton);
    list.Init({{LoadText(IDS_SESSION_NUMBER).c_str(), 32, LVCFMT_RIGHT},
               {LoadText(IDS_SESSION_NAME).c_str(), 140, LVCFMT_LEFT},
               {LoadText(IDS_SESSION_HOST).c_str(), 140, LVCFMT_LEFT},
               {LoadText(IDS_SESSION_PORT).c_str(), 48, LVCFMT_RIGHT},
               {LoadText(IDS_SESSION_USER).c_str(), -1, LVCFMT_LEFT}},
              LVS_EX_FULLROWSELECT);
    list.InitAssociatedButtons(&buttons[0], &buttons[1], &buttons[2], &buttons[3], &buttons[4],
                               nullptr);
    Fill();
    list.SelectAndShowFirstItem();
    EnableButtons();
    list.SetFocus();
    return FALSE;  // the focus is where it belongs
}

void SessionsDialog::AddToDynamicLayout()
{
    using Layout = CMFCDynamicLayout;
    Layout& layout = *GetDynamicLayout();
    layout.AddItem(UINT{IDC_SESSION_FILTER}, Layout::MoveNone(), Layout::SizeHorizontal());
    layout.AddItem(UINT{IDC_SESSIONS}, Layout::MoveNone(), Layout::SizeHorizontalAndVertical());
    for (const UINT id : fixedAtRight) {
        layout.AddItem(id, Layout::MoveHorizontal(), Layout::SizeNone());
    }
    for (const UINT id : {UINT{IDOK}, UINT{IDCANCEL}}) {
        layout.AddItem(id, Layout::MoveHorizontalAndVertical(), Layout::SizeNone());
    }
}

void SessionsDialog::OnOK()
{
    if (list.GetSelectionCount() == 1) {
        chosen = &SessionOf(list.GetCurrentItemData());
        YDialog::OnOK();
    }
}

void SessionsDialog::OnDestroy()
{
    list.SaveGuiSettings();
    SaveDynamicLayoutDialogPlacement();
    YDialog::OnDestroy();
}

// The rows

void SessionsDialog::GetItemColumns(unsigned long data, std::vector<YUnicodeString>& columns)
{
    const Session& session = SessionOf(data);
    columns.emplace_back(std::to_wstring(session.number).c_str());
    columns.emplace_back(session.name.c_str());
    columns.emplace_back(session.peer.host.c_str());
    columns.emplace_back(std::to_wstring(session.peer.port).c_str());
    columns.emplace_back(session.user.c_str());
}

bool SessionsDialog::ItemMatchesFilter(unsigned long data, const YUnicodeString& wanted)
{
    const Session& session = SessionOf(data);
    return Contains(session.name, wanted) || Contains(session.peer.host, wanted) ||
           Contains(session.user, wanted) || Contains(session.note, wanted);
}

void SessionsDialog::OnFilterRefill(bool starting)
{
    if (!starting) {
        if (list.GetSelectionCount() == 0) {
            list.SelectAndShowFirstItem();
        }
        EnableButtons();
    }
}

void SessionsDialog::RefillItems()
{
    for (const auto& session : settings.GetSessions().Get()) {
        list.AddItem(DataOf(*session));
    }
    list.Sort();
}

void SessionsDialog::Fill()
{
    list.DisableDraw();
    list.RemoveAll();
    RefillItems();
    list.EnableDraw();
}

// Where the filter hides it, it is nowhere.
void SessionsDialog::Select(const Session& session)
{
    for (int row = 0; row < list.GetItemCount(); ++row) {
        if (list.GetItemData(row) == DataOf(session)) {
            list.SelectItem(row, false);
            return;
        }
    }
}

// The hint that comes and goes is no change.
void SessionsDialog::OnFilterChange()
{
    list.SetFilterText(filter.GetText());
}

// The buttons

bool SessionsDialog::ShowsOwnOrder() const
{
    int column = 0;
    SortOrder order = SortAscending;
    list.GetSorting(column, order);
    const std::size_t shown = static_cast<std::size_t>(list.GetItemCount());
    return column == Number && order == SortAscending &&
           shown == settings.GetSessions().Get().size();
}

void SessionsDialog::EnableButtons()
{
    list.EnableButtons(ShowsOwnOrder(), true);
    GetDlgItem(IDOK)->EnableWindow(list.GetSelectionCount() == 1);
}

void SessionsDialog::OnItemChanged(NMHDR*, LRESULT*)
{
    EnableButtons();
}

void SessionsDialog::OnDoubleClick(NMHDR* header, LRESULT*)
{
    if (reinterpret_cast<const NMITEMACTIVATE*>(header)->iItem >= 0) {
        OnOK();
    }
}

void SessionsDialog::OnListKey(NMHDR* header, LRESULT*)
{
    const WORD key = reinterpret_cast<const NMLVKEYDOWN*>(header)->wVKey;
    if (key == VK_DELETE) {
        OnRemove();
    } else if (key == VK_F2) {
        OnEdit();
    }
}

void SessionsDialog::OnUp()
{
    Move(true);
}

void SessionsDialog::OnDown()
{
    Move(false);
}

void SessionsDialog::Move(bool up)
{
    const int row = list.GetCurrentItemIndex();
    const int other = up ? row - 1 : row + 1;
    if (row < 0 || other < 0 || other >= list.GetItemCount()) {
        return;
    }
    settings.GetSessions().Exchange(SessionOf(list.GetItemData(row)),
                                    SessionOf(list.GetItemData(other)));
    list.DoMoveSelected(up ? MoveUp : MoveDown);
}

void SessionsDialog::OnAdd()
{
    Session session;
    session.peer = {L"", 23};
    if (EditSession(settings, *this, session, true)) {
        const Session& added = settings.GetSessions().Add(session);
        filter.Clear();  // or it might not be seen
        list.CancelFilter();
        Fill();
        Select(added);
        list.SetFocus();
    }
}

void SessionsDialog::OnEdit()
{
    if (list.GetSelectionCount() != 1) {
        return;
    }
    Session& session = SessionOf(list.GetCurrentItemData());
    Session next = session;
    if (EditSession(settings, *this, next, false)) {
        settings.GetSessions().Change(session, next);
        Fill();
        Select(session);
        list.SetFocus();
    }
}

void SessionsDialog::OnRemove()
{
    std::map<int, unsigned long> selection;
    list.GetSelection(selection);
    const bool isOne = selection.size() == 1;
    YReportMessageParams question(isOne ? CONSOLE_REMOVE_SESSION : CONSOLE_REMOVE_SESSIONS,
                                  ::AfxGetInstanceHandle());
    if (isOne) {
        question.AddInsert(SessionOf(selection.begin()->second).name);
    } else {
        question.AddInsert(FormatNumber(selection.size()));
    }
    if (!list.DoDelete(question)) {
        return;
    }
    for (const auto& [row, data] : selection) {
        settings.GetSessions().Remove(SessionOf(data));
    }
    for (int row = 0; row < list.GetItemCount(); ++row) {
        list.UpdateItem(row);  // the numbers
    }
    EnableButtons();
    list.SetFocus();
}
