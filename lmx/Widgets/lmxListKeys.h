#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <QAbstractButton>
#include <QPointer>

#include <vector>

QT_BEGIN_NAMESPACE
class QKeyEvent;
QT_END_NAMESPACE

namespace lmx {

/// The keys of a list: each presses a button, wherever the button stands. The key of a button that is enabled comes
/// before a shortcut of the host; that of a disabled one means nothing to the list and goes on to the host. A key with
/// a modifier is another key, and one that is held counts once.
class LMX_EXPORT TListKeys : public QObject {
public:
    /// For the keys of `list`, to which this belongs from now on.
    explicit TListKeys(QWidget* list);

    /// The button may go before the list.
    void Add(const std::vector<Qt::Key>& keys, QAbstractButton* button);

protected:
    bool eventFilter(QObject* sender, QEvent* event) override;

private:
    struct TKey {
        Qt::Key Key;
        QPointer<QAbstractButton> Button;
    };

    const TKey* Find(const QKeyEvent& event) const; ///< nil for a key that is none of these
    bool Press(const TKey& key, QKeyEvent& event);

    std::vector<TKey> FKeys;
    int FHeldKey = 0; ///< whose press was ours; what is repeated of it is, too
};

} // namespace lmx
