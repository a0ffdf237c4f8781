#include <lmx/MapDoc/lmxColorCalcPersist.h>

#include <lmx/Colour/lmxMultipartGradient.h>
#include <lmx/MapDoc/Private/lmxBasicPaletteColorCalculatorPersist.h>
#include <lmx/MapDoc/Private/lmxColorClassCalculatorPersist.h>
#include <lmx/MapDoc/Private/lmxGradientColorCalculatorPersist.h>
#include <lmx/MapDoc/Private/lmxMultipartGradientColorCalculatorPersist.h>

#include <array>

namespace lmx {

namespace {

struct TKind {
    QString Name;
    bool (*Supports)(const IBaseColorCalculator* calculator);
    std::unique_ptr<IColorCalcPersist> (*Create)();
};

template<class Calculator, class Persist>
TKind KindOf(const QString& name) {
    return {
        name,
        [](const IBaseColorCalculator* calculator) { return dynamic_cast<const Calculator*>(calculator) != nullptr; },
        []() -> std::unique_ptr<IColorCalcPersist> { return std::make_unique<Persist>(); }};
}

// A calculator of several kinds is written as the first of them.
const std::array<TKind, 4>& Kinds() {
    static const std::array<TKind, 4> kinds = {
        KindOf<IBasicPaletteColorCalculator, TBasicPaletteColorCalculatorPersist>(
            TBasicPaletteColorCalculatorPersist::TypeName()),
        KindOf<IColorClassCalculator, TColorClassCalculatorPersist>(TColorClassCalculatorPersist::TypeName()),
        KindOf<IGradientColorCalculator, TGradientColorCalculatorPersist>(TGradientColorCalculatorPersist::TypeName()),
        KindOf<IMultipartGradientColorCalculator, TMultipartGradientColorCalculatorPersist>(
            QStringLiteral("MultipartGradientColorCalculator"))};
    return kinds;
}

} // namespace

std::unique_ptr<IColorCalcPersist>
TColorCalcPersistFactory::GetPersist(const std::shared_ptr<IBaseColorCalculator>& calculator) {
    for (const TKind& kind : Kinds())
        if (kind.Supports(calculator.get()))
            return kind.Create();
    return nullptr;
}

std::unique_ptr<IColorCalcPersist> TColorCalcPersistFactory::GetPersist(const QString& name) {
    for (const TKind& kind : Kinds())
        if (kind.Name == name)
            return kind.Create();
    return nullptr;
}

std::unique_ptr<IColorCalcPersist> TColorCalcPersistFactory::GetPersist(TXmlNode node) {
    return GetPersist(node.GetAttribute(ColorCalcType));
}

} // namespace lmx
