#include "platform/ado/connection.h"

#include "platform/ado/answers.h"
#include "platform/ado/session.h"

namespace ado {

Connection::Connection() : m_session(std::make_shared<detail::Session>()) {}

Connection::Connection(Answers answers) : m_session(std::make_shared<detail::Session>(std::move(answers))) {}

QString Connection::ConnectionString() const {
    return m_session->visibleText();
}

void Connection::setConnectionString(const QString& text) {
    if (isOpen()) detail::throwOpen();
    m_session->connectionText = text;
}

int Connection::ConnectionTimeout() const {
    return m_session->connectionTimeout;
}

void Connection::setConnectionTimeout(int seconds) {
    m_session->connectionTimeout = seconds;
}

int Connection::CommandTimeout() const {
    return m_session->commandTimeout;
}

void Connection::setCommandTimeout(int seconds) {
    m_session->commandTimeout = seconds;
}

void Connection::Open(const QString& connectionString, const QString& user, const QString& password,
                      int options) {
    if (options != -1)
        throw Error(numbers::IllegalOperation, QStringLiteral("Operation is not allowed in this context."),
                    {}, 0);
    if (!connectionString.isEmpty()) setConnectionString(connectionString);
    m_session->open(user, password);
}

void Connection::Close() {
    m_session->close();
}

bool Connection::isOpen() const {
    return m_session->isOpen();
}

bool Connection::hasFailed() const {
    return m_session->hasFailed();
}

bool Connection::isShared() const {
    return m_session.use_count() > 1;
}

}  // namespace ado
