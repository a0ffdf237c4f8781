#include <lmx/Graphics/Private/lmxPictureWindow.h>
#include <tests/Graphics/Pictures.h>
#include <tests/Support/GeometryPrinters.h>

#include <gtest/gtest.h>

#include <functional>

namespace lmx {
namespace {

using tests::AllPixels;

constexpr TColor32 Red = 0xFFFF0000;
constexpr TColor32 Half = 0x80112233;
const TSize Whole(60, 40);

using TDraw = std::function<void(const TPictureWindow&)>;

/// What of the whole is in `part`.
std::vector<TColor32> CutOut(const TDraw& draw, const TRect& part) {
    TBitmap32 whole(Whole.cx, Whole.cy);
    draw(TPictureWindow(whole));
    TBitmap32 cut(part.GetWidth(), part.GetHeight());
    cut.Draw(-part.Left, -part.Top, whole);
    return AllPixels(cut);
}

std::vector<TColor32> Windowed(const TDraw& draw, const TRect& part) {
    TBitmap32 bitmap(part.GetWidth(), part.GetHeight());
    draw(TPictureWindow(bitmap, Whole, {part.Left, part.Top}));
    return AllPixels(bitmap);
}

TEST(PictureWindow, KnowsTheWholeAndItsPart) {
    TBitmap32 bitmap(10, 5);
    const TPictureWindow all(bitmap);
    EXPECT_EQ(all.GetWidth(), 10);
    EXPECT_EQ(all.GetHeight(), 5);
    EXPECT_EQ(all.GetVisible(), TRect(0, 0, 10, 5));
    const TPictureWindow part(bitmap, {1000, 2000}, {300, 400});
    EXPECT_EQ(part.GetWidth(), 1000);
    EXPECT_EQ(part.GetHeight(), 2000);
    EXPECT_EQ(part.GetVisible(), TRect(300, 400, 310, 405));
    EXPECT_EQ(&part.GetBitmap(), &bitmap);
}

TEST(PictureWindow, ShowsThePixelsOfTheWhole) {
    const TDraw draws[] = {
        [](const TPictureWindow& p) { p.Clear(Half); },
        [](const TPictureWindow& p) {
            p.FillRectS({5, 5, 50, 30}, Half);
        },
        [](const TPictureWindow& p) {
            p.FrameRectS({5, 5, 50, 30}, Red);
        },
        [](const TPictureWindow& p) {
            p.LineS({3, 2}, {55, 37}, Red);
        },
        [](const TPictureWindow& p) {
            p.LineS({-300, 20}, {300, 21}, Half);
        },
        [](const TPictureWindow& p) {
            p.PolygonFS({{5.5, 5}, {50, 12.25}, {20, 35.5}}, Half);
        },
        [](const TPictureWindow& p) {
            p.PolylineFS({{5, 5}, {50, 12}, {20, 35}}, Red, true, {2});
        },
        [](const TPictureWindow& p) { p.RenderText(10, 12, QStringLiteral("Wg Wg"), Red); },
        [](const TPictureWindow& p) { p.RenderText(-20, 30, QStringLiteral("longer than the whole is wide"), Red); },
    };
    for (std::size_t i = 0; i < std::size(draws); ++i)
        for (const TRect& part : {TRect(0, 0, 60, 40), TRect(10, 10, 30, 20), TRect(40, 25, 60, 40), TRect(0, 0, 1, 40),
                                  TRect(25, 14, 26, 15)})
            EXPECT_EQ(Windowed(draws[i], part), CutOut(draws[i], part)) << i << ": " << testing::PrintToString(part);
}

} // namespace
} // namespace lmx
