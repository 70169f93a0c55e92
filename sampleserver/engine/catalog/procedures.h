#pragma once

#include "engine/catalog/world.h"
#include "engine/values/resultsink.h"

#include <QString>

#include <utility>
#include <vector>

namespace engine {

/// A call of a stored procedure: "sp_columns 'Orders'", "EXEC sp_columns @table_name = 'Orders'".
struct ProcedureCall {
    QString name;  ///< without database and owner
    std::vector<std::pair<QString, Value>>
        arguments;  ///< name with its @, empty when positional; texts or numbers
};

/// Runs a stored procedure in `database` as `user` and tells the sink its columns, rows and end.
/// Returns false when there is no procedure of that name (the caller reports error 2812).
/// Throws SqlError for bad arguments.
bool runProcedure(const World& world, const Database& database, const QString& user,
                  const ProcedureCall& call, ResultSink& sink);

}  // namespace engine
