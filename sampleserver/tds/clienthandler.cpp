#include "tds/clienthandler.h"

#include "tds/columnformat.h"
#include "tds/prelogin.h"
#include "tds/requests.h"
#include "tds/tokensink.h"
#include "tds/wirebytes.h"

#include <algorithm>
#include <optional>

namespace tds {

namespace {

constexpr qsizetype kLargestHandshake = 128 * 1024;

// There is nothing to commit on a read-only server, so any name of a transaction will do.
QByteArrayView transactionName() {
    static constexpr char bytes[8] = {1};
    return {bytes, sizeof(bytes)};
}

/// Keeps the error of a statement that has nothing else to tell.
class ErrorSink : public engine::ResultSink {
  public:
    std::optional<engine::SqlMessage> error;

    void columns(const std::vector<engine::ResultColumn>&) override {}
    void row(std::span<const engine::Value>) override {}
    void statementDone(qint64, bool) override {}
    void message(const engine::SqlMessage& message) override { error = message; }
    void databaseChanged(const QString&, const QString&) override {}
    bool cancelled() override { return false; }
};

engine::SqlMessage information(int number, int state, const QString& text) {
    return {.number = number, .severity = 10, .state = state, .text = text};
}

}  // namespace

ClientHandler::ClientHandler(SocketChannel& channel, int spid, const ServerSettings& settings,
                             const SessionFactory& makeSession)
    : m_stream(channel, quint16(spid)), m_spid(spid), m_settings(settings), m_makeSession(makeSession) {}

namespace {

/// Talks with a client until there is nothing more to say.
template <typename Talk>
void untilEnd(Talk talk) {
    try {
        talk();
    } catch (const ProtocolError&) {
        // Nothing behind a broken message can be told apart, so the connection is over.
    } catch (const ConnectionEnded&) {
        // So it is here.
    }
}

}  // namespace

void ClientHandler::serve() {
    untilEnd([this] {
        if (!acceptLogin(readLogin())) return m_stream.closeInOrder();
        for (;;)
            answer(
                m_stream.readMessage(m_settings.largestMessage, QDeadlineTimer(m_settings.idleMilliseconds)));
    });
}

void ClientHandler::turnAway() {
    untilEnd([this] {
        m_login = readLogin();
        refuse({{.number = 17809,
                 .severity = 20,
                 .text = QStringLiteral("Could not connect because the maximum number of '%1' user "
                                        "connections has already been reached. The connection has been "
                                        "closed.")
                             .arg(m_settings.mostClients)}});
        m_stream.closeInOrder();
    });
}

Login7 ClientHandler::readLogin() {
    const QDeadlineTimer deadline(m_settings.handshakeMilliseconds);
    Message message = m_stream.readMessage(kLargestHandshake, deadline);
    if (message.type == PacketType::PreLogin) {
        m_stream.response().append(answerPreLogin(message.payload));
        m_stream.endResponse();
        message = m_stream.readMessage(kLargestHandshake, deadline);
    }
    if (message.type != PacketType::Login7) throw ProtocolError("request before the login");
    return parseLogin7(message.payload);
}

bool ClientHandler::acceptLogin(const Login7& login) {
    m_login = login;
    if (login.trusted)
        return refuse({{.number = 18452,
                        .severity = 14,
                        .text = QStringLiteral("Login failed for user '%1'. Reason: Not associated with a "
                                               "trusted SQL Server connection.")
                                    .arg(login.request.user)}});
    m_session = m_makeSession(m_spid);
    const std::vector<engine::SqlMessage> refusals = m_session->login(login.request);
    if (!refusals.empty()) return refuse(refusals);
    tellLoggedIn();
    return true;
}

bool ClientHandler::refuse(const std::vector<engine::SqlMessage>& messages) {
    for (const engine::SqlMessage& message : messages)
        appendMessage(m_stream.response(), message, m_settings.serverName, m_login.version.version);
    answerDone(DoneError);
    return false;
}

void ClientHandler::tellLoggedIn() {
    const TdsVersion version = m_login.version.version;
    const QString database = m_session->database();
    const QString language = QStringLiteral("us_english");
    QByteArray& out = m_stream.response();
    const auto tell = [&](const engine::SqlMessage& message) {
        appendMessage(out, message, m_settings.serverName, version);
    };
    appendTextChange(out, EnvChange::Database, database, u"master");
    tell(information(5701, 2, QStringLiteral("Changed database context to '%1'.").arg(database)));
    if (hasCollations(version))
        appendBytesChange(out, EnvChange::Collation, collationBytes(), {});
    else
        appendTextChange(out, EnvChange::CharacterSet, u"cp1252", {});
    appendTextChange(out, EnvChange::Language, language, {});
    tell(information(5703, 1, QStringLiteral("Changed language setting to %1.").arg(language)));
    appendLoginAck(out, m_login.version.answer);
    appendTextChange(out, EnvChange::PacketSize, QString::number(m_login.packetSize),
                     QString::number(m_stream.packetSize()));
    answerDone(DoneFinal);
    m_stream.setPacketSize(m_login.packetSize);
}

void ClientHandler::answer(const Message& message) {
    if (message.ignored) return answerDone(DoneError);
    if (message.resets) resetSession();
    switch (message.type) {
        case PacketType::SqlBatch:
            return runBatch(parseBatch(message.payload, m_login.version.version));
        case PacketType::Rpc:
            return runRpc(message);
        case PacketType::TransactionManager:
            return runTransactionRequest(message);
        // It came too late to interrupt anything, but its client waits for an answer all the same.
        case PacketType::Attention:
            return answerDone(DoneAttention);
        case PacketType::BulkLoad:
            return answerError({.number = 3906,
                                .text = QStringLiteral("Failed to update database \"%1\" because the "
                                                       "database is read-only.")
                                            .arg(m_session->database())});
        default:
            throw ProtocolError("login within a session");
    }
}

void ClientHandler::runBatch(const QString& batch) {
    TokenSink sink(m_stream, m_login.version.version, m_settings.serverName, TokenSink::Request::Batch);
    m_session->execute(batch, sink);
    sink.finish();
}

void ClientHandler::runRpc(const Message& message) {
    const TdsVersion version = m_login.version.version;
    std::vector<engine::ProcedureRequest> calls;
    try {
        calls = parseRpc(message.payload, version);
    } catch (const engine::SqlError& error) {
        return answerError(error.message());
    }
    for (const engine::ProcedureRequest& call : calls) {
        TokenSink sink(m_stream, version, m_settings.serverName, TokenSink::Request::Rpc);
        m_session->call(call, sink);
        if (!sink.finish(&call != &calls.back())) return;
    }
}

void ClientHandler::runTransactionRequest(const Message& message) {
    using Kind = TransactionRequest::Kind;
    const TransactionRequest request = parseTransactionRequest(message.payload, m_login.version.version);
    switch (request.kind) {
        case Kind::Begin:
            if (!runTransactionStep(QStringLiteral("BEGIN"))) return;
            break;
        case Kind::Commit:
        case Kind::Rollback: {
            const bool commit = request.kind == Kind::Commit;
            if (!runTransactionStep(commit ? QStringLiteral("COMMIT") : QStringLiteral("ROLLBACK"))) return;
            if (request.beginsAnother && !runTransactionStep(QStringLiteral("BEGIN"))) return;
            break;
        }
        case Kind::Save:
            break;
        case Kind::Other:
            return answerError(
                {.number = 8501,
                 .text = QStringLiteral("MSDTC on server '%1' is unavailable.").arg(m_settings.serverName)});
    }
    answerDone(DoneFinal);
}

bool ClientHandler::runTransactionStep(const QString& step) {
    ErrorSink sink;
    m_session->execute(step + QStringLiteral(" TRANSACTION"), sink);
    if (sink.error) {
        answerError(*sink.error);
        return false;
    }
    QByteArray& out = m_stream.response();
    if (step == QStringLiteral("BEGIN")) {
        appendBytesChange(out, EnvChange::BeginTransaction, transactionName(), {});
    } else {
        const bool commit = step == QStringLiteral("COMMIT");
        appendBytesChange(out, commit ? EnvChange::CommitTransaction : EnvChange::RollbackTransaction, {},
                          transactionName());
    }
    return true;
}

void ClientHandler::answerError(const engine::SqlMessage& message) {
    appendMessage(m_stream.response(), message, m_settings.serverName, m_login.version.version);
    answerDone(DoneError);
}

void ClientHandler::answerDone(quint16 status) {
    appendDone(m_stream.response(), {.status = status}, m_login.version.version);
    m_stream.endResponse();
}

void ClientHandler::resetSession() {
    m_session = m_makeSession(m_spid);
    if (!m_session->login(m_login.request).empty()) throw ProtocolError("session cannot be made anew");
    appendBytesChange(m_stream.response(), EnvChange::ResetAcknowledged, {}, {});
}

}  // namespace tds
