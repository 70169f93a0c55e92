#pragma once

#include "engine/catalog/world.h"
#include "options.h"

#include <memory>
#include <stdexcept>

namespace sampleserver {

/// A script that cannot be read or run; what() names file, line and error number.
class ScriptFailure : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Makes the databases that the options ask for. Throws ScriptFailure.
std::shared_ptr<const engine::World> makeWorld(const Options& options);

}  // namespace sampleserver
