
#include <lmx/Formats/Text/Private/lmxAnsiText.h>

#include <QStringDecoder>

#include <algorithm>
#include <array>

namespace lmx {

namespace {

// Windows-1252 from 0x80 to 0x9F; the rest of it is Latin-1.
constexpr std::array<char16_t, 32> HighControls = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                   0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                                   0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                   0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

QString FromWindows1252(const QByteArray& bytes) {
    QString text = QString::fromLatin1(bytes);
    for (QChar& c : text)
        if (c >= QChar(0x80) && c <= QChar(0x9F))
            c = QChar(HighControls[c.unicode() - 0x80U]);
    return text;
}

bool TryFromUtf8(QByteArrayView bytes, QString& text) {
    if (bytes.startsWith("\xEF\xBB\xBF"))
        bytes = bytes.sliced(3);
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless); // a sequence cut off is an error
    const QString decoded = decoder(bytes);
    if (decoder.hasError())
        return false;
    text = decoded;
    return true;
}

// False if `text` has a character outside the code page.
bool TryToWindows1252(const QString& text, QByteArray& bytes) {
    bytes.resize(0);
    bytes.reserve(text.size());
    for (const QChar c : text) {
        const char16_t unit = c.unicode();
        if (unit < 0x80 || (unit >= 0xA0 && unit <= 0xFF)) {
            bytes += static_cast<char>(unit);
            continue;
        }
        const auto place = std::find(HighControls.begin(), HighControls.end(), unit);
        if (place == HighControls.end())
            return false;
        bytes += static_cast<char>(0x80 + (place - HighControls.begin()));
    }
    return true;
}

} // namespace

QString DecodeAnsiText(const QByteArray& bytes) {
    QString text;
    return TryFromUtf8(bytes, text) ? text : FromWindows1252(bytes);
}

QByteArray EncodeAnsiText(const QString& text) {
    QByteArray bytes;
    if (TryToWindows1252(text, bytes) && DecodeAnsiText(bytes) == text)
        return bytes;
    return text.toUtf8();
}

} // namespace lmx
