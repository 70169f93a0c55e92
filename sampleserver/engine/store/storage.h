#pragma once

#include "engine/values/sqltype.h"

#include <QString>

struct sqlite3;
struct sqlite3_stmt;

namespace engine {

/// How values lie in a database's SQLite store. Column number i of a table (from 0) is the SQLite column
/// "c<i>".
///  - bit, tinyint, smallint, int; money and smallmoney (ten-thousandths); datetime and smalldatetime
///    (three-hundredths of a second since 1900-01-01): INTEGER
///  - decimal and numeric up to 18 digits: INTEGER scaled by 10^scale; above: TEXT COLLATE tsqldecimal
///    in plain notation
///  - float, real: REAL
///  - char, varchar, text, nchar, nvarchar, ntext: TEXT COLLATE tsql
///  - binary, varbinary, image, timestamp, uniqueidentifier: BLOB
QString storageDeclaration(const SqlType& type);

/// The SQLite name of column number `index`.
QString storageColumn(int index);

/// Binds `value` of type `type` to parameter `parameter` (from 1).
void bindStored(sqlite3_stmt* statement, int parameter, const Value& value, const SqlType& type);

/// Reads result column `column` (from 0) as a value of type `type`.
Value readStored(sqlite3_stmt* statement, int column, const SqlType& type);

/// Opens an SQLite connection on `uri` with the collation `tsql` (case folded, trailing blanks without
/// weight) and the functions that translated statements call. Throws SqlError 9002 when SQLite refuses.
sqlite3* openStore(const QString& uri);

}  // namespace engine
