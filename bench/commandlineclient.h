#pragma once

#include <QStringList>

namespace bench {

/// Compares the schemas of two databases with FreeTDS's tsql, sort and diff: the client lists the tables of
/// the first, prints what a comparison asks of either database to a file, and the sorted files are compared.
/// Returns the number of table columns that were printed; -1 when a program failed or the files differ in
/// more than the databases' names.
qint64 compareByClient(const QString& connectionString, const QStringList& databases);

}  // namespace bench
