#pragma once

#include "platform/ado/connection.h"
#include "platform/ado/recordset.h"

#include <QString>

#include <utility>

/// What the catalog routines share: their statements, what they leave out, how they read.
namespace tw::catalog {

/// The server's databases; column "Name".
QString databaseList();
/// The user tables of the connection's database; column "Name".
QString tableList();
/// The columns of a table; column "COLUMN_NAME". The name is put in as it stands, quotes too.
QString columnList(const QString& table);

/// The connection string of one database.
QString inDatabase(const QString& connectionString, const QString& database);

/// Databases that belong to the server itself; the case counts.
bool isSystemDatabase(QStringView name);
/// Tables that are never offered; the case counts.
bool isHiddenTable(QStringView name);

/// Runs a statement and hands the text of one column, as a QStringView, to `take`, row by row. Throws what
/// the statement, its rows or `take` throw.
template <class Take>
void forEachText(const ado::Connection& connection, const QString& statement, const QString& column,
                 Take&& take) {
    ado::Recordset rows;
    rows.Open(statement, connection);
    if (rows.Eof()) return;
    const ado::Field& field = rows.Fields(column);
    for (; !rows.Eof(); rows.MoveNext()) {
        take(field.text());
    }
}

}  // namespace tw::catalog
