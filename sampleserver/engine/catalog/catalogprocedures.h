#pragma once

#include "engine/catalog/procedures.h"

#include <optional>

namespace engine {

/// What a stored procedure works on.
struct ProcedureContext {
    const World& world;
    const Database& database;
    QString user;
};

// One function for each stored procedure: tells the sink its columns and rows and returns the number of rows.
qint64 spColumns(const ProcedureContext& context, const ProcedureRequest& call, ResultSink& sink);
qint64 spTables(const ProcedureContext& context, const ProcedureRequest& call, ResultSink& sink);
qint64 spHelpUser(const ProcedureContext& context, const ProcedureRequest& call, ResultSink& sink);

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

/// The arguments of a call by the procedure's parameters.
class ProcedureArguments {
  public:
    /// `parameters`: names with their @, in order. Throws SqlError 8145 (no such parameter),
    /// 8144 (too many), 8143 (given twice).
    ProcedureArguments(const ProcedureRequest& call, const std::vector<const char*>& parameters);

    /// The text of an argument; nothing when it was left out or null.
    std::optional<QString> text(const char* parameter) const;
    /// The same, but throws SqlError 201 when it was left out.
    QString required(const char* parameter) const;

  private:
    const ProcedureRequest& m_call;
    std::vector<std::pair<QString, Value>> m_values;
};

}  // namespace engine
