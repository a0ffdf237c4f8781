#include <lmx/Pictures/lmxMapPictureDescription.h>

#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>
#include <lmx/Colour/lmxColorClassCalculator.h>
#include <lmx/Colour/lmxMultipartGradient.h>
#include <lmx/Formats/Idrisi/lmxAbstractImage.h>
#include <lmx/Formats/Idrisi/lmxVector.h>
#include <lmx/Formats/Shapes/lmxShpFile.h>
#include <lmx/Graphics/lmxColorText.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Layers/Private/lmxPaintedLayer.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerData.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxShapeFileLayer.h>
#include <lmx/Layers/lmxVectorFileLayer.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <QStringList>

#include <cmath>

namespace lmx {

namespace {

constexpr int Digits = 7; // what a 32-bit float holds for sure

QString NumberText(extended value) {
    return FloatToGeneral(value, Digits, TFormatSettings::Invariant());
}

QString RangeText(extended low, extended high) {
    return NumberText(low) + QStringLiteral(" to ") + NumberText(high);
}

QString PaletteText(const IBasicPaletteColorCalculator& palette) {
    const auto key = palette.GetColorKey();
    return QStringLiteral("palette ") + (key ? key->Serialize() : QString()) + QStringLiteral(" from ") +
           RangeText(palette.GetMinVal(), palette.GetMaxVal());
}

QString PaletteText(const IGradientColorCalculator& colors) {
    const auto gradient = colors.GetGradient();
    return QStringLiteral("gradient ") + (gradient ? gradient->ToString() : QString()) + QStringLiteral(" from ") +
           RangeText(colors.GetMinVal(), colors.GetMaxVal());
}

QString PaletteText(const IColorClassCalculator& colors) {
    QStringList classes;
    if (const auto list = colors.GetColorClasses())
        for (const TColorClass* each : list->GetClasses())
            classes += each->GetName() + QStringLiteral(" (") + RangeText(each->GetMinValue(), each->GetMaxValue()) +
                       QStringLiteral(") ") + Color32ToString(each->GetColor());
    return QStringLiteral("classes ") + classes.join(QStringLiteral(", "));
}

QString PaletteText(const IMultipartGradientColorCalculator& colors) {
    QStringList parts;
    for (const auto& part : colors.GetGradients())
        if (part)
            parts += PaletteText(*part);
    return parts.join(QStringLiteral("; "));
}

QString PaletteText(const IBaseColorCalculator* colors) {
    if (const auto* palette = dynamic_cast<const IBasicPaletteColorCalculator*>(colors))
        return PaletteText(*palette);
    if (const auto* gradient = dynamic_cast<const IGradientColorCalculator*>(colors))
        return PaletteText(*gradient);
    if (const auto* classes = dynamic_cast<const IColorClassCalculator*>(colors))
        return PaletteText(*classes);
    if (const auto* parts = dynamic_cast<const IMultipartGradientColorCalculator*>(colors))
        return PaletteText(*parts);
    return colors ? QStringLiteral("colours of its own") : QString();
}

void Describe(TMapPictureLayer& description, const TRasterMapLayer& raster) {
    if (raster.GetValueRange() != TValueRange::Empty())
        description.ValueRange = raster.GetValueRange();
    description.Palette = PaletteText(raster.GetColorCalc().get());
    const auto* idrisi = dynamic_cast<const TIdrisiMapLayer*>(&raster);
    const TAbstractImage* image = idrisi ? idrisi->GetImage() : nullptr;
    if (!image)
        return;
    description.FileName = image->GetFilePath();
    description.Units = image->getHeader()->GetValueUnits();
    description.Lineage = image->getHeader()->GetLineage();
}

void Describe(TMapPictureLayer& description, const TBaseShapeLayer& shapes) {
    description.Palette = Color32ToString(shapes.GetColor());
    if (const auto* shapeFile = dynamic_cast<const TShapeFileLayer*>(&shapes); shapeFile && shapeFile->GetShpFile())
        description.FileName = shapeFile->GetShpFile()->GetFileName();
    if (const auto* vector = dynamic_cast<const TVectorFileLayer*>(&shapes); vector && vector->GetVectorFile())
        description.FileName = vector->GetVectorFile()->GetFileName();
}

void Describe(TMapPictureLayer& description, const TLayerData& data) {
    description.FileName = data.FileName;
    description.Lineage = data.Lineage;
    description.Units = data.Units;
    description.ValueRange = data.ValueRange;
    description.Palette = PaletteText(data.Colors.get());
}

QString Degrees(extended value, QChar positive, QChar negative) {
    const QString degrees = NumberText(std::abs(value)) + QChar(0xB0);
    return value == 0 ? degrees : degrees + u' ' + (value < 0 ? negative : positive);
}

QString PlaceText(const TMapPictureDescription& picture) {
    const TMapArea& extent = picture.Extent;
    if (!picture.IsGeographic)
        return QStringLiteral("from %1 to %2 east and from %3 to %4 north (%5)")
            .arg(NumberText(extent.Left), NumberText(extent.Right), NumberText(extent.Bottom), NumberText(extent.Top),
                 picture.World);
    return QStringLiteral("from %1 to %2 and from %3 to %4")
        .arg(Degrees(extent.Left, u'E', u'W'), Degrees(extent.Right, u'E', u'W'), Degrees(extent.Bottom, u'N', u'S'),
             Degrees(extent.Top, u'N', u'S'));
}

QString InWords(const TMapPictureLayer& layer) {
    if (!layer.ValueRange)
        return layer.Name;
    const TValueRange& range = *layer.ValueRange;
    QString values = RangeText(range.Low, range.High);
    if (!layer.Units.isEmpty())
        values += u' ' + layer.Units;
    return layer.Name + QStringLiteral(" (") + values + u')';
}

QString Enumerated(const QStringList& words) {
    if (words.size() < 2)
        return words.join(QString());
    return words.mid(0, words.size() - 1).join(QStringLiteral(", ")) + QStringLiteral(" and ") + words.back();
}

} // namespace

TMapPictureLayer TMapPictureLayer::Of(const TBaseMapLayer& layer) {
    TMapPictureLayer description;
    description.Name = layer.GetLayerName();
    description.Type = layer.GetLayerTypeName();
    if (const auto* raster = dynamic_cast<const TRasterMapLayer*>(&layer))
        Describe(description, *raster);
    if (const auto* shapes = dynamic_cast<const TBaseShapeLayer*>(&layer))
        Describe(description, *shapes);
    if (const auto* withData = dynamic_cast<const ILayerWithData*>(&layer))
        Describe(description, withData->DescribeData());
    return description;
}

std::vector<TMapPictureLayer> TMapPictureDescription::LayersOf(const ILayerManager& manager) {
    std::vector<TMapPictureLayer> layers;
    manager.GetLayers().ForEach([&layers](const TBaseMapLayer* layer) {
        if (IsPainted(*layer) && layer->GetShowsInLayersList())
            layers.push_back(TMapPictureLayer::Of(*layer));
    });
    return layers;
}

QString TMapPictureDescription::ExtentText() const {
    return QStringLiteral("west %1, south %2, east %3, north %4")
        .arg(NumberText(Extent.Left), NumberText(Extent.Bottom), NumberText(Extent.Right), NumberText(Extent.Top));
}

QString TMapPictureDescription::LayersText() const {
    QStringList lines;
    for (const TMapPictureLayer& layer : Layers) {
        QStringList parts = {layer.Name, layer.Type};
        if (!layer.Units.isEmpty())
            parts += QStringLiteral("units ") + layer.Units;
        if (layer.ValueRange)
            parts += QStringLiteral("values ") + RangeText(layer.ValueRange->Low, layer.ValueRange->High);
        if (!layer.Palette.isEmpty())
            parts += QStringLiteral("colours ") + layer.Palette;
        if (!layer.FileName.isEmpty())
            parts += QStringLiteral("file ") + layer.FileName;
        const QStringList lineage = layer.Lineage.split(u'\n', Qt::SkipEmptyParts);
        if (!lineage.isEmpty())
            parts += QStringLiteral("made from ") + lineage.join(QStringLiteral(", "));
        lines += parts.join(QStringLiteral("; "));
    }
    return lines.join(u'\n');
}

QString TMapPictureDescription::AlternativeText() const {
    QString text = QStringLiteral("Map");
    if (!Title.isEmpty())
        text += QStringLiteral(" \"") + Title + u'"';
    text += u' ' + PlaceText(*this);
    if (!Time.isEmpty())
        text += QStringLiteral(", ") + Time;
    QStringList names;
    for (const TMapPictureLayer& layer : Layers)
        names += InWords(layer);
    return text + (names.isEmpty() ? QStringLiteral(", without a layer.")
                                   : QStringLiteral(", showing ") + Enumerated(names) + u'.');
}

QString TMapPictureDescription::ToText() const {
    QStringList lines = {QStringLiteral("Title: ") + Title,
                         QStringLiteral("Description: ") + AlternativeText(),
                         QStringLiteral("World: ") + World,
                         QStringLiteral("Extent: ") + ExtentText(),
                         QStringLiteral("Time: ") + Time,
                         QStringLiteral("Size: ") + IntToStr(Pixels.cx) + QStringLiteral(" x ") + IntToStr(Pixels.cy) +
                             QStringLiteral(" pixels, ") + NumberText(Density) + QStringLiteral(" to the unit"),
                         QStringLiteral("Layers:")};
    return lines.join(u'\n') + u'\n' + LayersText() + u'\n';
}

} // namespace lmx
