#include "afxole.h"

#include <shlobj.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

namespace {

// Whether this thread's OLE was begun by us: then it is ours to end.
thread_local bool oleIsOurs = false;
// Borrowed: the clipboard keeps it alive, its destructor takes it out.
thread_local COleDataSource* clipboardSource = nullptr;

constexpr int busyTries = 6;
constexpr DWORD busyWait = 20;  // milliseconds; five waits make the tenth of a second

// Clipboard watchers open the clipboard right after each change, for a moment.
template <class Call>
HRESULT RetryWhileBusy(Call call)
{
    HRESULT result = call();
    for (int tries = 1; tries < busyTries && result == CLIPBRD_E_CANT_OPEN; ++tries) {
        ::Sleep(busyWait);
        result = call();
    }
    return result;
}

HRESULT OfferOnClipboard(IDataObject* dataObject)
{
    const auto offer = [dataObject] { return ::OleSetClipboard(dataObject); };
    HRESULT result = RetryWhileBusy(offer);
    if (result == CO_E_NOTINITIALIZED && AfxOleInit()) {
        result = RetryWhileBusy(offer);
    }
    return result;
}

class GlobalLockGuard
{
public:
    explicit GlobalLockGuard(HGLOBAL locked) noexcept : block(locked), bytes(::GlobalLock(locked))
    {}
    ~GlobalLockGuard();
    GlobalLockGuard(const GlobalLockGuard&) = delete;
    GlobalLockGuard& operator=(const GlobalLockGuard&) = delete;

    void* Get() const noexcept { return bytes; }  // null: could not be locked

private:
    HGLOBAL block;
    void* bytes;
};

GlobalLockGuard::~GlobalLockGuard()
{
    if (bytes != nullptr) {
        ::GlobalUnlock(block);
    }
}

// The target is at least as large as the source.
bool CopyBlock(HGLOBAL source, HGLOBAL target)
{
    const GlobalLockGuard from(source);
    const GlobalLockGuard to(target);
    if (from.Get() == nullptr || to.Get() == nullptr) {
        return false;
    }
    std::memcpy(to.Get(), from.Get(), ::GlobalSize(source));
    return true;
}

HGLOBAL DuplicateBlock(HGLOBAL source)
{
    const HGLOBAL copy = ::GlobalAlloc(GMEM_MOVEABLE, ::GlobalSize(source));
    if (copy != nullptr && !CopyBlock(source, copy)) {
        ::GlobalFree(copy);
        return nullptr;
    }
    return copy;
}

FORMATETC DescribeFormat(CLIPFORMAT format, const FORMATETC* details)
{
    FORMATETC result{format, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
    if (details != nullptr) {
        result.dwAspect = details->dwAspect;
        result.lindex = details->lindex;
        result.cfFormat = format != 0 ? format : details->cfFormat;
    }
    return result;
}

bool IsSameFormat(const FORMATETC& left, const FORMATETC& right)
{
    return left.cfFormat == right.cfFormat && left.dwAspect == right.dwAspect &&
           left.lindex == right.lindex;
}

}  // namespace

BOOL AFXAPI AfxOleInit()
{
    if (!oleIsOurs) {
        oleIsOurs = SUCCEEDED(::OleInitialize(nullptr));
    }
    return oleIsOurs;
}

void AFXAPI AfxOleTerm(BOOL bJustRevoke)
{
    COleDataSource::FlushClipboard();
    if (!bJustRevoke && std::exchange(oleIsOurs, false)) {
        ::OleUninitialize();
    }
}

// The source as OLE sees it. OLE calls it on the thread that offered the data; nothing is ever
// thrown at it.
class COleDataSource::DataObject final : public IDataObject
{
public:
    explicit DataObject(COleDataSource& parent) noexcept : source(parent) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return source.InternalAddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return source.InternalRelease(); }

    HRESULT STDMETHODCALLTYPE GetData(FORMATETC* format, STGMEDIUM* medium) override;
    HRESULT STDMETHODCALLTYPE GetDataHere(FORMATETC* format, STGMEDIUM* medium) override;
    HRESULT STDMETHODCALLTYPE QueryGetData(FORMATETC* format) override;
    HRESULT STDMETHODCALLTYPE GetCanonicalFormatEtc(FORMATETC* format, FORMATETC* result) override;
    HRESULT STDMETHODCALLTYPE SetData(FORMATETC*, STGMEDIUM*, BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EnumFormatEtc(DWORD direction, IEnumFORMATETC** result) override;
    HRESULT STDMETHODCALLTYPE DAdvise(FORMATETC*, DWORD, IAdviseSink*, DWORD*) override
    {
        return OLE_E_ADVISENOTSUPPORTED;
    }
    HRESULT STDMETHODCALLTYPE DUnadvise(DWORD) override { return OLE_E_ADVISENOTSUPPORTED; }
    HRESULT STDMETHODCALLTYPE EnumDAdvise(IEnumSTATDATA**) override
    {
        return OLE_E_ADVISENOTSUPPORTED;
    }

private:
    COleDataSource& source;
};

HRESULT COleDataSource::DataObject::QueryInterface(REFIID id, void** object)
{
    if (object == nullptr) {
        return E_POINTER;
    }
    if (id != IID_IUnknown && id != IID_IDataObject) {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    *object = static_cast<IDataObject*>(this);
    AddRef();
    return S_OK;
}

HRESULT COleDataSource::DataObject::GetData(FORMATETC* format, STGMEDIUM* medium)
{
    if (format == nullptr || medium == nullptr) {
        return E_INVALIDARG;
    }
    *medium = STGMEDIUM{};
    HGLOBAL block = nullptr;
    if (const HRESULT found = source.FindBlock(*format, block); found != S_OK) {
        return found;
    }
    medium->hGlobal = DuplicateBlock(block);
    if (medium->hGlobal == nullptr) {
        return E_OUTOFMEMORY;
    }
    medium->tymed = TYMED_HGLOBAL;
    return S_OK;
}

HRESULT COleDataSource::DataObject::GetDataHere(FORMATETC* format, STGMEDIUM* medium)
{
    if (format == nullptr || medium == nullptr) {
        return E_INVALIDARG;
    }
    HGLOBAL block = nullptr;
    if (const HRESULT found = source.FindBlock(*format, block); found != S_OK) {
        return found;
    }
    if (medium->tymed != TYMED_HGLOBAL) {
        return DV_E_TYMED;
    }
    if (::GlobalSize(medium->hGlobal) < ::GlobalSize(block)) {
        return STG_E_MEDIUMFULL;
    }
    return CopyBlock(block, medium->hGlobal) ? S_OK : E_OUTOFMEMORY;
}

HRESULT COleDataSource::DataObject::QueryGetData(FORMATETC* format)
{
    HGLOBAL block = nullptr;
    return format == nullptr ? E_INVALIDARG : source.FindBlock(*format, block);
}

HRESULT COleDataSource::DataObject::GetCanonicalFormatEtc(FORMATETC* format, FORMATETC* result)
{
    if (format == nullptr || result == nullptr) {
        return E_INVALIDARG;
    }
    *result = *format;
    result->ptd = nullptr;  // the same data for every device
    return DATA_S_SAMEFORMATETC;
}

HRESULT COleDataSource::DataObject::EnumFormatEtc(DWORD direction, IEnumFORMATETC** result)
{
    if (result == nullptr) {
        return E_INVALIDARG;
    }
    *result = nullptr;
    if (direction != DATADIR_GET) {
        return E_NOTIMPL;
    }
    try {
        std::vector<FORMATETC> formats;
        for (const CacheEntry& entry : source.entries) {
            formats.push_back(entry.format);
        }
        return ::SHCreateStdEnumFmtEtc(static_cast<UINT>(formats.size()), formats.data(), result);
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
}

COleDataSource::COleDataSource() : dataObject(std::make_unique<DataObject>(*this))
{
    // Room for the usual single format, so that caching it needs no memory.
    entries.reserve(1);
}

COleDataSource::~COleDataSource()
{
    if (clipboardSource == this) {
        clipboardSource = nullptr;
    }
}

void COleDataSource::CacheGlobalData(CLIPFORMAT cfFormat, HGLOBAL hGlobal, LPFORMATETC lpFormatEtc)
{
    ASSERT(hGlobal != nullptr);
    CacheEntry entry{DescribeFormat(cfFormat, lpFormatEtc), {hGlobal, {}}};
    const auto same =
        std::find_if(entries.begin(), entries.end(), [&entry](const CacheEntry& held) {
            return IsSameFormat(held.format, entry.format);
        });
    if (same != entries.end()) {
        *same = std::move(entry);
    } else {
        entries.push_back(std::move(entry));
    }
}

void COleDataSource::Empty()
{
    entries.clear();
}

void COleDataSource::SetClipboard()
{
    const HRESULT result = OfferOnClipboard(dataObject.get());
    if (SUCCEEDED(result)) {
        clipboardSource = this;
    } else {
        TRACE(L"The clipboard does not take the data: 0x%08lx.\n", result);
    }
    // The maker's reference. The clipboard's own keeps the source from here on, or nothing does.
    InternalRelease();
}

COleDataSource* AFXAPI COleDataSource::GetClipboardOwner()
{
    if (clipboardSource == nullptr ||
        ::OleIsCurrentClipboard(clipboardSource->dataObject.get()) != S_OK) {
        return nullptr;
    }
    return clipboardSource;
}

void AFXAPI COleDataSource::FlushClipboard()
{
    if (GetClipboardOwner() != nullptr) {
        RetryWhileBusy([] { return ::OleFlushClipboard(); });
    }
}

HRESULT COleDataSource::FindBlock(const FORMATETC& format, HGLOBAL& block) const noexcept
{
    HRESULT result = DV_E_FORMATETC;
    for (const CacheEntry& entry : entries) {
        if (entry.format.cfFormat != format.cfFormat) {
            continue;
        }
        if (entry.format.dwAspect != format.dwAspect) {
            result = DV_E_DVASPECT;
        } else if (entry.format.lindex != format.lindex) {
            result = DV_E_LINDEX;
        } else if ((format.tymed & TYMED_HGLOBAL) == 0) {
            return DV_E_TYMED;
        } else {
            block = entry.block.get();
            return S_OK;
        }
    }
    return result;
}
