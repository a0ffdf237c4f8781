#pragma once

#include <QList>
#include <QObject>

#include <memory>
#include <vector>

class QAction;
class QActionGroup;

namespace lmx {
class IWorldSystem;
class TMapViewControl;
} // namespace lmx

/// The worlds in degrees as actions for a menu and a tool bar, with keys. Each shows the layers in its world, as a
/// whole.
class TWorldActions : public QObject {
public:
    /// `view` is the parent, too.
    explicit TWorldActions(lmx::TMapViewControl* view);

    QList<QAction*> GetActions() const;
    /// Checks the action of the view's world; to be called when that has changed.
    void Update();

private:
    lmx::TMapViewControl* FView;
    QActionGroup* FGroup;
    std::vector<std::shared_ptr<lmx::IWorldSystem>> FSystems; // of the actions
};
