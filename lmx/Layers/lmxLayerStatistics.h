#pragma once

#include <lmx/Coordinates/wskMappingTypes.h>
#include <lmx/Raster/lmxFieldRegion.h>
#include <lmx/Raster/lmxFieldStatistics.h>
#include <lmx/Runtime/lmxExport.h>

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

namespace lmx {

class ILayerManager;
class TIdrisiMapLayer;
class TShapeFileLayer;

// Statistics of what a raster layer shows, and new layers from several. How cells are weighed stands in
// lmxFieldRegion.h, what a result holds in lmxFieldStatistics.h and lmxFieldArithmetic.h.
//
// All raise EInvalidOperation `The layer "x" has no image` for a layer without one. Main thread only.

/// Of the whole layer.
LMX_EXPORT TFieldStatistics StatisticsOf(const TIdrisiMapLayer& layer);
/// Of what lies in a rectangle in the layer's own units, such as the one that is selected on the map
/// (TSelectionMapLayer::GetSelectedRect); cells that it cuts count by the share inside.
LMX_EXPORT TFieldStatistics StatisticsOf(const TIdrisiMapLayer& layer, const TMapArea& area);
/// Of what lies in a polygon of a shape layer, by the layer's projection; cells count whole if their centre is inside.
/// @throws EInvalidOperation `The layer "x" has no shape file`; EArgumentException "Polygon index is out of range".
LMX_EXPORT TFieldStatistics StatisticsOf(const TIdrisiMapLayer& layer, const TShapeFileLayer& shapes,
                                         std::size_t polygon);
/// The rings of a polygon of a shape layer, by the layer's projection.
/// @throws as the statistics of it.
LMX_EXPORT std::vector<TFieldRing> FieldRingsOf(const TShapeFileLayer& shapes, std::size_t polygon);

// New layers, not yet in the list of `manager`, rendered, with the image that they own. Their name says what they are,
// and their colours run from blue over white to red; white is no difference. Units are those of `a` if all have them
// ("1" for a ratio). Layers of different grids raise EArgumentException as in lmxFieldArithmetic.h.

/// "a - b". The range is as wide below zero as above: -m to m, m being the largest magnitude; -1 to 1 if that is 0.
LMX_EXPORT std::unique_ptr<TIdrisiMapLayer> DifferenceLayer(const std::shared_ptr<ILayerManager>& manager,
                                                            const TIdrisiMapLayer& a, const TIdrisiMapLayer& b);
/// "a / b". The range is 1 - m to 1 + m, m being the largest departure from 1: on the linear scale of a gradient its
/// middle is where both are equal, which it would not be from 1/m to m. 0 to 2 if m is 0.
LMX_EXPORT std::unique_ptr<TIdrisiMapLayer> RatioLayer(const std::shared_ptr<ILayerManager>& manager,
                                                       const TIdrisiMapLayer& a, const TIdrisiMapLayer& b);
/// "x - mean of n": layers[index] less the mean of all of them, with the range of a difference.
/// @throws EArgumentException also "At least two fields are needed" and "Field index is out of range".
LMX_EXPORT std::unique_ptr<TIdrisiMapLayer> DepartureLayer(const std::shared_ptr<ILayerManager>& manager,
                                                           std::span<const TIdrisiMapLayer* const> layers,
                                                           std::size_t index);

} // namespace lmx
