#include <lmx/Dialogs/lmxCompassRoseObjectDialog.h>

#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Widgets/lmxColorShape.h>

#include <QFormLayout>
#include <QVBoxLayout>

namespace lmx {

TCompassRoseObjectDialog::TCompassRoseObjectDialog(QWidget* parent)
    : TModalDialog(QStringLiteral("Compass rose options"), QStringLiteral("Compass rose options"), parent) {
    auto* form = new QFormLayout;
    FDark = AddColor(*form, "shpDark", QStringLiteral("&Dark color:"));
    FLight = AddColor(*form, "shpLight", QStringLiteral("&Light color:"));
    FFont = AddColor(*form, "shpFont", QStringLiteral("&Font color:"));
    FLine = AddColor(*form, "shpLine", QStringLiteral("Li&ne color:"));
    GetContent()->addLayout(form);
    GetContent()->addStretch();
    AddButtons();
}

TColorShape* TCompassRoseObjectDialog::AddColor(QFormLayout& form, const char* name, const QString& label) {
    auto* shape = new TColorShape(this);
    shape->setObjectName(QString::fromLatin1(name));
    form.addRow(label, shape);
    return shape;
}

TColor32 TCompassRoseObjectDialog::GetDarkColor() const {
    return Color32(FDark->GetColor());
}

void TCompassRoseObjectDialog::SetDarkColor(TColor32 color) {
    FDark->SetColor(WinColor(color));
}

TColor32 TCompassRoseObjectDialog::GetLightColor() const {
    return Color32(FLight->GetColor());
}

void TCompassRoseObjectDialog::SetLightColor(TColor32 color) {
    FLight->SetColor(WinColor(color));
}

TColor32 TCompassRoseObjectDialog::GetFontColor() const {
    return Color32(FFont->GetColor());
}

void TCompassRoseObjectDialog::SetFontColor(TColor32 color) {
    FFont->SetColor(WinColor(color));
}

TColor32 TCompassRoseObjectDialog::GetLineColor() const {
    return Color32(FLine->GetColor());
}

void TCompassRoseObjectDialog::SetLineColor(TColor32 color) {
    FLine->SetColor(WinColor(color));
}

} // namespace lmx
