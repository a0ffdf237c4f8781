#pragma once

#include <QMenu>

#include <functional>

namespace lmx {

/// A menu that belongs to a widget. What an entry does may take the widget away, a dialog of it just as well as a
/// handler of a host, and Qt goes on with the menu afterwards: then the menu goes last.
class TWidgetMenu : public QMenu {
public:
    explicit TWidgetMenu(QWidget* owner);
    TWidgetMenu(const QString& title, QWidget* owner);

    /// Adds an entry that does `work`, as SetWork says.
    QAction* AddEntry(const QString& text, std::function<void()> work);
    /// Has an entry of this menu do `work` each time it is chosen. What it raises is shown as an error.
    void SetWork(QAction* entry, std::function<void()> work);

private:
    void Run(const std::function<void()>& work);

    int FRuns = 0; ///< of entries, one inside the other where one of them waits for a dialog
};

} // namespace lmx
