#pragma once

#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>
#include <lmx/MapDoc/Private/lmxMinMaxColorCalculatorPersist.h>

namespace lmx {

class TBasicPaletteColorCalculatorPersist final : public TBaseMinMaxColorCalculatorPersist {
public:
    static QString TypeName() { return QStringLiteral("BasicPaletteColorCalculator"); }

    std::shared_ptr<IBaseColorCalculator> CreateCalculator() override {
        return TBasicPaletteColorCalculatorFactory::GetObject();
    }
    void Write(const std::shared_ptr<IBaseColorCalculator>& calculator, TXmlNode node) override;
    void Read(const std::shared_ptr<IBaseColorCalculator>& calculator, TXmlNode node) override;
};

} // namespace lmx
