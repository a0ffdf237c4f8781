#include <lmx/Layers/Objects/lmxObjectGeometry.h>
#include <tests/Support/GeometryPrinters.h>

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <utility>
#include <vector>

namespace lmx {

namespace {

using enum TSelectedElement;
using enum TGrabberOption;

constexpr std::int32_t Least = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t Most = std::numeric_limits<std::int32_t>::max();

const std::array<TRect TGrabberRects::*, 8> AllGrabbers = {
    &TGrabberRects::TopLeft,     &TGrabberRects::TopCenter,  &TGrabberRects::TopRight,     &TGrabberRects::MiddleLeft,
    &TGrabberRects::MiddleRight, &TGrabberRects::BottomLeft, &TGrabberRects::BottomCenter, &TGrabberRects::BottomRight};

TEST(ObjectGeometry, ItsEnumerationsHaveTheirOrder) {
    EXPECT_EQ(static_cast<int>(goResizable), 0);
    EXPECT_EQ(static_cast<int>(goFixedAspect), 1);
    const std::vector<TSelectedElement> elements = {soNone,
                                                    soObject,
                                                    soTopLeftGrabber,
                                                    soTopCenterGrabber,
                                                    soTopRightGrabber,
                                                    soMiddleLeftGrabber,
                                                    soMiddleRightGrabber,
                                                    soBottomLeftGrabber,
                                                    soBottomCenterGrabber,
                                                    soBottomRightGrabber};
    for (std::size_t i = 0; i < elements.size(); ++i)
        EXPECT_EQ(static_cast<std::size_t>(elements[i]), i);
}

// ---- Where grabbers stand

TEST(GrabberArea, IsAtLeast26PixelsLarge) {
    EXPECT_EQ(GrabberArea({10, 20, 110, 60}), TRect(10, 20, 110, 60));
    EXPECT_EQ(GrabberArea({10, 20, 36, 46}), TRect(10, 20, 36, 46));
    EXPECT_EQ(GrabberArea({10, 20, 35, 60}), TRect(10, 20, 36, 60));
    EXPECT_EQ(GrabberArea({10, 20, 110, 45}), TRect(10, 20, 110, 46));
    EXPECT_EQ(GrabberArea({10, 20, -100, -100}), TRect(10, 20, 36, 46)) << "inverted";
}

TEST(GrabberArea, IsLargerOnADenseScreen) {
    EXPECT_EQ(GrabberArea({0, 0, 5, 5}, 2), TRect(0, 0, 52, 52));
    EXPECT_EQ(GrabberArea({0, 0, 5, 5}, 1.25), TRect(0, 0, 32, 32)) << "32.5 to the even one";
}

TEST(PlaceGrabbers, StandAtTheCornersAndTheMiddlesOfTheSides) {
    const TGrabberRects grabbers = PlaceGrabbers({100, 200, 200, 260});
    EXPECT_EQ(grabbers.TopLeft, TRect(100, 200, 108, 208));
    EXPECT_EQ(grabbers.TopCenter, TRect(146, 200, 154, 208));
    EXPECT_EQ(grabbers.TopRight, TRect(192, 200, 200, 208));
    EXPECT_EQ(grabbers.MiddleLeft, TRect(100, 226, 108, 234));
    EXPECT_EQ(grabbers.MiddleRight, TRect(192, 226, 200, 234));
    EXPECT_EQ(grabbers.BottomLeft, TRect(100, 252, 108, 260));
    EXPECT_EQ(grabbers.BottomCenter, TRect(146, 252, 154, 260));
    EXPECT_EQ(grabbers.BottomRight, TRect(192, 252, 200, 260));
}

TEST(PlaceGrabbers, RoundHalvesToTheEvenPixel) {
    EXPECT_EQ(PlaceGrabbers({0, 0, 27, 29}).TopCenter.Left, 10); // 13.5 - 4 = 9.5
    EXPECT_EQ(PlaceGrabbers({0, 0, 27, 29}).MiddleLeft.Top, 10); // 14.5 - 4 = 10.5
    EXPECT_EQ(PlaceGrabbers({1, 1, 28, 30}).TopCenter.Left, 11); // the distance is rounded, not the place
    EXPECT_EQ(PlaceGrabbers({1, 1, 28, 30}).MiddleLeft.Top, 11);
}

TEST(PlaceGrabbers, AreLargerOnADenseScreen) {
    const TGrabberRects grabbers = PlaceGrabbers({0, 0, 200, 100}, 1.5);
    EXPECT_EQ(grabbers.TopLeft, TRect(0, 0, 12, 12));
    EXPECT_EQ(grabbers.TopCenter, TRect(94, 0, 106, 12));
    EXPECT_EQ(grabbers.BottomRight, TRect(188, 88, 200, 100));
}

TEST(PlaceGrabbers, SaturateFarAway) {
    const TGrabberRects grabbers = PlaceGrabbers({Least, Least, Most, Most});
    EXPECT_EQ(grabbers.TopLeft, TRect(Least, Least, Least + 8, Least + 8));
    EXPECT_EQ(grabbers.BottomRight, TRect(Most - 8, Most - 8, Most, Most));
    EXPECT_EQ(PlaceGrabbers({Most - 1, 0, Most, 10}).TopLeft, TRect(Most - 1, 0, Most, 8));
}

// ---- What a press takes hold of

const TRect Pressed(100, 200, 200, 260);
const TGrabberRects Grabbers = PlaceGrabbers(Pressed);

TSelectedElement Press(TGrabberOptions options, TPoint point) {
    return ElementAt(Pressed, Grabbers, options, point);
}

struct TPressRow {
    TPoint Point;
    TSelectedElement Element;
    bool IsCorner;
};

const std::vector<TPressRow>& Presses() {
    static const std::vector<TPressRow> rows = {
        {{104, 204}, soTopLeftGrabber, true},       {{150, 204}, soTopCenterGrabber, false},
        {{196, 204}, soTopRightGrabber, true},      {{104, 230}, soMiddleLeftGrabber, false},
        {{196, 230}, soMiddleRightGrabber, false},  {{104, 256}, soBottomLeftGrabber, true},
        {{150, 256}, soBottomCenterGrabber, false}, {{196, 256}, soBottomRightGrabber, true},
    };
    return rows;
}

TEST(ElementAt, IsTheGrabberUnderTheMouse) {
    for (const TPressRow& row : Presses()) {
        EXPECT_EQ(Press({goResizable}, row.Point), row.Element);
        EXPECT_EQ(Press({goResizable, goFixedAspect}, row.Point), row.IsCorner ? row.Element : soObject);
        EXPECT_EQ(Press({}, row.Point), soObject);
        EXPECT_EQ(Press({goFixedAspect}, row.Point), soObject) << "not resizable";
    }
}

TEST(ElementAt, IsTheObjectElsewhereInItAndNothingOutside) {
    EXPECT_EQ(Press({goResizable}, {130, 230}), soObject);
    for (const TPoint outside : {TPoint(99, 230), TPoint(200, 230), TPoint(150, 199), TPoint(150, 260)})
        EXPECT_EQ(Press({goResizable}, outside), soNone);
    EXPECT_EQ(ElementAt({10, 10, 10, 10}, {}, {}, {10, 10}), soNone) << "an empty one";
    EXPECT_EQ(ElementAt({20, 20, 10, 10}, {}, {}, {15, 15}), soNone) << "an inverted one";
}

TEST(ElementAt, GrabbersReachTwoPixelsFurther) {
    EXPECT_EQ(Press({goResizable}, {109, 209}), soTopLeftGrabber);
    EXPECT_EQ(Press({goResizable}, {110, 204}), soObject);
    EXPECT_EQ(Press({goResizable}, {144, 204}), soTopCenterGrabber);
    EXPECT_EQ(Press({goResizable}, {143, 204}), soObject);
    EXPECT_EQ(Press({goResizable}, {98, 204}), soNone) << "also where that is outside of the object";
    EXPECT_EQ(ElementAt(Pressed, Grabbers, {goResizable}, {111, 204}, 2), soTopLeftGrabber);
    EXPECT_EQ(ElementAt(Pressed, Grabbers, {goResizable}, {112, 204}, 2), soObject);
}

// Of grabbers that overlap the first counts, corners before sides.
TEST(ElementAt, LooksAtTheCornersFirst) {
    TGrabberRects all;
    for (const auto grabber : AllGrabbers)
        all.*grabber = {0, 0, 8, 8};
    const TRect rect(0, 0, 50, 50);
    const std::vector<std::pair<TRect TGrabberRects::*, TSelectedElement>> order = {
        {&TGrabberRects::TopLeft, soTopLeftGrabber},         {&TGrabberRects::TopRight, soTopRightGrabber},
        {&TGrabberRects::BottomLeft, soBottomLeftGrabber},   {&TGrabberRects::BottomRight, soBottomRightGrabber},
        {&TGrabberRects::TopCenter, soTopCenterGrabber},     {&TGrabberRects::MiddleLeft, soMiddleLeftGrabber},
        {&TGrabberRects::MiddleRight, soMiddleRightGrabber}, {&TGrabberRects::BottomCenter, soBottomCenterGrabber}};
    for (const auto& [grabber, element] : order) {
        EXPECT_EQ(ElementAt(rect, all, {goResizable}, {4, 4}), element);
        all.*grabber = {30, 30, 38, 38};
    }
    EXPECT_EQ(ElementAt(rect, all, {goResizable}, {4, 4}), soObject);
}

TEST(ElementAt, GrabbersOfASmallObjectAreOutOfReach) {
    const TRect small(0, 0, 10, 10);
    const TGrabberRects grabbers = PlaceGrabbers(GrabberArea(small));
    EXPECT_EQ(ElementAt(small, grabbers, {goResizable}, {22, 22}), soNone);
    EXPECT_EQ(ElementAt(small, grabbers, {goResizable}, {5, 5}), soTopLeftGrabber);
}

// ---- What a drag makes of the rectangle

struct TDragRow {
    const char* Name;
    TSelectedElement Element;
    TRect Free;  ///< by a drag to (30, 50)
    TRect Fixed; ///< the same with fixed proportions, 2 to 1
};

class DraggedRectangle : public testing::TestWithParam<TDragRow> {};

TEST_P(DraggedRectangle, FollowsTheMouse) {
    const TRect pressed(100, 200, 200, 250);
    EXPECT_EQ(DraggedRect(pressed, {7, 9}, GetParam().Element, {30, 50}, false), GetParam().Free);
    EXPECT_EQ(DraggedRect(pressed, {7, 9}, GetParam().Element, {30, 50}, true), GetParam().Fixed);
}

INSTANTIATE_TEST_SUITE_P(
    Elements, DraggedRectangle,
    testing::Values(TDragRow{"None", soNone, {100, 200, 200, 250}, {100, 200, 200, 250}},
                    TDragRow{"Object", soObject, {23, 41, 123, 91}, {23, 41, 123, 91}},
                    TDragRow{"TopLeft", soTopLeftGrabber, {30, 50, 200, 250}, {30, 50, 430, 250}},
                    TDragRow{"TopCenter", soTopCenterGrabber, {100, 50, 200, 250}, {100, 50, 200, 250}},
                    TDragRow{"TopRight", soTopRightGrabber, {100, 50, 30, 250}, {100, 50, 500, 250}},
                    TDragRow{"MiddleLeft", soMiddleLeftGrabber, {30, 200, 200, 250}, {30, 200, 200, 250}},
                    TDragRow{"MiddleRight", soMiddleRightGrabber, {100, 200, 30, 250}, {100, 200, 30, 250}},
                    TDragRow{"BottomLeft", soBottomLeftGrabber, {30, 200, 200, 50}, {30, 200, -270, 50}},
                    TDragRow{"BottomCenter", soBottomCenterGrabber, {100, 200, 200, 50}, {100, 200, 200, 50}},
                    TDragRow{"BottomRight", soBottomRightGrabber, {100, 200, 30, 50}, {100, 200, -200, 50}}),
    [](const auto& row) { return row.param.Name; });

TEST(DraggedRect, TheWidthInProportionIsRoundedToTheNearestEven) {
    const TRect pressed(0, 0, 5, 10);
    const auto widthAt = [&](std::int32_t bottom) {
        return DraggedRect(pressed, {}, soBottomRightGrabber, {99, bottom}, true).GetWidth();
    };
    EXPECT_EQ(widthAt(3), 2); // 1.5
    EXPECT_EQ(widthAt(5), 2); // 2.5
    EXPECT_EQ(widthAt(6), 3);
    EXPECT_EQ(widthAt(0), 0);
}

TEST(DraggedRect, WithoutAHeightAtThePressTheWidthStays) {
    EXPECT_EQ(DraggedRect({0, 10, 50, 10}, {}, soBottomRightGrabber, {70, 90}, true), TRect(0, 10, 70, 90));
    EXPECT_EQ(DraggedRect({0, 10, 50, 10}, {}, soTopLeftGrabber, {-7, -9}, true), TRect(-7, -9, 50, 10));
}

TEST(DraggedRect, WithoutAWidthAtThePressTheWidthIsNone) {
    EXPECT_EQ(DraggedRect({10, 0, 10, 50}, {}, soBottomRightGrabber, {70, 90}, true), TRect(10, 0, 10, 90));
}

TEST(DraggedRect, Saturates) {
    EXPECT_EQ(DraggedRect({0, 0, 100, 100}, {-10, -10}, soObject, {Most, Least}, false),
              TRect(Most, Least + 10, Most, Least + 110));
    EXPECT_EQ(DraggedRect({Least, 0, Most, 1}, {}, soBottomRightGrabber, {0, Most}, true), TRect(Least, 0, -1, Most));
    EXPECT_EQ(DraggedRect({0, 0, Most, -1}, {}, soBottomRightGrabber, {0, Most}, true), TRect(0, 0, Least, Most));
}

} // namespace
} // namespace lmx
