#include "engine/storefunctions.h"

namespace engine {

void registerStoreFunctions(sqlite3*) {}

}  // namespace engine
