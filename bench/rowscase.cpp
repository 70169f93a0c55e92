#include "rowscase.h"

#include "barerows.h"
#include "dbaccess/catalog.h"
#include "dbaccess/connectionpool.h"
#include "dbaccess/dbconnection.h"
#include "listtexts.h"
#include "platform/controls/listitems.h"
#include "platform/desktop/listview.h"
#include "viewtimes.h"
#include "wirecase.h"

namespace bench {

namespace {

const QString Database = QStringLiteral("Large");
const QString Table = QStringLiteral("Table0001");

BareRows readBare(const QString& connectionString) {
    const BareEnvironment environment;
    BareConnection connection(environment, tw::catalog::inDatabase(connectionString, Database));
    const QString name = tw::catalog::bracketed({}, Table);
    connection.readColumns(tw::catalog::columnList(Table), {4});  // COLUMN_NAME
    connection.readColumns(QStringLiteral("sp_helpuser"), {1});   // UserName
    connection.readColumns(QStringLiteral("Select count(*) as x from ") + name, {1});
    return readRowsBare(connection, QStringLiteral("select * from ") + name);
}

}  // namespace

Result runRowsCase(const Request& request) {
    const qint64 rows = request.measures[0];
    const qint64 columns = request.measures[1];
    controls::ListItems list;
    BareRows seen;
    Result result = runWireCase(
        request,
        {.serverArguments = {QStringLiteral("--large"), QStringLiteral("1,%1,%2").arg(columns).arg(rows)},
         .ours =
             [&](const QString& connectionString) {
                 tw::DBConnection connection(std::make_shared<tw::ConnectionPool>());
                 connection.setConnectionString(connectionString);
                 connection.FillLvTblData(list, Database, Table, 0);
             },
         .yardstick = [&](const QString& connectionString) { seen = readBare(connectionString); },
         .isComplete =
             [&](Memory& memory) {
                 const qint64 units = unitsOf(list, list.headerCount());
                 memory.texts = static_cast<double>(units) * sizeof(char16_t);
                 return list.count() == rows && seen.rows == rows && seen.units == units;
             },
         .leastRoundTrips = roundTripsOf(1, 4)});
    result.scale = QStringLiteral("%1 rows of %2 columns").arg(rows).arg(columns);
    if (request.delay == 0) {
        desktop::ListView view;
        result.figures = viewTimes(view, [&] { view.setItems(&list); });
        view.setItems(nullptr);
    }
    return result;
}

}  // namespace bench
