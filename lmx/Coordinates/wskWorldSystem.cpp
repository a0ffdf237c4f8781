#include <lmx/Coordinates/wskWorldSystem.h>

#include <lmx/Formats/Idrisi/lmxImageHeader.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <algorithm>
#include <utility>

namespace lmx {

namespace {

constexpr extended FullCircle = 360;

/// What all systems share: an area with map X to the right and map Y upwards.
class TBaseWorldSystem : public IWorldSystem {
public:
    explicit TBaseWorldSystem(const TMapArea& area) : FArea(area), FMapOrientation{1, -1} {}

    const TMapArea& Area() const override { return FArea; }
    TMapOrientation GetOrientation() const override { return FMapOrientation; }

    TMapArea CreateMapArea(extended left, extended bottom, extended right, extended top) const override {
        return {left, top, right, bottom};
    }
    TMapArea ConstrainRect(const TMapArea& area) const override {
        return {std::max(area.Left, FArea.Left), std::min(area.Top, FArea.Top), std::min(area.Right, FArea.Right),
                std::max(area.Bottom, FArea.Bottom)};
    }

private:
    TMapArea FArea;
    TMapOrientation FMapOrientation;
};

/// A system of longitudes. What lies beyond its seam is `fold` away from its place in the world.
class TBaseLongitudeWorldSystem : public TBaseWorldSystem {
public:
    TBaseLongitudeWorldSystem(const TMapArea& area, extended fold) : TBaseWorldSystem(area), FFold(fold) {}

    QString Units() const override { return QStringLiteral("Degrees"); }
    QString GetGroup() const override { return QStringLiteral("latlon"); }

    bool IsTranslationRequired(const TMapArea& area) const override {
        return IsBeyondSeam(area.Left) || IsBeyondSeam(area.Right);
    }
    TMapPoint ToWorldPoint(const TMapPoint& point) const override { return {Fold(point.X), point.Y}; }
    bool IsWorldPoint(const TMapPoint& point) const override { return IsBeyondSeam(point.X); }
    TMapPoint ToLocalPoint(const TMapArea& area, const TMapPoint& point) const override {
        return IsTranslationRequired(area) && point.X < 0 ? TMapPoint(point.X + FullCircle, point.Y) : point;
    }
    TMapArea ToWorldArea(const TMapArea& area) const override {
        TMapArea folded = area;
        folded.Left = Fold(area.Left);
        folded.Right = Fold(area.Right);
        return folded;
    }
    bool Wraps(const TMapPoint& point1, const TMapPoint& point2) const override {
        return IsWorldPoint(point1) != IsWorldPoint(point2);
    }

protected:
    virtual bool IsBeyondSeam(extended x) const = 0;

    TMapArea Translated(TMapArea piece) const {
        piece.XTranslate = FFold;
        return piece;
    }

private:
    extended Fold(extended x) const { return IsBeyondSeam(x) ? x + FFold : x; }

    extended FFold;
};

class TLatLonWorldSystem final : public TBaseLongitudeWorldSystem {
public:
    TLatLonWorldSystem() : TBaseLongitudeWorldSystem({-180, 90, 180, -90}, -FullCircle) {}

    QString Name() const override { return QStringLiteral("Lat/lon"); }
    QString Identifier() const override { return QStringLiteral("latlon"); }
    TMeridian Merdian() const override { return TMeridian::mrdPrimeMeridian; }

    std::vector<TMapArea> TranslateArea(const TMapArea& area) const override {
        if (!IsTranslationRequired(area))
            return {area};
        if (area.Left > Seam)
            return {Translated(area)};
        TMapArea west = area;
        west.Right = Seam;
        TMapArea east = area;
        east.Left = Seam;
        return {west, Translated(east)};
    }

protected:
    bool IsBeyondSeam(extended x) const override { return x > Seam; }

private:
    static constexpr extended Seam = 180;
};

class TLatLonAntimeridianWorldSystem final : public TBaseLongitudeWorldSystem {
public:
    TLatLonAntimeridianWorldSystem() : TBaseLongitudeWorldSystem({0, 90, 360, -90}, FullCircle) {}

    QString Name() const override { return QStringLiteral("Lat/lon (Antimeridian)"); }
    // The identifier is fixed, spelling and all.
    QString Identifier() const override { return QStringLiteral("latlonAntimerdian"); }
    TMeridian Merdian() const override { return TMeridian::mrdAntiMeridian; }

    std::vector<TMapArea> TranslateArea(const TMapArea& area) const override {
        if (!IsTranslationRequired(area))
            return {area};
        if (area.Right < Seam)
            return {Translated(area)};
        TMapArea east = area;
        east.Left = Seam;
        TMapArea west = area;
        west.Right = Seam;
        return {east, Translated(west)};
    }

protected:
    bool IsBeyondSeam(extended x) const override { return x < Seam; }

private:
    static constexpr extended Seam = 0;
};

class TNZMGWorldSystem final : public TBaseWorldSystem {
public:
    TNZMGWorldSystem() : TBaseWorldSystem({1900000, 7000000, 3100000, 5000000}) {}

    QString Name() const override { return QStringLiteral("New Zealand Map Grid (NZMG)"); }
    QString Identifier() const override { return QStringLiteral("nzmg"); }
    QString Units() const override { return QStringLiteral("Metres"); }
    TMeridian Merdian() const override { return TMeridian::mrdNA; }
    QString GetGroup() const override { return QStringLiteral("plane"); }

    bool IsTranslationRequired(const TMapArea&) const override { return false; }
    std::vector<TMapArea> TranslateArea(const TMapArea& area) const override { return {area}; }
    TMapPoint ToWorldPoint(const TMapPoint& point) const override { return point; }
    bool IsWorldPoint(const TMapPoint& point) const override { return Area().Contains(point); }
    TMapPoint ToLocalPoint(const TMapArea&, const TMapPoint& point) const override { return point; }
    TMapArea ToWorldArea(const TMapArea& area) const override { return area; }
    bool Wraps(const TMapPoint&, const TMapPoint&) const override { return false; }
};

std::shared_ptr<IWorldSystem> WorldSystemOf(const TImageHeader& header) {
    if (!header.IsGeographic())
        return TNZMGWorldSystemFactory::GetObject();
    if (header.GetMinX() > 180 || header.GetMaxX() > 180)
        return TLatLonAntimeridianWorldSystemFactory::GetObject();
    return TLatLonWorldSystemFactory::GetObject();
}

} // namespace

std::shared_ptr<IWorldSystem> TLatLonWorldSystemFactory::GetObject() {
    static const auto instance = std::make_shared<TLatLonWorldSystem>();
    return instance;
}

std::shared_ptr<IWorldSystem> TLatLonAntimeridianWorldSystemFactory::GetObject() {
    static const auto instance = std::make_shared<TLatLonAntimeridianWorldSystem>();
    return instance;
}

std::shared_ptr<IWorldSystem> TNZMGWorldSystemFactory::GetObject() {
    static const auto instance = std::make_shared<TNZMGWorldSystem>();
    return instance;
}

std::shared_ptr<IWorldSystem> TWorldSystemFactory::GetObject(const QString& identifier) {
    for (const auto& system : {TLatLonWorldSystemFactory::GetObject(), TNZMGWorldSystemFactory::GetObject(),
                               TLatLonAntimeridianWorldSystemFactory::GetObject()})
        if (system->Identifier() == identifier)
            return system;
    return nullptr;
}

std::vector<std::shared_ptr<IWorldSystem>> TWorldSystemFactory::GetObjects(const QString& group) {
    std::vector<std::shared_ptr<IWorldSystem>> systems;
    for (const auto& system :
         {TLatLonWorldSystemFactory::GetObject(), TLatLonAntimeridianWorldSystemFactory::GetObject(),
          TNZMGWorldSystemFactory::GetObject()})
        if (system->GetGroup() == group)
            systems.push_back(system);
    return systems;
}

TWorldMapArea::TWorldMapArea(const TMapArea& area, std::shared_ptr<IWorldSystem> worldSystem)
    : Area(area),
      WorldSystem(std::move(worldSystem)) {
    if (!WorldSystem)
        throw EExArgumentNilException(QStringLiteral("TWorldMapArea.Create"), QStringLiteral("WorldSystemVal"));
}

TWorldMapArea::TWorldMapArea(const TImageHeader* header) {
    if (!header)
        throw EExArgumentNilException(QStringLiteral("TWorldMapArea.Create"), QStringLiteral("IdrisiImageHeader"));
    Area = {header->GetMinX(), header->GetMaxY(), header->GetMaxX(), header->GetMinY()};
    WorldSystem = WorldSystemOf(*header);
}

bool TWorldMapArea::Equals(const TWorldMapArea& other) const noexcept {
    return WorldSystem == other.WorldSystem && Area.Equals(other.Area);
}

} // namespace lmx
