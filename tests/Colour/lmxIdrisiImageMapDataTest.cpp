#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/Colour/lmxIdrisiImageMapData.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Colour/RasterFakes.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <cmath>

namespace lmx {
namespace {

using tests::MessageOf;
using tests::TTestImage;

constexpr float Flag = TSpatialConst::NoData;

class IdrisiImageMapData : public testing::TestWithParam<bool> {};

TEST_P(IdrisiImageMapData, GivesTheCellsOfTheImageFromZero) {
    const TTestImage image(3, 2, {1, 2, 3, 4, Flag, 6});
    const TIdrisiImageMapData data(&image, GetParam());
    EXPECT_EQ(data.GetIsCached(), GetParam());
    EXPECT_EQ(data.GetWidth(), 3);
    EXPECT_EQ(data.GetHeight(), 2);
    EXPECT_EQ(data.GetMapCell(0, 0), 1);
    EXPECT_EQ(data.GetMapCell(2, 0), 3);
    EXPECT_EQ(data.GetMapCell(0, 1), 4);
    EXPECT_EQ(data.GetMapCell(1, 1), Flag);
    EXPECT_EQ(data.GetMapCell(2, 1), 6);
}

TEST_P(IdrisiImageMapData, CutsAwayWhatIsNoValue) {
    const TTestImage image(7, 1, {0, Flag, -9999, std::nanf(""), HUGE_VALF, 1e30F, -10376});
    const TIdrisiImageMapData data(&image, GetParam());
    const std::vector<int> expected = {1, 0, 0, 0, 0, 0, 1};
    for (std::int32_t x = 0; x < 7; ++x)
        EXPECT_EQ(data.GetCookieCell(x, 0), expected[static_cast<std::size_t>(x)]) << x;
}

TEST_P(IdrisiImageMapData, AnImageWithoutCellsGivesARasterWithoutCells) {
    for (const auto& [width, height] : {std::pair{0, 0}, std::pair{5, 0}, std::pair{0, 5}}) {
        const TTestImage image(width, height, {});
        const TIdrisiImageMapData data(&image, GetParam());
        EXPECT_EQ(data.GetWidth(), width);
        EXPECT_EQ(data.GetHeight(), height);
        EXPECT_EQ(image.Reads, 0);
    }
}

TEST_P(IdrisiImageMapData, NegativeSizesCountAsNone) {
    const TTestImage image(-3, 2, {});
    const TIdrisiImageMapData data(&image, GetParam());
    EXPECT_EQ(data.GetWidth(), 0);
    EXPECT_EQ(data.GetHeight(), 2);
    const TTestImage turned(3, -2, {});
    EXPECT_EQ(TIdrisiImageMapData(&turned, GetParam()).GetHeight(), 0);
}

TEST_P(IdrisiImageMapData, NeedsAnImage) {
    EXPECT_EQ(MessageOf<EArgumentException>([] { TIdrisiImageMapData(nullptr, GetParam()); }), "Image is null");
}

INSTANTIATE_TEST_SUITE_P(Forms, IdrisiImageMapData, testing::Bool(),
                         [](const auto& row) { return row.param ? "Cached" : "Direct"; });

TEST(CachedImageMapData, ReadsEachCellOnceAndOutlivesTheImage) {
    auto image = std::make_unique<TTestImage>(2, 2, std::vector<float>{1, 2, 3, Flag});
    const TIdrisiImageMapData data(image.get(), true);
    EXPECT_EQ(image->Reads, 4);
    image.reset();
    EXPECT_EQ(data.GetMapCell(1, 0), 2);
    EXPECT_EQ(data.GetCookieCell(0, 1), 1);
    EXPECT_EQ(data.GetCookieCell(1, 1), 0);
}

TEST(DirectImageMapData, SeesLaterChangesOfTheImage) {
    TTestImage image(1, 1, {1});
    const TIdrisiImageMapData data(&image, false);
    image.Cells[0] = Flag;
    EXPECT_EQ(data.GetMapCell(0, 0), Flag);
    EXPECT_EQ(data.GetCookieCell(0, 0), 0);
}

} // namespace
} // namespace lmx
