#include <lmx/MapDoc/Private/lmxMapDocResources.h>

#include <lmx/Layers/lmxBaseMapLayer.h>
#include <lmx/MapDoc/Private/lmxMapDocTexts.h>

namespace lmx {

bool IsEmbedded(TMapDocExternalResourcePolicy policy, const QString& fileName) {
    return policy == TMapDocExternalResourcePolicy::erpEmbedIfPossible || !IsRegularFile(fileName);
}

void AddLink(TXmlNode data, const QString& fileName) {
    AddText(data, Resource, Linked);
    AddText(data, FileName, fileName);
}

QString FolderOf(const TBaseMapLayer& layer) {
    return GuidToText(layer.GetLayerID());
}

void RefuseEmptyLayer(const TBaseMapLayer& layer, const QString& what) {
    throw EInvalidOperation(QStringLiteral("Layer \"") + layer.GetLayerName() + QStringLiteral("\" has no ") + what);
}

} // namespace lmx
