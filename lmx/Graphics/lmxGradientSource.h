#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <memory>

namespace lmx {

class IGradient;

/// Something that holds a gradient over a range of values, such as a control in which the user edits one.
class LMX_EXPORT IGradientSource {
public:
    virtual ~IGradientSource() = default;

    virtual std::shared_ptr<IGradient> GetGradient() const = 0;
    virtual double GetLowValue() const = 0;  ///< value at position 0
    virtual double GetHighValue() const = 0; ///< value at position 1
};

} // namespace lmx
