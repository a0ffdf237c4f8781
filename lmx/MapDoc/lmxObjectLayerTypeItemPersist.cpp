#include <lmx/MapDoc/lmxObjectLayerTypeItemPersist.h>

#include <lmx/MapDoc/Private/lmxCompassRoseObjectLayerItemPersist.h>
#include <lmx/MapDoc/Private/lmxLegendObjectLayerItemPersist.h>
#include <lmx/MapDoc/Private/lmxRectangleObjectTypeLayerItemPersist.h>
#include <lmx/MapDoc/Private/lmxShapeLegendObjectLayerItemPersist.h>
#include <lmx/MapDoc/Private/lmxTextBoxObjectLayerItemPersist.h>

namespace lmx {

std::unique_ptr<IObjectLayerTypeItemPersist> TObjectLayerTypeItemPersistFactory::GetObject(const QString& typeName) {
    if (typeName == QStringLiteral("COMPASSROSE"))
        return std::make_unique<TCompassRoseObjectLayerItemPersist>();
    if (typeName == QStringLiteral("TEXT"))
        return std::make_unique<TTextBoxObjectLayerItemPersist>();
    if (typeName == QStringLiteral("SHAPELEGEND"))
        return std::make_unique<TShapeLegendObjectLayerItemPersist>();
    if (typeName == QStringLiteral("LEGEND"))
        return std::make_unique<TLegendObjectLayerItemPersist>();
    if (typeName == QStringLiteral("RECTANGLE"))
        return std::make_unique<TRectangleObjectTypeLayerItemPersist>();
    return nullptr;
}

} // namespace lmx
