#include "platform/ado/session.h"

#include "platform/ado/connectionstring.h"
#include "platform/ado/wirerows.h"

#include <QSysInfo>

#include <algorithm>

namespace ado::detail {

namespace {

/// A statement and its first result with columns, with the first rows: one turn on the wire.
struct Turn {
    odbc::SharedStatement statement;
    std::vector<Column> columns;
    std::shared_ptr<WireRows> rows;

    void get(const QString& text, qint64 mostRows, const QStringList& wanted);
};

void Turn::get(const QString& text, qint64 mostRows, const QStringList& wanted) {
    const SQLHSTMT handle = statement->get();
    odbc::check(SQLExecDirectW(handle, odbc::wide(text), static_cast<SQLINTEGER>(text.size())), *statement);
    SQLSMALLINT count = 0;
    while (true) {
        odbc::check(SQLNumResultCols(handle, &count), *statement);
        if (count > 0) break;
        const SQLRETURN code = SQLMoreResults(handle);
        odbc::check(code, *statement);
        if (code == SQL_NO_DATA) return;
    }
    columns = describeColumns(*statement, count, wanted);
    rows = makeWireRows(statement, columns, mostRows);
    rows->fetch();
}

}  // namespace

void throwOpen() {
    throw Error(numbers::ObjectOpen, QStringLiteral("Operation is not allowed when the object is open."), {},
                0);
}

void Session::open(const QString& user, const QString& password) {
    if (isOpen()) throwOpen();
    ConnectionString string(connectionText);
    if (!user.isEmpty()) string.setValue({u"UID"}, user);
    if (!password.isEmpty()) string.setValue({u"PWD"}, password);
    ConnectionString handed(driverText(string));
    const QString database = handed.takeHardToRead(u"Database").value_or(QString());
    m_link = DriverConnection::open(handed.text(), database, connectionTimeout);
    m_rowLimit = 0;
    m_failed = false;
    m_openedText = expandedText(string, QSysInfo::machineHostName());
}

void Session::close() {
    for (Reader* reader : std::exchange(m_readers, {}))
        reader->connectionClosed();
    m_wireReader = nullptr;
    m_link.reset();
}

Session::Result Session::run(const QString& text, qint64 rowLimit, const QStringList& wanted) {
    try {
        return runStatement(text, rowLimit, wanted);
    } catch (...) {
        noteFailure();
        throw;
    }
}

Session::Result Session::runStatement(const QString& text, qint64 rowLimit, const QStringList& wanted) {
    if (!isOpen())
        throw Error(
            numbers::ConnectionNotUsable,
            QStringLiteral("The connection cannot be used to perform this operation. It is either closed "
                           "or invalid in this context."),
            {}, 0);
    if (Reader* reader = std::exchange(m_wireReader, nullptr)) reader->readAhead();
    limitRows(rowLimit);
    return execute(text, rowLimit, wanted);
}

std::optional<Answer> Session::takeAnswer(const QString& text) {
    auto node = m_answers.extract(text);
    return node.empty() ? std::nullopt : std::optional(std::move(node.mapped()));
}

void Session::remove(Reader& reader) {
    std::erase(m_readers, &reader);
    endWireReader(reader);
}

void Session::endWireReader(Reader& reader) {
    if (m_wireReader == &reader) m_wireReader = nullptr;
}

Session::Result Session::execute(const QString& text, qint64 rowLimit, const QStringList& wanted) const {
    const auto turn = std::make_shared<Turn>();
    turn->statement = m_link->makeStatement();
    if (commandTimeout > 0)
        odbc::check(SQLSetStmtAttrW(turn->statement->get(), SQL_ATTR_QUERY_TIMEOUT,
                                    odbc::number(static_cast<SQLULEN>(commandTimeout)), 0),
                    *turn->statement);
    try {
        m_link->run(
            commandTimeout, [=] { turn->get(text, rowLimit, wanted); }, turn->statement);
    } catch (...) {
        if (!m_link->isGivenUp()) m_link->end(turn->statement);
        throw;
    }
    if (!turn->rows) return {};
    return {std::move(turn->columns),
            std::make_unique<FetchedRows>(m_link, commandTimeout, std::move(turn->rows))};
}

// A batch of its own: a statement may have to be the first of its batch.
void Session::limitRows(qint64 rows) {
    if (rows == m_rowLimit) return;
    m_rowLimit = -1;
    execute(QStringLiteral("SET ROWCOUNT %1").arg(rows), 0, {});
    m_rowLimit = rows;
}

}  // namespace ado::detail
