#include "engine/catalog/catalogprocedures.h"

namespace engine {

namespace {

const std::vector<ResultColumn>& resultColumns() {
    static const std::vector<ResultColumn> columns{
        {QStringLiteral("TABLE_QUALIFIER"), sysnameType, true},
        {QStringLiteral("TABLE_OWNER"), sysnameType, true},
        {QStringLiteral("TABLE_NAME"), sysnameType, true},
        {QStringLiteral("TABLE_TYPE"), varcharType(32), true},
        {QStringLiteral("REMARKS"), varcharType(254), true},
    };
    return columns;
}

/// What a qualifier of "%" and nothing else asks for.
qint64 listDatabases(const World& world, ResultSink& sink) {
    QStringList names;
    for (const auto& database : world.databases())
        names.append(database->name);
    names.sort(Qt::CaseInsensitive);
    sink.columns(resultColumns());
    for (const QString& name : names)
        sink.row(std::vector<Value>{name, Value(), Value(), Value(), Value()});
    return names.size();
}

}  // namespace

qint64 spTables(const ProcedureContext& context, const ProcedureRequest& call, ResultSink& sink) {
    const ProcedureArguments arguments(call,
                                       {"@table_name", "@table_owner", "@table_qualifier", "@table_type"});
    const QString any = QStringLiteral("%");
    const auto qualifier = arguments.text("@table_qualifier");
    const bool nothingElse =
        arguments.text("@table_owner") == QString() && arguments.text("@table_name") == QString();
    if (qualifier == any && nothingElse) return listDatabases(context.world, sink);
    if (qualifier == QString()) {  // tables without a database, of which there are none
        sink.columns(resultColumns());
        return 0;
    }
    checkQualifier(context.database, qualifier);
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
