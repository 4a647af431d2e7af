// Connection.h: a conversation in lines with another machine, without a window.
#pragma once

#include "ConsoleChoices.h"
#include "LineBatch.h"
#include "LineDecoder.h"
#include "Peer.h"
#include "SessionLog.h"

#include <IBuffer.h>
#include <IHostnameResolver.h>
#include <ISocketSink.h>
#include <YIoSocket.h>
#include <YNotificationSink.h>
#include <YReportMessageParams.h>
#include <YUnicodeString.h>
#include <YUnknown.h>
#include <YUnknownPointer.h>

#include <optional>
#include <string>
#include <vector>

enum class ConnectionState {
    Idle,  // never connected
    Resolving,  // the addresses of the host's name are being looked up
    Connecting,
    Connected,
    Closing,  // we have ended our side; what the peer still sends is shown
    EndedByUs,
    EndedByPeer,
    Failed,  // the connection's error says why
};

// Who shows a connection. Borrowed; may call the connection back, and release it.
class ConnectionObserver
{
public:
    // endsUnfinished: the last line is not complete, the next call replaces it.
    virtual void OnLines(const LineBatch& lines, bool endsUnfinished) = 0;
    virtual void OnStateChange() = 0;
    // The log has been stopped; the connection goes on.
    virtual void OnLogStop(const YReportMessageParams& error) = 0;

protected:
    ~ConnectionObserver() = default;
};

struct ConnectionSinks : ISocketSink, IHostnameResolverSink
{};

// Sends and receives lines of UTF-8, one socket after another. What is received is decoded across
// the borders of packets; what is sent is shown among it, as a line of its own. After each MiB the
// next bytes wait until input and painting have had their turn, so that a fast peer cannot keep the
// user from ending it. User-interface thread.
class Connection : public YUnknown<ConnectionSinks>, private YNotificationSink
{
public:
    explicit Connection(ConnectionObserver& shownBy) : observer(&shownBy) {}
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    // The observer is going: closes at once, and tells nobody any more.
    void Abandon();

    void Connect(const Peer& wanted);  // drops the connection that there is
    // Connected: ends our side when all that was sent is on its way. Otherwise, and the second
    // time, at once.
    void Disconnect();
    // A line without its end. False: not connected.
    bool Send(const std::wstring& line);
    // The same for a password: it is not shown, and wiped when it is on its way.
    bool SendSecret(const YUnicodeString& line);
    void SetLineEnd(LineEnd end) { lineEnd = end; }  // of what is sent from now on
    void SetShowingSent(bool on) { showsSent = on; }
    void SetLoggingSent(bool on) { logsSent = on; }
    // A line of our own among what the log holds, where there is a log.
    void LogNotice(const std::wstring& text);

    ConnectionState GetState() const { return state; }
    bool IsOpen() const { return socket != nullptr; }  // or opening, or closing
    const Peer& GetPeer() const { return peer; }
    const YReportMessageParams& GetError() const { return error; }
    ULONGLONG GetReceivedBytes() const { return receivedBytes; }
    unsigned GetReceivedLines() const { return receivedLines; }  // complete ones
    SessionLog& GetLog() { return log; }

    void OnRead(void* context, unsigned code, IBuffer* buffer) override;
    void OnWrite(void* context, unsigned code, IBuffer* buffer, unsigned bytes) override;
    void OnReadOOB(void* context, unsigned code, IBuffer* buffer) override;
    void OnWriteOOB(void*, unsigned, IBuffer*, unsigned) override {}
    void OnConnect(void* context, unsigned code) override;
    void OnHostname(void* context, const YReportMessageParams& reportParams,
                    const Result& result) override;

private:
    ~Connection() override;

    LRESULT OnTimer(UINT_PTR timer) override;
    void ReadOn(IBuffer* buffer);
    void Receive(const IBuffer& buffer, const unsigned char* bytes);
    void Tell(bool atEnd);
    void Write(IBuffer* buffer);
    void ShowSent(const std::string& bytes);
    void WriteLog(const void* bytes, std::size_t count);
    void CutLine();
    void ChangeState(ConnectionState next);
    void End(ConnectionState how);
    void Fail(unsigned code);
    void CloseSocket();

    ConnectionObserver* observer;  // null: abandoned
    ConnectionState state = ConnectionState::Idle;
    Peer peer;
    LineEnd lineEnd = LineEnd::CrLf;
    bool showsSent = true;
    bool logsSent = false;
    YReportMessageParams error;
    YUnknownPointer<YIoSocket> socket;  // null: none is open
    unsigned pendingWrites = 0;
    std::vector<YUnknownPointer<IBuffer>> resting;  // buffers that wait for the timer to read on
    unsigned bytesInTurn = 0;

    std::optional<LineDecoder> decoder;  // of this connection
    LineBatch batch;
    std::size_t cutLength = 0;  // units of the unfinished line that are a line of their own by now
    std::size_t unfinishedTold = 0;  // units
    ULONGLONG receivedBytes = 0;
    unsigned receivedLines = 0;
    SessionLog log;
};
