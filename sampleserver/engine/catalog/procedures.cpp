#include "engine/catalog/procedures.h"

#include "engine/catalog/catalogprocedures.h"
#include "engine/values/textorder.h"

#include <QStringList>

#include <algorithm>
#include <array>

namespace engine {

namespace {

struct Procedure {
    const char* name;
    qint64 (*run)(const ProcedureContext&, const ProcedureRequest&, ResultSink&);
};

constexpr std::array<Procedure, 3> procedures{{
    {"sp_columns", spColumns},
    {"sp_tables", spTables},
    {"sp_helpuser", spHelpUser},
}};

bool sameName(const QString& a, const QString& b) {
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

}  // namespace

bool runProcedure(const World& world, const Database& database, const QString& user,
                  const ProcedureRequest& call, ResultSink& sink) {
    for (const Procedure& procedure : procedures) {
        if (call.name.compare(QLatin1String(procedure.name), Qt::CaseInsensitive) != 0) continue;
        const qint64 rows = procedure.run({.world = world, .database = database, .user = user}, call, sink);
        sink.statementDone(rows, true);
        return true;
    }
    return false;
}

std::vector<const Table*> tablesLike(const Database& database, const QString& ownerPattern,
                                     const QString& namePattern) {
    std::vector<const Table*> tables;
    for (const auto& table : database.tables) {
        if (matchesPattern(table->owner, ownerPattern, {}) && matchesPattern(table->name, namePattern, {})) {
            tables.push_back(table.get());
        }
    }
    std::sort(tables.begin(), tables.end(), [](const Table* a, const Table* b) {
        const int owner = a->owner.compare(b->owner, Qt::CaseInsensitive);
        return owner != 0 ? owner < 0 : a->name.compare(b->name, Qt::CaseInsensitive) < 0;
    });
    return tables;
}

void checkQualifier(const Database& database, const std::optional<QString>& qualifier) {
    if (!qualifier || nameKey(*qualifier) == nameKey(database.name)) return;
    throw SqlError(
        15250, 16,
        QStringLiteral("The database name component of the object qualifier must be the name of the "
                       "current database."));
}

ProcedureArguments::ProcedureArguments(const ProcedureRequest& call,
                                       const std::vector<const char*>& parameters)
    : m_call(call) {
    QStringList names;
    for (const char* parameter : parameters)
        names.append(QLatin1String(parameter));
    qsizetype position = 0;
    for (const auto& [name, type, value, output] : call.parameters) {
        if (name.isEmpty() && position >= names.size()) {
            throw SqlError(
                8144, 16,
                QStringLiteral("Procedure or function %1 has too many arguments specified.").arg(call.name));
        }
        const QString parameter = name.isEmpty() ? names[position++] : name;
        if (!names.contains(parameter, Qt::CaseInsensitive)) {
            throw SqlError(
                8145, 16,
                QStringLiteral("%1 is not a parameter for procedure %2.").arg(parameter, call.name));
        }
        const bool twice = std::any_of(m_values.begin(), m_values.end(),
                                       [&](const auto& known) { return sameName(known.first, parameter); });
        if (twice) {
            throw SqlError(8143, 16,
                           QStringLiteral("Parameter '%1' was supplied multiple times.").arg(parameter));
        }
        m_values.emplace_back(parameter, value);
    }
}

std::optional<QString> ProcedureArguments::text(const char* parameter) const {
    for (const auto& [name, value] : m_values) {
        if (!sameName(name, QLatin1String(parameter))) continue;
        if (const auto* text = std::get_if<QString>(&value)) return *text;
        if (const auto* number = std::get_if<qint64>(&value)) return QString::number(*number);
    }
    return std::nullopt;
}

QString ProcedureArguments::required(const char* parameter) const {
    const std::optional<QString> value = text(parameter);
    if (value) return *value;
    throw SqlError(201, 16,
                   QStringLiteral("Procedure '%1' expects parameter '%2', which was not supplied.")
                       .arg(m_call.name, QLatin1String(parameter)));
}

}  // namespace engine
