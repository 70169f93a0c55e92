#pragma once

#include <memory>

namespace tw {

class ComparisonRun;

/// Asks for a file and writes the result of a comparison that is over to it, in the format of its ending. A
/// failure is reported.
void saveResult(const std::shared_ptr<const ComparisonRun>& run, bool differencesOnly);

}  // namespace tw
