#pragma once

#include "engine/values/resultsink.h"

#include <QString>

#include <vector>

namespace engine {

/// Who asks to come in.
struct LoginRequest {
    QString user;
    QString password;
    QString database;  ///< empty: the login's default database (master)
    QString clientHost;
    QString application;
};

/// A call of a stored procedure.
struct ProcedureRequest {
    QString name;  ///< as the client wrote it, with database and owner
    std::vector<Parameter> parameters;
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

    /// Runs a procedure, on the same terms.
    virtual void call(const ProcedureRequest& request, ResultSink& sink) = 0;
};

}  // namespace engine
