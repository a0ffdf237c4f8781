#pragma once

#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxEventList.h>

#include <QFrame>

class QLabel;
class QLineEdit;
class QMenu;
class QVBoxLayout;
class TLayerDetails;

namespace lmx {
class TBaseLegendControl;
class TBaseMapLayer;
class TBaseToggleButton;
} // namespace lmx

/// A layer in the layers panel: a heading with its name, which can be edited in place, with buttons that unfold the
/// row, show or hide the layer and open its menu; below it the layer's details and its legend. A double click opens the
/// layer's properties, and below the heading those of its colours. It follows the layer, and may outlive it.
class TLayerRow : public QFrame, public lmx::TEventReceiver {
public:
    /// `commands` go to the end of the layer's menu, and work by their keys while the row has the focus.
    TLayerRow(lmx::TBaseMapLayer* layer, const QList<QAction*>& commands, QWidget* parent);
    ~TLayerRow() override;

    lmx::TBaseMapLayer* GetLayer() const { return FLayer.Get(); } ///< nil once it is gone
    void SetSelected(bool selected);
    void SetOpen(bool open);
    /// Edits the name in the heading. Enter and the loss of the focus keep it, unless it is empty; Escape does not.
    void StartRename();
    /// The row and what is in it, in the order of the tab key.
    QList<QWidget*> TabChain() const;

protected:
    void changeEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void MakeHeading();
    void EndRename(bool keep);
    void OpenMenu(const QPoint& at);
    void UpdateName();
    void UpdateVisibility();
    void PlaceLegend();
    void Layer_NameChanged(lmx::TBaseMapLayer* layer);
    void Layer_VisibilityChanged(lmx::TBaseMapLayer* layer);
    void Layer_LegendChanged(lmx::TBaseMapLayer* layer, lmx::TBaseLegendControl* legend);

    lmx::TBorrowed<lmx::TBaseMapLayer> FLayer;
    lmx::TBaseToggleButton* FOpen;
    lmx::TBaseToggleButton* FVisible;
    lmx::TBaseToggleButton* FMenuButton;
    QLabel* FName;
    QLineEdit* FNameEditor;
    QMenu* FMenu;
    QWidget* FBody;
    TLayerDetails* FDetails;
    QVBoxLayout* FLegendPlace; // where the layer's GetLegendComponent stands
    lmx::TSubscription FExplore;
    bool FIsSelected = false;
};
