#pragma once

#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxXml.h>

#include <QString>

#include <memory>

namespace lmx {

class ILayerManager;
class TBaseObjectLayerItem;
class TObjectMapLayer;

/// Writes the annotations of one type into an `object` element, and reads them.
class LMX_EXPORT IObjectLayerTypeItemPersist {
public:
    virtual ~IObjectLayerTypeItemPersist() = default;

    /// Fills an annotation that is in no list yet. `manager` is where a legend finds its layer.
    /// @throws EArgumentException "Obj" for an item of another class; EConvertError and Exception for texts that are
    /// none of such an annotation, or absent.
    virtual void Read(TXmlNode node, TBaseObjectLayerItem* item, const std::shared_ptr<ILayerManager>& manager) = 0;
    /// @throws EArgumentException "Obj" for an item of another class.
    virtual void Write(const TBaseObjectLayerItem* item, TXmlNode node) = 0;
    virtual std::unique_ptr<TBaseObjectLayerItem> CreateObject(TObjectMapLayer* layer) = 0;
};

class LMX_EXPORT TObjectLayerTypeItemPersistFactory {
public:
    /// By TBaseObjectLayerItem::GetObjectClassType, compared exactly; nil for others than compass roses, text boxes,
    /// shape keys, legends and rectangles.
    static std::unique_ptr<IObjectLayerTypeItemPersist> GetObject(const QString& typeName);
};

} // namespace lmx
