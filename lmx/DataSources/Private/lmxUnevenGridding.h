#pragma once

#include <lmx/Coordinates/wskMappingTypes.h>
#include <lmx/DataSources/lmxClimateAxis.h>

#include <QString>

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace lmx {

/// Brings cells on uneven axes onto an even grid of half their densest spacing.
class TUnevenGridding {
public:
    /// @param areCategories as TClimateGridPlan
    /// @throws EClimateRefusal as PlaceRegion.
    TUnevenGridding(const TClimateAxis& longitude, const TClimateAxis& latitude, bool areCategories);

    const TMapArea& GetBounds() const { return FBounds; }
    const QString& GetWorld() const { return FWorld; }
    std::int32_t GetColumns() const { return FColumns; }
    std::int32_t GetRows() const { return FRows; }

    /// Cells of the picture, the north-western first. `cells` must hold latitude by latitude as the axes do.
    /// @throws EOutOfMemory.
    std::vector<float> Apply(std::span<const float> cells) const;

private:
    /// A row or a column of the file at its place on the map. A node at a pole has the mean of the row that it names.
    struct TNode {
        double Place = 0;
        std::size_t Source = 0;
        bool IsPole = false;
    };
    using TNodes = std::vector<TNode>;

    static TNodes NodesOf(const TClimateAxis& axis); ///< ascending
    void PlanColumns(const TClimateAxis& longitude);
    void PlanWorldColumns(const TNodes& nodes, double widestGap);
    void PlanRows(const TClimateAxis& latitude);
    std::vector<float> ApplyNearest(std::span<const float> cells) const;
    std::vector<float> RowOf(std::span<const float> cells, const TNode& node) const;

    TMapArea FBounds;
    QString FWorld;
    bool FAreCategories = false;
    bool FIsRound = false; ///< whether the columns go round the earth
    double FLeastGap = 0;  ///< of neighbours on either axis
    std::int32_t FColumns = 0;
    std::int32_t FRows = 0;
    std::size_t FSourceColumns = 0;
    std::size_t FSourceRows = 0;
    TNodes FColumnNodes;
    TNodes FRowNodes;
    // Of the nodes, in cells of the picture from the west and the south.
    std::vector<float> FColumnPlaces;
    std::vector<float> FRowPlaces;
    // For each column and row of the picture, rows from the south: the node that lies nearest.
    std::vector<std::size_t> FNearestColumns;
    std::vector<std::size_t> FNearestRows;
};

} // namespace lmx
