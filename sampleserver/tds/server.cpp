#include "tds/server.h"

#include "tds/socketchannel.h"

#include <QTcpSocket>

#include <utility>

namespace tds {

namespace {

// Lower numbers are the server's own processes.
constexpr int kFirstClientSpid = 51;

// So many may be told at a time that there is no place; whoever comes then is cut off.
constexpr int kMostTurnedAway = 50;

}  // namespace

TdsServer::TdsServer(ServerSettings settings, SessionFactory makeSession)
    : m_settings(std::move(settings)), m_makeSession(std::move(makeSession)) {
    // A client that the system turns away for a full queue tries again only a second later.
    setListenBacklogSize(m_settings.mostClients);
}

TdsServer::~TdsServer() {
    close();
    m_stopping = true;
    for (const auto& [spid, client] : m_clients)
        client.thread->wait();
}

int TdsServer::freeSpid() const {
    int spid = kFirstClientSpid;
    while (m_clients.contains(spid))
        ++spid;
    return spid;
}

void TdsServer::incomingConnection(qintptr descriptor) {
    const bool full = int(m_clients.size()) - m_turnedAway >= m_settings.mostClients;
    if (full && m_turnedAway >= kMostTurnedAway) {
        QTcpSocket turnedAway;
        turnedAway.setSocketDescriptor(descriptor);
        return;
    }
    const int spid = freeSpid();
    std::unique_ptr<QThread> thread(
        QThread::create([this, descriptor, spid, full] { serveClient(descriptor, spid, full); }));
    connect(thread.get(), &QThread::finished, this, [this, spid] { clientEnded(spid); });
    thread->start();
    m_clients.emplace(spid, Client{std::move(thread), full});
    if (full) ++m_turnedAway;
    ++m_liveClients;
}

void TdsServer::serveClient(qintptr descriptor, int spid, bool turnedAway) noexcept {
    try {
        SocketChannel channel(descriptor, m_stopping, m_settings.idleMilliseconds);
        ClientHandler handler(channel, spid, m_settings, m_makeSession);
        turnedAway ? handler.turnAway() : handler.serve();
    } catch (const std::exception& failure) {
        qWarning("client %d: %s", spid, failure.what());
    } catch (...) {
        qWarning("client %d: unknown failure", spid);
    }
}

void TdsServer::clientEnded(int spid) {
    const auto found = m_clients.find(spid);
    found->second.thread->wait();
    if (found->second.turnedAway) --m_turnedAway;
    m_clients.erase(found);
    --m_liveClients;
}

}  // namespace tds
