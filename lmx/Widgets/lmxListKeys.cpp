#include <lmx/Widgets/lmxListKeys.h>

#include <QKeyEvent>
#include <QWidget>

#include <algorithm>

namespace lmx {

TListKeys::TListKeys(QWidget* list) : QObject(list) {
    list->installEventFilter(this);
}

void TListKeys::Add(const std::vector<Qt::Key>& keys, QAbstractButton* button) {
    for (const Qt::Key key : keys)
        FKeys.push_back({key, button});
}

const TListKeys::TKey* TListKeys::Find(const QKeyEvent& event) const {
    if ((event.modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier)
        return nullptr;
    const auto found =
        std::find_if(FKeys.begin(), FKeys.end(), [&](const TKey& key) { return key.Key == event.key(); });
    return found == FKeys.end() ? nullptr : &*found;
}

// Qt asks twice: whether the key comes before shortcuts, and then as a press. True keeps it from the list itself, which
// would take it as a letter to search for; an ignored key goes on to the list's parents.
bool TListKeys::eventFilter(QObject* sender, QEvent* event) {
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride)
        return QObject::eventFilter(sender, event);
    auto& keyEvent = static_cast<QKeyEvent&>(*event);
    const TKey* key = Find(keyEvent);
    return key ? Press(*key, keyEvent) : QObject::eventFilter(sender, event);
}

bool TListKeys::Press(const TKey& key, QKeyEvent& event) {
    const bool isOurs = key.Button && key.Button->isEnabled();
    const bool isHeld = event.isAutoRepeat() && event.key() == FHeldKey;
    event.setAccepted(isOurs || isHeld);
    if (event.isAutoRepeat())
        return true;
    FHeldKey = isOurs ? event.key() : 0;
    if (isOurs && event.type() == QEvent::KeyPress)
        key.Button->click(); // and whatever it does, to this too
    return true;
}

} // namespace lmx
