#pragma once

#include <lmx/Colour/lmxColorClassCalculator.h>
#include <lmx/MapDoc/lmxColorCalcPersist.h>

namespace lmx {

class TColorClassCalculatorPersist final : public IColorCalcPersist {
public:
    static QString TypeName() { return QStringLiteral("ColorClassCalculator"); }

    std::shared_ptr<IBaseColorCalculator> CreateCalculator() override {
        return TColorClassCalculatorFactory::GetObject();
    }
    void Write(const std::shared_ptr<IBaseColorCalculator>& calculator, TXmlNode node) override;
    void Read(const std::shared_ptr<IBaseColorCalculator>& calculator, TXmlNode node) override;
};

} // namespace lmx
