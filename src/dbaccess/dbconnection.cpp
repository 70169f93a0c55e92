#include "dbaccess/dbconnection.h"

#include "dbaccess/catalog.h"
#include "dbaccess/connectionpool.h"
#include "platform/controls/keyedtexts.h"

#include <utility>

namespace tw {

namespace {

/// The value of the first item that begins with `name` ("Server="), up to the next semicolon.
std::optional<QString> itemValue(const QString& connectionString, const QString& name) {
    const qsizetype found = connectionString.indexOf(name, 0, Qt::CaseInsensitive);
    if (found < 0) return std::nullopt;
    const qsizetype start = found + name.size();
    const qsizetype end = connectionString.indexOf(u';', start);
    return end < 0 ? connectionString.mid(start) : connectionString.mid(start, end - start);
}

/// Whether the failure being handled is that of a connection which could not be opened, is lost or has fallen
/// silent. Only a lost link gives a statement the unspecified number.
bool isConnectionLost() {
    try {
        throw;
    } catch (const OpeningError&) {
        return true;
    } catch (const ado::Error& error) {
        return error.number() == ado::numbers::Unspecified || error.number() == ado::numbers::TimeOut ||
               error.number() == ado::numbers::ConnectionNotUsable;
    } catch (...) {
        return false;
    }
}

}  // namespace

ado::Connection& DBConnection::getConnection() {
    if (!m_connection) m_connection.emplace();
    return *m_connection;
}

QString DBConnection::Capitialize(const QString& text) {
    QString result = text;
    if (!result.isEmpty()) result[0] = result[0].toUpper();
    return result;
}

bool DBConnection::InCollection(const controls::KeyedTexts& collection, const QString& key) {
    return collection.contains(key);
}

QString DBConnection::GetTypeBaseName(const QString& text) {
    return text.left(text.indexOf(u' ')).toLower();
}

bool DBConnection::HasBlank(const QString& text) {
    return text.contains(u' ');
}

QString DBConnection::GetServerName(const ado::Connection& connection) const {
    const QString text = connection.ConnectionString();
    const std::optional<QString> server = itemValue(text, QStringLiteral("Server="));
    std::optional<QString> workstation = itemValue(text, QStringLiteral("WSID="));
    if (!server || !workstation) return m_server;

    // The item may be the last one inside quoted extended properties.
    if (workstation->endsWith(u'"')) workstation->chop(1);

    const QString local = QStringLiteral("(local)");
    if (*server == local) return *workstation + local;
    if (server->compare(*workstation, Qt::CaseInsensitive) == 0) return *server + local;
    return *server;
}

void DBConnection::runRoutine(const QString& name, const std::function<void()>& body) {
    m_connectionLost = false;
    m_untoldLoss = nullptr;
    try {
        body();
    } catch (...) {
        const bool lost = isConnectionLost();
        if (!m_follower.isNews || m_follower.isNews(name, platform::currentError()))
            catalog::reportFailureOf(name);
        // Other routines may have run while the message box was open.
        m_connectionLost = lost;
        m_untoldLoss = nullptr;
    }
}

bool DBConnection::tellLostConnection() {
    if (const std::exception_ptr untold = std::exchange(m_untoldLoss, nullptr)) {
        try {
            std::rethrow_exception(untold);
        } catch (...) {
            catalog::reportFailureOf(QStringLiteral("FillLvDBDetail"));
            return true;
        }
    }
    return m_connectionLost;
}

CatalogReading DBConnection::reading(const QString& statement) const {
    return {m_pool.get(), m_connectionString, statement};
}

CatalogReading DBConnection::reading(const QString& database, const QString& statement,
                                     const QStringList& fields) const {
    return {m_pool.get(), catalog::inDatabase(m_connectionString, database), statement, fields};
}

}  // namespace tw
