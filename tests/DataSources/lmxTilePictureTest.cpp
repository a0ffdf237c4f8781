#include <lmx/DataSources/Private/lmxTilePicture.h>

#include <tests/Support/Printers.h>
#include <tests/Support/TestMap.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace lmx {
namespace {

using namespace tests;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(TilePicture, AnAxisNamesTheCellOfEachPixel) {
    const TTileAxis axis = TileAxisOf(-2, 4, 10, 13, 20, 20, 3); // three cells on six pixels, two of them outside
    EXPECT_EQ(axis.First, 0);
    EXPECT_THAT(axis.Cells, ElementsAre(11, 11, 12));
    EXPECT_THAT(TileAxisOf(1, 3, 0, 8, 8, 4, 9).Cells, ElementsAre(0, 2)); // eight cells, four in the level
    EXPECT_EQ(TileAxisOf(1, 3, 0, 8, 8, 4, 9).First, 1);
    EXPECT_THAT(TileAxisOf(0, 3, 0, 3, 3, 1, 9).Cells, ElementsAre(0, 0, 0));
}

TEST(TilePicture, AnAxisThatDoesNotShowIsEmpty) {
    EXPECT_THAT(TileAxisOf(5, 9, 0, 4, 4, 4, 5).Cells, IsEmpty());
    EXPECT_THAT(TileAxisOf(-9, 0, 0, 4, 4, 4, 5).Cells, IsEmpty());
    EXPECT_THAT(TileAxisOf(3, 3, 0, 4, 4, 4, 5).Cells, IsEmpty());
    EXPECT_THAT(TileAxisOf(0, 5, 4, 4, 4, 4, 5).Cells, IsEmpty());
}

TEST(TilePicture, AnAxisIsExactAtAnyScale) {
    constexpr std::int64_t wide = std::int64_t{1} << 52;
    const TTileAxis axis = TileAxisOf(-wide, wide, 0, 2'000'000'000, 2'000'000'000, 2'000'000'000, 2);
    EXPECT_THAT(axis.Cells, ElementsAre(1'000'000'000, 1'000'000'000));
    EXPECT_THAT(TileAxisOf(-wide + 1, wide + 1, 0, 2'000'000'000, 2'000'000'000, 2'000'000'000, 1).Cells,
                ElementsAre(999'999'999));
}

TEST(TilePicture, TheLevelHasACellForEachPixel) {
    const std::vector<TTileLevel> levels{{4000, 2000}, {2000, 1000}, {1000, 500}, {125, 63}};
    EXPECT_EQ(TileLevelFor(levels, 0.01), 0);
    EXPECT_EQ(TileLevelFor(levels, 1.99), 0);
    EXPECT_EQ(TileLevelFor(levels, 2), 1);
    EXPECT_EQ(TileLevelFor(levels, 3.9), 1);
    EXPECT_EQ(TileLevelFor(levels, 4), 2);
    EXPECT_EQ(TileLevelFor(levels, 31.9), 2);
    EXPECT_EQ(TileLevelFor(levels, 1e9), 3);
    EXPECT_EQ(TileLevelFor(levels, std::numeric_limits<double>::quiet_NaN()), 0);
}

TEST(TilePicture, ARasterOverTheSeamHasTwoPieces) {
    const TTestMap map(360, 180);
    const auto pieces = TilePiecesOf({90, 90, 270, -90}, {18, 18}, map.Viewport.GetLocal());
    ASSERT_EQ(pieces.size(), 2U);
    EXPECT_EQ(pieces[0].Pixels, TWideRect(270, 0, 360, 180));
    EXPECT_EQ(pieces[0].Cells, TRect(0, 0, 9, 18));
    EXPECT_EQ(pieces[1].Pixels, TWideRect(0, 0, 90, 180));
    EXPECT_EQ(pieces[1].Cells, TRect(9, 0, 18, 18));
}

TEST(TilePicture, AnAreaThatIsNoneHasNoPieces) {
    const TTestMap map(360, 180);
    const extended nan = std::numeric_limits<extended>::quiet_NaN();
    for (const TMapArea& area : {TMapArea(0, 0, 0, 0), TMapArea(10, 0, 0, -5), TMapArea(0, 0, 10, 5),
                                 TMapArea(nan, 10, 20, 0), TMapArea(0, HUGE_VALL, 20, 0)})
        EXPECT_THAT(TilePiecesOf(area, {4, 4}, map.Viewport.GetLocal()), IsEmpty());
}

} // namespace
} // namespace lmx
