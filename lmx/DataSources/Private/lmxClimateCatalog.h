#pragma once

#include <lmx/DataSources/Private/lmxClimateSource.h>
#include <lmx/DataSources/Private/lmxKeptBlock.h>
#include <lmx/DataSources/Private/lmxSourceIndex.h>
#include <lmx/DataSources/lmxClimateDataset.h>
#include <lmx/DataSources/lmxClimateGridPlan.h>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <tuple>
#include <vector>

namespace lmx {

/// Which dimension of an array is which.
struct TClimateRoles {
    std::optional<std::size_t> Longitude;
    std::optional<std::size_t> Latitude;
    std::optional<std::size_t> Time;
    std::optional<std::size_t> Level;
    std::optional<std::size_t> Left; ///< a dimension that is none of these, of more than one cell
    /// Arrays that give their values; none for steps without values. Time may be a scalar.
    std::optional<std::size_t> LongitudeArray;
    std::optional<std::size_t> LatitudeArray;
    std::optional<std::size_t> TimeArray;
    std::optional<std::size_t> LevelArray;
    bool HasPressure = false; ///< a scalar of pressure
    bool IsNzmg = false;
    bool AreCategories = false; ///< as TClimateGridPlan
    std::optional<TClimateRefusal> Refusal;
};

/// Finds them by the conventions: coordinates of a dimension's name, "coordinates", "grid_mapping".
TClimateRoles FindClimateRoles(const TSourceIndex& index, std::size_t array);

/// What a variable needs to be read.
struct TCatalogEntry {
    std::size_t Array = 0;
    TClimateRoles Roles;
    std::shared_ptr<const TClimateTimes> Times;   ///< never nil
    std::shared_ptr<const TClimateGridPlan> Plan; ///< nil if it is refused
};

/// What stands in a climate file and how it becomes pictures. Fixed after construction, but for the file itself.
class TClimateCatalog {
public:
    /// @throws EClimateFile
    TClimateCatalog(std::unique_ptr<IClimateSource> source, const QString& fileName);

    const TClimateAttributes& GetAttributes() const { return FAttributes; }
    const std::vector<TClimateVariableInfo>& GetInfos() const { return FInfos; }
    const TCatalogEntry& GetEntry(std::size_t variable) const { return FEntries.at(variable); }

    /// As TClimateDataset::Read.
    TClimatePicture Read(const TClimateSelection& selection) const;
    /// @param kept what the file stores as one with the step that was read before
    TClimatePicture Read(const TClimateSelection& selection, TKeptBlock& kept) const;
    /// Closes the file. Nothing can be read then.
    void Close() { FSource.reset(); }

private:
    void Add(std::size_t array);
    void Describe(const TCatalogEntry& entry, TClimateVariableInfo& info) const;
    void DescribeTimes(TCatalogEntry& entry, TClimateVariableInfo& info);
    void NoteLargeBlocks(const TCatalogEntry& entry, TClimateVariableInfo& info) const;
    void DescribeLevels(const TCatalogEntry& entry, TClimateVariableInfo& info) const;
    QString FindRefusal(TCatalogEntry& entry, const TClimateVariableInfo& info);
    std::shared_ptr<const TClimateTimes> TimesOf(const TClimateRoles& roles, std::size_t count);
    std::shared_ptr<const TClimateGridPlan> PlanOf(const TClimateRoles& roles);
    std::unique_ptr<TRealImage> ReadImage(const TClimateSelection& selection, const TUnitConversion& conversion,
                                          const QString& title, TKeptBlock& kept) const;
    TSourceWindow WindowOf(const TClimateSelection& selection) const;
    TRawSlice ReadSlice(const TClimateSelection& selection, TKeptBlock& kept) const;
    TRawSlice ReadMask(const TClimateSelection& selection) const;
    /// Failures say at which step.
    TRawSlice NamingStep(const TClimateSelection& selection, const std::function<TRawSlice()>& read) const;

    const QString FFileName;
    std::unique_ptr<IClimateSource> FSource;
    TSourceIndex FIndex;
    TClimateAttributes FAttributes;
    std::vector<TClimateVariableInfo> FInfos;
    std::vector<TCatalogEntry> FEntries;
    std::map<std::size_t, std::shared_ptr<const TClimateTimes>> FTimes; ///< by array
    /// By the arrays of longitudes and latitudes, and for categories apart.
    std::map<std::tuple<std::size_t, std::size_t, bool>, std::shared_ptr<const TClimateGridPlan>> FPlans;
};

} // namespace lmx
