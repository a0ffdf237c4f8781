#pragma once

#include <QList>
#include <QObject>

#include <functional>
#include <memory>

class QAction;
class QWidget;

namespace lmx {
class ILayerManager;
class TBaseMapLayer;
} // namespace lmx

/// What a user does with the selected layer of a manager, as actions for a menu. Their keys work where a widget that
/// has been given the actions has the focus.
class TLayerCommands : public QObject {
public:
    /// `rename` begins the renaming of a layer. Dialogs belong to the window of `parent`.
    TLayerCommands(std::function<void(lmx::TBaseMapLayer*)> rename, QWidget* parent);

    void SetLayerManager(const std::shared_ptr<lmx::ILayerManager>& manager);
    /// Enables what the selected layer allows; to be called when the selection or the stack has changed.
    void Update();

    const QList<QAction*>& GetActions() const { return FActions; }

private:
    using TCommand = void (TLayerCommands::*)(lmx::TBaseMapLayer*);

    QAction* Add(const QString& text, const QString& keys, TCommand command);
    void ShowProperties(lmx::TBaseMapLayer* layer);
    void Rename(lmx::TBaseMapLayer* layer);
    void Duplicate(lmx::TBaseMapLayer* layer);
    void ToggleVisibility(lmx::TBaseMapLayer* layer);
    void MoveUp(lmx::TBaseMapLayer* layer);
    void MoveDown(lmx::TBaseMapLayer* layer);
    void Remove(lmx::TBaseMapLayer* layer);

    QWidget* FParent;
    std::function<void(lmx::TBaseMapLayer*)> FRename;
    std::shared_ptr<lmx::ILayerManager> FManager;
    QList<QAction*> FActions;
    QAction* FPropertiesAction;
    QAction* FRenameAction;
    QAction* FDuplicateAction;
    QAction* FVisibilityAction;
    QAction* FUpAction;
    QAction* FDownAction;
    QAction* FRemoveAction;
};
