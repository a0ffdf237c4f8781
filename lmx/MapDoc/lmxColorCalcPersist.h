#pragma once

#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxXml.h>

#include <QString>

#include <memory>

namespace lmx {

class IBaseColorCalculator;

/// Writes the calculators of one kind into a `colorCalc` element, and reads them.
class LMX_EXPORT IColorCalcPersist {
public:
    virtual ~IColorCalcPersist() = default;

    virtual std::shared_ptr<IBaseColorCalculator> CreateCalculator() = 0;
    /// @throws EArgumentException "ColorCalc" if the calculator is of another kind.
    virtual void Write(const std::shared_ptr<IBaseColorCalculator>& calculator, TXmlNode node) = 0;
    /// @throws EArgumentException "ColorCalc" if the calculator is of another kind; EConvertError and Exception for a
    /// text that is none of such a calculator.
    virtual void Read(const std::shared_ptr<IBaseColorCalculator>& calculator, TXmlNode node) = 0;
};

/// The kinds are those of palettes, colour classes, gradients and gradients in parts. The last kind is known and has no
/// form: each operation of its persist object raises ENotImplemented "Not Implemented".
class LMX_EXPORT TColorCalcPersistFactory {
public:
    /// By the calculator's interface; nil for nil and for a calculator of a host's own kind.
    static std::unique_ptr<IColorCalcPersist> GetPersist(const std::shared_ptr<IBaseColorCalculator>& calculator);
    /// By the name of the kind, such as "GradientColorCalculator"; nil for others.
    static std::unique_ptr<IColorCalcPersist> GetPersist(const QString& name);
    /// By the attribute colorCalcType of a `colorCalc` element.
    static std::unique_ptr<IColorCalcPersist> GetPersist(TXmlNode node);
};

} // namespace lmx
