#include <lmx/Controls/Private/lmxSpecialLayerSet.h>

#include <lmx/Layers/lmxInfoQueryPointLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxObjectMapLayer.h>
#include <lmx/Layers/lmxRulerMapLayer.h>
#include <lmx/Layers/lmxSelectionMapLayer.h>

#include <utility>

namespace lmx {

namespace {

// The flag and the reference come first: the manager tells of the layer as soon as it has it.
template<class Layer>
void AddTo(ILayerManager& manager, TBorrowed<Layer>& reference, std::unique_ptr<Layer> layer) {
    reference = layer.get();
    layer->SetFlags(layer->GetFlags() + TLayerFlags{TLayerFlag::lfSpecial});
    manager.GetSpecialLayers().Add(std::move(layer));
}

template<class Layer>
void RemoveFrom(ILayerManager& manager, TBorrowed<Layer>& reference) {
    const TBorrowed<Layer> layer = std::exchange(reference, TBorrowed<Layer>());
    manager.GetSpecialLayers().Remove(layer.Get());
}

} // namespace

std::function<bool()> TSpecialLayerSet::Begin() {
    return [this, life = FLifetime.Watch(), turn = ++FTurn] { return !life.IsOver() && turn == FTurn; };
}

void TSpecialLayerSet::Add(const std::shared_ptr<ILayerManager>& manager, TSpecialLayerAccess kinds,
                           const TObjectLayerMaker& makeObjectLayer) {
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): the caller's may change meanwhile
    const std::shared_ptr<ILayerManager> kept = manager;
    const auto goesOn = Begin();
    if (kinds.Contains(TSpecialLayers::slSelection))
        AddTo(*kept, FSelection, std::make_unique<TSelectionMapLayer>(kept));
    if (goesOn() && kinds.Contains(TSpecialLayers::slRulers))
        AddTo(*kept, FRulers, std::make_unique<TRulerMapLayer>(kept));
    if (goesOn() && kinds.Contains(TSpecialLayers::slInfoQueryPointLayer))
        AddTo(*kept, FPoints, std::make_unique<TInfoQueryPointLayer>(kept));
    if (!goesOn() || !kinds.Contains(TSpecialLayers::slObject))
        return;
    auto layer = makeObjectLayer();
    if (layer && goesOn())
        AddTo(*kept, FObjects, std::move(layer));
}

void TSpecialLayerSet::Remove(const std::shared_ptr<ILayerManager>& manager) {
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): the caller's may change meanwhile
    const std::shared_ptr<ILayerManager> kept = manager;
    const auto goesOn = Begin();
    RemoveFrom(*kept, FSelection);
    if (goesOn())
        RemoveFrom(*kept, FRulers);
    if (goesOn())
        RemoveFrom(*kept, FPoints);
    if (goesOn())
        RemoveFrom(*kept, FObjects);
}

} // namespace lmx
