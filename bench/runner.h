#pragma once

#include "cases.h"

#include <optional>

namespace bench {

/// Measures in a process of its own, so that the memory of one case is not that of the one before; nothing
/// when the process failed, which it has told.
std::optional<Result> measureApart(const Request& request);

/// Whether such a process is to show windows on a screen: what only makes lists is measured without.
bool measuresOnScreen(const QString& argument);

/// What such a process does: measures what its argument asks for and prints the result on one line.
int runMeasuringProcess(const QString& argument);

}  // namespace bench
