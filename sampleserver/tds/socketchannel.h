#pragma once

#include <QByteArrayView>
#include <QDeadlineTimer>
#include <QTcpSocket>

#include <atomic>
#include <exception>

namespace tds {

/// The connection is over: the client has gone, was silent for too long, or the server ends.
class ConnectionEnded : public std::exception {
  public:
    const char* what() const noexcept override { return "connection ended"; }
};

/// Bytes to and from one client, for the thread that made it. Waits are short slices, between which the
/// server's end is looked for, so neither a silent client nor one that does not read can hold the server.
class SocketChannel {
  public:
    /// A client that takes nothing of what is sent for so long has gone.
    SocketChannel(qintptr descriptor, const std::atomic_bool& stopping, int patienceMilliseconds);

    /// Fills `into` with `count` bytes. Throws ConnectionEnded.
    void read(char* into, qsizetype count, QDeadlineTimer deadline);

    /// Sends all bytes before it returns. False once the connection is over.
    bool write(QByteArrayView bytes);

    /// Looks at the first `count` bytes that have come, without waiting; false when fewer have.
    bool peek(char* into, qsizetype count);

    /// False once the client has gone or the server ends; notices it without waiting.
    bool isAlive() const;

    /// Lets what was sent arrive: waits for the client to go, half a second at most, and closes.
    void closeInOrder();

  private:
    QTcpSocket m_socket;
    const std::atomic_bool& m_stopping;
    const int m_patienceMilliseconds;
};

}  // namespace tds
