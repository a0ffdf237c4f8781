#pragma once

#include <lmx/Widgets/lmxGradientEditor.h>

#include <QFont>
#include <QImage>
#include <QPainter>
#include <QPalette>

namespace lmx {

/// Lays out and paints a gradient editor. What stays the same while a stop is dragged is painted once: the axes, and
/// the handles of the other stops.
class TGradientEditorPicture {
public:
    explicit TGradientEditorPicture(const TGradientEditor& editor) : FEditor(editor) {}

    QRect BarRect() const;
    QRectF GrabberRect(double location) const;
    double XAt(double location) const; ///< of the middle of a handle; beyond the bar that of the nearest end
    double LocationAt(double x) const; ///< not kept from 0 to 1
    int LeastHeight() const;

    void Paint(QPainter& painter);

private:
    /// What the pieces were painted for.
    struct TKey {
        QSize Size;
        double Ratio = 0;
        QFont Font;
        QPalette Palette;
        bool IsEnabled = true;
        TGradientEditorOptions Options;
        double Low = 0;
        double High = 0;
        friend bool operator==(const TKey&, const TKey&) = default;
    };

    int LineHeight() const;
    int AxisHeight() const;
    bool Shows(TGradientEditorOption option) const { return FEditor.GetOptions().Contains(option); }
    QImage NewLayer() const;
    void UpdateKey();
    void UpdateAxes();
    void UpdateBar();
    void UpdateOthers();
    void DrawAxis(QPainter& painter, bool isValues) const;
    void DrawStop(QPainter& painter, TGradientStops::TId id, bool isSelected) const;
    void DrawFocusMark(QPainter& painter) const;
    void DrawLabels(QPainter& painter) const;
    QString LabelOf(TGradientStops::TId id) const;

    const TGradientEditor& FEditor;
    TKey FKey;
    QImage FAxes;
    QImage FBar;
    QImage FOthers;
    std::uint64_t FBarChange = 0;
    std::uint64_t FOthersChange = 0;
    TGradientStops::TId FOthersSelected = TGradientStops::None;
};

} // namespace lmx
