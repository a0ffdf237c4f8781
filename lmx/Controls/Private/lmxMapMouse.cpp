#include <lmx/Controls/Private/lmxMapMouse.h>

#include <utility>

namespace lmx {

void TMapMouse::Press(TMouseButton button, TPoint point) {
    FButton = button;
    FDownPoint = point;
    if (button != TMouseButton::mbRight)
        FHasCapture = true;
}

bool TMapMouse::Release() {
    FHasCapture = false;
    FMayMissRelease = false;
    return std::exchange(FIsDown, false);
}

// Whoever has the keyboard now hears of the keys that go up.
void TMapMouse::NoticeLostFocus() {
    FIsSpaceDown = false;
    FMayMissRelease = FIsDown;
}

void TMapMouse::NoticeNoButtonHeld() {
    if (FMayMissRelease)
        Release();
}

void TMapMouse::PressSpace() {
    if (FAutoPan)
        FIsSpaceDown = true;
}

} // namespace lmx
