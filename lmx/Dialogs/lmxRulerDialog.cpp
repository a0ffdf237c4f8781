#include <lmx/Dialogs/lmxRulerDialog.h>

#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxFormat.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Widgets/lmxColorShape.h>

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

namespace lmx {

TRulerDialog::TRulerDialog(QWidget* parent)
    : TModalDialog(QStringLiteral("Ruler"), QStringLiteral("Ruler"), parent),
      FLocation(new QLineEdit(this)),
      FHorizontal(new QRadioButton(QStringLiteral("&Horizontal"), this)),
      FVertical(new QRadioButton(QStringLiteral("&Vertical"), this)),
      FColor(new TColorShape(this)) {
    FLocation->setObjectName(QStringLiteral("edLocation"));
    FHorizontal->setObjectName(QStringLiteral("rbHorizontal"));
    FVertical->setObjectName(QStringLiteral("rbVertical"));
    FColor->setObjectName(QStringLiteral("shpColor"));
    FColor->setAccessibleName(QStringLiteral("Color"));

    auto* orientations = new QHBoxLayout;
    orientations->addWidget(FHorizontal);
    orientations->addWidget(FVertical);
    orientations->addStretch();
    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("&Location:"), FLocation);
    form->addRow(QStringLiteral("Orientation:"), orientations);
    form->addRow(QStringLiteral("Colo&r:"), FColor);
    GetContent()->addLayout(form);
    AddButtons();

    SetRulerLocation(0);
    SetRulerColor(0xFF00FFFFU);
    SetRulerOrientation(TRulerOrientation::roVertical);
}

float TRulerDialog::GetRulerLocation() const {
    return StrToSingle(FLocation->text());
}

void TRulerDialog::SetRulerLocation(float location) {
    FLocation->setText(Format(u"%.3f", {location}));
}

TRulerOrientation TRulerDialog::GetRulerOrientation() const {
    if (FHorizontal->isChecked())
        return TRulerOrientation::roHorizontal;
    if (FVertical->isChecked())
        return TRulerOrientation::roVertical;
    throw Exception(QStringLiteral("Please select an orientation"));
}

void TRulerDialog::SetRulerOrientation(TRulerOrientation orientation) {
    (orientation == TRulerOrientation::roHorizontal ? FHorizontal : FVertical)->setChecked(true);
}

TColor32 TRulerDialog::GetRulerColor() const {
    return Color32(FColor->GetColor());
}

void TRulerDialog::SetRulerColor(TColor32 color) {
    FColor->SetColor(WinColor(color));
}

} // namespace lmx
