#pragma once

#include <lmx/Colour/lmxValueRange.h>

#include <QImage>
#include <QWidget>

#include <memory>

namespace lmx {
class IBaseColorCalculator;
} // namespace lmx

/// A strip of the colours that a raster's values have, from low to high, with the ends of the range in numbers under it
/// and the value under the mouse in its hint.
class TColorStrip : public QWidget {
public:
    explicit TColorStrip(QWidget* parent);

    /// Shows a calculator over its own range, or over `range` if it has none. Nil shows nothing.
    void SetColors(std::shared_ptr<lmx::IBaseColorCalculator> calculator, const lmx::TValueRange& range,
                   const QString& units);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

private:
    QRect Bar() const;
    double ValueAt(double share) const { return FRange.Low + (FRange.High - FRange.Low) * share; }
    QImage ColorsOf(int count) const; ///< one row; transparent where the calculator fails

    std::shared_ptr<lmx::IBaseColorCalculator> FCalculator;
    lmx::TValueRange FRange;
    QString FUnits;
};
