#pragma once

#include <QString>

#include <optional>

namespace engine {

enum class DatePart {
    Year,
    Quarter,
    Month,
    DayOfYear,
    Day,
    Week,
    Weekday,
    Hour,
    Minute,
    Second,
    Millisecond
};

/// The part that a name or an abbreviation means, "month", "mm", "m".
std::optional<DatePart> datePartOf(const QString& name);

/// Value of a part; weeks begin on Sunday, week 1 holds January 1.
int datePartValue(DatePart part, qint64 ticks);

/// `ticks` moved by `number` parts; a day that the month does not have becomes its last one. Throws SqlError
/// 517.
qint64 dateAdd(DatePart part, qint64 number, qint64 ticks);

/// Number of boundaries of the part between two moments. Throws SqlError 535.
qint64 dateDiff(DatePart part, qint64 from, qint64 to);

}  // namespace engine
