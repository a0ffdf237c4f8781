#include "WorldActions.h"

#include <lmx/Controls/lmxMapViewControl.h>

#include <QAction>
#include <QActionGroup>

TWorldActions::TWorldActions(lmx::TMapViewControl* view)
    : QObject(view),
      FView(view),
      FGroup(new QActionGroup(this)),
      FSystems(lmx::TWorldSystemFactory::GetObjects("latlon")) {
    FGroup->setExclusionPolicy(QActionGroup::ExclusionPolicy::ExclusiveOptional); // no world yet: none is checked
    int key = Qt::Key_F6;
    for (const auto& system : FSystems) {
        auto* action = new QAction(system->Name(), FGroup);
        action->setCheckable(true);
        action->setShortcut(QKeySequence(key++));
        action->setToolTip(system->Name() + " (" + action->shortcut().toString(QKeySequence::NativeText) + ')');
        connect(action, &QAction::triggered, this, [this, system] {
            FView->ChangeWorldSystem(system);
            FView->GetViewport()->ZoomTo(system->Area());
            Update();
        });
    }
    Update();
}

QList<QAction*> TWorldActions::GetActions() const {
    return FGroup->actions();
}

void TWorldActions::Update() {
    for (std::size_t i = 0; i < FSystems.size(); ++i)
        FGroup->actions()
            .at(static_cast<int>(i))
            ->setChecked(FView->WorldCreated() && FView->GetWorldSystem() == FSystems[i]);
}
