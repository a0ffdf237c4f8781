#include <lmx/DataSources/lmxGeoTiffTiles.h>

#include <lmx/DataSources/Private/lmxBandArrays.h>
#include <lmx/DataSources/Private/lmxBandMask.h>
#include <lmx/DataSources/Private/lmxClimateCells.h>
#include <lmx/DataSources/Private/lmxClimateFileKind.h>
#include <lmx/DataSources/Private/lmxClimateFileOpening.h>
#include <lmx/DataSources/Private/lmxFilesAtEnd.h>
#include <lmx/DataSources/Private/lmxGdalSession.h>
#include <lmx/DataSources/Private/lmxGdalTypes.h>
#include <lmx/DataSources/Private/lmxTiffPlace.h>
#include <lmx/DataSources/lmxClimateDataset.h>
#include <lmx/Runtime/lmxFormat.h>

#include <gdal_priv.h>

#include <algorithm>
#include <cmath>
#include <mutex>
#include <optional>
#include <utility>

namespace lmx {

namespace {

using TDatasetPtr = std::unique_ptr<GDALDataset, TCloseDataset>;

constexpr std::size_t MostIdleFiles = 4;

// Rows of a part upside down, or columns back to front.
void TurnRows(std::span<float> cells, std::size_t width) {
    const std::size_t rows = cells.size() / width;
    for (std::size_t row = 0; row < rows / 2; ++row)
        std::swap_ranges(cells.data() + row * width, cells.data() + (row + 1) * width,
                         cells.data() + (rows - 1 - row) * width);
}

void TurnColumns(std::span<float> cells, std::size_t width) {
    for (std::size_t row = 0; row < cells.size(); row += width)
        std::reverse(cells.data() + row, cells.data() + row + width);
}

/// The cells of a stored level that a rectangle of a level stands for. A level that is made takes the one in the middle
/// of each; GDAL asks now and then whether to go on.
class TWindow {
public:
    TWindow(const TRect& rect, const TTileLevel& level, const TTileLevel& stored,
            const std::function<bool()>& shouldStop) {
        INIT_RASTERIO_EXTRA_ARG(FExtra);
        const double columns = static_cast<double>(stored.Width) / level.Width;
        const double rows = static_cast<double>(stored.Height) / level.Height;
        FExtra.bFloatingPointWindowValidity = TRUE;
        FExtra.dfXOff = rect.Left * columns;
        FExtra.dfYOff = rect.Top * rows;
        FExtra.dfXSize = rect.GetWidth() * columns;
        FExtra.dfYSize = rect.GetHeight() * rows;
        FExtra.pfnProgress = &GoesOn;
        FExtra.pProgressData = const_cast<std::function<bool()>*>(&shouldStop);
        FPlace = {static_cast<int>(FExtra.dfXOff), static_cast<int>(FExtra.dfYOff),
                  std::min(static_cast<int>(std::ceil(FExtra.dfXOff + FExtra.dfXSize)), stored.Width),
                  std::min(static_cast<int>(std::ceil(FExtra.dfYOff + FExtra.dfYSize)), stored.Height)};
    }

    const TRect& GetPlace() const { return FPlace; } ///< of the stored level
    GDALRasterIOExtraArg* GetExtra() { return &FExtra; }

private:
    static int CPL_STDCALL GoesOn(double, const char*, void* shouldStop) {
        return (*static_cast<const std::function<bool()>*>(shouldStop))() ? FALSE : TRUE;
    }

    TRect FPlace;
    GDALRasterIOExtraArg FExtra;
};

} // namespace

/// The file, opened as often as it is read at a time: a dataset is for one thread at a time.
class TGeoTiffTiles::TFiles {
public:
    TFiles(const QString& fileName, int band)
        : FFileName(fileName),
          FName(GdalNameOfTiff(fileName, TClimateDataset::GetAllowedHosts())),
          FBand(band) {
        const TQuietGdal quiet;
        TDatasetPtr dataset = Open();
        if (band < 1 || band > dataset->GetRasterCount())
            throw EClimateFile(fileName, Format(u"has no band %d", {band}));
        Describe(*dataset);
        FIdle.push_back(std::move(dataset));
    }

    TMapArea Area;
    bool IsGeographic = true;
    std::vector<TTileLevel> Levels; // those that are made come after the stored ones
    std::vector<int> Overviews;     // of each stored level but the first
    TUnitConversion Conversion;
    QString Note;

    int StoredLevels() const { return static_cast<int>(Overviews.size()) + 1; }

    /// None of them is open from then on.
    void Close() {
        const std::lock_guard guard(FGuard);
        FIdle.clear();
    }

    void Read(int level, TRect rect, std::span<float> cells, const std::function<bool()>& shouldStop) {
        const TTileLevel& size = Levels[static_cast<std::size_t>(level)];
        if (FIsFromEast)
            rect = TRect(size.Width - rect.Right, rect.Top, size.Width - rect.Left, rect.Bottom);
        if (FIsFromSouth)
            rect = TRect(rect.Left, size.Height - rect.Bottom, rect.Right, size.Height - rect.Top);
        TRawSlice slice(FType, cells.size());
        std::vector<std::uint8_t> mask(FHasMask ? cells.size() : 0);
        TDatasetPtr dataset = Take();
        {
            const TQuietGdal quiet;
            if (!ReadRaw(*dataset, level, rect, slice, mask, shouldStop) && !shouldStop())
                throw EClimateFile(FFileName, quiet.Explain(QStringLiteral("is damaged here")));
        }
        Give(std::move(dataset));
        if (shouldStop())
            return;
        FCells->Unpack(slice.GetCells(), cells, Conversion);
        if (FHasMask)
            HideMissing(mask, cells);
        const auto width = static_cast<std::size_t>(rect.GetWidth());
        if (FIsFromSouth)
            TurnRows(cells, width);
        if (FIsFromEast)
            TurnColumns(cells, width);
    }

private:
    /// A rectangle of the file's cells, and of their mask if there is one.
    bool ReadRaw(GDALDataset& dataset, int level, const TRect& rect, TRawSlice& cells, std::span<std::uint8_t> mask,
                 const std::function<bool()>& shouldStop) const {
        const int stored = std::min(level, StoredLevels() - 1);
        const int overview = stored > 0 ? Overviews[static_cast<std::size_t>(stored - 1)] : -1;
        GDALRasterBand* const full = dataset.GetRasterBand(FBand);
        GDALRasterBand* const band = stored > 0 ? full->GetOverview(overview) : full;
        TWindow window(rect, Levels[static_cast<std::size_t>(level)], Levels[static_cast<std::size_t>(stored)],
                       shouldStop);
        const TRect& place = window.GetPlace();
        if (!band || band->RasterIO(GF_Read, place.Left, place.Top, place.GetWidth(), place.GetHeight(),
                                    cells.GetBytes(), rect.GetWidth(), rect.GetHeight(), band->GetRasterDataType(), 0,
                                    0, window.GetExtra()) != CE_None)
            return false;
        if (mask.empty())
            return true;
        GDALRasterBand* const found =
            stored > 0 ? MaskOfOverview(dataset, FBand, overview, FAlpha) : MaskOf(dataset, FBand, FAlpha);
        return found && ReadMaskCells(*found, place, rect.GetWidth(), rect.GetHeight(), mask.data(),
                                      window.GetExtra()) == CE_None;
    }

    TDatasetPtr Open() const { return OpenBands(FName, FFileName, QStringLiteral("is a damaged TIFF")); }

    TDatasetPtr Take() {
        {
            const std::lock_guard guard(FGuard);
            if (!FIdle.empty()) {
                TDatasetPtr dataset = std::move(FIdle.back());
                FIdle.pop_back();
                return dataset;
            }
        }
        return Open();
    }

    void Give(TDatasetPtr dataset) {
        const std::lock_guard guard(FGuard);
        if (FIdle.size() < MostIdleFiles)
            FIdle.push_back(std::move(dataset));
    }

    void Describe(GDALDataset& dataset) {
        const QString name = Format(u"Band %d", {FBand});
        const TTiffPlace place = TiffPlaceOf(dataset);
        if (place.Refusal)
            throw EClimateFile(FFileName, RefusalText(*place.Refusal, name));
        Note = place.Note;
        IsGeographic = place.IsGeographic;
        const double east = place.Transform[0] + place.Transform[1] * dataset.GetRasterXSize();
        const double south = place.Transform[3] + place.Transform[5] * dataset.GetRasterYSize();
        FIsFromEast = place.Transform[1] < 0;
        FIsFromSouth = place.Transform[5] > 0;
        Area = {std::min(place.Transform[0], east), std::max(place.Transform[3], south),
                std::max(place.Transform[0], east), std::min(place.Transform[3], south)};
        if (!(Area.Left < Area.Right && Area.Bottom < Area.Top))
            throw EClimateFile(FFileName, name + QStringLiteral(": covers no area"));
        DescribeCells(dataset, name);
        DescribeLevels(dataset);
    }

    void DescribeCells(GDALDataset& dataset, const QString& name) {
        TSourceArray info;
        TClimateAttributes attributes;
        info.Path = u'/' + name;
        FAlpha = AlphaBandOf(dataset);
        DescribeBand(dataset, FBand, FAlpha, info, attributes);
        if (!info.IsNumeric)
            throw EClimateFile(FFileName, name + QStringLiteral(": holds no real numbers"));
        if (FBand == FAlpha)
            throw EClimateFile(FFileName, name + QStringLiteral(": says which cells of the others hold data"));
        if (info.HasHugeBlocks() || (info.HasMask && HasHugeBlocks(*MaskOf(dataset, FBand, FAlpha))))
            throw EClimateFile(FFileName, name + QStringLiteral(": ") + HugeBlocksText());
        FHasMask = info.HasMask;
        FType = info.Type;
        FCells.emplace(TClimateCellTraits{info.Type, false, false}, attributes);
        const char* const title = dataset.GetRasterBand(FBand)->GetDescription();
        Conversion =
            MakeUnitConversion(attributes.Text(QStringLiteral("units")), {name, {}, QString::fromUtf8(title), {}});
    }

    // An overview that does not say which of its cells are missing would show them.
    bool IsUsable(GDALDataset& dataset, int number) const {
        GDALRasterBand& band = *dataset.GetRasterBand(FBand);
        GDALRasterBand* const overview = band.GetOverview(number);
        if (!overview || overview->GetXSize() <= 0 || overview->GetYSize() <= 0 ||
            overview->GetRasterDataType() != band.GetRasterDataType())
            return false;
        GDALRasterBand* const mask = FHasMask ? MaskOfOverview(dataset, FBand, number, FAlpha) : nullptr;
        return !FHasMask || (mask && !HasHugeBlocks(*mask));
    }

    void DescribeLevels(GDALDataset& dataset) {
        GDALRasterBand& band = *dataset.GetRasterBand(FBand);
        Levels.push_back({band.GetXSize(), band.GetYSize()});
        const int count = std::clamp(band.GetOverviewCount(), 0, 64);
        std::vector<std::pair<TTileLevel, int>> overviews;
        for (int i = 0; i < count; ++i)
            if (IsUsable(dataset, i))
                overviews.push_back({{band.GetOverview(i)->GetXSize(), band.GetOverview(i)->GetYSize()}, i});
        std::stable_sort(overviews.begin(), overviews.end(),
                         [](const auto& a, const auto& b) { return a.first.Width > b.first.Width; });
        for (const auto& [size, number] : overviews)
            if (size.Width < Levels.back().Width && size.Height <= Levels.back().Height) {
                Levels.push_back(size);
                Overviews.push_back(number);
            }
        for (TTileLevel last = Levels.back(); std::int64_t{last.Width} * last.Height > MostSmallestCells;) {
            last = {last.Width / 2 + last.Width % 2, last.Height / 2 + last.Height % 2};
            Levels.push_back(last);
        }
    }

    const QString FFileName;
    const TGdalName FName;
    const int FBand;
    TClimateCellType FType = TClimateCellType::ctFloat;
    std::optional<TClimateCells> FCells;
    int FAlpha = 0;
    bool FHasMask = false;
    bool FIsFromEast = false;
    bool FIsFromSouth = false;
    std::mutex FGuard;
    std::vector<TDatasetPtr> FIdle;
};

TGeoTiffTiles::TGeoTiffTiles(const QString& fileName, int band) : FFileName(fileName), FBand(band) {
    const TFileUse use(fileName);
    FFiles = std::make_unique<TFiles>(fileName, band);
    FOpenFile = std::make_unique<TOpenFile>([files = FFiles.get()] { files->Close(); });
    FLevels = FFiles->Levels;
    FStoredLevels = FFiles->StoredLevels();
    FConversion = FFiles->Conversion;
    FNote = FFiles->Note;
    const TMapArea& area = FFiles->Area;
    FArea = {area, !FFiles->IsGeographic ? TNZMGWorldSystemFactory::GetObject()
                   : area.Left >= -180.001L && area.Right <= 180.001L
                       ? TLatLonWorldSystemFactory::GetObject()
                       : TLatLonAntimeridianWorldSystemFactory::GetObject()};
}

TGeoTiffTiles::~TGeoTiffTiles() = default;

void TGeoTiffTiles::ReadCells(int level, const TRect& rect, std::span<float> cells,
                              const std::function<bool()>& shouldStop) const {
    if (shouldStop())
        return;
    const TFileUse use(FFileName);
    FFiles->Read(level, rect, cells, shouldStop);
}

} // namespace lmx
