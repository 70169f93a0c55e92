#include "dbaccess/catalog.h"
#include "dbaccess/dbconnection.h"
#include "shell/core/reporterror.h"

namespace tw {

std::optional<ado::Recordset> DBConnection::ExecuteQuery(const QString& database, const QString& query) {
    try {
        ado::Connection connection;
        connection.setConnectionString(catalog::queryInDatabase(m_connectionString, database));
        connection.Open();
        ado::Recordset rows;
        rows.Open(query, connection);
        return rows;
    } catch (...) {
        QString details = QStringLiteral("Database: ") + database + QStringLiteral(".\r\nQuery: ") + query;
        ReportError(QStringLiteral("ExecuteQuery"), QStringLiteral("DBConnection.cls"), details);
        return std::nullopt;
    }
}

}  // namespace tw
