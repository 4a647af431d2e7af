// YAutoComplete.h: a list of completions under an edit.
#pragma once

#include "CommonUiApi.h"
#include "YAutoCompleteBase.h"
#include "YNpos.h"
#include "YUnknownPointer.h"

#include <windows.h>

#include <commctrl.h>

#include <atomic>
#include <map>
#include <mutex>
#include <string>
#include <utility>

// Watches an edit that somebody else owns, shows what its text can be completed to in a drop-down
// list, lets the user walk the list by keys (each row is written into the edit on the way) or point
// at a row, and reports what is accepted to the sink. It subclasses the edit, its parent and, while
// the list is shown, its top-level window, and hooks the messages of the thread; the edit's owner
// does nothing for it. Lives by the references of these bindings, until the edit is destroyed. All
// on the edit's thread; only an answer may come from another, and is posted across.
class COMMONUI_API YAutoComplete : public YAutoCompleteBase
{
public:
    // False: the edit has one already, and nothing is done. The data source is asked at once if the
    // edit holds text. fitEditWidth: the list is as wide as the edit, else twice as wide. sink:
    // borrowed, outlives the edit. An edit that cannot be subclassed, as one of another thread,
    // stays as it was. Throws std::system_error, std::bad_alloc: nothing is attached then.
    static bool CreateAndAttach(HWND edit, IAutoCompleteDataSource* source, IAutoCompleteSink* sink,
                                bool fitEditWidth);

    using YAutoCompleteBase::OnAutoComplete;

protected:
    void OnAutoComplete() override;

private:
    using Pointer = YUnknownPointer<YAutoComplete>;
    class WritingIntoEdit;
    class KeepingFocus;
    class ClassRegistration;

    YAutoComplete(HWND window, IAutoCompleteDataSource* source, IAutoCompleteSink* client,
                  bool fitsEdit);
    ~YAutoComplete() override;

    // Attaching: YAutoComplete.cpp
    void Attach();
    void Detach();
    void EnterParent(HWND window);
    void LeaveParent(HWND window);
    void ChangeParent(HWND window);
    LRESULT OnEditMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT OnParentMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT OnRootMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void OnEditNotification(UINT code);
    void OnMoving(const WINDOWPOS& position);
    UINT_PTR GetSubclassId() const { return reinterpret_cast<UINT_PTR>(this); }

    // Keys and texts: YAutoComplete.cpp
    bool OnKeyDown(WPARAM key);
    void GoDown();
    void GoUp();
    void AcceptWhatIsThere();
    void AcceptText(const std::wstring& text, bool fromList);
    void EmptyEdit();
    void OnTextChange();
    std::wstring GetEditText() const;
    void WriteIntoEdit(const std::wstring& text);
    void SelectItem(unsigned index, bool makeVisible, bool writeText);
    void ClearSelection(bool writeText);
    void MarkItem(unsigned index, bool selected);

    // The pop-up and what it holds: YAutoCompletePopup.cpp
    static void CreatePopupOf(YAutoComplete& object);
    static LRESULT CALLBACK PopupProcedure(HWND window, UINT message, WPARAM wParam,
                                           LPARAM lParam) noexcept;
    static LRESULT CALLBACK ListProcedure(HWND window, UINT message, WPARAM wParam,
                                          LPARAM lParam) noexcept;
    LRESULT OnPopupMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT OnListMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT OnSizeBoxMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    bool CreateControls(HWND window);
    void OnPopupGone();
    void OnListGone();
    void LayOut(int width, int height);
    void UpdateScrollBar();
    LRESULT OnScroll(WPARAM wParam, LPARAM lParam);
    void SetMinMaxInfo(MINMAXINFO& info) const;
    LRESULT OnListNotification(const NMHDR& header, LPARAM lParam);
    void OnItemTracked(int item);
    void OnPointerMove(POINT point);
    void GiveFocusBack();
    void OnItemClicked(int item);
    LRESULT OnCustomDraw(const NMCUSTOMDRAW& drawing);
    void DrawItem(HDC dc, int item);
    void GetDisplayInfo(LVITEMW& item);
    LRESULT PressOnList(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT CallList(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;
    LRESULT EstimateListSize(HWND window, WPARAM wParam, LPARAM lParam) const;
    unsigned GetItemCount() const;
    void ShowNewList();
    void Show();
    SIZE GetSizeToShow(const RECT& editPlace) const;
    void Hide();
    void StartWatching();
    void StopWatching();
    void PostToPopup(UINT message) const;
    bool IsPopupVisible() const;

    // What a thread's windows share: YAutoCompleteHooks.cpp
    void EnterThread();
    void LeaveThread();
    void BecomeShown();
    void StopBeingShown();
    static Pointer FindByEdit(HWND edit);
    static Pointer FindShown();
    static LRESULT CALLBACK MessageHook(int code, WPARAM wParam, LPARAM lParam) noexcept;
    static LRESULT CALLBACK MouseHook(int code, WPARAM wParam, LPARAM lParam) noexcept;
    static void OnThreadMessage(MSG& message, bool isRemoved);
    void OnPressAnywhere(POINT point);

    HWND listView = nullptr;
    HWND scrollBar = nullptr;
    HWND sizeBox = nullptr;
    std::atomic<HWND> popup = nullptr;  // read by whoever answers; null: not made, or gone
    HWND edit;  // null: detached
    HWND editParent = nullptr;
    HWND rootWindow = nullptr;  // only while shown
    WNDPROC previousListProcedure = nullptr;
    HHOOK mouseHook = nullptr;  // only while shown
    bool editHasFocus = false;
    bool userSized = false;  // for ever: the user's size is kept
    unsigned selectedIndex = npos;  // the highlighted row; npos: none
    bool notifyOnChange = true;  // false: what changes in the edit is not the user's typing
    std::wstring typedText;  // by the user; comes back when no row is highlighted
    bool fitEditWidth;
    bool keepsFocus = false;  // the list is handling a press: the focus is still the edit's
    std::wstring selectedText;  // of the highlighted row, as it was when it was highlighted
    HWND firstParent = nullptr;  // only when the edit has got another one
    int editMargin = 0;  // pixels left of the edit's text; read once a paint
    // On the screen. While it rests there, the pointer points at nothing.
    POINT restingPointer{};

    // Shared by all threads, under the mutex; nobody is called with it held.
    static std::mutex m_mutexAutoComplete;
    static std::map<HWND, Pointer> m_mapHwndAutoComplete;  // by edit
    static std::map<DWORD, Pointer> m_mapThreadIdAutoComplete;  // whose list is shown
    // The message hook, and for how many edits.
    static std::map<DWORD, std::pair<HHOOK, unsigned>> m_mapThreadIdHookCount;
    static bool m_bIsListViewParentWindowClassRegistered;
};
