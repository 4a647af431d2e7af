// FileFollower.h: reads a text file on a thread of its own, and reads on while it grows.
#pragma once

#include "LineDecoder.h"
#include "LineQueue.h"
#include "WorkerLock.h"

#include <YUniqueHandle.h>

#include <windows.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// How far a follower has come.
struct FollowerState
{
    bool opened = false;  // something of the file has been read, or it is empty
    bool atEnd = false;  // all that the file had
    bool ended = false;  // nothing more will come
    DWORD error = ERROR_SUCCESS;  // why it ended
    TextEncoding encoding = TextEncoding::Utf8;
    ULONGLONG bytesRead = 0;
    ULONGLONG size = 0;  // bytes, as last seen
};

// How the text of a file is understood.
struct TextRules
{
    UINT codePage = CP_ACP;  // where it is no Unicode
    unsigned tabWidth = LineDecoder::usualTabWidth;  // columns

    bool operator==(const TextRules&) const = default;
};

// Delivers the lines of a file, classified by their severity, then those that are added to it, some
// four times a second. The unfinished last line is shown as well (its beginning, where it is very
// long), and delivered again when there is more of it.
// A file that becomes shorter is read again from its start; one that is replaced by another of the
// same name is read to its end, then the other from its start: both with a line of our own
// between. A name that is gone for a while is normal during that.
// Every change posts the message to the window: then take until there is nothing, then look at the
// state. Others may write, rename and delete the file at any time. All operations belong to the
// thread that owns the object; its end at any time is safe, and waits for one read at most.
class FileFollower
{
public:
    static constexpr std::size_t unfinishedLength = 1u << 16;  // characters shown

    // follow: not only what the file has now. Throws std::bad_alloc where no thread can be made.
    FileFollower(std::wstring path, bool follow, HWND window, UINT message, TextRules rules = {});
    ~FileFollower();
    FileFollower(const FileFollower&) = delete;
    FileFollower& operator=(const FileFollower&) = delete;

    const std::wstring& GetPath() const { return path; }
    FollowerState GetState() const;

    // Null: there is nothing now. What was taken is given back.
    std::unique_ptr<LineNews> Take() { return queue.Take(); }
    void GiveBack(std::unique_ptr<LineNews> news) { queue.GiveBack(std::move(news)); }

    void SetFollowing(bool on);
    // Reads no further; what has been read can still be taken.
    void Stop();

private:
    // On the worker.
    static unsigned __stdcall RunThread(void* follower);
    void Run() noexcept;
    DWORD Follow();
    DWORD Open(YUniqueFile& opened) const;
    DWORD ReadToEnd();
    DWORD AwaitChange();
    DWORD ReadAgain();
    bool LooksReplaced();
    void StartOver(std::wstring_view notice);
    void DecodeChunk(std::size_t count);
    bool GetBatch();
    void ClassifyNewLines();
    void Deliver(std::size_t unfinished);
    void DeliverUnfinished();
    void Publish(ULONGLONG size, bool atEnd);

    const std::wstring path;
    const TextRules rules;
    // Loaded by the owner, whose thread has the user's language.
    const std::wstring truncatedNotice;
    const std::wstring replacedNotice;
    LineQueue queue;
    mutable WorkerLock mutex;  // guards the state
    FollowerState state;
    bool following;  // guarded as well

    // The worker's own.
    YUniqueFile file;  // none: deleted, its name is waited for
    YUniqueFile successor;  // has taken the file's name; read once the file is at its end
    std::vector<unsigned char> chunk;
    std::optional<LineDecoder> decoder;  // none before the first bytes have told the encoding
    std::unique_ptr<LineNews> batch;  // being filled
    unsigned classified = 0;  // lines of the batch
    ULONGLONG bytesRead = 0;  // of this file
    std::size_t unfinishedTold = 0;  // characters of the unfinished line that were delivered

    YUniqueKernelHandle worker;  // null: has been stopped
};
