#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

namespace engine {

/// Parts of a date and time; ticks are three-hundredths of a second within the second (0..299).
struct DateTimeParts {
    int year = 1900;
    int month = 1;
    int day = 1;
    int hour = 0;
    int minute = 0;
    int second = 0;
    int ticks = 0;

    int milliseconds() const;
    QDate date() const;
};

constexpr qint64 ticksPerSecond = 300;
constexpr qint64 ticksPerMinute = 60 * ticksPerSecond;
constexpr qint64 ticksPerDay = qint64(24) * 60 * ticksPerMinute;

DateTimeParts dateTimeParts(qint64 ticks);
/// The moment of a clock, to a three-hundredth of a second.
qint64 dateTimeTicks(const QDateTime& moment);
qint64 dateTimeTicks(const DateTimeParts& parts);

/// True for 1753-01-01 to 9999-12-31.
bool isDateTimeInRange(qint64 ticks);
/// True for 1900-01-01 to 2079-06-06.
bool isSmallDateTimeInRange(qint64 ticks);

/// What became of a text read as a date.
enum class DateParse { Done, Malformed, OutOfRange };

/// How a text writes a date in numbers.
struct DateForm {
    QString order = QStringLiteral("mdy");
    int yearDigits = 0;  ///< 2 or 4; 0 for both
};

/// The form that a style of CONVERT or of dateFormatStyle() asks for; nothing for others.
std::optional<DateForm> dateForm(int style);

/// The style that reads dates by a format of SET DATEFORMAT, "dmy"; nothing for others.
std::optional<int> dateFormatStyle(const QString& format);

/// Reads a date, a time or both as SQL Server does with language us_english: "2001-02-03", "20010203",
/// "2/3/2001 4:05PM", "Feb 3 2001", "04:05:06.789", blanks around it; an empty text is 1900-01-01.
DateParse parseDateTime(QStringView text, qint64* ticks, const DateForm& form = {});

/// The text of a date in a style of CONVERT: 0, 1 .. 14, 20, 21, 100 .. 114, 120, 121, 126; nothing for
/// others.
std::optional<QString> formatDateTime(qint64 ticks, int style);

QString monthName(int month);      ///< "January" for 1
QString weekdayName(int weekday);  ///< "Sunday" for 0

}  // namespace engine
