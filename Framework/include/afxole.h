// afxole.h: OLE for a thread, and what a program offers on the clipboard.
#pragma once

#include "afxwin.h"

#include <ole2.h>

#include <memory>
#include <vector>

// Makes OLE ready on the calling thread, once; FALSE: the thread is of another COM model.
COMMONFRAMEWORK_API BOOL AFXAPI AfxOleInit();
// The end of OLE on the calling thread: what it still offers on the clipboard is left there as
// data. Harmless where OLE never began. With bJustRevoke OLE itself stays.
COMMONFRAMEWORK_API void AFXAPI AfxOleTerm(BOOL bJustRevoke = FALSE);

// Data in several formats, offered to other programs. Made with new: after SetClipboard it belongs
// to the clipboard, which deletes it once something else is copied; before, InternalRelease does.
// One thread, which pumps messages while the data is offered.
class COMMONFRAMEWORK_API COleDataSource : public CCmdTarget
{
public:
    COleDataSource();
    ~COleDataSource() override;

    // Takes the block over, whatever happens, and frees one that it had for the same format. Each
    // reader is given a copy. lpFormatEtc adds aspect and index; its format counts where cfFormat
    // is 0.
    void CacheGlobalData(CLIPFORMAT cfFormat, HGLOBAL hGlobal, LPFORMATETC lpFormatEtc = nullptr);
    void Empty();

    // Hands the object to the clipboard: it must not be touched any more. A clipboard that another
    // program holds open is waited for, a tenth of a second at most; then the object is deleted.
    void SetClipboard();
    // The thread's source whose data is on the clipboard now; null: none is.
    static COleDataSource* AFXAPI GetClipboardOwner();
    // Leaves the thread's offer on the clipboard as data that outlives the program.
    static void AFXAPI FlushClipboard();

private:
    class DataObject;

    struct GlobalBlockDeleter
    {
        void operator()(HGLOBAL block) const noexcept { ::GlobalFree(block); }
    };

    struct CacheEntry
    {
        FORMATETC format;
        std::unique_ptr<void, GlobalBlockDeleter> block;
    };

    // S_OK with the block, still ours, or the reason why there is none.
    HRESULT FindBlock(const FORMATETC& format, HGLOBAL& block) const noexcept;

    std::vector<CacheEntry> entries;  // no two of the same format, aspect and index
    std::unique_ptr<DataObject> dataObject;  // what OLE sees; its references are this object's
};
