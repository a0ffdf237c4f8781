#pragma once

#include <lmx/Colour/lmxBaseColorCalculator.h>
#include <lmx/Colour/lmxValueRange.h>
#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Runtime/lmxExport.h>

#include <memory>

namespace lmx {

class IGradient;
class IGradientSource;

/// Spreads a gradient over the range; both ends are inside, and the range may be inverted.
///
/// Position of a value: (value - min) / (max - min), in extended arithmetic, rounded to a 32-bit float. A position
/// outside 0 to 1, or one that is no number, has the default colour. A range whose ends differ in their last bits only
/// (by at most 4 * 2^-23 of the larger magnitude) has collapsed: every value has the gradient's last colour then.
///
/// GetColor without a gradient raises EInvalidOperation "Gradient not specified" where the gradient is asked.
/// Clone() copies everything; Clone(min, max) copies the gradient and resets the default colour to 0.
class LMX_EXPORT IGradientColorCalculator : public virtual IBaseMinMaxColorCalculator {
public:
    virtual std::shared_ptr<IGradient> GetGradient() const = 0;
    virtual void SetGradient(std::shared_ptr<IGradient> gradient) = 0;
    virtual TColor32 GetDefaultColor() const = 0; ///< colour of a value outside the range
    virtual void SetDefaultColor(TColor32 color) = 0;
};

class LMX_EXPORT TGradientColorCalculatorFactory {
public:
    /// Range 0 to 0, no gradient, default colour 0.
    static std::shared_ptr<IGradientColorCalculator> GetObject();

    /// The gradient is shared, not copied, and may be nil. Without one given, the default colour is 0: fully
    /// transparent.
    static std::shared_ptr<IGradientColorCalculator> GetObject(float min, float max,
                                                               std::shared_ptr<IGradient> gradient);
    static std::shared_ptr<IGradientColorCalculator> GetObject(float min, float max, TColor32 defaultColor,
                                                               std::shared_ptr<IGradient> gradient);
    /// The ends of the range are rounded to 32-bit floats.
    static std::shared_ptr<IGradientColorCalculator> GetObject(const TValueRange& range,
                                                               std::shared_ptr<IGradient> gradient);

    /// A copy with a gradient of its own.
    /// @throws EExArgumentNilException if `source` is nil.
    static std::shared_ptr<IGradientColorCalculator> GetObject(const std::shared_ptr<IGradientColorCalculator>& source);

    /// Gradient and range of an editor; the ends of the range are rounded to 32-bit floats, the default colour is 0.
    /// @throws EExArgumentNilException if `editor` is nil.
    static std::shared_ptr<IGradientColorCalculator> GetObject(const IGradientSource* editor);
};

} // namespace lmx
