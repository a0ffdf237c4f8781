#include <lmx/Dialogs/lmxAddMPGradientDialog.h>

#include <lmx/Dialogs/lmxGradientEditorFrame.h>
#include <lmx/Runtime/lmxFormat.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Widgets/lmxEventGuard.h>
#include <lmx/Widgets/lmxGradientEditor.h>
#include <lmx/Widgets/lmxMsgBox.h>

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace lmx {

TAddMPGradientDialog::TAddMPGradientDialog(QWidget* parent)
    : TModalDialog(QStringLiteral("Gradient"), QStringLiteral("Gradient range"), parent),
      FFullRange(new QLabel(this)),
      FMin(new QLineEdit(this)),
      FMax(new QLineEdit(this)),
      FFrame(new TGradientEditorFrame(this)) {
    FFullRange->setObjectName(QStringLiteral("lbFullRange"));
    FMin->setObjectName(QStringLiteral("edMin"));
    FMax->setObjectName(QStringLiteral("edMax"));
    FFrame->setObjectName(QStringLiteral("GradEditFrame"));
    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Full range: "), FFullRange);
    form->addRow(QStringLiteral("&Min value:"), FMin);
    form->addRow(QStringLiteral("Ma&x value:"), FMax);
    GetContent()->addLayout(form);
    GetContent()->addWidget(FFrame, 1);
    AddButtons();
    connect(FMin, &QLineEdit::textChanged, this, [this] { GuardEvent(this, [this] { MinChange(); }); });
    connect(FMax, &QLineEdit::textChanged, this, [this] { GuardEvent(this, [this] { MaxChange(); }); });
}

void TAddMPGradientDialog::SetValueRange(const TValueRange& range) {
    FValueRange = range;
    FFullRange->setText(Format(u"%.3f - %.3f", {range.Low, range.High}));
}

void TAddMPGradientDialog::SetData(const TMPGradItem& item) {
    FMin->setText(Format(u"%.3f", {item.Min}));
    FMax->setText(Format(u"%.3f", {item.Max}));
    for (const TColorStop& stop : item.Stops)
        FFrame->GetGradEdit()->Add(stop.Color, stop.Location);
    FFrame->GetGradEdit()->ForgetChanges(); // of which none is the user's
}

void TAddMPGradientDialog::MinChange() {
    if (double low = 0; TryStrToFloat(FMin->text(), low))
        FFrame->SetValueRange(low, FFrame->GetGradEdit()->GetHighValue());
}

void TAddMPGradientDialog::MaxChange() {
    if (double high = 0; TryStrToFloat(FMax->text(), high))
        FFrame->SetValueRange(FFrame->GetGradEdit()->GetLowValue(), high);
}

float TAddMPGradientDialog::GetMin() const {
    return StrToSingle(FMin->text());
}

float TAddMPGradientDialog::GetMax() const {
    return StrToSingle(FMax->text());
}

std::vector<TColorStop> TAddMPGradientDialog::GetStops() const {
    return FFrame->GetGradEdit()->GetStops().GetStops();
}

void TAddMPGradientDialog::OkClick() {
    float number = 0;
    if (!TryStrToFloat(FMin->text(), number) || !TryStrToFloat(FMax->text(), number))
        return TMsgBox::Error(QStringLiteral("Please enter a min and max value."), QStringLiteral("Value"), this);
    if (GetStops().empty())
        return TMsgBox::Error(QStringLiteral("Please add one or more colors to the gradient."),
                              QStringLiteral("Colors"), this);
    accept();
}

} // namespace lmx
