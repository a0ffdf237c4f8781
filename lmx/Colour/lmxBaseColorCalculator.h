#pragma once

#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Runtime/lmxExport.h>

#include <memory>

namespace lmx {

/// Says what a value looks like. A calculator sees numbers only: that a cell holds no data is known, and settled,
/// before it is asked. What it does with a value outside its range is its own rule. Setters store and tell nobody;
/// whoever changes a calculator tells the layer that uses it.
class LMX_EXPORT IBaseColorCalculator {
public:
    virtual ~IBaseColorCalculator() = default;

    virtual TColor32 GetColor(float value) const = 0;

    /// A new calculator, independent of this one.
    virtual std::shared_ptr<IBaseColorCalculator> Clone() const = 0;
};

/// A calculator whose colours are spread over a range of values.
class LMX_EXPORT IBaseMinMaxColorCalculator : public IBaseColorCalculator {
public:
    virtual float GetMinVal() const = 0;
    virtual float GetMaxVal() const = 0;
    virtual void SetMinVal(float value) = 0;
    virtual void SetMaxVal(float value) = 0;

    /// A new calculator with another range.
    virtual std::shared_ptr<IBaseColorCalculator> Clone(float min, float max) const = 0;
    using IBaseColorCalculator::Clone;
};

/// Keeps the range of a calculator. The interface is a virtual base, so that a calculator can derive from this class
/// and implement an interface of its own that stands on the same one.
class LMX_EXPORT TBaseMinMaxColorCalculator : public virtual IBaseMinMaxColorCalculator {
public:
    TColor32 GetColor(float value) const override = 0;
    std::shared_ptr<IBaseColorCalculator> Clone() const override = 0;
    std::shared_ptr<IBaseColorCalculator> Clone(float min, float max) const override = 0;

    float GetMinVal() const override { return FMinVal; }
    float GetMaxVal() const override { return FMaxVal; }
    void SetMinVal(float value) override { FMinVal = value; }
    void SetMaxVal(float value) override { FMaxVal = value; }

protected:
    TBaseMinMaxColorCalculator() = default;
    TBaseMinMaxColorCalculator(float min, float max) : FMinVal(min), FMaxVal(max) {}

private:
    float FMinVal = 0;
    float FMaxVal = 0;
};

} // namespace lmx
