#pragma once

#include "result.h"

namespace bench {

/// How alive the windows are while two databases are compared: the longest gap between two paints of the
/// progress window, the longest time without serving events, and how long the comparison goes on after its
/// button was clicked, at random moments. Measures: tables a side.
Result runLivenessCase(const Request& request);

}  // namespace bench
