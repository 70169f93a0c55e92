#pragma once

#include <QJsonObject>
#include <QString>

#include <optional>
#include <vector>

namespace bench {

/// What a process is asked to measure.
struct Request {
    QString name;
    std::vector<qint64> measures{};  ///< the scale; what each number means is the case's own
    int delay = 0;                   ///< milliseconds that a relay adds to every round trip
    int runs = 5;                    ///< pairs of runs
};

/// A figure that is no ratio.
struct Figure {
    QString name;
    double number = 0;
    QString unit;
};

/// Turns of the clients on the wire in one run.
struct RoundTrips {
    qint64 ours = 0;
    qint64 yardstick = 0;
    qint64 least = 0;  ///< with the same statements: a login is two round trips, a statement one
};

/// What was held of memory after and while the case ran for the first time, in bytes.
struct Memory {
    double peak = 0;   ///< of the resident memory, above what was held before
    double kept = 0;   ///< on the heap afterwards, above what was held before
    double texts = 0;  ///< of the texts that are held, as UTF-16; 0 where nobody counts them
};

/// What a case measured at one scale. Times and ratios are of pairs of runs, in their order; a case that has
/// none gives figures only.
struct Result {
    QString name;
    QString scale;                           ///< in words
    double measure = 0;                      ///< the number that grows from scale to scale; 0 for none
    int delay = 0;                           ///< milliseconds that each round trip took longer
    QString yardstick;                       ///< in words
    bool complete = false;                   ///< whether the work was really done
    int repeats = 1;                         ///< runs of which one time is the mean
    std::vector<double> ours{};              ///< seconds
    std::vector<double> yardstickSeconds{};  ///< seconds
    /// Ratios of the processor time that this program spent, driver included: a busy machine, or a server
    /// that keeps both waiting, does not show in them. Empty where they mean nothing.
    std::vector<double> processorRatios{};
    std::optional<Memory> memory{};
    std::optional<RoundTrips> roundTrips{};
    std::vector<Figure> figures{};

    /// Ours over the yardstick, pair by pair.
    std::vector<double> ratios() const;
};

QJsonObject toJson(const Result& result);
Result resultFromJson(const QJsonObject& object);

}  // namespace bench
