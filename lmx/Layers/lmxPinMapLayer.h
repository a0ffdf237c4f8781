#pragma once

#include <lmx/Coordinates/wskMappingTypes.h>
#include <lmx/Graphics/lmxFloatRect.h>
#include <lmx/Layers/lmxBaseLayerManagerLayer.h>
#include <lmx/Runtime/lmxDictionary.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxExtended.h>
#include <lmx/Runtime/lmxObjectList.h>

#include <QString>

#include <memory>
#include <utility>

namespace lmx {

class TPinMapLayer;

/// A free pair of texts that belongs to a pin.
class LMX_EXPORT TPinAttribute {
public:
    TPinAttribute() = default;
    TPinAttribute(QString name, QString value) : FName(std::move(name)), FValue(std::move(value)) {}

    const QString& GetName() const { return FName; }
    void SetName(const QString& name) { FName = name; }
    const QString& GetValue() const { return FValue; }
    void SetValue(const QString& value) { FValue = value; }

private:
    QString FName;
    QString FValue;
};

/// A named place.
class LMX_EXPORT TPin {
public:
    TPin() = default;
    TPin(QString name, extended lon, extended lat) : FName(std::move(name)), FLat(lat), FLon(lon) {}
    /// Copies the attributes, too, in their order.
    TPin(const TPin& other);
    TPin& operator=(const TPin&) = delete;

    const QString& GetName() const { return FName; }
    void SetName(const QString& name) { FName = name; }
    extended GetLat() const { return FLat; } ///< Y of the map
    void SetLat(extended lat) { FLat = lat; }
    extended GetLon() const { return FLon; } ///< X of the map
    void SetLon(extended lon) { FLon = lon; }
    TObjectList<TPinAttribute>& GetAttributes();
    const TObjectList<TPinAttribute>& GetAttributes() const;

private:
    QString FName;
    extended FLat = 0;
    std::unique_ptr<TObjectList<TPinAttribute>> FAttributes; // null until asked for: most of many pins have none
    extended FLon = 0;
};

/// Implemented by the host: what a pin looks like.
class LMX_EXPORT TPinMapLayerPinRenderer {
public:
    virtual ~TPinMapLayerPinRenderer() = default;

    /// Draws a pin whose place is at `viewPoint`, in pixels of the bitmap, which may lie outside of it. True says that
    /// the pin was drawn and that `renderRect` holds what it covers.
    virtual bool RenderPin(TBitmap32& bitmap, TPinMapLayer* layer, TPin* pin, const TMapPoint& viewPoint,
                           TFloatRect& renderRect) = 0;
};

/// Named places on the map. The layer draws nothing itself: it has the host's renderer draw each pin, and remembers
/// where it landed. It is ready to draw at once. Changes of the pins tell nobody: call Invalidate. Main thread only.
class LMX_EXPORT TPinMapLayer : public TBaseLayerManagerLayer {
public:
    /// @throws EExArgumentNilException as TBaseLayerManagerLayer.
    explicit TPinMapLayer(const std::shared_ptr<ILayerManager>& layerManager);

    QString GetLayerTypeName() const override; ///< "Pins"
    /// Has the renderer draw the pins in the order of the list.
    /// @throws EListError "Duplicates not allowed" if a pin stands in the list twice; what the renderer raises.
    void Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) override;

    TObjectList<TPin>& GetPins() { return FPins; }
    const TObjectList<TPin>& GetPins() const { return FPins; }
    TPinMapLayerPinRenderer* GetPinRenderer() const { return FPinRenderer; } ///< nil at first
    /// Borrows the renderer, which must outlive the layer or be taken away by nil.
    void SetPinRenderer(TPinMapLayerPinRenderer* renderer) { FPinRenderer = renderer; }

    /// Where the pins stand that the last paint drew, for hit tests. A paint without a renderer or without pins leaves
    /// it as it is, so it may name pins that are no more.
    const TDictionary<TPin*, TFloatRect>& GetRenderRects() const { return FRenderRects; }

private:
    TDictionary<TPin*, TFloatRect> FRenderRects;
    TObjectList<TPin> FPins;
    TPinMapLayerPinRenderer* FPinRenderer = nullptr;
};

} // namespace lmx
