#pragma once

#include <lmx/Layers/Objects/lmxBaseObjectLayerItem.h>
#include <lmx/MapDoc/lmxObjectLayerTypeItemPersist.h>
#include <lmx/Runtime/lmxExceptions.h>

namespace lmx {

/// The annotation as one of a class.
/// @throws EArgumentException "Obj" if it is of another one, or nil.
template<class Item, class Given>
Item& ItemAs(Given* item) {
    auto* const wanted = dynamic_cast<Item*>(item);
    if (!wanted)
        throw EArgumentException(QStringLiteral("Obj"));
    return *wanted;
}

/// What all annotations have: the attributes of the `object` element. Rectangles in documents are pixels to the eye.
/// The saved border comes back as the background, and the border as its constructor made it.
class TBaseObjectLayerTypeItemPersist : public IObjectLayerTypeItemPersist {
public:
    void Read(TXmlNode node, TBaseObjectLayerItem* item, const std::shared_ptr<ILayerManager>& manager) override;
    void Write(const TBaseObjectLayerItem* item, TXmlNode node) override;
};

} // namespace lmx
