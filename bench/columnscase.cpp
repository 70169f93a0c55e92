#include "columnscase.h"

#include "barecatalog.h"
#include "dbaccess/catalog.h"
#include "dbaccess/connectionpool.h"
#include "dbaccess/dbconnection.h"
#include "listtexts.h"
#include "platform/controls/listitems.h"
#include "wirecase.h"

namespace bench {

Result runColumnsCase(const Request& request) {
    constexpr int listColumns = 4;
    const qint64 columns = request.measures[0];
    const QString database = QStringLiteral("Large");
    const QString table = QStringLiteral("Table0002");  // the first that refers to another one
    controls::ListItems list;
    qint64 seen = 0;
    Result result = runWireCase(
        request, {.serverArguments = {QStringLiteral("--large"), QStringLiteral("2,%1,0").arg(columns)},
                  .ours =
                      [&](const QString& connectionString) {
                          tw::DBConnection connection(std::make_shared<tw::ConnectionPool>());
                          connection.setConnectionString(connectionString);
                          connection.FillLvTblDef(list, database, table);
                      },
                  .yardstick =
                      [&](const QString& connectionString) {
                          const BareEnvironment environment;
                          BareConnection connection(environment,
                                                    tw::catalog::inDatabase(connectionString, database));
                          seen = readTableBare(connection, table);
                      },
                  .isComplete =
                      [&](Memory& memory) {
                          memory.texts = static_cast<double>(unitsOf(list, listColumns)) * sizeof(char16_t);
                          return list.count() == columns && seen == columns;
                      },
                  .leastRoundTrips = roundTripsOf(1, 3)});
    result.scale = QStringLiteral("%1 columns").arg(columns);
    return result;
}

}  // namespace bench
