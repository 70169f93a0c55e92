#include "engine/catalog/systemtables.h"
#include "engine/store/keycolumns.h"
#include "engine/syntax/ddlparser.h"

#include <array>

namespace engine {

namespace {

struct SystemTable {
    int id;
    const char* name;
    bool masterOnly;
    const char* columns;
    const char* indexes;  ///< "*id|name,uid": the first one is clustered, * marks a unique one
};

/// The columns of SQL Server 7.0's tables in their order, less the page addresses, reserved bytes and
/// encrypted texts that only a storage engine could fill.
constexpr std::array<SystemTable, 11> systemTables{{
    {1, "sysobjects", false,
     "name sysname, id int not null, xtype char(2) not null, uid smallint not null, info smallint not null, "
     "status int not null, base_schema_ver int not null, replinfo int not null, parent_obj int not null, "
     "crdate datetime not null, ftcatid smallint not null, schema_ver int not null, "
     "stats_schema_ver int not null, type char(2) null, userstat smallint null, sysstat smallint null, "
     "indexdel smallint null, refdate datetime null, version int null, deltrig int null, instrig int null, "
     "updtrig int null, seltrig int null, category int null, cache smallint null",
     "*id|name,uid|xtype,name|type,name|parent_obj"},
    {2, "sysindexes", false,
     "id int not null, status int not null, first binary(6) null, indid smallint not null, root binary(6) "
     "null, "
     "minlen smallint not null, keycnt smallint not null, groupid smallint not null, dpages int null, "
     "reserved int null, used int null, rowcnt binary(8) not null, "
     "rowmodctr int not null, xmaxlen smallint not null, maxirow smallint not null, "
     "OrigFillFactor tinyint not null, FirstIAM binary(6) null, impid smallint not null, "
     "lockflags smallint not null, pgmodctr int not null, keys varbinary(1088) null, name sysname null, "
     "statblob image null, maxlen int null, rows int null",
     "*id,indid"},
    {3, "syscolumns", false,
     "name sysname null, id int not null, xtype tinyint not null, typestat tinyint not null, "
     "xusertype smallint not null, length smallint not null, xprec tinyint not null, "
     "xscale tinyint not null, colid smallint not null, xoffset smallint not null, bitpos tinyint not null, "
     "reserved tinyint not null, colstat smallint not null, cdefault int not null, domain int not null, "
     "number smallint not null, colorder smallint not null, autoval varbinary(255) null, "
     "offset smallint not null, usertype smallint not null, printfmt varchar(255) null, status tinyint not "
     "null, type tinyint not null, "
     "prec smallint null, scale int null, iscomputed int null, isoutparam int null, isnullable int null",
     "*id,colid|id,name"},
    {4, "systypes", false,
     "name sysname, xtype tinyint not null, status tinyint not null, xusertype smallint not null, "
     "length smallint not null, xprec tinyint not null, xscale tinyint not null, tdefault int not null, "
     "domain int not null, uid smallint not null, reserved smallint not null, usertype smallint not null, "
     "variable bit not null, allownulls bit not null, type tinyint not null, prec smallint null, "
     "scale tinyint null",
     "*name|*xusertype"},
    {6, "syscomments", false,
     "id int not null, number smallint not null, colid smallint not null, status smallint not null, "
     "texttype smallint null, language smallint null, encrypted bit not null, compressed bit not null, "
     "text nvarchar(4000) null",
     "*id,number,colid"},
    {10, "sysusers", false,
     "uid smallint not null, status smallint not null, name sysname, sid varbinary(85) null, "
     "roles varbinary(2048) null, createdate datetime not null, updatedate datetime not null, "
     "altuid smallint not null, password varbinary(256) null, "
     "gid smallint not null, environ varchar(255) null, hasdbaccess int null, islogin int null, "
     "isntname int null, isntgroup int null, isntuser int null, issqluser int null, isaliased int null, "
     "issqlrole int null, isapprole int null",
     "*uid|*name"},
    {14, "sysreferences", false,
     "constid int not null, fkeyid int not null, rkeyid int not null, rkeyindid smallint not null, "
     "keycnt smallint not null, forkeys varbinary(32) null, refkeys varbinary(32) null, fkeydbid smallint "
     "null, rkeydbid smallint null, "
     "fkey1 smallint not null, fkey2 smallint not null, fkey3 smallint not null, fkey4 smallint not null, "
     "fkey5 smallint not null, fkey6 smallint not null, fkey7 smallint not null, fkey8 smallint not null, "
     "fkey9 smallint not null, fkey10 smallint not null, fkey11 smallint not null, fkey12 smallint not null, "
     "fkey13 smallint not null, fkey14 smallint not null, fkey15 smallint not null, fkey16 smallint not "
     "null, "
     "rkey1 smallint not null, rkey2 smallint not null, rkey3 smallint not null, rkey4 smallint not null, "
     "rkey5 smallint not null, rkey6 smallint not null, rkey7 smallint not null, rkey8 smallint not null, "
     "rkey9 smallint not null, rkey10 smallint not null, rkey11 smallint not null, rkey12 smallint not null, "
     "rkey13 smallint not null, rkey14 smallint not null, rkey15 smallint not null, rkey16 smallint not null",
     "*constid|fkeyid|rkeyid"},
    {20, "sysindexkeys", false,
     "id int not null, indid smallint not null, colid smallint not null, keyno smallint not null",
     "*id,indid,keyno"},
    {21, "sysforeignkeys", false,
     "constid int not null, fkeyid int not null, rkeyid int not null, fkey smallint not null, "
     "rkey smallint not null, keyno smallint not null",
     "*constid,keyno|fkeyid|rkeyid"},
    {22, "sysmembers", false, "memberuid smallint not null, groupuid smallint not null",
     "*groupuid,memberuid"},
    {30, "sysdatabases", true,
     "name sysname, dbid smallint not null, sid varbinary(85) null, mode smallint not null, "
     "status int not null, status2 int not null, crdate datetime not null, reserved datetime not null, "
     "category int not null, cmptlevel tinyint not null, filename nvarchar(260) null, version smallint null",
     "*name|*dbid"},
}};

std::vector<Column> parseColumns(const SystemTable& source) {
    TokenCursor tokens(
        QLatin1String(source.name) + QLatin1String(" (") + QLatin1String(source.columns) + QLatin1Char(')'),
        1);
    std::vector<Column> columns;
    for (const ColumnDraft& draft : parseCreateTable(tokens).columns) {
        Column column;
        column.name = draft.name;
        column.type = draft.type;
        column.sysname = draft.sysname;
        column.nullable = draft.nullable.value_or(!draft.sysname);
        columns.push_back(std::move(column));
    }
    return columns;
}

std::vector<Index> parseIndexes(const Table& table, const QString& text) {
    std::vector<Index> indexes;
    for (QString columns : text.split(QLatin1Char('|'))) {
        Index index;
        index.clustered = indexes.empty();
        index.indid = static_cast<int>(indexes.size()) + 1;
        index.unique = columns.startsWith(QLatin1Char('*'));
        if (index.unique) columns.remove(0, 1);
        index.columns = indexColumns(table, columns.split(QLatin1Char(',')));
        index.name =
            index.clustered ? table.name : QLatin1String("nc") + QString::number(index.indid) + table.name;
        indexes.push_back(std::move(index));
    }
    return indexes;
}

std::vector<Table> makeSystemTables() {
    std::vector<Table> tables;
    for (const SystemTable& source : systemTables) {
        Table table;
        table.owner = QStringLiteral("dbo");
        table.name = QString::fromLatin1(source.name);
        table.id = source.id;
        table.system = true;
        table.storage = QLatin1Char('s') + QString::number(source.id);
        table.columns = parseColumns(source);
        table.indexes = parseIndexes(table, QString::fromLatin1(source.indexes));
        tables.push_back(std::move(table));
    }
    return tables;
}

bool belongsTo(const SystemTable& table, const QString& database) {
    return !table.masterOnly || database == QLatin1String("master");
}

}  // namespace

QStringList systemTableNames(const Database& database) {
    QStringList names;
    for (const SystemTable& table : systemTables) {
        if (belongsTo(table, database.name)) names.append(QString::fromLatin1(table.name));
    }
    return names;
}

void addSystemTables(Database& database) {
    static const std::vector<Table> made = makeSystemTables();
    for (size_t i = 0; i < made.size(); ++i) {
        if (belongsTo(systemTables[i], database.name)) database.addTable(std::make_unique<Table>(made[i]));
    }
}

}  // namespace engine
