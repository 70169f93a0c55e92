#pragma once

#include <QString>

#include <functional>
#include <vector>

namespace bench {

struct Result;

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

/// The most memory that this program has held since it began, in bytes; 0 where the system does not tell.
double peakOfProgram();

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

/// Fills the times of `result` with `runs` pairs of both in turn; the caller has run a pair uncounted. Work
/// that takes but a moment is repeated within a run, of which the mean counts.
void measurePairs(Result& result, int runs, const std::function<void()>& ours,
                  const std::function<void()>& yardstick);

}  // namespace bench
