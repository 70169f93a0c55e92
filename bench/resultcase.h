#pragma once

#include "result.h"

namespace bench {

/// What a result window does about so many rows a side, a tenth of them different; no wire.
Result runResultCase(const Request& request);

}  // namespace bench
