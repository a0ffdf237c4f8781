#pragma once

#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/MapDoc/Private/lmxMinMaxColorCalculatorPersist.h>

namespace lmx {

class TGradientColorCalculatorPersist final : public TBaseMinMaxColorCalculatorPersist {
public:
    static QString TypeName() { return QStringLiteral("GradientColorCalculator"); }

    std::shared_ptr<IBaseColorCalculator> CreateCalculator() override {
        return TGradientColorCalculatorFactory::GetObject();
    }
    void Write(const std::shared_ptr<IBaseColorCalculator>& calculator, TXmlNode node) override;
    void Read(const std::shared_ptr<IBaseColorCalculator>& calculator, TXmlNode node) override;
};

} // namespace lmx
