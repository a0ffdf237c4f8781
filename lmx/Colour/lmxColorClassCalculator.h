#pragma once

#include <lmx/Colour/lmxBaseColorCalculator.h>
#include <lmx/Colour/lmxColorClassList.h>
#include <lmx/Runtime/lmxExport.h>

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <span>

namespace lmx {

/// Gives a value the colour of its class (IColorClasses::GetClass under the out-of-range policy), and 0, fully
/// transparent, to a value without one. It has no range of its own.
///
/// GetColor raises EInvalidOperation "ColorClasses not specified" without classes.
/// Clone() has a copy of the classes and the policy orpReturnNil: whoever needs the policy sets it on the clone.
class LMX_EXPORT IColorClassCalculator : public IBaseColorCalculator {
public:
    virtual std::shared_ptr<IColorClasses> GetColorClasses() const = 0; ///< may be nil
    virtual void SetColorClasses(std::shared_ptr<IColorClasses> classes) = 0;
    virtual TOutOfRangePolicy GetOutOfRangePolicy() const = 0;
    virtual void SetOutOfRangePolicy(TOutOfRangePolicy policy) = 0;
};

/// Every calculator begins with orpReturnNil.
class LMX_EXPORT TColorClassCalculatorFactory {
public:
    /// No classes.
    static std::shared_ptr<IColorClassCalculator> GetObject();

    /// A calculator with a copy of the classes; the policy is not taken over.
    /// @throws EExArgumentNilException if `source` is nil.
    static std::shared_ptr<IColorClassCalculator> GetObject(const std::shared_ptr<IColorClassCalculator>& source);

    /// The classes are shared, not copied.
    static std::shared_ptr<IColorClassCalculator> GetObject(std::shared_ptr<IColorClasses> classes);

    /// A new list with copies of the classes.
    static std::shared_ptr<IColorClassCalculator> GetObject(std::span<const TColorClass* const> classes);
    static std::shared_ptr<IColorClassCalculator> GetObject(std::initializer_list<TColorClass> classes);

    /// No classes.
    static std::shared_ptr<IColorClassCalculator> GetObject(std::nullptr_t);
};

} // namespace lmx
