#pragma once

#include <lmx/Colour/lmxBaseColorCalculator.h>
#include <lmx/MapDoc/lmxColorCalcPersist.h>
#include <lmx/Runtime/lmxExceptions.h>

namespace lmx {

inline const QString ColorCalcType = QStringLiteral("colorCalcType");

/// The calculator as one of a kind.
/// @throws EArgumentException "ColorCalc" if it is of another one, or nil.
template<class Calculator>
std::shared_ptr<Calculator> CalculatorAs(const std::shared_ptr<IBaseColorCalculator>& calculator) {
    auto wanted = std::dynamic_pointer_cast<Calculator>(calculator);
    if (!wanted)
        throw EArgumentException(QStringLiteral("ColorCalc"));
    return wanted;
}

/// What calculators with a range share: the elements minVal and maxVal, five decimals each.
class TBaseMinMaxColorCalculatorPersist : public IColorCalcPersist {
public:
    void Write(const std::shared_ptr<IBaseColorCalculator>& calculator, TXmlNode node) override;
    /// An absent end is 0, and exchanged ends are put in order.
    void Read(const std::shared_ptr<IBaseColorCalculator>& calculator, TXmlNode node) override;
};

} // namespace lmx
