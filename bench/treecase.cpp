#include "treecase.h"

#include "bareloop.h"
#include "dbaccess/catalog.h"
#include "dbaccess/dbconnection.h"
#include "platform/controls/nodes.h"
#include "wirecase.h"

namespace bench {

namespace {

qint64 readCatalogBare(const QString& connectionString) {
    qint64 rows = 0;
    const BareEnvironment environment;
    BareConnection server(environment, connectionString);
    const QStringList names = server.firstColumn(tw::catalog::databaseList(), true, &rows);
    qint64 tables = 0;
    for (const QString& name : names) {
        if (tw::catalog::isSystemDatabase(name)) continue;
        BareConnection database(environment, tw::catalog::inDatabase(connectionString, name));
        database.firstColumn(tw::catalog::tableList(), false, &tables);
    }
    return tables;
}

qint64 unitsBelow(const controls::Nodes& tree, const QModelIndex& parent) {
    qint64 units = 0;
    for (int row = 0; row < tree.rowCount(parent); ++row) {
        const QModelIndex index = tree.index(row, 0, parent);
        units += tree.node(index)->text.size() + unitsBelow(tree, index);
    }
    return units;
}

Result measureTree(const Request& request, qint64 databases, qint64 tables) {
    controls::Nodes tree;
    bool filled = false;
    qint64 seen = 0;
    return runWireCase(
        request,
        {.serverArguments = {QStringLiteral("--many"), QStringLiteral("%1,%2").arg(databases).arg(tables)},
         .ours =
             [&](const QString& connectionString) {
                 tw::DBConnection connection;
                 connection.setConnectionString(connectionString);
                 filled = connection.FillTvDB(tree);
             },
         .yardstick = [&](const QString& connectionString) { seen = readCatalogBare(connectionString); },
         .isComplete =
             [&](Memory& memory) {
                 memory.texts = static_cast<double>(unitsBelow(tree, {})) * sizeof(char16_t);
                 return filled && tree.count() == 1 + databases * (1 + tables) && seen == databases * tables;
             },
         .leastRoundTrips = roundTripsOf(1 + databases, 1 + databases)});
}

}  // namespace

Result runTreeCase(const Request& request) {
    Result result = measureTree(request, request.measures[0], request.measures[1]);
    result.scale =
        QStringLiteral("%1 databases of %2 tables").arg(request.measures[0]).arg(request.measures[1]);
    return result;
}

Result runTablesCase(const Request& request) {
    Result result = measureTree(request, 1, request.measures[0]);
    result.scale = QStringLiteral("1 database of %1 tables").arg(request.measures[0]);
    return result;
}

}  // namespace bench
