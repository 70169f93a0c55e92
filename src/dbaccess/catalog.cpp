#include "dbaccess/catalog.h"

#include <algorithm>
#include <array>

namespace tw::catalog {

QString databaseList() {
    return QStringLiteral(
        "SELECT Name "
        "FROM master..sysdatabases "
        "ORDER BY Name ASC");
}

QString tableList() {
    return QStringLiteral(
        "SELECT Name "
        "FROM sysobjects "
        "WHERE (Type = 'U') "
        "ORDER BY Name ASC");
}

QString columnList(const QString& table) {
    return QStringLiteral("sp_columns '") + table + QStringLiteral("'");
}

QString inDatabase(const QString& connectionString, const QString& database) {
    return connectionString + QStringLiteral(";Database=") + database;
}

bool isSystemDatabase(QStringView name) {
    static constexpr std::array<QStringView, 5> System{u"master", u"model", u"msdb", u"tempdb",
                                                       u"distribution"};
    return std::find(System.begin(), System.end(), name) != System.end();
}

bool isHiddenTable(QStringView name) {
    return name == u"dtproperties" || name.startsWith(u"sys");
}

}  // namespace tw::catalog
