#pragma once

#include <QString>

#include <array>
#include <cstddef>
#include <optional>

namespace lmx {

enum class TBaseUnit { buMetre, buKilogram, buSecond, buKelvin, buMole };

/// What a unit measures: the exponents of the base units. A ratio has none. Exponents stay within a byte's range.
class TMeasure {
public:
    static TMeasure Of(TBaseUnit base, int exponent = 1) {
        TMeasure measure;
        measure.FExponents[static_cast<std::size_t>(base)] = exponent;
        return measure;
    }
    /// Of a text in base units, such as "kg m-2 s-1".
    static TMeasure Parse(const char* text);

    int Exponent(TBaseUnit base) const { return FExponents[static_cast<std::size_t>(base)]; }
    TMeasure Power(int exponent) const;

    friend TMeasure operator*(const TMeasure& a, const TMeasure& b) {
        TMeasure product;
        for (std::size_t i = 0; i < a.FExponents.size(); ++i)
            product.FExponents[i] = a.FExponents[i] + b.FExponents[i];
        return product;
    }
    friend bool operator==(const TMeasure&, const TMeasure&) = default;

private:
    std::array<int, 5> FExponents{};
};

inline constexpr double CelsiusZero = 273.15; ///< in kelvin

/// A unit that is understood: a number of it is `number * Factor + Offset` in base units.
struct TUnit {
    TMeasure Measure;
    double Factor = 1;
    double Offset = 0;
    bool IsByMonth = false; ///< "... month-1": the factor is that of a span of one second, for a month has no length
};

/// The unit that a text means, in the spellings of climate files: any case, blanks, dots and stars between factors,
/// powers as "m2", "m^2" or "m**2", one or more "/" for what divides: "kg/m2/s", "kg/(m2 s)", "kg/m2 s-1". None for an
/// empty text and for what is not known.
std::optional<TUnit> ParseUnit(const QString& text);

/// The text in small letters, without "**", "^", "_" and parentheses, factors apart by one blank, "a/b" as "a b-1".
QString FoldUnit(const QString& text);

/// Whether two texts are the same but for spelling.
bool SameUnits(const QString& a, const QString& b);

} // namespace lmx
