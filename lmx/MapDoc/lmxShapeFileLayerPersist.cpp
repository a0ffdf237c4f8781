#include <lmx/MapDoc/lmxShapeFileLayerPersist.h>

#include <lmx/Formats/Shapes/lmxShpFile.h>
#include <lmx/Layers/lmxShapeFileLayer.h>
#include <lmx/MapDoc/Private/lmxMapDocResources.h>
#include <lmx/MapDoc/Private/lmxMapDocTexts.h>
#include <lmx/Runtime/lmxBorrowed.h>

namespace lmx {

namespace {

const QString Color = QStringLiteral("color");
const QString FoldsAtSeam = QStringLiteral("foldsAtSeam"); // an element without content

} // namespace

void TShapeFileLayerPersist::ReadLayer(TMapDocResourcePersist&, TBaseMapLayer* layer, TXmlNode data) {
    auto& shapeLayer = LayerAs<TShapeFileLayer>(layer);
    const QString missing = QStringLiteral("Missing required node");
    const QString resource = RequiredText(data, Resource, missing);
    const QString color = RequiredText(data, Color, missing);
    if (resource != Linked)
        throw Exception(QStringLiteral("Unsupported resource type: ") + resource);
    const QString path = RequiredText(data, FileName, missing + QStringLiteral(": filename"));
    CheckRegularFile(path);
    const TBorrowed self(layer);
    shapeLayer.TakeShpFile(TShpFile::LoadFromFile(path, nullptr));
    if (self)
        shapeLayer.SetFoldsAtSeam(!data.Child(FoldsAtSeam).IsEmpty());
    if (self)
        shapeLayer.SetColor(DecimalToLow32(color));
}

void TShapeFileLayerPersist::WriteLayer(TMapDocResourcePersist&, const TBaseMapLayer* layer, TXmlNode data,
                                        TMapDocExternalResourcePolicy) {
    const auto& shapeLayer = LayerAs<const TShapeFileLayer>(layer);
    const TShpFile* const shpFile = shapeLayer.GetShpFile();
    if (!shpFile)
        RefuseEmptyLayer(shapeLayer, QStringLiteral("shape file"));
    AddLink(data, shpFile->GetFileName());
    AddText(data, Color, Color32ToDecimal(shapeLayer.GetColor()));
    if (shapeLayer.GetFoldsAtSeam())
        data.AddChild(FoldsAtSeam);
}

} // namespace lmx
