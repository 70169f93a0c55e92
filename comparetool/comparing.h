#pragma once

#include "options.h"

namespace comparetool {

/// How the program ends.
enum ExitCode { Equal = 0, Different = 1, NotDone = 2 };

/// Compares, and writes the report; what went wrong goes to the standard error.
ExitCode compare(const Options& options);

/// Writes a message to the standard error.
void tell(const QString& text);

}  // namespace comparetool
