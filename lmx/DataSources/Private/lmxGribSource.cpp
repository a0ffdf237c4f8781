#include <lmx/DataSources/Private/lmxBandSource.h>

#include <lmx/DataSources/Private/lmxBandArrays.h>
#include <lmx/DataSources/Private/lmxGdalSession.h>
#include <lmx/DataSources/Private/lmxGdalTypes.h>
#include <lmx/DataSources/Private/lmxReaderThreadSource.h>
#include <lmx/DataSources/lmxClimateExceptions.h>
#include <lmx/Runtime/lmxFormat.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Runtime/lmxText.h>

#include <gdal_priv.h>

#include <algorithm>
#include <map>
#include <tuple>
#include <utility>

namespace lmx {

namespace {

// What one band is.
struct TField {
    QString Element;   // "TMP"
    QString LevelKind; // "ISBL"
    QString Units;
    QString Comment;
    double Level = 0;
    double Time = 0;            // seconds since 1970
    std::size_t LevelPlace = 0; // on the axes of its group
    std::size_t TimePlace = 0;
    std::size_t Grid = 0;
    int Band = 0;
};

// The values of an axis in the order in which fields bring them.
class TAxisValues {
public:
    std::size_t PlaceOf(double value) {
        const auto known = FPlaces.try_emplace(value, FValues.size());
        if (known.second)
            FValues.push_back(value);
        return known.first->second;
    }
    const std::vector<double>& Get() const { return FValues; }

private:
    std::vector<double> FValues;
    std::map<double, std::size_t> FPlaces; // a file may hold years of hours
};

// Bands of one array: fields that differ in time and level only.
struct TFieldGroup {
    std::vector<TField> Fields;
    TAxisValues Times;
    TAxisValues Levels;
};

double NumberOf(const QString& text) {
    double number = 0;
    const QString first = Split(text.simplified(), u' ').value(0);
    return TryStrToFloat(first, number, TFormatSettings::Invariant()) ? number : 0;
}

TField FieldOf(GDALRasterBand& band) {
    const auto item = [&](const char* name) { return QString::fromUtf8(band.GetMetadataItem(name)).left(500); };
    TField field;
    field.Element = item("GRIB_ELEMENT");
    const QString level = item("GRIB_SHORT_NAME");
    field.LevelKind = level.section(u'-', -1);
    field.Level = NumberOf(level.section(u'-', 0, 0));
    field.Units = item("GRIB_UNIT");
    if (field.Units.startsWith(u'[') && field.Units.endsWith(u']'))
        field.Units = field.Units.mid(1, field.Units.size() - 2);
    field.Comment = item("GRIB_COMMENT").section(QStringLiteral(" ["), 0, 0);
    field.Time = NumberOf(item("GRIB_VALID_TIME"));
    return field;
}

// What the level is counted in. The ground, the sea and the whole column need no number.
bool HasLevels(const QString& kind) {
    static const QStringList without{QStringLiteral("SFC"), QStringLiteral("MSL"), QStringLiteral("EATM"),
                                     QStringLiteral("NTAT"), QStringLiteral("")};
    return !without.contains(kind);
}

TClimateAttributes LevelAttributes(const QString& kind, bool isSecondEdition) {
    TClimateAttributes attributes;
    attributes.Set(QStringLiteral("axis"), QStringLiteral("Z"));
    if (kind == QStringLiteral("ISBL"))
        attributes.Set(QStringLiteral("units"), isSecondEdition ? QStringLiteral("Pa") : QStringLiteral("hPa"));
    else if (kind == QStringLiteral("HTGL") || kind == QStringLiteral("GPML"))
        attributes.Set(QStringLiteral("units"), QStringLiteral("m"));
    return attributes;
}

constexpr std::size_t MostPlaces = 10'000'000; // of times and levels, each with a field or without

class TGribSource final : public IClimateSource {
public:
    TGribSource(const TGdalName& name, const TGribFields& fields, const QString& fileName)
        : FFileName(fileName),
          FArrays(fileName) {
        const TQuietGdal quiet;
        FDataset = OpenBands(name, fileName, QStringLiteral("is damaged or not understood"));
        if (std::size_t(FDataset->GetRasterCount()) != fields.GridOfField.size() && fields.Grids.size() > 1)
            throw EClimateFile(fileName, Format(u"tells of %d fields, of which %d can be read; split it by its grids",
                                                {qint64(fields.GridOfField.size()), FDataset->GetRasterCount()}));
        AddGroups(fields);
    }

    const std::vector<TSourceArray>& GetArrays() const override { return FArrays.GetInfos(); }
    bool IsNetCdf() const override { return false; }
    TClimateAttributes ReadFileAttributes() override { return {}; }
    TSourceAttributes ReadAttributes(std::size_t array) override { return {FArrays.GetAttributes(array), false}; }
    TRawSlice Read(std::size_t array, const TSourceWindow& window) override {
        return FArrays.Read(*FDataset, array, window);
    }
    TRawSlice ReadMask(std::size_t array, const TSourceWindow& window) override {
        return FArrays.ReadMask(*FDataset, array, window);
    }

private:
    struct TCoordinate {
        QString Name;
        TSourceDimension Dimension;
        std::vector<double> Values;
    };

    // Fields of the same time and level, such as members of an ensemble, become another array.
    void AddGroups(const TGribFields& fields) {
        using TKey = std::tuple<QString, QString, std::size_t, int>;
        std::map<std::tuple<QString, QString, std::size_t, double, double>, int> met;
        std::map<TKey, std::size_t> numbers;
        std::vector<TFieldGroup> groups;
        for (int band = 1; band <= FDataset->GetRasterCount(); ++band) {
            TField field = FieldOf(*FDataset->GetRasterBand(band));
            field.Band = band;
            field.Grid = fields.Grids.size() == 1 ? 0 : fields.GridOfField[std::size_t(band) - 1];
            const int copy = met[{field.Element, field.LevelKind, field.Grid, field.Time, field.Level}]++;
            const TKey key(field.Element, field.LevelKind, field.Grid, copy);
            const auto known = numbers.try_emplace(key, groups.size());
            if (known.second)
                groups.emplace_back();
            TFieldGroup& group = groups[known.first->second];
            field.TimePlace = group.Times.PlaceOf(field.Time);
            field.LevelPlace = group.Levels.PlaceOf(field.Level);
            group.Fields.push_back(field);
        }
        for (const TFieldGroup& group : groups)
            AddGroup(group, fields.Grids[group.Fields[0].Grid]);
    }

    QString FreePath(const QString& name) const {
        QString path = u'/' + name;
        for (int i = 2; FArrays.Has(path); ++i)
            path = Format(u"/%s (%d)", {name, i});
        return path;
    }

    // A coordinate of one group; groups that have the same one share it.
    TSourceDimension Coordinate(const QString& name, const std::vector<double>& values,
                                const TClimateAttributes& attributes) {
        for (const TCoordinate& known : FCoordinates)
            if (known.Name == name && known.Values == values)
                return known.Dimension;
        TSourceDimension dimension{FreePath(name), values.size()};
        FArrays.AddValues(dimension.Path, {dimension}, values, attributes);
        FCoordinates.push_back({name, dimension, values});
        return dimension;
    }

    static TClimateAttributes Units(const QString& units, const QString& standardName) {
        TClimateAttributes attributes;
        attributes.Set(QStringLiteral("units"), units);
        attributes.Set(QStringLiteral("standard_name"), standardName);
        return attributes;
    }

    void AddGroup(const TFieldGroup& group, const TGribGrid& grid) {
        const TField& first = group.Fields[0];
        TSourceArray info;
        TClimateAttributes attributes;
        DescribeBand(*FDataset, first.Band, 0, info, attributes);
        TClimateAttributes time = Units(QStringLiteral("seconds since 1970-01-01"), QStringLiteral("time"));
        time.Set(QStringLiteral("calendar"), QStringLiteral("proleptic_gregorian"));
        info.Dimensions.push_back(Coordinate(QStringLiteral("time"), group.Times.Get(), time));
        const bool hasLevels = HasLevels(first.LevelKind) || group.Levels.Get().size() > 1;
        if (hasLevels)
            info.Dimensions.push_back(Coordinate(first.LevelKind, group.Levels.Get(),
                                                 LevelAttributes(first.LevelKind, IsSecondEdition(first.Band))));
        info.Path = FreePath(hasLevels ? first.Element + u'_' + first.LevelKind : first.Element);
        AddPlace(grid, first.Band, info);
        SetNames(first, group, attributes);
        info.BlockSize.insert(info.BlockSize.begin(), hasLevels ? 2 : 1, 1);
        const bool isSparse = group.Times.Get().size() > MostPlaces / group.Levels.Get().size();
        if (isSparse && info.Refusal.isEmpty())
            info.Refusal = Refusal(info, QStringLiteral("has so many times and levels that most of its fields are "
                                                        "missing. Split it first, for example: grib_copy in "
                                                        "\"out_[dataDate].grib\""));
        FArrays.AddBands(std::move(info), isSparse ? std::vector<int>() : BandsOf(group), attributes);
    }

    bool IsSecondEdition(int band) const {
        return FDataset->GetRasterBand(band)->GetMetadataItem("GRIB_DISCIPLINE") != nullptr;
    }

    static QString Refusal(const TSourceArray& info, const QString& reason) {
        return Format(u"Variable \"%s\" %s", {info.Path.mid(1), reason});
    }

    void AddPlace(const TGribGrid& grid, int band, TSourceArray& info) {
        GDALRasterBand& source = *FDataset->GetRasterBand(band);
        const auto columns = std::size_t(std::max(source.GetXSize(), 0));
        const auto rows = std::size_t(std::max(source.GetYSize(), 0));
        if (!grid.Refusal.isEmpty())
            info.Refusal = Refusal(info, grid.Refusal);
        else if (grid.Longitudes.size() != columns || grid.Latitudes.size() != rows)
            info.Refusal = Refusal(info, QStringLiteral("lies on a grid of another size than its cells"));
        if (!info.Refusal.isEmpty()) {
            info.Dimensions.push_back({QStringLiteral("/row"), rows});
            info.Dimensions.push_back({QStringLiteral("/column"), columns});
            return;
        }
        info.Dimensions.push_back(Coordinate(QStringLiteral("lat"), grid.Latitudes,
                                             Units(QStringLiteral("degrees_north"), QStringLiteral("latitude"))));
        info.Dimensions.push_back(Coordinate(QStringLiteral("lon"), grid.Longitudes,
                                             Units(QStringLiteral("degrees_east"), QStringLiteral("longitude"))));
    }

    static void SetNames(const TField& field, const TFieldGroup& group, TClimateAttributes& attributes) {
        attributes.Set(QStringLiteral("units"), field.Units);
        attributes.Set(QStringLiteral("long_name"), field.Comment);
        attributes.Set(QStringLiteral("GRIB_ELEMENT"), field.Element);
        attributes.Set(QStringLiteral("GRIB_LEVEL"),
                       FloatToStr(group.Levels.Get()[0], TFormatSettings::Invariant()) + u'-' + field.LevelKind);
    }

    static std::vector<int> BandsOf(const TFieldGroup& group) {
        const std::size_t levels = group.Levels.Get().size();
        std::vector<int> bands(group.Times.Get().size() * levels, 0);
        for (const TField& field : group.Fields)
            bands[field.TimePlace * levels + field.LevelPlace] = field.Band;
        return bands;
    }

    const QString FFileName;
    std::unique_ptr<GDALDataset, TCloseDataset> FDataset;
    TBandArrays FArrays;
    std::vector<TCoordinate> FCoordinates;
};

} // namespace

std::unique_ptr<IClimateSource> OpenGribSource(const TGdalName& name, const TGribFields& fields,
                                               const QString& fileName) {
    return MakeReaderThreadSource([&] { return std::make_unique<TGribSource>(name, fields, fileName); });
}

} // namespace lmx
