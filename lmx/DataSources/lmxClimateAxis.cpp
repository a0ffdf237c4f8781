#include <lmx/DataSources/lmxClimateAxis.h>

#include <lmx/DataSources/lmxClimateUnits.h>
#include <lmx/Runtime/lmxText.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace lmx {

namespace {

using enum TClimateAxisKind;

constexpr double Evenness = 1e-4;    // of a step
constexpr double PoleLimit = 90.001; // rounding of who wrote it
constexpr double PoleSlack = 1e-3;   // of a step: three decimals of GRIB
constexpr double LongitudeLimit = 1080;
constexpr double NoPole = std::numeric_limits<double>::infinity();

QString Regridding() {
    return QStringLiteral(" Regrid it first, for example: cdo remapbil,r360x180 in out");
}

bool ContainsWord(const QString& text, QStringView word) {
    for (const QString& part : text.simplified().split(u' '))
        if (SameText(part, word))
            return true;
    return false;
}

void TurnBounds(double value, double& begin, double& end) {
    const auto turns = [value](double place) { return 360 * std::nearbyint((place - value) / 360); };
    const bool isCircle = std::abs(std::abs(end - begin) - 360) < 1e-6; // each may lie a turn away from the value
    const double middle = begin + (end - begin) / 2;
    begin -= turns(isCircle ? middle : begin);
    end -= isCircle ? turns(middle) : turns(end);
}

constexpr double MostPlace = 1e15; // so that steps and edges keep their digits

bool IsPlace(double number) {
    return std::abs(number) < MostPlace;
}

/// Places of a grid of its own, whatever the units say: those of a rotated pole are degrees.
bool IsOfAnotherGrid(const QString& standardName) {
    return standardName.startsWith(QStringLiteral("grid_")) || standardName.startsWith(QStringLiteral("projection_"));
}

TClimateAxisKind KindByStandardName(const QString& name) {
    if (name == QStringLiteral("latitude"))
        return akLatitude;
    if (name == QStringLiteral("longitude"))
        return akLongitude;
    if (name == QStringLiteral("time") || name == QStringLiteral("forecast_reference_time"))
        return akTime;
    for (const char* const level :
         {"air_pressure", "height", "altitude", "depth", "model_level_number", "atmosphere_sigma_coordinate",
          "atmosphere_hybrid_sigma_pressure_coordinate", "atmosphere_hybrid_height_coordinate",
          "atmosphere_ln_pressure_coordinate", "atmosphere_sleve_coordinate", "ocean_sigma_coordinate",
          "ocean_s_coordinate", "ocean_s_coordinate_g1", "ocean_s_coordinate_g2", "ocean_sigma_z_coordinate",
          "ocean_double_sigma_coordinate", "air_potential_temperature", "height_above_reference_ellipsoid"})
        if (name == QLatin1String(level))
            return akLevel;
    return akOther;
}

} // namespace

QString RefusalText(TClimateRefusal refusal, const QString& variable) {
    const QString name = QStringLiteral("Variable \"%1\"").arg(variable);
    switch (refusal) {
    case TClimateRefusal::crNoCoordinates:
        return name + QStringLiteral(" has no coordinates of latitude and longitude. Add them first, for example: "
                                     "cdo setgrid,GRID in out");
    case TClimateRefusal::crRotatedPole:
        return name + QStringLiteral(" lies on a grid with a rotated pole.") + Regridding();
    case TClimateRefusal::crCurvilinear:
        return name + QStringLiteral(" lies on a curvilinear grid.") + Regridding();
    case TClimateRefusal::crUnstructured:
        return name + QStringLiteral(" lies on an unstructured grid. Regrid it first, for example: "
                                     "cdo remapdis,r360x180 in out");
    case TClimateRefusal::crReducedGrid:
        return name + QStringLiteral(" lies on a reduced grid. Regrid it first, for example: "
                                     "cdo setgridtype,regular in out");
    case TClimateRefusal::crProjected:
        return name + QStringLiteral(" lies on a projection other than the New Zealand Map Grid. Warp it first, for "
                                     "example: gdalwarp -t_srs EPSG:4326 in out");
    case TClimateRefusal::crRotatedImage:
        return name + QStringLiteral(" has rows that do not run from west to east. Warp it first, for example: "
                                     "gdalwarp -t_srs EPSG:4326 in out");
    case TClimateRefusal::crNoMap:
        break;
    }
    return name + QStringLiteral(" is no map: latitude or longitude is not among its dimensions");
}

TClimateAxisKind KindOfClimateAxis(const TClimateAttributes& attributes) {
    const QString units = attributes.Text(QStringLiteral("units"));
    const QString standardName = attributes.Text(QStringLiteral("standard_name"));
    if (IsOfAnotherGrid(standardName))
        return akOther;
    if (IsLatitudeUnit(units))
        return akLatitude;
    if (IsLongitudeUnit(units))
        return akLongitude;
    if (ContainsWord(units, u"since"))
        return akTime;
    const TClimateAxisKind named = KindByStandardName(standardName);
    if (named != akOther)
        return named;
    const QString axis = attributes.Text(QStringLiteral("axis")).trimmed();
    const bool mayBeDegrees = units.isEmpty() || IsDegreeUnit(units); // not the metres of a projection
    if (SameText(axis, u"Y"))
        return mayBeDegrees ? akLatitude : akOther;
    if (SameText(axis, u"X"))
        return mayBeDegrees ? akLongitude : akOther;
    if (SameText(axis, u"T"))
        return akTime;
    const bool isLevel = SameText(axis, u"Z") || attributes.Has(QStringLiteral("positive")) || IsPressureUnit(units);
    return isLevel ? akLevel : akOther;
}

TClimateAxis TClimateAxis::Longitude(const QString& name, std::vector<double> values,
                                     const std::vector<double>& bounds) {
    TClimateAxis axis(name, std::move(values));
    axis.CheckValues();
    for (const double value : axis.FValues)
        if (std::abs(value) > LongitudeLimit)
            axis.Refuse(QStringLiteral("is not in degrees."));
    axis.Unwrap();
    axis.CheckDirection();
    axis.FindEdges(bounds, true);
    axis.FindStep(NoPole);
    if (std::abs(axis.FValues.back() - axis.FValues.front()) > 360 + axis.FStep / 100)
        axis.Refuse(QStringLiteral("goes round the earth more than once."));
    return axis;
}

TClimateAxis TClimateAxis::Latitude(const QString& name, std::vector<double> values,
                                    const std::vector<double>& bounds) {
    TClimateAxis axis(name, std::move(values));
    axis.CheckValues();
    for (const double value : axis.FValues)
        if (std::abs(value) > PoleLimit)
            axis.Refuse(QStringLiteral("reaches beyond the poles."));
    axis.CheckDirection();
    axis.FindEdges(bounds, false);
    axis.FindStep(90);
    for (double& edge : axis.FEdges)
        edge = std::clamp(edge, -90.0, 90.0);
    return axis;
}

TClimateAxis TClimateAxis::Metres(const QString& name, std::vector<double> values, const std::vector<double>& bounds) {
    TClimateAxis axis(name, std::move(values));
    axis.CheckValues();
    axis.CheckDirection();
    axis.FindEdges(bounds, false);
    axis.FindStep(NoPole);
    return axis;
}

double TClimateAxis::GetLow() const {
    return std::min(FEdges.front(), FEdges.back());
}

double TClimateAxis::GetHigh() const {
    return std::max(FEdges.front(), FEdges.back());
}

void TClimateAxis::Refuse(const QString& problem) const {
    throw EClimateRefusal(QStringLiteral("Axis \"%1\" ").arg(FName) + problem + Regridding());
}

void TClimateAxis::CheckValues() const {
    if (FValues.empty())
        throw EClimateRefusal(QStringLiteral("Axis \"%1\" has no values").arg(FName));
    if (FValues.size() > MaxCount)
        throw EClimateRefusal(QStringLiteral("Axis \"%1\" has more than 1000000 values").arg(FName));
    for (const double value : FValues)
        if (!IsPlace(value))
            Refuse(QStringLiteral("holds what is no place."));
}

void TClimateAxis::CheckDirection() const {
    for (std::size_t i = 1; i < FValues.size(); ++i) {
        const double step = FValues[i] - FValues[i - 1];
        if (step == 0)
            Refuse(QStringLiteral("holds equal neighbours."));
        if ((step > 0) != (FValues[1] > FValues[0]))
            Refuse(QStringLiteral("turns back."));
    }
}

void TClimateAxis::Unwrap() {
    if (std::is_sorted(FValues.begin(), FValues.end()))
        return;
    double turn = 0;
    double before = FValues.front();
    for (double& value : FValues) {
        const double step = value - before;
        before = value;
        if (step < -180)
            turn += 360;
        else if (step > 180)
            turn -= 360;
        value += turn;
    }
}

void TClimateAxis::FindEdges(std::vector<double> bounds, bool areLongitudes) {
    const std::size_t count = FValues.size();
    if (areLongitudes && bounds.size() == 2 * count)
        for (std::size_t i = 0; i < count; ++i) // on the turn of their value
            TurnBounds(FValues[i], bounds[2 * i], bounds[2 * i + 1]);
    if (TakeBounds(bounds))
        return;
    if (count == 1)
        throw EClimateRefusal(QStringLiteral("Axis \"%1\" has one value and no bounds").arg(FName));
    FEdges.resize(count + 1);
    for (std::size_t i = 1; i < count; ++i)
        FEdges[i] = FValues[i - 1] + (FValues[i] - FValues[i - 1]) / 2;
    FEdges.front() = FValues.front() - (FValues[1] - FValues[0]) / 2;
    FEdges.back() = FValues.back() + (FValues[count - 1] - FValues[count - 2]) / 2;
}

bool TClimateAxis::TakeBounds(const std::vector<double>& bounds) {
    const std::size_t count = FValues.size();
    if (bounds.size() != 2 * count || !std::all_of(bounds.begin(), bounds.end(), IsPlace))
        return false;
    const bool isRising = count > 1 ? FValues[1] > FValues[0] : true;
    std::vector<double> edges;
    for (std::size_t i = 0; i < count; ++i) {
        double begin = std::min(bounds[2 * i], bounds[2 * i + 1]);
        double end = std::max(bounds[2 * i], bounds[2 * i + 1]);
        const double slack = Evenness * (end - begin);
        if (!(begin < end) || FValues[i] < begin - slack || FValues[i] > end + slack)
            return false;
        if (!isRising)
            std::swap(begin, end);
        if (i == 0)
            edges.push_back(begin);
        else if (std::abs(edges.back() - begin) > slack)
            return false;
        edges.push_back(end);
    }
    FEdges = std::move(edges);
    return true;
}

void TClimateAxis::FindStep(double pole) {
    const std::size_t count = FValues.size();
    if (count == 1) {
        FStep = std::abs(FEdges[1] - FEdges[0]);
        FIsRegular = true;
        return;
    }
    const double step = (FValues.back() - FValues.front()) / static_cast<double>(count - 1);
    FStep = std::abs(step);
    const double largest = std::max(std::abs(FValues.front()), std::abs(FValues.back()));
    // Values that were written as singles lie off their places by a part of their magnitude.
    const double slack = Evenness * FStep + 2 * std::numeric_limits<float>::epsilon() * largest;
    const auto isNear = [&](double a, double b) { return std::abs(a - b) <= slack; };
    const auto isOuterEven = [&](double edge, double value) {
        return isNear(std::abs(edge - value), FStep / 2) || isNear(std::abs(value), pole);
    };
    FIsRegular = isOuterEven(FEdges.front(), FValues.front()) && isOuterEven(FEdges.back(), FValues.back());
    for (std::size_t i = 1; FIsRegular && i < count; ++i)
        FIsRegular = isNear(FValues[i] - FValues[i - 1], step) && isNear(FEdges[i] - FValues[i - 1], step / 2);
    // The outer cell of a row that a pole cuts, but not in its middle, is no half of one.
    if (FIsRegular && pole < NoPole)
        for (const double value : {FValues.front(), FValues.back()})
            if (!isNear(std::abs(value), pole) && std::abs(value) + FStep / 2 > pole + slack + FStep * PoleSlack)
                FIsRegular = false;
}

} // namespace lmx
