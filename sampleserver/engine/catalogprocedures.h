#pragma once

#include "engine/procedures.h"
#include "engine/world.h"

namespace engine {

/// What a stored procedure works on.
struct ProcedureContext {
    const World& world;
    const Database& database;
    QString user;
};

// One function for each stored procedure: tells the sink its columns and rows and returns the number of rows.
qint64 spColumns(const ProcedureContext& context, const ProcedureCall& call, ResultSink& sink);
qint64 spTables(const ProcedureContext& context, const ProcedureCall& call, ResultSink& sink);
qint64 spHelpUser(const ProcedureContext& context, const ProcedureCall& call, ResultSink& sink);

/// Types of result columns.
constexpr SqlType sysnameType{.id = TypeId::NVarChar, .length = 128};
constexpr SqlType smallintType{.id = TypeId::SmallInt};
constexpr SqlType intType{.id = TypeId::Int};
constexpr SqlType varcharType(int length) {
    return {.id = TypeId::VarChar, .length = length};
}

/// The tables whose owner and name match the patterns of LIKE, sorted by owner and name.
std::vector<const Table*> tablesLike(const Database& database, const QString& ownerPattern,
                                     const QString& namePattern);

/// Throws SqlError 15250 unless `qualifier`, where given, names the database.
void checkQualifier(const Database& database, const std::optional<QString>& qualifier);

}  // namespace engine
