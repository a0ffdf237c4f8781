#pragma once

#include <lmx/Controls/lmxMapViewTypes.h>
#include <lmx/Runtime/lmxEventList.h>

#include <QList>
#include <QObject>
#include <QString>

class QAction;
class QActionGroup;

/// The modes of a view as actions for a menu and a tool bar, with icons and keys; the one of the present mode is
/// checked, whoever has set it.
class TModeActions : public QObject {
public:
    /// `view` is the parent, too.
    explicit TModeActions(lmx::TMapViewControl* view);

    QList<QAction*> GetActions() const;

    /// What a mode does, in a line for the user.
    static QString HintOf(lmx::TMapMode mode);

private:
    QActionGroup* FGroup;
    lmx::TSubscription FModeChanged;
};
