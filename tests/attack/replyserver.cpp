#include "replyserver.h"

#include <QtEndian>

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <utility>
#include <vector>

namespace attack {

namespace {

using namespace std::chrono_literals;

constexpr qsizetype HeaderSize = 8;
constexpr auto Quiet = 30ms;  ///< in which a client that has all it wants goes on
constexpr auto DripTime = 200ms;
enum Type : char { Login = 0x10, PreLogin = 0x12, Attention = 6 };  // MS-TDS 2.2.3.1.1

sockaddr_in loopback(quint16 port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

int connectTo(quint16 port) {
    const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
    const sockaddr_in address = loopback(port);
    if (connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        qFatal("The sample server cannot be reached.");
    return socket;
}

/// Takes a message, up to its last packet, from the front of what came; empty when it is not whole yet.
QByteArray takeMessage(QByteArray& bytes) {
    for (qsizetype at = 0; at + HeaderSize <= bytes.size();) {
        const qsizetype size =
            std::max<qsizetype>(qFromBigEndian<quint16>(bytes.constData() + at + 2), HeaderSize);
        const bool last = bytes[at + 1] & 1;
        at += size;
        if (at > bytes.size()) break;
        if (last) {
            const QByteArray message = bytes.left(at);
            bytes.remove(0, at);
            return message;
        }
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
QByteArray keyOf(const QByteArray& message, const QByteArray& database) {
    const QByteArray type = message.left(1);
    if (type[0] == PreLogin) return type;
    if (type[0] == Login) return type + database;
    QByteArray text;
    for (QByteArray rest = message; !rest.isEmpty();) {
        const qsizetype size = std::max<qsizetype>(qFromBigEndian<quint16>(rest.constData() + 2), HeaderSize);
        text += rest.mid(HeaderSize, size - HeaderSize);
        rest.remove(0, size);
    }
    // The headers before the text hold a transaction's number (MS-TDS 2.2.5.3).
    const qsizetype headers = text.size() < 4 ? 0 : qFromLittleEndian<quint32>(text.constData());
    return type + database + '\n' + text.mid(headers);
}

/// With a reset the system keeps nothing of the line, no more than the client's end.
void end(int socket, bool reset) {
    const linger none{1, 0};
    if (reset) setsockopt(socket, SOL_SOCKET, SO_LINGER, &none, sizeof none);
    close(socket);
}

}  // namespace

struct ReplyServer::Line {
    int socket;
    int session;
    int upstream = -1;
    QByteArray database;
    QByteArray in;
    QByteArray out;
    Delivery::End end = Delivery::Open;
    qsizetype beforeDrip = -1;  ///< bytes to send at once; -1: all
    bool mutated = false;
    Clock::time_point lastSign = Clock::now();

    Line(int theSocket, int theSession) : socket(theSocket), session(theSession) {}
    Line(const Line&) = delete;
    Line& operator=(const Line&) = delete;
    ~Line() {
        if (upstream >= 0) close(upstream);
        attack::end(socket, end != Delivery::Closed);
    }
    bool drips() const { return beforeDrip == 0 && !out.isEmpty(); }
};

ReplyServer::ReplyServer(Replies& replies, quint16 upstream)
    : m_replies(replies), m_upstream(upstream), m_listener(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address = loopback(0);
    socklen_t size = sizeof address;
    auto* const general = reinterpret_cast<sockaddr*>(&address);
    if (bind(m_listener, general, size) != 0 || listen(m_listener, 64) != 0 ||
        getsockname(m_listener, general, &size) != 0)
        qFatal("There is no port to listen on.");
    m_port = ntohs(address.sin_port);
    m_thread = std::thread([this] { run(); });
}

ReplyServer::~ReplyServer() {
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
    }
    shutdown(m_listener, SHUT_RDWR);
    m_thread.join();
    close(m_listener);
}

void ReplyServer::begin(const std::optional<Mutation>& mutation) {
    const std::lock_guard lock(m_mutex);
    m_mutation = mutation;
    m_turn = 0;
    ++m_session;
}

int ReplyServer::turns() {
    const std::lock_guard lock(m_mutex);
    return m_turn;
}

void ReplyServer::run() {
    while (true) {
        std::vector<pollfd> watched{{m_listener, POLLIN, 0}};
        for (const Line& line : m_lines) {
            const bool full = !line.out.isEmpty() && !line.drips();
            const auto wanted = line.end == Delivery::Deaf ? POLLRDHUP : full ? POLLIN | POLLOUT : POLLIN;
            watched.push_back({line.socket, static_cast<short>(wanted), 0});
        }
        poll(watched.data(), watched.size(), milliseconds());
        const std::lock_guard lock(m_mutex);
        if (m_ending) break;
        auto watch = watched.cbegin() + 1;
        for (auto line = m_lines.begin(); line != m_lines.end();) {
            const short events = (watch++)->revents;
            line = serve(*line, events) ? std::next(line) : m_lines.erase(line);
        }
        if (watched.front().revents) accept();
    }
    m_lines.clear();
}

/// How long to wait for the lines on which something is due without their clients' doing.
int ReplyServer::milliseconds() const {
    int least = -1;
    for (const Line& line : m_lines)
        if (line.drips() || (line.mutated && line.end == Delivery::Open)) least = 10;
    return least;
}

void ReplyServer::accept() {
    const int socket = ::accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
    if (socket >= 0) m_lines.emplace_back(socket, m_session);
}

bool ReplyServer::serve(Line& line, short events) {
    if (line.end == Delivery::Deaf) return !(events & (POLLRDHUP | POLLHUP | POLLERR));
    if (events & (POLLIN | POLLHUP | POLLERR)) {
        std::array<char, 16384> room;
        const ssize_t count = recv(line.socket, room.data(), room.size(), MSG_DONTWAIT);
        if (count == 0 || (count < 0 && errno != EAGAIN)) return false;
        line.in.append(room.data(), std::max<ssize_t>(count, 0));
        line.lastSign = Clock::now();
        for (QByteArray message = takeMessage(line.in); !message.isEmpty(); message = takeMessage(line.in))
            answer(line, message);
    }
    return send(line) && !isOver(line);
}

bool ReplyServer::send(Line& line) {
    while (!line.out.isEmpty()) {
        if (line.drips() && Clock::now() - line.lastSign < DripTime) return true;
        const qsizetype most = line.drips() ? 1 : line.beforeDrip > 0 ? line.beforeDrip : line.out.size();
        const ssize_t count =
            ::send(line.socket, line.out.constData(), size_t(most), MSG_DONTWAIT | MSG_NOSIGNAL);
        if (count < 0) return errno == EAGAIN;
        line.out.remove(0, count);
        if (line.beforeDrip > 0) line.beforeDrip -= count;
        line.lastSign = Clock::now();
    }
    return line.end == Delivery::Open || line.end == Delivery::Deaf;
}

bool ReplyServer::isOver(Line& line) const {
    const bool waits = line.mutated && line.end == Delivery::Open && line.out.isEmpty();
    if (!waits || Clock::now() - line.lastSign < Quiet) return false;
    line.end = Delivery::Closed;
    return true;
}

void ReplyServer::answer(Line& line, const QByteArray& message) {
    if (message[0] == Attention) {
        // The acknowledgement is a DONE with a bit of its own (MS-TDS 2.2.1.7).
        line.out += QByteArray::fromHex("0401001500000000fd20000000") + QByteArray(8, '\0');
        return;
    }
    if (message[0] == Login) line.database = databaseOf(message);
    const QByteArray key = keyOf(message, line.database);
    if (m_upstream) m_replies.insert(key, askUpstream(line, message));
    const QByteArray reply = m_replies.value(key, m_replies.value(unknownQuestion));
    const bool own = line.session == m_session;
    if (own && m_mutation && m_turn == m_mutation->turn) {
        const Delivery delivery = deliver(*m_mutation, reply, m_replies);
        line.beforeDrip = delivery.dripsFrom < 0 ? -1 : line.out.size() + delivery.dripsFrom;
        line.out += delivery.bytes;
        line.end = delivery.end;
        line.mutated = true;
    } else {
        line.out += reply;
    }
    if (own) ++m_turn;
}

QByteArray ReplyServer::askUpstream(Line& line, const QByteArray& message) const {
    if (line.upstream < 0) line.upstream = connectTo(m_upstream);
    ::send(line.upstream, message.constData(), size_t(message.size()), MSG_NOSIGNAL);
    QByteArray in;
    while (true) {
        std::array<char, 16384> room;
        const ssize_t count = recv(line.upstream, room.data(), room.size(), 0);
        if (count <= 0) qFatal("The sample server ended a line.");
        in.append(room.data(), count);
        if (const QByteArray reply = takeMessage(in); !reply.isEmpty()) return reply;
    }
}

}  // namespace attack
