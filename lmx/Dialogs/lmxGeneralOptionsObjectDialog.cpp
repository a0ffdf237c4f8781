#include <lmx/Dialogs/lmxGeneralOptionsObjectDialog.h>

#include <lmx/Widgets/lmxColor32Button.h>
#include <lmx/Widgets/lmxColorChooser.h>

#include <QCheckBox>
#include <QGridLayout>
#include <QVBoxLayout>

namespace lmx {

namespace {

QCheckBox* MakeBox(const char* name, const QString& text, QWidget* parent) {
    auto* box = new QCheckBox(text, parent);
    box->setObjectName(QString::fromLatin1(name));
    return box;
}

} // namespace

TGeneralOptionsObjectDialog::TGeneralOptionsObjectDialog(QWidget* parent)
    : TModalDialog(QStringLiteral("Object options"), QStringLiteral("Object options"), parent),
      FShowBg(MakeBox("cbShowBg", QStringLiteral("Show &background"), this)),
      FShowBorder(MakeBox("cbShowBorder", QStringLiteral("Show bo&rder"), this)),
      FLock(MakeBox("cbLock", QStringLiteral("&Lock object"), this)),
      FIsVisible(MakeBox("cbIsVisible", QStringLiteral("Is &Visible"), this)) {
    auto* rows = new QGridLayout;
    rows->setColumnStretch(0, 1);
    FBgColor = AddColorRow(*rows, FShowBg, QStringLiteral("Background color"));
    FBgColor->setObjectName(QStringLiteral("bgColorBtn"));
    FBorderColor = AddColorRow(*rows, FShowBorder, QStringLiteral("Border color"));
    FBorderColor->setObjectName(QStringLiteral("borderColorBtn"));
    rows->addWidget(FLock, rows->rowCount(), 0, 1, 2);
    rows->addWidget(FIsVisible, rows->rowCount(), 0, 1, 2);
    GetContent()->addLayout(rows);
    GetContent()->addStretch();
    setTabOrder(FShowBg, FBgColor);
    setTabOrder(FBgColor, FShowBorder);
    setTabOrder(FShowBorder, FBorderColor);
    setTabOrder(FBorderColor, FLock);
    setTabOrder(FLock, FIsVisible);
    AddButtons();

    const std::shared_ptr<IColorChooser> chooser =
        TColorChooserFactory::GetObject({TColorChooserDialogOption::coColor32});
    for (TColor32Button* button : {FBgColor, FBorderColor})
        button->SetColorChooser(chooser);
}

TColor32Button* TGeneralOptionsObjectDialog::AddColorRow(QGridLayout& rows, QCheckBox* box, const QString& colorName) {
    auto* button = new TColor32Button(this);
    button->setAccessibleName(colorName);
    button->setToolTip(colorName);
    button->SetOnColorChanged([box](TColor32Button*) { box->setChecked(true); });
    const int row = rows.rowCount();
    rows.addWidget(box, row, 0);
    rows.addWidget(button, row, 1);
    return button;
}

void TGeneralOptionsObjectDialog::SetOptions(TGeneralOptions* options) {
    if (FOptions == TBorrowed(options))
        return;
    FOptions = options;
    if (!options)
        return;
    FBgColor->SetColor(options->GetBgColor());
    FShowBg->setChecked(options->GetShowBg());
    FLock->setChecked(options->GetLockObject());
    FShowBorder->setChecked(options->GetShowBorder());
    FBorderColor->SetColor(options->GetBorderColor());
    FIsVisible->setChecked(options->GetIsVisible());
}

void TGeneralOptionsObjectDialog::OkClick() {
    if (!FOptions)
        return;
    FOptions->SetShowBg(FShowBg->isChecked());
    FOptions->SetLockObject(FLock->isChecked());
    FOptions->SetBgColor(FBgColor->GetColor());
    FOptions->SetBorderColor(FBorderColor->GetColor());
    FOptions->SetShowBorder(FShowBorder->isChecked());
    FOptions->SetIsVisible(FIsVisible->isChecked());
    accept();
}

} // namespace lmx
