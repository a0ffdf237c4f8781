#include <lmx/Raster/lmxArcInfoAsciiGridHeading.h>

#include <lmx/Coordinates/wskMappingTypes.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Runtime/lmxText.h>
#include <lmx/Runtime/lmxTextStreams.h>

#include <QFile>

#include <array>

namespace lmx {

namespace {

enum TLine { lnNCols, lnNRows, lnXCorner, lnYCorner, lnCellSize, lnNoDataValue, LineCount };

constexpr std::array<QStringView, LineCount> Keys = {u"ncols",     u"nrows",    u"xllcorner",
                                                     u"yllcorner", u"cellsize", u"NODATA_value"};
constexpr qsizetype KeyWidth = 14;

// What stands behind a key.
QString ValueOf(const QString& line, QStringView key) {
    const QString trimmed = Trim(line);
    if (trimmed.size() < key.size() || !SameText(QStringView(trimmed).first(key.size()), key))
        throw EArgumentException(QStringLiteral("Line does not start with expected line ID"));
    const auto isWhiteSpace = [](QChar c) { return c == u' ' || (c >= u'\t' && c <= u'\r'); };
    qsizetype start = key.size();
    while (start < trimmed.size() && isWhiteSpace(trimmed[start]))
        ++start;
    if (start == trimmed.size())
        throw EArgumentException(QStringLiteral("No value found for \"") + key.toString() + u'"');
    return trimmed.sliced(start);
}

[[noreturn]] void RaiseInvalid(QStringView key) {
    throw EArgumentException(QStringLiteral("Value for \"") + key.toString() + QStringLiteral("\" is invalid"));
}

std::int32_t CountOf(const QString& line, QStringView key) {
    std::int32_t count = 0;
    if (!TryStrToInt(ValueOf(line, key), count) || count < 0)
        RaiseInvalid(key);
    return count;
}

double FloatOf(const QString& line, QStringView key) {
    const QString text = ValueOf(line, key);
    float single = 0;
    if (!TryStrToFloat(text, single))
        RaiseInvalid(key);
    return StrToDouble(text);
}

class TArcInfoAsciiGridHeading final : public IArcInfoAsciiGridHeading {
public:
    explicit TArcInfoAsciiGridHeading(std::span<const QString, LineCount> lines)
        : FNCols(CountOf(lines[lnNCols], Keys[lnNCols])),
          FNRows(CountOf(lines[lnNRows], Keys[lnNRows])),
          FXCorner(FloatOf(lines[lnXCorner], Keys[lnXCorner])),
          FYCorner(FloatOf(lines[lnYCorner], Keys[lnYCorner])),
          FCellSize(FloatOf(lines[lnCellSize], Keys[lnCellSize])),
          FNODATAValue(FloatOf(lines[lnNoDataValue], Keys[lnNoDataValue])) {}

    TArcInfoAsciiGridHeading(const TMapArea& area, std::int32_t ncols, std::int32_t nrows, double cellSize,
                             double noData)
        : FNCols(ncols),
          FNRows(nrows),
          FXCorner(static_cast<double>(area.Left)),
          FYCorner(static_cast<double>(area.Bottom)),
          FCellSize(cellSize),
          FNODATAValue(noData) {}

    std::int32_t GetNCols() const override { return FNCols; }
    std::int32_t GetNRows() const override { return FNRows; }
    double GetXCorner() const override { return FXCorner; }
    double GetYCorner() const override { return FYCorner; }
    double GetCellSize() const override { return FCellSize; }
    double GetNODATAValue() const override { return FNODATAValue; }

    QString ToString() const override {
        const std::array<QString, LineCount> values = {IntToStr(FNCols),      IntToStr(FNRows),
                                                       FloatToStr(FXCorner),  FloatToStr(FYCorner),
                                                       FloatToStr(FCellSize), FloatToStr(FNODATAValue)};
        QString text;
        for (std::size_t line = 0; line < LineCount; ++line)
            text += Keys[line].toString().leftJustified(KeyWidth) + values[line] + LineBreak();
        return text;
    }

    void Save(TStreamWriter& writer) const override { writer.WriteLine(ToString()); }

private:
    std::int32_t FNCols;
    std::int32_t FNRows;
    double FXCorner;
    double FYCorner;
    double FCellSize;
    double FNODATAValue;
};

} // namespace

std::shared_ptr<IArcInfoAsciiGridHeading> TArcInfoAsciiGridHeadingFactory::GetObject(std::span<const QString> lines) {
    if (lines.size() != LineCount)
        throw EArgumentException(QStringLiteral("Invalid number of heading lines"));
    return std::make_shared<TArcInfoAsciiGridHeading>(lines.first<LineCount>());
}

std::shared_ptr<IArcInfoAsciiGridHeading> TArcInfoAsciiGridHeadingFactory::GetObject(TStreamReader& reader) {
    std::array<QString, LineCount> lines;
    for (QString& line : lines)
        line = reader.ReadLine();
    return GetObject(std::span<const QString>(lines));
}

std::shared_ptr<IArcInfoAsciiGridHeading> TArcInfoAsciiGridHeadingFactory::GetObject(QIODevice& stream) {
    TStreamReader reader(stream);
    return GetObject(reader);
}

std::shared_ptr<IArcInfoAsciiGridHeading> TArcInfoAsciiGridHeadingFactory::GetObject(const QString& fileName) {
    return GetObject(*OpenForReading(fileName));
}

std::shared_ptr<IArcInfoAsciiGridHeading> TArcInfoAsciiGridHeadingFactory::GetObject(const TMapArea& area,
                                                                                     std::int32_t ncols,
                                                                                     std::int32_t nrows,
                                                                                     double cellSize, double noData) {
    return std::make_shared<TArcInfoAsciiGridHeading>(area, ncols, nrows, cellSize, noData);
}

} // namespace lmx
