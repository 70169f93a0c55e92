#include "growth.h"

#include <algorithm>
#include <cmath>

namespace bench {

namespace {

using Runs = std::vector<double> Result::*;

double exponentOf(const std::vector<Result>& scales, Runs runs) {
    double count = 0;
    double sumX = 0;
    double sumY = 0;
    double sumXX = 0;
    double sumXY = 0;
    for (const Result& result : scales) {
        const double x = std::log(result.measure);
        for (const double seconds : result.*runs) {
            const double y = std::log(seconds);
            count += 1;
            sumX += x;
            sumY += y;
            sumXX += x * x;
            sumXY += x * y;
        }
    }
    return (count * sumXY - sumX * sumY) / (count * sumXX - sumX * sumX);
}

Growth growthOfCase(std::vector<Result> scales) {
    std::ranges::sort(scales, {}, &Result::measure);
    Growth growth{.name = scales.front().name};
    for (const Result& result : scales)
        growth.measures.push_back(result.measure);
    growth.ours = exponentOf(scales, &Result::ours);
    growth.yardstick = exponentOf(scales, &Result::yardstickSeconds);
    const std::vector<Result> large(scales.end() - 2, scales.end());
    growth.oursAtLarge = exponentOf(large, &Result::ours);
    growth.yardstickAtLarge = exponentOf(large, &Result::yardstickSeconds);
    return growth;
}

}  // namespace

std::vector<Growth> growthOf(const std::vector<Result>& results) {
    std::vector<Growth> growths;
    QStringList done;
    for (const Result& first : results) {
        if (done.contains(first.name)) continue;
        done.append(first.name);
        std::vector<Result> scales;
        std::ranges::copy_if(results, std::back_inserter(scales), [&](const Result& result) {
            return result.name == first.name && result.delay == 0 && result.measure > 0 &&
                   !result.ours.empty();
        });
        if (scales.size() > 1) growths.push_back(growthOfCase(scales));
    }
    return growths;
}

}  // namespace bench
