#include <lmx/Dialogs/lmxInfoQueryPointDialog.h>

#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Runtime/lmxFormat.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Widgets/lmxColorShape.h>
#include <lmx/Widgets/lmxMsgBox.h>

#include <QFormLayout>
#include <QLineEdit>
#include <QPointer>
#include <QVBoxLayout>

namespace lmx {

TInfoQueryPointDialog::TInfoQueryPointDialog(QWidget* parent)
    : TModalDialog(QStringLiteral("Info query point"), QStringLiteral("Info query point"), parent),
      FPointX(new QLineEdit(this)),
      FPointY(new QLineEdit(this)),
      FPointLabel(new QLineEdit(this)),
      FColor(new TColorShape(this)) {
    FPointX->setObjectName(QStringLiteral("edPointX"));
    FPointY->setObjectName(QStringLiteral("edPointY"));
    FPointLabel->setObjectName(QStringLiteral("edPointLabel"));
    FColor->setObjectName(QStringLiteral("shpColor"));
    FColor->setAccessibleName(QStringLiteral("Color"));

    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("&X:"), FPointX);
    form->addRow(QStringLiteral("&Y:"), FPointY);
    form->addRow(QStringLiteral("&Label (optional):"), FPointLabel);
    form->addRow(QStringLiteral("Colo&r:"), FColor);
    GetContent()->addLayout(form);
    GetContent()->addStretch();
    AddButtons();
}

extended TInfoQueryPointDialog::GetPointX() const {
    return StrToFloat(FPointX->text());
}

extended TInfoQueryPointDialog::GetPointY() const {
    return StrToFloat(FPointY->text());
}

void TInfoQueryPointDialog::SetPointX(extended x) {
    FPointX->setText(Format(u"%.5f", {x}));
}

void TInfoQueryPointDialog::SetPointY(extended y) {
    FPointY->setText(Format(u"%.5f", {y}));
}

QString TInfoQueryPointDialog::GetPointLabel() const {
    return FPointLabel->text();
}

void TInfoQueryPointDialog::SetPointLabel(const QString& label) {
    FPointLabel->setText(label);
}

TColor32 TInfoQueryPointDialog::GetPointColor() const {
    return Color32(FColor->GetColor());
}

void TInfoQueryPointDialog::SetPointColor(TColor32 color) {
    FColor->SetColor(WinColor(color));
}

// The dialog may go while the message is read.
bool TInfoQueryPointDialog::RequireNumber(QLineEdit& edit, const QString& message) {
    extended number = 0;
    if (TryStrToFloat(edit.text(), number))
        return true;
    const QPointer<QLineEdit> field(&edit);
    TMsgBox::Info(message, QStringLiteral("Value"), this);
    if (field) {
        field->setFocus();
        field->selectAll();
    }
    return false;
}

void TInfoQueryPointDialog::OkClick() {
    if (RequireNumber(*FPointX, QStringLiteral("Please enter a number for X")) &&
        RequireNumber(*FPointY, QStringLiteral("Please enter a number for Y")))
        accept();
}

} // namespace lmx
