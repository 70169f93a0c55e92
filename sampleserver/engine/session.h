#pragma once

#include "engine/sqlerror.h"
#include "engine/sqltype.h"

#include <QString>

#include <memory>
#include <span>
#include <vector>

namespace engine {

struct Database;
class World;  // databases and logins as the scripts left them (engine/world.h)

/// A column of a result as its client is told of it.
struct ResultColumn {
    QString name;  ///< empty for an unnamed expression
    SqlType type;
    bool nullable = true;
};

/// Takes what a batch produces, in order. Called on the session's own thread. A statement that fails tells
/// message() and then statementDone(), with the rows that came before the failure.
class ResultSink {
  public:
    virtual ~ResultSink() = default;

    /// A result set begins.
    virtual void columns(const std::vector<ResultColumn>& columns) = 0;
    /// One row of the result set that was begun last.
    virtual void row(std::span<const Value> values) = 0;
    /// A statement ended. `rows` is the number of rows it returned, or -1 for a statement without a count;
    /// `hadColumns` says whether columns() came before it.
    virtual void statementDone(qint64 rows, bool hadColumns) = 0;
    /// Error or information.
    virtual void message(const SqlMessage& message) = 0;
    /// USE took effect.
    virtual void databaseChanged(const QString& oldName, const QString& newName) = 0;
    /// Asked between rows and while waiting: true once the client has sent an attention or has gone.
    virtual bool cancelled() = 0;
};

/// Who asks to come in.
struct LoginRequest {
    QString user;
    QString password;
    QString database;  ///< empty: the login's default database (master)
    QString clientHost;
    QString application;
};

/// What one batch may take.
struct QueryLimits {
    qint64 milliseconds = 300'000;             ///< at work or in WAITFOR; waiting for its client is free
    qint64 bytes = qint64(512) * 1024 * 1024;  ///< of memory
};

/// One client's session as the wire sees it. Not thread-safe; each client has its own.
class ClientSession {
  public:
    virtual ~ClientSession() = default;

    /// Checks user, password and database. On refusal returns the messages in SQL Server's order
    /// (18456 alone for a bad user or password; 4060 and then 18456 for a database) and the session stays
    /// unusable; on success none.
    virtual std::vector<SqlMessage> login(const LoginRequest& request) = 0;

    /// The database the session works in.
    virtual QString database() const = 0;

    /// Runs a batch. Never throws: what fails is told through the sink. Returns early once
    /// sink.cancelled() is true.
    virtual void execute(const QString& batch, ResultSink& sink) = 0;
};

/// A session over a world. All sessions share the one sealed world without a lock.
class Session : public ClientSession {
  public:
    Session(std::shared_ptr<const World> world, int spid, const QueryLimits& limits = {});
    ~Session() override;

    std::vector<SqlMessage> login(const LoginRequest& request) override;
    QString database() const override;
    void execute(const QString& batch, ResultSink& sink) override;

  private:
    struct State;
    std::unique_ptr<State> m_state;
};

}  // namespace engine
