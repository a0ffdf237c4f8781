#pragma once

#include <lmx/Colour/lmxValueRange.h>
#include <lmx/Dialogs/lmxOptionFrame.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxExport.h>

#include <QWidget>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

QT_BEGIN_NAMESPACE
class QLineEdit;
class QSlider;
class QTabWidget;
QT_END_NAMESPACE

namespace lmx {

class IBaseColorCalculator;
class IBasicPaletteColorCalculator;
class IColorClassCalculator;
class IGradientColorCalculator;
class ILayerManagerConfig;
class IMultipartGradientColorCalculator;
class TBasicPalettePage;
class TColorClassesPage;
class TGradientPage;
class TMultipartGradientPage;
class TRasterMapLayer;
template<class Page>
class TLazyTab;

/// How a raster is coloured: a tab for each of the four kinds of colouring, and the opacity. All of it works on copies;
/// only the tab that is seen last counts. What is in a tab is made when the tab is first seen.
class LMX_EXPORT TLayerPropertiesDisplayFrame : public QWidget {
public:
    explicit TLayerPropertiesDisplayFrame(QWidget* parent = nullptr);

    /// Fills the tab of the calculator's kind and shows it; the others stay empty. `config` gives the sources of
    /// palettes, and may be nil.
    /// @throws EArgumentException "ColorCalc is null", "Unsupported ColorCalc".
    void SetData(const TValueRange& valueRange, const std::shared_ptr<IBaseColorCalculator>& colorCalc,
                 std::uint8_t opacity, const std::shared_ptr<ILayerManagerConfig>& config);

    // New calculators from what each tab holds.
    std::shared_ptr<IGradientColorCalculator> CreateGradientColorCalc() const;
    std::shared_ptr<IMultipartGradientColorCalculator> CreateMultipartGradientColorCalc() const;
    std::shared_ptr<IColorClassCalculator> CreateClassifiedColorCalc() const;
    std::shared_ptr<IBasicPaletteColorCalculator> CreateBasicPaletteColorCalc() const;

    /// The new calculator of the tab that is seen.
    /// @throws Exception "Please specify one or more colors" for a tab of classes or of a palette without any.
    /// @throws ENotImplemented "Unable to apply changes for the specified raster type" for a tab of somebody else.
    std::shared_ptr<IBaseColorCalculator> CreateColorCalc() const;
    std::uint8_t GetOpacity() const;

    /// Gives a layer a new calculator, edited or not, and then the opacity that is shown. Whoever is told of them may
    /// end the layer, and the dialog with this frame. `between` is called between the two, if the layer is still there.
    /// @throws as CreateColorCalc; the layer is as it was then.
    template<class Layer>
    void ApplyTo(const TBorrowed<Layer> layer, const std::function<void()>& between = {}) const {
        const std::uint8_t opacity = GetOpacity();
        layer->SetColorCalc(CreateColorCalc());
        if (layer && between)
            between();
        if (layer)
            layer->SetOpacity(opacity);
    }

private:
    template<class Page>
    TLazyTab<Page>* AddPage(const char* name, const QString& caption);
    template<class Page>
    void Prepare(Page& page) const;
    QWidget* BuildOpacity();
    void ShowCalculator(const std::shared_ptr<IBaseColorCalculator>& colorCalc);
    void rbOpacityChange();
    void edOpacityChange();

    std::optional<TValueRange> FValueRange; ///< nothing before SetData
    std::shared_ptr<ILayerManagerConfig> FConfig;
    QTabWidget* FPages;
    TLazyTab<TGradientPage>* FGradientPage;
    TLazyTab<TMultipartGradientPage>* FMultipartGradientPage;
    TLazyTab<TColorClassesPage>* FClassifiedPage;
    TLazyTab<TBasicPalettePage>* FBasicPalPage;
    QSlider* FOpacity = nullptr;
    QLineEdit* FOpacityEdit = nullptr;
};

/// The page "Raster display".
class LMX_EXPORT TLayerPropertiesDisplayOptionFrame : public TOptionFrame {
public:
    /// @throws EExArgumentNilException if `layer` is nil, and as TLayerPropertiesDisplayFrame::SetData.
    explicit TLayerPropertiesDisplayOptionFrame(TRasterMapLayer* layer);

    QWidget* GetFrame() const override { return FFrame; }
    /// Gives the layer a new calculator, edited or not, and then the opacity. Nothing once the layer has gone.
    /// @throws as TLayerPropertiesDisplayFrame::CreateColorCalc, the layer is as it was then; and what rendering with
    /// the new calculator raises, which leaves the layer without a picture until the page is applied again.
    void Apply() override;

private:
    QPointer<TLayerPropertiesDisplayFrame> FFrame;
    TBorrowed<TRasterMapLayer> FLayer;
    bool FHadPicture = false;
};

} // namespace lmx
