#pragma once

#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxValueList.h>

#include <initializer_list>
#include <memory>
#include <span>

namespace lmx {

using TColorParts = TValueList<std::shared_ptr<IGradientColorCalculator>>;

/// Colours a raster with several gradients, each over its own band of values. A value outside the overall range, or in
/// a gap between the parts, is 0: fully transparent. A bound of the overall range that is no number keeps nothing out.
///
/// Clone() has a list of its own with the same parts. Clone(min, max) sets the overall range of that copy: the parts
/// keep theirs, so a narrower range cuts the colouring off, and a wider one leaves transparent margins.
class LMX_EXPORT IMultipartGradientColorCalculator : public virtual IBaseMinMaxColorCalculator {
public:
    /// The part that colours a value: the first one in the list with `min <= value <= max`; nil if there is none. The
    /// overall range plays no role. The parts are sorted after each change, at the first call, and then searched by
    /// halving; parts of a host's own class are asked in turn.
    virtual std::shared_ptr<IGradientColorCalculator> GetGradient(float value) const = 0;

    /// The list itself, for reading and changing. Entries that are nil are passed over.
    virtual TColorParts& GetGradients() = 0;
    virtual const TColorParts& GetGradients() const = 0;
};

class LMX_EXPORT TMultipartGradientColorCalculatorFactory {
public:
    /// Range 0 to 0, no parts.
    static std::shared_ptr<IMultipartGradientColorCalculator> GetObject();
    /// No parts.
    static std::shared_ptr<IMultipartGradientColorCalculator> GetObject(float min, float max);
    /// The parts are shared, not copied.
    static std::shared_ptr<IMultipartGradientColorCalculator>
    GetObject(float min, float max, std::span<const std::shared_ptr<IGradientColorCalculator>> gradients);
    static std::shared_ptr<IMultipartGradientColorCalculator>
    GetObject(float min, float max, std::initializer_list<std::shared_ptr<IGradientColorCalculator>> gradients);
    /// The same range and the same parts, shared.
    /// @throws EExArgumentNilException if `source` is nil.
    static std::shared_ptr<IMultipartGradientColorCalculator>
    GetObject(const std::shared_ptr<IMultipartGradientColorCalculator>& source);
};

} // namespace lmx
