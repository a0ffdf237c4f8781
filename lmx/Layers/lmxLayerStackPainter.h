#pragma once

#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxExport.h>

#include <functional>
#include <memory>
#include <span>

namespace lmx {

class ILayerManager;
class TBaseMapLayer;
class TBitmap32;
class TWorldViewport;

/// Paints the stack of `manager` into `bitmap` as `viewport` sees it, for a view or for a picture beside one: each
/// layer that is visible, has content and is ready, from index 0, and above them `specialLayers` in their order,
/// whatever their state. One of these that is nil, or has gone when its turn comes, is passed over. Nothing is cleared
/// first. Layers that draw in threads show what they have, and ask for another paint when there is more.
///
/// A layer may do anything in its Paint: change the stack, free itself or others, destroy the viewport and whatever the
/// bitmap belongs to. What it adds is not painted. The painting ends early, with false, once the viewport or its world
/// has gone, or `goesOn` says false, which is asked before each layer; the bitmap is not touched from then on. Nil for
/// `manager` paints the special layers only. What a layer raises goes to the caller. Main thread only.
LMX_EXPORT bool PaintLayerStack(const std::shared_ptr<ILayerManager>& manager, TWorldViewport& viewport,
                                TBitmap32& bitmap, std::span<const TBorrowed<TBaseMapLayer>> specialLayers = {},
                                const std::function<bool()>& goesOn = {});

} // namespace lmx
