#include "comparecase.h"

#include "barecatalog.h"
#include "commandlineclient.h"
#include "comparison.h"
#include "dbaccess/catalog.h"
#include "wirecase.h"

#include <functional>
#include <memory>

namespace bench {

namespace {

/// The statements of a comparison in its order; the columns of all tables of both databases.
qint64 readSchemasBare(const QString& connectionString) {
    const BareEnvironment environment;
    std::vector<std::unique_ptr<BareConnection>> systems;
    QStringList tables;
    for (const QString& database : comparedDatabases()) {
        systems.push_back(std::make_unique<BareConnection>(
            environment, tw::catalog::inDatabase(connectionString, database)));
        BareConnection& system = *systems.back();
        readDetailsBare(system, system, system);
        qint64 rows = 0;
        tables = system.firstColumn(tw::catalog::tableList(), true, &rows);
    }
    qint64 columns = 0;
    for (const QString& table : tables) {
        for (const std::unique_ptr<BareConnection>& system : systems)
            columns += readTableBare(*system, table);
    }
    return columns;
}

/// `readAll` gives the number of columns that it read, of both databases.
Result measureComparison(const Request& request, const std::function<qint64(const QString&)>& readAll) {
    const qint64 tables = request.measures[0];
    const qint64 columns = request.measures[1];
    std::unique_ptr<Compared> compared;
    qint64 seen = 0;
    Result result = runWireCase(
        request,
        {.serverArguments = comparedDatabasesOptions(tables, columns),
         .ours = [&](const QString& connectionString) { compared = compareDatabases(connectionString); },
         .yardstick = [&](const QString& connectionString) { seen = readAll(connectionString); },
         .isComplete =
             [&](Memory& memory) {
                 memory.texts = static_cast<double>(compared->units()) * sizeof(char16_t);
                 return compared->rows() >= 2 * tables * (1 + columns) && compared->unmatched == 0 &&
                        seen == 2 * tables * columns;
             },
         .leastRoundTrips = 2 * roundTripsOf(1, 4 + 3 * tables)});
    result.scale = QStringLiteral("%1 tables of %2 columns a side").arg(tables).arg(columns);
    return result;
}

}  // namespace

Result runCompareCase(const Request& request) {
    return measureComparison(request, readSchemasBare);
}

Result runCompareClientCase(const Request& request) {
    Result result = measureComparison(request, [](const QString& connectionString) {
        return compareByClient(connectionString, comparedDatabases());
    });
    result.processorRatios.clear();
    return result;
}

}  // namespace bench
