#include "engine/catalog/catalogprocedures.h"
#include "engine/catalog/systemtypes.h"
#include "engine/values/textorder.h"
#include "engine/values/typeinfo.h"

namespace engine {

namespace {

Value optionalNumber(const std::optional<int>& number) {
    return number ? Value(*number) : Value();
}

/// "int identity", "numeric() identity"
QString shownTypeName(const Column& column) {
    if (column.sysname) return QStringLiteral("sysname");
    if (!column.userType.isEmpty()) return column.userType;
    const QString name = typeName(column.type.id);
    if (!column.identity) return name;
    return name + (isDecimal(column.type.id) ? QLatin1String("() identity") : QLatin1String(" identity"));
}

const std::vector<ResultColumn>& resultColumns() {
    static const std::vector<ResultColumn> columns{
        {QStringLiteral("TABLE_QUALIFIER"), sysnameType, true},
        {QStringLiteral("TABLE_OWNER"), sysnameType, true},
        {QStringLiteral("TABLE_NAME"), sysnameType, false},
        {QStringLiteral("COLUMN_NAME"), sysnameType, false},
        {QStringLiteral("DATA_TYPE"), smallintType, false},
        {QStringLiteral("TYPE_NAME"), sysnameType, false},
        {QStringLiteral("PRECISION"), intType, true},
        {QStringLiteral("LENGTH"), intType, true},
        {QStringLiteral("SCALE"), smallintType, true},
        {QStringLiteral("RADIX"), smallintType, true},
        {QStringLiteral("NULLABLE"), smallintType, false},
        {QStringLiteral("REMARKS"), varcharType(254), true},
        {QStringLiteral("COLUMN_DEF"), {.id = TypeId::NVarChar, .length = 4000}, true},
        {QStringLiteral("SQL_DATA_TYPE"), smallintType, false},
        {QStringLiteral("SQL_DATETIME_SUB"), smallintType, true},
        {QStringLiteral("CHAR_OCTET_LENGTH"), intType, true},
        {QStringLiteral("ORDINAL_POSITION"), intType, false},
        {QStringLiteral("IS_NULLABLE"), varcharType(254), true},
        {QStringLiteral("SS_DATA_TYPE"), {.id = TypeId::TinyInt}, false},
    };
    return columns;
}

std::vector<Value> columnRow(const Database& database, const Table& table, size_t position, int odbcVersion) {
    const Column& column = table.columns[position];
    const OdbcType type = odbcType(column.type, column.sysname, odbcVersion);
    const SystemType& system = systemType(column.type.id);
    return {database.name,
            table.owner,
            table.name,
            column.name,
            type.dataType,
            shownTypeName(column),
            type.precision,
            type.length,
            optionalNumber(type.scale),
            optionalNumber(type.radix),
            column.nullable ? 1 : 0,
            Value(),
            column.defaultText.isEmpty() ? Value() : Value(column.defaultText),
            type.sqlDataType,
            optionalNumber(type.dateTimeSub),
            optionalNumber(type.octetLength),
            static_cast<qint64>(position) + 1,
            column.nullable ? QStringLiteral("YES") : QStringLiteral("NO"),
            column.nullable ? system.tdsNullableType : system.tdsType};
}

/// As the server's own procedure finds them: a name that could be no pattern and that names a table means
/// that one table; anything else is a pattern over all owners.
std::vector<const Table*> tablesMeant(const ProcedureContext& context, const QString& owner,
                                      const QString& name) {
    const bool pattern = name.contains(QLatin1Char('%')) || name.contains(QLatin1Char('_')) ||
                         owner.contains(QLatin1Char('%')) || owner.contains(QLatin1Char('_'));
    if (!pattern) {
        const Table* table = context.database.findTable(owner, name, context.user);
        if (table != nullptr) return {table};
    }
    const QString any = QStringLiteral("%");
    return tablesLike(context.database, owner.isEmpty() ? any : owner, name.isEmpty() ? any : name);
}

}  // namespace

qint64 spColumns(const ProcedureContext& context, const ProcedureRequest& call, ResultSink& sink) {
    const ProcedureArguments arguments(
        call, {"@table_name", "@table_owner", "@table_qualifier", "@column_name", "@ODBCVer"});
    checkQualifier(context.database, arguments.text("@table_qualifier"));
    const std::vector<const Table*> tables = tablesMeant(
        context, arguments.text("@table_owner").value_or(QString()), arguments.required("@table_name"));
    const QString columnPattern = arguments.text("@column_name").value_or(QStringLiteral("%"));
    const int odbcVersion = arguments.text("@ODBCVer") == QStringLiteral("3") ? 3 : 2;
    sink.columns(resultColumns());
    qint64 rows = 0;
    for (const Table* table : tables) {
        for (size_t i = 0; i < table->columns.size(); ++i) {
            if (!matchesPattern(table->columns[i].name, columnPattern, {})) continue;
            if (sink.cancelled()) return rows;
            sink.row(columnRow(context.database, *table, i, odbcVersion));
            ++rows;
        }
    }
    return rows;
}

}  // namespace engine
