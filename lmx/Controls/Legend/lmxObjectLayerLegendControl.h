#pragma once

#include <lmx/Controls/Legend/lmxBaseLegendControl.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxEventList.h>
#include <lmx/Runtime/lmxExport.h>

#include <functional>
#include <memory>

QT_BEGIN_NAMESPACE
class QFrame;
class QMenu;
QT_END_NAMESPACE

namespace lmx {

class TAnchorEditor;
class TBaseObjectLayerItem;
class TCompassRoseObjectLayerItem;
class TDrawnListView;
class TLegendObjectLayerItem;
class TListPanel;
class TObjectMapLayer;
class TPngButton;
class TRectangleObjectTypeItem;
class TTextBoxObjectLayerItem;

/// Lists the annotations of an object layer, to add, delete and edit them, and to choose the edges of the view that the
/// selected one is anchored at. Buttons stand above the list, where Insert, Delete and Enter (also F2) press them, and
/// a double click edits.
///
/// A row that is selected alone is selected on the map, and what is selected on the map is selected in the list. The
/// layer is borrowed: once it is gone there is nothing to do. Several controls may show one layer.
class LMX_EXPORT TObjectLayerLegendControl : public TBaseLegendControl, public TEventReceiver {
public:
    explicit TObjectLayerLegendControl(QWidget* parent = nullptr);
    ~TObjectLayerLegendControl() override;

    static TObjectLayerLegendControl* CreateComp(QWidget* owner, TObjectMapLayer* layer);

    TObjectMapLayer* GetLayer() const { return FLayer.Get(); } ///< nil if none is set, or none any more
    void SetLayer(TObjectMapLayer* layer);
    /// The annotation of the only row that is selected; nil if there is none, or if several are.
    TBaseObjectLayerItem* GetSelectedObjectItem() const;

    int GetSuggestedHeight() const override; ///< 100
    QSize sizeHint() const override { return {240, GetSuggestedHeight()}; }

    TPngButton* GetAddButton() const { return FAddButton; }
    TPngButton* GetDelButton() const { return FDelButton; }
    TPngButton* GetEditButton() const { return FEditButton; }
    QMenu* GetAddMenu() const { return FAddMenu; } ///< the kinds that can be added
    TDrawnListView* GetLayerList() const { return FLayerList; }
    QWidget* GetAnchorsPanel() const;
    /// Hidden unless one row is selected.
    TAnchorEditor* GetAnchorsEditor() const { return FAnchorsEditor; }

    /// What the buttons do: open the menu below the button, delete, and edit what is selected. Without a layer, or with
    /// none or several rows selected, nothing happens; nor is there anything to edit in annotations of other kinds than
    /// those below.
    void AddButton_OnClick();
    void DelButton_OnClick();
    void EditButton_OnClick();

    /// Opens the dialog of an annotation, which need not be listed.
    /// @throws EExArgumentNilException "Item" of "TObjectLayerLegendControl.EditItem" if it is nil.
    void EditItem(TTextBoxObjectLayerItem* item);
    void EditItem(TLegendObjectLayerItem* item);
    void EditItem(TCompassRoseObjectLayerItem* item);
    void EditItem(TRectangleObjectTypeItem* item);

protected:
    void focusInEvent(QFocusEvent* event) override;

private:
    class TObjectRows;

    void CreateCommands();
    void CreateAddMenu();
    void CreateAnchorsPanel();

    void RegisterLayerEvents(bool registering);
    bool IsOneChangeBehind() const; ///< whether one change has led from the rows to the layer's list
    void UpdateLayerList();
    void Layer_OnObjectAdded(TObjectMapLayer* layer, TBaseObjectLayerItem* item);
    void Layer_OnObjectRemoved(TObjectMapLayer* layer, TBaseObjectLayerItem* item);
    void Layer_OnObjectChanged(TObjectMapLayer* layer, TBaseObjectLayerItem* item);
    void Layer_OnObjectSelected(TObjectMapLayer* layer, TBaseObjectLayerItem* item);
    void LayerList_SelectionChanged();
    void AnchorsEditor_Changed();

    std::shared_ptr<TObjectRows> FRows;
    TDrawnListView* FLayerList;
    TListPanel* FPanel;
    TPngButton* FAddButton = nullptr;
    TPngButton* FDelButton = nullptr;
    TPngButton* FEditButton = nullptr;
    QMenu* FAddMenu = nullptr;
    QFrame* FAnchorsPanel = nullptr;
    TAnchorEditor* FAnchorsEditor = nullptr;
    TBorrowed<TObjectMapLayer> FLayer;
    TSubscription FSelectionSubscription;
};

} // namespace lmx
