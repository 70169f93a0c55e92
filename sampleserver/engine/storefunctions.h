#pragma once

struct sqlite3;

namespace engine {

/// Adds to a store connection the functions that translated statements call.
void registerStoreFunctions(sqlite3* store);

}  // namespace engine
