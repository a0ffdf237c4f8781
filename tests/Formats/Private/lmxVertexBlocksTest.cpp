#include <lmx/Formats/Idrisi/lmxGeoPoint.h>
#include <lmx/Formats/Private/lmxVertexBlocks.h>
#include <lmx/Formats/Shapes/lmxShpPoint.h>

#include <gtest/gtest.h>

#include <random>

namespace lmx::tests {

namespace {

using TStarts = std::vector<std::uint32_t>;

std::vector<TShpPoint> Row(std::uint32_t count) {
    std::vector<TShpPoint> points;
    for (std::uint32_t i = 0; i < count; ++i)
        points.push_back({static_cast<double>(i), -2.0 * i});
    return points;
}

TStarts FirstsOf(const std::vector<TVertexBlock>& blocks) {
    TStarts firsts;
    for (const TVertexBlock& block : blocks)
        firsts.push_back(block.First);
    return firsts;
}

TStarts RunsOf(std::uint32_t count, const TStarts& partStarts) {
    const auto points = Row(count);
    return FirstsOf(MakeVertexBlocks(std::span<const TShpPoint>(points), partStarts));
}

} // namespace

TEST(VertexBlocks, LongPartsAreCut) {
    EXPECT_EQ(RunsOf(0, {}), (TStarts{0}));
    EXPECT_EQ(RunsOf(1, {0}), (TStarts{0, 1}));
    EXPECT_EQ(RunsOf(64, {0}), (TStarts{0, 64}));
    EXPECT_EQ(RunsOf(65, {0}), (TStarts{0, 64, 65}));
    EXPECT_EQ(RunsOf(200, {0}), (TStarts{0, 64, 128, 192, 200}));
}

TEST(VertexBlocks, RunsEndWherePartsDoUnlessTheyAreShort) {
    EXPECT_EQ(RunsOf(60, {0, 20, 40}), (TStarts{0, 20, 40, 60}));
    EXPECT_EQ(RunsOf(40, {0, 4, 8, 12, 15, 17, 30}), (TStarts{0, 17, 40})) << "30 would make a run of 13";
    EXPECT_EQ(RunsOf(70, {0, 64}), (TStarts{0, 64, 70}));
    EXPECT_EQ(RunsOf(70, {0, 16, 16, 16}), (TStarts{0, 16, 70})) << "parts without vertices";
}

TEST(VertexBlocks, ABoxHoldsTheLineToTheNextRun) {
    const auto points = Row(70);
    const auto joined = MakeVertexBlocks(std::span<const TShpPoint>(points), TStarts{0});
    EXPECT_EQ(joined[0].XMin, 0);
    EXPECT_EQ(joined[0].XMax, 64) << "the first vertex of the next run";
    EXPECT_EQ(joined[0].YMin, -128);
    EXPECT_EQ(joined[0].YMax, 0);
    EXPECT_EQ(joined[1].XMin, 64);
    EXPECT_EQ(joined[1].XMax, 69);
    const auto parted = MakeVertexBlocks(std::span<const TShpPoint>(points), TStarts{0, 64});
    EXPECT_EQ(parted[0].XMax, 63);
    const auto loose = MakeVertexBlocks(std::span<const TShpPoint>(points), {});
    EXPECT_EQ(loose[0].XMax, 63) << "nothing joins points";
}

TEST(VertexBlocks, BoxesAreRoundedOutwards) {
    const std::vector<TShpPoint> points{{0.1, 1e300}, {-0.1, -1e300}, {16777217, 3}};
    const auto blocks = MakeVertexBlocks(std::span<const TShpPoint>(points), TStarts{0});
    EXPECT_LE(static_cast<double>(blocks[0].XMin), -0.1);
    EXPECT_GT(static_cast<double>(blocks[0].XMin), -0.1000001);
    EXPECT_EQ(blocks[0].XMax, 16777218);
    EXPECT_EQ(blocks[0].YMin, -std::numeric_limits<float>::infinity());
    EXPECT_EQ(blocks[0].YMax, std::numeric_limits<float>::infinity());
}

TEST(VertexBlocks, GroupsHoldTheBoxesOfTheirRuns) {
    for (const std::uint32_t count : {0U, 1U, 64U * 32, 64U * 32 + 1, 64U * 100}) {
        const auto points = Row(count);
        const auto blocks = MakeVertexBlocks(std::span<const TShpPoint>(points), {});
        const auto groups = MakeBlockGroups(blocks);
        const std::size_t runs = blocks.size() - 1;
        ASSERT_EQ(groups.size(), (runs + BlocksOfGroup - 1) / BlocksOfGroup + 1);
        ASSERT_EQ(groups.back().First, runs);
        for (std::size_t i = 0; i + 1 < groups.size(); ++i) {
            ASSERT_EQ(groups[i].First, i * BlocksOfGroup);
            const std::size_t last = groups[i + 1].First - 1;
            EXPECT_EQ(groups[i].XMin, blocks[groups[i].First].XMin);
            EXPECT_EQ(groups[i].XMax, blocks[last].XMax);
            EXPECT_EQ(groups[i].YMin, blocks[last].YMin) << "Y falls";
            EXPECT_EQ(groups[i].YMax, blocks[groups[i].First].YMax);
        }
    }
}

TEST(VertexBlocks, EachVertexIsInOneRunOfAllowedLength) {
    std::mt19937 random(5);
    for (int round = 0; round < 2000; ++round) {
        const auto below = [&](std::uint32_t limit) { return static_cast<std::uint32_t>(random() % limit); };
        const std::uint32_t count = below(400);
        TStarts starts;
        for (std::uint32_t start = 0; start < count; start += below(round % 7 == 0 ? 200 : 30))
            starts.push_back(start);
        std::vector<TGeoPoint> points(count);
        const auto blocks = MakeVertexBlocks(std::span<const TGeoPoint>(points), starts);
        ASSERT_EQ(blocks.front().First, 0U);
        ASSERT_EQ(blocks.back().First, count);
        for (std::size_t i = 0; i + 1 < blocks.size(); ++i) {
            const std::uint32_t length = blocks[i + 1].First - blocks[i].First;
            ASSERT_GT(length, 0U);
            ASSERT_LE(length, LongestVertexBlock);
            ASSERT_TRUE(length >= ShortestVertexBlock || i + 2 == blocks.size());
        }
    }
}

} // namespace lmx::tests
