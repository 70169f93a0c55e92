#pragma once

#include <QString>

#include <array>
#include <compare>
#include <cstdint>
#include <optional>

namespace engine {

/// An exact decimal number: sign, digits and scale (digits behind the point). Room for the intermediate
/// results of arithmetic on two numbers of 38 digits each.
class Decimal {
  public:
    static constexpr int maxPrecision = 38;

    Decimal() = default;
    /// `unscaled` / 10^`scale`.
    static Decimal fromUnscaled(qint64 unscaled, int scale);
    /// The number nearest to `value` with `scale` digits behind the point; nothing when it has more than 38.
    static std::optional<Decimal> fromDouble(double value, int scale);
    /// Reads "-12.50"; nothing for anything else and for more than 76 digits.
    static std::optional<Decimal> parse(QStringView text);

    int scale() const { return m_scale; }
    bool isZero() const;
    bool isNegative() const { return m_negative; }
    /// Digits of the number without leading zeros, those behind the point included.
    int digits() const;

    /// The number with another scale; digits that fall away round half away from zero or are cut.
    Decimal rescaled(int scale, bool cut = false) const;
    Decimal negated() const;

    /// Plain notation with exactly scale() digits behind the point, "-0.50".
    QString text() const;
    double toDouble() const;
    /// The number times 10^scale(), when that fits.
    std::optional<qint64> unscaled() const;

    friend Decimal operator+(const Decimal& a, const Decimal& b);
    friend Decimal operator-(const Decimal& a, const Decimal& b) { return a + b.negated(); }
    friend Decimal operator*(const Decimal& a, const Decimal& b);
    /// Quotient cut to `scale` digits behind the point, as SQL Server divides. `b` must not be zero.
    static Decimal quotient(const Decimal& a, const Decimal& b, int scale);
    static std::strong_ordering compare(const Decimal& a, const Decimal& b);

  private:
    static constexpr int limbs = 14;
    static constexpr std::uint32_t base = 1'000'000'000;
    using Magnitude = std::array<std::uint32_t, limbs>;  // least significant first

    static std::strong_ordering compareMagnitudes(const Magnitude& a, const Magnitude& b);
    static Magnitude times(const Magnitude& a, std::uint32_t factor);
    static void subtract(Magnitude& a, const Magnitude& b);
    static std::uint32_t divideSmall(Magnitude& a, std::uint32_t divisor);
    void scaleUp(int digits);

    bool m_negative = false;
    int m_scale = 0;
    Magnitude m_magnitude{};
};

}  // namespace engine
