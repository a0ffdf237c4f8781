#include <lmx/Layers/Objects/lmxObjectGeometry.h>

#include <lmx/Runtime/lmxExtended.h>

#include <algorithm>

namespace lmx {

namespace {

constexpr std::int32_t GrabberSide = 8;
constexpr std::int32_t GrabberReach = 2; // around a grabber
constexpr std::int32_t SmallestSide = 26;

std::int32_t RoundSaturated(extended value) {
    constexpr extended beyondEveryRect = 0x1p40L;
    return SaturateToInt32(Round(std::clamp(value, -beyondEveryRect, beyondEveryRect)));
}

std::int32_t Sum(std::int32_t a, std::int32_t b) {
    return SaturateToInt32(std::int64_t{a} + b);
}

TRect Inflated(const TRect& rect, std::int32_t reach) {
    return {Sum(rect.Left, -reach), Sum(rect.Top, -reach), Sum(rect.Right, reach), Sum(rect.Bottom, reach)};
}

// Start of a grabber in the middle of a side.
std::int32_t MiddleOf(std::int32_t start, std::int32_t length, std::int32_t side) {
    const extended offset = static_cast<extended>(length) / 2 - static_cast<extended>(side) / 2;
    return SaturateToInt32(start + Round(offset));
}

struct TGrabber {
    TSelectedElement Element;
    TRect TGrabberRects::*Rect;
};

// In the order in which a press looks at them.
constexpr TGrabber Corners[] = {
    {TSelectedElement::soTopLeftGrabber, &TGrabberRects::TopLeft},
    {TSelectedElement::soTopRightGrabber, &TGrabberRects::TopRight},
    {TSelectedElement::soBottomLeftGrabber, &TGrabberRects::BottomLeft},
    {TSelectedElement::soBottomRightGrabber, &TGrabberRects::BottomRight},
};
constexpr TGrabber Sides[] = {
    {TSelectedElement::soTopCenterGrabber, &TGrabberRects::TopCenter},
    {TSelectedElement::soMiddleLeftGrabber, &TGrabberRects::MiddleLeft},
    {TSelectedElement::soMiddleRightGrabber, &TGrabberRects::MiddleRight},
    {TSelectedElement::soBottomCenterGrabber, &TGrabberRects::BottomCenter},
};

// The edges that an element moves. Only corners move two of them.
struct TMovedEdges {
    bool Left;
    bool Top;
    bool Right;
    bool Bottom;

    bool IsCorner() const { return (Left || Right) && (Top || Bottom); }
};

TMovedEdges MovedEdges(TSelectedElement element) {
    switch (element) {
    case TSelectedElement::soTopLeftGrabber:
        return {true, true, false, false};
    case TSelectedElement::soTopCenterGrabber:
        return {false, true, false, false};
    case TSelectedElement::soTopRightGrabber:
        return {false, true, true, false};
    case TSelectedElement::soMiddleLeftGrabber:
        return {true, false, false, false};
    case TSelectedElement::soMiddleRightGrabber:
        return {false, false, true, false};
    case TSelectedElement::soBottomLeftGrabber:
        return {true, false, false, true};
    case TSelectedElement::soBottomCenterGrabber:
        return {false, false, false, true};
    case TSelectedElement::soBottomRightGrabber:
        return {false, false, true, true};
    case TSelectedElement::soNone:
    case TSelectedElement::soObject:
        break;
    }
    return {};
}

std::int32_t WidthInProportion(const TRect& rect, const TRect& proportions) {
    const extended aspect = static_cast<extended>(proportions.GetWidth()) / proportions.GetHeight();
    return RoundSaturated(rect.GetHeight() * aspect);
}

TRect Moved(const TRect& rect, TPoint topLeft) {
    return {topLeft.X, topLeft.Y, Sum(topLeft.X, rect.GetWidth()), Sum(topLeft.Y, rect.GetHeight())};
}

} // namespace

std::int32_t ScaledPixels(std::int32_t pixels, double factor) {
    return RoundSaturated(pixels * static_cast<extended>(factor));
}

TRect GrabberArea(const TRect& rect, double ratio) {
    const std::int32_t smallest = ScaledPixels(SmallestSide, ratio);
    TRect area = rect;
    area.SetWidth(std::max(smallest, rect.GetWidth()));
    area.SetHeight(std::max(smallest, rect.GetHeight()));
    return area;
}

TGrabberRects PlaceGrabbers(const TRect& area, double ratio) {
    const std::int32_t side = ScaledPixels(GrabberSide, ratio);
    const std::int32_t right = Sum(area.Right, -side);
    const std::int32_t bottom = Sum(area.Bottom, -side);
    const std::int32_t centerX = MiddleOf(area.Left, area.GetWidth(), side);
    const std::int32_t centerY = MiddleOf(area.Top, area.GetHeight(), side);
    const auto square = [side](std::int32_t left, std::int32_t top) {
        return TRect(left, top, Sum(left, side), Sum(top, side));
    };
    TGrabberRects grabbers;
    grabbers.TopLeft = square(area.Left, area.Top);
    grabbers.TopCenter = square(centerX, area.Top);
    grabbers.TopRight = square(right, area.Top);
    grabbers.MiddleLeft = square(area.Left, centerY);
    grabbers.MiddleRight = square(right, centerY);
    grabbers.BottomLeft = square(area.Left, bottom);
    grabbers.BottomCenter = square(centerX, bottom);
    grabbers.BottomRight = square(right, bottom);
    return grabbers;
}

TSelectedElement ElementAt(const TRect& rect, const TGrabberRects& grabbers, TGrabberOptions options, TPoint point,
                           double ratio) {
    if (!rect.Contains(point))
        return TSelectedElement::soNone;
    if (!options.Contains(TGrabberOption::goResizable))
        return TSelectedElement::soObject;
    const std::int32_t reach = ScaledPixels(GrabberReach, ratio);
    const auto holdsPoint = [&](const TGrabber& grabber) {
        return Inflated(grabbers.*grabber.Rect, reach).Contains(point);
    };
    if (const auto* corner = std::find_if(std::begin(Corners), std::end(Corners), holdsPoint);
        corner != std::end(Corners))
        return corner->Element;
    if (options.Contains(TGrabberOption::goFixedAspect))
        return TSelectedElement::soObject;
    const auto* side = std::find_if(std::begin(Sides), std::end(Sides), holdsPoint);
    return side != std::end(Sides) ? side->Element : TSelectedElement::soObject;
}

TRect DraggedRect(const TRect& pressed, TPoint offset, TSelectedElement element, TPoint point, bool fixedAspect) {
    if (element == TSelectedElement::soObject)
        return Moved(pressed, {SaturateToInt32(std::int64_t{point.X} - offset.X),
                               SaturateToInt32(std::int64_t{point.Y} - offset.Y)});
    const TMovedEdges edges = MovedEdges(element);
    TRect rect = pressed;
    if (edges.Left)
        rect.Left = point.X;
    if (edges.Top)
        rect.Top = point.Y;
    if (edges.Right)
        rect.Right = point.X;
    if (edges.Bottom)
        rect.Bottom = point.Y;
    if (fixedAspect && edges.IsCorner() && pressed.GetHeight() != 0)
        rect.SetWidth(WidthInProportion(rect, pressed));
    return rect;
}

} // namespace lmx
