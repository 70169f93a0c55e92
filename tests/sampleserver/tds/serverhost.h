#pragma once

#include "fakesession.h"
#include "tds/server.h"

#include <QThread>

/// A server over fake sessions on a thread of its own, so that a test may block on its sockets.
class ServerHost {
  public:
    explicit ServerHost(FakeSession::Execute execute = {}, tds::ServerSettings settings = {});
    ~ServerHost() { stop(); }

    quint16 port() const { return m_port; }
    int liveClients() const { return m_server->liveClients(); }
    /// Ends the server and all its clients.
    void stop();

  private:
    QThread m_thread;
    std::unique_ptr<tds::TdsServer> m_server;
    quint16 m_port = 0;
};
