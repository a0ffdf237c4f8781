#pragma once

#include <QString>

#include <memory>

namespace lmx {
class IBaseColorCalculator;
class ILayerManager;
class TMapViewControl;
} // namespace lmx

// The map that the viewer opens with: the relief of the earth with the sea surface temperature of January over it.

/// Adds both layers to the manager, relief first.
/// @throws lmx::EFileException if a file of `folder` is missing or damaged.
void AddSampleLayers(const std::shared_ptr<lmx::ILayerManager>& manager, const QString& folder);

/// Makes a sheet of the sample map in a view that has its size: the whole world in the middle at a scale of two
/// decimals, and around it a title, a legend of the temperature, a compass rose and the sources, which keep to the
/// edges of the view.
void ComposeSampleMap(lmx::TMapViewControl& view);
