#pragma once

#include <lmx/Climate/lmxClimateVariable.h>
#include <lmx/DataSources/lmxClimateAttributes.h>
#include <lmx/DataSources/lmxClimateExceptions.h>
#include <lmx/DataSources/lmxClimateTimes.h>
#include <lmx/DataSources/lmxClimateUnits.h>
#include <lmx/DataSources/lmxDataSourcesExport.h>
#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>
#include <lmx/Runtime/lmxNullable.h>

#include <QString>
#include <QStringList>

#include <cstddef>
#include <memory>
#include <vector>

namespace lmx {

class TClimateCatalog;
class TKeptBlock;
class TOpenFile;

struct TClimateDimension {
    QString Name;
    quint64 Size = 0;
};

/// What a file says of one of its variables. Unknown texts are empty.
struct LMX_DATASOURCES_EXPORT TClimateVariableInfo {
    QString Name; ///< with its groups: "future/tas"
    QString LongName;
    QString StandardName;
    QString Units; ///< as they stand in the file
    QString CellMethods;
    std::vector<TClimateDimension> Dimensions;

    QString Refusal;   ///< why it cannot be shown, with what to do about it; empty if it can
    QStringList Notes; ///< whole sentences for the user: what was not understood and therefore left aside

    std::size_t TimeCount = 0; ///< steps; 1 if there is no time
    QString FirstTime;         ///< as a title says it; empty if there is no time
    QString LastTime;
    std::vector<double> Levels; ///< empty if there are none
    QString LevelName;
    QString LevelUnits;

    TNullable<TClimateVariable> Variable;   ///< which one it is; nil unless names decide it
    TNullable<TClimateVariable> Suggestion; ///< what its long name suggests, for the user to confirm
    TUnitConversion Conversion;             ///< to the units that the reader of a map expects

    QString GetLevelCaption(std::size_t level) const; ///< "850 hPa", "5 m", "sigma 0.995"; empty without levels
    /// "Near-surface air temperature", or the name.
    QString GetTitle() const { return LongName.isEmpty() ? Name : LongName; }
};

enum class TClimateShownUnits {
    suExpected, ///< what the reader of a map expects: degrees Celsius, mm a day, hPa
    suFile
};

/// Which picture of a file.
struct TClimateSelection {
    std::size_t Variable = 0; ///< number in GetVariables
    std::size_t Time = 0;
    std::size_t Level = 0;
    TClimateShownUnits Units = TClimateShownUnits::suExpected;
};

/// One variable at one time and level.
struct TClimatePicture {
    /// Bounds, range of values and units stand in its header, flags are TSpatialConst::NoData; the conversion of units
    /// is the header's comment, file, variable, time and level (TClimateOrigin) its lineage.
    std::unique_ptr<TRealImage> Image;
    QString World; ///< identifier of the world system of the bounds: "latlon", "nzmg"
    QString Title;
    QString TimeCaption;  ///< "January 2001"; empty if there is no time
    QString LevelCaption; ///< "850 hPa"; empty if there are no levels
    TUnitConversion Conversion;
    TNullable<TClimateVariable> Variable;
};

/// A climate file that is open: NetCDF, HDF5 with NetCDF's conventions, Zarr 2 (a folder, or stored in a zip), GRIB and
/// GeoTIFF, whose cells are missing where a mask or an alpha band says so, too. What it is is told by its content.
/// After construction any thread may call; NetCDF, HDF5, Zarr and GRIB are read on one thread of the library, one after
/// the other. The file stays open as long as the object. A dataset may outlive main: the end of the program waits for
/// reads that have begun and closes the file, after which the object still tells what it knows but reads no more.
class LMX_DATASOURCES_EXPORT TClimateDataset {
public:
    /// Opens a file and lists its variables. No cells are read but those of axes.
    /// @param fileName of a file or folder of this computer; "http://" or "https://" and a host of SetAllowedHosts for
    /// a GeoTIFF on it
    /// @throws EClimateFile if it is missing, of an unknown kind, cut short or damaged, reaches for cells in other
    /// files or claims sizes that no climate file has; or once the program ends.
    explicit TClimateDataset(const QString& fileName);
    ~TClimateDataset();
    TClimateDataset(const TClimateDataset&) = delete;
    TClimateDataset& operator=(const TClimateDataset&) = delete;

    const QString& GetFileName() const { return FFileName; } ///< as it was given
    const TClimateAttributes& GetAttributes() const;         ///< of the file

    /// All that could be a map, and what is refused with its reason; axes and their bounds are left out.
    const std::vector<TClimateVariableInfo>& GetVariables() const;
    /// Nil if there is none of that name.
    TNullable<std::size_t> FindVariable(const QString& name) const;

    /// The steps of a variable. @throws EArgumentException "Variable"
    const TClimateTimes& GetTimes(std::size_t variable) const;

    /// @throws EArgumentException "Variable", "Time" or "Level" if there is no such; EClimateFile, with the refusal, or
    /// with variable and step if they cannot be read, or "...: is closed: the program ends"; EOutOfMemory.
    TClimatePicture Read(const TClimateSelection& selection) const;

    /// Hosts from which files may be read, by name, without regard to case. None at first: a document or a file name
    /// then never makes a connection. A server that is allowed is trusted with where it redirects to. Any thread.
    static void SetAllowedHosts(const QStringList& hosts);
    static QStringList GetAllowedHosts();
    /// How long a request to such a host may take, in seconds, kept above 0; 30 at first. One that takes longer is a
    /// failure. It holds for files that are opened from then on. Any thread.
    static void SetRemoteTimeout(int seconds);
    static int GetRemoteTimeout();

private:
    friend class TClimateFrames;
    TClimatePicture Read(const TClimateSelection& selection, TKeptBlock& kept) const;

    QString FFileName;
    std::unique_ptr<TClimateCatalog> FCatalog;
    std::unique_ptr<TOpenFile> FOpenFile; // goes before what it closes
};

} // namespace lmx
