#include "dbaccess/dbconnection.h"

#include "dbaccess/catalog.h"
#include "dbaccess/connectionpool.h"
#include "dbaccess/failingstep.h"
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
/// silent.
bool isConnectionLost() {
    try {
        throw;
    } catch (const OpeningError&) {
        return true;
    } catch (const ado::Error& error) {
        return isLineLost(error) || error.number() == ado::numbers::TimeOut;
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
    return reading({{m_connectionString, statement}});
}

CatalogReading DBConnection::reading(const QString& database, const QString& statement) const {
    return reading({{catalog::inDatabase(m_connectionString, database), statement}});
}

CatalogReading DBConnection::reading(const ReadAhead::Request& request) const {
    return {{m_pool.get(), m_ahead.get()},
            request.question.connectionString,
            request.question.statement,
            request.fields};
}

void DBConnection::expect(const QString& database, const ExpectedReading& expected) {
    if (m_mostReaders == 0) return;
    const QString string = catalog::inDatabase(m_connectionString, database);
    std::vector<ReadAhead::Request> requests;
    if (expected.details)
        for (const QString& statement : detailStatements())
            requests.push_back({{string, statement}});
    if (expected.tableList) requests.push_back({{string, catalog::tableList()}});
    for (const QString& table : expected.tables)
        // A name that no statement takes is refused when its turn comes.
        skipFailing([&] { requests.push_back(definitionRequest(string, table)); });
    if (!m_ahead) m_ahead = std::make_unique<ReadAhead>(m_mostReaders);
    m_ahead->expect(std::move(requests));
}

}  // namespace tw
