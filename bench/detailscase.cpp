#include "detailscase.h"

#include "barecatalog.h"
#include "dbaccess/catalog.h"
#include "dbaccess/connectionpool.h"
#include "dbaccess/dbconnection.h"
#include "listtexts.h"
#include "platform/controls/listitems.h"
#include "wirecase.h"

#include <algorithm>

namespace bench {

Result runDetailsCase(const Request& request) {
    const qint64 checks = request.measures[0];
    const qint64 indexColumns = request.measures[1];
    const qint64 foreignKeys = request.measures[2];
    const QString database = QStringLiteral("Details");
    controls::ListItems list;
    BareDetails seen;
    Result result = runWireCase(
        request,
        {.serverArguments = {QStringLiteral("--details"),
                             QStringLiteral("%1,%2,%3").arg(checks).arg(indexColumns).arg(foreignKeys)},
         .ours =
             [&](const QString& connectionString) {
                 tw::DBConnection connection(std::make_shared<tw::ConnectionPool>());
                 connection.setConnectionString(connectionString);
                 connection.FillLvDBDetail(list, database);
             },
         .yardstick =
             [&](const QString& connectionString) {
                 const BareEnvironment environment;
                 const QString text = tw::catalog::inDatabase(connectionString, database);
                 BareConnection first(environment, text);
                 BareConnection second(environment, text);
                 BareConnection third(environment, text);
                 seen = readDetailsBare(first, second, third);
             },
         .isComplete =
             [&](Memory& memory) {
                 memory.texts = static_cast<double>(unitsOf(list, list.headerCount())) * sizeof(char16_t);
                 return list.count() == std::max({checks, indexColumns, foreignKeys}) &&
                        seen.checks == checks && seen.indexColumns == indexColumns &&
                        seen.foreignKeys == foreignKeys;
             },
         .leastRoundTrips = roundTripsOf(1, 3)});
    result.scale =
        QStringLiteral("%1 checks, %2 index rows, %3 keys").arg(checks).arg(indexColumns).arg(foreignKeys);
    return result;
}

}  // namespace bench
