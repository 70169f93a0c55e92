#pragma once

#include "engine/values/sqltype.h"

struct sqlite3;

namespace engine {

/// A type as one number, the way translated statements hand types to functions.
qint64 packType(const SqlType& type);
SqlType unpackType(qint64 packed);

/// Adds to a store connection the functions that translated statements call.
void registerStoreFunctions(sqlite3* store);

/// The rooms of store functions.
void registerTextFunctions(sqlite3* store);
void registerNumberFunctions(sqlite3* store);
void registerDateFunctions(sqlite3* store);
void registerAggregates(sqlite3* store);

}  // namespace engine
