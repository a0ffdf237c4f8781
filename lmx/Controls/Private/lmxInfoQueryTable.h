#pragma once

#include <lmx/Controls/lmxMapViewInfoQueryListControl.h>
#include <lmx/Layers/lmxInfoQueryPointLayer.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Widgets/lmxListRows.h>

#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace lmx {

/// The rows of the query table: points, rasters, and what each raster has at each point. It borrows both: the row of a
/// point that has gone without a word says nothing.
class TInfoQueryTable final : public IListRows {
public:
    std::shared_ptr<IWorldSystem> WorldSystem; ///< of the points; nil: no values

    // --- Rows and columns ------------------------------------------------------------------------------------------

    int GetCount() const override { return static_cast<int>(FRows.size()); }
    int GetLayerCount() const { return static_cast<int>(FLayers.size()); }
    TInfoQueryPoint* GetPoint(int row) const; ///< nil once it is gone
    TIdrisiMapLayer* GetLayer(int column) const;
    std::optional<TInfoQueryRowDataValue> GetValue(int row, int column) const;
    int IndexOf(const TInfoQueryPoint* point) const; ///< -1 if it has no row
    int IndexOf(const TBaseMapLayer* layer) const;   ///< -1 if it has no column

    int AddPoint(TInfoQueryPoint* point); ///< the row, still without values
    void RemovePoint(int row);
    void AddLayer(TIdrisiMapLayer* layer, const QString& name);
    void RemoveLayer(int column);
    void SetLayerName(int column, const QString& name);
    void Clear(); ///< neither row nor column is left; the cursor stays

    // --- Values ----------------------------------------------------------------------------------------------------

    /// Reads what the rasters have at the point of a row. Calculators may be a host's: what they change is seen after
    /// the row that is being read.
    void Populate(int row);
    void PopulateAll();

    // --- The cursor ------------------------------------------------------------------------------------------------

    /// The point that follows the mouse; nil until it is made.
    TInfoQueryPoint* GetCursor() const { return FCursor.get(); }
    TInfoQueryPoint* MakeCursor();
    /// Whether the first row of all is the cursor's: only there it is called so and follows the mouse.
    bool IsCursorRow(int row) const;
    /// Whether the row, wherever it stands, is that of a point of a layer that is there.
    bool IsPointRow(int row) const;

    // --- Texts and drawing -----------------------------------------------------------------------------------------

    /// The caption in column 0, then the values: "%.3f", or "-".
    QString GetText(int row, int column) const override;
    void Draw(QPainter& canvas, const TListRow& place, int row) const override;
    /// Heading of the text for the clipboard, and a row of it, each with its line end.
    QString CopiedHeading() const;
    QString CopiedRow(int row) const;

private:
    using TInfoQueryRowData = std::vector<std::optional<TInfoQueryRowDataValue>>; // by column

    struct TRow {
        TBorrowed<TInfoQueryPoint> Point;
        TInfoQueryRowData Values;
    };
    struct TColumn {
        TBorrowed<TIdrisiMapLayer> Layer;
        QString Name;
    };

    QString ValueText(int row, int column) const;
    void DrawMarker(QPainter& canvas, const TListRow& place, int row) const;
    void DrawValue(QPainter& canvas, const TListRow& place, int row, int column) const;

    std::vector<TRow> FRows;
    std::vector<TColumn> FLayers;
    std::unique_ptr<TInfoQueryPoint> FCursor;
};

} // namespace lmx
