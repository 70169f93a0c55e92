#include "figures.h"

#include "result.h"

#include <QFile>

#include <algorithm>
#include <chrono>
#include <ctime>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace bench {

namespace {

/// A figure of proc(5)'s status file, in bytes.
double statusBytes(const QByteArray& name) {
    QFile file(QStringLiteral("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly)) return 0;
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.startsWith(name + ':'))
            return line.mid(name.size() + 1).simplified().split(' ')[0].toDouble() * 1024;
    }
    return 0;
}

}  // namespace

Spread spreadOf(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const size_t middle = values.size() / 2;
    const double median = values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
    return {median, values.front(), values.back()};
}

double secondsOf(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

size_t heapBytes() {
#if defined(__GLIBC__)
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
#else
    return 0;
#endif
}

double peakOfProgram() {
    return statusBytes("VmHWM");
}

PeakOfMemory::PeakOfMemory() : m_start(statusBytes("VmRSS")) {
    // Sets the peak back (proc(5)).
    QFile file(QStringLiteral("/proc/self/clear_refs"));
    if (file.open(QIODevice::WriteOnly)) file.write("5");
}

double PeakOfMemory::bytes() const {
    return statusBytes("VmHWM") - m_start;
}

void measurePairs(Result& result, int runs, const std::function<void()>& ours,
                  const std::function<void()>& yardstick) {
    constexpr double enoughSeconds = 0.1;
    constexpr double mostRepeats = 100;
    const double first = secondsOf(ours);
    result.repeats = static_cast<int>(std::clamp(enoughSeconds / first, 1.0, mostRepeats));
    const auto meanSeconds = [&](const std::function<void()>& work) {
        return secondsOf([&] {
                   for (int i = 0; i < result.repeats; ++i)
                       work();
               }) /
               result.repeats;
    };
    for (int run = 0; run < runs; ++run) {
        const std::clock_t start = std::clock();
        result.ours.push_back(meanSeconds(ours));
        const std::clock_t middle = std::clock();
        result.yardstickSeconds.push_back(meanSeconds(yardstick));
        const std::clock_t end = std::clock();
        result.processorRatios.push_back(static_cast<double>(middle - start) /
                                         static_cast<double>(end - middle));
    }
}

}  // namespace bench
