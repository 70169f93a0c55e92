#pragma once

#include "engine/values/clientsession.h"

#include <QString>

#include <memory>
#include <vector>

namespace engine {

struct SessionState;
class World;  // databases and logins as the scripts left them (engine/catalog/world.h)

/// What one batch may take.
struct QueryLimits {
    qint64 milliseconds = 300'000;             ///< at work or in WAITFOR; waiting for its client is free
    qint64 bytes = qint64(512) * 1024 * 1024;  ///< of memory
};

/// A session over a world. All sessions share the one sealed world without a lock.
class Session : public ClientSession {
  public:
    Session(std::shared_ptr<const World> world, int spid, const QueryLimits& limits = {});
    ~Session() override;

    std::vector<SqlMessage> login(const LoginRequest& request) override;
    QString database() const override;
    void execute(const QString& batch, ResultSink& sink) override;
    void call(const ProcedureRequest& request, ResultSink& sink) override;

  private:
    bool isAdmitted(ResultSink& sink) const;

    std::unique_ptr<SessionState> m_state;
    LoginRequest m_request;
    bool m_admitted = false;
};

}  // namespace engine
