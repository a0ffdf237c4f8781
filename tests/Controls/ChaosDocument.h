#pragma once

#include <tests/Support/ChaosScene.h>

// Documents that are read and written in the middle of everything else.

namespace lmx::tests {

/// Adds a map with a layer of the host's, a raster, a ruler, a point and an annotation to that of the view, by a new
/// reader. Calls "Document.CreateLayer", "Document.ReadLayer" and "Document.Read" (an entry from the device) for the
/// host's and the layers behind it, and "Document.Progress".
void ReadChaosDocument(TChaosScene& scene);

/// Writes the map of the view by a new writer. Calls "Document.WriteLayer" for layers of the host's and
/// "Document.Write" for what arrives at the device.
void SaveChaosDocument(TChaosScene& scene);

} // namespace lmx::tests
