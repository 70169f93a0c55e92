#include "platform/ado/session.h"

#include "platform/ado/connectionstring.h"
#include "platform/ado/wirerows.h"

#include <QSysInfo>

#include <algorithm>

namespace ado::detail {

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
    m_link = openConnection(handed.text(), database, connectionTimeout);
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

Session::Result Session::run(const QString& text, qint64 rowLimit) {
    try {
        return runStatement(text, rowLimit);
    } catch (...) {
        noteFailure();
        throw;
    }
}

Session::Result Session::runStatement(const QString& text, qint64 rowLimit) {
    if (!isOpen())
        throw Error(
            numbers::ConnectionNotUsable,
            QStringLiteral("The connection cannot be used to perform this operation. It is either closed "
                           "or invalid in this context."),
            {}, 0);
    if (Reader* reader = std::exchange(m_wireReader, nullptr)) reader->readAhead();
    limitRows(rowLimit);
    Result result{execute(text)};
    SQLSMALLINT columns = 0;
    while (true) {
        odbc::check(SQLNumResultCols(result.statement.get(), &columns), result.statement);
        if (columns > 0) break;
        const SQLRETURN code = SQLMoreResults(result.statement.get());
        odbc::check(code, result.statement);
        if (code == SQL_NO_DATA) return {};
    }
    result.columns = columns;
    return result;
}

void Session::remove(Reader& reader) {
    std::erase(m_readers, &reader);
    endWireReader(reader);
}

void Session::endWireReader(Reader& reader) {
    if (m_wireReader == &reader) m_wireReader = nullptr;
}

odbc::StatementHandle Session::execute(const QString& text) const {
    odbc::StatementHandle statement = odbc::makeStatement(m_link->connection);
    if (commandTimeout > 0)
        odbc::check(SQLSetStmtAttrW(statement.get(), SQL_ATTR_QUERY_TIMEOUT,
                                    odbc::number(static_cast<SQLULEN>(commandTimeout)), 0),
                    statement);
    odbc::check(SQLExecDirectW(statement.get(), odbc::wide(text), static_cast<SQLINTEGER>(text.size())),
                statement);
    return statement;
}

// A batch of its own: a statement may have to be the first of its batch.
void Session::limitRows(qint64 rows) {
    if (rows == m_rowLimit) return;
    m_rowLimit = -1;
    execute(QStringLiteral("SET ROWCOUNT %1").arg(rows));
    m_rowLimit = rows;
}

}  // namespace ado::detail
