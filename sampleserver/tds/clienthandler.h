#pragma once

#include "engine/values/clientsession.h"
#include "tds/login7.h"
#include "tds/packetstream.h"

#include <QString>

#include <functional>
#include <memory>

namespace tds {

/// Makes the session of a client; `spid` is the number by which the server knows the client.
/// Called on the client's thread.
using SessionFactory = std::function<std::unique_ptr<engine::ClientSession>(int spid)>;

/// What holds for every client of a server.
struct ServerSettings {
    QString serverName = QStringLiteral("SAMPLE");
    int handshakeMilliseconds = 15000;            ///< from the connection to the end of the login
    int idleMilliseconds = 30 * 60 * 1000;        ///< for which a client may send and read nothing
    qsizetype largestMessage = 16 * 1024 * 1024;  ///< bytes of a request
    int mostClients = 500;                        ///< further ones are told why they are turned away
};

/// Serves one client from its first packet to its last.
class ClientHandler {
  public:
    ClientHandler(SocketChannel& channel, int spid, const ServerSettings& settings,
                  const SessionFactory& makeSession);

    /// Returns when the client has gone, broke the protocol, was refused, or the server ends.
    void serve();

    /// Reads the login of a client for whom there is no place, and says so.
    void turnAway();

  private:
    Login7 readLogin();
    bool acceptLogin(const Login7& login);
    bool refuse(const std::vector<engine::SqlMessage>& messages);
    void tellLoggedIn();
    void answer(const Message& message);
    void runBatch(const QString& batch);
    void runRpc(const Message& message);
    void runTransactionRequest(const Message& message);
    /// BEGIN, COMMIT or ROLLBACK; false when it failed and the error was answered.
    bool runTransactionStep(const QString& step);
    void answerError(const engine::SqlMessage& message);
    void answerDone(quint16 status);
    void resetSession();

    PacketStream m_stream;
    int m_spid;
    const ServerSettings& m_settings;
    const SessionFactory& m_makeSession;
    std::unique_ptr<engine::ClientSession> m_session;
    Login7 m_login;
};

}  // namespace tds
