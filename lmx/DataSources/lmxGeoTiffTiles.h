#pragma once

#include <lmx/DataSources/lmxClimateExceptions.h>
#include <lmx/DataSources/lmxClimateUnits.h>
#include <lmx/DataSources/lmxDataSourcesExport.h>
#include <lmx/DataSources/lmxTileSource.h>

#include <QString>

#include <cstdint>
#include <memory>

namespace lmx {

class TOpenFile;

/// A band of a GeoTIFF or a cloud-optimised GeoTIFF, by its tiles and overviews. Each thread that reads at a time has
/// the file open for itself.
///
/// Where the smallest form that the file has is larger than MostSmallestCells, there are levels behind it, each half as
/// wide and high, which are made while they are read: a cell is the one in the middle of those that it stands for. To
/// show all of a large file without overviews its cells must be read once; make overviews, for example by gdaladdo,
/// where that takes too long.
///
/// Cells are missing where their number is "no data", and where an internal mask or an alpha band says so, which then
/// every overview must do that is used. Tiles may outlive main: the end of the program waits for reads that have begun
/// and closes the file.
class LMX_DATASOURCES_EXPORT TGeoTiffTiles final : public ITileSource {
public:
    /// @param fileName a path of this computer, or a file on a host of TClimateDataset::SetAllowedHosts
    /// @param band from 1
    /// @throws EClimateFile if it is missing, no TIFF, damaged, has no such band, holds no real numbers, lies on a grid
    /// that is not shown, is the alpha band of others, or is stored in blocks of more than 256 MB; or once the program
    /// ends.
    explicit TGeoTiffTiles(const QString& fileName, int band = 1);
    ~TGeoTiffTiles() override;

    QString GetFileName() const override { return FFileName; }
    TWorldMapArea GetArea() const override { return FArea; }
    const std::vector<TTileLevel>& GetLevels() const override { return FLevels; }
    int GetStoredLevelCount() const override { return FStoredLevels; }
    /// @throws EClimateFile if the file is damaged there, or "...: is closed: the program ends".
    void ReadCells(int level, const TRect& rect, std::span<float> cells,
                   const std::function<bool()>& shouldStop) const override;

    static constexpr std::int64_t MostSmallestCells = 1 << 20; ///< of the last level
    int GetBand() const { return FBand; }
    /// How the numbers of the file become those of the map, by the units that the file names.
    const TUnitConversion& GetConversion() const { return FConversion; }
    const QString& GetNote() const { return FNote; } ///< a whole sentence for the user, or empty

private:
    class TFiles;

    const QString FFileName;
    const int FBand;
    std::unique_ptr<TFiles> FFiles;
    std::unique_ptr<TOpenFile> FOpenFile; // goes before what it closes
    TWorldMapArea FArea;
    std::vector<TTileLevel> FLevels;
    int FStoredLevels = 1;
    TUnitConversion FConversion;
    QString FNote;
};

} // namespace lmx
