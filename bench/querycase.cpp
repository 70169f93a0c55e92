#include "querycase.h"

#include "barerows.h"
#include "dbaccess/catalog.h"
#include "platform/desktop/datacontrol.h"
#include "platform/desktop/datagrid.h"
#include "viewtimes.h"
#include "wirecase.h"

namespace bench {

namespace {

const QString Query = QStringLiteral("SELECT * FROM [Table0001]");

QString inLarge(const QString& connectionString) {
    return tw::catalog::inDatabase(connectionString, QStringLiteral("Large"));
}

/// As many for a null as the bare loop makes.
qint64 unitsOf(const controls::GridRows& grid) {
    constexpr qint64 nullUnits = 6;
    qint64 units = 0;
    for (int row = 0; row < grid.rowCount(); ++row) {
        for (int column = 0; column < grid.columnCount(); ++column) {
            units += grid.isNull(row, column)
                         ? nullUnits
                         : grid.data(grid.index(row, column), Qt::DisplayRole).toString().size();
        }
    }
    return units;
}

}  // namespace

Result runQueryCase(const Request& request) {
    const qint64 rows = request.measures[0];
    const qint64 columns = request.measures[1];
    desktop::DataControl control;
    control.setCommandTimeout(0);
    control.setRecordSource(Query);
    BareRows seen;
    Result result = runWireCase(
        request,
        {.serverArguments = {QStringLiteral("--large"), QStringLiteral("1,%1,%2").arg(columns).arg(rows)},
         .ours =
             [&](const QString& connectionString) {
                 control.setConnectionString(inLarge(connectionString));
                 control.Refresh();
             },
         .yardstick =
             [&](const QString& connectionString) {
                 const BareEnvironment environment;
                 const BareConnection connection(environment, inLarge(connectionString));
                 seen = readRowsBare(connection, Query);
             },
         .isComplete =
             [&](Memory& memory) {
                 const qint64 units = unitsOf(control.rows());
                 memory.texts = static_cast<double>(units) * sizeof(char16_t);
                 return control.recordCount() == rows && seen.rows == rows && seen.units == units;
             },
         .leastRoundTrips = roundTripsOf(1, 1)});
    result.scale = QStringLiteral("%1 rows of %2 columns").arg(rows).arg(columns);
    desktop::DataGrid view;
    result.figures = viewTimes(view, [&] { view.setRows(&control.rows()); });
    view.setRows(nullptr);
    return result;
}

}  // namespace bench
