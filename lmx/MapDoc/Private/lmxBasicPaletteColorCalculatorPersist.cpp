#include <lmx/MapDoc/Private/lmxBasicPaletteColorCalculatorPersist.h>

#include <lmx/MapDoc/Private/lmxMapDocTexts.h>
#include <lmx/Runtime/lmxNumberText.h>

namespace lmx {

namespace {

const QString ReserveFirstColor = QStringLiteral("reserveFirstColorForNoData");
const QString ColorKey = QStringLiteral("colorKey");

} // namespace

void TBasicPaletteColorCalculatorPersist::Write(const std::shared_ptr<IBaseColorCalculator>& calculator,
                                                TXmlNode node) {
    const auto palette = CalculatorAs<IBasicPaletteColorCalculator>(calculator);
    node.SetAttribute(ColorCalcType, TypeName());
    AddText(node, ReserveFirstColor, BoolToStr(palette->GetReserveFirstColorForNoData()));
    if (const auto key = palette->GetColorKey())
        AddText(node, ColorKey, key->Serialize());
    TBaseMinMaxColorCalculatorPersist::Write(calculator, node);
}

void TBasicPaletteColorCalculatorPersist::Read(const std::shared_ptr<IBaseColorCalculator>& calculator, TXmlNode node) {
    const auto palette = CalculatorAs<IBasicPaletteColorCalculator>(calculator);
    if (node.HasChild(ReserveFirstColor))
        palette->SetReserveFirstColorForNoData(StrToBool(node.Child(ReserveFirstColor).GetText()));
    if (node.HasChild(ColorKey))
        palette->SetColorKey(TColorKeyFactory::GetObject(node.Child(ColorKey).GetText()));
    TBaseMinMaxColorCalculatorPersist::Read(calculator, node);
}

} // namespace lmx
