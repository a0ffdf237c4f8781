#pragma once

#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxEventList.h>
#include <lmx/Runtime/lmxExport.h>

#include <QWidget>

namespace lmx {

class TBaseMapLayer;
class TPngButton;
class TRulerItem;
class TRulerListView;
class TRulerMapLayer;
class TToggleButtonBar;

/// Lists the rulers of a layer, to add, delete and edit them: by the buttons, or in the list by the keys Insert, Delete
/// and Enter (also F2) and by a double click. Several panels may show one layer.
///
/// The layer is borrowed. Before it goes, or with it at the latest, the owner sets another layer or nil; a panel that
/// is not told shows no rulers and does nothing.
class LMX_EXPORT TMapViewRulersPanelControl : public QWidget, public TEventReceiver {
public:
    explicit TMapViewRulersPanelControl(QWidget* parent = nullptr);

    /// Nil if none is set or the one that was is gone.
    TRulerMapLayer* GetRulersLayer() const { return FRulersLayer.Get(); }
    void SetRulersLayer(TRulerMapLayer* layer);

    TPngButton* GetAddButton() const { return FAddButton; }
    TPngButton* GetDelButton() const { return FDelButton; }
    TPngButton* GetEditButton() const { return FEditButton; }
    TToggleButtonBar* GetButtonBar() const { return FButtonBar; }
    TRulerListView* GetListView() const { return FListView; }

    /// What the buttons do. Without a layer nothing happens; without a selected ruler there is nothing to delete or
    /// edit.
    /// @throws EConvertError if the dialog was closed with OK and a location that is no number; nothing has changed.
    void AddButton_Click();
    void DelButton_Click();
    void EditButton_Click();

    QSize sizeHint() const override { return {200, 240}; }

protected:
    bool eventFilter(QObject* sender, QEvent* event) override;

private:
    TPngButton* AddBarButton(const QString& imageName, const QString& hint,
                             void (TMapViewRulersPanelControl::*click)());
    void ConnectList();
    TPngButton* ButtonOfKey(const QKeyEvent& event) const; ///< nil for a key without one
    void RegisterRulersLayerEvents(TRulerMapLayer* layer, bool registering);
    void UpdateList();
    void UpdateButtons();
    void AddRulerListItem(TRulerItem* ruler);
    void RulersLayer_Added(TRulerMapLayer* sender, TRulerItem* ruler);
    void RulersLayer_Removed(TRulerMapLayer* sender, TRulerItem* ruler);
    void RulersLayer_Invalidated(TBaseMapLayer* layer);

    TToggleButtonBar* FButtonBar;
    TPngButton* FAddButton;
    TPngButton* FDelButton;
    TPngButton* FEditButton;
    TRulerListView* FListView;
    TBorrowed<TRulerMapLayer> FRulersLayer;
    TRulerItem* FEditedRuler = nullptr; ///< of the last edit; nil once it is gone
};

} // namespace lmx
