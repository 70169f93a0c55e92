#pragma once

#include "result.h"

namespace bench {

/// How the time of a case grows with its scale: time ~ scale^exponent, 1 for linear. Fitted by least squares
/// to the logarithms of every run's time and scale.
struct Growth {
    QString name;
    std::vector<double> measures{};  ///< the scales, ascending
    /// Over all scales. Logging in and other fixed costs weigh on the small ones, so that this is below what
    /// the large ones show.
    double ours = 0;
    double yardstick = 0;
    /// Over the two largest.
    double oursAtLarge = 0;
    double yardstickAtLarge = 0;
};

/// Of the cases that ran on at least two scales without a delay.
std::vector<Growth> growthOf(const std::vector<Result>& results);

}  // namespace bench
