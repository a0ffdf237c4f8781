#include <lmx/Layers/lmxBaseMapLayer.h>

#include <lmx/Layers/Private/lmxLayerComponents.h>
#include <lmx/Runtime/Private/lmxClassName.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxExceptions.h>

namespace lmx {

TBaseMapLayer::TBaseMapLayer() : FLayerID(QUuid::createUuid()) {}

TBaseMapLayer::~TBaseMapLayer() {
    if (FLegendObject && !FLegendObject->parent())
        FreeLegendControl(FLegendComponent);
}

void TBaseMapLayer::CreateLegendComponent() {}

bool TBaseMapLayer::GetShowsInLayersList() const {
    return true;
}

TMouseSupport TBaseMapLayer::GetMouseSupport() const {
    return {};
}

TLayerOptionFlags TBaseMapLayer::GetLayerOptionFlags() const {
    return {TLayerOptionFlag::lofDelete, TLayerOptionFlag::lofRename, TLayerOptionFlag::lofProperties};
}

bool TBaseMapLayer::GetHasContent() const {
    return true;
}

std::unique_ptr<TBaseMapLayer> TBaseMapLayer::Duplicate() const {
    throw ENotSupportedException(QStringLiteral("Duplication method not provided"));
}

void TBaseMapLayer::Paint(TWorld*, TWorldViewport*, TBitmap32&) {}

void TBaseMapLayer::Invalidate() {
    if (FUpdating) {
        ++FInvalidateCount;
        return;
    }
    const TBorrowed self(this); // whoever is told may destroy the layer
    SetIsReadyToDraw(false);
    if (self)
        SetIsReadyToDraw(true);
    if (self)
        DoNotifyInvalidated();
}

QString TBaseMapLayer::GetLayerClassName() const {
    const QString name = ClassNameOf(typeid(*this));
    return name.size() > 1 && name.startsWith(u'T') ? name.sliced(1) : name;
}

void TBaseMapLayer::GetContextMenuItems(std::vector<TLayerMenuItem>* list) {
    if (!list)
        throw EExArgumentNilException(QStringLiteral("TBaseMapLayer.GetContextMenuItems"), QStringLiteral("List"));
    if (HasArea())
        list->emplace_back(QStringLiteral("&Goto Extent"), true, MenuEvent([this] { GotoExtendMenuItem_Click(); }));
}

void TBaseMapLayer::InitPropertiesDialog(TLayerPropertiesDialog* dialog) {
    if (!dialog)
        throw EExArgumentNilException(QStringLiteral("TBaseMapLayer.InitPropertiesDialog"), QStringLiteral("Dialog"));
    AddBoundsPage(*dialog, *this);
    AddAttributesPage(*dialog, *this);
}

void TBaseMapLayer::MouseDown(TWorldViewport*, TPoint) {}

void TBaseMapLayer::MouseMove(TWorldViewport*, TPoint, bool) {}

void TBaseMapLayer::MouseUp(TWorldViewport*, TPoint, bool) {}

void TBaseMapLayer::BeginUpdate() {
    FUpdating = true;
}

void TBaseMapLayer::EndUpdate() {
    FUpdating = false;
    const bool wasInvalidated = FInvalidateCount > 0;
    FInvalidateCount = 0;
    if (wasInvalidated)
        Invalidate();
}

void TBaseMapLayer::SetIsVisible(bool isVisible) {
    if (isVisible == FIsVisible)
        return;
    FIsVisible = isVisible;
    FOnVisibilityChanged.Send(this);
}

void TBaseMapLayer::SetIsReadyToDraw(bool isReadyToDraw) {
    if (isReadyToDraw == FIsReadyToDraw)
        return;
    FIsReadyToDraw = isReadyToDraw;
    DoNotifyReadyToDraw();
}

void TBaseMapLayer::SetLayerName(const QString& name) {
    if (name == FLayerName)
        return;
    FLayerName = name;
    FOnLayerNameChanged.Send(this);
}

void TBaseMapLayer::SetLayerArea(const TWorldMapArea& area) {
    if (area.Equals(FLayerArea))
        return;
    FLayerArea = area;
    FOnLayerAreaChanged.Send(this);
}

TBaseLegendControl* TBaseMapLayer::GetLegendComponent() const {
    return FLegendObject ? FLegendComponent : nullptr;
}

void TBaseMapLayer::SetLegendComponent(TBaseLegendControl* component) {
    TBaseLegendControl* const old = GetLegendComponent();
    if (component == old)
        return;
    FLegendComponent = component;
    FLegendObject = component ? LegendControlObject(component) : nullptr;
    const TBorrowed self(this); // a form that loses its control may free the layer
    if (old)
        FreeLegendControl(old);
    if (self)
        FOnLegendComponentChanged.Send(this, GetLegendComponent());
}

void TBaseMapLayer::DoNotifyInvalidated() {
    FOnInvalidated.Send(this);
}

void TBaseMapLayer::DoNotifyReadyToDraw() {
    FOnReadyToDrawChanged.Send(this);
}

void TBaseMapLayer::GotoExtendMenuItem_Click() {
    if (HasArea())
        FOnMapCommand.Send(this, TLayerMapCommand::cmdGotoExtent, nullptr);
}

void TBaseMapLayer::UpdateDuplicateBaseMapLayer(TBaseMapLayer* target) const {
    target->FLayerName = FLayerName;
    target->FTag = FTag;
    target->FFlags = FFlags;
    target->FLayerArea = FLayerArea;
}

std::function<void()> TBaseMapLayer::MenuEvent(std::function<void()> action) const {
    return [self = TBorrowed(this), action = std::move(action)] {
        if (self)
            action();
    };
}

bool TBaseMapLayer::HasArea() const {
    return !FLayerArea.Area.Equals(TMapArea());
}

} // namespace lmx
