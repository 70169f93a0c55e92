#include "engine/procedures.h"

#include "engine/catalogprocedures.h"
#include "engine/textorder.h"

#include <algorithm>
#include <array>

namespace engine {

namespace {

struct Procedure {
    const char* name;
    qint64 (*run)(const ProcedureContext&, const ProcedureCall&, ResultSink&);
};

constexpr std::array<Procedure, 3> procedures{{
    {"sp_columns", spColumns},
    {"sp_tables", spTables},
    {"sp_helpuser", spHelpUser},
}};

}  // namespace

bool runProcedure(const World& world, const Database& database, const QString& user,
                  const ProcedureCall& call, ResultSink& sink) {
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

}  // namespace engine
