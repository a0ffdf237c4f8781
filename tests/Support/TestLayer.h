#pragma once

#include <lmx/Coordinates/wskWorldSystem.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Layers/lmxBaseLayerManagerLayer.h>
#include <lmx/Layers/lmxLayerManager.h>

#include <functional>
#include <memory>
#include <utility>

namespace lmx::tests {

/// A layer that says what happens to it, and does nothing else.
template<class Base>
class TTestLayerOf : public Base {
public:
    using Base::Base;

    QString GetLayerTypeName() const override { return QStringLiteral("Test"); }
    TMouseSupport GetMouseSupport() const override { return MouseSupport; }
    bool GetHasContent() const override { return HasContent; }
    void Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) override {
        ++Paints;
        if (OnPaint)
            OnPaint(world, viewport, bitmap);
    }
    void BeforeLayerManagerRemoved(ILayerManager*) override { ++Removals; }
    void MouseDown(TWorldViewport*, TPoint point) override { Mouse += QStringLiteral("down %1 ").arg(At(point)); }
    void MouseMove(TWorldViewport*, TPoint point, bool isDown) override {
        Mouse += QStringLiteral("move %1 %2 ").arg(At(point)).arg(isDown);
    }
    void MouseUp(TWorldViewport*, TPoint point, bool wasDown) override {
        Mouse += QStringLiteral("up %1 %2 ").arg(At(point)).arg(wasDown);
    }

    TMouseSupport MouseSupport;
    bool HasContent = true;
    int Paints = 0;
    int Removals = 0;
    QString Mouse;
    std::function<void(TWorld*, TWorldViewport*, TBitmap32&)> OnPaint;

private:
    static QString At(TPoint point) { return QStringLiteral("%1,%2").arg(point.X).arg(point.Y); }
};

class TTestLayer : public TTestLayerOf<TBaseLayerManagerLayer> {
public:
    using TTestLayerOf::TTestLayerOf;
};

inline TWorldMapArea LatLonArea(const TMapArea& area) {
    return {area, TLatLonWorldSystemFactory::GetObject()};
}

/// Adds a test layer to the stack.
inline TTestLayer* AddTestLayer(const std::shared_ptr<ILayerManager>& manager, const QString& name = {}) {
    auto layer = std::make_unique<TTestLayer>(manager);
    layer->SetLayerName(name);
    return manager->GetLayers().Add(std::move(layer));
}

} // namespace lmx::tests
