#include "tds/socketchannel.h"

#include <algorithm>

namespace tds {

namespace {

constexpr int kSliceMilliseconds = 100;
constexpr int kFarewellMilliseconds = 500;
// Bounds what a client can make the server hold by sending while it is not listened to.
constexpr qint64 kUnreadBytes = 64 * 1024;

}  // namespace

SocketChannel::SocketChannel(qintptr descriptor, const std::atomic_bool& stopping, int patienceMilliseconds)
    : m_stopping(stopping), m_patienceMilliseconds(patienceMilliseconds) {
    m_socket.setReadBufferSize(kUnreadBytes);
    if (!m_socket.setSocketDescriptor(descriptor)) throw ConnectionEnded();
    m_socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    m_socket.setSocketOption(QAbstractSocket::KeepAliveOption, 1);
}

bool SocketChannel::isAlive() const {
    return !m_stopping && m_socket.state() == QAbstractSocket::ConnectedState;
}

void SocketChannel::read(char* into, qsizetype count, QDeadlineTimer deadline) {
    while (count > 0) {
        const qint64 got = m_socket.read(into, count);
        if (got < 0) throw ConnectionEnded();
        into += got;
        count -= got;
        if (count == 0 || got > 0) continue;
        if (!isAlive() || deadline.hasExpired()) throw ConnectionEnded();
        const qint64 left = deadline.isForever() ? kSliceMilliseconds : deadline.remainingTime();
        m_socket.waitForReadyRead(int(std::min<qint64>(left, kSliceMilliseconds)));
    }
}

bool SocketChannel::write(QByteArrayView bytes) {
    if (!isAlive()) return false;
    m_socket.write(bytes.data(), bytes.size());
    QDeadlineTimer deadline(m_patienceMilliseconds);
    while (m_socket.bytesToWrite() > 0) {
        if (!isAlive() || deadline.hasExpired()) return false;
        if (m_socket.waitForBytesWritten(kSliceMilliseconds))
            deadline.setRemainingTime(m_patienceMilliseconds);
    }
    return isAlive();
}

bool SocketChannel::peek(char* into, qsizetype count) {
    if (m_socket.bytesAvailable() < count) m_socket.waitForReadyRead(0);
    return m_socket.peek(into, count) == count;
}

void SocketChannel::closeInOrder() {
    if (m_socket.state() != QAbstractSocket::ConnectedState) return;
    // Closing over unread bytes would reset the connection, and the client might lose the server's last
    // words.
    const QDeadlineTimer deadline(kFarewellMilliseconds);
    while (isAlive() && !deadline.hasExpired()) {
        m_socket.readAll();
        m_socket.waitForReadyRead(int(std::min<qint64>(deadline.remainingTime(), kSliceMilliseconds)));
    }
    m_socket.abort();
}

}  // namespace tds
