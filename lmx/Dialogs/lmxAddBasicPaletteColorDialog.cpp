#include <lmx/Dialogs/lmxAddBasicPaletteColorDialog.h>

#include <lmx/Widgets/lmxColor32Button.h>
#include <lmx/Widgets/lmxColorChooser.h>

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace lmx {

TAddBasicPaletteColorDialog::TAddBasicPaletteColorDialog(QWidget* parent)
    : TModalDialog(QStringLiteral("Basic palette color"), QStringLiteral("Set color"), parent),
      FLabel(new QLineEdit(this)),
      FColor(new TColor32Button(this)) {
    FLabel->setObjectName(QStringLiteral("edLabel"));
    FColor->setObjectName(QStringLiteral("btnColorShape"));
    FColor->setAccessibleName(QStringLiteral("Color"));
    FColor->SetColorChooser(TColorChooserFactory::GetObject({TColorChooserDialogOption::coColor32}));
    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("&Label:"), FLabel);
    form->addRow(QString(), new QLabel(QStringLiteral("Leave blank to use default range label"), this));
    form->addRow(QStringLiteral("Colo&r:"), FColor);
    GetContent()->addLayout(form);
    GetContent()->addStretch();
    AddButtons();
}

QString TAddBasicPaletteColorDialog::GetPalLabel() const {
    return FLabel->text();
}

void TAddBasicPaletteColorDialog::SetPalLabel(const QString& label) {
    FLabel->setText(label);
}

TColor32 TAddBasicPaletteColorDialog::GetPalColor() const {
    return FColor->GetColor();
}

void TAddBasicPaletteColorDialog::SetPalColor(TColor32 color) {
    FColor->SetColor(color);
}

} // namespace lmx
