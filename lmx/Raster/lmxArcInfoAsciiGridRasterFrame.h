#pragma once

#include <lmx/Raster/lmxArcInfoAsciiGridHeading.h>
#include <lmx/Raster/lmxBaseLinearRasterFrame.h>
#include <lmx/Runtime/lmxExport.h>

#include <QString>

#include <cstdint>
#include <memory>

class QByteArray;
class QIODevice;

namespace lmx {

/// A raster frame with the heading of an ArcInfo ASCII grid.
class LMX_EXPORT IArcInfoAsciiGridRasterFrame : public virtual ILinearRasterFrame {
public:
    virtual std::shared_ptr<IArcInfoAsciiGridHeading> GetHeading() const = 0;
};

/// An ArcInfo ASCII grid: a heading of six lines and one line for each row, the top row first. The bounds are the outer
/// edges that the heading gives. Cells without data hold the heading's NODATA value; nothing translates it.
///
/// Reading is strict: a fixed order of keys, the corner form only, each row on one line with single blanks between its
/// values. Numbers, read and written, follow the format settings. It takes the memory of the frame and of one
/// line, and an announced size takes none before there are rows to fill it (a stream without positions may need twice
/// the frame for a while).
class LMX_EXPORT TArcInfoAsciiGridRasterFrame : public TBaseLinearRasterFrame, public IArcInfoAsciiGridRasterFrame {
public:
    /// Reads a file or a stream, into singles whatever the kind asked for. A stream with positions is left behind the
    /// last row.
    /// @throws EFileException if it cannot be read or does not fit into memory; what TArcInfoAsciiGridHeadingFactory
    /// raises, and if the rows are none of such a grid: Exception "Row %d contains %d values, %d were expected" with
    /// the row counted from 0, EConvertError "'...' is not a valid floating point value", EArgumentException "Col index
    /// is out of range" for rows without columns. The Place of these is the line of the file or stream.
    TArcInfoAsciiGridRasterFrame(const QString& fileName, TDataKind kind,
                                 const TFormatSettings& settings = TFormatSettings::Current());
    TArcInfoAsciiGridRasterFrame(QIODevice& stream, TDataKind kind,
                                 const TFormatSettings& settings = TFormatSettings::Current());

    /// A frame of zeros. Its heading has the cell size of the area's width alone, and -9999 for cells without data.
    /// @throws EArgumentException "Frame size is negative"; EOutOfMemory if there is no room for the cells.
    TArcInfoAsciiGridRasterFrame(const TMapArea& area, std::int32_t width, std::int32_t height, TDataKind kind);

    /// The heading that the frame was made with; SetBounds does not change it.
    std::shared_ptr<IArcInfoAsciiGridHeading> GetHeading() const override { return FHeading; }

    /// Writes heading and cells; an empty line stands between them (docs/oddities.md). Replaces a file in one step:
    /// after a failure the old one is still there.
    /// @throws EInvalidOperation "Unsupported buffer kind" unless the cells are integers or singles; EFileException if
    /// the file or stream does not take it.
    void Save(const QString& fileName) const override;
    void Save(const QString& fileName, const TFormatSettings& settings) const;
    void Save(QIODevice& stream, const TFormatSettings& settings = TFormatSettings::Current()) const;

protected:
    /// Reads a grid into cells of the kind dkFloat or dkInt. After a failure the frame is as it was.
    /// @throws EInvalidOperation "Unsupported data kind"; else as the constructors.
    void Load(QIODevice& stream, TDataKind kind, const TFormatSettings& settings = TFormatSettings::Current());

    /// The values of a row, separated by blanks.
    /// @throws EArgumentException "Row index is out of range", "Col index is out of range" for a frame without columns;
    /// then EInvalidOperation as Save.
    QString GetRowString(std::int32_t row, const TFormatSettings& settings = TFormatSettings::Current()) const;

private:
    void AppendRowText(QByteArray& text, std::int32_t row, const TFormatSettings& settings) const;

    std::shared_ptr<IArcInfoAsciiGridHeading> FHeading;
};

} // namespace lmx
