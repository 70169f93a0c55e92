#include "support/relay.h"

#include <QHostAddress>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <QtEndian>

#include <optional>

namespace testsupport {

namespace {

constexpr qint64 ReadAtOnce = 8192;
constexpr char SqlBatch = 1;  // MS-TDS 2.2.3.1.1

/// Takes the packet headers out of one direction of a line (MS-TDS 2.2.3.1).
class Packets {
  public:
    struct Packet {
        char type;
        bool last;
        QByteArray data;
    };

    void add(const QByteArray& bytes) { m_bytes += bytes; }
    std::optional<Packet> take() {
        constexpr qsizetype header = 8;
        if (m_bytes.size() < header) return std::nullopt;
        const qsizetype size = qFromBigEndian<quint16>(m_bytes.constData() + 2);
        if (m_bytes.size() < size) return std::nullopt;
        Packet packet{m_bytes[0], (m_bytes[1] & 1) != 0, m_bytes.mid(header, size - header)};
        m_bytes.remove(0, size);
        return packet;
    }

  private:
    QByteArray m_bytes;
};

/// The text of a batch, behind the headers that stand before it since TDS 7.2 (MS-TDS 2.2.6.7).
QString batchText(const QByteArray& message) {
    const qsizetype headers = message.size() < 4 ? 0 : qFromLittleEndian<qint32>(message.constData());
    const QByteArray text = message.mid(headers);
    return QString::fromUtf16(reinterpret_cast<const char16_t*>(text.constData()), text.size() / 2);
}

}  // namespace

struct Relay::Line {
    Packets toServer;
    Packets toClient;
    QByteArray batch;
    QByteArray withheld;
    bool clientsTurn = false;
    int bytesLeft = -1;  ///< until the line is cut
    bool held = false;
};

Relay::Relay(quint16 serverPort) : m_serverPort(serverPort), m_server(std::make_unique<QTcpServer>()) {
    m_server->moveToThread(&m_thread);
    m_thread.start();
    QMetaObject::invokeMethod(
        m_server.get(),
        [this] {
            m_server->listen(QHostAddress::LocalHost);
            m_port = m_server->serverPort();
            QObject::connect(m_server.get(), &QTcpServer::newConnection, m_server.get(),
                             [this] { accept(); });
        },
        Qt::BlockingQueuedConnection);
}

Relay::~Relay() {
    QMetaObject::invokeMethod(
        m_server.get(), [this] { m_server.reset(); }, Qt::BlockingQueuedConnection);
    m_thread.quit();
    m_thread.wait();
}

void Relay::reset() {
    const QMutexLocker lock(&m_mutex);
    m_batches.clear();
    m_sent.clear();
    m_turns = 0;
    m_cutMark.clear();
}

QStringList Relay::batches() {
    const QMutexLocker lock(&m_mutex);
    return m_batches;
}

qsizetype Relay::sent(const QByteArray& mark) {
    const QMutexLocker lock(&m_mutex);
    return m_sent.count(mark);
}

void Relay::cutAt(const QByteArray& mark, int times) {
    const QMutexLocker lock(&m_mutex);
    m_cutMark = mark;
    m_cutTimes = times;
}

void Relay::cut() {
    QMetaObject::invokeMethod(
        m_server.get(), [this] { abortLines(); }, Qt::BlockingQueuedConnection);
}

void Relay::setDelay(int milliseconds) {
    QMetaObject::invokeMethod(
        m_server.get(), [=, this] { m_delay = milliseconds; }, Qt::BlockingQueuedConnection);
}

void Relay::keepNothing() {
    reset();
    const QMutexLocker lock(&m_mutex);
    m_keeps = false;
}

void Relay::setFault(const Fault& fault) {
    QMetaObject::invokeMethod(
        m_server.get(), [=, this] { m_fault = fault; }, Qt::BlockingQueuedConnection);
}

void Relay::setMostLines(int lines) {
    m_mostLines = lines;
    m_mostSeen = 0;
}

void Relay::leadTo(quint16 serverPort) {
    QMetaObject::invokeMethod(
        m_server.get(), [=, this] { m_serverPort = serverPort; }, Qt::BlockingQueuedConnection);
}

void Relay::accept() {
    // Both ends belong to the listener, so that they end with it.
    QTcpSocket* client = m_server->nextPendingConnection();
    if (m_lines >= m_mostLines) {
        client->abort();
        client->deleteLater();
        return;
    }
    m_mostSeen = std::max<int>(m_mostSeen, ++m_lines);
    QObject::connect(client, &QTcpSocket::disconnected, m_server.get(), [this] { --m_lines; });
    auto* server = new QTcpSocket(m_server.get());
    for (QTcpSocket* socket : {client, server}) {
        socket->setReadBufferSize(ReadAtOnce);
        socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    }
    server->connectToHost(QHostAddress(QHostAddress::LocalHost), m_serverPort);
    const auto line = std::make_shared<Line>();
    QObject::connect(client, &QTcpSocket::readyRead, server,
                     [=, this] { passFromClient(line, *client, *server); });
    QObject::connect(server, &QTcpSocket::readyRead, client, [=, this] {
        line->clientsTurn = false;
        pass(*line, *server, *client, true);
    });
    QObject::connect(client, &QTcpSocket::disconnected, server, &QTcpSocket::disconnectFromHost);
    QObject::connect(server, &QTcpSocket::disconnected, client, &QTcpSocket::disconnectFromHost);
}

void Relay::passFromClient(const std::shared_ptr<Line>& line, QTcpSocket& client, QTcpSocket& server) {
    if (line->held) return;
    const bool newTurn = !std::exchange(line->clientsTurn, true);
    if (newTurn) ++m_turns;
    if (m_delay == 0 || !newTurn) {
        pass(*line, client, server, false);
        return;
    }
    line->held = true;
    QTimer::singleShot(m_delay, Qt::PreciseTimer, &client,
                       [=, this, &client, server = QPointer<QTcpSocket>(&server)] {
                           line->held = false;
                           if (server) pass(*line, client, *server, false);
                       });
}

void Relay::pass(Line& line, QTcpSocket& from, QTcpSocket& to, bool fromServer) {
    QByteArray bytes = from.readAll();
    if (!fault(line, bytes, fromServer)) {
        to.write(bytes);
        to.disconnectFromHost();
        from.abort();
        return;
    }
    if (keep(line, bytes, fromServer)) {
        if (fromServer && m_manner != Manner::Whole)
            spoil(line, to, bytes);
        else
            to.write(bytes);
        return;
    }
    abortLines();
}

/// False when the line is to be cut behind these bytes.
bool Relay::fault(Line& line, QByteArray& bytes, bool fromServer) {
    if (m_fault.part.isEmpty()) return true;
    if (!fromServer) {
        const QByteArray part(reinterpret_cast<const char*>(m_fault.part.utf16()), 2 * m_fault.part.size());
        const qsizetype at = bytes.indexOf(part);
        if (at >= 0 && m_fault.bytes < 0) bytes[at] = '#';
        line.bytesLeft = at >= 0 && m_fault.bytes >= 0 ? m_fault.bytes : -1;
        return true;
    }
    if (line.bytesLeft < 0 || bytes.size() < line.bytesLeft) return true;
    bytes.truncate(line.bytesLeft);
    return false;
}

void Relay::spoil(Line& line, QTcpSocket& client, const QByteArray& bytes) {
    switch (m_manner) {
        case Manner::Endless:
            // A packet with the token of a feature acknowledgement (MS-TDS 2.2.7.11), which has no end.
            client.write("\x04\x01\x00\x09\x00\x00\x01\x00\xae", 9);
            return;
        case Manner::Dripping:
            if (line.withheld.isEmpty()) {
                auto* drip = new QTimer(&client);
                drip->callOnTimeout(&client, [this, &line, &client] {
                    if (m_manner == Manner::Dripping) client.write(line.withheld.left(1));
                    line.withheld.remove(0, 1);
                });
                drip->start(100);
            }
            line.withheld += bytes;
            return;
        case Manner::Silent:
        case Manner::Whole:
            return;
    }
}

void Relay::abortLines() {
    for (QTcpSocket* socket : m_server->findChildren<QTcpSocket*>())
        socket->abort();
}

/// False when the line is to be cut.
bool Relay::keep(Line& line, const QByteArray& bytes, bool fromServer) {
    const QMutexLocker lock(&m_mutex);
    if (!m_keeps) return true;
    Packets& packets = fromServer ? line.toClient : line.toServer;
    packets.add(bytes);
    while (const auto packet = packets.take()) {
        if (fromServer) {
            m_sent += packet->data;
        } else if (packet->type == SqlBatch) {
            line.batch += packet->data;
            if (packet->last) m_batches += batchText(std::exchange(line.batch, {}));
        }
    }
    return m_cutMark.isEmpty() || m_sent.count(m_cutMark) < m_cutTimes;
}

}  // namespace testsupport
