#pragma once

#include <QString>

#include <memory>

namespace lmx {
class IBaseColorCalculator;
class ILayerManager;
} // namespace lmx

// The map that the viewer opens with: the relief of the earth with the sea surface temperature of January over it.

/// Adds both layers to the manager, relief first.
/// @throws lmx::EFileException if a file of `folder` is missing or damaged.
void AddSampleLayers(const std::shared_ptr<lmx::ILayerManager>& manager, const QString& folder);
