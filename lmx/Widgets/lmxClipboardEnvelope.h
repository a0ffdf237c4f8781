#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <QString>

namespace lmx {

/// A text on the clipboard that is of one kind, by a tag such as "COLORKEY", and means nothing to other programs: it
/// stands there alone, without a plain text beside it. Goes through the clipboard's service.
class LMX_EXPORT TClipboardEnvelope {
public:
    static void SetText(const QString& tag, const QString& text); ///< in the place of all that there was
    static bool Contains(const QString& tag);                     ///< no text of another tag, and no plain one
    static QString GetText(const QString& tag);                   ///< "" if there is none of that tag
};

} // namespace lmx
