#include "querycase.h"

#include "figures.h"
#include "largetable.h"
#include "platform/desktop/datacontrol.h"
#include "platform/desktop/datagrid.h"

#include <QTextStream>

namespace bench {

namespace {

/// As many for a null as the bare loop makes.
qint64 unitsOf(const controls::GridRows& grid) {
    constexpr qint64 NullUnits = 6;
    qint64 units = 0;
    for (int row = 0; row < grid.rowCount(); ++row) {
        for (int column = 0; column < grid.columnCount(); ++column) {
            units += grid.isNull(row, column)
                         ? NullUnits
                         : grid.data(grid.index(row, column), Qt::DisplayRole).toString().size();
        }
    }
    return units;
}

}  // namespace

bool runQueryCase(qint64 rows, int columns, int runs) {
    LargeTable table;
    if (!table.start(rows, columns)) return false;
    desktop::DataControl control;
    control.setConnectionString(table.connectionString() + QStringLiteral(";database=") +
                                QString::fromLatin1(LargeTable::Database));
    control.setCommandTimeout(0);
    control.setRecordSource(QStringLiteral("SELECT * FROM [%1]").arg(QString::fromLatin1(LargeTable::Table)));

    QTextStream(stdout) << "query for " << rows << " x " << columns << '\n' << Qt::flush;
    const BareRows bare = table.readBare();
    printMemory(bare, [&] { control.Refresh(); });
    const bool same =
        bare.rows == rows && control.recordCount() == rows && unitsOf(control.rows()) == bare.units;
    {
        desktop::DataGrid view;
        printViewTimes(QStringLiteral("grid"), view, [&] { view.setRows(&control.rows()); });
    }
    const PairedRuns pairs = measurePairs(
        runs, [&] { control.Refresh(); }, [&] { table.readBare(); });
    printRatio(QStringLiteral("  refreshing the data control"), pairs);
    if (!same) QTextStream(stderr) << "The grid does not hold the texts of the bare loop.\n";
    return same;
}

}  // namespace bench
