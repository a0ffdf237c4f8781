#include <lmx/MapDoc/Private/lmxColorClassCalculatorPersist.h>

#include <lmx/MapDoc/Private/lmxMapDocTexts.h>
#include <lmx/MapDoc/Private/lmxMinMaxColorCalculatorPersist.h>
#include <lmx/Runtime/lmxNumberText.h>

namespace lmx {

namespace {

constexpr int PolicyCount = 2;
const QString OutOfRangePolicy = QStringLiteral("outOfRangePolicy");
const QString ColorClasses = QStringLiteral("colorClasses");

} // namespace

void TColorClassCalculatorPersist::Write(const std::shared_ptr<IBaseColorCalculator>& calculator, TXmlNode node) {
    const auto colors = CalculatorAs<IColorClassCalculator>(calculator);
    node.SetAttribute(ColorCalcType, TypeName());
    AddText(node, OutOfRangePolicy, IntToStr(static_cast<int>(colors->GetOutOfRangePolicy())));
    if (const auto classes = colors->GetColorClasses())
        AddText(node, ColorClasses, classes->Serialize());
}

void TColorClassCalculatorPersist::Read(const std::shared_ptr<IBaseColorCalculator>& calculator, TXmlNode node) {
    const auto colors = CalculatorAs<IColorClassCalculator>(calculator);
    const int policy = TextToOrdinal(node.Child(OutOfRangePolicy).GetText(), PolicyCount);
    colors->SetOutOfRangePolicy(static_cast<TOutOfRangePolicy>(policy));
    if (node.HasChild(ColorClasses))
        colors->SetColorClasses(TColorClassesFactory::GetObject(node.Child(ColorClasses).GetText()));
}

} // namespace lmx
