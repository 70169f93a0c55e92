#include "engine/catalog/catalogprocedures.h"

namespace engine {

namespace {

const std::vector<ResultColumn>& resultColumns() {
    static const std::vector<ResultColumn> columns{
        {QStringLiteral("TABLE_QUALIFIER"), sysnameType, true},
        {QStringLiteral("TABLE_OWNER"), sysnameType, true},
        {QStringLiteral("TABLE_NAME"), sysnameType, false},
        {QStringLiteral("TABLE_TYPE"), varcharType(32), true},
        {QStringLiteral("REMARKS"), varcharType(254), true},
    };
    return columns;
}

}  // namespace

qint64 spTables(const ProcedureContext& context, const ProcedureCall& call, ResultSink& sink) {
    const ProcedureArguments arguments(call,
                                       {"@table_name", "@table_owner", "@table_qualifier", "@table_type"});
    checkQualifier(context.database, arguments.text("@table_qualifier"));
    const QString any = QStringLiteral("%");
    const std::vector<const Table*> tables =
        tablesLike(context.database, arguments.text("@table_owner").value_or(any),
                   arguments.text("@table_name").value_or(any));
    // The list of types is written with quotes: "'TABLE','SYSTEM TABLE'".
    const QString types = arguments.text("@table_type").value_or(QString()).toUpper();
    sink.columns(resultColumns());
    qint64 rows = 0;
    for (const bool system : {true, false}) {
        const QString type = system ? QStringLiteral("SYSTEM TABLE") : QStringLiteral("TABLE");
        if (!types.isEmpty() && !types.contains(QLatin1Char('\'') + type + QLatin1Char('\''))) continue;
        for (const Table* table : tables) {
            if (table->system != system) continue;
            if (sink.cancelled()) return rows;
            sink.row(std::vector<Value>{context.database.name, table->owner, table->name, type, Value()});
            ++rows;
        }
    }
    return rows;
}

}  // namespace engine
