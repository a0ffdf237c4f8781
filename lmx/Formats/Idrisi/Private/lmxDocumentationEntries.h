#pragma once

#include <lmx/Formats/Idrisi/lmxImageHeader.h>

#include <QHash>
#include <QString>
#include <QStringList>

#include <cstdint>

namespace lmx {

/// Documentation that holds more is refused unread; a long name for each of 65536 cell values fits.
inline constexpr std::int64_t MostDocumentationBytes = 8 * 1024 * 1024;

/// The entries of a documentation file, by their bare key: its letters and digits, in lower case. One entry a line, key
/// and value separated by the first colon; lines without a colon are skipped. Repeated ones are kept, because
/// descriptions run over several lines.
class TDocumentationEntries {
public:
    explicit TDocumentationEntries(const QString& text);

    QString First(const QString& key) const { return FTexts.value(key).value(0); } ///< "" if absent
    QString Lines(const QString& key) const { return FTexts.value(key).join(u'\n'); }
    const TLegendCategories& Categories() const { return FCategories; }

    /// "line 3: " for the message about an entry, empty if it is absent.
    QString LineOf(const QString& key) const;

    /// False, with `value` left alone, if the entry is absent or no number.
    bool TryNumber(const QString& key, float& value) const;

private:
    void Add(const QString& key, const QString& text, std::int64_t line);

    QHash<QString, QStringList> FTexts;
    QHash<QString, std::int64_t> FLines; ///< of the first entry of each key, counted from 1
    TLegendCategories FCategories;
};

} // namespace lmx
