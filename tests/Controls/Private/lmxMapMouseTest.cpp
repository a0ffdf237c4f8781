#include <lmx/Controls/Private/lmxMapMouse.h>
#include <tests/Support/GeometryPrinters.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using enum TMouseButton;

TEST(MapMouse, RemembersTheLastPress) {
    TMapMouse mouse;
    EXPECT_EQ(mouse.GetButton(), mbLeft);
    mouse.Press(mbMiddle, {3, 4});
    EXPECT_FALSE(mouse.GetIsDown());
    mouse.SetIsDown();
    EXPECT_TRUE(mouse.IsHolding(mbMiddle));
    EXPECT_FALSE(mouse.IsHolding(mbLeft));
    EXPECT_EQ(mouse.WayTo({10, 2}), TPoint(7, -2));
    EXPECT_TRUE(mouse.Release());
    EXPECT_FALSE(mouse.Release());
    EXPECT_EQ(mouse.GetButton(), mbMiddle);
    EXPECT_EQ(mouse.GetDownPoint(), TPoint(3, 4));
}

TEST(MapMouse, CountsMovesOutsideWhileItHasTheMouse) {
    TMapMouse mouse;
    EXPECT_TRUE(mouse.CountsMove(true, true));
    EXPECT_TRUE(mouse.CountsMove(false, false));
    EXPECT_FALSE(mouse.CountsMove(false, true));
    mouse.Press(mbRight, {});
    EXPECT_FALSE(mouse.CountsMove(false, true));
    mouse.Press(mbLeft, {});
    EXPECT_TRUE(mouse.CountsMove(false, true));
    mouse.Release();
    EXPECT_FALSE(mouse.CountsMove(false, true));
}

TEST(MapMouse, ADragEndsWithoutItsReleaseOnlyAfterTheFocusWent) {
    TMapMouse mouse;
    mouse.Press(mbLeft, {});
    mouse.SetIsDown();
    mouse.NoticeNoButtonHeld();
    EXPECT_TRUE(mouse.GetIsDown());
    mouse.NoticeLostFocus();
    EXPECT_TRUE(mouse.GetIsDown());
    mouse.NoticeNoButtonHeld();
    EXPECT_FALSE(mouse.GetIsDown());
    mouse.NoticeLostFocus(); // with no drag there is nothing to miss
    mouse.SetIsDown();
    mouse.NoticeNoButtonHeld();
    EXPECT_TRUE(mouse.GetIsDown());
}

TEST(MapMouse, TheSpaceBarPansWhereItMay) {
    TMapMouse mouse;
    mouse.PressSpace();
    EXPECT_FALSE(mouse.DoesButtonPan());
    mouse.SetAutoPan(true);
    mouse.PressSpace();
    EXPECT_TRUE(mouse.DoesButtonPan());
    EXPECT_TRUE(mouse.DoesMovePan());
    mouse.SetAutoPan(false);
    EXPECT_TRUE(mouse.DoesButtonPan());
    EXPECT_FALSE(mouse.DoesMovePan());
    mouse.ReleaseSpace();
    EXPECT_FALSE(mouse.DoesButtonPan());
    mouse.SetAutoPan(true);
    mouse.PressSpace();
    mouse.NoticeLostFocus();
    EXPECT_FALSE(mouse.DoesButtonPan());
}

} // namespace
} // namespace lmx
