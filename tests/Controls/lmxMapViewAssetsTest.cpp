#include <lmx/Controls/lmxMapViewAssets.h>
#include <tests/Support/CoordinatePrinters.h>
#include <tests/Support/WidgetPictures.h>

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <set>

namespace lmx {
namespace {

using TRows = std::vector<std::string>;

TRows Picture(int index, double ratio) {
    return tests::Cover(TMapViewAssets::GetInstance().GetLayerPanelAssets().GetImage(index, ratio, Qt::black));
}

TEST(MapViewAssets, IsOneAndTheApplicationOwnsIt) {
    TMapViewAssets& assets = TMapViewAssets::GetInstance();
    EXPECT_EQ(&TMapViewAssets::GetInstance(), &assets);
    EXPECT_EQ(assets.parent(), QCoreApplication::instance());
}

TEST(MapViewAssets, HasSixImagesOf12PixelsEach) {
    const TImageList& images = TMapViewAssets::GetInstance().GetLayerPanelAssets();
    EXPECT_EQ(images.GetCount(), 6);
    EXPECT_EQ(images.GetSize(), TSize(12, 12));
    for (int index = 0; index < 6; ++index) {
        for (const double ratio : {1.0, 1.5, 2.0}) {
            const QImage image = images.GetImage(index, ratio, Qt::black);
            EXPECT_EQ(image.size(), QSize(12, 12) * ratio);
            EXPECT_EQ(image.depth(), 32);
            EXPECT_EQ(image.devicePixelRatioF(), ratio);
        }
    }
}

TEST(MapViewAssets, HasFivePicturesAndAnEmptyOne) {
    std::set<TRows> pictures;
    for (int index = 0; index < 6; ++index)
        pictures.insert(Picture(index, 1));
    EXPECT_EQ(pictures.size(), 6U);
    EXPECT_EQ(Picture(4, 1), TRows(12, std::string(12, '.')));
}

TEST(MapViewAssets, DrawsTheSignOfAMenuOnWholePixels) {
    const TRows dots = {"............", ".....##.....", ".....##.....", "............", "............", ".....##.....",
                        ".....##.....", "............", "............", ".....##.....", ".....##.....", "............"};
    EXPECT_EQ(Picture(5, 1), dots);
    TRows doubled;
    for (const std::string& row : dots) {
        std::string wide;
        for (const char pixel : row)
            wide += {pixel, pixel};
        doubled.insert(doubled.end(), 2, wide);
    }
    EXPECT_EQ(Picture(5, 2), doubled);
}

TEST(MapViewAssets, PointsToTheRightWhenClosedAndDownWhenOpen) {
    const TRows closed = Picture(0, 2);
    EXPECT_EQ(TRows(closed.rbegin(), closed.rend()), closed) << "top and bottom are alike";
    const TRows open = Picture(1, 2);
    for (const std::string& row : open)
        EXPECT_EQ(std::string(row.rbegin(), row.rend()), row) << "left and right are alike";
}

} // namespace
} // namespace lmx
