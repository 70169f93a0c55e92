#include "engine/values/codepage.h"
#include "engine/values/conversions.h"
#include "engine/values/datetime.h"
#include "engine/values/typeinfo.h"

#include <QRegularExpression>
#include <QUuid>
#include <QtEndian>

#include <bit>

namespace engine {

namespace {

QString moneyText(qint64 amount, int style) {
    QString text = Decimal::fromUnscaled(amount, 4).rescaled(style == 2 ? 4 : 2).text();
    if (style == 1) {
        const qsizetype first = text.startsWith(u'-') ? 1 : 0;
        for (qsizetype at = text.size() - 6; at > first; at -= 3)
            text.insert(at, u',');
    }
    return text;
}

/// "1e+006": the server writes exponents with three digits at least.
QString floatText(double value, int style) {
    QString text =
        style == 0 ? QString::number(value, 'g', 6) : QString::number(value, 'e', style == 1 ? 7 : 15);
    const qsizetype exponent = text.indexOf(u'e');
    if (exponent >= 0) {
        text = text.left(exponent + 2) + text.mid(exponent + 2).rightJustified(3, u'0');
    }
    return text;
}

/// The first three groups of a uniqueidentifier lie little-endian.
QUuid uuidOf(const QByteArray& bytes) {
    if (bytes.size() != 16) return {};
    const auto* raw = bytes.constData();
    return QUuid(qFromLittleEndian<quint32>(raw), qFromLittleEndian<quint16>(raw + 4),
                 qFromLittleEndian<quint16>(raw + 6), static_cast<uchar>(raw[8]), static_cast<uchar>(raw[9]),
                 static_cast<uchar>(raw[10]), static_cast<uchar>(raw[11]), static_cast<uchar>(raw[12]),
                 static_cast<uchar>(raw[13]), static_cast<uchar>(raw[14]), static_cast<uchar>(raw[15]));
}

QByteArray bytesOfUuid(const QUuid& uuid) {
    QByteArray bytes(16, '\0');
    qToLittleEndian<quint32>(uuid.data1, bytes.data());
    qToLittleEndian<quint16>(uuid.data2, bytes.data() + 4);
    qToLittleEndian<quint16>(uuid.data3, bytes.data() + 6);
    std::copy(std::begin(uuid.data4), std::end(uuid.data4), bytes.data() + 8);
    return bytes;
}

template <class Number>
QByteArray bigEndian(Number number) {
    QByteArray bytes(sizeof(Number), '\0');
    qToBigEndian(number, bytes.data());
    return bytes;
}

[[noreturn]] void failTruncated() {
    throw SqlError(8152, 16, QStringLiteral("String or binary data would be truncated."));
}

QString binaryAsText(const QByteArray& bytes, bool national) {
    if (!national) return fromCodePage(bytes);
    QString text(bytes.size() / 2, Qt::Uninitialized);
    qFromLittleEndian<char16_t>(bytes.constData(), text.size(), text.data());
    return text;
}

}  // namespace

QString Conversion::unsizedText(const Value& value) const {
    if (isInteger(from.id)) return QString::number(std::get<qint64>(value));
    if (isMoney(from.id)) return moneyText(std::get<qint64>(value), style);
    if (isFloat(from.id)) return floatText(std::get<double>(value), style);
    if (isBinary(from.id)) {
        if (from.id == TypeId::Image) failNotAllowed();
        return binaryAsText(std::get<QByteArray>(value), isNational(to.id));
    }
    if (from.id == TypeId::UniqueIdentifier) {
        return uuidOf(std::get<QByteArray>(value)).toString(QUuid::WithoutBraces).toUpper();
    }
    if (isDateTime(from.id)) {
        const auto text = formatDateTime(std::get<qint64>(value), style);
        if (!text) failStyle();
        return *text;
    }
    return std::get<QString>(value);
}

Value Conversion::sized(QString text) const {
    if (!isNational(to.id)) text = inCodePage(text);
    if (isLong(to.id)) return text;
    if (text.size() > to.length) {
        if (isText(from.id) || isDateTime(from.id) || isBinary(from.id)) {
            if (assigning && !QStringView(text).mid(to.length).trimmed().isEmpty()) failTruncated();
            text.truncate(to.length);
        } else if (isInteger(from.id) && !isNational(to.id)) {
            text = QStringLiteral("*");
        } else if (isMoney(from.id)) {
            throw SqlError(
                234, 16,
                QStringLiteral("There is insufficient result space to convert a money value to %1.")
                    .arg(typeName(to.id)));
        } else if (from.id == TypeId::UniqueIdentifier) {
            throw SqlError(
                8170, 16,
                QStringLiteral("Insufficient result space to convert uniqueidentifier value to char."));
        } else {
            failOverflow();
        }
    }
    if (isFixedText(to.id)) text = text.leftJustified(to.length, u' ');
    return text;
}

Value Conversion::toText(const Value& value) const {
    if (isLong(to.id) && !isText(from.id) && !isBinary(from.id)) failNotAllowed();
    return sized(unsizedText(value));
}

QByteArray Conversion::bytesOf(const Value& value) const {
    if (isBinary(from.id) || from.id == TypeId::UniqueIdentifier) return std::get<QByteArray>(value);
    if (isText(from.id)) {
        const QString& text = std::get<QString>(value);
        if (!isNational(from.id)) return toCodePage(text);
        QByteArray bytes(2 * text.size(), '\0');
        qToLittleEndian<char16_t>(text.utf16(), text.size(), bytes.data());
        return bytes;
    }
    if (from.id == TypeId::Real)
        return bigEndian(std::bit_cast<quint32>(static_cast<float>(std::get<double>(value))));
    if (from.id == TypeId::Float) return bigEndian(std::bit_cast<quint64>(std::get<double>(value)));
    if (isDecimal(from.id)) failNotAllowed();
    const qint64 number = std::get<qint64>(value);
    if (isDateTime(from.id)) {
        const qint64 dayNumber =
            (number - ((number % ticksPerDay + ticksPerDay) % ticksPerDay)) / ticksPerDay;
        return bigEndian(static_cast<qint32>(dayNumber)) +
               bigEndian(static_cast<qint32>(number - dayNumber * ticksPerDay));
    }
    return bigEndian(number).right(typeBytes(from));
}

Value Conversion::toBinary(const Value& value) const {
    if (to.id == TypeId::Image && !isBinary(from.id)) failNotAllowed();
    QByteArray bytes = bytesOf(value);
    if (to.id == TypeId::Image) return bytes;
    const qsizetype length = to.id == TypeId::Timestamp ? 8 : to.length;
    const bool fixed = to.id != TypeId::VarBinary;
    if (isNumber(from.id) || isDateTime(from.id)) {
        bytes = fixed ? bytes.rightJustified(length, '\0', true) : bytes.right(length);
        if (fixed && bytes.size() > length) bytes = bytes.right(length);
        return bytes;
    }
    if (bytes.size() > length) {
        if (assigning) failTruncated();
        bytes.truncate(length);
    }
    return fixed ? bytes.leftJustified(length, '\0') : bytes;
}

Value Conversion::toUniqueIdentifier(const Value& value) const {
    if (from.id == TypeId::UniqueIdentifier) return value;
    if (isBinary(from.id)) return std::get<QByteArray>(value).left(16).leftJustified(16, '\0');
    if (!isText(from.id)) failNotAllowed();
    static const QRegularExpression form(
        QStringLiteral("^\\{?([0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{12})\\}?"),
        QRegularExpression::CaseInsensitiveOption);
    const auto match = form.match(std::get<QString>(value));
    if (!match.hasMatch()) {
        throw SqlError(
            8169, 16, QStringLiteral("Syntax error converting from a character string to uniqueidentifier."));
    }
    return bytesOfUuid(QUuid::fromString(match.captured(1)));
}

QString valueText(const Value& value, const SqlType& type) {
    if (std::holds_alternative<std::monostate>(value)) return {};
    const SqlType wide{.id = TypeId::NVarChar, .length = 4000};
    if (isText(type.id)) return std::get<QString>(value);
    return std::get<QString>(Conversion{.from = type, .to = wide}.toText(value));
}

}  // namespace engine
