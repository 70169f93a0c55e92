#pragma once

#include "engine/values/clientsession.h"

#include <functional>

/// A session that answers batches as the test says. Its login refuses the password "wrong".
class FakeSession : public engine::ClientSession {
  public:
    using Execute = std::function<void(const QString& batch, engine::ResultSink& sink)>;

    explicit FakeSession(Execute execute) : m_execute(std::move(execute)) {}

    std::vector<engine::SqlMessage> login(const engine::LoginRequest& request) override {
        if (request.password == QStringLiteral("wrong"))
            return {{.number = 18456, .severity = 14, .text = QStringLiteral("Login failed.")}};
        m_request = request;
        return {};
    }

    QString database() const override {
        return m_request.database.isEmpty() ? QStringLiteral("master") : m_request.database;
    }

    /// Batches that every test can use; others go to the test's own function.
    ///  - "who": one row of user, password, host, application and database, joined by '|'
    ///  - "echo ...": one row with the rest of the batch
    ///  - "rows": integers without an end, until it is cancelled
    ///  - "wait": nothing, until it is cancelled
    void execute(const QString& batch, engine::ResultSink& sink) override;

    /// sp_executesql runs its first parameter; any other procedure tells its name and parameters in one row,
    /// "p @a int 42", and gives back those that are for output.
    void call(const engine::ProcedureRequest& request, engine::ResultSink& sink) override;

  private:
    engine::LoginRequest m_request;
    Execute m_execute;
};
