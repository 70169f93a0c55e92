#include "engine/values/dateparts.h"

#include "engine/values/datetime.h"
#include "engine/values/sqlerror.h"

#include <QHash>

#include <algorithm>
#include <limits>

namespace engine {

namespace {

QHash<QString, DatePart> partNames() {
    const std::pair<DatePart, const char*> words[] = {
        {DatePart::Year, "year yy yyyy"},
        {DatePart::Quarter, "quarter qq q"},
        {DatePart::Month, "month mm m"},
        {DatePart::DayOfYear, "dayofyear dy y"},
        {DatePart::Day, "day dd d"},
        {DatePart::Week, "week wk ww"},
        {DatePart::Weekday, "weekday dw"},
        {DatePart::Hour, "hour hh"},
        {DatePart::Minute, "minute mi n"},
        {DatePart::Second, "second ss s"},
        {DatePart::Millisecond, "millisecond ms"},
    };
    QHash<QString, DatePart> names;
    for (const auto& [part, list] : words) {
        for (const QString& name : QString::fromLatin1(list).split(u' '))
            names.insert(name, part);
    }
    return names;
}

qint64 floorDivide(qint64 value, qint64 divisor) {
    return value >= 0 ? value / divisor : -((-value + divisor - 1) / divisor);
}

/// A day that the month does not have becomes its last one.
qint64 addMonths(qint64 ticks, qint64 months) {
    constexpr qint64 most = 12 * 9999;
    DateTimeParts parts = dateTimeParts(ticks);
    const QDate moved = parts.date().addMonths(static_cast<int>(std::clamp(months, -most, most)));
    if (moved.year() < 1753 || moved.year() > 9999) return std::numeric_limits<qint64>::max();
    parts.year = moved.year();
    parts.month = moved.month();
    parts.day = moved.day();
    return dateTimeTicks(parts);
}

/// Ticks of a part of fixed length; 0 for the others.
qint64 ticksOf(DatePart part) {
    switch (part) {
        case DatePart::Week:
            return 7 * ticksPerDay;
        case DatePart::Day:
        case DatePart::DayOfYear:
        case DatePart::Weekday:
            return ticksPerDay;
        case DatePart::Hour:
            return 60 * ticksPerMinute;
        case DatePart::Minute:
            return ticksPerMinute;
        case DatePart::Second:
            return ticksPerSecond;
        default:
            return 0;
    }
}

}  // namespace

std::optional<DatePart> datePartOf(const QString& name) {
    static const QHash<QString, DatePart> names = partNames();
    const auto found = names.find(name.toLower());
    return found == names.end() ? std::nullopt : std::optional(*found);
}

int datePartValue(DatePart part, qint64 ticks) {
    const DateTimeParts p = dateTimeParts(ticks);
    switch (part) {
        case DatePart::Year:
            return p.year;
        case DatePart::Quarter:
            return (p.month + 2) / 3;
        case DatePart::Month:
            return p.month;
        case DatePart::DayOfYear:
            return p.date().dayOfYear();
        case DatePart::Day:
            return p.day;
        case DatePart::Week: {
            const int firstWeekday = QDate(p.year, 1, 1).dayOfWeek() % 7;
            return (p.date().dayOfYear() - 1 + firstWeekday) / 7 + 1;
        }
        case DatePart::Weekday:
            return p.date().dayOfWeek() % 7 + 1;
        case DatePart::Hour:
            return p.hour;
        case DatePart::Minute:
            return p.minute;
        case DatePart::Second:
            return p.second;
        case DatePart::Millisecond:
            break;
    }
    return p.milliseconds();
}

qint64 dateAdd(DatePart part, qint64 number, qint64 ticks) {
    qint64 result = 0;
    if (part == DatePart::Year) {
        result = addMonths(ticks, 12 * number);
    } else if (part == DatePart::Quarter) {
        result = addMonths(ticks, 3 * number);
    } else if (part == DatePart::Month) {
        result = addMonths(ticks, number);
    } else if (part == DatePart::Millisecond) {
        const qint64 tenths = number * 3;
        result = ticks + floorDivide(tenths + 5, 10);
    } else {
        result = ticks + number * ticksOf(part);
    }
    if (!isDateTimeInRange(result)) {
        throw SqlError(517, 16, QStringLiteral("Adding a value to a 'datetime' column caused overflow."));
    }
    return result;
}

qint64 dateDiff(DatePart part, qint64 from, qint64 to) {
    const DateTimeParts a = dateTimeParts(from);
    const DateTimeParts b = dateTimeParts(to);
    qint64 result = 0;
    if (part == DatePart::Year) {
        result = b.year - a.year;
    } else if (part == DatePart::Quarter) {
        result = (b.year - a.year) * 4 + (b.month - 1) / 3 - (a.month - 1) / 3;
    } else if (part == DatePart::Month) {
        result = (b.year - a.year) * 12 + b.month - a.month;
    } else if (part == DatePart::Week) {
        // 1900-01-01 was a Monday; weeks begin on Sunday.
        const auto week = [](qint64 ticks) { return floorDivide(ticks + ticksPerDay, 7 * ticksPerDay); };
        result = week(to) - week(from);
    } else if (part == DatePart::Millisecond) {
        result = (to - from) * 10 / 3;
    } else {
        result = floorDivide(to, ticksOf(part)) - floorDivide(from, ticksOf(part));
    }
    if (result != static_cast<qint32>(result)) {
        throw SqlError(535, 16,
                       QStringLiteral("Difference of two datetime columns caused overflow at runtime."));
    }
    return result;
}

}  // namespace engine
