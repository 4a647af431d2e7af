#include "Connection.h"

#include "ConsoleMessages.h"
#include "LineRules.h"

#include <YAddress.h>
#include <YBasicBuffer.h>
#include <YFormatMessage.h>
#include <YMessages.h>

#include <algorithm>
#include <exception>
#include <new>
#include <string_view>
#include <utility>

namespace {

constexpr unsigned readSize = 64 * 1024;  // bytes
constexpr int readsAtOnce = 2;
constexpr unsigned bytesATurn = 1024 * 1024;
constexpr std::size_t unfinishedLength = 1u << 16;  // units shown of a line that is not complete
constexpr UINT_PTR turnTimer = 1;
constexpr UINT turnPause = USER_TIMER_MINIMUM;  // milliseconds

std::string ToUtf8(const std::wstring& text)
{
    const int length = static_cast<int>(text.size());
    const int size =
        ::WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(), size, nullptr, nullptr);
    return bytes;
}

const char* GetBytes(LineEnd end)
{
    switch (end) {
    case LineEnd::Lf: return "\n";
    case LineEnd::Cr: return "\r";
    case LineEnd::CrLf: break;
    }
    return "\r\n";
}

YUnknownPointer<YBasicBuffer> MakeBuffer(const std::string& bytes)
{
    const auto size = static_cast<unsigned>(bytes.size());
    auto buffer = YUnknownPointer<YBasicBuffer>::Make(size);
    std::copy(bytes.begin(), bytes.end(), buffer->Data());
    buffer->SetSize(size);
    return buffer;
}

// As UTF-8, straight into the one block that is wiped.
YUnknownPointer<YBasicBuffer> MakeSecretBuffer(const YUnicodeString& text, std::string_view end)
{
    const int length = static_cast<int>(text.GetLength());
    const int size =
        ::WideCharToMultiByte(CP_UTF8, 0, text.c_str(), length, nullptr, 0, nullptr, nullptr);
    const auto whole = static_cast<unsigned>(size) + static_cast<unsigned>(end.size());
    auto buffer = YUnknownPointer<YBasicBuffer>::Make(whole, true);
    ::WideCharToMultiByte(CP_UTF8, 0, text.c_str(), length, reinterpret_cast<char*>(buffer->Data()),
                          size, nullptr, nullptr);
    std::copy(end.begin(), end.end(), buffer->Data() + size);
    buffer->SetSize(whole);
    return buffer;
}

bool IsNumeric(const std::string& host)
{
    return YUnknownPointer<IInternetAddress>::Adopt(MakeNumericAddress(host.c_str(), 0)) != nullptr;
}

// The system's words, where it has some.
std::wstring GetSocketErrorWords(unsigned code)
{
    try {
        YFormatMessage(nullptr, code, FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS);
        return YGetErrorText(code);
    } catch (const MessageNotFound&) {
        return YGetErrorText(MSG_UNEXPECTED_SOCKET_ERROR);
    }
}

bool IsEstablished(ConnectionState state)
{
    return state == ConnectionState::Connected || state == ConnectionState::Closing;
}

}  // namespace

Connection::~Connection()
{
    CloseSocket();
    Destroy();
}

void Connection::Abandon()
{
    observer = nullptr;
    CloseSocket();
    log.Stop();
}

void Connection::Connect(const Peer& wanted)
{
    const YUnknownPointer<Connection> self(this);
    CloseSocket();
    Create();  // without a window there are no turns; nothing else is missing then
    peer = wanted;
    decoder.emplace(TextEncoding::Utf8);
    cutLength = unfinishedTold = 0;
    receivedBytes = 0;
    receivedLines = 0;
    socket = YUnknownPointer<YIoSocket>::Make();
    socket->SetSink(this);
    const std::string host = ToUtf8(peer.host);
    ChangeState(IsNumeric(host) ? ConnectionState::Connecting : ConnectionState::Resolving);
    if (socket) {
        socket->CreateAndConnect(nullptr, host.c_str(), peer.port, this);
    }
}

void Connection::Disconnect()
{
    if (!IsOpen()) {
        return;
    }
    if (state != ConnectionState::Connected) {
        End(ConnectionState::EndedByUs);
        return;
    }
    if (pendingWrites == 0) {
        socket->Shutdown(SD_SEND);
    }
    ChangeState(ConnectionState::Closing);
}

bool Connection::Send(const std::wstring& line)
{
    if (state != ConnectionState::Connected) {
        return false;
    }
    const YUnknownPointer<Connection> self(this);
    const std::string bytes = ToUtf8(line) + GetBytes(lineEnd);
    const YUnknownPointer<YBasicBuffer> buffer = MakeBuffer(bytes);
    if (showsSent) {
        ShowSent(bytes);
    }
    if (logsSent) {
        WriteLog(bytes.data(), bytes.size());
    }
    Write(buffer.Get());
    return true;
}

bool Connection::SendSecret(const YUnicodeString& line)
{
    if (state != ConnectionState::Connected) {
        return false;
    }
    const YUnknownPointer<Connection> self(this);
    Write(MakeSecretBuffer(line, GetBytes(lineEnd)).Get());
    return true;
}

void Connection::Write(IBuffer* buffer)
{
    if (socket) {
        ++pendingWrites;
        socket->Write(nullptr, buffer);
    }
}

// What the socket answers. Since its sink goes before it is closed, it is always the socket of now.

void Connection::OnHostname(void*, const YReportMessageParams& reportParams, const Result&)
{
    if (state == ConnectionState::Resolving && reportParams.GetMessageId() == 0) {
        ChangeState(ConnectionState::Connecting);
    }
}

void Connection::OnConnect(void*, unsigned code)
{
    const YUnknownPointer<Connection> self(this);
    if (code != ERROR_SUCCESS) {
        Fail(code);
        return;
    }
    ChangeState(ConnectionState::Connected);
    for (int i = 0; i < readsAtOnce && socket; ++i) {
        socket->Read(nullptr, YUnknownPointer<YBasicBuffer>::Make(readSize).Get());
    }
}

void Connection::OnRead(void*, unsigned code, IBuffer* buffer)
{
    const YUnknownPointer<Connection> self(this);
    if (code != ERROR_SUCCESS) {
        Fail(code);
    } else if (buffer->Size() == 0) {
        End(state == ConnectionState::Closing ? ConnectionState::EndedByUs
                                              : ConnectionState::EndedByPeer);
    } else {
        try {
            Receive(*buffer, buffer->Data());
            ReadOn(buffer);
        } catch (const std::bad_alloc&) {
            Fail(ERROR_NOT_ENOUGH_MEMORY);
        }
    }
}

// An urgent byte is a byte like others in a conversation of lines.
void Connection::OnReadOOB(void* context, unsigned code, IBuffer* buffer)
{
    OnRead(context, code, buffer);
}

void Connection::OnWrite(void*, unsigned code, IBuffer*, unsigned)
{
    const YUnknownPointer<Connection> self(this);
    --pendingWrites;
    if (code != ERROR_SUCCESS) {
        Fail(code);
    } else if (state == ConnectionState::Closing && pendingWrites == 0) {
        socket->Shutdown(SD_SEND);
    }
}

// Bytes in, lines out

void Connection::ReadOn(IBuffer* buffer)
{
    if (!socket) {
        return;
    }
    bytesInTurn += buffer->Size();
    if (bytesInTurn >= bytesATurn && StartTimer(turnTimer, turnPause)) {
        resting.emplace_back(buffer);
    } else {
        socket->Read(nullptr, buffer);
    }
}

LRESULT Connection::OnTimer(UINT_PTR timer)
{
    const YUnknownPointer<Connection> self(this);
    StopTimer(timer);
    bytesInTurn = 0;
    for (const YUnknownPointer<IBuffer>& buffer : std::exchange(resting, {})) {
        if (socket) {
            socket->Read(nullptr, buffer.Get());
        }
    }
    return 0;
}

void Connection::Receive(const IBuffer& buffer, const unsigned char* bytes)
{
    const unsigned count = buffer.Size();
    receivedBytes += count;
    WriteLog(bytes, count);
    if (decoder) {
        batch.Clear();
        decoder->Decode(bytes, count, batch);
        Tell(false);
    }
}

void Connection::LogNotice(const std::wstring& text)
{
    const std::string bytes = ToUtf8(text) + GetBytes(LineEnd::CrLf);
    WriteLog(bytes.data(), bytes.size());
}

void Connection::WriteLog(const void* bytes, std::size_t count)
{
    YReportMessageParams logError;
    if (!log.Write(bytes, static_cast<DWORD>(count), logError) && observer) {
        observer->OnLogStop(logError);
    }
}

// The complete lines of the batch, and the beginning of the one that is not, if it has grown.
void Connection::Tell(bool atEnd)
{
    if (!batch.IsEmpty()) {
        std::vector<wchar_t>& first = batch.GetLines()->text;
        first.erase(first.begin(), first.begin() + static_cast<std::ptrdiff_t>(cutLength));
        if (std::exchange(cutLength, 0) > 0 && atEnd && first.empty()) {
            batch.Clear();  // its text is shown already
        }
    }
    receivedLines += batch.GetCount();
    for (unsigned i = 0; i < batch.GetCount(); ++i) {
        LineBatch::LineInfo& line = batch.GetLines()[i];
        line.attributes = ClassifyLine(line.text.data(), line.text.size());
    }
    const std::size_t length =
        atEnd ? 0 : std::min(decoder->GetUnfinishedLength() - cutLength, unfinishedLength);
    if (batch.IsEmpty() && length == unfinishedTold) {
        return;
    }
    unfinishedTold = length;
    if (length > 0) {
        batch.Add(decoder->GetUnfinishedText() + cutLength, length);
    }
    if (observer) {
        observer->OnLines(batch, length > 0);
    }
}

// Decoded as what is received, so that it can do as little harm. What the peer has begun stays where
// it is, as a prompt does.
void Connection::ShowSent(const std::string& bytes)
{
    batch.Clear();
    CutLine();
    const unsigned first = batch.GetCount();
    LineDecoder(TextEncoding::Utf8)
        .Decode(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size(), batch);
    for (unsigned i = first; i < batch.GetCount(); ++i) {
        batch.GetLines()[i].attributes = GetSentAttributes();
    }
    if (observer) {
        observer->OnLines(batch, false);
    }
}

void Connection::CutLine()
{
    if (unfinishedTold > 0) {
        batch.Add(decoder->GetUnfinishedText() + cutLength, unfinishedTold);
        cutLength += unfinishedTold;
        unfinishedTold = 0;
    }
}

// States

// The observer may release this object: callers that go on hold a reference.
void Connection::ChangeState(ConnectionState next)
{
    state = next;
    if (observer) {
        observer->OnStateChange();
    }
}

void Connection::End(ConnectionState how)
{
    const YUnknownPointer<Connection> self(this);
    CloseSocket();
    try {
        batch.Clear();
        decoder->Finish(batch);
        Tell(true);
    } catch (const std::bad_alloc&) {}  // the last words are lost; that it has ended is not
    if (!IsOpen()) {
        ChangeState(how);
    }
}

void Connection::Fail(unsigned code)
{
    const unsigned id = IsEstablished(state) ? CONSOLE_CONNECTION_LOST : CONSOLE_CONNECTION_FAILED;
    error = YReportMessageParams(id, ::GetModuleHandleW(nullptr));
    error.AddInsert(peer.host);
    error.AddInsert(std::to_wstring(peer.port));
    error.AddInsert(GetSocketErrorWords(code));
    End(ConnectionState::Failed);
}

// Its requests end untold.
void Connection::CloseSocket()
{
    if (const YUnknownPointer<YIoSocket> last = std::exchange(socket, {})) {
        last->SetSink(nullptr);
        last->Close();
    }
    pendingWrites = 0;
    resting.clear();
    bytesInTurn = 0;
    StopTimer(turnTimer);
}
