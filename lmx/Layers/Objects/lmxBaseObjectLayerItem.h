#pragma once

#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Layers/Objects/lmxAnchorData.h>
#include <lmx/Layers/Objects/lmxObjectGeometry.h>
#include <lmx/Runtime/lmxAnchors.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxEventList.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxGeometry.h>

#include <QString>

#include <cstdint>

namespace lmx {

class TBitmap32;
class TObjectMapLayer;
class TWorld;
class TWorldViewport;

/// Root of the annotations of an object layer: a rectangle on the view with background, border and grabbers. Setters do
/// nothing for an equal value and tell of a new one (NotifyChanged), unless something else is said. All pixels are
/// those of the view's buffer. Whoever is told of an annotation may free it, its layer and the view.
class LMX_EXPORT TBaseObjectLayerItem : public TEventReceiver {
public:
    /// `layer` may be nil: such an annotation tells nobody, and its device ratio is 1.
    explicit TBaseObjectLayerItem(TObjectMapLayer* layer);
    virtual ~TBaseObjectLayerItem();
    TBaseObjectLayerItem(const TBaseObjectLayerItem&) = delete;
    TBaseObjectLayerItem& operator=(const TBaseObjectLayerItem&) = delete;

    /// Where the grabbers stand: the rectangle, at least 26 pixels wide and high.
    virtual TRect GetViewRect() const;
    virtual void SetIsVisible(bool isVisible);
    virtual void SetName(const QString& name); ///< tells nobody
    /// Moves the grabbers and measures the distances to the edges of the view anew. Tells nobody.
    virtual void SetRect(const TRect& rect);
    virtual void SetBackgroundColor(TColor32 color);
    virtual void SetShowBackground(bool show);
    virtual QString GetObjectType() const = 0;      ///< text to show
    virtual QString GetObjectClassType() const = 0; ///< the key of the type in documents; empty: it is not saved
    /// Background and border, if they are shown, by the four corners of the rectangle, also of an inverted one. An
    /// override calls this first, paints its content, and calls PaintGrabbers last.
    virtual void Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap);
    /// Selects the annotation if it is not locked and its rectangle holds the point, else deselects it; remembers what
    /// the press took hold of. An invisible one stays as it is.
    virtual void MouseDown(TWorldViewport* viewport, TPoint point);
    /// Drags what the press took hold of.
    virtual void MouseMove(TWorldViewport* viewport, TPoint point, bool isDown);

    /// Between the two a change tells nobody, but repaints; the end tells once. They do not nest.
    void BeginUpdate() { FUpdating = true; }
    void EndUpdate();
    void NotifyChanged();

    /// The dashed frame and the grabbers of a selected annotation.
    void PaintGrabbers(TBitmap32& bitmap) const;

    void SetAnchorAdjustedRect(const TRect& rect) { SetRect(rect); }
    /// Measures the distances to the edges of the view against its size at the last paint or layout; not during one.
    void UpdateAnchorData();
    void UpdateGrabberRects();

    TObjectMapLayer* GetLayer() const { return FLayer.Get(); } ///< nil once it is gone
    const TRect& GetRect() const { return FRect; }
    const QString& GetName() const { return FName; }
    bool GetIsVisible() const { return FIsVisible; } ///< true at first
    bool GetIsSelected() const { return FIsSelected; }
    void SetIsSelected(bool isSelected);
    bool GetLocked() const { return FLocked; }        ///< the mouse cannot select it
    void SetLocked(bool locked) { FLocked = locked; } ///< tells nobody
    bool GetShowBackground() const { return FShowBackground; }
    TColor32 GetBackgroundColor() const { return FBackgroundColor; } ///< translucent white at first
    bool GetShowBorder() const { return FShowBorder; }
    void SetShowBorder(bool show);
    TColor32 GetBorderColor() const { return FBorderColor; } ///< black at first
    void SetBorderColor(TColor32 color);
    /// The edges of the view that it keeps its distance to; left and top at first.
    TAnchors GetAnchors() const { return FAnchors; }
    /// Measures nothing and tells nobody: the next layout goes by the distances that were measured last.
    void SetAnchors(TAnchors anchors) { FAnchors = anchors; }
    const TAnchorData& GetAnchorData() const { return FAnchorData; }
    void SetAnchorData(const TAnchorData& data) { FAnchorData = data; } ///< tells nobody
    TGrabberOptions GetGrabberOptions() const { return FGrabberOptions; }
    void SetGrabberOptions(TGrabberOptions options) { FGrabberOptions = options; } ///< tells nobody
    const TGrabberRects& GetGrabberRects() const { return FGrabberRects; }
    /// What the last press took hold of; a release leaves it.
    TSelectedElement GetSelectedElement() const { return FSelectedElement; }

protected:
    /// Stores what differs and tells of it. May free the annotation.
    template<class Value>
    void Store(Value& present, const Value& value) {
        if (present == value)
            return;
        present = value;
        NotifyChanged();
    }
    void InvalidateLayer() const;

    double GetDeviceRatio() const;                 ///< the layer's
    std::int32_t ToDevicePixels(int pixels) const; ///< pixels to the eye in pixels of the buffer, rounded
    TRect ToDevicePixels(const TRect& rect) const;
    /// Sets the rectangle and nothing else; `rect` in pixels of the buffer.
    void StoreRect(const TRect& rect) { FRect = rect; }
    /// Sets these without telling, for constructors.
    void StoreColors(bool showBackground, TColor32 backgroundColor, bool showBorder, TColor32 borderColor);

private:
    friend class TObjectMapLayer;

    void UpdateLayout(TSize viewSize);
    void ScaleBy(double factor);
    void SetRectOfLayout(const TRect& rect);

    bool FUpdatingLayout = false;
    bool FLocked = false;
    TColor32 FBorderColor = clBlack32;
    bool FShowBorder = false;
    TGrabberRects FGrabberRects;
    QString FName;
    TRect FRect;
    TAnchors FAnchors = {TAnchorKind::akLeft, TAnchorKind::akTop};
    TBorrowed<TObjectMapLayer> FLayer;
    bool FIsSelected = false;
    bool FIsVisible = true;
    TGrabberOptions FGrabberOptions;
    TSelectedElement FSelectedElement = TSelectedElement::soNone;
    TRect FMouseDownRect;
    TPoint FMouseDownRectOffset;
    bool FUpdating = false;
    TColor32 FBackgroundColor = Color32(255, 255, 255, 200);
    bool FShowBackground = false;
    TAnchorData FAnchorData;
};

} // namespace lmx
