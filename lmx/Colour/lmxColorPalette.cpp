#include <lmx/Colour/lmxColorPalette.h>

#include <lmx/Colour/Private/lmxColorComponent.h>
#include <lmx/Formats/Idrisi/lmxIdrisiPalFile.h>
#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Runtime/lmxText.h>

#include <algorithm>

namespace lmx {

namespace {

constexpr qint64 MostBytes = 16 * 1024 * 1024; // a million colours

const QString& FirstLine() {
    static const QString line = QStringLiteral("QUORVAN45PAL");
    return line;
}

/// The first piece that is no component is the one that is named.
TColor32 PiecesToColor(const QStringList& pieces) {
    std::uint8_t components[4];
    std::transform(pieces.begin(), pieces.end(), components, StringToColorComponent);
    return Color32(components[0], components[1], components[2], components[3]);
}

QString ColorToLine(TColor32 color) {
    const QStringList components = {IntToStr(RedComponent(color)), IntToStr(GreenComponent(color)),
                                    IntToStr(BlueComponent(color)), IntToStr(AlphaComponent(color))};
    return components.join(u' ');
}

} // namespace

void TColorPalette::Load(const QString& fileName) {
    clear();
    const QStringList lines = ReadLines(fileName, MostBytes);
    if (lines.isEmpty())
        throw Exception(QStringLiteral("Invalid palette file"));
    if (lines.front() != FirstLine()) {
        LoadIdrisiPal(fileName);
        return;
    }
    for (const QString& line : lines.sliced(1)) {
        const QStringList pieces = Split(line, u' ');
        if (pieces.size() == 4)
            push_back(PiecesToColor(pieces));
    }
}

void TColorPalette::LoadIdrisiPal(const QString& fileName) {
    clear();
    TIdrisiPalFile file;
    file.LoadFromFile(fileName);
    for (std::size_t i = 0; i < file.GetCount(); ++i)
        push_back(Color32(file.GetColor(i)));
}

void TColorPalette::Save(const QString& fileName) const {
    QStringList lines = {FirstLine()};
    for (TColor32 color : *this)
        lines += ColorToLine(color);
    WriteLines(fileName, lines);
}

} // namespace lmx
