#include "afx.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

IMPLEMENT_DYNAMIC(CMemFile, CFile)

namespace {

// Beyond half of the address space no block can be had; sums of lengths stay below overflow.
constexpr SIZE_T maximumLength = 0x7FFFFFFF;

// Rounded up to a multiple; grown by half at least, so that many small writes copy each byte a
// fixed number of times.
SIZE_T RoundUp(SIZE_T needed, SIZE_T capacity, UINT growBytes)
{
    const ULONGLONG wanted = std::max<ULONGLONG>(needed, ULONGLONG{capacity} + capacity / 2);
    const ULONGLONG rounded = (wanted + growBytes - 1) / growBytes * growBytes;
    return static_cast<SIZE_T>(std::min<ULONGLONG>(rounded, maximumLength));
}

}  // namespace

CMemFile::CMemFile(UINT nGrowBytes) : growBytes(nGrowBytes) {}

CMemFile::CMemFile(BYTE* lpBuffer, UINT nBufferSize, UINT nGrowBytes) : growBytes(nGrowBytes)
{
    Attach(lpBuffer, nBufferSize, nGrowBytes);
}

CMemFile::~CMemFile()
{
    CMemFile::Close();
}

void CMemFile::Attach(BYTE* lpBuffer, UINT nBufferSize, UINT nGrowBytes)
{
    ASSERT(block == nullptr);
    block = lpBuffer;
    capacity = nBufferSize;
    length = nGrowBytes == 0 ? nBufferSize : 0;
    position = 0;
    growBytes = nGrowBytes;
    ownsBlock = false;
}

BYTE* CMemFile::Detach()
{
    BYTE* const detached = block;
    block = nullptr;
    capacity = length = position = 0;
    ownsBlock = true;
    return detached;
}

ULONGLONG CMemFile::Seek(LONGLONG lOff, UINT nFrom)
{
    const LONGLONG origin = nFrom == current ? LONGLONG{position}
                            : nFrom == end   ? LONGLONG{length}
                                             : 0;
    if (lOff < -origin || lOff > LONGLONG{maximumLength} - origin) {
        ::AfxThrowFileException(CFileException::badSeek, ERROR_SEEK);
    }
    position = static_cast<SIZE_T>(origin + lOff);
    return position;
}

void CMemFile::SetLength(ULONGLONG dwNewLen)
{
    if (dwNewLen > maximumLength) {
        ::AfxThrowFileException(CFileException::diskFull, ERROR_DISK_FULL);
    }
    const SIZE_T newLength = static_cast<SIZE_T>(dwNewLen);
    if (newLength > length) {
        Extend(newLength);
    }
    length = newLength;
    position = std::min(position, length);
}

UINT CMemFile::Read(void* lpBuf, UINT nCount)
{
    if (position >= length) {
        return 0;
    }
    const UINT count = std::min<UINT>(nCount, length - position);
    Memcpy(static_cast<BYTE*>(lpBuf), block + position, count);
    position += count;
    return count;
}

void CMemFile::Write(const void* lpBuf, UINT nCount)
{
    if (nCount == 0) {
        return;
    }
    if (nCount > maximumLength - position) {
        ::AfxThrowFileException(CFileException::diskFull, ERROR_DISK_FULL);
    }
    if (position + nCount > length) {
        Extend(position + nCount);
    }
    Memcpy(block + position, static_cast<const BYTE*>(lpBuf), nCount);
    position += nCount;
}

void CMemFile::Close()
{
    const bool isOwned = ownsBlock;
    BYTE* const closed = Detach();
    if (isOwned && closed != nullptr) {
        Free(closed);
    }
}

BYTE* CMemFile::Alloc(SIZE_T nBytes)
{
    return static_cast<BYTE*>(std::malloc(nBytes));
}

BYTE* CMemFile::Realloc(BYTE* lpMem, SIZE_T nBytes)
{
    return static_cast<BYTE*>(std::realloc(lpMem, nBytes));
}

BYTE* CMemFile::Memcpy(BYTE* lpMemTarget, const BYTE* lpMemSource, SIZE_T nBytes)
{
    return static_cast<BYTE*>(std::memcpy(lpMemTarget, lpMemSource, nBytes));
}

void CMemFile::Free(BYTE* lpMem)
{
    std::free(lpMem);
}

void CMemFile::GrowFile(SIZE_T dwNewLen)
{
    if (dwNewLen <= capacity) {
        return;
    }
    if (growBytes == 0) {
        ::AfxThrowFileException(CFileException::diskFull, ERROR_DISK_FULL);
    }
    const SIZE_T newCapacity = RoundUp(dwNewLen, capacity, growBytes);
    BYTE* const grown = block != nullptr ? Realloc(block, newCapacity) : Alloc(newCapacity);
    if (grown == nullptr) {
        ::AfxThrowMemoryException();
    }
    block = grown;
    capacity = newCapacity;
}

// What a seek past the end leaves between the old end and the new bytes reads as zeros.
void CMemFile::Extend(SIZE_T newLength)
{
    GrowFile(newLength);
    ASSERT(capacity >= newLength);
    std::memset(block + length, 0, newLength - length);
    length = newLength;
}
