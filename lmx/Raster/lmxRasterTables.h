#pragma once

#include <lmx/Runtime/lmxDictionary.h>
#include <lmx/Runtime/lmxExport.h>

#include <QString>

#include <compare>
#include <cstdint>

namespace lmx {

/// The lower and the upper end of a band of values.
struct TRange {
    double V0 = 0;
    double V1 = 0;

    friend constexpr bool operator==(const TRange&, const TRange&) = default;
};

/// Order of bands by their lower, then their upper end: a total one, in which a NaN has its place as well.
struct LMX_EXPORT TRangeLess {
    bool operator()(const TRange& a, const TRange& b) const noexcept {
        const auto lower = std::strong_order(a.V0, b.V0);
        return std::is_neq(lower) ? std::is_lt(lower) : std::is_lt(std::strong_order(a.V1, b.V1));
    }
};

/// Free name-value attributes of a raster.
class LMX_EXPORT TAttributeTable final : public TDictionary<QString, QString> {};

/// The label of each value of an indexed raster.
class LMX_EXPORT TIndexTable final : public TDictionary<std::int32_t, QString> {};

/// The label of each band of a ranged raster.
class LMX_EXPORT TRangeTable final : public TDictionary<TRange, QString, TRangeLess> {};

} // namespace lmx
