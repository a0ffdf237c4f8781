#include <lmx/DataSources/lmxTiledRasterMapLayerPersist.h>

#include <lmx/DataSources/lmxGeoTiffTiles.h>
#include <lmx/DataSources/lmxTiledRasterMapLayer.h>
#include <lmx/Layers/lmxLayerFactory.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/MapDoc/lmxColorCalcPersist.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <utility>

namespace lmx {

namespace {

const QString TypeName = QStringLiteral("TiledRasterMapLayer");
const QString Resource = QStringLiteral("resource");
const QString Linked = QStringLiteral("linked");
const QString FileName = QStringLiteral("filename");
const QString Band = QStringLiteral("band");
const QString Opacity = QStringLiteral("opacity");
const QString ClimateVariable = QStringLiteral("climateVariable");
const QString ColorCalc = QStringLiteral("colorCalc");

QString Required(TXmlNode data, const QString& name) {
    if (!data.HasChild(name))
        throw Exception(QStringLiteral("Missing required node: ") + name);
    return data.Child(name).GetText();
}

void Add(TXmlNode data, const QString& name, const QString& text) {
    data.AddChild(name).SetText(text);
}

template<class Layer, class Given>
Layer& TiledLayer(Given* given) {
    auto* const layer = dynamic_cast<Layer*>(given);
    if (!layer)
        throw EArgumentException(QStringLiteral("Layer"));
    return *layer;
}

std::shared_ptr<IBaseColorCalculator> ReadCalculator(TXmlNode node) {
    const auto persist = TColorCalcPersistFactory::GetPersist(node);
    if (!persist)
        return nullptr;
    auto calculator = persist->CreateCalculator();
    persist->Read(calculator, node);
    return calculator;
}

} // namespace

// All is read before the layer is touched.
void TTiledRasterMapLayerPersist::ReadLayer(TMapDocResourcePersist&, TBaseMapLayer* layer, TXmlNode data) {
    auto& tiled = TiledLayer<TTiledRasterMapLayer>(layer);
    if (const QString resource = Required(data, Resource); resource != Linked)
        throw Exception(QStringLiteral("Unsupported resource type: ") + resource);
    const auto opacity = static_cast<std::uint8_t>(StrToInt(Required(data, Opacity)) & 0xFF);
    const auto calculator = ReadCalculator(data.Child(ColorCalc));
    const QString fileName = Required(data, FileName);
    auto source = std::make_shared<TGeoTiffTiles>(fileName, StrToInt(Required(data, Band)));
    if (const auto* const type = TClimateVariableTypes::FromShortName(data.Child(ClimateVariable).GetText()))
        tiled.SetClimateVariable(type->Variable);
    const TBorrowed self(layer); // whoever is told may free the layer
    tiled.SetOpacity(opacity);
    if (self && calculator)
        tiled.SetColorCalc(calculator);
    if (self)
        tiled.SetSource(std::move(source));
}

void TTiledRasterMapLayerPersist::WriteLayer(TMapDocResourcePersist&, const TBaseMapLayer* layer, TXmlNode data,
                                             TMapDocExternalResourcePolicy) {
    const auto& tiled = TiledLayer<const TTiledRasterMapLayer>(layer);
    const auto* const source = dynamic_cast<const TGeoTiffTiles*>(tiled.GetSource().get());
    if (!source)
        throw EInvalidOperation(QStringLiteral("Layer %1: no tiled raster of a file").arg(tiled.GetLayerName()));
    Add(data, Resource, Linked);
    Add(data, FileName, source->GetFileName());
    Add(data, Band, IntToStr(source->GetBand()));
    Add(data, Opacity, IntToStr(tiled.GetOpacity()));
    if (const auto& variable = tiled.GetClimateVariable(); variable.GetHasValue())
        Add(data, ClimateVariable, TClimateVariableTypes::Get(variable.GetValue()).ShortName);
    if (const auto persist = TColorCalcPersistFactory::GetPersist(tiled.GetColorCalc()))
        persist->Write(tiled.GetColorCalc(), data.AddChild(ColorCalc));
}

void RegisterDataSourceLayers(const std::shared_ptr<ILayerFactory>& layers,
                              const std::shared_ptr<IMapDocLayerPersistFactory>& persists) {
    if (!layers || !persists)
        throw EExArgumentNilException(QStringLiteral("RegisterDataSourceLayers"),
                                      !layers ? QStringLiteral("Layers") : QStringLiteral("Persists"));
    persists->Register(TypeName, std::make_shared<TTiledRasterMapLayerPersist>());
    layers->Register(TypeName, [](const std::shared_ptr<ILayerManager>& manager) {
        return std::make_unique<TTiledRasterMapLayer>(manager);
    });
}

} // namespace lmx
