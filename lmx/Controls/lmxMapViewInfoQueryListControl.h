#pragma once

#include <lmx/Coordinates/wskMappingTypes.h>
#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxEventList.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Widgets/lmxListPanel.h>

#include <memory>
#include <optional>

QT_BEGIN_NAMESPACE
class QMenu;
QT_END_NAMESPACE

namespace lmx {

class ILayerManager;
class IWorldSystem;
class TBaseMapLayer;
class TIdrisiMapLayer;
class TInfoQueryPoint;
class TInfoQueryPointLayer;
class TInfoQueryTable;

/// What a raster has at a point.
struct TInfoQueryRowDataValue {
    float Value = 0;
    TColor32 Color = 0; ///< of the value on the map

    friend bool operator==(const TInfoQueryRowDataValue&, const TInfoQueryRowDataValue&) = default;
};

/// A table of the points of a layer against the rasters of a manager: a row for each point, a column for each Idrisi
/// layer in the order in which they came, headed by its name, in each cell the value of the raster's cell under the
/// point and the colour that it has on the map. A row of its own can follow the mouse. Points are added, deleted,
/// edited and copied by the buttons, by Insert, Delete, Enter (F2) and the key of copying, and by a double click.
///
/// Values come from layers that hold the point in their own world system, and none do before SetCursorMapPt has named
/// the system of the points. A layer without image or calculator, or whose calculator raises, leaves its cell empty
/// ("-"). An invalidation of any of the rasters reads all values anew; no text is made of a row that nobody sees.
/// The layer and the manager are borrowed. Main thread only.
class LMX_EXPORT TMapViewInfoQueryListControl : public TListPanel, public TEventReceiver {
public:
    explicit TMapViewInfoQueryListControl(QWidget* parent = nullptr);
    ~TMapViewInfoQueryListControl() override;

    TInfoQueryPointLayer* GetIQPLayer() const; ///< nil if none is set or the one that was is gone
    /// Lists the points of another layer, those that it has already as if they were added now; the row of the cursor
    /// stays. Nil lists none.
    void SetIQPLayer(TInfoQueryPointLayer* layer);
    std::shared_ptr<ILayerManager> GetLayerManager() const { return FLayerManager.lock(); }
    /// Shows the rasters of another manager, those that it has already as if they were added now.
    void SetLayerManager(const std::shared_ptr<ILayerManager>& manager);

    /// Adds the row of the cursor behind the rows that there are, if there is none yet. It follows the mouse only as
    /// the first row of all: ask for it before any point is there.
    void AddCursorInfoQueryPoint();
    TInfoQueryPoint* GetCursorInfoQueryPoint() const; ///< nil until asked for
    /// Where the mouse is, in which system. Reads the values of the row of the cursor, if that is the first one, and of
    /// no other one. Without a row for it, place and system are kept.
    void SetCursorMapPt(const TMapPoint& point, const std::shared_ptr<IWorldSystem>& worldSystem);

    /// Adds a point to the layer; nothing happens without one.
    void AddNewPoint(const TMapPoint& point, TColor32 color, const QString& label);
    /// Reads all values anew.
    void RebuildData();

    int GetRowCount() const;
    TInfoQueryPoint* GetRowPoint(int row) const; ///< nil for a row outside the table
    TIdrisiMapLayer*
    GetColumnLayer(int column) const; ///< column 0 is the first raster; nil outside, or once it is gone
    /// What stands in a cell; nothing for "-", and outside the table.
    std::optional<TInfoQueryRowDataValue> GetRowValue(int row, int column) const;

    QMenu* GetAddMenu() const { return FAddMenu; }
    TPngButton* GetAddButton() const { return FAddButton; }
    TPngButton* GetDeleteButton() const { return FDeleteButton; }
    TPngButton* GetEditButton() const { return FEditButton; }
    TPngButton* GetCopyButton() const { return FCopyButton; }

    /// What buttons and menu do. Add opens the menu under the button. Delete takes all selected points out of the
    /// layer, without a question, and Edit asks for the first selected one; both pass over the cursor.
    void Add_Click();
    void AddSingle_Click();
    void AddMultiple_Click();
    void Delete_Click();
    void Edit_Click();
    /// The table as text, separated by tabs, into the clipboard: a heading, and the selected rows, or all if none is
    /// selected, but never the cursor. Names and labels stand in quotes, with nothing escaped.
    void Copy_Click();

    QSize sizeHint() const override { return {480, 200}; }

private:
    TMapViewInfoQueryListControl(TDrawnListView* list, QWidget* parent);
    void AddCommands();
    void AddPoint(TInfoQueryPoint* point);
    void TellOfRows();        ///< the list of those that it was not told of yet
    bool ReadValues(int row); ///< whether the control is still there after it; so below
    bool ReadAllValues();
    void AddLayer(TIdrisiMapLayer* layer);
    bool RemoveColumn(int column);
    void RemoveLayer(const TBaseMapLayer* layer);
    bool HasSelectedPoint() const;
    void IQPLayer_PointAdded(TInfoQueryPointLayer* layer, TInfoQueryPoint* point);
    void IQPLayer_PointRemoved(TInfoQueryPointLayer* layer, TInfoQueryPoint* point);
    void IQPLayer_Invalidated(TBaseMapLayer* layer);
    void LayerManager_LayerAdded(ILayerManager* manager, TBaseMapLayer* layer);
    void LayerManager_LayerRemoved(ILayerManager* manager, TBaseMapLayer* layer);
    void LayerManager_LayerInvalidated(ILayerManager* manager, TBaseMapLayer* layer);
    void Layer_NameChanged(TBaseMapLayer* layer);

    std::shared_ptr<TInfoQueryTable> FTable;
    TBorrowed<TInfoQueryPointLayer> FIQPLayer;
    std::weak_ptr<ILayerManager> FLayerManager;
    TMapPoint FCursorMapPt;
    bool FIsAddingMany = false;
    QMenu* FAddMenu = nullptr;
    TPngButton* FAddButton = nullptr;
    TPngButton* FDeleteButton = nullptr;
    TPngButton* FEditButton = nullptr;
    TPngButton* FCopyButton = nullptr;
};

} // namespace lmx
