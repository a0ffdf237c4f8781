#pragma once

#include <lmx/Runtime/lmxGeometry.h>
#include <lmx/Widgets/lmxPaintBox32.h>

namespace lmx {

/// What a view remembers of the mouse and the space bar from one event to the next. Points are in device pixels.
class TMapMouse {
public:
    /// Whether a press is being handled. It counts as held until its release is told.
    bool GetIsDown() const { return FIsDown; }
    void SetIsDown() { FIsDown = true; }
    bool IsHolding(TMouseButton button) const { return FIsDown && FButton == button; }
    TMouseButton GetButton() const { return FButton; } ///< of the last press; no release resets it
    TPoint GetDownPoint() const { return FDownPoint; } ///< of the last press
    TPoint WayTo(TPoint point) const { return {point.X - FDownPoint.X, point.Y - FDownPoint.Y}; }

    void Press(TMouseButton button, TPoint point);
    /// The release of any button; whether a press was being handled.
    bool Release();

    /// While a button is held the platform sends the mouse to the view, wherever it is. Between the release of one
    /// button and that of another the view has given it up: moves outside do not count.
    bool CountsMove(bool isInside, bool isAnyButtonDown) const { return isInside || FHasCapture || !isAnyButtonDown; }
    /// The keyboard went elsewhere, for a menu or a dialog perhaps, which may then have the release, too.
    void NoticeLostFocus();
    /// An event of the mouse says that no button was held before it. If a release may have been missed, the drag ends
    /// like by that of another button.
    void NoticeNoButtonHeld();

    bool GetAutoPan() const { return FAutoPan; } ///< whether the space bar pans; false at first
    void SetAutoPan(bool autoPan) { FAutoPan = autoPan; }
    void PressSpace();
    void ReleaseSpace() { FIsSpaceDown = false; }
    /// Press, move and release each have a notion of their own of when the space bar pans: a move alone asks
    /// GetAutoPan, too.
    bool DoesButtonPan() const { return FIsSpaceDown; }
    bool DoesMovePan() const { return FAutoPan && FIsSpaceDown; }

private:
    bool FIsDown = false;
    TMouseButton FButton = TMouseButton::mbLeft;
    TPoint FDownPoint;
    bool FHasCapture = false;
    bool FMayMissRelease = false;
    bool FAutoPan = false;
    bool FIsSpaceDown = false;
};

} // namespace lmx
