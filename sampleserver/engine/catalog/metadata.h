#pragma once

#include "engine/catalog/sessionfacts.h"

struct sqlite3;

namespace engine {

/// Adds OBJECT_ID, INDEX_COL and their like to a session's store connection. `facts` must outlive it.
void registerMetadataFunctions(sqlite3* store, const SessionFacts& facts);

/// Splits "db.[owner].t" into its parts, brackets and double quotes removed.
std::vector<QString> nameParts(const QString& name);

}  // namespace engine
