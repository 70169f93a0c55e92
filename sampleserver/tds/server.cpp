#include "tds/server.h"

#include "tds/socketchannel.h"

#include <QTcpSocket>

#include <utility>

namespace tds {

namespace {

// Lower numbers are the server's own processes.
constexpr int kFirstClientSpid = 51;

}  // namespace

TdsServer::TdsServer(ServerSettings settings, SessionFactory makeSession)
    : m_settings(std::move(settings)), m_makeSession(std::move(makeSession)) {
    // A client that the system turns away for a full queue tries again only a second later.
    setListenBacklogSize(m_settings.mostClients);
}

TdsServer::~TdsServer() {
    close();
    m_stopping = true;
    for (const auto& [spid, thread] : m_clients)
        thread->wait();
}

int TdsServer::freeSpid() const {
    int spid = kFirstClientSpid;
    while (m_clients.contains(spid))
        ++spid;
    return spid;
}

void TdsServer::incomingConnection(qintptr descriptor) {
    if (m_clients.size() >= std::size_t(m_settings.mostClients)) {
        QTcpSocket turnedAway;
        turnedAway.setSocketDescriptor(descriptor);
        return;
    }
    const int spid = freeSpid();
    std::unique_ptr<QThread> thread(
        QThread::create([this, descriptor, spid] { serveClient(descriptor, spid); }));
    connect(thread.get(), &QThread::finished, this, [this, spid] { clientEnded(spid); });
    thread->start();
    m_clients.emplace(spid, std::move(thread));
    ++m_liveClients;
}

void TdsServer::serveClient(qintptr descriptor, int spid) noexcept {
    try {
        SocketChannel channel(descriptor, m_stopping);
        ClientHandler(channel, spid, m_settings, m_makeSession).serve();
    } catch (const std::exception& failure) {
        qWarning("client %d: %s", spid, failure.what());
    } catch (...) {
        qWarning("client %d: unknown failure", spid);
    }
}

void TdsServer::clientEnded(int spid) {
    const auto found = m_clients.find(spid);
    found->second->wait();
    m_clients.erase(found);
    --m_liveClients;
}

}  // namespace tds
