// The manifest of a map document, without entries: it is refused, or what it holds is read and written again.

#include <lmx/MapDoc/lmxMapDocReader.h>
#include <lmx/MapDoc/lmxMapDocResourcePersist.h>
#include <tests/fuzz/MapDocSupport.h>

#include <QBuffer>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace lmx;

namespace {

TXmlDocument Parse(const QByteArray& input) {
    QBuffer archive;
    archive.open(QIODevice::ReadWrite);
    TMapDocResourcePersist(archive, QStringLiteral("input"), TMapDocPersistMode::pmWrite)
        .Write({}, QStringLiteral("manifest"), input);
    const TMapDocResourcePersist read(archive, QStringLiteral("input"), TMapDocPersistMode::pmRead);
    return TXmlDocument::FromText(read.ReadText({}, QStringLiteral("manifest")));
}

void Load(const TXmlNode root, const std::shared_ptr<ILayerManager>& manager) {
    TMapDocReader reader(QStringLiteral("Test"), fuzz::LayerFactory(), fuzz::PersistFactory());
    QBuffer device;
    device.open(QIODevice::ReadWrite);
    TMapDocResourcePersist(device, {}, TMapDocPersistMode::pmWrite).Finish();
    TMapDocResourcePersist resources(device, {}, TMapDocPersistMode::pmRead);
    int version = 0;
    QString type;
    QString title;
    QString system;
    extended zoom = 0;
    TMapPoint center;
    reader.ProcessRoot(root, version, type, title, system, zoom, center);
    reader.LoadLayers(version, root.Child(QStringLiteral("layers")), manager, resources);
    reader.LoadSpecialLayers(version, root.Child(QStringLiteral("specialLayers")), manager, resources);
}

// What was read from a manifest alone is never something that cannot be written.
void SaveSpecialLayers(const ILayerManager& manager) {
    QBuffer device;
    device.open(QIODevice::WriteOnly);
    TMapDocResourcePersist resources(device, {}, TMapDocPersistMode::pmWrite);
    const TXmlDocument document(QStringLiteral("specialLayers"));
    for (const TBaseMapLayer* const layer : manager.GetSpecialLayers()) {
        const TXmlNode node = document.GetRoot().AddChild(QStringLiteral("layer"));
        WriteDefaultLayerProperties(layer, node);
        fuzz::PersistFactory()
            ->GetPersist(layer->GetLayerClassName())
            ->WriteLayer(resources, layer, node, TMapDocExternalResourcePolicy::erpKeepExternal);
    }
    TXmlDocument::FromText(document.ToText());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    fuzz::NeedApplication();
    const auto manager = fuzz::ManagerWithSpecialLayers();
    try {
        const TXmlDocument document = Parse({reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size)});
        Load(document.GetRoot(), manager);
    } catch (const Exception&) { // a refusal is a correct answer
    }
    SaveSpecialLayers(*manager);
    return 0;
}
