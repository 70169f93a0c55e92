#pragma once

#include <QString>
#include <QStringView>

#include <optional>

namespace platform {

/// Text to number, the locale left out of it: blanks around are ignored, a fraction is rounded half to even.
/// Throws RuntimeError 13 "Type mismatch" for what is no number and 6 "Overflow" for one that does not fit.
qint16 toInteger(const QString& text);
qint32 toLong(const QString& text);
float toSingle(const QString& text);
/// A 32-bit integer from a computed size, rounded half to even; throws RuntimeError 6.
qint32 roundToLong(double value);

/// The number that a user typed into a box for whole numbers from 0 to 2147483647: decimal digits, blanks
/// around them ignored; nothing for any other text.
std::optional<qint32> wholeNumber(QStringView text);

/// The shortest text that reads back as the same single-precision number, never in exponent notation below
/// a million million.
QString singleText(float value);

}  // namespace platform
