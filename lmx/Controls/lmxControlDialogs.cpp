#include <lmx/Controls/Private/lmxControlDialogs.h>

#include <lmx/Controls/Legend/Private/lmxObjectItemDialogs.h>
#include <lmx/Dialogs/lmxAddMultipleInfoQueryPointDialog.h>
#include <lmx/Dialogs/lmxCompassRoseObjectDialog.h>
#include <lmx/Dialogs/lmxGeneralOptionsObjectDialog.h>
#include <lmx/Dialogs/lmxInfoQueryPointDialog.h>
#include <lmx/Dialogs/lmxLegendObjectDialog.h>
#include <lmx/Dialogs/lmxRulerDialog.h>
#include <lmx/Dialogs/lmxTextObjectDialog.h>
#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Layers/Objects/lmxCompassRoseObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxLegendObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxRectangleObjectTypeItem.h>
#include <lmx/Layers/Objects/lmxTextBoxObjectLayerItem.h>
#include <lmx/Layers/lmxInfoQueryPointLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxObjectMapLayer.h>
#include <lmx/Layers/lmxRulerMapLayer.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Widgets/lmxOwnedDialog.h>

#include <memory>
#include <utility>

namespace lmx {

namespace {

template<class Dialog>
bool IsConfirmed(TOwnedDialog<Dialog>& dialog) {
    return dialog.Execute() == static_cast<int>(TModalResult::mrOk);
}

/// The layers of the stack in which an object layer stands; none once the manager has gone.
std::vector<TBaseMapLayer*> LayersAround(const TObjectMapLayer* layer) {
    const auto manager = layer ? layer->GetLayerManager() : nullptr;
    if (!manager)
        return {};
    return {manager->GetLayers().begin(), manager->GetLayers().end()};
}

/// Adds an annotation and gives it the options that were chosen with it, if nobody has taken it out again. The options
/// are a copy: their dialog may go with whoever is told.
template<class Item>
void AddWithOptions(TObjectMapLayer& layer, std::unique_ptr<Item> item, TGeneralOptions options) {
    if (Item* added = layer.GetObjects().Add(std::move(item)))
        options.UpdateObject(added);
}

/// Runs the steps of a change, each as long as the annotation is still there, and lets it tell of them once.
template<class Item, class... Steps>
void ChangeAtOnce(Item& item, Steps&&... steps) {
    const TBorrowed<Item> target(&item);
    item.BeginUpdate();
    const auto run = [&](auto&& step) {
        if (target)
            step(*target.Get());
    };
    (run(std::forward<Steps>(steps)), ...);
    if (target)
        target->EndUpdate();
}

} // namespace

std::optional<TRulerItem> AskForRuler(QWidget* parent, const TRulerItem* present) {
    TOwnedDialog<TRulerDialog> dialog(parent);
    if (present) {
        dialog->SetRulerLocation(static_cast<float>(present->GetLocation()));
        dialog->SetRulerOrientation(present->GetOrientation());
        dialog->SetRulerColor(present->GetColor());
    }
    if (!IsConfirmed(dialog))
        return std::nullopt;
    return TRulerItem(dialog->GetRulerOrientation(), dialog->GetRulerLocation(), dialog->GetRulerColor());
}

void AddTextBox(QWidget* parent, TObjectMapLayer& layer) {
    const TBorrowed target(&layer);
    TOwnedDialog<TTextObjectDialog> dialog(parent);
    TTextBoxObjectLayerItem::SetDefaultGeneralOptions(dialog->GetGeneralOptions());
    if (!IsConfirmed(dialog) || !target)
        return;
    auto item = std::make_unique<TTextBoxObjectLayerItem>(target.Get(), dialog->GetText(), dialog->GetFontName(),
                                                          dialog->GetFontSize(), dialog->GetFontColor(),
                                                          dialog->GetFontStyles(), dialog->GetTextAlign());
    AddWithOptions(layer, std::move(item), dialog->GetGeneralOptions());
}

void AddLegend(QWidget* parent, TObjectMapLayer& layer) {
    const TBorrowed target(&layer);
    TOwnedDialog<TLegendObjectDialog> dialog(parent);
    TLegendObjectLayerItem::SetDefaultGeneralOptions(dialog->GetGeneralOptions());
    dialog->SetLayers(LayersAround(&layer));
    if (!IsConfirmed(dialog) || !target)
        return;
    auto item =
        std::make_unique<TLegendObjectLayerItem>(target.Get(), dialog->GetSelectedLayer(), dialog->GetLOrientation());
    AddWithOptions(layer, std::move(item), dialog->GetGeneralOptions());
}

void EditAnnotation(QWidget* parent, TTextBoxObjectLayerItem& item) {
    const TBorrowed target(&item);
    TOwnedDialog<TTextObjectDialog> dialog(parent);
    dialog->SetText(item.GetText());
    dialog->SetFontName(item.GetFont());
    dialog->SetFontSize(item.GetFontSize());
    dialog->SetFontStyles(item.GetFontStyles());
    dialog->SetFontColor(item.GetColor());
    dialog->SetTextAlign(item.GetTextAlign());
    dialog->GetGeneralOptions().UpdateOptions(&item);
    if (!IsConfirmed(dialog) || !target)
        return;
    // What the dialog says, before whoever is told lets its owner go.
    ChangeAtOnce(
        item, [text = dialog->GetText()](auto& box) { box.SetText(text); },
        [font = dialog->GetFontName()](auto& box) { box.SetFont(font); },
        [size = dialog->GetFontSize()](auto& box) { box.SetFontSize(size); },
        [color = dialog->GetFontColor()](auto& box) { box.SetColor(color); },
        [styles = dialog->GetFontStyles()](auto& box) { box.SetFontStyles(styles); },
        [align = dialog->GetTextAlign()](auto& box) { box.SetTextAlign(align); },
        [options = dialog->GetGeneralOptions()](auto& box) { options.UpdateObject(&box); });
}

void EditAnnotation(QWidget* parent, TLegendObjectLayerItem& item) {
    const TBorrowed target(&item);
    TOwnedDialog<TLegendObjectDialog> dialog(parent);
    dialog->SetLayers(LayersAround(item.GetLayer()));
    dialog->SetSelectedLayer(item.GetLegendLayer());
    dialog->SetLOrientation(item.GetOrientation());
    dialog->GetGeneralOptions().UpdateOptions(&item);
    if (!IsConfirmed(dialog) || !target)
        return;
    ChangeAtOnce(
        item, [layer = TBorrowed(dialog->GetSelectedLayer())](auto& legend) { legend.SetLegendLayer(layer.Get()); },
        [orientation = dialog->GetLOrientation()](auto& legend) { legend.SetOrientation(orientation); },
        [options = dialog->GetGeneralOptions()](auto& legend) { options.UpdateObject(&legend); });
}

void EditAnnotation(QWidget* parent, TCompassRoseObjectLayerItem& item) {
    const TBorrowed target(&item);
    TOwnedDialog<TCompassRoseObjectDialog> dialog(parent);
    dialog->SetDarkColor(item.GetDarkColor());
    dialog->SetLightColor(item.GetLightColor());
    dialog->SetFontColor(item.GetFontColor());
    dialog->SetLineColor(item.GetLineColor());
    if (!IsConfirmed(dialog) || !target)
        return;
    item.SetDarkColor(dialog->GetDarkColor());
    item.SetLightColor(dialog->GetLightColor());
    item.SetFontColor(dialog->GetFontColor());
    item.SetLineColor(dialog->GetLineColor());
    item.ReCreateCompassRoseVector();
    item.ReDrawCompassRose();
    if (TObjectMapLayer* layer = item.GetLayer())
        layer->Invalidate();
}

void EditAnnotation(QWidget* parent, TRectangleObjectTypeItem& item) {
    const TBorrowed target(&item);
    TGeneralOptions options;
    options.UpdateOptions(&item);
    TOwnedDialog<TGeneralOptionsObjectDialog> dialog(parent);
    dialog->SetOptions(&options);
    if (IsConfirmed(dialog) && target)
        options.UpdateObject(&item);
}

std::optional<TQueryPointAnswer> AskForQueryPoint(QWidget* parent, const TInfoQueryPoint* present) {
    TOwnedDialog<TInfoQueryPointDialog> dialog(parent);
    if (present) {
        dialog->SetPointX(present->GetPoint().X);
        dialog->SetPointY(present->GetPoint().Y);
        dialog->SetPointColor(present->GetColor());
        dialog->SetPointLabel(present->GetPointLabel());
    }
    if (!IsConfirmed(dialog))
        return std::nullopt;
    return TQueryPointAnswer{
        {dialog->GetPointX(), dialog->GetPointY()}, dialog->GetPointColor(), dialog->GetPointLabel()};
}

std::vector<TQueryPointAnswer> AskForQueryPoints(QWidget* parent) {
    TOwnedDialog<TAddMultipleInfoQueryPointDialog> dialog(parent);
    if (!IsConfirmed(dialog))
        return {};
    std::vector<TQueryPointAnswer> answers;
    answers.reserve(dialog->GetItems().size());
    for (const TIQPAItem& item : dialog->GetItems()) {
        TMapPoint point;
        if (TryStrToFloat(item.X, point.X) && TryStrToFloat(item.Y, point.Y))
            answers.push_back({point, Color32(item.Color), item.Label});
    }
    return answers;
}

} // namespace lmx
