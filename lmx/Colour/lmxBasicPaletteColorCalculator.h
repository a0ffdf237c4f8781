#pragma once

#include <lmx/Colour/lmxBaseColorCalculator.h>
#include <lmx/Colour/lmxColorKey.h>
#include <lmx/Colour/lmxValueRange.h>
#include <lmx/Runtime/lmxExport.h>

#include <initializer_list>
#include <memory>
#include <span>

namespace lmx {

/// Cuts the range into equal bands, one for each entry of a colour key. A band holds its low end; the top band holds
/// both its ends. With ReserveFirstColorForNoData the key's first entry colours the values outside the range, and no
/// other; without it those are 0, fully transparent. A value that is no number lies outside.
///
/// Band of a value: step = (max - min) / n, in extended arithmetic, rounded to a 32-bit float; then
/// Floor((value - min) / step), where n stands for n - 1.
///
/// GetColor raises
/// - EInvalidOperation "ColorKey not specified" or "ColorKey contains no entries", whatever the value;
/// - EZeroDivide for a value inside if the reserved entry is the only one, or if the step has vanished;
/// - EInvalidOp for a value inside if min equals max, or if a bound is no finite number and gives no band;
/// - EArgumentException "Color index out of range" if the rounding of a tiny step leads past the last band.
///
/// Clone() and Clone(min, max) have a copy of the key.
class LMX_EXPORT IBasicPaletteColorCalculator : public virtual IBaseMinMaxColorCalculator {
public:
    virtual std::shared_ptr<IColorKey> GetColorKey() const = 0;
    virtual void SetColorKey(std::shared_ptr<IColorKey> key) = 0;
    virtual bool GetReserveFirstColorForNoData() const = 0;
    virtual void SetReserveFirstColorForNoData(bool reserve) = 0;
};

class LMX_EXPORT TBasicPaletteColorCalculatorFactory {
public:
    /// Range 0 to 0, no colour key, nothing reserved.
    static std::shared_ptr<IBasicPaletteColorCalculator> GetObject();

    /// A copy with a key of its own.
    /// @throws EExArgumentNilException if `source` is nil.
    static std::shared_ptr<IBasicPaletteColorCalculator>
    GetObject(const std::shared_ptr<IBasicPaletteColorCalculator>& source);

    /// A calculator with a new key made of the items. The ends of the range are rounded to 32-bit floats.
    static std::shared_ptr<IBasicPaletteColorCalculator>
    GetObject(const TValueRange& range, std::span<const TColorKeyItem> items, bool reserveFirstColorForNoData);
    static std::shared_ptr<IBasicPaletteColorCalculator>
    GetObject(const TValueRange& range, std::initializer_list<TColorKeyItem> items, bool reserveFirstColorForNoData);
};

} // namespace lmx
