#pragma once

#include <lmx/Coordinates/wskMappingTypes.h>
#include <lmx/Runtime/lmxExport.h>

#include <QString>

#include <memory>
#include <vector>

namespace lmx {

class TImageHeader;

/// A coordinate reference system. It may have a seam, where longitudes jump: then areas that reach over the seam are
/// cut into pieces, and points are folded into the world's own longitudes. Holds no state that changes: any thread may
/// call.
class LMX_EXPORT IWorldSystem {
public:
    virtual ~IWorldSystem() = default;

    virtual QString Name() const = 0;       ///< display name
    virtual QString Identifier() const = 0; ///< key in documents and for TWorldSystemFactory; case-sensitive
    virtual QString Units() const = 0;      ///< display name of the map unit
    virtual TMeridian Merdian() const = 0;
    virtual QString GetGroup() const = 0;     ///< key that related systems share
    virtual const TMapArea& Area() const = 0; ///< the whole world; valid as long as the system

    /// Whether the area reaches over the seam.
    virtual bool IsTranslationRequired(const TMapArea& area) const = 0;
    /// One or two pieces that cover `area` inside the world. A piece from beyond the seam keeps its own coordinates and
    /// gets the XTranslate that takes it to its place; other translations stay as `area` had them.
    virtual std::vector<TMapArea> TranslateArea(const TMapArea& area) const = 0;
    virtual TMapOrientation GetOrientation() const = 0;
    /// The point with its longitude folded into the world's own.
    virtual TMapPoint ToWorldPoint(const TMapPoint& point) const = 0;
    /// In a system with a seam: whether the point lies on the FAR side of it. Otherwise: whether it lies in the world.
    virtual bool IsWorldPoint(const TMapPoint& point) const = 0;
    /// A world point unfolded into the longitudes that `area` uses. Only points with a negative X can move, and only
    /// if the area requires translation.
    virtual TMapPoint ToLocalPoint(const TMapArea& area, const TMapPoint& point) const = 0;
    /// The area with both X edges folded as ToWorldPoint does; an area over the seam comes out with Left above Right.
    virtual TMapArea ToWorldArea(const TMapArea& area) const = 0;
    /// Whether the straight path between two points crosses the seam.
    virtual bool Wraps(const TMapPoint& point1, const TMapPoint& point2) const = 0;
    /// An area from its edges. Mind the order of the arguments, which is not that of TMapArea's constructor.
    virtual TMapArea CreateMapArea(extended left, extended bottom, extended right, extended top) const = 0;
    /// The area clipped to the world, without translation.
    virtual TMapArea ConstrainRect(const TMapArea& area) const = 0;
};

/// Longitude and latitude with the seam at 180: -180 to 180.
class LMX_EXPORT TLatLonWorldSystemFactory {
public:
    static std::shared_ptr<IWorldSystem> GetObject(); ///< the one shared instance
};

/// Longitude and latitude with the seam at 0: 0 to 360.
class LMX_EXPORT TLatLonAntimeridianWorldSystemFactory {
public:
    static std::shared_ptr<IWorldSystem> GetObject(); ///< the one shared instance
};

/// New Zealand Map Grid, in metres; no seam.
class LMX_EXPORT TNZMGWorldSystemFactory {
public:
    static std::shared_ptr<IWorldSystem> GetObject(); ///< the one shared instance
};

/// Finds world systems by their keys.
class LMX_EXPORT TWorldSystemFactory {
public:
    /// The system with this identifier ("latlon", "latlonAntimerdian", "nzmg"), or nil.
    static std::shared_ptr<IWorldSystem> GetObject(const QString& identifier);
    /// The systems of a group ("latlon", "plane"); none for an unknown group.
    static std::vector<std::shared_ptr<IWorldSystem>> GetObjects(const QString& group);
};

/// An area together with the system in which its coordinates are to be read.
struct LMX_EXPORT TWorldMapArea {
    TMapArea Area;
    std::shared_ptr<IWorldSystem> WorldSystem;

    TWorldMapArea() = default;
    /// @throws EExArgumentNilException "WorldSystemVal" of "TWorldMapArea.Create" if `worldSystem` is nil.
    TWorldMapArea(const TMapArea& area, std::shared_ptr<IWorldSystem> worldSystem);
    /// The bounds of an Idrisi image. A header that is not geographic means New Zealand Map Grid; otherwise the X
    /// bounds tell on which meridian the image is centred.
    /// @throws EExArgumentNilException "IdrisiImageHeader" of "TWorldMapArea.Create" if `header` is nil.
    explicit TWorldMapArea(const TImageHeader* header);

    /// Whether both areas are the same and both systems are the same object.
    bool Equals(const TWorldMapArea& other) const noexcept;
    friend bool operator==(const TWorldMapArea& a, const TWorldMapArea& b) noexcept { return a.Equals(b); }
};

} // namespace lmx
