#pragma once

#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxEventList.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Widgets/lmxListPanel.h>

namespace lmx {

class TBaseMapLayer;
class TRulerItem;
class TRulerListView;
class TRulerMapLayer;

/// Lists the rulers of a layer, to add, delete and edit them: by the buttons, or in the list by the keys Insert, Delete
/// and Enter (also F2) and by a double click. Several panels may show one layer.
///
/// The layer is borrowed. Before it goes, or with it at the latest, the owner sets another layer or nil; a panel that
/// is not told shows no rulers and does nothing.
class LMX_EXPORT TMapViewRulersPanelControl : public TListPanel, public TEventReceiver {
public:
    explicit TMapViewRulersPanelControl(QWidget* parent = nullptr);

    /// Nil if none is set or the one that was is gone.
    TRulerMapLayer* GetRulersLayer() const { return FRulersLayer.Get(); }
    void SetRulersLayer(TRulerMapLayer* layer);

    TPngButton* GetAddButton() const { return FAddButton; }
    TPngButton* GetDelButton() const { return FDelButton; }
    TPngButton* GetEditButton() const { return FEditButton; }
    TRulerListView* GetListView() const { return FListView; }

    /// What the buttons do. Without a layer nothing happens; without a selected ruler there is nothing to delete or
    /// edit.
    /// @throws EConvertError if the dialog was closed with OK and a location that is no number; nothing has changed.
    void AddButton_Click();
    void DelButton_Click();
    void EditButton_Click();

private:
    TMapViewRulersPanelControl(TRulerListView* list, QWidget* parent);

    void RegisterRulersLayerEvents(TRulerMapLayer* layer, bool registering);
    void UpdateList();
    void AddRulerListItem(TRulerItem* ruler);
    void RulersLayer_Added(TRulerMapLayer* sender, TRulerItem* ruler);
    void RulersLayer_Removed(TRulerMapLayer* sender, TRulerItem* ruler);
    void RulersLayer_Invalidated(TBaseMapLayer* layer);

    TRulerListView* FListView;
    TPngButton* FAddButton;
    TPngButton* FDelButton;
    TPngButton* FEditButton;
    TBorrowed<TRulerMapLayer> FRulersLayer;
};

} // namespace lmx
