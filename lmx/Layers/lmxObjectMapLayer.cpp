#include <lmx/Layers/lmxObjectMapLayer.h>

#include <lmx/Coordinates/wskWorld.h>
#include <lmx/Layers/Objects/lmxBaseObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxObjectGeometry.h>
#include <lmx/Layers/Private/lmxLayerComponents.h>

#include <utility>
#include <vector>

namespace lmx {

namespace {

constexpr double SmallestRatio = 1e-3;
constexpr double LargestRatio = 1e3;

} // namespace

TObjectMapLayer::TObjectMapLayer(const std::shared_ptr<ILayerManager>& layerManager, bool useLegendControl)
    : TBaseLayerManagerLayer(layerManager),
      FUseLegendControl(useLegendControl) {
    FObjects.SetOnChange([this](TBaseObjectLayerItem* item, TListChange change) { Objects_Notify(item, change); });
    TObjectMapLayer::CreateLegendComponent();
    SetIsReadyToDraw(true);
}

TObjectMapLayer::~TObjectMapLayer() {
    FObjects.Clear();
}

QString TObjectMapLayer::GetLayerTypeName() const {
    return QStringLiteral("Objects");
}

TMouseSupport TObjectMapLayer::GetMouseSupport() const {
    return {TMouseSupportAction::msMouseDown, TMouseSupportAction::msMouseUp, TMouseSupportAction::msMouseMove,
            TMouseSupportAction::msRightClick};
}

void TObjectMapLayer::CreateLegendComponent() {
    if (FUseLegendControl)
        SetLegendComponent(CreateObjectLegendControl(this));
}

void TObjectMapLayer::BeforeLayerManagerRemoved(ILayerManager*) {
    FObjects.Clear();
}

// What an annotation does in its paint may take the view away, and its buffer with it.
void TObjectMapLayer::Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) {
    TBaseLayerManagerLayer::Paint(world, viewport, bitmap);
    FPrevViewSize = viewport->GetViewSize();
    const auto goesOn = [self = TBorrowed(this), view = TBorrowed(viewport)] {
        return self && view && view->GetWorld();
    };
    FObjects.ForEach([&](TBaseObjectLayerItem* item) {
        if (item->GetIsVisible())
            item->Paint(world, viewport, bitmap);
        return goesOn();
    });
}

void TObjectMapLayer::MouseDown(TWorldViewport* viewport, TPoint point) {
    const TBorrowed self(this);
    TBaseLayerManagerLayer::MouseDown(viewport, point);
    FIsMouseDown = true;
    const TBorrowed hit = OfferPress(viewport, point);
    if (self && hit)
        FOnObjectSelected.SendWhile([&] { return self && hit; }, this, hit.Get());
    if (self)
        Invalidate();
}

// From the top down, so the list is noted first: annotations that leave it meanwhile are passed over, and those that
// come are not asked.
TBorrowed<TBaseObjectLayerItem> TObjectMapLayer::OfferPress(TWorldViewport* viewport, TPoint point) {
    const TBorrowed self(this);
    const TBorrowed view(viewport);
    std::vector<TBorrowed<TBaseObjectLayerItem>> items;
    items.reserve(static_cast<std::size_t>(FObjects.Count()));
    for (TBaseObjectLayerItem* item : FObjects)
        items.emplace_back(item);
    TBorrowed<TBaseObjectLayerItem> hit;
    bool hasHit = false;
    for (auto item = items.rbegin(); item != items.rend() && self && view; ++item) {
        if (!*item || !FObjects.Contains(item->Get()))
            continue;
        if (hasHit) {
            item->Get()->SetIsSelected(false);
            continue;
        }
        item->Get()->MouseDown(viewport, point);
        hasHit = *item && item->Get()->GetIsSelected();
        if (hasHit)
            hit = *item;
    }
    return hit;
}

void TObjectMapLayer::MouseMove(TWorldViewport* viewport, TPoint point, bool isMouseDown) {
    const TBorrowed self(this);
    TBaseLayerManagerLayer::MouseMove(viewport, point, isMouseDown);
    FObjects.ForEach([&, view = TBorrowed(viewport)](TBaseObjectLayerItem* item) {
        item->MouseMove(viewport, point, isMouseDown);
        return self && view;
    });
    if (self)
        Invalidate();
}

void TObjectMapLayer::MouseUp(TWorldViewport* viewport, TPoint point, bool wasMouseDown) {
    TBaseLayerManagerLayer::MouseUp(viewport, point, wasMouseDown);
    FIsMouseDown = false;
}

TBaseObjectLayerItem* TObjectMapLayer::GetSelectedObject() const {
    for (TBaseObjectLayerItem* item : FObjects)
        if (item->GetIsSelected())
            return item;
    return nullptr;
}

void TObjectMapLayer::SetSelectedObject(TBaseObjectLayerItem* item) {
    const TBorrowed self(this);
    const TBorrowed chosen(item);
    bool hasChanged = false;
    bool isChosenNew = false;
    FObjects.ForEach([&](TBaseObjectLayerItem* each) {
        const bool isChosen = each == item;
        if (each->GetIsSelected() == isChosen)
            return true;
        hasChanged = true;
        isChosenNew = isChosenNew || isChosen;
        each->SetIsSelected(isChosen);
        return static_cast<bool>(self);
    });
    if (!self || !hasChanged)
        return;
    Invalidate();
    if (self && isChosenNew)
        FOnObjectSelected.SendWhile([&] { return self && chosen; }, this, item);
}

// Whoever is told of a rectangle may have the view laid out anew: then the rest follows the newer size.
void TObjectMapLayer::UpdateLayouts(TWorldViewport* viewport) {
    FPrevViewSize = viewport->GetViewSize();
    FObjects.ForEach([&, self = TBorrowed(this)](TBaseObjectLayerItem* item) {
        item->UpdateLayout(FPrevViewSize);
        return static_cast<bool>(self);
    });
}

void TObjectMapLayer::SetDeviceRatio(double ratio) {
    if (ratio == FDeviceRatio || !(ratio >= SmallestRatio && ratio <= LargestRatio))
        return;
    const double factor = ratio / std::exchange(FDeviceRatio, ratio);
    FPrevViewSize = {ScaledPixels(FPrevViewSize.cx, factor), ScaledPixels(FPrevViewSize.cy, factor)};
    const TBorrowed self(this);
    FObjects.ForEach([&](TBaseObjectLayerItem* item) {
        item->ScaleBy(factor);
        return static_cast<bool>(self);
    });
    if (self)
        Invalidate();
}

// A subscriber may let the layer go, and take out an annotation that has just come: then the others are not told of it.
void TObjectMapLayer::Objects_Notify(TBaseObjectLayerItem* item, TListChange change) {
    const TBorrowed self(this);
    if (change == TListChange::lcAdded)
        FOnObjectAdded.SendWhile([&] { return FObjects.IsArriving(item); }, this, item);
    else
        FOnObjectRemoved.Send(this, item);
    if (self)
        Invalidate();
}

} // namespace lmx
