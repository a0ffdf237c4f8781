#pragma once

namespace lmx {

/// What a record of a shape file holds, whichever of its plain, Z and M forms it has.
enum class TShapeKind { skNull, skPoint, skMultiPoint, skPolyLine, skPolygon };

} // namespace lmx
