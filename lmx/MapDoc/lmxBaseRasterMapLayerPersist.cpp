#include <lmx/MapDoc/lmxBaseRasterMapLayerPersist.h>

#include <lmx/Layers/lmxRasterMapLayer.h>
#include <lmx/MapDoc/Private/lmxMapDocTexts.h>
#include <lmx/MapDoc/lmxColorCalcPersist.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxNumberText.h>

namespace lmx {

namespace {

const QString ClimateVariable = QStringLiteral("climateVariable");
const QString Opacity = QStringLiteral("opacity");
const QString ColorCalc = QStringLiteral("colorCalc");

void ReadColorCalc(TRasterMapLayer& layer, TXmlNode node) {
    const auto persist = TColorCalcPersistFactory::GetPersist(node);
    if (!persist)
        return;
    const auto calculator = persist->CreateCalculator();
    persist->Read(calculator, node);
    layer.SetColorCalc(calculator);
}

} // namespace

void TBaseRasterMapLayerPersist::ReadLayer(TMapDocResourcePersist&, TBaseMapLayer* layer, TXmlNode data) {
    auto& raster = LayerAs<TRasterMapLayer>(layer);
    const TBorrowed self(layer);
    const QString opacity = RequiredText(data, Opacity, QStringLiteral("Missing opacity node"));
    raster.SetOpacity(static_cast<std::uint8_t>(StrToInt(opacity) & 0xFF));
    if (!self)
        return;
    if (const TXmlNode node = data.Child(ClimateVariable); !node.IsEmpty())
        if (const auto* const type = TClimateVariableTypes::FromShortName(node.GetText()))
            raster.SetClimateVariable(type->Variable);
    if (const TXmlNode node = data.Child(ColorCalc); !node.IsEmpty())
        ReadColorCalc(raster, node);
}

void TBaseRasterMapLayerPersist::WriteLayer(TMapDocResourcePersist&, const TBaseMapLayer* layer, TXmlNode data,
                                            TMapDocExternalResourcePolicy) {
    const auto& raster = LayerAs<const TRasterMapLayer>(layer);
    if (const auto& variable = raster.GetClimateVariable(); variable.GetHasValue())
        AddText(data, ClimateVariable, TClimateVariableTypes::Get(variable.GetValue()).ShortName);
    AddText(data, Opacity, IntToStr(raster.GetOpacity()));
    const std::shared_ptr<IBaseColorCalculator> calculator = raster.GetColorCalc(); // a host's may free the layer
    if (const auto persist = TColorCalcPersistFactory::GetPersist(calculator))
        persist->Write(calculator, data.AddChild(ColorCalc));
}

} // namespace lmx
