#include "engine/session/session.h"

#include "engine/catalog/metadata.h"
#include "engine/session/batchrunner.h"
#include "engine/session/sessionstate.h"

#include <utility>

namespace engine {

SessionState::SessionState() : store([this](sqlite3* opened) { registerMetadataFunctions(opened, facts); }) {}

Session::Session(std::shared_ptr<const World> world, int spid, const QueryLimits& limits)
    : m_state(std::make_unique<SessionState>()) {
    m_state->limits = limits;
    m_state->facts.world = std::move(world);
    m_state->facts.spid = spid;
}

Session::~Session() = default;

std::vector<SqlMessage> Session::login(const LoginRequest& request) {
    SessionFacts& facts = m_state->facts;
    const SqlMessage failed{.number = 18456,
                            .severity = 14,
                            .text = QStringLiteral("Login failed for user '%1'.").arg(request.user)};
    const Login* login = facts.world->findLogin(request.user);
    if (!login || login->password != request.password) return {failed};
    const QString name = request.database.isEmpty() ? login->defaultDatabase : request.database;
    const Database* database = facts.world->findDatabase(name);
    const auto user = database ? userOfLogin(*database, login->name) : std::nullopt;
    if (!user) {
        return {
            {.number = 4060,
             .severity = 11,
             .text = QStringLiteral("Cannot open database requested in login '%1'. Login fails.").arg(name)},
            failed};
    }
    facts.database = database;
    facts.login = login->name;
    facts.user = *user;
    facts.host = request.clientHost;
    facts.application = request.application;
    m_request = request;
    if (!std::exchange(m_admitted, true)) ++facts.world->connectionCount();
    return {};
}

QString Session::database() const {
    return m_state->facts.database ? m_state->facts.database->name : QString();
}

bool Session::isAdmitted(ResultSink& sink) const {
    if (!m_admitted)
        sink.message({.number = 18456, .severity = 14, .text = QStringLiteral("Login failed for user ''.")});
    return m_admitted;
}

void Session::execute(const QString& batch, ResultSink& sink) {
    if (isAdmitted(sink)) BatchRunner(*m_state, sink).run(batch);
}

void Session::call(const ProcedureRequest& request, ResultSink& sink) {
    if (!isAdmitted(sink)) return;
    if (request.name.compare(QLatin1String("sp_reset_connection"), Qt::CaseInsensitive) != 0)
        return BatchRunner(*m_state, sink).call(request);
    auto fresh = std::make_unique<SessionState>();
    fresh->limits = m_state->limits;
    fresh->facts.world = m_state->facts.world;
    fresh->facts.spid = m_state->facts.spid;
    m_state = std::move(fresh);
    login(m_request);
}

}  // namespace engine
