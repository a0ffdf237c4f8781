#include <lmx/MapDoc/lmxVectorFileLayerPersist.h>

#include <lmx/Formats/Idrisi/lmxVector.h>
#include <lmx/Layers/lmxVectorFileLayer.h>
#include <lmx/MapDoc/Private/lmxMapDocResources.h>
#include <lmx/MapDoc/Private/lmxMapDocTexts.h>
#include <lmx/MapDoc/lmxMapDocResourcePersist.h>
#include <lmx/Runtime/lmxBorrowed.h>

namespace lmx {

namespace {

const QString Color = QStringLiteral("color");
const QString Header = QStringLiteral("header");
const QString VectorData = QStringLiteral("vectordata");
const QString Missing = QStringLiteral("Missing required node");

void CheckLinked(TXmlNode data) {
    const QString path = RequiredText(data, FileName, Missing);
    CheckRegularFile(path);
    TVector().LoadFromFile(path);
}

std::unique_ptr<TVector> ReadEmbedded(const TMapDocResourcePersist& resources, const QString& folder) {
    TVectorHeader header;
    LoadFromBytes(header, resources.Read(folder, Header));
    QByteArray bytes = resources.Read(folder, VectorData);
    auto vector = std::make_unique<TVector>();
    vector->GetHeader() = header;
    LoadFromBytes(*vector, std::move(bytes));
    return vector;
}

} // namespace

void TVectorFileLayerPersist::ReadLayer(TMapDocResourcePersist& resources, TBaseMapLayer* layer, TXmlNode data) {
    auto& vectorLayer = LayerAs<TVectorFileLayer>(layer);
    const QString color = RequiredText(data, Color, Missing);
    const QString resource = RequiredText(data, Resource, Missing);
    const TBorrowed self(layer);
    if (resource == Linked)
        CheckLinked(data);
    else if (resource == Embedded)
        vectorLayer.SetVectorFile(ReadEmbedded(resources, FolderOf(vectorLayer)));
    else
        throw Exception(QStringLiteral("Unsupported resoruce type: ") + resource);
    if (self)
        vectorLayer.SetColor(DecimalToLow32(color));
}

void TVectorFileLayerPersist::WriteLayer(TMapDocResourcePersist& resources, const TBaseMapLayer* layer, TXmlNode data,
                                         TMapDocExternalResourcePolicy policy) {
    const auto& vectorLayer = LayerAs<const TVectorFileLayer>(layer);
    const TVector* const vector = vectorLayer.GetVectorFile();
    if (!vector)
        RefuseEmptyLayer(vectorLayer, QStringLiteral("vector"));
    AddText(data, Color, Color32ToDecimal(vectorLayer.GetColor()));
    if (!IsEmbedded(policy, vector->GetFileName())) {
        AddLink(data, vector->GetFileName());
        return;
    }
    AddText(data, Resource, Embedded);
    const QString folder = FolderOf(vectorLayer);
    const QByteArray header = BytesOf(vector->GetHeader()); // the layer may go while the other entry is written
    resources.Write(folder, VectorData, BytesOf(*vector));
    resources.Write(folder, Header, header);
}

} // namespace lmx
