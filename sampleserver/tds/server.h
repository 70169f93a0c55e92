#pragma once

#include "tds/clienthandler.h"

#include <QTcpServer>
#include <QThread>

#include <atomic>
#include <map>
#include <memory>

namespace tds {

/// Listens for clients and gives each a thread of its own. Lives on a thread with an event loop.
class TdsServer : public QTcpServer {
  public:
    TdsServer(ServerSettings settings, SessionFactory makeSession);
    /// Ends every client's connection and waits for its thread.
    ~TdsServer() override;

    /// Clients whose thread still stands. May be asked on any thread.
    int liveClients() const { return m_liveClients; }

  protected:
    void incomingConnection(qintptr descriptor) override;

  private:
    int freeSpid() const;
    void serveClient(qintptr descriptor, int spid, bool turnedAway) noexcept;
    void clientEnded(int spid);

    const ServerSettings m_settings;
    const SessionFactory m_makeSession;
    std::atomic_bool m_stopping = false;
    std::atomic_int m_liveClients = 0;
    struct Client {
        std::unique_ptr<QThread> thread;
        bool turnedAway;
    };
    std::map<int, Client> m_clients;  // by server process id
    int m_turnedAway = 0;
};

}  // namespace tds
