#include <lmx/Raster/lmxArcInfoAsciiGridRasterFrame.h>

#include <lmx/Raster/Private/lmxAsciiGridRows.h>
#include <lmx/Runtime/Private/lmxMemory.h>
#include <lmx/Runtime/Private/lmxReplacementFile.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxExtended.h>
#include <lmx/Runtime/lmxTextStreams.h>

#include <QFile>

namespace lmx {

namespace {

constexpr double NoDataOfNewGrids = -9999;

TMapArea BoundsOf(const IArcInfoAsciiGridHeading& heading) {
    const extended cellSize = heading.GetCellSize();
    const extended left = heading.GetXCorner();
    const extended bottom = heading.GetYCorner();
    return {left, bottom + heading.GetNRows() * cellSize, left + heading.GetNCols() * cellSize, bottom};
}

} // namespace

TArcInfoAsciiGridRasterFrame::TArcInfoAsciiGridRasterFrame(const QString& fileName, TDataKind,
                                                           const TFormatSettings& settings)
    : TArcInfoAsciiGridRasterFrame(*OpenForReading(fileName), TDataKind::dkFloat, settings) {}

TArcInfoAsciiGridRasterFrame::TArcInfoAsciiGridRasterFrame(QIODevice& stream, TDataKind,
                                                           const TFormatSettings& settings) {
    Load(stream, TDataKind::dkFloat, settings);
}

TArcInfoAsciiGridRasterFrame::TArcInfoAsciiGridRasterFrame(const TMapArea& area, std::int32_t width,
                                                           std::int32_t height, TDataKind kind) {
    Init(area, width, height, kind);
    FHeading = TArcInfoAsciiGridHeadingFactory::GetObject(area, width, height, GetResolution(), NoDataOfNewGrids);
}

void TArcInfoAsciiGridRasterFrame::Load(QIODevice& stream, TDataKind kind, const TFormatSettings& settings) {
    TStreamReader reader(stream);
    const auto heading = TArcInfoAsciiGridHeadingFactory::GetObject(reader, settings);
    const std::int32_t columns = heading->GetNCols();
    const std::int32_t rows = heading->GetNRows();
    switch (kind) {
    case TDataKind::dkFloat:
        Init(BoundsOf(*heading), columns, rows, ReadGridRows<float>(reader, columns, rows, settings));
        break;
    case TDataKind::dkInt:
        Init(BoundsOf(*heading), columns, rows, ReadGridRows<std::int32_t>(reader, columns, rows, settings));
        break;
    default:
        throw EInvalidOperation(QStringLiteral("Unsupported data kind"));
    }
    FHeading = heading;
}

void TArcInfoAsciiGridRasterFrame::Save(const QString& fileName) const {
    Save(fileName, TFormatSettings::Current());
}

void TArcInfoAsciiGridRasterFrame::Save(const QString& fileName, const TFormatSettings& settings) const {
    TReplacementFile file(fileName);
    try {
        Save(file.GetDevice(), settings);
    } catch (const EFileException& failure) {
        throw EFileException(fileName, failure.Problem()); // the device may have another name
    }
    file.Commit();
}

void TArcInfoAsciiGridRasterFrame::Save(QIODevice& stream, const TFormatSettings& settings) const {
    WithinMemory([&] {
        TStreamWriter writer(stream);
        FHeading->Save(writer, settings);
        QByteArray text;
        for (std::int32_t row = 0; row < GetHeight(); ++row) {
            text.truncate(0);
            AppendRowText(text, row, settings);
            writer.WriteLineUtf8(text);
        }
        writer.Flush();
    });
}

QString TArcInfoAsciiGridRasterFrame::GetRowString(std::int32_t row, const TFormatSettings& settings) const {
    QByteArray text;
    AppendRowText(text, row, settings);
    return QString::fromUtf8(text);
}

void TArcInfoAsciiGridRasterFrame::AppendRowText(QByteArray& text, std::int32_t row,
                                                 const TFormatSettings& settings) const {
    const TConstScanLine line = ScanLine(row);
    if (const auto* const singles = std::get_if<std::span<const float>>(&line))
        AppendGridRow(text, *singles, settings);
    else if (const auto* const integers = std::get_if<std::span<const std::int32_t>>(&line))
        AppendGridRow(text, *integers, settings);
    else
        throw EInvalidOperation(QStringLiteral("Unsupported buffer kind"));
}

} // namespace lmx
