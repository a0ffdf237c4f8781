#include <lmx/Layers/lmxLayerStatistics.h>

#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>
#include <lmx/Formats/Shapes/lmxShpFile.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxShapeFileLayer.h>
#include <lmx/Raster/lmxField.h>
#include <lmx/Raster/lmxFieldArithmetic.h>
#include <lmx/Raster/lmxFieldRegion.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace lmx {

namespace {

const TAbstractImage& ImageOf(const TIdrisiMapLayer& layer) {
    if (!layer.GetImage())
        throw EInvalidOperation(QStringLiteral("The layer \"%1\" has no image").arg(layer.GetLayerName()));
    return *layer.GetImage();
}

TField FieldOf(const TIdrisiMapLayer& layer) {
    return TField::Of(ImageOf(layer));
}

QString UnitsOf(const TIdrisiMapLayer& layer) {
    return ImageOf(layer).getHeader()->GetValueUnits();
}

/// A layer of `image` whose range lies around `middle`, as far down as up.
std::unique_ptr<TIdrisiMapLayer> NewLayer(const std::shared_ptr<ILayerManager>& manager,
                                          std::unique_ptr<TRealImage> image, const QString& name, const QString& units,
                                          float middle) {
    TImageHeader& header = *image->getHeader();
    header.SetTitle(name);
    header.SetValueUnits(units);
    const float reach = std::max(std::abs(header.GetMaxValue() - middle), std::abs(middle - header.GetMinValue()));
    const bool isFlat = !(reach > 0) || (header.GetMinValue() == 0 && header.GetMaxValue() == 0); // or without a value
    const float half = isFlat ? 1 : reach;
    header.SetDisplayMin(middle - half);
    header.SetDisplayMax(middle + half);
    auto layer = std::make_unique<TIdrisiMapLayer>(manager);
    layer->SetLayerName(name);
    layer->TakeImage(std::move(image));
    layer->SetColorCalc(TGradientColorCalculatorFactory::GetObject(
        middle - half, middle + half,
        TGradientFactory::GetObject(
            {{0, 0xFF2166AC}, {0.25, 0xFF92C5DE}, {0.5, 0xFFF7F7F7}, {0.75, 0xFFF4A582}, {1, 0xFFB2182B}})));
    layer->Render();
    return layer;
}

} // namespace

TFieldStatistics StatisticsOf(const TIdrisiMapLayer& layer) {
    return StatisticsOf(FieldOf(layer));
}

TFieldStatistics StatisticsOf(const TIdrisiMapLayer& layer, const TMapArea& area) {
    const TField field = FieldOf(layer);
    TFieldRegion region(field, area);
    return StatisticsOf(field, region);
}

TFieldStatistics StatisticsOf(const TIdrisiMapLayer& layer, const TShapeFileLayer& shapes, std::size_t polygon) {
    const TField field = FieldOf(layer);
    TFieldRegion region(field, FieldRingsOf(shapes, polygon));
    return StatisticsOf(field, region);
}

std::vector<TFieldRing> FieldRingsOf(const TShapeFileLayer& shapes, std::size_t polygon) {
    const TShpFile* file = shapes.GetShpFile();
    if (!file)
        throw EInvalidOperation(QStringLiteral("The layer \"%1\" has no shape file").arg(shapes.GetLayerName()));
    const TShpFilePolygonShape& shape = file->GetPolygon(polygon);
    std::vector<TFieldRing> rings;
    for (std::size_t part = 0; part < shape.GetPartCount(); ++part) {
        TFieldRing& ring = rings.emplace_back();
        for (const TShpPoint& vertex : shape.GetPart(part)) {
            const TMapPoint place = shapes.ProjectMapPoint(vertex.X, vertex.Y);
            ring.push_back({static_cast<double>(place.X), static_cast<double>(place.Y)});
        }
    }
    return rings;
}

std::unique_ptr<TIdrisiMapLayer> DifferenceLayer(const std::shared_ptr<ILayerManager>& manager,
                                                 const TIdrisiMapLayer& a, const TIdrisiMapLayer& b) {
    const QString units = UnitsOf(a) == UnitsOf(b) ? UnitsOf(a) : QString();
    return NewLayer(manager, DifferenceOf(FieldOf(a), FieldOf(b)),
                    a.GetLayerName() + QStringLiteral(" - ") + b.GetLayerName(), units, 0);
}

std::unique_ptr<TIdrisiMapLayer> RatioLayer(const std::shared_ptr<ILayerManager>& manager, const TIdrisiMapLayer& a,
                                            const TIdrisiMapLayer& b) {
    return NewLayer(manager, RatioOf(FieldOf(a), FieldOf(b)),
                    a.GetLayerName() + QStringLiteral(" / ") + b.GetLayerName(), QStringLiteral("1"), 1);
}

std::unique_ptr<TIdrisiMapLayer> DepartureLayer(const std::shared_ptr<ILayerManager>& manager,
                                                std::span<const TIdrisiMapLayer* const> layers, std::size_t index) {
    std::vector<TField> fields;
    bool haveSameUnits = true;
    for (const TIdrisiMapLayer* layer : layers) {
        fields.push_back(FieldOf(*layer));
        haveSameUnits = haveSameUnits && UnitsOf(*layer) == UnitsOf(*layers.front());
    }
    auto image = DepartureFromMean(fields, index);
    return NewLayer(manager, std::move(image),
                    layers[index]->GetLayerName() + QStringLiteral(" - mean of ") + IntToStr(std::ssize(layers)),
                    haveSameUnits ? UnitsOf(*layers.front()) : QString(), 0);
}

} // namespace lmx
