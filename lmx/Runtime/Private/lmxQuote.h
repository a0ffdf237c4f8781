#pragma once

#include <QString>
#include <QStringView>

namespace lmx {

/// A text as messages quote it: whole up to 100 characters, else its beginning and an ellipsis. A file decides what
/// stands in a message about it, and nobody reads more.
inline QString Quotable(QStringView text) {
    constexpr qsizetype most = 100;
    if (text.size() <= most)
        return text.toString();
    const qsizetype kept = text[most - 1].isHighSurrogate() ? most - 1 : most;
    return text.first(kept).toString() + QChar(0x2026);
}

} // namespace lmx
