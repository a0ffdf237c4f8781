#include <lmx/Raster/Private/lmxAsciiGridRows.h>

#include <lmx/Runtime/Private/lmxMemory.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxFormat.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Runtime/lmxTextStreams.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <string>
#include <system_error>

namespace lmx {

namespace {

// Reading

QByteArrayView Trimmed(QByteArrayView line) {
    const auto isTrimmed = [](char c) { return static_cast<unsigned char>(c) <= ' '; };
    while (!line.isEmpty() && isTrimmed(line.front()))
        line = line.sliced(1);
    while (!line.isEmpty() && isTrimmed(line.back()))
        line.chop(1);
    return line;
}

void Convert(const QString& piece, const TFormatSettings& settings, float& cell) {
    cell = StrToSingle(piece, settings);
}

void Convert(const QString& piece, const TFormatSettings&, std::int32_t& cell) {
    cell = StrToInt(piece);
}

// A number in the form that nearly all have, up to a blank or the end: its end, or null for any other form.
template<class Cell>
const char* TakePlainNumber(const char* first, const char* last, Cell& cell) {
    const char* const digits = *first == '-' ? first + 1 : first;
    if (digits == last || !((*digits >= '0' && *digits <= '9') || *digits == '.')) // not "inf", "nan"
        return nullptr;
    const auto [end, error] = std::from_chars(first, last, cell);
    const bool isNumber = error == std::errc() && (end == last || *end == ' ');
    return isNumber ? end : nullptr;
}

/// Turns lines into cells. The plain number is a shortcut: what it does not take goes to the conversions of the
/// library, which define what a number is.
template<class Cell>
class TRowParser {
public:
    explicit TRowParser(const TFormatSettings& settings) : FSettings(settings) {}

    /// Appends the first `wanted` cells of a row and gives the number of pieces that stand there.
    std::int64_t Parse(QByteArrayView line, std::int64_t wanted, std::vector<Cell>& cells) {
        line = Trimmed(line);
        const char* const pieces = line.data();
        const char* const plain = PlainText(line);
        const char* const last = plain + line.size();
        std::int64_t count = 0;
        for (const char* at = plain; at != last;) {
            Cell cell = 0;
            const char* end = TakePlainNumber(at, last, cell);
            if (!end) {
                end = std::find(at, last, ' ');
                Convert(DecodeUtf8({pieces + (at - plain), end - at}), FSettings, cell);
            }
            if (count++ < wanted)
                cells.push_back(cell);
            at = end == last ? end : end + 1;
        }
        return count;
    }

private:
    // The line with a decimal point for the decimal separator. Point and comma change places, so that what was no
    // number before is none now; a line with any other separator has no plain numbers with a fraction.
    const char* PlainText(QByteArrayView line) {
        if (FSettings.DecimalSeparator == u'.')
            return line.data();
        const bool isComma = FSettings.DecimalSeparator == u',';
        FPlain.resize(static_cast<std::size_t>(line.size()));
        std::transform(line.begin(), line.end(), FPlain.begin(), [isComma](char c) {
            return c == '.' ? ',' : c == ',' && isComma ? '.' : c;
        });
        return FPlain.data();
    }

    const TFormatSettings FSettings;
    std::string FPlain;
};

// Every cell has a digit and a blank or line end behind it; the last one may lack that.
bool HasRoomFor(std::int64_t cells, const TStreamReader& reader) {
    return cells <= (reader.BytesLeft() + 1) / 2;
}

template<class Cell>
std::vector<Cell> ReadRows(TStreamReader& reader, std::int32_t columns, std::int32_t rows,
                           const TFormatSettings& settings) {
    std::vector<Cell> cells;
    const std::int64_t wanted = static_cast<std::int64_t>(columns) * rows;
    if (HasRoomFor(wanted, reader))
        cells.reserve(static_cast<std::size_t>(wanted));
    TRowParser<Cell> parser(settings);
    for (std::int32_t row = 0; row < rows; ++row) {
        const std::int64_t count = parser.Parse(reader.ReadLineUtf8(), columns, cells);
        if (count != columns)
            throw Exception(Format(u"Row %d contains %d values, %d were expected", {row, count, columns}));
        if (columns == 0)
            throw EArgumentException(QStringLiteral("Col index is out of range"));
    }
    return cells;
}

// Writing

constexpr qsizetype LongestCell = 24; // "-0.0000123456789" with a separator of several bytes and the blank, and room

char* PutCell(char* at, std::int32_t cell, QByteArrayView) {
    return std::to_chars(at, at + LongestCell, cell).ptr;
}

char* PutText(char* at, QByteArrayView text) {
    return std::copy(text.begin(), text.end(), at);
}

char* PutDecimalSeparator(char* first, char* end, QByteArrayView separator) {
    char* const point = std::find(first, end, '.');
    if (point == end)
        return end;
    std::memmove(point + separator.size(), point + 1, static_cast<std::size_t>(end - point - 1));
    PutText(point, separator);
    return end + separator.size() - 1;
}

// "1.5e+20" becomes "1.5E20", "1e-06" becomes "1E-6".
char* ShortenExponent(char* first, char* end) {
    char* at = std::find(first, end, 'e');
    *at++ = 'E';
    char* digits = at + 1;
    while (*digits == '0')
        ++digits;
    if (*at == '-')
        ++at;
    return std::copy(digits, end, at);
}

char* PutCell(char* at, float cell, QByteArrayView separator) {
    if (!std::isfinite(cell))
        return PutText(at, std::isnan(cell) ? "NAN" : cell > 0 ? "INF" : "-INF");
    if (cell == 0) // a minus sign is lost, as in all numbers that are written
        return PutText(at, "0");
    const float magnitude = std::abs(cell);
    const bool isFixed = magnitude >= 1e-5F && magnitude < 1e15F;
    char* end = isFixed
                    ? std::to_chars(at, at + LongestCell, cell, std::chars_format::fixed).ptr
                    : ShortenExponent(at, std::to_chars(at, at + LongestCell, cell, std::chars_format::scientific).ptr);
    return separator == "." ? end : PutDecimalSeparator(at, end, separator);
}

template<class Cell>
void AppendRow(QByteArray& text, std::span<const Cell> cells, const TFormatSettings& settings) {
    const QByteArray separator = QString(settings.DecimalSeparator).toUtf8();
    const qsizetype start = text.size();
    text.resize(start + static_cast<qsizetype>(cells.size()) * LongestCell);
    char* const first = text.data() + start;
    char* at = first;
    for (const Cell cell : cells) {
        if (at != first)
            *at++ = ' ';
        at = PutCell(at, cell, separator);
    }
    text.truncate(at - text.data());
}

} // namespace

template<class Cell>
std::vector<Cell> ReadGridRows(TStreamReader& reader, std::int32_t columns, std::int32_t rows,
                               const TFormatSettings& settings) {
    try {
        return WithinMemory(reader.GetName(), [&] { return ReadRows<Cell>(reader, columns, rows, settings); });
    } catch (const EFileException&) { // names the file
        throw;
    } catch (Exception& failure) {
        failure.SetPlace(reader.GetPlace());
        throw;
    }
}

template std::vector<float> ReadGridRows(TStreamReader&, std::int32_t, std::int32_t, const TFormatSettings&);
template std::vector<std::int32_t> ReadGridRows(TStreamReader&, std::int32_t, std::int32_t, const TFormatSettings&);

void AppendGridRow(QByteArray& text, std::span<const float> cells, const TFormatSettings& settings) {
    AppendRow(text, cells, settings);
}

void AppendGridRow(QByteArray& text, std::span<const std::int32_t> cells, const TFormatSettings& settings) {
    AppendRow(text, cells, settings);
}

} // namespace lmx
