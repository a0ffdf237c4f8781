#include <lmx/Widgets/lmxImageList.h>
#include <tests/Support/WidgetPictures.h>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace lmx {
namespace {

/// An image of 2 x 2 logical pixels in the ink.
QImage Square(double ratio, const QColor& ink) {
    QImage image(static_cast<int>(2 * ratio), static_cast<int>(2 * ratio), QImage::Format_ARGB32);
    image.fill(ink);
    image.setDevicePixelRatio(ratio);
    return image;
}

TEST(ImageList, GivesItsImagesByIndex) {
    TImageList list(TSize(2, 2));
    EXPECT_EQ(list.GetCount(), 0);
    EXPECT_EQ(list.Add(Square), 0);
    EXPECT_EQ(list.Add([](double ratio, const QColor&) { return Square(ratio, Qt::blue); }), 1);
    EXPECT_EQ(list.GetCount(), 2);
    EXPECT_EQ(list.GetSize(), TSize(2, 2));
    EXPECT_EQ(list.GetImage(0, 2, Qt::red).pixel(3, 3), 0xFFFF0000U);
    EXPECT_EQ(list.GetImage(1, 1, Qt::red).pixel(1, 1), 0xFF0000FFU);
}

TEST(ImageList, HasNoImageOutsideItsBounds) {
    TImageList list(TSize(2, 2));
    list.Add(nullptr);
    EXPECT_TRUE(list.GetImage(0, 1, Qt::red).isNull());
    EXPECT_TRUE(list.GetImage(1, 1, Qt::red).isNull());
    EXPECT_TRUE(list.GetImage(-1, 1, Qt::red).isNull());
    QImage canvas(4, 4, QImage::Format_ARGB32);
    canvas.fill(Qt::transparent);
    QPainter painter(&canvas);
    for (const int index : {-1, 0, 1})
        list.Draw(painter, {0, 0}, index, Qt::red);
    EXPECT_EQ(tests::Cover(canvas), std::vector<std::string>(4, "...."));
}

TEST(ImageList, IsReplacedImageByImage) {
    TImageList list(TSize(2, 2));
    list.Add(nullptr);
    EXPECT_FALSE(list.Replace(0, Square));
    EXPECT_FALSE(list.Replace(1, Square));
    EXPECT_FALSE(list.Replace(-1, Square));
    EXPECT_EQ(list.GetCount(), 1);
    EXPECT_EQ(list.GetImage(0, 1, Qt::red).pixel(0, 0), 0xFFFF0000U);
    EXPECT_TRUE(list.Replace(0, nullptr)) << "the former one comes back";
    EXPECT_TRUE(list.GetImage(0, 1, Qt::red).isNull());
}

TEST(ImageList, MayReplaceAnImageWhileItIsMade) {
    TImageList list(TSize(2, 2));
    const auto large = std::make_shared<std::vector<int>>(1000, 7); // held by the picture alone, once it is taken out
    list.Add([&list, large](double ratio, const QColor& ink) {
        list.Replace(0, nullptr);
        return large->back() == 7 ? Square(ratio, ink) : QImage();
    });
    EXPECT_EQ(list.GetImage(0, 1, Qt::red).pixel(0, 0), 0xFFFF0000U);
    EXPECT_TRUE(list.GetImage(0, 1, Qt::red).isNull());
}

TEST(ImageList, DrawsAtTheDensityOfTheCanvas) {
    TImageList list(TSize(2, 2));
    list.Add(Square);
    QImage canvas(8, 4, QImage::Format_ARGB32);
    canvas.fill(Qt::transparent);
    canvas.setDevicePixelRatio(2);
    QPainter painter(&canvas);
    list.Draw(painter, {1, 0}, 0, Qt::red);
    EXPECT_EQ(tests::Cover(canvas), std::vector<std::string>(4, "..####.."));
}

} // namespace
} // namespace lmx
