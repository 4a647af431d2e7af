#include "FileFollower.h"

#include "ConsoleText.h"
#include "LineRules.h"
#include "resource.h"

#include <process.h>

#include <algorithm>
#include <mutex>
#include <new>
#include <utility>

namespace {

constexpr DWORD chunkSize = 1u << 20;  // bytes a read
constexpr std::size_t sliceSize = 1u << 16;  // bytes decoded before the batch is looked at
constexpr unsigned batchLines = 8192;
constexpr std::size_t batchCharacters = 1u << 20;
constexpr DWORD pollTime = 250;  // milliseconds

bool IsSameFile(HANDLE left, HANDLE right)
{
    BY_HANDLE_FILE_INFORMATION first{};
    BY_HANDLE_FILE_INFORMATION second{};
    if (!::GetFileInformationByHandle(left, &first) ||
        !::GetFileInformationByHandle(right, &second)) {
        return true;  // what cannot be told apart is not read twice
    }
    return first.dwVolumeSerialNumber == second.dwVolumeSerialNumber &&
           first.nFileIndexHigh == second.nFileIndexHigh &&
           first.nFileIndexLow == second.nFileIndexLow;
}

bool IsDeletePending(HANDLE file)
{
    FILE_STANDARD_INFO info{};
    return ::GetFileInformationByHandleEx(file, FileStandardInfo, &info, sizeof info) &&
           info.DeletePending;
}

ULONGLONG GetSize(HANDLE file)
{
    LARGE_INTEGER size{};
    return ::GetFileSizeEx(file, &size) ? static_cast<ULONGLONG>(size.QuadPart) : 0;
}

}  // namespace

FileFollower::FileFollower(std::wstring filePath, bool follow, HWND window, UINT message,
                           TextRules textRules)
    : path(std::move(filePath)),
      rules(textRules),
      truncatedNotice(LoadText(IDS_NOTICE_TRUNCATED)),
      replacedNotice(LoadText(IDS_NOTICE_REPLACED)),
      queue(window, message),
      following(follow)
{
    // By the run time itself: a std::thread of this tool chain may leave a handle behind.
    worker.Reset(
        reinterpret_cast<HANDLE>(::_beginthreadex(nullptr, 0, &RunThread, this, 0, nullptr)));
    if (!worker) {
        throw std::bad_alloc();
    }
}

FileFollower::~FileFollower()
{
    Stop();
}

FollowerState FileFollower::GetState() const
{
    const std::lock_guard lock(mutex);
    return state;
}

void FileFollower::SetFollowing(bool on)
{
    {
        const std::lock_guard lock(mutex);
        following = on;
    }
    queue.Poke();
}

void FileFollower::Stop()
{
    queue.Stop();
    if (worker) {
        ::WaitForSingleObject(worker.Get(), INFINITE);
        worker.Reset();
    }
}

unsigned FileFollower::RunThread(void* follower)
{
    static_cast<FileFollower*>(follower)->Run();
    return 0;
}

// The error is told without any memory: there may be none left.
void FileFollower::Run() noexcept
{
    DWORD error = ERROR_NOT_ENOUGH_MEMORY;
    try {
        chunk.resize(chunkSize);
        error = Follow();
    } catch (const std::bad_alloc&) {}
    {
        const std::lock_guard lock(mutex);
        state.ended = true;
        state.error = error;
    }
    queue.Wake();
}

DWORD FileFollower::Follow()
{
    DWORD error = Open(file);
    while (error == ERROR_SUCCESS && !queue.IsStopped()) {
        error = file ? ReadToEnd() : ERROR_SUCCESS;
        if (error == ERROR_SUCCESS && successor) {
            StartOver(replacedNotice);
            file = std::move(successor);
        } else if (error == ERROR_SUCCESS) {
            error = AwaitChange();
        }
    }
    return error;
}

// Reading what is no file on a disk (a console, a pipe) might never return.
DWORD FileFollower::Open(YUniqueFile& opened) const
{
    constexpr DWORD sharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    YUniqueFile next(::CreateFileW(path.c_str(), GENERIC_READ, sharing, nullptr, OPEN_EXISTING,
                                   FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    if (!next) {
        return ::GetLastError();
    }
    if (::GetFileType(next.Get()) != FILE_TYPE_DISK) {
        return ERROR_NOT_SUPPORTED;
    }
    opened = std::move(next);
    return ERROR_SUCCESS;
}

DWORD FileFollower::ReadToEnd()
{
    while (!queue.IsStopped()) {
        DWORD count = 0;
        if (!::ReadFile(file.Get(), chunk.data(), chunkSize, &count, nullptr)) {
            return ::GetLastError();
        }
        if (count == 0) {
            DeliverUnfinished();
            Publish(bytesRead, true);
            break;
        }
        bytesRead += count;
        Publish(std::max(GetSize(file.Get()), bytesRead), false);
        DecodeChunk(count);
    }
    return ERROR_SUCCESS;
}

// Until there is something to read, or the end of all.
DWORD FileFollower::AwaitChange()
{
    for (;;) {
        bool polls = false;
        {
            const std::lock_guard lock(mutex);
            polls = following;
        }
        if (!queue.Sleep(polls ? pollTime : INFINITE)) {
            return ERROR_SUCCESS;
        }
        if (!polls) {
            continue;
        }
        const ULONGLONG size = file ? GetSize(file.Get()) : 0;
        if (file && size < bytesRead) {
            return ReadAgain();
        }
        if (size > bytesRead || LooksReplaced()) {
            return ERROR_SUCCESS;
        }
        // While we hold a deleted file, nobody could make another of its name.
        if (file && IsDeletePending(file.Get())) {
            file.Reset();
            bytesRead = 0;
        }
    }
}

DWORD FileFollower::ReadAgain()
{
    StartOver(truncatedNotice);
    const LARGE_INTEGER start{};
    return ::SetFilePointerEx(file.Get(), start, nullptr, FILE_BEGIN) ? ERROR_SUCCESS
                                                                      : ::GetLastError();
}

// What was written to the file between its last read and its renaming is still to be read.
bool FileFollower::LooksReplaced()
{
    YUniqueFile named;
    if (Open(named) != ERROR_SUCCESS || (file && IsSameFile(file.Get(), named.Get()))) {
        return false;
    }
    successor = std::move(named);
    return true;
}

void FileFollower::StartOver(std::wstring_view notice)
{
    if (!GetBatch()) {
        return;
    }
    if (decoder) {
        decoder->Finish(batch->lines);
        decoder.reset();
    }
    ClassifyNewLines();
    batch->lines.Add(notice.data(), notice.size()).attributes = GetNoticeAttributes();
    classified = batch->lines.GetCount();
    bytesRead = 0;
}

void FileFollower::DecodeChunk(std::size_t count)
{
    const unsigned char* bytes = chunk.data();
    const unsigned char* const end = bytes + count;
    if (!decoder) {
        const DetectedEncoding detected = DetectEncoding(bytes, count);
        decoder.emplace(detected.encoding, rules.codePage, rules.tabWidth);
        bytes += detected.markLength;
        const std::lock_guard lock(mutex);
        state.encoding = detected.encoding;
    }
    while (bytes < end && GetBatch()) {
        const std::size_t slice = std::min<std::size_t>(sliceSize, end - bytes);
        decoder->Decode(bytes, slice, batch->lines);
        bytes += slice;
        if (batch->lines.GetCount() >= batchLines ||
            batch->lines.GetCharacters() >= batchCharacters) {
            Deliver(0);
        }
    }
}

// False: stopped.
bool FileFollower::GetBatch()
{
    if (!batch) {
        batch = queue.GetEmpty();
        classified = 0;
    }
    return batch != nullptr;
}

void FileFollower::ClassifyNewLines()
{
    LineBatch& lines = batch->lines;
    for (; classified < lines.GetCount(); ++classified) {
        LineBatch::LineInfo& line = lines.GetLines()[classified];
        line.attributes = ClassifyLine(line.text.data(), line.text.size());
    }
}

// unfinished: characters of the last line, where it is not complete.
void FileFollower::Deliver(std::size_t unfinished)
{
    ClassifyNewLines();
    batch->endsUnfinished = unfinished > 0;
    unfinishedTold = unfinished;
    queue.Put(std::move(batch));
}

// At the end of the file: what has come of its last line, unless that is known already.
void FileFollower::DeliverUnfinished()
{
    const std::size_t all = decoder ? decoder->GetUnfinishedLength() : 0;
    const std::size_t length = std::min(all, unfinishedLength);
    const bool hasLines = batch && !batch->lines.IsEmpty();
    if (!hasLines && length == unfinishedTold) {
        return;
    }
    if (!GetBatch()) {
        return;
    }
    if (length > 0) {
        batch->lines.Add(decoder->GetUnfinishedText(), length);
    }
    Deliver(length);
}

void FileFollower::Publish(ULONGLONG size, bool atEnd)
{
    {
        const std::lock_guard lock(mutex);
        const bool isNews = !state.opened || state.atEnd != atEnd;
        state.opened = true;
        state.atEnd = atEnd;
        state.bytesRead = bytesRead;
        state.size = size;
        if (!isNews) {
            return;
        }
    }
    queue.Wake();
}
