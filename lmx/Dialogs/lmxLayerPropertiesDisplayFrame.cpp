#include <lmx/Dialogs/lmxLayerPropertiesDisplayFrame.h>

#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>
#include <lmx/Colour/lmxColorClassCalculator.h>
#include <lmx/Colour/lmxMultipartGradient.h>
#include <lmx/Dialogs/Private/lmxBasicPalettePage.h>
#include <lmx/Dialogs/Private/lmxColorClassesPage.h>
#include <lmx/Dialogs/Private/lmxGradientPage.h>
#include <lmx/Dialogs/Private/lmxLazyTab.h>
#include <lmx/Dialogs/Private/lmxMultipartGradientPage.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxRasterMapLayer.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSlider>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace lmx {

namespace {

constexpr int MaxOpacity = 255;

void WantColors(bool isEmpty) {
    if (isEmpty)
        throw Exception(QStringLiteral("Please specify one or more colors"));
}

// An earlier calculator that could not be rendered has cost the layer its picture, and its setters render only what
// has one.
void RenderAgain(const TBorrowed<TRasterMapLayer>& layer) {
    layer->Render();
    if (layer)
        layer->DoNotifyInvalidated();
}

} // namespace

TLayerPropertiesDisplayFrame::TLayerPropertiesDisplayFrame(QWidget* parent)
    : QWidget(parent),
      FPages(new QTabWidget(this)),
      FGradientPage(AddPage<TGradientPage>("GradientPage", QStringLiteral("Gradient"))),
      FMultipartGradientPage(
          AddPage<TMultipartGradientPage>("MultipartGradientPage", QStringLiteral("Multipart gradient"))),
      FClassifiedPage(AddPage<TColorClassesPage>("ClassifiedPage", QStringLiteral("Classified"))),
      FBasicPalPage(AddPage<TBasicPalettePage>("BasicPalPage", QStringLiteral("Basic palette"))) {
    FPages->setObjectName(QStringLiteral("Pages"));
    FPages->setUsesScrollButtons(false); // the tabs are always all in sight
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(FPages, 1);
    column->addWidget(BuildOpacity());
}

template<class Page>
TLazyTab<Page>* TLayerPropertiesDisplayFrame::AddPage(const char* name, const QString& caption) {
    auto* tab = new TLazyTab<Page>(FPages->tabBar(), [this](Page& page) { Prepare(page); });
    tab->setObjectName(QString::fromLatin1(name));
    FPages->addTab(tab, caption);
    return tab;
}

template<class Page>
void TLayerPropertiesDisplayFrame::Prepare(Page& page) const {
    if (FValueRange)
        page.SetValueRange(*FValueRange);
    if constexpr (requires { page.SetConfig(FConfig); })
        page.SetConfig(FConfig);
}

QWidget* TLayerPropertiesDisplayFrame::BuildOpacity() {
    auto* strip = new QWidget(this);
    FOpacity = new QSlider(Qt::Horizontal, strip);
    FOpacityEdit = new QLineEdit(strip);
    auto* label = new QLabel(QStringLiteral("Opacity:"), strip);
    label->setBuddy(FOpacity);
    FOpacity->setObjectName(QStringLiteral("rbOpacity"));
    FOpacity->setRange(0, MaxOpacity);
    FOpacity->setPageStep(16);
    FOpacity->setValue(MaxOpacity);
    FOpacityEdit->setObjectName(QStringLiteral("edOpacity"));
    FOpacityEdit->setAccessibleName(QStringLiteral("Opacity"));
    FOpacityEdit->setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
    FOpacityEdit->setText(IntToStr(MaxOpacity));
    connect(FOpacity, &QSlider::valueChanged, this, [this] { rbOpacityChange(); });
    connect(FOpacityEdit, &QLineEdit::textChanged, this, [this] { edOpacityChange(); });
    auto* row = new QHBoxLayout(strip);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(label);
    row->addWidget(FOpacity, 4);
    row->addWidget(FOpacityEdit, 1);
    return strip;
}

void TLayerPropertiesDisplayFrame::SetData(const TValueRange& valueRange,
                                           const std::shared_ptr<IBaseColorCalculator>& colorCalc, std::uint8_t opacity,
                                           const std::shared_ptr<ILayerManagerConfig>& config) {
    if (!colorCalc)
        throw EArgumentException(QStringLiteral("ColorCalc is null"));
    FValueRange = valueRange;
    FConfig = config;
    FGradientPage->PrepareAnew();
    FMultipartGradientPage->PrepareAnew();
    FClassifiedPage->PrepareAnew();
    FBasicPalPage->PrepareAnew();
    FOpacity->setValue(opacity);
    ShowCalculator(colorCalc);
}

void TLayerPropertiesDisplayFrame::ShowCalculator(const std::shared_ptr<IBaseColorCalculator>& colorCalc) {
    if (const auto* palette = dynamic_cast<const IBasicPaletteColorCalculator*>(colorCalc.get())) {
        FBasicPalPage->Get().SetBasicPalette(*palette);
        FPages->setCurrentWidget(FBasicPalPage);
    } else if (const auto* classes = dynamic_cast<const IColorClassCalculator*>(colorCalc.get())) {
        FClassifiedPage->Get().SetColorClasses(*classes);
        FPages->setCurrentWidget(FClassifiedPage);
    } else if (const auto* gradient = dynamic_cast<const IGradientColorCalculator*>(colorCalc.get())) {
        FGradientPage->Get().SetGradient(*gradient);
        FPages->setCurrentWidget(FGradientPage);
    } else if (const auto* parts = dynamic_cast<const IMultipartGradientColorCalculator*>(colorCalc.get())) {
        FMultipartGradientPage->Get().SetMultipartGradient(*parts);
        FPages->setCurrentWidget(FMultipartGradientPage);
    } else {
        throw EArgumentException(QStringLiteral("Unsupported ColorCalc"));
    }
}

std::shared_ptr<IGradientColorCalculator> TLayerPropertiesDisplayFrame::CreateGradientColorCalc() const {
    return FGradientPage->Get().CreateColorCalc();
}

std::shared_ptr<IMultipartGradientColorCalculator>
TLayerPropertiesDisplayFrame::CreateMultipartGradientColorCalc() const {
    return FMultipartGradientPage->Get().CreateColorCalc();
}

std::shared_ptr<IColorClassCalculator> TLayerPropertiesDisplayFrame::CreateClassifiedColorCalc() const {
    return FClassifiedPage->Get().CreateColorCalc();
}

std::shared_ptr<IBasicPaletteColorCalculator> TLayerPropertiesDisplayFrame::CreateBasicPaletteColorCalc() const {
    return FBasicPalPage->Get().CreateColorCalc();
}

std::shared_ptr<IBaseColorCalculator> TLayerPropertiesDisplayFrame::CreateColorCalc() const {
    const QWidget* const page = FPages->currentWidget();
    if (page == FGradientPage)
        return CreateGradientColorCalc();
    if (page == FMultipartGradientPage)
        return CreateMultipartGradientColorCalc();
    if (page == FClassifiedPage) {
        WantColors(FClassifiedPage->Get().IsEmpty());
        return CreateClassifiedColorCalc();
    }
    if (page == FBasicPalPage) {
        WantColors(FBasicPalPage->Get().IsEmpty());
        return CreateBasicPaletteColorCalc();
    }
    throw ENotImplemented(QStringLiteral("Unable to apply changes for the specified raster type"));
}

std::uint8_t TLayerPropertiesDisplayFrame::GetOpacity() const {
    return static_cast<std::uint8_t>(FOpacity->value());
}

void TLayerPropertiesDisplayFrame::rbOpacityChange() {
    FOpacityEdit->setText(IntToStr(FOpacity->value()));
}

// Of a number beyond the bar the nearer end counts, and the edit says so.
void TLayerPropertiesDisplayFrame::edOpacityChange() {
    std::int32_t typed = 0;
    if (!TryStrToInt(FOpacityEdit->text(), typed))
        return;
    const int opacity = std::clamp(static_cast<int>(typed), 0, MaxOpacity);
    FOpacity->setValue(opacity);
    if (opacity != typed)
        FOpacityEdit->setText(IntToStr(opacity));
}

TLayerPropertiesDisplayOptionFrame::TLayerPropertiesDisplayOptionFrame(TRasterMapLayer* layer)
    : TOptionFrame(QStringLiteral("Raster display")),
      FLayer(layer) {
    if (!layer)
        throw EExArgumentNilException(QStringLiteral("TLayerPropertiesDisplayOptionFrame.Create"),
                                      QStringLiteral("Layer"));
    FFrame = new TLayerPropertiesDisplayFrame;
    TakeFrame(FFrame);
    const auto manager = layer->GetLayerManager();
    FFrame->SetData(layer->GetValueRange(), layer->GetColorCalc(), layer->GetOpacity(),
                    manager ? manager->GetConfig() : nullptr);
}

void TLayerPropertiesDisplayOptionFrame::Apply() {
    TOptionFrame::Apply();
    if (!FLayer || !FFrame)
        return;
    FHadPicture = FHadPicture || FLayer->GetBitmap();
    FFrame->ApplyTo(FLayer, [layer = FLayer, hadPicture = FHadPicture] { // this page may go with the dialog
        if (hadPicture && !layer->GetBitmap())
            RenderAgain(layer);
    });
}

} // namespace lmx
