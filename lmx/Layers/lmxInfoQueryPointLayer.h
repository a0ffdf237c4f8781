#pragma once

#include <lmx/Coordinates/wskMappingTypes.h>
#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Layers/lmxBaseLayerManagerLayer.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxLifetime.h>
#include <lmx/Runtime/lmxObjectList.h>

#include <QString>

#include <memory>

namespace lmx {

class TInfoQueryPointLayer;

/// Draws the marker of a query point: a filled triangle that stands with its tip on `point`, in pixels of the bitmap,
/// and a black outline around it, which is translucent if `softOutline`. A negative size asks for 20 and a
/// negative stroke width for 3, both times the bitmap's device ratio. No outline is drawn with a stroke width of 0.
LMX_EXPORT void InfoPointPaint(const TMapPoint& point, TBitmap32& bitmap, TColor32 color, bool softOutline, float size,
                               float strokeWidth);

/// A marked place whose values the user wants to read. A new value of a property repaints the layer that the point was
/// made for, if there is one and it still lives.
class LMX_EXPORT TInfoQueryPoint {
public:
    TInfoQueryPoint() = default;                                                          ///< for no layer
    TInfoQueryPoint(TInfoQueryPointLayer* layer, const TMapPoint& point, TColor32 color); ///< `layer` may be nil

    TInfoQueryPointLayer* GetLayer() const { return FLayer.Get(); } ///< nil once it is gone
    TColor32 GetColor() const { return FColor; }
    void SetColor(TColor32 color);
    const TMapPoint& GetPoint() const { return FPoint; } ///< map coordinates
    void SetPoint(const TMapPoint& point);
    const QString& GetPointLabel() const { return FPointLabel; } ///< may be empty
    void SetPointLabel(const QString& label);
    /// The label, or the coordinates with three decimals if it is empty.
    QString GetLabelOrLocation() const;

    void Paint(TWorldViewport* viewport, TBitmap32& bitmap) const;

    const TLifetime& GetLifetime() const { return FLifetime; }

private:
    void Changed() const;

    TBorrowed<TInfoQueryPointLayer> FLayer;
    TColor32 FColor = 0;
    TMapPoint FPoint;
    QString FPointLabel;
    TLifetime FLifetime; // the last member: it ends before the others go
};

using TInfoQueryPointEventList = TEventList<TInfoQueryPointLayer*, TInfoQueryPoint*>;

/// The query points of a view, each shown by its marker. Main thread only.
class LMX_EXPORT TInfoQueryPointLayer : public TBaseLayerManagerLayer {
public:
    /// @throws EExArgumentNilException as TBaseLayerManagerLayer.
    explicit TInfoQueryPointLayer(const std::shared_ptr<ILayerManager>& layerManager);
    /// Tells of every point that it is removed.
    ~TInfoQueryPointLayer() override;

    QString GetLayerTypeName() const override; ///< "Info Query points"
    /// The points in the order of the list.
    void Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) override;

    /// Changes of the list send the events below and repaint.
    TObjectList<TInfoQueryPoint>& GetPoints() { return FPoints; }
    const TObjectList<TInfoQueryPoint>& GetPoints() const { return FPoints; }

    /// Those behind a subscriber that takes the point out again are not told of it.
    TInfoQueryPointEventList& GetOnAdded() { return FOnAdded; }
    TInfoQueryPointEventList& GetOnRemoved() { return FOnRemoved; } ///< the point still lives

private:
    void Points_OnNotify(TInfoQueryPoint* point, TListChange change);

    TInfoQueryPointEventList FOnAdded;
    TInfoQueryPointEventList FOnRemoved;
    TObjectList<TInfoQueryPoint> FPoints; // last, so that it goes while the events are still there
};

} // namespace lmx
