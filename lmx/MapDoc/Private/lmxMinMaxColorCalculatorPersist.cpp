#include <lmx/MapDoc/Private/lmxMinMaxColorCalculatorPersist.h>

#include <lmx/MapDoc/Private/lmxMapDocTexts.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <algorithm>

namespace lmx {

namespace {

constexpr int Decimals = 5;

float ReadEnd(TXmlNode node, const QString& name) {
    return node.HasChild(name) ? StrToSingle(node.Child(name).GetText()) : 0;
}

} // namespace

void TBaseMinMaxColorCalculatorPersist::Write(const std::shared_ptr<IBaseColorCalculator>& calculator, TXmlNode node) {
    const auto ranged = CalculatorAs<IBaseMinMaxColorCalculator>(calculator);
    AddText(node, QStringLiteral("minVal"), FloatToFixed(ranged->GetMinVal(), Decimals));
    AddText(node, QStringLiteral("maxVal"), FloatToFixed(ranged->GetMaxVal(), Decimals));
}

void TBaseMinMaxColorCalculatorPersist::Read(const std::shared_ptr<IBaseColorCalculator>& calculator, TXmlNode node) {
    const auto ranged = CalculatorAs<IBaseMinMaxColorCalculator>(calculator);
    const float min = ReadEnd(node, QStringLiteral("minVal"));
    const float max = ReadEnd(node, QStringLiteral("maxVal"));
    ranged->SetMinVal(std::min(min, max));
    ranged->SetMaxVal(std::max(min, max));
}

} // namespace lmx
