#pragma once

#include <lmx/DataSources/Private/lmxClimateFileKind.h>
#include <lmx/DataSources/Private/lmxClimateSource.h>
#include <lmx/DataSources/Private/lmxGdalTypes.h>
#include <lmx/Runtime/lmxGeometry.h>

#include <QString>

#include <functional>
#include <memory>
#include <vector>

class GDALDataset;

namespace lmx {

/// Arrays made of the bands of a dataset, and of coordinates that stand in no band.
class TBandArrays {
public:
    explicit TBandArrays(const QString& fileName) : FFileName(fileName) {}

    /// An array of numbers that are known; no values: a scalar without a number, such as a grid mapping.
    void AddValues(const QString& path, const std::vector<TSourceDimension>& dimensions, std::vector<double> values,
                   const TClimateAttributes& attributes);

    /// An array whose last two dimensions are the rows and columns of its bands.
    /// @param bands numbers from 1 for each place of the other dimensions in turn; 0 where there is none
    void AddBands(TSourceArray info, std::vector<int> bands, const TClimateAttributes& attributes);

    const std::vector<TSourceArray>& GetInfos() const { return FInfos; }
    bool Has(const QString& path) const;
    const TClimateAttributes& GetAttributes(std::size_t array) const { return FContents.at(array).Attributes; }
    /// @throws EClimateFile
    TRawSlice Read(GDALDataset& dataset, std::size_t array, const TSourceWindow& window) const;
    /// As IClimateSource::ReadMask.
    TRawSlice ReadMask(GDALDataset& dataset, std::size_t array, const TSourceWindow& window) const;

private:
    struct TContent {
        TClimateAttributes Attributes;
        std::vector<double> Values;
        std::vector<int> Bands;
    };

    /// Reads what a band, from 1, says of a window; false if it is damaged there.
    using TReadBand = std::function<bool(int band, const TRect& window, std::byte* cells)>;

    TRawSlice ReadValues(const TContent& content, const TSourceWindow& window) const;
    TRawSlice ReadBands(std::size_t array, const TSourceWindow& window, TClimateCellType type,
                        const TReadBand& readBand) const;
    void ReadBand(const TSourceArray& info, int band, const TSourceWindow& window, std::byte* cells,
                  const TReadBand& readBand) const;

    QString FFileName;
    std::vector<TSourceArray> FInfos;
    std::vector<TContent> FContents;
};

/// Opens a file of bands by its one driver, for one thread at a time.
/// @throws EClimateFile with `problem`, and what GDAL says of it, if it cannot be opened; one on another computer with
/// a problem of its own, for there it may not be the file's fault.
std::unique_ptr<GDALDataset, TCloseDataset> OpenBands(const TGdalName& name, const QString& fileName,
                                                      const QString& problem);

/// Type, blocks, mask and the attributes that every band may have: units, scale, offset and no data.
/// @param alpha AlphaBandOf the dataset
void DescribeBand(GDALDataset& dataset, int band, int alpha, TSourceArray& info, TClimateAttributes& attributes);

} // namespace lmx
