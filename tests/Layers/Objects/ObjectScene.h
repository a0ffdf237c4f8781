#pragma once

#include <lmx/Layers/Objects/lmxBaseObjectLayerItem.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxObjectMapLayer.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <tests/Support/GeometryPrinters.h>
#include <tests/Support/TestMap.h>

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <utility>

namespace lmx::tests {

/// An annotation that calls what it is told to.
class TTestItem : public TBaseObjectLayerItem {
public:
    using TBaseObjectLayerItem::TBaseObjectLayerItem;

    QString GetObjectType() const override { return QStringLiteral("Test"); }
    QString GetObjectClassType() const override { return QStringLiteral("TEST"); }
    void Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) override {
        ++Paints;
        if (Survives(OnPaint))
            TBaseObjectLayerItem::Paint(world, viewport, bitmap);
    }
    void MouseDown(TWorldViewport* viewport, TPoint point) override {
        ++Presses;
        if (Survives(OnMouseDown))
            TBaseObjectLayerItem::MouseDown(viewport, point);
    }
    void MouseMove(TWorldViewport* viewport, TPoint point, bool isDown) override {
        ++Moves;
        if (Survives(OnMouseMove))
            TBaseObjectLayerItem::MouseMove(viewport, point, isDown);
    }
    void SetRect(const TRect& rect) override {
        ++Rects;
        if (Survives(OnSetRect))
            TBaseObjectLayerItem::SetRect(rect);
    }

    int Paints = 0;
    int Presses = 0;
    int Moves = 0;
    int Rects = 0;
    std::function<void()> OnPaint;
    std::function<void()> OnMouseDown;
    std::function<void()> OnMouseMove;
    std::function<void()> OnSetRect;

private:
    bool Survives(const std::function<void()>& action) {
        if (!action)
            return true;
        const TBorrowed self(this);
        const auto kept = action; // it may free this
        kept();
        return static_cast<bool>(self);
    }
};

/// An object layer on a manager, above a view of 200 x 100 pixels and a white bitmap of its size.
struct TObjectScene {
    TObjectScene() {
        Layer = Manager->GetSpecialLayers().Add(std::make_unique<TObjectMapLayer>(Manager, false));
        Layer->SetPrevViewSize({200, 100});
    }

    /// Makes an annotation on the layer.
    template<class Item = TTestItem, class... Args>
    Item* Add(Args&&... args) {
        return Layer->GetObjects().Add(std::make_unique<Item>(Layer.Get(), std::forward<Args>(args)...));
    }
    TTestItem* AddAt(const TRect& rect, TGrabberOptions options = {TGrabberOption::goResizable}) {
        TTestItem* item = Add();
        item->SetGrabberOptions(options);
        item->SetRect(rect);
        return item;
    }

    /// The layer on white. Without pixels if what was painted has freed the view.
    const TBitmap32& Painted() {
        static const TBitmap32 none;
        Map->Bitmap.Clear(clWhite32);
        Layer->Paint(&Map->World, &Map->Viewport, Map->Bitmap);
        return Map ? Map->Bitmap : none;
    }
    TWorldViewport* Viewport() const { return Map ? &Map->Viewport : nullptr; }
    void Press(TPoint at) const { Layer->MouseDown(Viewport(), at); }
    void Move(TPoint to, bool isDown = true) const { Layer->MouseMove(Viewport(), to, isDown); }
    void Release(TPoint at) const { Layer->MouseUp(Viewport(), at, true); }
    void Drag(TPoint from, TPoint to) const {
        Press(from);
        Move(to);
        Release(to);
    }
    void Resize(TSize size) const {
        Map->Viewport.SetViewSize(size);
        Layer->UpdateLayouts(Viewport());
    }

    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    TBorrowed<TObjectMapLayer> Layer;
    std::unique_ptr<TTestMap> Map = std::make_unique<TTestMap>(200, 100);
};

/// Counts what a layer tells.
struct TObjectNews {
    explicit TObjectNews(TObjectMapLayer* layer)
        : FChanged(layer->GetOnObjectChanged().Add([this](auto*, auto* item) { Note("changed", item); })),
          FAdded(layer->GetOnObjectAdded().Add([this](auto*, auto* item) { Note("added", item); })),
          FRemoved(layer->GetOnObjectRemoved().Add([this](auto*, auto* item) { Note("removed", item); })),
          FSelected(layer->GetOnObjectSelected().Add([this](auto*, auto* item) { Note("selected", item); })),
          FInvalidated(layer->GetOnInvalidated().Add([this](auto*) { ++Invalidations; })) {}

    /// What was told since the last call, and how often the layer was invalidated: "changed:a added: 2".
    QString Take() {
        Texts += QString::number(std::exchange(Invalidations, 0));
        return std::exchange(Texts, QStringList()).join(u' ');
    }

    QStringList Texts;
    int Invalidations = 0;

private:
    void Note(const char* what, const TBaseObjectLayerItem* item) {
        Texts += QString::fromLatin1(what) + u':' + item->GetName();
    }

    TSubscription FChanged;
    TSubscription FAdded;
    TSubscription FRemoved;
    TSubscription FSelected;
    TSubscription FInvalidated;
};

} // namespace lmx::tests
