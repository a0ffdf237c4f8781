#pragma once

#include <lmx/Coordinates/wskMappingTypes.h>
#include <lmx/Runtime/lmxExport.h>

#include <cstdint>
#include <span>
#include <vector>

namespace lmx {

struct TField;

/// A ring of a polygon: its vertices in order, x and y. The last one is joined to the first.
struct TFieldVertex {
    double X = 0;
    double Y = 0;
};
using TFieldRing = std::vector<TFieldVertex>;

/// Which cells of a field count, and how much of each.
///
/// The weight of a cell is the area of the part of it that counts. On the sphere a cell from longitude w to e and from
/// latitude s to n has the area R^2 (e - w) (sin n - sin s): Archimedes' hat box theorem, a zone of the sphere has the
/// area of the same slice of the cylinder around it. It is exact for cells of any size; the cosine of the middle
/// latitude is its first term, which gives a row at the pole of height h an error of the order h^2 / 24. Latitudes
/// beyond a pole end there. Cells of fields that are not geographic weigh as much as is inside of them.
///
/// Longitudes are compared whole turns apart: a rectangle from -180 to 180 finds its cells in a field from 0 to 360.
///
/// Its constructors raise EOutOfMemory if there is no room for a number for each row, column and crossing of a ring.
class LMX_EXPORT TFieldRegion {
public:
    /// All cells, whole.
    explicit TFieldRegion(const TField& field);
    /// The cells that a rectangle, in the field's units, covers or cuts: each counts by the share that lies inside,
    /// but a share thinner than the rounding of edges to singles counts as none. The order of opposite edges does not
    /// matter.
    TFieldRegion(const TField& field, const TMapArea& area);
    /// The cells whose centre lies inside the rings, by the even-odd rule, so that a ring within another one is a hole;
    /// they count whole. A centre on an edge counts if the inside is to the east of it, or to the south.
    TFieldRegion(const TField& field, std::span<const TFieldRing> rings);

    /// Weight of a cell of the row that counts whole; 0 if none of the row does.
    double GetRowWeight(std::int32_t row) const { return FRowWeights[static_cast<std::size_t>(row)]; }
    /// Share of each cell of the row that counts, 0 to 1; the row's weight holds how much of its height does. Valid
    /// until the next call.
    std::span<const double> GetShares(std::int32_t row);

private:
    void WeighRows(const TField& field, double top, double bottom);
    void ShareColumns(const TField& field, double west, double east);
    void CrossRows(const TField& field, const TFieldRing& ring);

    double FLeft = 0; ///< west edge of column 0
    double FStep = 0; ///< eastwards from column to column
    bool FTurns = false;
    std::vector<double> FRowWeights;
    std::vector<double> FShares;
    std::vector<std::vector<double>> FCrossings; ///< of rings, by row: where they cross the middle of the row
};

} // namespace lmx
