#include "barecatalog.h"

#include "dbaccess/catalog.h"

namespace bench {

qint64 readTableBare(BareConnection& connection, const QString& table) {
    // COLUMN_NAME, TYPE_NAME, LENGTH, NULLABLE
    const qint64 columns = connection.readColumns(tw::catalog::columnList(table), {4, 6, 8, 11});
    connection.readColumns(tw::catalog::primaryKeyColumns(table), {1});
    connection.readColumns(tw::catalog::foreignKeyColumns(table), {1, 2, 3});
    return columns;
}

BareDetails readDetailsBare(BareConnection& first, BareConnection& second, BareConnection& third) {
    BareDetails details;
    details.checks = first.readColumns(tw::catalog::checkConstraints(), {1, 2, 3});
    details.indexColumns = second.readColumns(tw::catalog::indexColumns(), {1, 2, 3});
    details.foreignKeys = third.readColumns(tw::catalog::foreignKeys(), {1, 2, 3, 4, 5});
    return details;
}

}  // namespace bench
