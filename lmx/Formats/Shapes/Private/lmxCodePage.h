#pragma once

#include <QByteArrayView>
#include <QString>

#include <cstdint>
#include <memory>

namespace lmx {

/// A way to read text of 8-bit bytes. Serves one thread at a time.
class ICodePage {
public:
    virtual ~ICodePage() = default;

    /// Bytes that mean nothing become U+FFFD; a character cut off at the end does too.
    virtual QString Decode(QByteArrayView bytes) const = 0;
    virtual bool HasWideUnits() const { return false; } ///< whether a character has two bytes at least
};

/// The code page that a .cpg file names, in one of the many ways in which programs do that: "UTF-8", "1252", "CP936",
/// "Big-5", "koi8r", "ANSI 1251", "ISO-8859-15", "88591". Nil if nobody knows it.
std::unique_ptr<ICodePage> CodePageOfName(const QString& name);

/// The code page of a table's language driver id. Nil if the id names none.
std::unique_ptr<ICodePage> CodePageOfLanguage(std::uint8_t id);

/// For text that says nothing of itself: each piece is UTF-8 if it decodes as that, else Windows-1252. A character of
/// UTF-8 that was cut off where a full field ends is left out.
std::unique_ptr<ICodePage> GuessedCodePage();

} // namespace lmx
