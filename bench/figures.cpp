#include "figures.h"

#include <QFile>
#include <QTextStream>

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

PeakOfMemory::PeakOfMemory() : m_start(statusBytes("VmRSS")) {
    // Sets the peak back (proc(5)).
    QFile file(QStringLiteral("/proc/self/clear_refs"));
    if (file.open(QIODevice::WriteOnly)) file.write("5");
}

double PeakOfMemory::bytes() const {
    return statusBytes("VmHWM") - m_start;
}

PairedRuns measurePairs(int runs, const std::function<void()>& ours, const std::function<void()>& yardstick) {
    ours();
    yardstick();
    PairedRuns pairs;
    for (int run = 0; run < runs; ++run) {
        const std::clock_t start = std::clock();
        pairs.ours.push_back(secondsOf(ours));
        const std::clock_t middle = std::clock();
        pairs.yardstick.push_back(secondsOf(yardstick));
        const std::clock_t end = std::clock();
        pairs.processorRatios.push_back(static_cast<double>(middle - start) /
                                        static_cast<double>(end - middle));
    }
    return pairs;
}

void printRatio(const QString& name, const PairedRuns& pairs) {
    std::vector<double> ratios;
    for (size_t i = 0; i < pairs.ours.size(); ++i)
        ratios.push_back(pairs.ours[i] / pairs.yardstick[i]);
    const Spread ratio = spreadOf(ratios);
    const Spread ours = spreadOf(pairs.ours);
    const Spread bare = spreadOf(pairs.yardstick);
    QTextStream(stdout) << name << ": ratio " << QString::number(ratio.median, 'f', 3) << " ("
                        << QString::number(ratio.minimum, 'f', 3) << " to "
                        << QString::number(ratio.maximum, 'f', 3) << "), ours "
                        << QString::number(ours.median * 1000, 'f', 1) << " ms, bare loop "
                        << QString::number(bare.median * 1000, 'f', 1) << " ms, " << ratios.size()
                        << " pairs; ratio of processor times "
                        << QString::number(spreadOf(pairs.processorRatios).median, 'f', 3) << '\n';
}

}  // namespace bench
