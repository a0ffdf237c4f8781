#include <lmx/DataSources/Private/lmxBandSource.h>

#include <lmx/DataSources/Private/lmxBandArrays.h>
#include <lmx/DataSources/Private/lmxBandMask.h>
#include <lmx/DataSources/Private/lmxGdalSession.h>
#include <lmx/DataSources/Private/lmxGdalTypes.h>
#include <lmx/DataSources/Private/lmxTiffPlace.h>
#include <lmx/DataSources/lmxClimateAxis.h>
#include <lmx/DataSources/lmxClimateExceptions.h>
#include <lmx/Runtime/lmxFormat.h>

#include <gdal_priv.h>

#include <algorithm>
#include <array>
#include <mutex>
#include <optional>
#include <utility>

namespace lmx {

namespace {

TClimateAttributes Named(const QString& units, const QString& standardName) {
    TClimateAttributes attributes;
    attributes.Set(QStringLiteral("units"), units);
    attributes.Set(QStringLiteral("standard_name"), standardName);
    return attributes;
}

class TTiffSource final : public IClimateSource {
public:
    TTiffSource(const TGdalName& name, const QString& fileName) : FFileName(fileName), FArrays(fileName) {
        const TQuietGdal quiet;
        FDataset = OpenBands(name, fileName, QStringLiteral("is a damaged TIFF"));
        DescribePlace();
        DescribeBands();
    }

    const std::vector<TSourceArray>& GetArrays() const override { return FArrays.GetInfos(); }
    bool IsNetCdf() const override { return false; }
    TClimateAttributes ReadFileAttributes() override { return FFileAttributes; }
    TSourceAttributes ReadAttributes(std::size_t array) override { return {FArrays.GetAttributes(array), false}; }

    TRawSlice Read(std::size_t array, const TSourceWindow& window) override {
        const std::lock_guard lock(FMutex);
        return FArrays.Read(*FDataset, array, window);
    }
    TRawSlice ReadMask(std::size_t array, const TSourceWindow& window) override {
        const std::lock_guard lock(FMutex);
        return FArrays.ReadMask(*FDataset, array, window);
    }

private:
    void DescribePlace() {
        const TTiffPlace place = TiffPlaceOf(*FDataset);
        const int columns = FDataset->GetRasterXSize();
        const int rows = FDataset->GetRasterYSize();
        FRefusal = place.Refusal;
        if (FRefusal)
            return;
        if (std::max(columns, rows) > int(MostAxisValues))
            throw EClimateFile(FFileName, Format(u"has more than %d columns or rows", {qint64(MostAxisValues)}));
        FNote = place.Note;
        FIsGeographic = place.IsGeographic;
        AddAxis(0, place.Transform[0], place.Transform[1], columns);
        AddAxis(1, place.Transform[3], place.Transform[5], rows);
    }

    void AddAxis(int number, double edge, double step, int count) {
        std::vector<double> centres;
        for (int i = 0; i < count; ++i)
            centres.push_back(edge + step * (i + 0.5));
        const QString path = number == 0 ? (FIsGeographic ? QStringLiteral("/lon") : QStringLiteral("/x"))
                                         : (FIsGeographic ? QStringLiteral("/lat") : QStringLiteral("/y"));
        TClimateAttributes attributes =
            FIsGeographic ? (number == 0 ? Named(QStringLiteral("degrees_east"), QStringLiteral("longitude"))
                                         : Named(QStringLiteral("degrees_north"), QStringLiteral("latitude")))
                          : Named(QStringLiteral("m"), number == 0 ? QStringLiteral("projection_x_coordinate")
                                                                   : QStringLiteral("projection_y_coordinate"));
        FAxes[number] = {path, quint64(count)};
        if (count == 1) { // nothing else tells how wide it is
            attributes.Set(QStringLiteral("bounds"), path + QStringLiteral("_bounds"));
            FArrays.AddValues(path + QStringLiteral("_bounds"), {FAxes[number], {QStringLiteral("/bounds"), 2}},
                              {edge, edge + step}, {});
        }
        FArrays.AddValues(path, {FAxes[number]}, std::move(centres), attributes);
    }

    void DescribeBands() {
        const int count = FDataset->GetRasterCount();
        if (count > int(MostArrays))
            throw EClimateFile(FFileName, Format(u"holds more than %d bands", {qint64(MostArrays)}));
        if (!FIsGeographic && !FRefusal) {
            TClimateAttributes mapping;
            mapping.Set(QStringLiteral("grid_mapping_name"), QStringLiteral("new_zealand_map_grid"));
            FArrays.AddValues(QStringLiteral("/crs"), {}, {}, mapping);
        }
        if (FRefusal) {
            FAxes[0] = {QStringLiteral("/column"), quint64(FDataset->GetRasterXSize())};
            FAxes[1] = {QStringLiteral("/row"), quint64(FDataset->GetRasterYSize())};
        }
        const int alpha = AlphaBandOf(*FDataset);
        for (int band = 1; band <= count; ++band)
            if (band != alpha) // which holds no values
                AddBand(band, alpha);
    }

    void AddBand(int band, int alpha) {
        TSourceArray info;
        TClimateAttributes attributes;
        const QString name = Format(u"Band %d", {band});
        info.Path = u'/' + name;
        info.Dimensions = {FAxes[1], FAxes[0]};
        if (FRefusal)
            info.Refusal = RefusalText(*FRefusal, name);
        DescribeBand(*FDataset, band, alpha, info, attributes);
        if (const char* const text = FDataset->GetRasterBand(band)->GetDescription(); text && *text)
            attributes.Set(QStringLiteral("long_name"), QString::fromUtf8(text).left(500));
        if (!FNote.isEmpty())
            attributes.Set(QStringLiteral("note"), FNote);
        if (!FIsGeographic)
            attributes.Set(QStringLiteral("grid_mapping"), QStringLiteral("crs"));
        FArrays.AddBands(std::move(info), {band}, attributes);
    }

    const QString FFileName;
    std::unique_ptr<GDALDataset, TCloseDataset> FDataset;
    std::mutex FMutex; // a dataset is for one thread at a time
    TBandArrays FArrays;
    TClimateAttributes FFileAttributes;
    std::optional<TClimateRefusal> FRefusal;
    QString FNote;
    bool FIsGeographic = true;
    std::array<TSourceDimension, 2> FAxes; // columns, rows
};

} // namespace

std::unique_ptr<IClimateSource> OpenTiffSource(const TGdalName& name, const QString& fileName) {
    return std::make_unique<TTiffSource>(name, fileName);
}

} // namespace lmx
