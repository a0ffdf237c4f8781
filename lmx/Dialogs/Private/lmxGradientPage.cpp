#include <lmx/Dialogs/Private/lmxGradientPage.h>

#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Dialogs/lmxGradientEditorFrame.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Widgets/lmxGradientEditor.h>

#include <QVBoxLayout>

namespace lmx {

TGradientPage::TGradientPage(QWidget* parent) : QWidget(parent), FEditorFrame(new TGradientEditorFrame(this)) {
    FEditorFrame->setObjectName(QStringLiteral("SingleGradientEditor"));
    auto* column = new QVBoxLayout(this);
    column->addWidget(FEditorFrame);
}

void TGradientPage::SetValueRange(const TValueRange& range) {
    FEditorFrame->SetValueRange(range.Low, range.High);
}

void TGradientPage::SetGradient(const IGradientColorCalculator& calculator) {
    FEditorFrame->SetValueRange(calculator.GetMinVal(), calculator.GetMaxVal());
    if (const auto gradient = calculator.GetGradient())
        for (const TColorStop& stop : gradient->GetColorStops())
            FEditorFrame->GetGradEdit()->Add(stop.Color, stop.Location);
    FEditorFrame->GetGradEdit()->ForgetChanges(); // of which none is the user's
}

std::shared_ptr<IGradientColorCalculator> TGradientPage::CreateColorCalc() const {
    return TGradientColorCalculatorFactory::GetObject(FEditorFrame->GetGradEdit());
}

} // namespace lmx
