#include <lmx/Dialogs/lmxAddColorClassDialog.h>

#include <lmx/Runtime/lmxFormat.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Widgets/lmxColor32Button.h>
#include <lmx/Widgets/lmxColorChooser.h>
#include <lmx/Widgets/lmxMsgBox.h>

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace lmx {

TAddColorClassDialog::TAddColorClassDialog(QWidget* parent)
    : TModalDialog(QStringLiteral("Color class"), QStringLiteral("Set color class"), parent),
      FFullRange(new QLabel(this)),
      FMin(new QLineEdit(this)),
      FMax(new QLineEdit(this)),
      FClassLabel(new QLineEdit(this)),
      FColor(new TColor32Button(this)) {
    FFullRange->setObjectName(QStringLiteral("lbFullRange"));
    FMin->setObjectName(QStringLiteral("edMin"));
    FMax->setObjectName(QStringLiteral("edMax"));
    FClassLabel->setObjectName(QStringLiteral("edClassLabel"));
    FColor->setObjectName(QStringLiteral("btnColorShape"));
    FColor->setAccessibleName(QStringLiteral("Color"));
    FColor->SetColorChooser(TColorChooserFactory::GetObject({TColorChooserDialogOption::coColor32}));
    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Full range: "), FFullRange);
    form->addRow(QStringLiteral("&Min value:"), FMin);
    form->addRow(QStringLiteral("Ma&x value:"), FMax);
    form->addRow(QStringLiteral("Class &label:"), FClassLabel);
    form->addRow(QString(), new QLabel(QStringLiteral("Leave blank to use default range label"), this));
    form->addRow(QStringLiteral("Colo&r:"), FColor);
    GetContent()->addLayout(form);
    GetContent()->addStretch();
    AddButtons();
}

void TAddColorClassDialog::SetValueRange(const TValueRange& range) {
    FFullRange->setText(Format(u"%.3f - %.3f", {range.Low, range.High}));
}

float TAddColorClassDialog::GetMin() const {
    return StrToSingle(FMin->text());
}

float TAddColorClassDialog::GetMax() const {
    return StrToSingle(FMax->text());
}

void TAddColorClassDialog::SetMin(float min) {
    FMin->setText(Format(u"%.3f", {min}));
}

void TAddColorClassDialog::SetMax(float max) {
    FMax->setText(Format(u"%.3f", {max}));
}

QString TAddColorClassDialog::GetClassLabel() const {
    return FClassLabel->text();
}

void TAddColorClassDialog::SetClassLabel(const QString& label) {
    FClassLabel->setText(label);
}

TColor32 TAddColorClassDialog::GetClassColor() const {
    return FColor->GetColor();
}

void TAddColorClassDialog::SetClassColor(TColor32 color) {
    FColor->SetColor(color);
}

void TAddColorClassDialog::OkClick() {
    float number = 0;
    if (!TryStrToFloat(FMin->text(), number) || !TryStrToFloat(FMax->text(), number))
        return TMsgBox::Error(QStringLiteral("Please enter the min and max range for the color class."),
                              QStringLiteral("Range"), this);
    accept();
}

} // namespace lmx
