#include <lmx/MapDoc/lmxIdrisiMapLayerPersist.h>

#include <lmx/Formats/Idrisi/lmxImageFactory.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/MapDoc/Private/lmxMapDocResources.h>
#include <lmx/MapDoc/Private/lmxMapDocTexts.h>
#include <lmx/MapDoc/lmxMapDocResourcePersist.h>
#include <lmx/Runtime/lmxBorrowed.h>

namespace lmx {

namespace {

const QString DataType = QStringLiteral("datatype");
const QString Header = QStringLiteral("header");
const QString ImageData = QStringLiteral("imagedata");

std::unique_ptr<TAbstractImage> OpenLinked(const TImageClass& imageClass, TXmlNode data) {
    const QString path = RequiredText(data, FileName, QStringLiteral("Missing node: filename"));
    if (!IsRegularFile(path))
        throw Exception(QStringLiteral("Linked resoruce not found: ") + path);
    return imageClass.Open(path, true);
}

std::unique_ptr<TAbstractImage> ReadEmbedded(const TImageClass& imageClass, const TMapDocResourcePersist& resources,
                                             const QString& folder) {
    const QByteArray headerBytes = resources.Read(folder, Header);
    QByteArray imageBytes = resources.Read(folder, ImageData);
    TImageHeader header;
    LoadFromBytes(header, headerBytes);
    auto image = imageClass.Create(QString(), header);
    LoadFromBytes(*image, std::move(imageBytes));
    return image;
}

} // namespace

void TIdrisiMapLayerPersist::ReadLayer(TMapDocResourcePersist& resources, TBaseMapLayer* layer, TXmlNode data) {
    auto& idrisi = LayerAs<TIdrisiMapLayer>(layer);
    const QString missing = QStringLiteral("Missing required node");
    const QString dataType = RequiredText(data, DataType, missing);
    const QString resource = RequiredText(data, Resource, missing);
    const TImageClass* const imageClass = TImageFactory::GetImageClass(dataType);
    if (!imageClass)
        throw Exception(QStringLiteral("Unknown or unsupported image class: ") + dataType);
    std::unique_ptr<TAbstractImage> image;
    if (resource == Linked)
        image = OpenLinked(*imageClass, data);
    else if (resource == Embedded)
        image = ReadEmbedded(*imageClass, resources, FolderOf(idrisi));
    else
        throw Exception(QStringLiteral("Unknown or unsupported resource type: ") + resource);
    const TBorrowed self(layer);
    idrisi.TakeImage(std::move(image));
    if (self)
        TBaseRasterMapLayerPersist::ReadLayer(resources, layer, data);
}

void TIdrisiMapLayerPersist::WriteLayer(TMapDocResourcePersist& resources, const TBaseMapLayer* layer, TXmlNode data,
                                        TMapDocExternalResourcePolicy policy) {
    const auto& idrisi = LayerAs<const TIdrisiMapLayer>(layer);
    const std::shared_ptr<const TAbstractImage> image = idrisi.GetSharedImage();
    if (!image)
        RefuseEmptyLayer(idrisi, QStringLiteral("image"));
    const TBorrowed self(layer);
    AddText(data, DataType, image->GetClassName());
    if (IsEmbedded(policy, image->GetFilePath())) {
        const QString folder = FolderOf(idrisi);
        AddText(data, Resource, Embedded);
        resources.Write(folder, Header, BytesOf(*image->getHeader()));
        resources.Write(folder, ImageData, BytesOf(*image));
    } else {
        AddLink(data, image->GetFilePath());
    }
    if (!self) // a host's device may do anything
        throw EInvalidOperation(QStringLiteral("The layer has gone while it was saved"));
    TBaseRasterMapLayerPersist::WriteLayer(resources, layer, data, policy);
}

} // namespace lmx
