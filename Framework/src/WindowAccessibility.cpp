#include "WindowAccessibility.h"

#include "afxole.h"

#include <new>
#include <type_traits>
#include <utility>

namespace {

// Where an answer goes. A text that is given is none, and may be null.
template <class Type>
bool IsMissing(const Type& argument)
{
    if constexpr (std::is_pointer_v<Type> && !std::is_same_v<Type, BSTR>) {
        return argument == nullptr;
    } else {
        return false;
    }
}

}  // namespace

// The window as COM sees it: each call goes to the operation of the same name. COM calls it on the
// window's thread; nothing is ever thrown at it.
class AccessibleWindow final : public IAccessible
{
public:
    explicit AccessibleWindow(CWnd& spoken) noexcept : window(&spoken) {}

    void Disconnect() noexcept { window = nullptr; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** result) override;
    ULONG STDMETHODCALLTYPE AddRef() override
    {
        return static_cast<ULONG>(::InterlockedIncrement(&references));
    }
    ULONG STDMETHODCALLTYPE Release() override;

    // Readers call by the table of functions; nobody asks by name.
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override
    {
        return IsMissing(count) ? E_INVALIDARG : (*count = 0, S_OK);
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) override
    {
        return E_NOTIMPL;
    }

    HRESULT STDMETHODCALLTYPE get_accParent(IDispatch** parent) override
    {
        return Ask(&CWnd::get_accParent, parent);
    }
    HRESULT STDMETHODCALLTYPE get_accChildCount(long* count) override
    {
        return Ask(&CWnd::get_accChildCount, count);
    }
    HRESULT STDMETHODCALLTYPE get_accChild(VARIANT child, IDispatch** object) override
    {
        return Ask(&CWnd::get_accChild, child, object);
    }
    HRESULT STDMETHODCALLTYPE get_accName(VARIANT child, BSTR* name) override
    {
        return Ask(&CWnd::get_accName, child, name);
    }
    HRESULT STDMETHODCALLTYPE get_accValue(VARIANT child, BSTR* value) override
    {
        return Ask(&CWnd::get_accValue, child, value);
    }
    HRESULT STDMETHODCALLTYPE get_accDescription(VARIANT child, BSTR* description) override
    {
        return Ask(&CWnd::get_accDescription, child, description);
    }
    HRESULT STDMETHODCALLTYPE get_accRole(VARIANT child, VARIANT* role) override
    {
        return Ask(&CWnd::get_accRole, child, role);
    }
    HRESULT STDMETHODCALLTYPE get_accState(VARIANT child, VARIANT* state) override
    {
        return Ask(&CWnd::get_accState, child, state);
    }
    HRESULT STDMETHODCALLTYPE get_accHelp(VARIANT child, BSTR* help) override
    {
        return Ask(&CWnd::get_accHelp, child, help);
    }
    HRESULT STDMETHODCALLTYPE get_accHelpTopic(BSTR* file, VARIANT child, long* topic) override
    {
        return Ask(&CWnd::get_accHelpTopic, file, child, topic);
    }
    HRESULT STDMETHODCALLTYPE get_accKeyboardShortcut(VARIANT child, BSTR* shortcut) override
    {
        return Ask(&CWnd::get_accKeyboardShortcut, child, shortcut);
    }
    HRESULT STDMETHODCALLTYPE get_accFocus(VARIANT* child) override
    {
        return Ask(&CWnd::get_accFocus, child);
    }
    HRESULT STDMETHODCALLTYPE get_accSelection(VARIANT* children) override
    {
        return Ask(&CWnd::get_accSelection, children);
    }
    HRESULT STDMETHODCALLTYPE get_accDefaultAction(VARIANT child, BSTR* action) override
    {
        return Ask(&CWnd::get_accDefaultAction, child, action);
    }
    HRESULT STDMETHODCALLTYPE accSelect(long flags, VARIANT child) override
    {
        return Ask(&CWnd::accSelect, flags, child);
    }
    HRESULT STDMETHODCALLTYPE accLocation(long* left, long* top, long* width, long* height,
                                          VARIANT child) override
    {
        return Ask(&CWnd::accLocation, left, top, width, height, child);
    }
    HRESULT STDMETHODCALLTYPE accNavigate(long direction, VARIANT start, VARIANT* end) override
    {
        return Ask(&CWnd::accNavigate, direction, start, end);
    }
    HRESULT STDMETHODCALLTYPE accHitTest(long x, long y, VARIANT* child) override
    {
        return Ask(&CWnd::accHitTest, x, y, child);
    }
    HRESULT STDMETHODCALLTYPE accDoDefaultAction(VARIANT child) override
    {
        return Ask(&CWnd::accDoDefaultAction, child);
    }
    HRESULT STDMETHODCALLTYPE put_accName(VARIANT child, BSTR name) override
    {
        return Ask(&CWnd::put_accName, child, name);
    }
    HRESULT STDMETHODCALLTYPE put_accValue(VARIANT child, BSTR value) override
    {
        return Ask(&CWnd::put_accValue, child, value);
    }

private:
    ~AccessibleWindow() = default;  // by Release

    // The window may end inside the call, and so may its object: nothing is touched after it.
    template <class... Parameters>
    HRESULT Ask(HRESULT (CWnd::*question)(Parameters...), Parameters... arguments) noexcept
    {
        if ((IsMissing(arguments) || ...)) {
            return E_INVALIDARG;
        }
        if (window == nullptr) {
            return CO_E_OBJNOTCONNECTED;
        }
        try {
            return (window->*question)(arguments...);
        } catch (const std::bad_alloc&) {
            return E_OUTOFMEMORY;
        } catch (CException* exception) {
            exception->Delete();
        } catch (...) {}
        return E_UNEXPECTED;
    }

    CWnd* window;  // null: it has ended
    LONG references = 1;
};

HRESULT AccessibleWindow::QueryInterface(REFIID id, void** result)
{
    if (result == nullptr) {
        return E_POINTER;
    }
    if (id != IID_IUnknown && id != IID_IDispatch && id != IID_IAccessible) {
        *result = nullptr;
        return E_NOINTERFACE;
    }
    *result = static_cast<IAccessible*>(this);
    AddRef();
    return S_OK;
}

ULONG AccessibleWindow::Release()
{
    const LONG left = ::InterlockedDecrement(&references);
    if (left == 0) {
        delete this;
    }
    return static_cast<ULONG>(left);
}

WindowAccessibility::WindowAccessibility(CWnd& spoken) : window(spoken) {}

WindowAccessibility::~WindowAccessibility()
{
    Disconnect();
}

LRESULT WindowAccessibility::HandOut(WPARAM wParam)
{
    if (!object) {
        object.reset(new AccessibleWindow(window));
    }
    const auto give = [this, wParam] {
        return ::LresultFromObject(IID_IAccessible, wParam, object.get());
    };
    LRESULT answer = give();
    if (static_cast<HRESULT>(answer) == CO_E_NOTINITIALIZED && AfxOleInit()) {
        answer = give();
    }
    return SUCCEEDED(static_cast<HRESULT>(answer)) ? answer : 0;
}

std::unique_ptr<IAccessible, ReleaseReference> WindowAccessibility::GetStandard()
{
    void* made = nullptr;
    if (!standard && SUCCEEDED(::CreateStdAccessibleObject(window.GetSafeHwnd(), OBJID_CLIENT,
                                                           IID_IAccessible, &made))) {
        standard.reset(static_cast<IAccessible*>(made));
    }
    if (standard) {
        standard->AddRef();
    }
    return std::unique_ptr<IAccessible, ReleaseReference>(standard.get());
}

void WindowAccessibility::Disconnect()
{
    standard.reset();
    if (const auto ended = std::exchange(object, nullptr)) {
        ended->Disconnect();
        ::CoDisconnectObject(ended.get(), 0);  // readers in other processes learn it at once
    }
}
