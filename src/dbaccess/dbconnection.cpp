#include "dbaccess/dbconnection.h"

#include "platform/controls/keyedtexts.h"

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

}  // namespace

ado::Connection& DBConnection::getConnection() {
    if (!m_connection) m_connection.emplace();
    return *m_connection;
}

QString DBConnection::Capitialize(const QString& text) {
    if (text.size() < 2) return text.toUpper();
    return text.left(1).toUpper() + text.mid(1);
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

}  // namespace tw
