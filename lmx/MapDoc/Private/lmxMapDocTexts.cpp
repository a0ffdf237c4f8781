#include <lmx/MapDoc/Private/lmxMapDocTexts.h>

#include <lmx/Coordinates/wskWorldSystem.h>
#include <lmx/Runtime/Private/lmxQuote.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <QFileInfo>

#include <charconv>

namespace lmx {

namespace {

[[noreturn]] void RefuseInteger(const QString& text) {
    throw EConvertError(u'\'' + Quotable(text) + QStringLiteral("' is not a valid integer value"));
}

} // namespace

QString GuidToText(const QUuid& id) {
    return id.toString(QUuid::WithBraces).toUpper();
}

QUuid TextToGuid(const QString& text) {
    const QUuid id(text);
    // The class takes texts without braces and with something behind them.
    if (GuidToText(id) != text.toUpper())
        throw EConvertError(u'\'' + Quotable(text) + QStringLiteral("' is not a valid GUID value"));
    return id;
}

QString WorldSystemToText(const std::shared_ptr<IWorldSystem>& system) {
    return system ? system->Identifier() : QStringLiteral("null");
}

QString Color32ToDecimal(TColor32 color) {
    return IntToStr(color);
}

std::uint32_t DecimalToLow32(const QString& text) {
    std::int32_t word = 0;
    if (TryStrToInt(text, word)) // blanks and hexadecimal digits, too
        return static_cast<std::uint32_t>(word);
    QByteArray digits = text.toLatin1(); // what is not of it becomes a question mark
    while (digits.startsWith(' '))
        digits.remove(0, 1);
    if (digits.startsWith('+') && !digits.startsWith("+-"))
        digits.remove(0, 1);
    std::int64_t number = 0;
    const auto result = std::from_chars(digits.begin(), digits.end(), number);
    if (result.ec != std::errc() || result.ptr != digits.end())
        RefuseInteger(text);
    return static_cast<std::uint32_t>(number);
}

int TextToOrdinal(const QString& text, int count) {
    const int ordinal = StrToInt(text);
    if (ordinal < 0 || ordinal >= count)
        RefuseInteger(text);
    return ordinal;
}

bool IsRegularFile(const QString& fileName) {
    return QFileInfo(fileName).isFile();
}

void CheckRegularFile(const QString& fileName) {
    if (!IsRegularFile(fileName))
        throw EFileException(fileName, QStringLiteral("cannot be read: no regular file"));
}

void AddText(TXmlNode parent, const QString& name, const QString& text) {
    parent.AddChild(name).SetText(text);
}

QString RequiredText(TXmlNode parent, const QString& name, const QString& message) {
    const TXmlNode child = parent.Child(name);
    if (child.IsEmpty())
        throw Exception(message);
    return child.GetText();
}

} // namespace lmx
