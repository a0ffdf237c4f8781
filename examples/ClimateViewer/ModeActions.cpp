#include "ModeActions.h"

#include <lmx/Controls/lmxMapViewControl.h>

#include <QAction>
#include <QActionGroup>
#include <QKeySequence>

#include <array>

#include "ModeIcons.h"

namespace {

struct TModeEntry {
    lmx::TMapMode Mode;
    const char* Text;
    const char* Keys;
    const char* Hint;
};

constexpr std::array<TModeEntry, 8> Modes = {{
    {lmx::TMapMode::mdNone, "Pointer", "Ctrl+1", "Click to read the map and to select its top layer there"},
    {lmx::TMapMode::mdPan, "Pan", "Ctrl+2", "Drag to pan, turn the wheel to zoom"},
    {lmx::TMapMode::mdSelection, "Select", "Ctrl+3", "Drag to select a rectangle"},
    {lmx::TMapMode::mdZoomToSelection, "Zoom to a rectangle", "Ctrl+4", "Drag a rectangle to zoom to it"},
    {lmx::TMapMode::mdPlaceRulerH, "Place a meridian ruler", "Ctrl+5", "Drag to place a ruler at a longitude"},
    {lmx::TMapMode::mdPlaceRulerV, "Place a parallel ruler", "Ctrl+6", "Drag to place a ruler at a latitude"},
    {lmx::TMapMode::mdInfoQuery, "Mark a point", "Ctrl+7", "Click to mark a point"},
    {lmx::TMapMode::mdCustom, "Measure", "Ctrl+8", "Drag to measure the way over the earth"},
}};

} // namespace

TModeActions::TModeActions(lmx::TMapViewControl* view) : QObject(view), FGroup(new QActionGroup(this)) {
    for (const TModeEntry& entry : Modes) {
        auto* action = new QAction(ModeIcon(entry.Mode), tr(entry.Text), FGroup);
        action->setCheckable(true);
        action->setChecked(entry.Mode == view->GetMode());
        action->setShortcut(QKeySequence(entry.Keys));
        action->setToolTip(tr(entry.Text) + " (" + action->shortcut().toString(QKeySequence::NativeText) + ')');
        action->setStatusTip(HintOf(entry.Mode));
        connect(action, &QAction::triggered, this, [view, mode = entry.Mode] { view->SetMode(mode); });
    }
    FModeChanged = view->GetOnModeChanged().Add([this](lmx::TMapViewControl*, lmx::TMapMode mode) {
        for (std::size_t i = 0; i < Modes.size(); ++i)
            if (Modes[i].Mode == mode)
                FGroup->actions().at(static_cast<int>(i))->setChecked(true);
    });
}

QList<QAction*> TModeActions::GetActions() const {
    return FGroup->actions();
}

QString TModeActions::HintOf(lmx::TMapMode mode) {
    for (const TModeEntry& entry : Modes)
        if (entry.Mode == mode)
            return tr(entry.Hint);
    return {};
}
