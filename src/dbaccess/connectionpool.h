#pragma once

#include "platform/ado/connection.h"

#include <QString>
#include <QTimer>

#include <chrono>
#include <functional>
#include <optional>
#include <vector>

namespace tw {

/// Who keeps connections from one catalog routine to the next.
class KeptConnections {
  public:
    virtual ~KeptConnections() = default;
    /// An idle connection that was opened with this string. Whether the server is still there only a
    /// statement can show.
    virtual std::optional<ado::Connection> take(const QString& connectionString) = 0;
    /// Keeps a connection that its caller has just opened and goes on using, only for what leaves no trace in
    /// the session, and without another time-out.
    virtual void keep(const QString& connectionString, const ado::Connection& connection) = 0;
};

/// Keeps the connections of catalog routines for a short while, so that the next routine on the same
/// connection string need not log in again.
///
/// A connection lives here from its login on, in use or idle, and is handed out again only while nobody uses
/// it and nothing has failed on it. However busy it is, it is handed out no longer than Lifetime after its
/// login: a password that was changed or a database that was closed is noticed no later than that. To be used
/// on one thread.
class ConnectionPool final : public KeptConnections {
  public:
    using Clock = std::chrono::steady_clock;
    static constexpr std::chrono::seconds Lifetime{5};
    static constexpr size_t MostKept = 16;

    explicit ConnectionPool(std::function<Clock::time_point()> now = &Clock::now);
    ConnectionPool(const ConnectionPool&) = delete;
    ConnectionPool& operator=(const ConnectionPool&) = delete;

    std::optional<ado::Connection> take(const QString& connectionString) override;
    void keep(const QString& connectionString, const ado::Connection& connection) override;

    /// Lets go of what will not be handed out any more; done now and then by itself. A connection in use
    /// closes when its user is done.
    void closeExpired();
    size_t count() const { return m_kept.size(); }

  private:
    struct Kept {
        QString connectionString;
        ado::Connection connection;
        Clock::time_point loggedIn;
    };

    std::function<Clock::time_point()> m_now;
    std::vector<Kept> m_kept;
    QTimer m_timer;
};

}  // namespace tw
