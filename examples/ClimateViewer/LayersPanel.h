#pragma once

#include <lmx/Runtime/lmxEventList.h>

#include <QPoint>
#include <QPointer>
#include <QWidget>

#include <memory>
#include <vector>

class QAction;
class QFrame;
class QScrollArea;
class QVBoxLayout;
class TLayerCommands;
class TLayerRow;

namespace lmx {
class ILayerManager;
class TBaseMapLayer;
} // namespace lmx

/// The layers of a map, the top one first, each in a row (LayerRow.h). The row that is clicked or has the focus is that
/// of the manager's selected layer. Up, Down, Home and End go from row to row, Left and Right fold one; a drag of a
/// heading moves its layer, Escape gives the drag up; the commands of the selected layer have keys of their own
/// (LayerCommands.h).
class TLayersPanel : public QWidget {
public:
    explicit TLayersPanel(QWidget* parent);
    ~TLayersPanel() override;

    /// Shows another manager's layers, or none with nil.
    void SetLayerManager(const std::shared_ptr<lmx::ILayerManager>& manager);
    /// The commands of the selected layer, for a menu.
    const QList<QAction*>& GetCommands() const;

    QSize sizeHint() const override { return {280, 340}; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void UpdateLater();
    void UpdateRows();
    void ArrangeRows();
    void UpdateSelection();
    std::vector<TLayerRow*> RowsOf(const std::vector<lmx::TBaseMapLayer*>& layers);
    TLayerRow* RowOf(const lmx::TBaseMapLayer* layer) const; ///< nil if there is none
    TLayerRow* RowWith(QWidget* widget) const;               ///< nil for a widget outside the rows
    void Select(TLayerRow* row);
    bool GoToRow(TLayerRow* from, int key);
    void HandleMouse(TLayerRow* row, const QMouseEvent& event);
    bool HandleKey(TLayerRow* row, const QKeyEvent& event); ///< false for a key that means nothing
    void StartDrag(TLayerRow* row, const QPoint& at);
    void DragTo(const QPoint& at);
    void EndDrag(bool drop);
    int GapAt(int y) const;

    std::shared_ptr<lmx::ILayerManager> FManager;
    TLayerCommands* FCommands;
    QScrollArea* FScroll;
    QVBoxLayout* FColumn;
    std::vector<TLayerRow*> FRows; // top first
    bool FIsUpdatePending = false;
    QPointer<TLayerRow> FPressedRow;
    QPoint FPressedAt; // in the column
    int FGap = -1;     // where a drag would drop its row; none while nothing is dragged
    QFrame* FDropMark;
    lmx::TSubscription FAdded;
    lmx::TSubscription FRemoved;
    lmx::TSubscription FMoved;
    lmx::TSubscription FSelected;
};
