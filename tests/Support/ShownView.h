#pragma once

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <tests/Support/TestLayer.h>

#include <QCoreApplication>
#include <QMouseEvent>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>

namespace lmx::tests {

/// A view of 200 x 100 logical pixels on a manager of its own, shown and painted. Positions of the mouse are logical.
template<class ViewClass = TMapViewControl>
struct TShownViewOf {
    TShownViewOf() {
        View.resize(200, 100);
        View.SetLayerManager(Manager);
        View.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&View));
        Settle();
    }

    /// Lets posted events and paints happen.
    static void Settle() { QCoreApplication::processEvents(); }

    /// Adds an ordinary, ready layer with an area in the world of longitudes -180 to 180; the first makes the world.
    TTestLayer* AddReadyLayer(const QString& name = {}) {
        auto layer = std::make_unique<TTestLayer>(Manager);
        layer->SetLayerName(name);
        layer->SetLayerArea(LatLonArea({0, 10, 20, 0}));
        layer->SetIsReadyToDraw(true);
        return Manager->GetLayers().Add(std::move(layer));
    }

    void Press(Qt::MouseButton button, QPoint at) { QTest::mousePress(&View, button, Qt::NoModifier, at); }
    void Move(QPoint at) {
        QTest::mouseMove(&View, at);
        Settle();
    }
    /// A move with no button held, to exactly this place: the window system's own may be a pixel off on dense screens.
    void Hover(QPointF at) {
        QMouseEvent move(QEvent::MouseMove, at, View.mapToGlobal(at), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&View, &move);
    }
    void Release(Qt::MouseButton button, QPoint at) { QTest::mouseRelease(&View, button, Qt::NoModifier, at); }
    /// Presses the left button, moves and lets go.
    void Drag(QPoint from, QPoint to) {
        Press(Qt::LeftButton, from);
        Move(to);
        Release(Qt::LeftButton, to);
    }

    /// Paints now and gives the pixel at a place of the buffer.
    TColor32 PixelAt(int x, int y) {
        Settle();
        View.grab();
        return View.GetBuffer().ScanLine(y)[x];
    }

    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    ViewClass View;
};

using TShownView = TShownViewOf<>;

} // namespace lmx::tests
