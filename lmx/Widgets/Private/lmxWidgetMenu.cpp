#include <lmx/Widgets/Private/lmxWidgetMenu.h>

#include <lmx/Widgets/lmxEventGuard.h>

#include <utility>

namespace lmx {

TWidgetMenu::TWidgetMenu(QWidget* owner) : TWidgetMenu(QString(), owner) {}

// The owner tells of its end before it deletes what belongs to it.
TWidgetMenu::TWidgetMenu(const QString& title, QWidget* owner) : QMenu(title, owner) {
    connect(owner, &QObject::destroyed, this, [this] {
        if (FRuns > 0)
            setParent(nullptr);
    });
}

QAction* TWidgetMenu::AddEntry(const QString& text, std::function<void()> work) {
    QAction* const entry = addAction(text);
    SetWork(entry, std::move(work));
    return entry;
}

void TWidgetMenu::SetWork(QAction* entry, std::function<void()> work) {
    connect(entry, &QAction::triggered, this, [this, work = std::move(work)] { Run(work); });
}

void TWidgetMenu::Run(const std::function<void()>& work) {
    ++FRuns;
    GuardEvent(parentWidget(), work);
    if (--FRuns == 0 && !parentWidget())
        deleteLater();
}

} // namespace lmx
