#pragma once

#include <lmx/Pictures/lmxMapPicture.h>

#include <QString>

#include <functional>

#include "PictureArguments.h"

namespace lmx {
class ILayerFactory;
class IMapDocLayerPersistFactory;
} // namespace lmx

// Documents with layers of climate files. Where the program is built without lmx::datasources it has none of this, and
// says so.

/// Lets documents have layers that show climate files by tiles.
void RegisterClimateLayers(const std::shared_ptr<lmx::ILayerFactory>& makers,
                           const std::shared_ptr<lmx::IMapDocLayerPersistFactory>& keepers);

/// Writes a picture of each step that is asked for; `tell` is called for each with a line on how far it is.
/// @throws lmx::Exception if it cannot; the pictures before it are written whole.
void SaveSteps(const lmx::TMapPicture& picture, const TPictureArguments& arguments,
               const std::function<void(const QString& progress)>& tell);
