#include <lmx/MapDoc/Private/lmxGradientColorCalculatorPersist.h>

#include <lmx/Graphics/lmxColorText.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/MapDoc/Private/lmxMapDocTexts.h>

namespace lmx {

namespace {

const QString DefaultColor = QStringLiteral("defaultColor");
const QString Gradient = QStringLiteral("gradient");

} // namespace

void TGradientColorCalculatorPersist::Write(const std::shared_ptr<IBaseColorCalculator>& calculator, TXmlNode node) {
    const auto colors = CalculatorAs<IGradientColorCalculator>(calculator);
    const auto gradient = colors->GetGradient();
    if (!gradient)
        throw EInvalidOperation(QStringLiteral("Gradient not specified"));
    node.SetAttribute(ColorCalcType, TypeName());
    AddText(node, DefaultColor, Color32ToString(colors->GetDefaultColor()));
    AddText(node, Gradient, gradient->ToString());
    TBaseMinMaxColorCalculatorPersist::Write(calculator, node);
}

void TGradientColorCalculatorPersist::Read(const std::shared_ptr<IBaseColorCalculator>& calculator, TXmlNode node) {
    const auto colors = CalculatorAs<IGradientColorCalculator>(calculator);
    const QString missing = QStringLiteral("Missing gradient nodes");
    const QString defaultColor = RequiredText(node, DefaultColor, missing);
    const QString text = RequiredText(node, Gradient, missing);
    colors->SetDefaultColor(StringToColor32(defaultColor));
    auto gradient = TGradientFactory::GetObject();
    gradient->FromString(text);
    colors->SetGradient(std::move(gradient));
    TBaseMinMaxColorCalculatorPersist::Read(calculator, node);
}

} // namespace lmx
