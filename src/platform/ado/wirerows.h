#pragma once

#include "platform/ado/odbc.h"
#include "platform/ado/rowsource.h"

#include <QStringList>

#include <memory>

namespace ado {

/// The `count` columns of a statement's current result. Given names, in any case of letters: those with one
/// of them, the first of each, and the driver is asked for no column behind the last of them; all columns
/// when there are none of these names.
std::vector<Column> describeColumns(const odbc::StatementHandle& statement, int count,
                                    const QStringList& names = {});

/// The rows of a statement's current result, as they come from the server: in blocks where every column is
/// bounded in size, else a row at a time with each value in pieces. Behind the last row the statement's
/// further results are read for the errors in them. Its end stops a statement that is not read to the end
/// by a cancel to the server. `most` is the number of rows that can come, 0 when unknown.
std::unique_ptr<RowSource> makeWireRows(odbc::StatementHandle statement, const std::vector<Column>& columns,
                                        qint64 most);

/// The driver's form of a column's values (SQL_C_...).
SQLSMALLINT wireType(FieldType type);

/// Reads the statement's further results and ends it. Throws the error of one.
void finishResults(odbc::StatementHandle& statement);

}  // namespace ado
