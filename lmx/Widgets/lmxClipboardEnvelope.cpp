#include <lmx/Widgets/lmxClipboardEnvelope.h>

#include <lmx/Widgets/lmxClipboard.h>

namespace lmx {

namespace {

QString MimeType(const QString& tag) {
    return QStringLiteral("application/x-lmx-") + tag.toLower();
}

} // namespace

void TClipboardEnvelope::SetText(const QString& tag, const QString& text) {
    TClipboard::SetData(MimeType(tag), text.toUtf8());
}

bool TClipboardEnvelope::Contains(const QString& tag) {
    return TClipboard::GetData(MimeType(tag)).has_value();
}

QString TClipboardEnvelope::GetText(const QString& tag) {
    return QString::fromUtf8(TClipboard::GetData(MimeType(tag)).value_or(QByteArray()));
}

} // namespace lmx
