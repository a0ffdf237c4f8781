// An ArcInfo ASCII grid, read under a decimal point and under a decimal comma. A grid that is read must survive a walk
// over its cells, which must read back from their own text.

#include <lmx/Raster/lmxArcInfoAsciiGridRasterFrame.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <lmx/Runtime/lmxText.h>

#include <QBuffer>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

namespace {

using namespace lmx;

// The text as the reader takes it: without the empty line behind the heading.
QByteArray TextOf(const TArcInfoAsciiGridRasterFrame& grid) {
    QBuffer stream;
    stream.open(QIODevice::WriteOnly);
    grid.Save(stream);
    const QByteArray lineBreak = LineBreak().toUtf8();
    QByteArray text = stream.data();
    text.remove(text.indexOf(lineBreak + lineBreak), lineBreak.size());
    return text;
}

void RequireSameCells(const TArcInfoAsciiGridRasterFrame& a, const TArcInfoAsciiGridRasterFrame& b) {
    if (a.GetWidth() != b.GetWidth() || a.GetHeight() != b.GetHeight())
        std::abort();
    for (std::int32_t row = 0; row < a.GetHeight(); ++row)
        for (std::int32_t col = 0; col < a.GetWidth(); ++col)
            if (a.ReadCell(row, col) != b.ReadCell(row, col))
                std::abort();
}

std::unique_ptr<TArcInfoAsciiGridRasterFrame> TryRead(const QByteArray& bytes, QString& refusal) {
    QBuffer stream;
    stream.setData(bytes);
    stream.open(QIODevice::ReadOnly);
    try {
        return std::make_unique<TArcInfoAsciiGridRasterFrame>(stream, TDataKind::dkFloat);
    } catch (const Exception& failure) { // a refusal is a correct answer
        refusal = failure.Message();
        return nullptr;
    }
}

void ReadTwice(const QByteArray& bytes) {
    QString refusal;
    const auto grid = TryRead(bytes, refusal);
    if (!grid)
        return;
    if (const auto copy = TryRead(TextOf(*grid), refusal))
        RequireSameCells(*grid, *copy);
    else if (!refusal.startsWith(QStringLiteral("Value for"))) // 15 digits may go beyond the largest single
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const QByteArray input(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size));
    for (const QChar separator : {u'.', u','}) {
        const TFormatSettingsScope settings({separator});
        ReadTwice(input);
    }
    return 0;
}
