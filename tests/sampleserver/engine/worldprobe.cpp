#include "sampleserver/engine/worldprobe.h"

#include "engine/catalog/procedures.h"
#include "engine/session/scriptreader.h"
#include "engine/values/convert.h"
#include "engine/values/sqlerror.h"

#include <sqlite3.h>

using namespace engine;

namespace {

QString quoted(QString name) {
    return QLatin1Char('"') + name.replace(QLatin1Char('"'), QLatin1String("\"\"")) + QLatin1Char('"');
}

void createView(const Database& database, const Table& table) {
    QStringList columns;
    for (size_t i = 0; i < table.columns.size(); ++i) {
        columns.append(QStringLiteral("c%1 AS %2").arg(i).arg(quoted(table.columns[i].name)));
    }
    const QString sql = QStringLiteral("CREATE TEMP VIEW IF NOT EXISTS %1 AS SELECT %2 FROM \"%3\"")
                            .arg(quoted(table.name), columns.join(QLatin1String(", ")), table.storage);
    sqlite3_exec(database.keeper, sql.toUtf8().constData(), nullptr, nullptr, nullptr);
}

/// Keeps the rows of a procedure as texts.
class Recorder : public ResultSink {
  public:
    QStringList lines;

    void columns(const std::vector<ResultColumn>& columns) override {
        m_columns = columns;
        QStringList names;
        for (const ResultColumn& column : columns)
            names.append(column.name);
        lines.append(names.join(QLatin1Char('|')));
    }
    void row(std::span<const Value> values) override {
        QStringList texts;
        for (size_t i = 0; i < values.size(); ++i) {
            texts.append(values[i].index() == 0 ? QStringLiteral("~")
                                                : valueText(values[i], m_columns[i].type));
        }
        lines.append(texts.join(QLatin1Char('|')));
    }
    void statementDone(qint64 rows, bool) override {
        if (rows != lines.size() - 1) lines.append(QStringLiteral("wrong count %1").arg(rows));
    }
    void message(const SqlMessage&) override {}
    void databaseChanged(const QString&, const QString&) override {}
    bool cancelled() override { return false; }

  private:
    std::vector<ResultColumn> m_columns;
};

}  // namespace

WorldProbe::WorldProbe(const QString& script) : m_world(std::make_unique<World>()) {
    m_world->addDatabase(QStringLiteral("Probe"));
    runScript(*m_world, QStringLiteral("use Probe\nGO\n") + script);
    m_world->seal();
}

const Database& WorldProbe::database() const {
    return *std::as_const(*m_world).findDatabase(QStringLiteral("Probe"));
}

QStringList WorldProbe::rows(const QString& query, const QString& database) {
    const Database& found = *m_world->findDatabase(database);
    if (!m_seen.contains(database)) {
        m_seen.append(database);
        for (const auto& table : found.tables)
            createView(found, *table);
    }
    QStringList lines;
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(found.keeper, query.toUtf8().constData(), -1, &statement, nullptr) != SQLITE_OK) {
        return {QString::fromUtf8(sqlite3_errmsg(found.keeper))};
    }
    while (sqlite3_step(statement) == SQLITE_ROW) {
        QStringList texts;
        for (int i = 0; i < sqlite3_column_count(statement); ++i) {
            const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, i));
            texts.append(text == nullptr ? QStringLiteral("~") : QString::fromUtf8(text).trimmed());
        }
        lines.append(texts.join(QLatin1Char('|')));
    }
    sqlite3_finalize(statement);
    return lines;
}

QStringList WorldProbe::call(const QString& procedure, const QStringList& arguments, const QString& user) {
    ProcedureRequest call{.name = procedure, .parameters = {}};
    for (const QString& argument : arguments) {
        // "@name=value" or a value alone
        const bool named = argument.startsWith(QLatin1Char('@'));
        const qsizetype equals = named ? argument.indexOf(QLatin1Char('=')) : -1;
        call.parameters.push_back({.name = named ? argument.left(equals) : QString(),
                                   .type = {.id = TypeId::NVarChar, .length = 4000},
                                   .value = argument.mid(equals + 1)});
    }
    Recorder recorder;
    try {
        if (!runProcedure(*m_world, database(), user, call, recorder)) return {QStringLiteral("2812")};
    } catch (const SqlError& error) {
        return {QString::number(error.message().number)};
    }
    return recorder.lines;
}

QString WorldProbe::failure(const QString& script) {
    try {
        WorldProbe probe(script);
    } catch (const SqlError& error) {
        // The probe's own two lines come before the script's.
        return QStringLiteral("%1 at %2").arg(error.message().number).arg(error.message().line - 2);
    }
    return {};
}
