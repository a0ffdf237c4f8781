#pragma once

#include <lmx/Layers/Objects/lmxBaseObjectLayerItem.h>

#include <QString>

namespace lmx {

class IWorldSystem;

/// A bar of a round length on the ground, and its label. On a map in degrees a length holds at one latitude only: the
/// bar is that of the middle of the map, and says so. It belongs to a picture and is kept in no document.
class TScaleBarItem final : public TBaseObjectLayerItem {
public:
    using TBaseObjectLayerItem::TBaseObjectLayerItem;

    /// Metres in a map unit from west to east at the latitude or northing `y`; 0 at a pole.
    static double MetresPerUnit(const IWorldSystem& system, double y);
    /// The largest 1, 2 or 5 times a power of ten that is at most `length`; 0 if that is not above 0 or no number.
    static double RoundLength(double length);
    /// "500 km", "20 m", "0.5 m".
    static QString LengthText(double metres);

    QString GetObjectType() const override;      ///< "Scale bar"
    QString GetObjectClassType() const override; ///< empty
    /// By the viewport of the map. At a pole there is no bar.
    void Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) override;
};

} // namespace lmx
