#include <lmx/Formats/Idrisi/lmxIdrisiPalFile.h>

#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxExtended.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Runtime/lmxText.h>

#include <QStringList>

#include <algorithm>
#include <array>

namespace lmx {

namespace {

constexpr char BinaryMark[] = "[Idrisi]";
constexpr qint64 MostBytes = 1024 * 1024; // many times 256 lines
constexpr qsizetype HeaderLengthOffset = 11;
constexpr std::int32_t LargestIndex = 255;
constexpr std::int32_t LargestComponent = 255;
constexpr std::int32_t LargestHardwareLevel = 63;

TColor ColorOf(std::int32_t red, std::int32_t green, std::int32_t blue) {
    return {red | green << 8 | blue << 16};
}

std::vector<TColor> ReadBinary(const QByteArray& content, const QString& fileName) {
    if (content.size() <= HeaderLengthOffset)
        throw EFileFormatException(fileName, QStringLiteral("the palette is cut short"));
    const auto byteAt = [&content](qsizetype offset) { return static_cast<quint8>(content[offset]); };
    const qsizetype start = byteAt(HeaderLengthOffset);
    const qsizetype count = std::min<qsizetype>((content.size() - start) / 3, LargestIndex + 1);
    if (start <= HeaderLengthOffset || count < 1)
        throw EFileFormatException(fileName, QStringLiteral("the palette is cut short"));
    std::vector<TColor> colors;
    for (qsizetype at = start; at < start + 3 * count; at += 3)
        colors.push_back(ColorOf(byteAt(at), byteAt(at + 1), byteAt(at + 2)));
    return colors;
}

using TPaletteLine = std::array<std::int32_t, 4>; // index, red, green, blue

bool TryReadLine(const QString& text, TPaletteLine& line) {
    const QStringList pieces = text.simplified().split(u' ');
    if (pieces.size() != 4)
        return false;
    for (std::size_t i = 0; i < line.size(); ++i)
        if (!TryStrToInt(pieces[static_cast<qsizetype>(i)], line[i]) || line[i] < 0 || line[i] > LargestComponent)
            return false;
    return true;
}

std::vector<TPaletteLine> ReadLinesOf(const QByteArray& content, const QString& fileName) {
    std::vector<TPaletteLine> lines;
    std::int64_t number = 0;
    for (const QString& text : SplitLines(QString::fromLatin1(content))) {
        ++number;
        if (Trim(text).isEmpty() || text == QStringLiteral("\x1A")) // the end mark of old text editors
            continue;
        if (!TryReadLine(text, lines.emplace_back()))
            throw EFileFormatException(fileName,
                                       QStringLiteral("line ") + IntToStr(number) +
                                           QStringLiteral(" of the palette is not an index and three components"));
    }
    if (lines.empty())
        throw EFileFormatException(fileName, QStringLiteral("the palette has no colours"));
    return lines;
}

std::vector<TColor> ReadText(const QByteArray& content, const QString& fileName) {
    const std::vector<TPaletteLine> lines = ReadLinesOf(content, fileName);
    const bool isScaled = std::any_of(lines.begin(), lines.end(), [](const TPaletteLine& line) {
        return *std::max_element(line.begin() + 1, line.end()) > LargestHardwareLevel;
    });
    const auto component = [isScaled](std::int32_t level) {
        return isScaled ? level
                        : static_cast<std::int32_t>(Round(level * extended(LargestComponent) / LargestHardwareLevel));
    };
    std::vector<TColor> colors;
    for (const auto& [index, red, green, blue] : lines) {
        const auto place = static_cast<std::size_t>(index);
        colors.resize(std::max(colors.size(), place + 1));
        colors[place] = ColorOf(component(red), component(green), component(blue));
    }
    return colors;
}

} // namespace

void TIdrisiPalFile::LoadFromFile(const QString& fileName) {
    LoadFromBytes(ReadFile(fileName, MostBytes), fileName);
}

void TIdrisiPalFile::LoadFromBytes(const QByteArray& content, const QString& fileName) {
    FColors = content.startsWith(BinaryMark) ? ReadBinary(content, fileName) : ReadText(content, fileName);
}

TColor TIdrisiPalFile::GetColor(std::size_t index) const {
    if (index >= FColors.size())
        throw EArgumentException(QStringLiteral("Color index is out of range"));
    return FColors[index];
}

} // namespace lmx
