#include <lmx/Formats/Shapes/Private/lmxCodePage.h>

#include <lmx/Runtime/lmxNumberText.h>

#include <QStringDecoder>

#include <algorithm>
#include <array>
#include <cerrno>
#include <iconv.h>
#include <optional>
#include <utility>

namespace lmx {

namespace {

constexpr QChar Unreadable = QChar(QChar::ReplacementCharacter);

bool IsAscii(QByteArrayView bytes) {
    return std::ranges::all_of(bytes, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

class TQtCodePage final : public ICodePage {
public:
    explicit TQtCodePage(QStringConverter::Encoding encoding) : FEncoding(encoding) {}

    QString Decode(QByteArrayView bytes) const override {
        QStringDecoder decoder(FEncoding, QStringDecoder::Flag::Stateless);
        return decoder(bytes);
    }
    bool HasWideUnits() const override {
        return FEncoding != QStringConverter::Utf8 && FEncoding != QStringConverter::Latin1;
    }

private:
    QStringConverter::Encoding FEncoding;
};

/// The converter of the system from one code page to UTF-16.
class TIconv {
public:
    explicit TIconv(const QByteArray& name) : FHandle(iconv_open("UTF-16LE", name.constData())) {}
    ~TIconv() {
        if (IsOpen())
            iconv_close(FHandle);
    }
    TIconv(const TIconv&) = delete;
    TIconv& operator=(const TIconv&) = delete;

    bool IsOpen() const { return FHandle != reinterpret_cast<iconv_t>(-1); }

    /// Converts as much as it can of `bytes`, and takes that off them. 0, or why it stopped.
    int Convert(QByteArrayView& bytes, QString& text) const {
        std::array<char16_t, 256> units;
        auto* in = const_cast<char*>(bytes.data());
        auto inLeft = static_cast<std::size_t>(bytes.size());
        int problem = 0;
        while (inLeft > 0 && problem == 0) {
            auto* out = reinterpret_cast<char*>(units.data());
            std::size_t outLeft = sizeof units;
            if (iconv(FHandle, &in, &inLeft, &out, &outLeft) == static_cast<std::size_t>(-1) && errno != E2BIG)
                problem = errno;
            text.append(QStringView(units.data(), static_cast<qsizetype>((sizeof units - outLeft) / 2)));
        }
        bytes = bytes.last(static_cast<qsizetype>(inLeft));
        iconv(FHandle, nullptr, nullptr, nullptr, nullptr); // back to the first state
        return problem;
    }

private:
    iconv_t FHandle;
};

/// One byte is one character.
class TTableCodePage final : public ICodePage {
public:
    using TTable = std::array<QChar, 256>;

    explicit TTableCodePage(const TTable& table) : FTable(table) {}

    QString Decode(QByteArrayView bytes) const override {
        QString text(bytes.size(), Qt::Uninitialized);
        std::ranges::transform(bytes, text.begin(), [&](char c) { return FTable[static_cast<unsigned char>(c)]; });
        return text;
    }

private:
    TTable FTable;
};

/// A character has one byte or several; ASCII stands for itself.
class TMultiByteCodePage final : public ICodePage {
public:
    explicit TMultiByteCodePage(std::unique_ptr<TIconv> converter) : FConverter(std::move(converter)) {}

    QString Decode(QByteArrayView bytes) const override {
        if (IsAscii(bytes))
            return QString::fromLatin1(bytes);
        QString text;
        while (!bytes.isEmpty()) {
            if (FConverter->Convert(bytes, text) == 0)
                break;
            text += Unreadable;
            bytes = bytes.sliced(1);
        }
        return text;
    }

private:
    std::unique_ptr<TIconv> FConverter;
};

// The table of a code page in which every byte is a character; a byte without one is the control character of its
// number. None if some characters take more than a byte.
std::optional<TTableCodePage::TTable> TableOf(const TIconv& converter) {
    TTableCodePage::TTable table;
    for (unsigned code = 0; code < table.size(); ++code) {
        const char byte = static_cast<char>(code);
        QByteArrayView bytes(&byte, 1);
        QString text;
        if (converter.Convert(bytes, text) == EINVAL)
            return std::nullopt;
        table[code] = text.size() == 1 ? text[0] : QChar(static_cast<char16_t>(code));
    }
    return table;
}

std::unique_ptr<ICodePage> FromIconv(const QByteArray& name) {
    auto converter = std::make_unique<TIconv>(name);
    if (!converter->IsOpen())
        return nullptr;
    if (const auto table = TableOf(*converter))
        return std::make_unique<TTableCodePage>(*table);
    return std::make_unique<TMultiByteCodePage>(std::move(converter));
}

std::unique_ptr<ICodePage> Windows1252() {
    auto page = FromIconv("CP1252");
    return page ? std::move(page) : std::make_unique<TQtCodePage>(QStringConverter::Latin1);
}

class TGuessedCodePage final : public ICodePage {
public:
    QString Decode(QByteArrayView bytes) const override {
        if (IsAscii(bytes))
            return QString::fromLatin1(bytes);
        QString text;
        const QByteArrayView whole = WithoutCutEnd(bytes);
        if (TryUtf8(bytes, text) || (!IsAscii(whole) && TryUtf8(whole, text)))
            return text;
        return FWindows->Decode(bytes);
    }

private:
    static bool TryUtf8(QByteArrayView bytes, QString& text) {
        QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless); // a cut sequence is an error
        text = decoder(bytes);
        return !decoder.hasError();
    }
    static QByteArrayView WithoutCutEnd(QByteArrayView bytes) {
        for (qsizetype length = 1; length <= std::min<qsizetype>(3, bytes.size()); ++length) {
            const auto first = static_cast<unsigned char>(bytes[bytes.size() - length]);
            const int needed = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : first >= 0xC0 ? 2 : 1;
            if (needed > length)
                return bytes.chopped(length);
        }
        return bytes;
    }

    std::unique_ptr<ICodePage> FWindows = Windows1252();
};

// Letters and digits in upper case; everything else is decoration.
QByteArray Folded(const QString& name) {
    QByteArray folded;
    for (const QChar c : name.toUpper())
        if ((c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9'))
            folded += static_cast<char>(c.unicode());
    return folded;
}

bool IsNumber(const QByteArray& text) {
    return !text.isEmpty() && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

QByteArray WithoutVendor(const QByteArray& folded) {
    for (const char* vendor : {"WINDOWS", "ANSI", "OEM", "IBM", "CP", "MS"})
        if (folded.startsWith(vendor) && IsNumber(folded.sliced(static_cast<qsizetype>(qstrlen(vendor)))))
            return folded.sliced(static_cast<qsizetype>(qstrlen(vendor)));
    return folded;
}

// ISO 8859 by its number behind that, "15" of "ISO-8859-15"; empty for other names.
QByteArray Iso8859Part(QByteArray folded) {
    if (folded.startsWith("ISO"))
        folded.remove(0, 3);
    const bool isPart = folded.startsWith("8859") && (folded.size() == 5 || folded.size() == 6) && IsNumber(folded);
    return isPart ? folded.sliced(4) : QByteArray();
}

struct TAlias {
    const char* Folded;
    const char* System;
};

constexpr std::array<TAlias, 17> Aliases = {{{"KOI8R", "KOI8-R"},
                                             {"KOI8U", "KOI8-U"},
                                             {"BIG5", "CP950"},
                                             {"SJIS", "CP932"},
                                             {"SHIFTJIS", "CP932"},
                                             {"GB2312", "CP936"},
                                             {"GBK", "CP936"},
                                             {"GB18030", "GB18030"},
                                             {"EUCJP", "EUC-JP"},
                                             {"EUCKR", "CP949"},
                                             {"EUCTW", "EUC-TW"},
                                             {"EUCCN", "CP936"},
                                             {"TIS620", "TIS-620"},
                                             {"MACINTOSH", "MACINTOSH"},
                                             {"10000", "MACINTOSH"},
                                             {"10007", "MAC-CYRILLIC"},
                                             {"10029", "MAC-CENTRALEUROPE"}}};

struct TLanguage {
    std::uint8_t Id;
    std::uint16_t CodePage;
};

constexpr std::array<TLanguage, 64> Languages = {
    {{0x01, 437}, {0x02, 850},   {0x03, 1252},  {0x04, 10000}, {0x08, 865},  {0x09, 437},  {0x0A, 850},  {0x0B, 437},
     {0x0D, 437}, {0x0E, 850},   {0x0F, 437},   {0x10, 850},   {0x11, 437},  {0x12, 850},  {0x13, 932},  {0x14, 850},
     {0x15, 437}, {0x16, 850},   {0x17, 865},   {0x18, 437},   {0x19, 437},  {0x1A, 850},  {0x1B, 437},  {0x1C, 863},
     {0x1D, 850}, {0x1F, 852},   {0x22, 852},   {0x23, 852},   {0x24, 860},  {0x25, 850},  {0x26, 866},  {0x37, 850},
     {0x40, 852}, {0x4D, 936},   {0x4E, 949},   {0x4F, 950},   {0x50, 874},  {0x57, 1252}, {0x58, 1252}, {0x59, 1252},
     {0x64, 852}, {0x65, 866},   {0x66, 865},   {0x67, 861},   {0x6A, 737},  {0x6B, 857},  {0x6C, 863},  {0x78, 950},
     {0x79, 949}, {0x7A, 936},   {0x7B, 932},   {0x7C, 874},   {0x7D, 1255}, {0x7E, 1256}, {0x86, 737},  {0x87, 852},
     {0x88, 857}, {0x96, 10007}, {0x97, 10029}, {0xC8, 1250},  {0xC9, 1251}, {0xCA, 1254}, {0xCB, 1253}, {0xCC, 1257}}};

} // namespace

std::unique_ptr<ICodePage> CodePageOfName(const QString& name) {
    const QByteArray page = WithoutVendor(Folded(name));
    if (page == "UTF8" || page == "65001")
        return std::make_unique<TQtCodePage>(QStringConverter::Utf8);
    if (page == "UTF16" || page == "UTF16LE" || page == "UTF16BE" || page == "1200")
        return std::make_unique<TQtCodePage>(page == "UTF16BE" ? QStringConverter::Utf16BE : QStringConverter::Utf16LE);
    if (const QByteArray part = Iso8859Part(page); !part.isEmpty())
        return FromIconv("ISO-8859-" + part);
    const auto* alias = std::ranges::find_if(Aliases, [&](const TAlias& known) { return page == known.Folded; });
    if (alias != Aliases.end())
        return FromIconv(alias->System);
    return IsNumber(page) && page.size() <= 5 ? FromIconv("CP" + page) : nullptr;
}

std::unique_ptr<ICodePage> CodePageOfLanguage(std::uint8_t id) {
    const auto* language = std::ranges::find(Languages, id, &TLanguage::Id);
    return language != Languages.end() ? CodePageOfName(IntToStr(language->CodePage)) : nullptr;
}

std::unique_ptr<ICodePage> GuessedCodePage() {
    return std::make_unique<TGuessedCodePage>();
}

} // namespace lmx
