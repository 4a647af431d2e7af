#include "SessionsDialog.h"

#include "ConsoleMessages.h"
#include "ConsoleSettings.h"
#include "ConsoleText.h"
#include "OthersDisabled.h"
#include "SessionDialog.h"
#include "resource.h"

#include <YReportMessageParams.h>
#include <afxlayout.h>

#include <algorithm>
#include <cwctype>
#include <map>

namespace {

constexpr unsigned filterQuiescent = 200;  // milliseconds

enum Column { NumberColumn, NameColumn, HostColumn, PortColumn, UserColumn };

Session& ToSession(DWORD_PTR data)
{
    return *reinterpret_cast<Session*>(data);
}

unsigned long ToData(const Session& session)
{
    return reinterpret_cast<unsigned long>(&session);
}

int CompareWords(const std::wstring& left, const std::wstring& right)
{
    return ::CompareStringW(LOCALE_USER_DEFAULT, NORM_IGNORECASE, left.c_str(), -1, right.c_str(),
                            -1) -
           CSTR_EQUAL;
}

int CompareNumbers(std::size_t left, std::size_t right)
{
    return left < right ? -1 : static_cast<int>(left > right);
}

// The filter comes in lower case.
bool Contains(std::wstring text, std::wstring_view filter)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](wchar_t unit) { return static_cast<wchar_t>(std::towlower(unit)); });
    return text.find(filter) != std::wstring::npos;
}

// One name a line, and how many more there are where they would fill the screen.
std::wstring NameAll(const std::map<int, unsigned long>& selection)
{
    constexpr std::size_t most = 10;
    std::wstring names;
    std::size_t count = 0;
    for (const auto& [row, data] : selection) {
        if (++count > most) {
            return names +
                   FormatText(IDS_MORE_SESSIONS, FormatNumber(selection.size() - most).c_str());
        }
        names += (count > 1 ? L"\r\n" : L"") + ToSession(data).name;
    }
    return names;
}

}  // namespace

BEGIN_MESSAGE_MAP(SessionsDialog, YDialog)
    ON_WM_DESTROY()
    ON_EN_CHANGE(IDC_SESSION_FILTER, &SessionsDialog::OnFilterChange)
    ON_BN_CLICKED(IDC_SESSION_ADD, &SessionsDialog::OnAdd)
    ON_BN_CLICKED(IDC_SESSION_EDIT, &SessionsDialog::OnEdit)
    ON_BN_CLICKED(IDC_SESSION_REMOVE, &SessionsDialog::OnRemove)
    ON_BN_CLICKED(IDC_SESSION_UP, &SessionsDialog::OnUp)
    ON_BN_CLICKED(IDC_SESSION_DOWN, &SessionsDialog::OnDown)
    ON_NOTIFY(LVN_ITEMCHANGED, IDC_SESSIONS, &SessionsDialog::OnItemChanged)
    ON_NOTIFY(LVN_KEYDOWN, IDC_SESSIONS, &SessionsDialog::OnKeyDown)
    ON_NOTIFY(NM_DBLCLK, IDC_SESSIONS, &SessionsDialog::OnDoubleClick)
END_MESSAGE_MAP()

SessionsDialog::SessionsDialog(ConsoleSettings& remembered, CWnd* parent)
    : YDialog(IDD_SESSIONS, ::AfxGetResourceHandle(), parent, &remembered.GetSessionsPlacement()),
      owner(parent),
      settings(remembered),
      sessions(remembered.GetSessions()),
      list(L"Sessions", &remembered.GetColumnWidths())
{}

INT_PTR SessionsDialog::DoModal()
{
    const OthersDisabled others(owner);
    return YDialog::DoModal();
}

void SessionsDialog::DoDataExchange(CDataExchange* exchange)
{
    YDialog::DoDataExchange(exchange);
    DDX_Control(exchange, IDC_SESSION_FILTER, filter);
    DDX_Control(exchange, IDC_SESSIONS, list);
}

BOOL SessionsDialog::OnInitDialog()
{
    InitDynamicLayoutDialog();
    filter.InitControl(LoadText(IDS_SESSION_FILTER_HINT).c_str(), YLineEdit::SearchButton);
    list.SetItemHelper(this);
    list.SetFilterHelper(this);
    list.SetFilterQuiescent(filterQuiescent);
    list.SetSortSink(this);
    list.SetSortingUsingIndexFunction(&CompareRows);
    list.SetSortCompareHelper(&sessions);
    const auto column = [](UINT title, double ratio) {
        return ColumnInfoRatio{YUnicodeString(LoadText(title)), ratio, LVCFMT_LEFT};
    };
    list.Init({column(IDS_COLUMN_NUMBER, 0.12), column(IDS_COLUMN_NAME, 0.29),
               column(IDS_COLUMN_HOST, 0.28), column(IDS_COLUMN_PORT, 0.12),
               column(IDS_COLUMN_USER, 0.19)},
              0, true);
    list.InitAssociatedButtons(GetDlgItem(IDC_SESSION_UP), GetDlgItem(IDC_SESSION_DOWN),
                               GetDlgItem(IDC_SESSION_ADD), GetDlgItem(IDC_SESSION_EDIT),
                               GetDlgItem(IDC_SESSION_REMOVE), nullptr);
    RefillItems();
    list.SelectAndShowFirstItem();
    EnableControls();
    list.SetFocus();
    return FALSE;
}

void SessionsDialog::AddToDynamicLayout()
{
    using Layout = CMFCDynamicLayout;
    Layout& layout = *GetDynamicLayout();
    layout.AddItem(UINT{IDC_SESSION_FILTER}, Layout::MoveNone(), Layout::SizeHorizontal());
    layout.AddItem(UINT{IDC_SESSIONS}, Layout::MoveNone(), Layout::SizeHorizontalAndVertical());
    for (const UINT id : {IDC_SESSION_ADD, IDC_SESSION_EDIT, IDC_SESSION_REMOVE, IDC_SESSION_UP,
                          IDC_SESSION_DOWN}) {
        layout.AddItem(id, Layout::MoveHorizontal(), Layout::SizeNone());
    }
    for (const UINT id : {IDOK, IDCANCEL}) {
        layout.AddItem(id, Layout::MoveHorizontalAndVertical(), Layout::SizeNone());
    }
}

void SessionsDialog::OnDestroy()
{
    list.SaveGuiSettings();
    SaveDynamicLayoutDialogPlacement();
    YDialog::OnDestroy();
}

// Rows

void SessionsDialog::GetItemColumns(unsigned long data, std::vector<YUnicodeString>& columns)
{
    const Session& session = ToSession(data);
    columns.emplace_back(FormatNumber(sessions.FindIndex(session) + 1));
    columns.emplace_back(session.name);
    columns.emplace_back(session.peer.host);
    columns.emplace_back(std::to_wstring(session.peer.port));
    columns.emplace_back(session.logsIn ? session.user : std::wstring());
}

void SessionsDialog::RefillItems()
{
    list.DisableDraw();
    for (std::size_t i = 0; i < sessions.GetCount(); ++i) {
        list.AddItem(ToData(sessions.Get(i)));
    }
    list.EnableDraw();
}

bool SessionsDialog::ItemMatchesFilter(unsigned long data, const YUnicodeString& filterLowerCase)
{
    const Session& session = ToSession(data);
    return Contains(session.name, filterLowerCase) ||
           Contains(session.peer.host, filterLowerCase) ||
           Contains(std::to_wstring(session.peer.port), filterLowerCase) ||
           (session.logsIn && Contains(session.user, filterLowerCase));
}

void SessionsDialog::OnFilterRefill(bool starting)
{
    if (!starting) {
        list.Sort();
        EnableControls();
    }
}

void SessionsDialog::OnFilterChange()
{
    list.SetFilterText(filter.GetText());
    EnableControls();
}

// Numbers as numbers, words as the user's language has them.
int CALLBACK SessionsDialog::CompareRows(LPARAM row1, LPARAM row2, LPARAM context)
{
    const auto& [rows, column, order, helper, unused] =
        *reinterpret_cast<const ListSortContext*>(context);
    const auto& all = *static_cast<const SessionList*>(helper);
    const Session& left = ToSession(rows->GetItemData(static_cast<int>(row1)));
    const Session& right = ToSession(rows->GetItemData(static_cast<int>(row2)));
    int result = 0;
    switch (column) {
    case NameColumn: result = CompareWords(left.name, right.name); break;
    case HostColumn: result = CompareWords(left.peer.host, right.peer.host); break;
    case PortColumn: result = CompareNumbers(left.peer.port, right.peer.port); break;
    case UserColumn: result = CompareWords(left.user, right.user); break;
    default: result = CompareNumbers(all.FindIndex(left), all.FindIndex(right)); break;
    }
    return order == SortDescending ? -result : result;
}

void SessionsDialog::OnSortChanged()
{
    EnableControls();
}

bool SessionsDialog::IsInOwnOrder() const
{
    int column = 0;
    SortOrder order = SortAscending;
    list.GetSorting(column, order);
    return column == NumberColumn && order == SortAscending && filter.GetText().IsEmpty();
}

Session* SessionsDialog::GetSelected() const
{
    const bool isOne = list.GetSelectionCount() == 1;
    return isOne ? &ToSession(list.GetItemData(list.GetCurrentItemIndex())) : nullptr;
}

void SessionsDialog::Select(const Session& session)
{
    for (int row = 0; row < list.GetItemCount(); ++row) {
        if (list.GetItemData(row) == ToData(session)) {
            list.SelectItem(row, false);
        }
    }
    EnableControls();
}

// Commands

void SessionsDialog::OnItemChanged(NMHDR*, LRESULT*)
{
    EnableControls();
}

void SessionsDialog::EnableControls()
{
    list.EnableButtons(IsInOwnOrder(), true);
    GetDlgItem(IDOK)->EnableWindow(GetSelected() != nullptr);
}

void SessionsDialog::OnKeyDown(NMHDR* header, LRESULT*)
{
    switch (reinterpret_cast<const NMLVKEYDOWN*>(header)->wVKey) {
    case VK_INSERT: OnAdd(); break;
    case VK_F2: OnEdit(); break;
    case VK_DELETE: OnRemove(); break;
    default: break;
    }
}

void SessionsDialog::OnDoubleClick(NMHDR* header, LRESULT*)
{
    if (reinterpret_cast<const NMITEMACTIVATE*>(header)->iItem >= 0) {
        OnOK();
    }
}

void SessionsDialog::OnOK()
{
    if (const Session* const selected = GetSelected()) {
        chosen = *selected;
        YDialog::OnOK();
    }
}

// What is new is shown, whatever the list was filtered by.
void SessionsDialog::OnAdd()
{
    Session session;
    session.peer = {std::wstring(), settings.GetPeer().port};
    if (SessionDialog(session, nullptr, settings, this).DoModal() != IDOK) {
        return;
    }
    if (!filter.GetText().IsEmpty()) {
        filter.Clear();
        list.CancelFilter();
    }
    const Session& added = sessions.Add(session);
    list.AddItem(ToData(added));
    list.Sort();
    Select(added);
}

void SessionsDialog::OnEdit()
{
    Session* const selected = GetSelected();
    if (!selected) {
        return;
    }
    Session session = *selected;
    if (SessionDialog(session, selected, settings, this).DoModal() == IDOK) {
        sessions.Replace(*selected, session);
        list.UpdateItem(list.GetCurrentItemIndex());
        list.Sort();
    }
}

void SessionsDialog::OnRemove()
{
    std::map<int, unsigned long> selection;
    list.GetSelection(selection);
    YReportMessageParams question(CONSOLE_REMOVE_SESSIONS, ::AfxGetInstanceHandle());
    question.AddInsert(NameAll(selection).c_str());
    if (selection.empty() || !list.DoDelete(question)) {
        return;
    }
    for (const auto& [row, data] : selection) {
        sessions.Remove(ToSession(data));
    }
    for (int row = 0; row < list.GetItemCount(); ++row) {
        list.UpdateItem(row);  // those behind have another number now
    }
    EnableControls();
}

void SessionsDialog::OnUp()
{
    Move(MoveUp);
}

void SessionsDialog::OnDown()
{
    Move(MoveDown);
}

// The sessions first: the rows ask for their numbers on the way.
void SessionsDialog::Move(MoveDirection direction)
{
    const int row = list.GetCurrentItemIndex();
    const int other = direction == MoveUp ? row - 1 : row + 1;
    if (IsInOwnOrder() && row >= 0 && other >= 0 && other < list.GetItemCount()) {
        sessions.Exchange(static_cast<std::size_t>(row), static_cast<std::size_t>(other));
        list.DoMoveSelected(direction);
        EnableControls();
    }
}
