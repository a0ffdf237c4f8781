#pragma once

#include <lmx/Coordinates/wskWorldSystem.h>

#include <memory>
#include <vector>

namespace lmx::tests {

/// A world of any area and orientation in which map points are world points and nothing wraps.
class TTestWorldSystem : public IWorldSystem {
public:
    TTestWorldSystem(const TMapArea& area, TMapOrientation orientation) : FArea(area), FOrientation(orientation) {}

    QString Name() const override { return {}; }
    QString Identifier() const override { return {}; }
    QString Units() const override { return {}; }
    TMeridian Merdian() const override { return TMeridian::mrdNA; }
    QString GetGroup() const override { return {}; }
    const TMapArea& Area() const override { return FArea; }
    bool IsTranslationRequired(const TMapArea&) const override { return false; }
    std::vector<TMapArea> TranslateArea(const TMapArea& area) const override { return {area}; }
    TMapOrientation GetOrientation() const override { return FOrientation; }
    TMapPoint ToWorldPoint(const TMapPoint& point) const override { return point; }
    bool IsWorldPoint(const TMapPoint&) const override { return true; }
    TMapPoint ToLocalPoint(const TMapArea&, const TMapPoint& point) const override { return point; }
    TMapArea ToWorldArea(const TMapArea& area) const override { return area; }
    bool Wraps(const TMapPoint&, const TMapPoint&) const override { return false; }
    TMapArea CreateMapArea(extended left, extended bottom, extended right, extended top) const override {
        return {left, top, right, bottom};
    }
    TMapArea ConstrainRect(const TMapArea& area) const override { return area; }

private:
    TMapArea FArea;
    TMapOrientation FOrientation;
};

} // namespace lmx::tests
