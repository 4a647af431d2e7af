#include "afx.h"

#include <cstring>
#include <iterator>
#include <memory>
#include <mutex>
#include <utility>

namespace {

// What stands before an object: null, the number of one already there, the number of its class with
// the flag, or a class that is new. Numbers that a word cannot hold follow a mark as double words.
constexpr WORD nullTag = 0;
constexpr WORD newClassTag = 0xFFFF;
constexpr WORD classTag = 0x8000;
constexpr WORD bigTagFollows = 0x7FFF;
constexpr DWORD bigClassTag = 0x80000000;
constexpr DWORD maximumNumber = 0x3FFFFFFE;

// Each object inside another takes stack, which a file must not be able to use up. Storing refuses
// as well: what is written can be read.
constexpr UINT maximumDepth = 256;

constexpr WORD maximumNameLength = 63;
constexpr UINT notSerialised = 0xFFFF;
constexpr UINT unknownSchema = static_cast<UINT>(-1);

// All classes of all modules, the newest first. The lock needs no construction: modules register
// while they are being loaded, on whichever thread.
std::mutex classesLock;
AFX_CLASSINIT* classes = nullptr;

class DepthGuard
{
public:
    explicit DepthGuard(UINT& guarded) : depth(guarded)
    {
        if (depth == maximumDepth) {
            ::AfxThrowArchiveException(CArchiveException::badIndex);
        }
        ++depth;
    }
    ~DepthGuard() { --depth; }
    DepthGuard(const DepthGuard&) = delete;
    DepthGuard& operator=(const DepthGuard&) = delete;

private:
    UINT& depth;
};

void RequireClass(const CRuntimeClass* type, const CRuntimeClass* requested)
{
    if (requested != nullptr && !type->IsDerivedFrom(requested)) {
        ::AfxThrowArchiveException(CArchiveException::badClass);
    }
}

void RequireSchema(const CRuntimeClass& type, UINT schema)
{
    const bool takesAny = (type.m_wSchema & VERSIONABLE_SCHEMA) != 0;
    if (!takesAny && (type.m_wSchema & ~VERSIONABLE_SCHEMA) != schema) {
        ::AfxThrowArchiveException(CArchiveException::badSchema);
    }
}

}  // namespace

AFX_CLASSINIT::AFX_CLASSINIT(CRuntimeClass* pNewClass) : description(pNewClass)
{
    const std::lock_guard lock(classesLock);
    next = std::exchange(classes, this);
}

AFX_CLASSINIT::~AFX_CLASSINIT()
{
    const std::lock_guard lock(classesLock);
    AFX_CLASSINIT** link = &classes;
    while (*link != this) {
        link = &(*link)->next;
    }
    *link = next;
}

CRuntimeClass* AFXAPI CRuntimeClass::FromName(LPCSTR lpszClassName)
{
    const std::lock_guard lock(classesLock);
    for (const AFX_CLASSINIT* known = classes; known != nullptr; known = known->next) {
        if (std::strcmp(known->description->m_lpszClassName, lpszClassName) == 0) {
            return known->description;
        }
    }
    return nullptr;
}

void CRuntimeClass::Store(CArchive& ar) const
{
    const WORD length = static_cast<WORD>(std::strlen(m_lpszClassName));
    ASSERT(length <= maximumNameLength);
    ar << static_cast<WORD>(m_wSchema) << length;
    ar.Write(m_lpszClassName, length);
}

CRuntimeClass* AFXAPI CRuntimeClass::Load(CArchive& ar, UINT* pwSchemaNum)
{
    WORD schema = 0;
    WORD length = 0;
    ar >> schema >> length;
    char name[maximumNameLength + 1] = {};
    if (length > maximumNameLength || ar.Read(name, length) != length) {
        return nullptr;
    }
    *pwSchemaNum = schema;
    return FromName(name);
}

BOOL CObject::IsSerializable() const
{
    return GetRuntimeClass()->m_wSchema != notSerialised;
}

void CObject::Serialize(CArchive&) {}

void CArchive::WriteObject(const CObject* pOb)
{
    RequireOpen(false);
    if (pOb == nullptr) {
        *this << nullTag;
        return;
    }
    if (WriteKnown(pOb, 0)) {
        return;
    }
    const DepthGuard guard(depth);
    WriteClass(pOb->GetRuntimeClass());
    AddStored(pOb);
    const_cast<CObject*>(pOb)->Serialize(*this);  // which only reads it when it stores
}

CObject* CArchive::ReadObject(const CRuntimeClass* pClass)
{
    UINT schema = 0;
    DWORD number = 0;
    CRuntimeClass* const type = ReadClass(pClass, &schema, &number);
    return type == nullptr ? GetLoadedObject(number, pClass) : LoadNewObject(type, schema);
}

void CArchive::MapObject(const CObject* pOb)
{
    if (pOb == nullptr) {
        return;
    }
    if (IsStoring()) {
        AddStored(pOb);
    } else {
        AddLoaded({nullptr, 0, const_cast<CObject*>(pOb)});
    }
}

void CArchive::WriteClass(const CRuntimeClass* pClassRef)
{
    RequireOpen(false);
    if (pClassRef->m_wSchema == notSerialised) {
        TRACE(L"%hs has no IMPLEMENT_SERIAL.\n", pClassRef->m_lpszClassName);
        ::AfxThrowNotSupportedException();
    }
    if (!WriteKnown(pClassRef, bigClassTag)) {
        *this << newClassTag;
        pClassRef->Store(*this);
        AddStored(pClassRef);
    }
}

CRuntimeClass* CArchive::ReadClass(const CRuntimeClass* pClassRefRequested, UINT* pSchema,
                                   DWORD* pObTag)
{
    RequireOpen(true);
    Loaded found;
    WORD tag = 0;
    *this >> tag;
    if (tag == newClassTag) {
        found.type = ReadNewClass(found.schema);
    } else {
        DWORD number = (tag & classTag) != 0 ? bigClassTag | (tag & ~classTag) : tag;
        if (tag == bigTagFollows) {
            *this >> number;
        }
        if ((number & bigClassTag) == 0 && pObTag != nullptr) {
            *pObTag = number;
            return nullptr;
        }
        found = GetLoadedClass(number);
    }
    RequireClass(found.type, pClassRefRequested);
    if (pSchema != nullptr) {
        *pSchema = found.schema;
    } else {
        objectSchema = found.schema;
    }
    if (pObTag != nullptr) {
        *pObTag = bigClassTag;
    }
    return found.type;
}

UINT CArchive::GetObjectSchema()
{
    return std::exchange(objectSchema, unknownSchema);
}

// Writes the number of what is stored already; false: it is not.
bool CArchive::WriteKnown(const void* stored, DWORD classFlag)
{
    const auto known = storedNumbers.find(stored);
    if (known == storedNumbers.end()) {
        return false;
    }
    const DWORD number = known->second;
    if (number < bigTagFollows) {
        *this << static_cast<WORD>(number | (classFlag != 0 ? classTag : 0));
    } else {
        *this << bigTagFollows << (number | classFlag);
    }
    return true;
}

void CArchive::AddStored(const void* added)
{
    if (lastNumber == maximumNumber) {
        ::AfxThrowArchiveException(CArchiveException::badIndex);
    }
    storedNumbers[added] = ++lastNumber;
}

DWORD CArchive::AddLoaded(const Loaded& added)
{
    if (loaded.empty()) {
        loaded.emplace_back();  // null
    }
    if (loaded.size() > maximumNumber) {
        ::AfxThrowArchiveException(CArchiveException::badIndex);
    }
    loaded.push_back(added);
    return static_cast<DWORD>(loaded.size()) - 1;
}

CRuntimeClass* CArchive::ReadNewClass(UINT& schema)
{
    CRuntimeClass* const type = CRuntimeClass::Load(*this, &schema);
    if (type == nullptr) {
        ::AfxThrowArchiveException(CArchiveException::badClass);
    }
    RequireSchema(*type, schema);
    AddLoaded({type, schema, nullptr});
    return type;
}

const CArchive::Loaded& CArchive::GetLoadedClass(DWORD number) const
{
    const DWORD index = number & ~bigClassTag;
    if ((number & bigClassTag) == 0 || index >= loaded.size() || loaded[index].type == nullptr) {
        ::AfxThrowArchiveException(CArchiveException::badIndex);
    }
    return loaded[index];
}

CObject* CArchive::GetLoadedObject(DWORD number, const CRuntimeClass* requested) const
{
    if (number == nullTag) {
        return nullptr;
    }
    if (number >= loaded.size() || loaded[number].object == nullptr) {
        ::AfxThrowArchiveException(CArchiveException::badIndex);
    }
    CObject* const object = loaded[number].object;
    RequireClass(object->GetRuntimeClass(), requested);
    return object;
}

CObject* CArchive::LoadNewObject(CRuntimeClass* type, UINT schema)
{
    const DepthGuard guard(depth);
    std::unique_ptr<CObject> object(type->CreateObject());
    if (object == nullptr) {
        ::AfxThrowMemoryException();
    }
    // Has its number before its parts are loaded, which may refer to it.
    const DWORD number = AddLoaded({nullptr, 0, object.get()});
    const UINT outerSchema = std::exchange(objectSchema, schema);
    try {
        object->Serialize(*this);
    } catch (...) {
        if (number < loaded.size()) {  // the archive may be closed by now
            loaded[number].object = nullptr;
        }
        objectSchema = outerSchema;
        throw;
    }
    objectSchema = outerSchema;
    return object.release();
}

CArchive& AFXAPI operator<<(CArchive& ar, const CObject* pOb)
{
    ar.WriteObject(pOb);
    return ar;
}

CArchive& AFXAPI operator>>(CArchive& ar, CObject*& pOb)
{
    pOb = ar.ReadObject(nullptr);
    return ar;
}
