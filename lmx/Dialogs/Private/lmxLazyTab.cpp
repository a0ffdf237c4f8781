#include <lmx/Dialogs/Private/lmxLazyTab.h>

#include <vector>

namespace lmx {

// What is made late stands at the end of the window's order for the tab key.
void TLazyPlace::Put(QWidget* page) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(page);
    page->show();
    std::vector<QWidget*> stops;
    for (QWidget* next = page->nextInFocusChain(); next != page; next = next->nextInFocusChain())
        if (page->isAncestorOf(next) && (next->focusPolicy() & Qt::TabFocus) != 0)
            stops.push_back(next);
    QWidget* last = FBefore;
    for (QWidget* stop : stops) {
        setTabOrder(last, stop);
        last = stop;
    }
}

void TLazyPlace::showEvent(QShowEvent* event) {
    Make();
    QWidget::showEvent(event);
}

} // namespace lmx
