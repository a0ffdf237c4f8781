#pragma once

#include <lmx/DataSources/lmxClimateAttributes.h>
#include <lmx/DataSources/lmxDataSourcesExport.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <QString>

#include <cstddef>
#include <vector>

namespace lmx {

enum class TClimateAxisKind { akLongitude, akLatitude, akLevel, akTime, akOther };

/// Why a variable cannot be shown on a map.
enum class TClimateRefusal {
    crNoCoordinates, ///< a dimension of place without coordinates
    crRotatedPole,
    crCurvilinear,  ///< latitudes and longitudes are fields of two dimensions
    crUnstructured, ///< latitudes and longitudes stand on one dimension
    crReducedGrid,  ///< rows of different lengths
    crProjected,    ///< a projection other than the New Zealand Map Grid
    crRotatedImage, ///< a picture whose rows do not run from west to east
    crNoMap         ///< latitude or longitude is not among the dimensions
};

/// A variable or an axis is refused; the message names it, and a way out where there is one.
class LMX_DATASOURCES_EXPORT EClimateRefusal : public ENotSupportedException {
public:
    using ENotSupportedException::ENotSupportedException;
};

/// What a refusal says, whole: `Variable "tas" lies on a grid with a rotated pole. Regrid it first, for example: cdo
/// remapbil,r360x180 in out`.
LMX_DATASOURCES_EXPORT QString RefusalText(TClimateRefusal refusal, const QString& variable);

/// Which axis it is: by units (of latitude, longitude, "... since ..."), then by "standard_name", then by "axis" (X and
/// Y with units of degrees or none); a level also by "positive" and by units of pressure. What stands on a grid of its
/// own by its standard name ("grid_longitude", "projection_x_coordinate") is another one.
LMX_DATASOURCES_EXPORT TClimateAxisKind KindOfClimateAxis(const TClimateAttributes& attributes);

/// An axis of places whose values rise or fall all the way: where the cells lie. A value.
class LMX_DATASOURCES_EXPORT TClimateAxis {
public:
    /// Values stand at the centres of cells. Longitudes are unwrapped: 345, 15 is 345, 375.
    /// @param name for messages
    /// @param bounds two for each value in turn, or none. They count if the cells are contiguous, else edges lie
    /// halfway between values, with the outer ones as far out as the next one inside; latitudes within ±90.
    /// @throws EClimateRefusal for an axis that is empty, longer than MaxCount, holds what is no number, stands still
    /// or turns; for latitudes beyond ±90.001; for longitudes beyond ±1080 or of more than 360 degrees.
    static TClimateAxis Longitude(const QString& name, std::vector<double> values, const std::vector<double>& bounds);
    static TClimateAxis Latitude(const QString& name, std::vector<double> values, const std::vector<double>& bounds);
    /// The same for metres of a projection; no limits.
    static TClimateAxis Metres(const QString& name, std::vector<double> values, const std::vector<double>& bounds);

    static constexpr std::size_t MaxCount = 1'000'000;

    const QString& GetName() const { return FName; }
    std::size_t GetCount() const { return FValues.size(); }
    const std::vector<double>& GetValues() const { return FValues; } ///< centres, longitudes unwrapped
    const std::vector<double>& GetEdges() const { return FEdges; }   ///< one more than values, in the same direction
    bool IsAscending() const { return FEdges.front() < FEdges.back(); }
    /// Whether all cells are equally wide, within 1e-4 of the mean of the steps between the values; a row at a pole may
    /// be the half of one.
    bool IsRegular() const { return FIsRegular; }
    double GetStep() const { return FStep; } ///< mean distance of neighbours, positive; the one cell's width

    double GetLow() const;  ///< the lesser outer edge
    double GetHigh() const; ///< the greater one

private:
    TClimateAxis(const QString& name, std::vector<double> values) : FName(name), FValues(std::move(values)) {}
    void CheckValues() const;
    void CheckDirection() const;
    void Unwrap();
    void FindEdges(std::vector<double> bounds, bool areLongitudes);
    bool TakeBounds(const std::vector<double>& bounds);
    void FindStep(double pole);
    [[noreturn]] void Refuse(const QString& problem) const;

    QString FName;
    std::vector<double> FValues;
    std::vector<double> FEdges;
    bool FIsRegular = false;
    double FStep = 0;
};

} // namespace lmx
