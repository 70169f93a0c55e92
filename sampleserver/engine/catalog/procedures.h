#pragma once

#include "engine/catalog/world.h"
#include "engine/values/clientsession.h"

#include <QString>

namespace engine {

/// Runs a stored procedure (whose name has no database and owner) in `database` as `user` and tells the sink
/// its columns, rows and end. Returns false when there is no procedure of that name (the caller reports error
/// 2812). Throws SqlError for bad arguments.
bool runProcedure(const World& world, const Database& database, const QString& user,
                  const ProcedureRequest& call, ResultSink& sink);

}  // namespace engine
