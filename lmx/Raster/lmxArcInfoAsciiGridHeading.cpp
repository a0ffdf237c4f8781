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

double FloatOf(const QString& line, QStringView key, const TFormatSettings& settings) {
    const QString text = ValueOf(line, key);
    float single = 0;
    if (!TryStrToFloat(text, single, settings))
        RaiseInvalid(key);
    return StrToDouble(text, settings);
}

class TArcInfoAsciiGridHeading final : public IArcInfoAsciiGridHeading {
public:
    /// `nextLine` gives the lines in order, and is asked for one when the lines before it have been found right.
    template<class NextLine>
    TArcInfoAsciiGridHeading(NextLine nextLine, const TFormatSettings& settings)
        : FNCols(CountOf(nextLine(), Keys[lnNCols])),
          FNRows(CountOf(nextLine(), Keys[lnNRows])),
          FXCorner(FloatOf(nextLine(), Keys[lnXCorner], settings)),
          FYCorner(FloatOf(nextLine(), Keys[lnYCorner], settings)),
          FCellSize(FloatOf(nextLine(), Keys[lnCellSize], settings)),
          FNODATAValue(FloatOf(nextLine(), Keys[lnNoDataValue], settings)) {}

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

    QString ToString(const TFormatSettings& settings) const override {
        const std::array<QString, LineCount> values = {IntToStr(FNCols),
                                                       IntToStr(FNRows),
                                                       FloatToStr(FXCorner, settings),
                                                       FloatToStr(FYCorner, settings),
                                                       FloatToStr(FCellSize, settings),
                                                       FloatToStr(FNODATAValue, settings)};
        QString text;
        for (std::size_t line = 0; line < LineCount; ++line)
            text += Keys[line].toString().leftJustified(KeyWidth) + values[line] + LineBreak();
        return text;
    }

    void Save(TStreamWriter& writer, const TFormatSettings& settings) const override {
        writer.WriteLine(ToString(settings));
    }

private:
    std::int32_t FNCols;
    std::int32_t FNRows;
    double FXCorner;
    double FYCorner;
    double FCellSize;
    double FNODATAValue;
};

} // namespace

std::shared_ptr<IArcInfoAsciiGridHeading> TArcInfoAsciiGridHeadingFactory::GetObject(std::span<const QString> lines,
                                                                                     const TFormatSettings& settings) {
    if (lines.size() != LineCount)
        throw EArgumentException(QStringLiteral("Invalid number of heading lines"));
    auto line = lines.begin();
    return std::make_shared<TArcInfoAsciiGridHeading>([&line] { return *line++; }, settings);
}

std::shared_ptr<IArcInfoAsciiGridHeading> TArcInfoAsciiGridHeadingFactory::GetObject(TStreamReader& reader,
                                                                                     const TFormatSettings& settings) {
    try {
        return std::make_shared<TArcInfoAsciiGridHeading>([&reader] { return reader.ReadLine(); }, settings);
    } catch (EArgumentException& failure) {
        failure.SetPlace(reader.GetPlace());
        throw;
    }
}

std::shared_ptr<IArcInfoAsciiGridHeading> TArcInfoAsciiGridHeadingFactory::GetObject(QIODevice& stream,
                                                                                     const TFormatSettings& settings) {
    TStreamReader reader(stream);
    return GetObject(reader, settings);
}

std::shared_ptr<IArcInfoAsciiGridHeading> TArcInfoAsciiGridHeadingFactory::GetObject(const QString& fileName,
                                                                                     const TFormatSettings& settings) {
    return GetObject(*OpenForReading(fileName), settings);
}

std::shared_ptr<IArcInfoAsciiGridHeading> TArcInfoAsciiGridHeadingFactory::GetObject(const TMapArea& area,
                                                                                     std::int32_t ncols,
                                                                                     std::int32_t nrows,
                                                                                     double cellSize, double noData) {
    return std::make_shared<TArcInfoAsciiGridHeading>(area, ncols, nrows, cellSize, noData);
}

} // namespace lmx
