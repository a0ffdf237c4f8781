#include <lmx/MapDoc/Private/lmxSaveProblems.h>

#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Colour/lmxMultipartGradient.h>
#include <lmx/Formats/Idrisi/lmxAbstractImage.h>
#include <lmx/Formats/Idrisi/lmxVector.h>
#include <lmx/Formats/Shapes/lmxShpFile.h>
#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Layers/Objects/lmxCompassRoseObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxLegendObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxRectangleObjectTypeItem.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxObjectMapLayer.h>
#include <lmx/Layers/lmxSelectionMapLayer.h>
#include <lmx/Layers/lmxShapeFileLayer.h>
#include <lmx/Layers/lmxVectorFileLayer.h>
#include <lmx/MapDoc/Private/lmxMapDocResources.h>
#include <lmx/MapDoc/Private/lmxMapDocTexts.h>
#include <lmx/MapDoc/lmxColorCalcPersist.h>
#include <lmx/MapDoc/lmxObjectLayerTypeItemPersist.h>

#include <algorithm>
#include <optional>

namespace lmx {

namespace {

QString Quoted(const TBaseMapLayer& layer) {
    return u'"' + layer.GetLayerName() + u'"';
}

QStringList ProblemsOf(const TIdrisiMapLayer& layer) {
    QStringList problems;
    if (!layer.GetImage())
        problems += QStringLiteral("Layer %1 has no image and ends the save").arg(Quoted(layer));
    const auto& calculator = layer.GetColorCalc();
    const auto* const gradient = dynamic_cast<const IGradientColorCalculator*>(calculator.get());
    if (dynamic_cast<const IMultipartGradientColorCalculator*>(calculator.get()))
        problems += QStringLiteral("The multipart gradient of layer %1 ends the save").arg(Quoted(layer));
    else if (gradient && !gradient->GetGradient())
        problems += QStringLiteral("The calculator of layer %1 has no gradient and ends the save").arg(Quoted(layer));
    else if (calculator && !TColorCalcPersistFactory::GetPersist(calculator))
        problems += QStringLiteral("The colours of layer %1 are not saved").arg(Quoted(layer));
    return problems;
}

QStringList ProblemsOf(const TVectorFileLayer& layer, TMapDocExternalResourcePolicy policy) {
    if (!layer.GetVectorFile())
        return {QStringLiteral("Layer %1 has no vector and ends the save").arg(Quoted(layer))};
    if (!IsEmbedded(policy, layer.GetVectorFile()->GetFileName()))
        return {QStringLiteral("The linked vector of layer %1 comes back without shapes").arg(Quoted(layer))};
    return {};
}

QStringList ProblemsOf(const TShapeFileLayer& layer) {
    if (!layer.GetShpFile())
        return {QStringLiteral("Layer %1 has no shape file and ends the save").arg(Quoted(layer))};
    if (!IsRegularFile(layer.GetShpFile()->GetFileName()))
        return {QStringLiteral("The shape file of layer %1 is not there, and the layer does not come back")
                    .arg(Quoted(layer))};
    return {};
}

using TShownColor = std::optional<TColor32>;

TShownColor Shown(bool isShown, TColor32 color) {
    return isShown ? TShownColor(color) : std::nullopt;
}

// Saved and loaded, a background is what the border was, and a border what the constructor makes.
bool KeepsItsLook(const TBaseObjectLayerItem& item) {
    const TShownColor background = Shown(item.GetShowBackground(), item.GetBackgroundColor());
    const TShownColor border = Shown(item.GetShowBorder(), item.GetBorderColor());
    const bool isRectangle = dynamic_cast<const TRectangleObjectTypeItem*>(&item) != nullptr;
    return background == border && border == Shown(isRectangle, clBlack32);
}

bool HasDefaultColors(const TCompassRoseObjectLayerItem& rose) {
    return rose.GetDarkColor() == clBlack32 && rose.GetFontColor() == clBlack32 && rose.GetLineColor() == clBlack32 &&
           rose.GetLightColor() == 0xFFA9A9A9;
}

bool HasDefaultSizes(const TLegendObjectLayerItem& legend) {
    return legend.GetGradientBarSize() == 30 && legend.GetPaletteBoxSize() == 22 && legend.GetFontSize() == 8 &&
           legend.GetFontName() == QStringLiteral("Tahoma") && legend.GetGradientLegendMarks().empty();
}

QStringList ProblemsOf(const TBaseObjectLayerItem& item) {
    const QString name = u'"' + item.GetObjectType() + u'"';
    if (!TObjectLayerTypeItemPersistFactory::GetObject(item.GetObjectClassType()))
        return {QStringLiteral("Annotation %1 is of a kind that is not saved").arg(name)};
    QStringList problems;
    if (!KeepsItsLook(item))
        problems += QStringLiteral("Annotation %1 does not keep its background and border").arg(name);
    const auto* const rose = dynamic_cast<const TCompassRoseObjectLayerItem*>(&item);
    if (rose && !HasDefaultColors(*rose))
        problems += QStringLiteral("The colours of annotation %1 are not shown again before it is edited").arg(name);
    const auto* const legend = dynamic_cast<const TLegendObjectLayerItem*>(&item);
    if (legend && !HasDefaultSizes(*legend))
        problems += QStringLiteral("The font, the sizes and the marks of annotation %1 are not saved").arg(name);
    return problems;
}

QStringList ProblemsOf(const TObjectMapLayer& layer) {
    QStringList problems;
    layer.GetObjects().ForEach([&problems](const TBaseObjectLayerItem* item) {
        const bool isKey = item->GetObjectClassType() == QStringLiteral("SHAPELEGEND");
        problems +=
            isKey ? QStringList(QStringLiteral("The shape key stops the objects behind it")) : ProblemsOf(*item);
        return !isKey;
    });
    return problems;
}

QStringList ProblemsOfContent(const TBaseMapLayer& layer, TMapDocExternalResourcePolicy policy) {
    if (const auto* const image = dynamic_cast<const TIdrisiMapLayer*>(&layer))
        return ProblemsOf(*image);
    if (const auto* const vector = dynamic_cast<const TVectorFileLayer*>(&layer))
        return ProblemsOf(*vector, policy);
    if (const auto* const shapes = dynamic_cast<const TShapeFileLayer*>(&layer))
        return ProblemsOf(*shapes);
    if (const auto* const objects = dynamic_cast<const TObjectMapLayer*>(&layer))
        return ProblemsOf(*objects);
    return {};
}

} // namespace

QStringList ProblemsOfSavingLayer(const TBaseMapLayer& layer, const IMapDocLayerPersistFactory& factory,
                                  TMapDocExternalResourcePolicy policy) {
    if (dynamic_cast<const TSelectionMapLayer*>(&layer)) // the view makes its own
        return {};
    if (!factory.GetPersist(layer.GetLayerClassName()))
        return {QStringLiteral("Layer %1 is of a type that is not saved").arg(Quoted(layer))};
    QStringList problems = ProblemsOfContent(layer, policy);
    const auto& attributes = layer.GetAttributes();
    if (std::any_of(attributes.begin(), attributes.end(), [](const auto& entry) { return !entry.first.isEmpty(); }))
        problems += QStringLiteral("The attributes of layer %1 do not come back").arg(Quoted(layer));
    return problems;
}

} // namespace lmx
