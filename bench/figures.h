#pragma once

#include <QString>

#include <functional>
#include <vector>

namespace bench {

/// Median, minimum and maximum of one figure over the runs.
struct Spread {
    double median = 0;
    double minimum = 0;
    double maximum = 0;
};

/// Of at least one value.
Spread spreadOf(std::vector<double> values);

/// Seconds that `work` takes.
double secondsOf(const std::function<void()>& work);

/// Bytes in use on the heap, as the allocator counts them; 0 where it does not tell.
size_t heapBytes();

/// The peak of the memory that the program holds, counted from the making of this object. 0 where the system
/// does not tell.
class PeakOfMemory {
  public:
    PeakOfMemory();
    /// Bytes above what was held at the start.
    double bytes() const;

  private:
    double m_start;
};

/// What was measured of one case: ours and the yardstick in turn, the ratio pair by pair.
struct PairedRuns {
    std::vector<double> ours;
    std::vector<double> yardstick;
    /// Ratios of the processor time that this program spent, driver included: a busy machine, or a server
    /// that keeps both waiting, does not show in them.
    std::vector<double> processorRatios;
};

/// Runs both `runs` times in turn after one uncounted round.
PairedRuns measurePairs(int runs, const std::function<void()>& ours, const std::function<void()>& yardstick);

/// Prints a case's line: the ratio, and both times.
void printRatio(const QString& name, const PairedRuns& pairs);

}  // namespace bench
