#include "dbaccess/catalog.h"

#include "platform/ado/connectionstring.h"
#include "platform/ado/error.h"
#include "shell/core/reporterror.h"

#include <algorithm>
#include <array>

namespace tw::catalog {

namespace {

/// A name that stands before `end` in a statement. One that holds that sign itself could go on as a statement
/// of its own, so it is never sent.
const QString& endedBy(QChar end, const QString& name) {
    if (!name.contains(end)) return name;
    throw ado::Error(
        ado::numbers::StatementError,
        QStringLiteral(
            "Syntax error: the name holds the character %1, which would end it in the statement. The "
            "statement has not been sent.")
            .arg(end),
        {}, 0);
}

const QString& inQuotes(const QString& name) {
    return endedBy(u'\'', name);
}

const QString& inBrackets(const QString& name) {
    return endedBy(u']', name);
}

}  // namespace

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
    return QStringLiteral("sp_columns '") + inQuotes(table) + QStringLiteral("'");
}

QString primaryKeyColumns(const QString& table) {
    return QStringLiteral(
               "SELECT CONVERT(sysname,syscolumns.name) ColName "
               "FROM syscolumns "
               "INNER JOIN sysobjects "
               "ON sysobjects.id = OBJECT_ID('") +
           inQuotes(table) +
           QStringLiteral(
               "') "
               "INNER JOIN sysindexes "
               "ON sysobjects.id = sysindexes.id "
               "INNER JOIN syscolumns syscolumns_1 "
               "ON syscolumns_1.id = OBJECT_ID('") +
           inQuotes(table) +
           QStringLiteral(
               "') "
               "WHERE (sysobjects.ID = syscolumns.ID) AND "
               "      ((sysindexes.status & 0x800) = 0x800) AND "
               "      (syscolumns.name = "
               "       INDEX_COL('") +
           inQuotes(table) + QStringLiteral("', sysindexes.indid, syscolumns_1.colid))");
}

QString foreignKeyColumns(const QString& table) {
    return QStringLiteral(
               "SELECT syscolumns.name AS ColName, "
               "       sysobjects_1.name AS RefTableName, "
               "       syscolumns_1.name AS RefColName "
               "FROM (syscolumns AS syscolumns_1 "
               "INNER JOIN ((syscolumns "
               "  INNER JOIN sysreferences "
               "  ON (syscolumns.colid = sysreferences.fkey1) AND "
               "     (syscolumns.id = sysreferences.fkeyid)) "
               "    INNER JOIN sysobjects "
               "    ON syscolumns.id = sysobjects.id) "
               "ON (syscolumns_1.colid = sysreferences.rkey1) AND "
               "   (syscolumns_1.id = sysreferences.rkeyid)) "
               "INNER JOIN sysobjects AS sysobjects_1 "
               "ON syscolumns_1.id = sysobjects_1.id "
               "WHERE (((sysobjects.Name) = '") +
           inQuotes(table) + QStringLiteral("'))");
}

QString checkConstraints() {
    return QStringLiteral(
        "select sysobjects_2.name as A, sysobjects_1.name as B, syscomments.text C "
        "from sysobjects as sysobjects_1 ,syscomments, sysobjects as sysobjects_2 "
        "where sysobjects_1.xtype   = 'C'"
        "  and sysobjects_1.id = syscomments.id "
        "  and sysobjects_1.parent_obj = sysobjects_2.id "
        "order by A, B asc ");
}

QString indexColumns() {
    return QStringLiteral(
        "select sysobjects.name as A, sysindexes.name as B, syscolumns.name as C "
        "from sysindexes, sysobjects, syscolumns, sysindexkeys "
        "where sysindexes.indid <> 255 "
        "  and sysindexes.name not like '_WA_Sys%' "
        "  and sysobjects.name <> 'dtproperties' "
        "  and sysobjects.name not like 'sys%' "
        "  and sysobjects.xtype = 'u' "
        "  and sysobjects.id = sysindexes.id "
        "  and sysobjects.id = syscolumns.id "
        "  and sysobjects.id = sysindexkeys.id "
        "  and sysindexes.indid = sysindexkeys.indid "
        "  and sysindexkeys.colid = syscolumns.colid "
        "  and sysindexes.name <> sysobjects.name ");
}

QString foreignKeys() {
    return QStringLiteral(
        "select sysobjects_1.name as A, sysobjects_2.name as B, "
        "  syscolumns_1.name as C, sysobjects_3.name as D, syscolumns_2.name as E "
        "from sysforeignkeys, sysobjects as sysobjects_1, "
        "  sysobjects as sysobjects_2, sysobjects as sysobjects_3, "
        "  syscolumns as syscolumns_1, syscolumns as syscolumns_2 "
        "where sysforeignkeys.constid = sysobjects_1.id "
        "  and sysforeignkeys.fkeyid = sysobjects_2.id "
        "  and sysforeignkeys.rkeyid = sysobjects_3.id "
        "  and sysforeignkeys.fkeyid = syscolumns_1.id "
        "  and sysforeignkeys.rkeyid = syscolumns_2.id "
        "  and sysforeignkeys.fkey = syscolumns_1.colid "
        "  and sysforeignkeys.rkey = syscolumns_2.colid ");
}

QString bracketed(const QString& owner, const QString& table) {
    const QString name = QStringLiteral("[") + inBrackets(table) + QStringLiteral("]");
    return owner.isEmpty() ? name : QStringLiteral("[") + inBrackets(owner) + QStringLiteral("].") + name;
}

QString inDatabase(const QString& connectionString, const QString& database) {
    return connectionString + QStringLiteral(";Database=") + ado::itemValue(database);
}

QString queryInDatabase(const QString& connectionString, const QString& database) {
    return connectionString + QStringLiteral(";database=") + ado::itemValue(database);
}

bool isSystemDatabase(QStringView name) {
    static constexpr std::array<QStringView, 5> System{u"master", u"model", u"msdb", u"tempdb",
                                                       u"distribution"};
    return std::find(System.begin(), System.end(), name) != System.end();
}

bool isHiddenTable(QStringView name) {
    return name == u"dtproperties" || name.startsWith(u"sys");
}

bool isMarker(const QString& database, const QString& table) {
    return database == QStringLiteral("<No Connection>") || table == QStringLiteral("<No Permission>");
}

void reportFailureOf(const QString& procedure) {
    QString noExtraText;
    ReportError(procedure, QStringLiteral("DBConnection.cls"), noExtraText);
}

}  // namespace tw::catalog
