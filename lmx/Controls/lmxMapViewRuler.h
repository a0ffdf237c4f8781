#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <QWidget>

namespace lmx {

/// The direction of a strip of ticks. Not the orientation of a ruler on the map (lmxRulerMapLayer.h), whose order is
/// the other way round.
enum class TMapRulerOrientation { roHorizontal, roVertical };

/// A strip of ticks beside a map, one every 15 logical pixels, every tenth one across the whole strip. It is a fixed
/// scale that knows nothing of the map.
class LMX_EXPORT TMapViewRuler : public QWidget {
public:
    explicit TMapViewRuler(QWidget* parent = nullptr); ///< horizontal, 20 x 20

    TMapRulerOrientation GetOrientation() const { return FOrientation; }
    void SetOrientation(TMapRulerOrientation orientation);

    QSize sizeHint() const override { return {20, 20}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    TMapRulerOrientation FOrientation = TMapRulerOrientation::roHorizontal;
};

} // namespace lmx
