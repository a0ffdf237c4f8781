#pragma once

#include <lmx/DataSources/lmxClimateExceptions.h>
#include <lmx/DataSources/lmxClimateUnits.h>
#include <lmx/DataSources/lmxDataSourcesExport.h>
#include <lmx/DataSources/lmxTileSource.h>

#include <QString>

#include <memory>

namespace lmx {

/// A band of a GeoTIFF or a cloud-optimised GeoTIFF, by its tiles and overviews. Each thread that reads at a time has
/// the file open for itself. Without overviews the whole of a large file is read to show all of it: make them, for
/// example by gdaladdo.
class LMX_DATASOURCES_EXPORT TGeoTiffTiles final : public ITileSource {
public:
    /// @param fileName a path of this computer, or a file on a host of TClimateDataset::SetAllowedHosts
    /// @param band from 1
    /// @throws EClimateFile if it is missing, no TIFF, damaged, has no such band, holds no real numbers, lies on a grid
    /// that is not shown, or is stored in blocks of more than 256 MB.
    explicit TGeoTiffTiles(const QString& fileName, int band = 1);
    ~TGeoTiffTiles() override;

    QString GetFileName() const override { return FFileName; }
    TWorldMapArea GetArea() const override { return FArea; }
    const std::vector<TTileLevel>& GetLevels() const override { return FLevels; }
    void ReadCells(int level, const TRect& rect, std::span<float> cells,
                   const std::function<bool()>& shouldStop) const override;

    int GetBand() const { return FBand; }
    /// How the numbers of the file become those of the map, by the units that the file names.
    const TUnitConversion& GetConversion() const { return FConversion; }
    const QString& GetNote() const { return FNote; } ///< a whole sentence for the user, or empty

private:
    class TFiles;

    const QString FFileName;
    const int FBand;
    std::unique_ptr<TFiles> FFiles;
    TWorldMapArea FArea;
    std::vector<TTileLevel> FLevels;
    TUnitConversion FConversion;
    QString FNote;
};

} // namespace lmx
