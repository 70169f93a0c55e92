#include "tds/decimal.h"

#include "tds/wirebytes.h"

#include <array>

namespace tds {

namespace {

/// 128 bits, the lowest 32 first.
using Wide = std::array<quint32, 4>;

bool multiplyAndAdd(Wide& number, quint32 factor, quint32 addend) {
    quint64 carry = addend;
    for (quint32& part : number) {
        carry += quint64(part) * factor;
        part = quint32(carry);
        carry >>= 32;
    }
    return carry == 0;
}

}  // namespace

bool appendDecimal(QByteArray& out, QStringView text, const ColumnFormat& format) {
    const bool negative = text.startsWith(u'-');
    if (negative) text = text.sliced(1);

    Wide number{};
    int significant = 0;
    int afterPoint = -1;
    for (const QChar character : text) {
        if (character == u'.' && afterPoint < 0) {
            afterPoint = 0;
            continue;
        }
        const int digit = character.unicode() - u'0';
        if (digit < 0 || digit > 9 || !multiplyAndAdd(number, 10, quint32(digit))) return false;
        if (afterPoint >= 0) ++afterPoint;
        if (digit > 0 || significant > 0) ++significant;
    }
    const int written = afterPoint < 0 ? 0 : afterPoint;
    if (text.isEmpty() || written != format.scale || significant > format.precision) return false;

    appendNumber(out, quint8(format.bytes));
    appendNumber(out, quint8(negative ? 0 : 1));
    for (quint32 part = 0; part < (format.bytes - 1) / 4; ++part)
        appendNumber(out, number[part]);
    return true;
}

}  // namespace tds
