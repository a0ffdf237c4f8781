#pragma once

#include <lmx/Controls/lmxMapViewTypes.h>
#include <lmx/Coordinates/wskMappingTypes.h>
#include <lmx/Layers/lmxBaseLayerManagerLayer.h>
#include <lmx/Runtime/lmxBorrowed.h>

#include <QString>

#include <functional>
#include <memory>

// A mode of the host's own: a drag measures the shortest way over the earth. It shows what mdCustom is for, and a type
// of layer of the host's own.

/// Length of the shortest way between two places, longitude and latitude in degrees, on a sphere of the earth's mean
/// radius, in kilometres.
double DistanceOnEarth(const lmx::TMapPoint& from, const lmx::TMapPoint& to);

/// The place at a share of that way, 0 at its beginning and 1 at its end. Between opposite places, where every way is a
/// shortest one, it is one of them.
lmx::TMapPoint PlaceOnWay(const lmx::TMapPoint& from, const lmx::TMapPoint& to, double share);

/// The shortest way between two places, drawn in pieces where it crosses the seam of the world.
class TWayLayer : public lmx::TBaseLayerManagerLayer {
public:
    explicit TWayLayer(const std::shared_ptr<lmx::ILayerManager>& manager);

    QString GetLayerTypeName() const override { return "Way"; }
    bool GetShowsInLayersList() const override { return false; }
    void Paint(lmx::TWorld* world, lmx::TWorldViewport* viewport, lmx::TBitmap32& bitmap) override;

    void SetWay(const lmx::TMapPoint& from, const lmx::TMapPoint& to);

private:
    lmx::TMapPoint FFrom;
    lmx::TMapPoint FTo;
};

/// Set it as the view's custom mode object. The first press puts a TWayLayer on top of the view's stack, each later one
/// brings it there again.
class TMeasureMode : public lmx::IMapViewControlCustomModeObject {
public:
    /// Calls `tell` with the length of the way, as text, whenever it changes.
    explicit TMeasureMode(std::function<void(const QString&)> tell) : FTell(std::move(tell)) {}

    void MouseDown(lmx::TMapViewControl* sender, const lmx::TPoint& point, const lmx::TMapPoint& mapPoint) override;
    void MouseMove(lmx::TMapViewControl* sender, const lmx::TPoint& point, const lmx::TMapPoint& mapPoint) override;
    void MouseUp(lmx::TMapViewControl* sender, const lmx::TPoint& point, const lmx::TMapPoint& mapPoint) override;
    lmx::TCursor GetCursor() const override { return lmx::TCursor::crCross; }

    /// Takes the way off the map, and ends a drag that measures.
    void Clear();

private:
    std::function<void(const QString&)> FTell;
    lmx::TBorrowed<TWayLayer> FWay;
    lmx::TMapPoint FFrom;
    bool FIsMeasuring = false;
};
