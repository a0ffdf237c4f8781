// What reading and writing a large ArcInfo ASCII grid costs, as a part of the speed of a bare loop of std::from_chars
// over the same bytes, and of std::to_chars over the same cells, both in memory. Reading a file and writing a stream
// should reach half of it. Writing a file is shown as well: how long the disk takes is not ours.

#include <benchmarks/Measuring.h>
#include <lmx/Coordinates/wskMappingTypes.h>
#include <lmx/Raster/lmxArcInfoAsciiGridRasterFrame.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <lmx/Runtime/lmxText.h>

#include <QBuffer>
#include <QTemporaryDir>

#include <charconv>
#include <cmath>
#include <functional>
#include <iomanip>
#include <iostream>
#include <vector>

namespace {

using namespace lmx;
using namespace lmx::bench;

constexpr std::int32_t Width = Sized(4320);
constexpr std::int32_t Height = Sized(2161);
constexpr std::size_t CellCount = std::size_t{Width} * Height;
constexpr int Rounds = 7;

/// Runs both in turns, so that they see the same machine, and prints the ratio of the best times.
void Report(const char* name, const std::function<void()>& yardstick, const std::function<void()>& action) {
    TBestTime bestYardstick;
    TBestTime bestAction;
    for (int i = 0; i < Rounds; ++i) {
        bestYardstick.Measure(yardstick);
        bestAction.Measure(action);
    }
    std::cout << std::left << std::setw(34) << name << std::right << std::fixed << std::setprecision(3) << std::setw(7)
              << bestYardstick / bestAction << " of the bare loop (" << std::setprecision(0)
              << bestYardstick.GetMilliseconds() << " ms, " << bestAction.GetMilliseconds() << " ms)\n";
}

/// Temperatures with two decimals, or numbers of full precision.
void FillCells(TArcInfoAsciiGridRasterFrame& frame, bool isRounded) {
    for (std::int32_t row = 0; row < Height; ++row) {
        auto line = std::get<std::span<float>>(frame.ScanLine(row));
        for (std::size_t col = 0; col < line.size(); ++col) {
            const double value = 45 * std::sin(static_cast<double>(col) / 300) * std::cos(row / 200.0);
            line[col] = static_cast<float>(isRounded ? std::nearbyint(value * 100) / 100 : value);
        }
    }
}

/// The rows of the text alone, with the empty line taken out of the file.
QByteArray MakeReadable(const QString& fileName) {
    QByteArray text = ReadFile(fileName);
    const QByteArray lineBreak = LineBreak().toUtf8();
    const qsizetype emptyLine = text.indexOf(lineBreak + lineBreak);
    text.remove(emptyLine, lineBreak.size());
    WriteFile(fileName, text);
    return text.sliced(emptyLine + lineBreak.size());
}

void ParseAll(const QByteArray& rows, std::vector<float>& cells) {
    const char* at = rows.constData();
    const char* const end = at + rows.size();
    for (float& cell : cells) {
        at = std::from_chars(at, end, cell).ptr;
        while (at != end && (*at == ' ' || *at == '\n' || *at == '\r'))
            ++at;
    }
}

char* PrintAll(const std::vector<float>& cells, std::vector<char>& text) {
    char* at = text.data();
    char* const end = at + text.size();
    for (const float cell : cells) {
        at = std::to_chars(at, end, cell).ptr;
        *at++ = ' ';
    }
    return at;
}

void ReportGrid(const char* title, bool isRounded) {
    const QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("grid.asc"));
    const QString copyName = folder.filePath(QStringLiteral("copy.asc"));
    TArcInfoAsciiGridRasterFrame frame(TMapArea(-180, 90, 180, -90), Width, Height, TDataKind::dkFloat);
    FillCells(frame, isRounded);
    frame.Save(fileName);
    const QByteArray rows = MakeReadable(fileName);
    std::cout << title << ", " << rows.size() / 1'000'000 << " MB\n";

    std::vector<float> cells(CellCount);
    std::vector<char> text(CellCount * 16);
    const auto parse = [&] { ParseAll(rows, cells); };
    const auto print = [&] { PrintAll(cells, text); };
    Report("  read from a file", parse, [&] { TArcInfoAsciiGridRasterFrame(fileName, TDataKind::dkFloat); });
    for (std::int32_t row = 0; row < Height; row += 97)
        if (cells[static_cast<std::size_t>(row) * Width + 7] != static_cast<float>(frame.ReadCell(row, 7)))
            std::abort(); // the loops would compare different work
    QBuffer stream;
    stream.open(QIODevice::WriteOnly);
    Report("  write to memory", print, [&] {
        stream.seek(0);
        frame.Save(stream);
    });
    Report("  write to a file", print, [&] { frame.Save(copyName); });
}

} // namespace

int main() {
    const TFormatSettingsScope point(TFormatSettings::Invariant());
    std::cout << Width << " x " << Height << " cells\n";
    ReportGrid("two decimals", true);
    ReportGrid("full precision", false);
}
