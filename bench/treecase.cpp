#include "treecase.h"

#include "bareloop.h"
#include "dbaccess/dbconnection.h"
#include "figures.h"
#include "platform/controls/nodes.h"
#include "support/sampleserverprocess.h"

#include <QTextStream>

namespace bench {

namespace {

const QStringList SystemDatabases{QStringLiteral("master"), QStringLiteral("model"), QStringLiteral("msdb"),
                                  QStringLiteral("tempdb"), QStringLiteral("distribution")};

qint64 readCatalogBare(const QString& connectionString) {
    qint64 rows = 0;
    const BareEnvironment environment;
    BareConnection server(environment, connectionString);
    const QStringList names = server.firstColumn(
        QStringLiteral("SELECT Name FROM master..sysdatabases ORDER BY Name ASC"), true, &rows);
    for (const QString& name : names) {
        if (SystemDatabases.contains(name)) continue;
        BareConnection database(environment, connectionString + QStringLiteral(";Database=") + name);
        database.firstColumn(
            QStringLiteral("SELECT Name FROM sysobjects WHERE (Type = 'U') ORDER BY Name ASC"), false, &rows);
    }
    return rows;
}

}  // namespace

bool runTreeCase(int databases, int tables, int runs) {
    testsupport::SampleServerProcess server;
    if (!server.start({QStringLiteral("--no-sample-data"), QStringLiteral("--many"),
                       QStringLiteral("%1,%2").arg(databases).arg(tables)})) {
        QTextStream(stderr) << "The sample server did not start: " << server.errorText() << '\n';
        return false;
    }
    const QString connectionString =
        QStringLiteral("driver={SQL Server};server=%1;uid=sa;pwd=").arg(server.serverText());
    tw::DBConnection connection;
    connection.setConnectionString(connectionString);

    bool complete = true;
    const auto fill = [&] {
        controls::Nodes tree;
        complete = connection.FillTvDB(tree) && tree.count() == 1 + databases * (1 + tables) && complete;
    };
    const PairedRuns pairs = measurePairs(runs, fill, [&] { readCatalogBare(connectionString); });
    printRatio(QStringLiteral("tree of %1 databases of %2 tables").arg(databases).arg(tables), pairs);

    const size_t before = heapBytes();
    controls::Nodes tree;
    complete = connection.FillTvDB(tree) && complete;
    const double perNode = static_cast<double>(heapBytes() - before) / tree.count();
    QTextStream(stdout) << "  " << tree.count() << " nodes, " << QString::number(perNode, 'f', 0)
                        << " bytes of heap per node\n";
    if (!complete) QTextStream(stderr) << "The tree is not complete.\n";
    return complete;
}

}  // namespace bench
