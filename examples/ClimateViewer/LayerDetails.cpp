#include "LayerDetails.h"

#include <lmx/Formats/Idrisi/lmxAbstractImage.h>
#include <lmx/Layers/lmxBaseShapeLayer.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Widgets/lmxColorChooser.h>
#include <lmx/Widgets/lmxEventGuard.h>

#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSlider>
#include <QVBoxLayout>

#include "ColorSchemes.h"
#include "ColorStrip.h"

namespace {

constexpr QSize SwatchSize(28, 12);

QIcon Swatch(lmx::TColor32 color, double ratio) {
    QPixmap swatch(SwatchSize * ratio);
    swatch.setDevicePixelRatio(ratio);
    swatch.fill(QColor::fromRgba(color));
    QPainter painter(&swatch);
    painter.setPen(Qt::darkGray);
    painter.drawRect(0, 0, SwatchSize.width() - 1, SwatchSize.height() - 1);
    return QIcon(swatch);
}

QString UnitsOf(const lmx::TRasterMapLayer& raster) {
    const auto* image = dynamic_cast<const lmx::TIdrisiMapLayer*>(&raster);
    return image && image->GetImage() ? image->GetImage()->getHeader()->GetValueUnits() : QString();
}

} // namespace

TLayerDetails::TLayerDetails(lmx::TBaseMapLayer* layer, QWidget* parent)
    : QWidget(parent),
      FRaster(dynamic_cast<lmx::TRasterMapLayer*>(layer)),
      FShapes(dynamic_cast<lmx::TBaseShapeLayer*>(layer)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(3);
    if (FRaster) {
        AddOpacity();
        AddColors();
    }
    if (FShapes)
        AddColorButton();
    layer->GetOnInvalidated().Add(this, &TLayerDetails::Layer_Changed);
    layer->GetOnReadyToDrawChanged().Add(this, &TLayerDetails::Layer_Changed);
    Update();
}

void TLayerDetails::SetLayerName(const QString& name) {
    if (FOpacity)
        FOpacity->setAccessibleName(tr("Opacity of %1").arg(name));
    if (FColors)
        FColors->setAccessibleName(tr("Colours of %1").arg(name));
    if (FStrip)
        FStrip->setAccessibleName(tr("Scale of %1").arg(name));
    if (FColorButton)
        FColorButton->setAccessibleName(tr("Colour of %1").arg(name));
}

void TLayerDetails::SetHasLegend(bool hasLegend) {
    if (FStrip)
        FStrip->setVisible(!hasLegend);
    if (FColorButton)
        FColorButton->setVisible(!hasLegend);
}

void TLayerDetails::AddOpacity() {
    FOpacity = new QSlider(Qt::Horizontal, this);
    FOpacity->setRange(0, 255);
    FOpacity->setPageStep(32);
    FOpacity->setToolTip(tr("Opacity"));
    FOpacity->setFocusPolicy(Qt::StrongFocus);
    FOpacity->installEventFilter(this);
    FOpacityText = new QLabel(this);
    FOpacityText->setMinimumWidth(fontMetrics().horizontalAdvance("100 %"));
    FOpacityText->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto* line = new QHBoxLayout;
    line->addWidget(FOpacity, 1);
    line->addWidget(FOpacityText);
    static_cast<QVBoxLayout*>(layout())->addLayout(line);
    connect(FOpacity, &QSlider::valueChanged, this, [this](int value) {
        if (FRaster)
            FRaster->SetOpacity(static_cast<std::uint8_t>(value));
    });
}

void TLayerDetails::AddColors() {
    FColors = new QComboBox(this);
    FColors->addItem(tr("Own colours"));
    QString group;
    for (const TColorSchemeName& scheme : ColorSchemeNames()) {
        if (scheme.Group != group)
            FColors->insertSeparator(FColors->count());
        group = scheme.Group;
        FColors->addItem(scheme.Name);
    }
    FColors->setMaxVisibleItems(FColors->count());
    FColors->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    FColors->setMinimumContentsLength(12);
    FColors->setFocusPolicy(Qt::StrongFocus);
    FColors->installEventFilter(this);
    FStrip = new TColorStrip(this);
    layout()->addWidget(FColors);
    layout()->addWidget(FStrip);
    connect(FColors, &QComboBox::activated, this, [this](int index) { ChooseColors(index); });
}

void TLayerDetails::ChooseColors(int index) {
    lmx::GuardEvent(this, [&] {
        if (FRaster)
            FShownColors =
                index == 0 ? FOwnColors : MakeColorScheme(FColors->itemText(index), FRaster->GetValueRange());
        FShownIndex = index;
    });
    if (FRaster)
        FRaster->SetColorCalc(FShownColors);
    Update();
}

// The wheel over what has not the focus scrolls the panel.
bool TLayerDetails::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::Wheel || static_cast<QWidget*>(watched)->hasFocus())
        return QWidget::eventFilter(watched, event);
    event->ignore();
    return true;
}

void TLayerDetails::AddColorButton() {
    FColorButton = new QPushButton(tr("Colour..."), this);
    FColorButton->setIconSize(SwatchSize);
    layout()->addWidget(FColorButton);
    connect(FColorButton, &QPushButton::clicked, this,
            [this] { lmx::GuardEvent(window(), [this] { ChooseColor(); }); });
}

void TLayerDetails::ChooseColor() {
    if (!FShapes)
        return;
    const auto shapes = FShapes; // this row may go while the user chooses
    const auto chooser = lmx::TColorChooserFactory::GetObject();
    chooser->SetColor32(shapes->GetColor());
    if (chooser->Execute(window()) && shapes)
        shapes->SetColor(chooser->GetColor32());
}

void TLayerDetails::Layer_Changed(lmx::TBaseMapLayer*) {
    Update();
}

void TLayerDetails::Update() {
    if (FRaster)
        UpdateRaster();
    if (FShapes)
        FColorButton->setIcon(Swatch(FShapes->GetColor(), devicePixelRatioF()));
}

// Colours that somebody else has set are the layer's own from now on.
void TLayerDetails::UpdateRaster() {
    const QSignalBlocker silence(FOpacity);
    FOpacity->setValue(FRaster->GetOpacity());
    FOpacityText->setText(lmx::FloatToFixed(FRaster->GetOpacity() / 2.55L, 0) + " %");
    const auto colors = FRaster->GetColorCalc();
    if (colors != FShownColors) {
        FOwnColors = FShownColors = colors;
        FShownIndex = 0;
    }
    FColors->setCurrentIndex(FShownIndex);
    FStrip->SetColors(colors, FRaster->GetValueRange(), UnitsOf(*FRaster.Get()));
}
