#pragma once

#include "platform/ado/loginsockets.h"
#include "platform/ado/odbc.h"

#include <functional>
#include <memory>

namespace ado {

/// An environment, the connection in it, and the calls on it that may wait for the wire. Each of these gets a
/// deadline of ours, whatever the driver does: its own time-outs cover neither name look-ups, nor a server
/// that sends a byte now and then, nor one that does not acknowledge a cancel.
///
/// A connection that has missed a deadline, or on which a call was broken off, is given up: it is not used
/// again, its socket is closed where the driver tells it, and the call that hangs in it ends by itself.
class DriverConnection : public std::enable_shared_from_this<DriverConnection> {
  public:
    /// Connects with the driver's string, to `database` unless that is empty, within `seconds` (0: without
    /// limit) and half a second. Throws Error.
    static std::shared_ptr<DriverConnection> open(const QString& text, const QString& database, int seconds);

    DriverConnection() = default;
    DriverConnection(const DriverConnection&) = delete;
    DriverConnection& operator=(const DriverConnection&) = delete;
    ~DriverConnection();

    odbc::SharedStatement makeStatement() const;

    /// Runs a call on `statement` within `seconds` (0: without limit) and half a second; the statement is
    /// cancelled then. Throws what the call throws, and Error with the number of a time-out behind the
    /// deadline, or of a cancelled operation where the thread's attendant has broken it off.
    void run(int seconds, const std::function<void()>& call, const odbc::SharedStatement& statement);
    /// Frees a statement that may have rows on the way, which tells the server to stop and waits for it.
    void end(const odbc::SharedStatement& statement);

    bool isGivenUp() const { return m_givenUp; }

  private:
    void runGuarded(int seconds, const std::function<void()>& call, const std::function<void()>& interrupt);
    void connect(const QString& text, const QString& database, int seconds);
    bool isDead() const;
    void giveUp();

    odbc::EnvironmentHandle m_environment;  // ends behind the connection
    odbc::ConnectionHandle m_connection;
    Socket m_socket;  ///< where the driver tells it
    bool m_connected = false;
    bool m_givenUp = false;
};

}  // namespace ado
