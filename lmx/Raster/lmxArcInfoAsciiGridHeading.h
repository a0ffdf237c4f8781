#pragma once

#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxFormatSettings.h>

#include <QString>

#include <cstdint>
#include <memory>
#include <span>

class QIODevice;

namespace lmx {

struct TMapArea;
class TStreamReader;
class TStreamWriter;

/// The six-line heading of an ArcInfo ASCII grid. The corner is that of the outer edges of the lower left cell, in map
/// units; cells are squares. Never changes.
class LMX_EXPORT IArcInfoAsciiGridHeading {
public:
    virtual ~IArcInfoAsciiGridHeading() = default;

    virtual std::int32_t GetNCols() const = 0;
    virtual std::int32_t GetNRows() const = 0;
    virtual double GetXCorner() const = 0;     ///< left edge
    virtual double GetYCorner() const = 0;     ///< bottom edge
    virtual double GetCellSize() const = 0;    ///< map units
    virtual double GetNODATAValue() const = 0; ///< value of a cell without data

    /// Six lines, each with a line break: a key, filled with blanks to 14 characters, and its value in the format
    /// settings.
    virtual QString ToString(const TFormatSettings& settings = TFormatSettings::Current()) const = 0;
    /// Writes the text as one line, so an empty line follows the heading.
    /// @throws EFileException if the stream does not take it.
    virtual void Save(TStreamWriter& writer, const TFormatSettings& settings = TFormatSettings::Current()) const = 0;
};

/// Makes headings from text in the format settings, or from what they say.
///
/// A text has exactly six lines: ncols, nrows, xllcorner, yllcorner, cellsize and NODATA_value, in this order and in
/// any case, each followed by its value; white space between the two may be missing. Counts are not negative. A float
/// must be within single precision and is kept in double.
/// @throws EArgumentException "Invalid number of heading lines", "Line does not start with expected line ID", also
/// where the text ends early, "No value found for "..."" and "Value for "..." is invalid" with the key. Its Place is
/// the line of the file or stream.
class LMX_EXPORT TArcInfoAsciiGridHeadingFactory {
public:
    static std::shared_ptr<IArcInfoAsciiGridHeading>
    GetObject(std::span<const QString> lines, const TFormatSettings& settings = TFormatSettings::Current());
    /// Reads six lines.
    /// @throws EFileException if the stream cannot be read.
    static std::shared_ptr<IArcInfoAsciiGridHeading>
    GetObject(TStreamReader& reader, const TFormatSettings& settings = TFormatSettings::Current());
    /// Reads six lines and leaves the stream at the first row.
    static std::shared_ptr<IArcInfoAsciiGridHeading>
    GetObject(QIODevice& stream, const TFormatSettings& settings = TFormatSettings::Current());
    static std::shared_ptr<IArcInfoAsciiGridHeading>
    GetObject(const QString& fileName, const TFormatSettings& settings = TFormatSettings::Current());
    /// Takes left and bottom edge of the area, and the rest as given; nothing is tested.
    static std::shared_ptr<IArcInfoAsciiGridHeading> GetObject(const TMapArea& area, std::int32_t ncols,
                                                               std::int32_t nrows, double cellSize, double noData);
};

} // namespace lmx
