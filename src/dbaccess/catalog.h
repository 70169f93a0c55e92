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

// A name is put into these statements as it stands. One that would end its own quotes or brackets there makes
// them throw an ado::Error with the number of a syntax error.

/// The columns of a table; column "COLUMN_NAME".
QString columnList(const QString& table);

/// The primary-key columns of a table; column "ColName".
QString primaryKeyColumns(const QString& table);
/// The referencing columns of a table, of a key over several columns the first; columns "ColName",
/// "RefTableName", "RefColName".
QString foreignKeyColumns(const QString& table);
/// The check constraints of the connection's database; columns "A" to "C".
QString checkConstraints();
/// The columns of its indexes; columns "A" to "C".
QString indexColumns();
/// The column pairs of its foreign keys; columns "A" to "E".
QString foreignKeys();
/// A table's name for a statement, with an owner unless that is empty.
QString bracketed(const QString& owner, const QString& table);

/// The connection string of one database, for the catalog's own statements and for those of a user; the two
/// spell the item's keyword differently. A name that would end its item stands in braces.
QString inDatabase(const QString& connectionString, const QString& database);
QString queryInDatabase(const QString& connectionString, const QString& database);

/// Databases that belong to the server itself; the case counts.
bool isSystemDatabase(QStringView name);
/// Tables that are never offered; the case counts.
bool isHiddenTable(QStringView name);

/// Whether the tree shows a marker in the place of a database or a table, so that there is nothing to list.
bool isMarker(const QString& database, const QString& table);

/// Reports the failure that is being handled under one of DBConnection's own procedures.
void reportFailureOf(const QString& procedure);

/// Hands the text of one column, as a QStringView, to `take`, row by row to the end. Throws what the rows or
/// `take` throw.
template <class Take>
void forEachText(ado::Recordset& rows, const QString& column, Take&& take) {
    if (rows.Eof()) return;
    const ado::Field& field = rows.Fields(column);
    for (; !rows.Eof(); rows.MoveNext()) {
        take(field.text());
    }
}

/// The same for the rows of a statement.
template <class Take>
void forEachText(const ado::Connection& connection, const QString& statement, const QString& column,
                 Take&& take) {
    ado::Recordset rows;
    rows.Open(statement, connection);
    forEachText(rows, column, std::forward<Take>(take));
}

}  // namespace tw::catalog
