#include <lmx/MapDoc/Private/lmxSaveProblems.h>

#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Colour/lmxMultipartGradient.h>
#include <lmx/Formats/Idrisi/lmxAbstractImage.h>
#include <lmx/Formats/Idrisi/lmxVector.h>
#include <lmx/Formats/Shapes/lmxShpFile.h>
#include <lmx/Layers/Objects/lmxBaseObjectLayerItem.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxObjectMapLayer.h>
#include <lmx/Layers/lmxSelectionMapLayer.h>
#include <lmx/Layers/lmxShapeFileLayer.h>
#include <lmx/Layers/lmxVectorFileLayer.h>
#include <lmx/MapDoc/Private/lmxMapDocResources.h>
#include <lmx/MapDoc/Private/lmxMapDocTexts.h>
#include <lmx/MapDoc/lmxColorCalcPersist.h>

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

QStringList ProblemsOf(const TObjectMapLayer& layer) {
    for (const TBaseObjectLayerItem* const item : layer.GetObjects())
        if (item->GetObjectClassType() == QStringLiteral("SHAPELEGEND"))
            return {QStringLiteral("The shape key stops the objects behind it")};
    return {};
}

} // namespace

QStringList ProblemsOfSavingLayer(const TBaseMapLayer& layer, const IMapDocLayerPersistFactory& factory,
                                  TMapDocExternalResourcePolicy policy) {
    if (dynamic_cast<const TSelectionMapLayer*>(&layer)) // the view makes its own
        return {};
    if (!factory.GetPersist(layer.GetLayerClassName()))
        return {QStringLiteral("Layer %1 is of a type that is not saved").arg(Quoted(layer))};
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

} // namespace lmx
