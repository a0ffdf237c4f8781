#pragma once

#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxGeometry.h>
#include <lmx/Widgets/lmxFlatButton.h>

namespace lmx {

/// A small button that is on or off. A click and the space bar turn it over; the signals `toggled` and `clicked` tell
/// of any change and of the user's.
class LMX_EXPORT TBaseToggleButton : public TFlatButton {
public:
    explicit TBaseToggleButton(QWidget* parent = nullptr);

    bool GetSelected() const { return isChecked(); } ///< false at first
    void SetSelected(bool selected) { setChecked(selected); }
    void Toggle() { toggle(); } ///< turns it over without a click

    QSize sizeHint() const override { return {20, 20}; }

protected:
    /// Draws the button's picture for a state.
    virtual void RenderToggleState(QPainter& canvas, bool state) = 0;
    /// Where the top left corner of a picture of that size goes, so that it stands in the middle of the button; halves
    /// go to the left and up.
    TPoint GetRenderPoint(TSize pictureSize) const;

    void PaintContent(QPainter& canvas) override { RenderToggleState(canvas, GetSelected()); }
};

} // namespace lmx
