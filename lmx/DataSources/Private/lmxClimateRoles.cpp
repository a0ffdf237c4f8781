#include <lmx/DataSources/Private/lmxClimateCatalog.h>

#include <lmx/DataSources/Private/lmxProjectedGrid.h>
#include <lmx/Runtime/lmxText.h>

#include <algorithm>

namespace lmx {

namespace {

class TRoleFinder {
public:
    TRoleFinder(const TSourceIndex& index, std::size_t array)
        : FIndex(index),
          FArray(array),
          FInfo(index.GetArrays()[array]),
          FNamed(index.ResolveAll(array, QStringLiteral("coordinates"))) {}

    TClimateRoles Find() {
        FindMappings();
        FRoles.AreCategories = HasFlags();
        for (std::size_t i = 0; i < FInfo.Dimensions.size(); ++i)
            TakeDimension(i);
        TakeScalars();
        if (!FRoles.Refusal && (!FRoles.Longitude || !FRoles.Latitude))
            FRoles.Refusal = WhyNoMap();
        if (!FRoles.Refusal)
            TakeRest();
        return FRoles;
    }

private:
    // "crs", or several with the coordinates that they are for: "crs: x y wgs84: lat lon".
    void FindMappings() {
        const QString names = FIndex.GetText(FArray, QStringLiteral("grid_mapping")).simplified();
        const bool isLong = names.contains(u':');
        for (const QString& name : Split(names, u' ')) {
            if (isLong && !name.endsWith(u':'))
                continue;
            if (const auto mapping = FIndex.Resolve(FArray, isLong ? name.chopped(1) : name))
                TakeMapping(*mapping);
        }
    }

    // "latitude_longitude" says what is the rule anyway.
    void TakeMapping(std::size_t mapping) {
        const QString name = FIndex.GetText(mapping, QStringLiteral("grid_mapping_name"));
        const QString text = FIndex.GetText(mapping, QStringLiteral("crs_wkt"));
        if (name == QStringLiteral("rotated_latitude_longitude"))
            FRoles.Refusal = TClimateRefusal::crRotatedPole;
        else if (name == QStringLiteral("new_zealand_map_grid") || (!text.isEmpty() && IsNzmgText(text)))
            FRoles.IsNzmg = true;
        else if (!name.isEmpty() && name != QStringLiteral("latitude_longitude"))
            FRoles.Refusal = TClimateRefusal::crProjected;
    }

    // 1 for water and 3 for ice do not make a 2 between them.
    bool HasFlags() const {
        const TClimateAttributes& attributes = FIndex.GetAttributes(FArray).Values;
        return attributes.Has(QStringLiteral("flag_values")) || attributes.Has(QStringLiteral("flag_masks")) ||
               attributes.Has(QStringLiteral("flag_meanings"));
    }

    TClimateAxisKind KindOf(std::size_t coordinate) const {
        const TClimateAttributes& attributes = FIndex.GetAttributes(coordinate).Values;
        if (FRoles.IsNzmg) {
            const QString standard = attributes.Text(QStringLiteral("standard_name"));
            const QString axis = attributes.Text(QStringLiteral("axis")).trimmed();
            if (standard == QStringLiteral("projection_x_coordinate") || SameText(axis, u"X"))
                return TClimateAxisKind::akLongitude;
            if (standard == QStringLiteral("projection_y_coordinate") || SameText(axis, u"Y"))
                return TClimateAxisKind::akLatitude;
        }
        const TClimateAxisKind kind = KindOfClimateAxis(attributes);
        return kind != TClimateAxisKind::akOther && IsIndex(attributes) ? TClimateAxisKind::akOther : kind;
    }

    // Beside fields of latitudes and longitudes an axis X or Y that says no more counts cells.
    bool IsIndex(const TClimateAttributes& axis) const {
        const QString letter = axis.Text(QStringLiteral("axis")).trimmed();
        if (!SameText(letter, u"X") && !SameText(letter, u"Y"))
            return false;
        const QString units = axis.Text(QStringLiteral("units"));
        if (IsLatitudeUnit(units) || IsLongitudeUnit(units) || !axis.Text(QStringLiteral("standard_name")).isEmpty())
            return false;
        return std::any_of(FNamed.begin(), FNamed.end(), [this](std::size_t named) {
            const TClimateAxisKind kind = KindOfClimateAxis(FIndex.GetAttributes(named).Values);
            return FIndex.GetArrays()[named].Dimensions.size() >= 2 &&
                   (kind == TClimateAxisKind::akLatitude || kind == TClimateAxisKind::akLongitude);
        });
    }

    // By its own name, or one on this dimension alone that the array names.
    std::optional<std::size_t> CoordinateOf(const TSourceDimension& dimension) const {
        if (const auto own = FIndex.CoordinateOf(dimension))
            return own;
        for (const std::size_t named : FNamed) {
            const TSourceArray& info = FIndex.GetArrays()[named];
            if (info.IsNumeric && info.Dimensions.size() == 1 && info.Dimensions[0] == dimension)
                return named;
        }
        return std::nullopt;
    }

    static bool Take(std::size_t dimension, const std::optional<std::size_t>& coordinate,
                     std::optional<std::size_t>& role, std::optional<std::size_t>& array) {
        if (role)
            return false;
        role = dimension;
        array = coordinate;
        return true;
    }

    void TakeDimension(std::size_t dimension) {
        const auto coordinate = CoordinateOf(FInfo.Dimensions[dimension]);
        const TClimateAxisKind kind = coordinate ? KindOf(*coordinate) : TClimateAxisKind::akOther;
        bool isTaken = false;
        switch (kind) {
        case TClimateAxisKind::akLongitude:
            isTaken = Take(dimension, coordinate, FRoles.Longitude, FRoles.LongitudeArray);
            break;
        case TClimateAxisKind::akLatitude:
            isTaken = Take(dimension, coordinate, FRoles.Latitude, FRoles.LatitudeArray);
            break;
        case TClimateAxisKind::akTime:
            isTaken = Take(dimension, coordinate, FRoles.Time, FRoles.TimeArray);
            break;
        case TClimateAxisKind::akLevel:
            isTaken = Take(dimension, coordinate, FRoles.Level, FRoles.LevelArray);
            break;
        case TClimateAxisKind::akOther:
            break;
        }
        if (!isTaken)
            FRest.push_back(dimension);
    }

    // A dimension that says nothing is stepped through by its number.
    void TakeRest() {
        for (const std::size_t dimension : FRest) {
            if (FInfo.Dimensions[dimension].Size == 1)
                continue;
            const auto coordinate = CoordinateOf(FInfo.Dimensions[dimension]);
            if (!coordinate && Take(dimension, coordinate, FRoles.Time, FRoles.TimeArray))
                continue;
            if (!Take(dimension, coordinate, FRoles.Level, FRoles.LevelArray))
                FRoles.Left = dimension;
        }
    }

    void TakeScalars() {
        for (const std::size_t named : FNamed) {
            const TSourceArray& info = FIndex.GetArrays()[named];
            if (!info.IsNumeric || !info.Dimensions.empty())
                continue;
            if (KindOf(named) == TClimateAxisKind::akTime && !FRoles.Time)
                FRoles.TimeArray = named;
            if (IsPressureUnit(FIndex.GetText(named, QStringLiteral("units"))))
                FRoles.HasPressure = true;
        }
    }

    TClimateRefusal WhyNoMap() const {
        std::optional<TSourceDimension> place;
        for (const std::size_t named : FNamed) {
            const TSourceArray& info = FIndex.GetArrays()[named];
            const TClimateAxisKind kind = KindOf(named);
            if (kind != TClimateAxisKind::akLatitude && kind != TClimateAxisKind::akLongitude)
                continue;
            if (info.Dimensions.size() >= 2)
                return TClimateRefusal::crCurvilinear;
            if (info.Dimensions.empty())
                continue;
            if (place && *place == info.Dimensions[0])
                return TClimateRefusal::crUnstructured;
            place = info.Dimensions[0];
        }
        for (const TSourceDimension& dimension : FInfo.Dimensions) {
            const auto own = CoordinateOf(dimension);
            const QString standard = own ? FIndex.GetText(*own, QStringLiteral("standard_name")) : QString();
            if (standard == QStringLiteral("grid_latitude") || standard == QStringLiteral("grid_longitude"))
                return TClimateRefusal::crRotatedPole;
            if (standard.startsWith(QStringLiteral("projection_")))
                return TClimateRefusal::crProjected;
        }
        const bool isWithout = FInfo.Dimensions.size() >= 2 &&
                               std::any_of(FInfo.Dimensions.begin(), FInfo.Dimensions.end(),
                                           [this](const auto& dimension) { return !CoordinateOf(dimension); });
        return isWithout ? TClimateRefusal::crNoCoordinates : TClimateRefusal::crNoMap;
    }

    const TSourceIndex& FIndex;
    const std::size_t FArray;
    const TSourceArray& FInfo;
    const std::vector<std::size_t> FNamed;
    std::vector<std::size_t> FRest;
    TClimateRoles FRoles;
};

} // namespace

TClimateRoles FindClimateRoles(const TSourceIndex& index, std::size_t array) {
    return TRoleFinder(index, array).Find();
}

} // namespace lmx
