#include "engine/values/decimal.h"

#include <algorithm>
#include <cmath>

namespace engine {

namespace {

std::uint32_t powerOfTen(int exponent) {
    std::uint32_t result = 1;
    while (exponent-- > 0)
        result *= 10;
    return result;
}

}  // namespace

Decimal Decimal::fromUnscaled(qint64 unscaled, int scale) {
    Decimal result;
    result.m_scale = scale;
    result.m_negative = unscaled < 0;
    std::uint64_t rest =
        unscaled < 0 ? 0 - static_cast<std::uint64_t>(unscaled) : static_cast<std::uint64_t>(unscaled);
    for (size_t i = 0; rest > 0; ++i, rest /= base)
        result.m_magnitude[i] = static_cast<std::uint32_t>(rest % base);
    return result;
}

std::optional<Decimal> Decimal::fromDouble(double value, int scale) {
    if (!std::isfinite(value) || std::fabs(value) >= 1e38) return std::nullopt;
    // More digits than a double carries would only spell out its binary noise.
    const int meaningful =
        value == 0 ? scale : 15 - static_cast<int>(std::floor(std::log10(std::fabs(value)))) - 1;
    const auto parsed = parse(QString::number(value, 'f', std::clamp(meaningful, 0, scale + 1)));
    if (!parsed) return std::nullopt;
    Decimal result = parsed->rescaled(scale);
    if (result.digits() > maxPrecision) return std::nullopt;
    return result;
}

std::optional<Decimal> Decimal::parse(QStringView text) {
    Decimal result;
    qsizetype at = 0;
    if (at < text.size() && (text[at] == u'-' || text[at] == u'+')) result.m_negative = text[at++] == u'-';
    int digits = 0;
    bool point = false;
    std::uint32_t chunk = 0;
    int chunkDigits = 0;
    const auto flush = [&] {
        result.m_magnitude = times(result.m_magnitude, powerOfTen(chunkDigits));
        std::uint64_t carry = chunk;
        for (size_t i = 0; carry > 0 && i < limbs; ++i, carry /= base) {
            carry += result.m_magnitude[i];
            result.m_magnitude[i] = static_cast<std::uint32_t>(carry % base);
        }
        chunk = 0;
        chunkDigits = 0;
    };
    for (; at < text.size(); ++at) {
        const char16_t c = text[at].unicode();
        if (c == u'.' && !point) {
            point = true;
            continue;
        }
        if (c < u'0' || c > u'9') return std::nullopt;
        ++digits;
        if (point) ++result.m_scale;
        chunk = chunk * 10 + static_cast<std::uint32_t>(c - u'0');
        if (++chunkDigits == 8) flush();
        if (digits > 2 * maxPrecision) return std::nullopt;
    }
    if (digits == 0) return std::nullopt;
    flush();
    if (result.isZero()) result.m_negative = false;
    return result;
}

bool Decimal::isZero() const {
    return std::ranges::all_of(m_magnitude, [](std::uint32_t limb) { return limb == 0; });
}

int Decimal::digits() const {
    for (int i = limbs - 1; i >= 0; --i) {
        std::uint32_t limb = m_magnitude[static_cast<size_t>(i)];
        if (limb == 0) continue;
        int count = i * 9;
        for (; limb > 0; limb /= 10)
            ++count;
        return count;
    }
    return 0;
}

void Decimal::scaleUp(int digits) {
    for (; digits > 0; digits -= 9)
        m_magnitude = times(m_magnitude, powerOfTen(std::min(digits, 9)));
}

Decimal Decimal::rescaled(int scale, bool cut) const {
    Decimal result = *this;
    result.m_scale = scale;
    if (scale >= m_scale) {
        result.scaleUp(scale - m_scale);
        return result;
    }
    int drop = m_scale - scale;
    for (; drop > 1; drop -= std::min(drop - 1, 9))
        divideSmall(result.m_magnitude, powerOfTen(std::min(drop - 1, 9)));
    const bool roundUp = divideSmall(result.m_magnitude, 10) >= 5 && !cut;
    for (size_t i = 0; roundUp && i < limbs; ++i) {
        if (++result.m_magnitude[i] < base) break;
        result.m_magnitude[i] = 0;
    }
    if (result.isZero()) result.m_negative = false;
    return result;
}

Decimal Decimal::negated() const {
    Decimal result = *this;
    result.m_negative = !m_negative && !isZero();
    return result;
}

QString Decimal::text() const {
    QString digitsText;
    Magnitude rest = m_magnitude;
    for (int i = std::max(digits(), m_scale + 1); i > 0; i -= 9) {
        const int chunk = std::min(i, 9);
        const QString part = QString::number(divideSmall(rest, powerOfTen(chunk)));
        digitsText.prepend(part.rightJustified(chunk, u'0'));
    }
    if (m_scale > 0) digitsText.insert(digitsText.size() - m_scale, u'.');
    if (m_negative) digitsText.prepend(u'-');
    return digitsText;
}

double Decimal::toDouble() const {
    return text().toDouble();
}

std::optional<qint64> Decimal::unscaled() const {
    if (digits() > 18) {
        bool fits = false;
        const qint64 value = text().remove(u'.').toLongLong(&fits);
        return fits ? std::optional(value) : std::nullopt;
    }
    const qint64 value = (static_cast<qint64>(m_magnitude[1])) * base + m_magnitude[0];
    return m_negative ? -value : value;
}

Decimal operator+(const Decimal& left, const Decimal& right) {
    const int scale = std::max(left.m_scale, right.m_scale);
    Decimal a = left.rescaled(scale);
    Decimal b = right.rescaled(scale);
    if (a.m_negative == b.m_negative) {
        std::uint64_t carry = 0;
        for (size_t i = 0; i < Decimal::limbs; ++i, carry /= Decimal::base) {
            carry += static_cast<std::uint64_t>(a.m_magnitude[i]) + b.m_magnitude[i];
            a.m_magnitude[i] = static_cast<std::uint32_t>(carry % Decimal::base);
        }
        return a;
    }
    if (Decimal::compareMagnitudes(a.m_magnitude, b.m_magnitude) < 0) std::swap(a, b);
    Decimal::subtract(a.m_magnitude, b.m_magnitude);
    if (a.isZero()) a.m_negative = false;
    return a;
}

Decimal operator*(const Decimal& a, const Decimal& b) {
    Decimal result;
    result.m_scale = a.m_scale + b.m_scale;
    for (size_t i = 0; i < Decimal::limbs; ++i) {
        if (a.m_magnitude[i] == 0) continue;
        std::uint64_t carry = 0;
        for (size_t j = 0; i + j < Decimal::limbs; ++j, carry /= Decimal::base) {
            carry +=
                static_cast<std::uint64_t>(a.m_magnitude[i]) * b.m_magnitude[j] + result.m_magnitude[i + j];
            result.m_magnitude[i + j] = static_cast<std::uint32_t>(carry % Decimal::base);
        }
    }
    result.m_negative = a.m_negative != b.m_negative && !result.isZero();
    return result;
}

Decimal Decimal::quotient(const Decimal& a, const Decimal& b, int scale) {
    Decimal numerator = a;
    const int shift = scale + b.m_scale - a.m_scale;
    if (shift >= 0) {
        numerator.scaleUp(shift);
    } else {
        numerator = a.rescaled(a.m_scale + shift, true);
    }
    Decimal result;
    result.m_scale = scale;
    Magnitude rest{};
    for (int i = limbs - 1; i >= 0; --i) {
        const auto limb = static_cast<size_t>(i);
        rest = times(rest, base / 10);
        rest = times(rest, 10);
        rest[0] = numerator.m_magnitude[limb];
        std::uint32_t low = 0;
        std::uint32_t high = base - 1;
        while (low < high) {
            const std::uint32_t middle = low + (high - low + 1) / 2;
            if (compareMagnitudes(times(b.m_magnitude, middle), rest) <= 0) {
                low = middle;
            } else {
                high = middle - 1;
            }
        }
        result.m_magnitude[limb] = low;
        subtract(rest, times(b.m_magnitude, low));
    }
    result.m_negative = a.m_negative != b.m_negative && !result.isZero();
    return result;
}

std::strong_ordering Decimal::compare(const Decimal& a, const Decimal& b) {
    if (a.m_negative != b.m_negative) {
        return a.m_negative ? std::strong_ordering::less : std::strong_ordering::greater;
    }
    const int scale = std::max(a.m_scale, b.m_scale);
    const auto order = compareMagnitudes(a.rescaled(scale).m_magnitude, b.rescaled(scale).m_magnitude);
    return a.m_negative ? 0 <=> order : order;
}

std::strong_ordering Decimal::compareMagnitudes(const Magnitude& a, const Magnitude& b) {
    return std::lexicographical_compare_three_way(a.rbegin(), a.rend(), b.rbegin(), b.rend());
}

Decimal::Magnitude Decimal::times(const Magnitude& a, std::uint32_t factor) {
    Magnitude result{};
    std::uint64_t carry = 0;
    for (size_t i = 0; i < limbs; ++i, carry /= base) {
        carry += static_cast<std::uint64_t>(a[i]) * factor;
        result[i] = static_cast<std::uint32_t>(carry % base);
    }
    return result;
}

void Decimal::subtract(Magnitude& a, const Magnitude& b) {
    std::uint32_t borrow = 0;
    for (size_t i = 0; i < limbs; ++i) {
        const std::uint32_t take = b[i] + borrow;
        borrow = a[i] < take ? 1 : 0;
        a[i] = a[i] + borrow * base - take;
    }
}

std::uint32_t Decimal::divideSmall(Magnitude& a, std::uint32_t divisor) {
    std::uint64_t rest = 0;
    for (size_t i = limbs; i-- > 0;) {
        rest = rest * base + a[i];
        a[i] = static_cast<std::uint32_t>(rest / divisor);
        rest %= divisor;
    }
    return static_cast<std::uint32_t>(rest);
}

}  // namespace engine
