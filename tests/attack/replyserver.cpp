#include "replyserver.h"

#include <QtEndian>

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <thread>

namespace attack {

namespace {

constexpr int QuietMilliseconds = 30;  ///< in which a client that has all it wants goes on
constexpr int DripMilliseconds = 200;
enum Type : char { Attention = 6, Login = 0x10, PreLogin = 0x12 };  // MS-TDS 2.2.3.1.1

sockaddr_in loopback(quint16 port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

bool wait(int socket, int events, int milliseconds) {
    pollfd one{socket, static_cast<short>(events), 0};
    return poll(&one, 1, milliseconds) > 0;
}

/// False when the other end has gone.
bool receive(int socket, QByteArray& bytes) {
    std::array<char, 16384> room;
    const ssize_t count = recv(socket, room.data(), room.size(), 0);
    if (count > 0) bytes.append(room.data(), count);
    return count > 0;
}

/// Takes a message, up to its last packet, from the front of what came; empty when it is not whole yet.
QByteArray takeMessage(QByteArray& bytes) {
    for (qsizetype at = 0; at + HeaderSize <= bytes.size();) {
        const bool last = bytes[at + 1] & 1;
        at += packetSize(bytes, at);
        if (at > bytes.size()) break;
        if (last) return std::exchange(bytes, bytes.mid(at)).left(at);
    }
    return {};
}

/// The database of a login, in the bytes it came in (MS-TDS 2.2.6.4).
QByteArray databaseOf(const QByteArray& login) {
    constexpr qsizetype entry = HeaderSize + 68;
    if (login.size() < entry + 4) return {};
    return login.mid(HeaderSize + qFromLittleEndian<quint16>(login.constData() + entry),
                     2 * qFromLittleEndian<quint16>(login.constData() + entry + 2));
}

/// A message without what differs from one client to the next.
QByteArray questionOf(const QByteArray& message, const QByteArray& database) {
    const QByteArray type = message.left(1);
    if (type[0] == PreLogin) return type;
    if (type[0] == Login) return type + database;
    const QByteArray text = payloadOf(message);
    // The headers before the text hold a transaction's number (MS-TDS 2.2.5.3).
    const qsizetype headers = text.size() < 4 ? 0 : qFromLittleEndian<quint32>(text.constData());
    return type + database + '\n' + text.mid(headers);
}

/// False when the line is to end.
bool send(int socket, const Delivery& delivery) {
    const QByteArray& bytes = delivery.bytes;
    const qsizetype atOnce = delivery.dripsFrom < 0 ? bytes.size() : delivery.dripsFrom;
    for (qsizetype at = 0; at < bytes.size();) {
        if (at >= atOnce && wait(socket, POLLRDHUP, DripMilliseconds)) return false;
        const qsizetype most = at < atOnce ? atOnce - at : 1;
        const ssize_t count = ::send(socket, bytes.constData() + at, size_t(most), MSG_NOSIGNAL);
        if (count < 0) return false;
        at += count;
    }
    if (delivery.end == Delivery::Deaf) wait(socket, POLLRDHUP, -1);
    return delivery.end == Delivery::Open;
}

int connectTo(quint16 port) {
    const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
    const sockaddr_in address = loopback(port);
    if (connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        qFatal("The sample server cannot be reached.");
    return socket;
}

}  // namespace

ReplyServer::ReplyServer(Replies& replies, quint16 upstream) : m_replies(replies), m_upstream(upstream) {
    const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = loopback(0);
    socklen_t size = sizeof address;
    auto* const general = reinterpret_cast<sockaddr*>(&address);
    if (bind(listener, general, size) != 0 || listen(listener, 64) != 0 ||
        getsockname(listener, general, &size) != 0)
        qFatal("There is no port to listen on.");
    m_port = ntohs(address.sin_port);
    std::thread([this, listener] {
        while (true) {
            const int socket = accept(listener, nullptr, nullptr);
            ++m_lines;
            std::thread([this, socket] { serve(socket); }).detach();
        }
    }).detach();
}

QString ReplyServer::connectionString() const {
    return QStringLiteral("driver={SQL Server};server=127.0.0.1,%1;uid=sa;pwd=").arg(m_port);
}

void ReplyServer::begin(const std::optional<Mutation>& mutation) {
    const std::lock_guard lock(m_mutex);
    m_mutation = mutation;
    m_turn = 0;
    ++m_session;
}

void ReplyServer::serve(int socket) {
    const int upstream = m_upstream ? connectTo(m_upstream) : -1;
    const int session = m_session;
    QByteArray in;
    QByteArray database;
    Delivery delivery;
    bool mutated = false;
    bool good = true;
    while (good && wait(socket, POLLIN, mutated ? QuietMilliseconds : -1) && receive(socket, in)) {
        for (QByteArray message = takeMessage(in); good && !message.isEmpty(); message = takeMessage(in)) {
            if (message[0] == Login) database = databaseOf(message);
            delivery = answer(questionOf(message, database), message, upstream, session, mutated);
            good = send(socket, delivery);
        }
    }
    // A reset keeps the system from remembering the line.
    const linger none{1, 0};
    if (delivery.end != Delivery::Closed) setsockopt(socket, SOL_SOCKET, SO_LINGER, &none, sizeof none);
    close(socket);
    if (upstream >= 0) close(upstream);
    --m_lines;
}

Delivery ReplyServer::answer(const QByteArray& question, const QByteArray& message, int upstream, int session,
                             bool& mutated) {
    // Its acknowledgement is a DONE with a bit of its own (MS-TDS 2.2.1.7).
    if (message[0] == Attention) return {packed(QByteArray::fromHex("fd20000000") + QByteArray(8, '\0'))};
    const std::lock_guard lock(m_mutex);
    if (upstream >= 0) {
        QByteArray in;
        QByteArray reply;
        ::send(upstream, message.constData(), size_t(message.size()), MSG_NOSIGNAL);
        while (reply.isEmpty()) {
            if (!receive(upstream, in)) qFatal("The sample server ended a line.");
            reply = takeMessage(in);
        }
        m_replies.insert(question, reply);
    }
    const auto known = m_replies.constFind(question);
    if (known == m_replies.cend()) return {{}, Delivery::Closed};
    const QByteArray reply = *known;
    if (session != m_session) return {reply};
    const int turn = m_turn++;
    if (!m_mutation || turn != m_mutation->turn) return {reply};
    mutated = true;
    QRandomGenerator random(m_mutation->seed);
    return kinds()[m_mutation->kind].deliver(random, reply, m_replies);
}

}  // namespace attack
