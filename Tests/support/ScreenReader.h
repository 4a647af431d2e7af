// ScreenReader.h: what a screen reader hears of a window.
#pragma once

#include <windows.h>

#include <oleacc.h>

#include <string>

// Asks the client area of a window on this thread, by WM_GETOBJECT. Child 0 is the window itself.
// Needs COM. What cannot be had is told by `last`, the result of the latest call.
class ScreenReader
{
public:
    explicit ScreenReader(HWND window)
    {
        void* found = nullptr;
        last = ::AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT),
                                            IID_IAccessible, &found);
        object = static_cast<IAccessible*>(found);
    }
    ~ScreenReader()
    {
        if (object != nullptr) {
            object->Release();
        }
    }
    ScreenReader(const ScreenReader&) = delete;
    ScreenReader& operator=(const ScreenReader&) = delete;

    IAccessible* operator->() const { return object; }
    IAccessible* Get() const { return object; }

    std::wstring Name(long child = 0) { return Text(&IAccessible::get_accName, child); }
    std::wstring Value(long child = 0) { return Text(&IAccessible::get_accValue, child); }
    std::wstring Description(long child = 0)
    {
        return Text(&IAccessible::get_accDescription, child);
    }
    std::wstring DefaultAction(long child = 0)
    {
        return Text(&IAccessible::get_accDefaultAction, child);
    }
    // -1: no number was given.
    long Role(long child = 0) { return Number(&IAccessible::get_accRole, child); }
    long State(long child = 0) { return Number(&IAccessible::get_accState, child); }
    long ChildCount()
    {
        long count = -1;
        last = object->get_accChildCount(&count);
        return count;
    }
    long HitTest(POINT point)
    {
        VARIANT found{};
        last = object->accHitTest(point.x, point.y, &found);
        return found.vt == VT_I4 ? found.lVal : -1;
    }
    RECT Location(long child = 0)
    {
        long left = 0, top = 0, width = 0, height = 0;
        last = object->accLocation(&left, &top, &width, &height, Child(child));
        return {left, top, left + width, top + height};
    }
    HRESULT DoDefaultAction(long child = 0)
    {
        return last = object->accDoDefaultAction(Child(child));
    }

    static VARIANT Child(long number)
    {
        VARIANT child{};
        child.vt = VT_I4;
        child.lVal = number;
        return child;
    }

    HRESULT last = S_OK;

private:
    std::wstring Text(HRESULT (STDMETHODCALLTYPE IAccessible::*question)(VARIANT, BSTR*),
                      long child)
    {
        BSTR text = nullptr;
        last = (object->*question)(Child(child), &text);
        const std::wstring result(text != nullptr ? text : L"", ::SysStringLen(text));
        ::SysFreeString(text);
        return result;
    }
    long Number(HRESULT (STDMETHODCALLTYPE IAccessible::*question)(VARIANT, VARIANT*), long child)
    {
        VARIANT number{};
        last = (object->*question)(Child(child), &number);
        return number.vt == VT_I4 ? number.lVal : -1;
    }

    IAccessible* object = nullptr;
};
