#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <QString>

namespace lmx {

/// A range of values, both ends inside. Not ordered by itself: Low may be above High.
struct LMX_EXPORT TValueRange {
    double Low = 0;
    double High = 0;

    constexpr TValueRange() = default;
    constexpr TValueRange(double low, double high) : Low(low), High(high) {}

    /// Whether both ends are the same numbers. An end that is no number equals nothing.
    constexpr bool Equals(const TValueRange& other) const { return *this == other; }

    /// The range for a reader's eyes, "0 - 50": both ends in general form with 7 significant digits, in the current
    /// format settings.
    QString ToString() const;

    /// The range from 0 to 0, which stands for "no values".
    static constexpr TValueRange Empty() { return {}; }

    friend constexpr bool operator==(const TValueRange&, const TValueRange&) = default;
};

} // namespace lmx
