#pragma once

#include <QString>

class OGRSpatialReference;

namespace lmx {

/// Whether it is the New Zealand Map Grid.
bool IsNzmg(const OGRSpatialReference& system);
/// Whether it counts in degrees from Greenwich: close enough to WGS 84 for a map, whatever its datum.
bool IsPlainGeographic(const OGRSpatialReference& system);
/// The same for a description in well-known text; false for a text that is none.
bool IsNzmgText(const QString& wellKnownText);

} // namespace lmx
