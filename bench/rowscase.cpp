#include "rowscase.h"

#include "dbaccess/dbconnection.h"
#include "figures.h"
#include "largetable.h"
#include "platform/controls/listitems.h"
#include "platform/desktop/listview.h"

#include <QTextStream>

namespace bench {

namespace {

const QString Database = QString::fromLatin1(LargeTable::Database);
const QString Table = QString::fromLatin1(LargeTable::Table);

qint64 unitsOf(const controls::ListItems& list) {
    qint64 units = 0;
    for (int item = 0; item < list.count(); ++item) {
        for (int column = 0; column < list.headerCount(); ++column)
            units += list.subItem(item, column).size();
    }
    return units;
}

}  // namespace

bool runRowsCase(qint64 rows, int columns, int runs) {
    LargeTable table;
    if (!table.start(rows, columns)) return false;
    tw::DBConnection connection;
    connection.setConnectionString(table.connectionString());

    QTextStream(stdout) << "rows of a table of " << rows << " x " << columns << '\n' << Qt::flush;
    const BareRows bare = table.readBare();
    controls::ListItems list;
    printMemory(bare, [&] { connection.FillLvTblData(list, Database, Table, 0); });
    const bool same = bare.rows == rows && list.count() == rows && unitsOf(list) == bare.units;
    {
        desktop::ListView view;
        printViewTimes(QStringLiteral("list view"), view, [&] { view.setItems(&list); });
        view.setItems(nullptr);
    }
    const PairedRuns pairs = measurePairs(
        runs, [&] { connection.FillLvTblData(list, Database, Table, 0); }, [&] { table.readBare(); });
    printRatio(QStringLiteral("  filling the list"), pairs);
    if (!same) QTextStream(stderr) << "The list does not hold the texts of the bare loop.\n";
    return same;
}

}  // namespace bench
