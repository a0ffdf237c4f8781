#include "LayerCommands.h"

#include <lmx/Layers/lmxLayerDuplicator.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Widgets/lmxEventGuard.h>

#include <QAction>
#include <QWidget>

#include "LayerProperties.h"
#include "LayerStack.h"

TLayerCommands::TLayerCommands(std::function<void(lmx::TBaseMapLayer*)> rename, QWidget* parent)
    : QObject(parent),
      FParent(parent),
      FRename(std::move(rename)),
      FPropertiesAction(Add(tr("Pr&operties..."), "Alt+Return", &TLayerCommands::ShowProperties)),
      FRenameAction(Add(tr("&Rename"), "F2", &TLayerCommands::Rename)),
      FDuplicateAction(Add(tr("D&uplicate"), "Ctrl+D", &TLayerCommands::Duplicate)),
      FVisibilityAction(Add(tr("Show or &hide"), "Space", &TLayerCommands::ToggleVisibility)),
      FUpAction(Add(tr("Move u&p"), "Ctrl+Up", &TLayerCommands::MoveUp)),
      FDownAction(Add(tr("Move &down"), "Ctrl+Down", &TLayerCommands::MoveDown)),
      FRemoveAction(Add(tr("Re&move"), "Del", &TLayerCommands::Remove)) {
    Update();
}

QAction* TLayerCommands::Add(const QString& text, const QString& keys, TCommand command) {
    auto* action = new QAction(text, this);
    action->setShortcut(QKeySequence(keys));
    action->setShortcutContext(Qt::WidgetShortcut);
    connect(action, &QAction::triggered, this, [this, command] {
        const auto manager = FManager; // whoever is told may set another one
        if (lmx::TBaseMapLayer* layer = manager ? manager->GetSelLayer() : nullptr)
            (this->*command)(layer);
    });
    FActions += action;
    return action;
}

void TLayerCommands::SetLayerManager(const std::shared_ptr<lmx::ILayerManager>& manager) {
    FManager = manager;
    Update();
}

void TLayerCommands::Update() {
    lmx::TBaseMapLayer* layer = FManager ? FManager->GetSelLayer() : nullptr;
    const bool isListed = layer && PlaceInList(*FManager, layer) >= 0;
    const lmx::TLayerOptionFlags options = isListed ? layer->GetLayerOptionFlags() : lmx::TLayerOptionFlags();
    FPropertiesAction->setEnabled(options.Contains(lmx::TLayerOptionFlag::lofProperties));
    FRenameAction->setEnabled(options.Contains(lmx::TLayerOptionFlag::lofRename));
    FDuplicateAction->setEnabled(options.Contains(lmx::TLayerOptionFlag::lofDuplicate));
    FVisibilityAction->setEnabled(isListed);
    FUpAction->setEnabled(isListed && NeighbourOf(*FManager, layer, -1) != layer);
    FDownAction->setEnabled(isListed && NeighbourOf(*FManager, layer, 1) != layer);
    FRemoveAction->setEnabled(options.Contains(lmx::TLayerOptionFlag::lofDelete));
}

void TLayerCommands::ShowProperties(lmx::TBaseMapLayer* layer) {
    ShowLayerProperties(layer, QString(), FParent->window());
}

void TLayerCommands::Rename(lmx::TBaseMapLayer* layer) {
    FRename(layer);
}

void TLayerCommands::Duplicate(lmx::TBaseMapLayer* layer) {
    lmx::GuardEvent(nullptr, [&] {
        const auto manager = FManager; // whoever is told may set another one, and take the copy out
        const QString name = manager->GetNextName(layer->GetLayerName());
        const lmx::TBorrowed copy(lmx::TLayerDuplicatorFactory::GetObject(layer, manager)->Duplicate());
        if (copy)
            copy->SetLayerName(name);
        if (copy)
            MoveToGap(*manager, copy.Get(), PlaceInList(*manager, layer));
        if (copy)
            manager->SetSelLayer(copy.Get());
    });
}

void TLayerCommands::ToggleVisibility(lmx::TBaseMapLayer* layer) {
    layer->SetIsVisible(!layer->GetIsVisible());
}

void TLayerCommands::MoveUp(lmx::TBaseMapLayer* layer) {
    MoveToGap(*FManager, layer, PlaceInList(*FManager, layer) - 1);
}

void TLayerCommands::MoveDown(lmx::TBaseMapLayer* layer) {
    MoveToGap(*FManager, layer, PlaceInList(*FManager, layer) + 2);
}

void TLayerCommands::Remove(lmx::TBaseMapLayer* layer) {
    RemoveLayer(*FManager, layer);
}
