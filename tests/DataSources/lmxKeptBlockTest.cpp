#include <lmx/DataSources/Private/lmxKeptBlock.h>

#include <lmx/DataSources/lmxClimateExceptions.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <tests/DataSources/ArraySource.h>
#include <tests/Support/Printers.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lmx {
namespace {

using namespace tests;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr quint64 Plenty = 1 << 20;

std::vector<double> Counting(std::size_t count) {
    std::vector<double> numbers(count);
    std::iota(numbers.begin(), numbers.end(), 0);
    return numbers;
}

std::vector<int> CellsOf(const TRawSlice& slice) {
    const auto cells = std::get<std::span<const std::int16_t>>(slice.GetCells());
    return std::vector<int>(cells.begin(), cells.end());
}

/// Seven times of two rows of three, in blocks of three times.
struct TTimesFirst {
    explicit TTimesFirst(std::vector<quint64> blocks = {3, 1, 2})
        : Array(Source.Add(
              {"/v", {{"/t", 7}, {"/y", 2}, {"/x", 3}}, std::move(blocks), true, TClimateCellType::ctInt16, {}},
              Counting(42))) {}

    std::vector<int> Read(TKeptBlock& kept, quint64 time) {
        return CellsOf(kept.Read(Source, Array, {{time, 0, 0}, {1, 2, 3}}, 0));
    }
    /// First and number of the times that were read since.
    std::vector<std::pair<quint64, std::size_t>> Decoded() {
        std::vector<std::pair<quint64, std::size_t>> times;
        for (const auto& read : Source.GetLog()->Take())
            times.emplace_back(read.Window.Starts[0], read.Window.Counts[0]);
        return times;
    }

    TArraySource Source;
    std::size_t Array;
};

using TTimes = std::pair<quint64, std::size_t>;

TEST(KeptBlock, UnpacksEachBlockOnceInAPass) {
    TTimesFirst file;
    TKeptBlock kept(Plenty);
    for (int i = 0; i < 7; ++i)
        EXPECT_THAT(file.Read(kept, quint64(i)),
                    ElementsAre(6 * i, 6 * i + 1, 6 * i + 2, 6 * i + 3, 6 * i + 4, 6 * i + 5));
    EXPECT_THAT(file.Decoded(), ElementsAre(TTimes(0, 3), TTimes(3, 3), TTimes(6, 1))) << "the last one is cut";
    for (int i = 6; i >= 0; --i)
        EXPECT_EQ(file.Read(kept, quint64(i))[0], 6 * i);
    EXPECT_THAT(file.Decoded(), ElementsAre(TTimes(6, 1), TTimes(3, 3), TTimes(0, 3)));
}

TEST(KeptBlock, KeepsOneBlock) {
    TTimesFirst file;
    TKeptBlock kept(Plenty);
    EXPECT_EQ(kept.GetKeptBytes(), 0U);
    file.Read(kept, 1);
    EXPECT_EQ(kept.GetKeptBytes(), 3U * 6 * 2);
    file.Read(kept, 6);
    EXPECT_EQ(kept.GetKeptBytes(), 0U) << "a block of one step is not worth it";
    EXPECT_THAT(file.Decoded(), ElementsAre(TTimes(0, 3), TTimes(6, 1)));
}

TEST(KeptBlock, BlocksOfWhichNoTwoStepsFitAreReadStepByStep) {
    TTimesFirst file;
    TKeptBlock kept(23); // two steps have 24
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(file.Read(kept, quint64(i))[5], 6 * i + 5);
    EXPECT_THAT(file.Decoded(), ElementsAre(TTimes(0, 1), TTimes(1, 1), TTimes(2, 1)));
    EXPECT_EQ(kept.GetKeptBytes(), 0U);
    TKeptBlock enough(36);
    file.Read(enough, 0);
    file.Read(enough, 2);
    EXPECT_THAT(file.Decoded(), ElementsAre(TTimes(0, 3)));
}

TEST(KeptBlock, AsManyStepsOfALargeBlockAreKeptAsFit) {
    TTimesFirst file({5, 1, 2});
    TKeptBlock kept(3 * 12 - 1); // two steps
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(file.Read(kept, quint64(i))[5], 6 * i + 5);
    EXPECT_THAT(file.Decoded(), ElementsAre(TTimes(0, 2), TTimes(2, 2), TTimes(4, 1), TTimes(5, 2)))
        << "none reaches into the next block";
    EXPECT_EQ(kept.GetKeptBytes(), 24U);
    for (int i = 6; i >= 0; --i)
        EXPECT_EQ(file.Read(kept, quint64(i))[0], 6 * i);
    EXPECT_THAT(file.Decoded(), ElementsAre(TTimes(4, 1), TTimes(2, 2), TTimes(0, 2)));
}

TEST(KeptBlock, TellsHowManyStepsAreStoredTogether) {
    TTimesFirst file({5, 1, 2});
    TSourceArray info = file.Source.GetArrays()[file.Array];
    EXPECT_EQ(TKeptBlock::StepsTogether(info, 0), 5U);
    info.BlockSize = {50, 1, 2};
    EXPECT_EQ(TKeptBlock::StepsTogether(info, 0), 7U) << "as many as there are";
    info.BlockSize = {0, 0, 0};
    EXPECT_EQ(TKeptBlock::StepsTogether(info, 0), 1U);
    info.BlockSize = {};
    EXPECT_EQ(TKeptBlock::StepsTogether(info, 0), 1U);
}

TEST(KeptBlock, StepsThatAreStoredAloneAreReadAlone) {
    for (const std::vector<quint64>& blocks : {std::vector<quint64>{}, {0, 0, 0}, {1, 2, 3}}) {
        TTimesFirst file(blocks);
        TKeptBlock kept(Plenty);
        EXPECT_EQ(file.Read(kept, 4)[0], 24);
        EXPECT_EQ(file.Read(kept, 4)[0], 24);
        EXPECT_THAT(file.Decoded(), ElementsAre(TTimes(4, 1), TTimes(4, 1)));
    }
}

TEST(KeptBlock, CellsOutliveTheBlock) {
    TTimesFirst file;
    TKeptBlock kept(Plenty);
    const TRawSlice first = kept.Read(file.Source, file.Array, {{1, 0, 0}, {1, 2, 3}}, 0);
    file.Read(kept, 4);
    EXPECT_THAT(CellsOf(first), ElementsAre(6, 7, 8, 9, 10, 11));
}

// The steps of a block stand apart where time is not the first dimension.
TEST(KeptBlock, TimeMayBeAnyDimension) {
    TArraySource source;
    const std::size_t array = source.Add(
        {"/v", {{"/y", 2}, {"/t", 4}, {"/x", 2}}, {1, 4, 2}, true, TClimateCellType::ctInt16, {}}, Counting(16));
    TKeptBlock kept(Plenty);
    EXPECT_THAT(CellsOf(kept.Read(source, array, {{0, 1, 0}, {2, 1, 2}}, 1)), ElementsAre(2, 3, 10, 11));
    EXPECT_THAT(CellsOf(kept.Read(source, array, {{0, 3, 0}, {2, 1, 2}}, 1)), ElementsAre(6, 7, 14, 15));
    EXPECT_EQ(source.GetLog()->Take().size(), 1U);
}

TEST(KeptBlock, AnotherPlaceIsAnotherBlock) {
    TArraySource source;
    const TSourceArray info{"/v", {{"/t", 2}, {"/z", 2}, {"/x", 2}}, {2, 1, 2}, true, TClimateCellType::ctInt16, {}};
    const std::size_t array = source.Add(info, Counting(8));
    const std::size_t other = source.Add(info, std::vector<double>(8, 5));
    TKeptBlock kept(Plenty);
    EXPECT_THAT(CellsOf(kept.Read(source, array, {{0, 0, 0}, {1, 1, 2}}, 0)), ElementsAre(0, 1));
    EXPECT_THAT(CellsOf(kept.Read(source, array, {{0, 1, 0}, {1, 1, 2}}, 0)), ElementsAre(2, 3));
    EXPECT_THAT(CellsOf(kept.Read(source, array, {{1, 1, 0}, {1, 1, 2}}, 0)), ElementsAre(6, 7));
    EXPECT_THAT(CellsOf(kept.Read(source, other, {{1, 1, 0}, {1, 1, 2}}, 0)), ElementsAre(5, 5));
    EXPECT_EQ(source.GetLog()->Take().size(), 3U);
}

/// Reads no more than one step at a time.
class TNarrowSource final : public IClimateSource {
public:
    explicit TNarrowSource(TArraySource& source) : FSource(source) {}
    const std::vector<TSourceArray>& GetArrays() const override { return FSource.GetArrays(); }
    bool IsNetCdf() const override { return true; }
    TClimateAttributes ReadFileAttributes() override { return {}; }
    TSourceAttributes ReadAttributes(std::size_t array) override { return FSource.ReadAttributes(array); }
    TRawSlice Read(std::size_t array, const TSourceWindow& window) override {
        if (IsDamaged)
            throw EClimateFile("f", "is damaged here");
        if (window.Counts[0] > 1)
            throw EOutOfMemory();
        return FSource.Read(array, window);
    }
    bool IsDamaged = false;

private:
    TArraySource& FSource;
};

TEST(KeptBlock, WithoutRoomForABlockStepsAreReadAlone) {
    TTimesFirst file;
    TNarrowSource narrow(file.Source);
    TKeptBlock kept(Plenty);
    EXPECT_EQ(CellsOf(kept.Read(narrow, file.Array, {{2, 0, 0}, {1, 2, 3}}, 0))[0], 12);
    EXPECT_EQ(kept.GetKeptBytes(), 0U);
    narrow.IsDamaged = true;
    EXPECT_THROW(kept.Read(narrow, file.Array, {{2, 0, 0}, {1, 2, 3}}, 0), EClimateFile);
    EXPECT_THAT(CellsOf(kept.Read(file.Source, file.Array, {{0, 0, 0}, {1, 2, 3}}, 0))[1], 1)
        << "as if it had not been";
}

} // namespace
} // namespace lmx
