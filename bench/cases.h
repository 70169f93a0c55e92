#pragma once

#include "result.h"

#include <vector>

namespace bench {

/// One size of a case.
struct Scale {
    std::vector<qint64> measures{};  ///< the first is what grows
    int delay = 0;                   ///< milliseconds that a relay adds to every round trip
};

/// Something that is measured, at several scales.
struct Case {
    QString name;
    QString yardstick;  ///< in words; empty for a case that gives figures only
    Result (*run)(const Request& request);
    std::vector<Scale> scales;
    std::vector<Scale> quickScales;  ///< small ones, to see that it works
    bool onScreen = false;           ///< whether its windows are to be seen on a screen
};

/// All there are, in the order in which they are run and told of.
std::vector<Case> allCases();

/// Throws std::out_of_range when there is none of the name.
Case caseNamed(const QString& name);

/// Measures what is asked for. Throws std::out_of_range when there is no such case.
Result measure(const Request& request);

}  // namespace bench
