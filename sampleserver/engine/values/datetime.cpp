#include "engine/values/datetime.h"

#include <QLocale>

#include <array>

namespace engine {

namespace {

const QDate epoch(1900, 1, 1);

struct Style {
    int number;
    const char* pattern;
};

/// The styles that show the century; a style without it has a number less by 100. Letters of a pattern: y
/// year, M month, N short month name, d day, D day padded with a blank, T hh:mm:ss, m milliseconds, P
/// hh:mmAM, S hh:mm:ss:mmmAM.
constexpr std::array<Style, 17> styles{{{100, "N D y P"},
                                        {101, "M/d/y"},
                                        {102, "y.M.d"},
                                        {103, "d/M/y"},
                                        {104, "d.M.y"},
                                        {105, "d-M-y"},
                                        {106, "d N y"},
                                        {107, "N d, y"},
                                        {108, "T"},
                                        {109, "N D y S"},
                                        {110, "M-d-y"},
                                        {111, "y/M/d"},
                                        {112, "yMd"},
                                        {113, "d N y T:m"},
                                        {114, "T:m"},
                                        {120, "y-M-d T"},
                                        {121, "y-M-d T.m"}}};

QString padded(int number, int width, QChar fill = u'0') {
    return QString::number(number).rightJustified(width, fill);
}

QString clock24(const DateTimeParts& p) {
    return padded(p.hour, 2) + u':' + padded(p.minute, 2) + u':' + padded(p.second, 2);
}

QString clock12(const DateTimeParts& p, const QString& rest) {
    const int hour = p.hour % 12 == 0 ? 12 : p.hour % 12;
    return padded(hour, 2, u' ') + u':' + padded(p.minute, 2) + rest +
           (p.hour < 12 ? QStringLiteral("AM") : QStringLiteral("PM"));
}

QString part(char letter, const DateTimeParts& p, bool century) {
    switch (letter) {
        case 'y':
            return century ? padded(p.year, 4) : padded(p.year % 100, 2);
        case 'M':
            return padded(p.month, 2);
        case 'N':
            return monthName(p.month).left(3);
        case 'd':
            return padded(p.day, 2);
        case 'D':
            return padded(p.day, 2, u' ');
        case 'T':
            return clock24(p);
        case 'P':
            return clock12(p, QString());
        case 'm':
            return padded(p.milliseconds(), 3);
        case 'S':
            return clock12(p, u':' + padded(p.second, 2) + u':' + padded(p.milliseconds(), 3));
        default:
            return QString(QLatin1Char(letter));
    }
}

}  // namespace

int DateTimeParts::milliseconds() const {
    return (ticks * 10 + 1) / 3;
}

QDate DateTimeParts::date() const {
    return {year, month, day};
}

DateTimeParts dateTimeParts(qint64 ticks) {
    qint64 dayNumber = ticks / ticksPerDay;
    qint64 rest = ticks % ticksPerDay;
    if (rest < 0) {
        rest += ticksPerDay;
        --dayNumber;
    }
    const QDate date = epoch.addDays(dayNumber);
    return {.year = date.year(),
            .month = date.month(),
            .day = date.day(),
            .hour = static_cast<int>(rest / (60 * ticksPerMinute)),
            .minute = static_cast<int>(rest / ticksPerMinute % 60),
            .second = static_cast<int>(rest / ticksPerSecond % 60),
            .ticks = static_cast<int>(rest % ticksPerSecond)};
}

qint64 dateTimeTicks(const DateTimeParts& p) {
    return epoch.daysTo(p.date()) * ticksPerDay + (p.hour * 60 + p.minute) * ticksPerMinute +
           p.second * ticksPerSecond + p.ticks;
}

qint64 dateTimeTicks(const QDateTime& moment) {
    const QDate date = moment.date();
    const QTime time = moment.time();
    return dateTimeTicks({date.year(), date.month(), date.day(), time.hour(), time.minute(), time.second(),
                          time.msec() * 3 / 10});
}

bool isDateTimeInRange(qint64 ticks) {
    static const qint64 first = dateTimeTicks({1753, 1, 1});
    static const qint64 end = dateTimeTicks({9999, 12, 31}) + ticksPerDay;
    return ticks >= first && ticks < end;
}

bool isSmallDateTimeInRange(qint64 ticks) {
    static const qint64 end = dateTimeTicks({2079, 6, 6}) + ticksPerDay;
    return ticks >= 0 && ticks < end;
}

std::optional<QString> formatDateTime(qint64 ticks, int style) {
    const DateTimeParts parts = dateTimeParts(ticks);
    if (style == 126) {
        return padded(parts.year, 4) + u'-' + padded(parts.month, 2) + u'-' + padded(parts.day, 2) + u'T' +
               clock24(parts) + u'.' + padded(parts.milliseconds(), 3);
    }
    const bool alwaysCentury = style == 0 || style == 9 || style == 13 || style == 20 || style == 21;
    const bool century = style >= 100 || alwaysCentury;
    const int number = style < 100 ? style + 100 : style;
    for (const Style& candidate : styles) {
        if (candidate.number != number) continue;
        QString text;
        for (const char* c = candidate.pattern; *c != '\0'; ++c)
            text += part(*c, parts, century);
        return text;
    }
    return std::nullopt;
}

QString monthName(int month) {
    return QLocale::c().monthName(month);
}

QString weekdayName(int weekday) {
    return QLocale::c().dayName(weekday == 0 ? 7 : weekday);
}

}  // namespace engine
