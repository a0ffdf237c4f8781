#include <lmx/Widgets/Private/lmxDeviceGrid.h>
#include <tests/Support/WidgetPictures.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using TRows = std::vector<std::string>;

/// A picture of `side` device pixels at a ratio, painted by `paint` in logical pixels.
template<class Paint>
TRows Painted(int side, double ratio, Paint&& paint) {
    QImage image(side, side, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    image.setDevicePixelRatio(ratio);
    {
        QPainter painter(&image);
        paint(painter);
    }
    return tests::Cover(image);
}

TEST(DeviceGrid, FillsWholePixelsAtRatio1) {
    const TRows rows = Painted(4, 1, [](QPainter& painter) { FillRectOnGrid(painter, QRectF(1, 0, 1, 3), Qt::red); });
    EXPECT_EQ(rows, (TRows{".#..", ".#..", ".#..", "...."}));
}

TEST(DeviceGrid, PutsHalvesToTheRightAndKeepsTheThickness) {
    const auto lines = [](QPainter& painter) {
        FillRectOnGrid(painter, QRectF(0, 0, 1, 1), Qt::red); // 0 to 1.5
        FillRectOnGrid(painter, QRectF(3, 1, 1, 1), Qt::red); // 4.5 to 6 across, 1.5 to 3 down
    };
    EXPECT_EQ(Painted(7, 1.5, lines),
              (TRows{"##.....", "##.....", ".....##", ".....##", ".......", ".......", "......."}));
}

TEST(DeviceGrid, GrowsWithTheRatio) {
    const TRows rows = Painted(6, 2, [](QPainter& painter) { FillRectOnGrid(painter, QRectF(1, 1, 1, 2), Qt::red); });
    EXPECT_EQ(rows, (TRows{"......", "......", "..##..", "..##..", "..##..", "..##.."}));
}

TEST(DeviceGrid, DrawsThinThingsOnePixelThick) {
    const TRows rows = Painted(3, 1, [](QPainter& painter) { FillRectOnGrid(painter, QRectF(1, 0, 0.2, 3), Qt::red); });
    EXPECT_EQ(rows, (TRows{".#.", ".#.", ".#."}));
}

TEST(DeviceGrid, DrawsNothingForARectangleWithoutAnArea) {
    const TRows rows = Painted(3, 1, [](QPainter& painter) {
        FillRectOnGrid(painter, QRectF(1, 1, 0, 2), Qt::red);
        FillRectOnGrid(painter, QRectF(2, 2, -1, -1), Qt::red);
        DrawBoxOnGrid(painter, QRectF(1, 1, 2, 0), Qt::red, Qt::red);
    });
    EXPECT_EQ(rows, (TRows{"...", "...", "..."}));
}

TEST(DeviceGrid, FramesABoxEvenlyAtAFractionalRatio) {
    const auto box = [](QPainter& painter) { DrawBoxOnGrid(painter, QRectF(1, 1, 5, 4), Qt::red, Qt::transparent); };
    QImage image(10, 9, QImage::Format_ARGB32);
    image.fill(Qt::blue);
    image.setDevicePixelRatio(1.5);
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    box(painter); // 1.5 to 9 across and 1.5 to 7.5 down: sides of 8 and 6 pixels from 2, lines of 2
    painter.end();
    const std::map<QRgb, char> letters = {{0xFF0000FF, '.'}, {0xFFFF0000, '#'}, {0, 'o'}};
    TRows rows;
    for (int y = 0; y < image.height(); ++y)
        rows.push_back(tests::Letters(image, {0, y}, {1, 0}, letters));
    EXPECT_EQ(rows, (TRows{"..........", "..........", "..########", "..########", "..##oooo##", "..##oooo##",
                           "..########", "..########", ".........."}));
}

TEST(DeviceGrid, DrawsImagesPixelForPixel) {
    QImage source(3, 1, QImage::Format_ARGB32);
    source.setPixel(0, 0, 0xFFFFFFFF);
    source.setPixel(1, 0, 0);
    source.setPixel(2, 0, 0xFFFFFFFF);
    source.setDevicePixelRatio(1.5);
    const auto draw = [&](QPainter& painter) { DrawImageOnGrid(painter, {1, 0}, source); }; // 1.5: pixel 2
    EXPECT_EQ(Painted(6, 1.5, draw)[0], "..#.#.");
}

} // namespace
} // namespace lmx
