#include "PictureExport.h"

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Widgets/lmxEventGuard.h>
#include <lmx/Widgets/lmxFileDialog.h>
#include <lmx/Widgets/lmxOwnedDialog.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPointer>
#include <QSpinBox>

namespace {

constexpr int MostUnits = 20000;

template<class Box>
Box* Named(Box* box, const char* name) {
    box->setObjectName(QString::fromLatin1(name));
    return box;
}

} // namespace

TPictureDialog::TPictureDialog(QWidget* parent)
    : QDialog(parent),
      FTitle(Named(new QLineEdit(this), "Title")),
      FTime(Named(new QLineEdit(this), "Time")),
      FWidth(Named(new QSpinBox(this), "Width")),
      FHeight(Named(new QSpinBox(this), "Height")),
      FDensity(Named(new QDoubleSpinBox(this), "Density")),
      FArea(Named(new QComboBox(this), "Area")),
      FLegends(Named(new QCheckBox(tr("&Legends"), this), "Legends")),
      FScale(Named(new QCheckBox(tr("&Scale bar"), this), "Scale")),
      FRose(Named(new QCheckBox(tr("&Compass rose"), this), "Rose")),
      FAnnotations(Named(new QCheckBox(tr("A&nnotations of the map"), this), "Annotations")) {
    setWindowTitle(tr("Export picture"));
    FWidth->setRange(1, MostUnits);
    FHeight->setRange(1, MostUnits);
    FDensity->setRange(0.25, 16);
    FDensity->setSingleStep(0.5);
    FDensity->setValue(2);
    FDensity->setToolTip(tr("1 for screens, 3.13 for 300 pixels an inch"));
    FArea->addItems({tr("What the window shows"), tr("The whole world")});
    FLegends->setChecked(true);
    FScale->setChecked(true);
    auto* form = new QFormLayout(this);
    form->addRow(tr("&Title:"), FTitle);
    form->addRow(tr("Ti&me of the data:"), FTime);
    form->addRow(tr("&Width (1/96 inch):"), FWidth);
    form->addRow(tr("&Height (1/96 inch):"), FHeight);
    form->addRow(tr("&Pixels in a unit:"), FDensity);
    form->addRow(tr("&Area:"), FArea);
    for (QCheckBox* box : {FLegends, FScale, FRose, FAnnotations})
        form->addRow(box);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    form->addRow(buttons);
}

void TPictureDialog::Begin(lmx::TSize size, const QString& title, const QString& time) {
    FWidth->setValue(size.cx);
    FHeight->setValue(size.cy);
    FTitle->setText(title);
    FTime->setText(time);
}

lmx::TMapPictureOptions TPictureDialog::GetOptions(const lmx::TMapArea& visible) const {
    lmx::TMapPictureOptions options;
    options.Size = {FWidth->value(), FHeight->value()};
    options.Density = FDensity->value();
    options.Title = FTitle->text();
    options.Time = FTime->text();
    if (FArea->currentIndex() == 0)
        options.Area = visible;
    options.ShowsLegends = FLegends->isChecked();
    options.ShowsScale = FScale->isChecked();
    options.ShowsCompassRose = FRose->isChecked();
    options.ShowsAnnotations = FAnnotations->isChecked();
    return options;
}

void ExportPicture(lmx::TMapViewControl& view, const QString& time, QWidget* window) {
    if (!view.WorldCreated() || !view.GetLayerManager())
        return;
    const QPointer<QWidget> owner(window);
    const lmx::TMapArea visible = view.GetWorldSystem()->ConstrainRect(view.GetViewport()->GetVisibleMapArea());
    lmx::TMapPicture picture(view.GetLayerManager(), view.GetWorldSystem());
    lmx::TOwnedDialog<TPictureDialog> dialog(window);
    dialog->Begin({view.width(), view.height()}, view.GetLayerManager()->GetTitle(), time);
    if (dialog.Execute() != QDialog::Accepted)
        return;
    picture.SetOptions(dialog->GetOptions(visible));
    lmx::TFileDialogRequest request;
    request.Title = QObject::tr("Export picture");
    request.Filter = QObject::tr("Pictures (PNG)") + "|*.png|" + QObject::tr("Pages (PDF)") + "|*.pdf";
    request.DefaultExtension = "png";
    QString fileName;
    if (owner && lmx::TFileDialog::Save(request, fileName, window))
        lmx::GuardEvent(owner, [&] { picture.Save(fileName); });
}

void SaveSheet(lmx::TMapViewControl& view, const QString& title, const QString& time, const QString& fileName) {
    lmx::TMapPictureOptions options;
    options.Density = 2;
    options.Title = title;
    options.Time = time;
    options.ShowsLegends = true;
    options.ShowsScale = true;
    options.Size = {1200, 640};    // little room is left around a world
    options.MapColor = 0xFFE2E2E2; // land, and where there are no data
    lmx::TMapPicture(view.GetLayerManager(), view.GetWorldSystem(), options).Save(fileName);
}
