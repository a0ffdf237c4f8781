#pragma once

#include <lmx/Controls/lmxMapViewTypes.h>
#include <lmx/Runtime/lmxBorrowed.h>

#include <functional>
#include <memory>

namespace lmx {

class ILayerManager;
class TInfoQueryPointLayer;
class TObjectMapLayer;
class TRulerMapLayer;
class TSelectionMapLayer;

/// The special layers that a view has made on a manager, whose list owns them. Whoever is told that they come and go
/// may have them added and removed meanwhile, and destroy the set: what was begun last is what stands.
class TSpecialLayerSet {
public:
    /// Makes the layer of annotations, or nil.
    using TObjectLayerMaker = std::function<std::unique_ptr<TObjectMapLayer>()>;

    void Add(const std::shared_ptr<ILayerManager>& manager, TSpecialLayerAccess kinds,
             const TObjectLayerMaker& makeObjectLayer);
    void Remove(const std::shared_ptr<ILayerManager>& manager);

    // Nil for a layer that was not made, or has left its list.
    TSelectionMapLayer* GetSelection() const { return FSelection.Get(); }
    TRulerMapLayer* GetRulers() const { return FRulers.Get(); }
    TInfoQueryPointLayer* GetPoints() const { return FPoints.Get(); }
    TObjectMapLayer* GetObjects() const { return FObjects.Get(); }

private:
    /// Begins an adding or removing, which ends every earlier one; answers whether it may still go on.
    std::function<bool()> Begin();

    TBorrowed<TSelectionMapLayer> FSelection;
    TBorrowed<TRulerMapLayer> FRulers;
    TBorrowed<TInfoQueryPointLayer> FPoints;
    TBorrowed<TObjectMapLayer> FObjects;
    int FTurn = 0;
    TLifetime FLifetime;
};

} // namespace lmx
