#pragma once

#include <lmx/Graphics/lmxPolygons.h>
#include <lmx/Runtime/lmxGeometry.h>

#include <span>
#include <vector>

namespace lmx {

/// The contours of a stroke along the points, to be filled by pfWinding: one for an open line, an outer and an inner
/// one for a closed one. Each edge is moved by half the width along its normal to either side, and the corners are
/// joined in the same way on both. Points closer than 1e-4 to the one before are left out. A line of fewer than two
/// points, a width that is not positive and coordinates that are no usable numbers give no contour.
/// Only what lies in `visible` is of interest: arcs outside it are chords, so that a join costs by what is seen of it
/// and not by the width.
std::vector<TFloatPoints> StrokeContours(std::span<const TFloatPoint> points, bool closed, const TStroke& stroke,
                                         const TRect& visible);

/// Number of points that make a circle of that radius.
int CircleSteps(double radius);

} // namespace lmx
