// YUnknown.h: the base of every reference-counted object.
#pragma once

#include <windows.h>

#include <unknwn.h>

#include <atomic>

// Implements Interface (IUnknown or an interface derived from it) by an atomic 32-bit count. The
// creator holds the first reference; the Release that brings the count to 0 deletes the object on
// its own thread. A copy of an object is a new object: it starts with a count of its own.
// The order of the operations is binary contract: those of Interface first, then these.
template <class Interface = IUnknown>
class YUnknown : public Interface
{
public:
    // Always E_NOINTERFACE: interfaces are reached by static type, never by query.
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override
    {
        if (object) {
            *object = nullptr;
        }
        return E_NOINTERFACE;
    }

    // Both return the new count, which another thread may have changed by then.
    ULONG STDMETHODCALLTYPE AddRef() override { return CountUp(); }
    ULONG STDMETHODCALLTYPE Release() override
    {
        const ULONG count = CountDown();
        if (count == 0) {
            DeleteThis();
        }
        return count;
    }

    // The same count through a pointer to a constant object.
    virtual ULONG STDMETHODCALLTYPE AddRef() const { return CountUp(); }
    virtual ULONG STDMETHODCALLTYPE Release() const
    {
        const ULONG count = CountDown();
        if (count == 0) {
            DeleteThis();
        }
        return count;
    }

protected:
    YUnknown() = default;
    YUnknown(const YUnknown&) noexcept {}
    YUnknown& operator=(const YUnknown&) noexcept { return *this; }
    virtual ~YUnknown() = default;

    // How the last Release ends the object; overridden where it must die on a thread of its own.
    virtual void DeleteThis() { delete this; }
    virtual void DeleteThis() const { delete this; }

private:
    ULONG CountUp() const noexcept
    {
        return referenceCount.fetch_add(1, std::memory_order_relaxed) + 1;
    }
    // Release orders this thread's writes before the deletion, acquire lets the deleter see all.
    ULONG CountDown() const noexcept
    {
        return referenceCount.fetch_sub(1, std::memory_order_acq_rel) - 1;
    }

    mutable std::atomic<ULONG> referenceCount{1};
};
