#include <lmx/DataSources/lmxClimateFrames.h>

#include <lmx/DataSources/lmxFramePlayer.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/Printers.h>
#include <tests/Support/Threads.h>

#include <gtest/gtest.h>

#include <vector>

namespace lmx {
namespace {

using namespace tests;

QString Sample(const char* name) {
    return QStringLiteral(LMX_SOURCE_DIR "/tests/data/netcdf/") + QString::fromLatin1(name);
}

bool Never() {
    return false;
}

TEST(ClimateFrames, AreTheStepsOfAVariable) {
    const auto dataset = std::make_shared<TClimateDataset>(Sample("coads_sst.nc"));
    const auto variable = dataset->FindVariable("SST");
    ASSERT_TRUE(variable.GetHasValue());
    TClimateFrames frames(dataset, {variable.GetValue(), 99});
    ASSERT_EQ(frames.GetCount(), 12U);
    EXPECT_EQ(frames.GetCaption(0), "January");
    EXPECT_EQ(frames.GetCaption(6), "July");
    ASSERT_TRUE(frames.GetDate(6).has_value());
    EXPECT_EQ(frames.GetDate(6)->Month, 7);
    const auto image = frames.ReadFrame(6, Never);
    ASSERT_NE(image, nullptr);
    const TClimatePicture picture = dataset->Read({variable.GetValue(), 6});
    EXPECT_EQ(image->GetValue(180, 45), picture.Image->GetValue(180, 45));
    EXPECT_NE(image->GetValue(180, 45), dataset->Read({variable.GetValue(), 0}).Image->GetValue(180, 45));
}

TEST(ClimateFrames, AWithdrawnFrameIsNotRead) {
    const auto dataset = std::make_shared<TClimateDataset>(Sample("coads_sst.nc"));
    TClimateFrames frames(dataset, {dataset->FindVariable("SST").GetValue()});
    EXPECT_EQ(frames.ReadFrame(3, [] { return true; }), nullptr);
}

TEST(ClimateFrames, AVariableWithoutTimeHasOneFrame) {
    const auto dataset = std::make_shared<TClimateDataset>(Sample("region_newzealand.nc"));
    for (std::size_t i = 0; i < dataset->GetVariables().size(); ++i) {
        const TClimateVariableInfo& info = dataset->GetVariables()[i];
        if (!info.Refusal.isEmpty())
            continue;
        TClimateFrames frames(dataset, {i});
        EXPECT_EQ(frames.GetCount(), info.TimeCount) << info.Name.toStdString();
        EXPECT_NE(frames.ReadFrame(0, Never), nullptr);
    }
}

TEST(ClimateFrames, RefuseWhatIsNotThere) {
    const auto dataset = std::make_shared<TClimateDataset>(Sample("coads_sst.nc"));
    EXPECT_THROW(TClimateFrames(nullptr, {}), EArgumentNilException);
    EXPECT_THROW(TClimateFrames(dataset, {99}), EArgumentException);
    EXPECT_THROW(TClimateFrames(dataset, {dataset->FindVariable("SST").GetValue(), 0, 1}), EArgumentException);
    const auto curvilinear = std::make_shared<TClimateDataset>(Sample("curvilinear.nc"));
    int refused = 0;
    for (std::size_t i = 0; i < curvilinear->GetVariables().size(); ++i)
        try {
            const TClimateFrames frames(curvilinear, {i});
        } catch (const EClimateFile& failure) {
            ++refused;
            EXPECT_EQ(failure.Problem(), curvilinear->GetVariables()[i].Refusal);
        }
    EXPECT_GT(refused, 0);
}

// A year of months, forwards, as a user sees it: every frame once, in order.
TEST(ClimateFrames, ArePlayed) {
    const auto dataset = std::make_shared<TClimateDataset>(Sample("coads_sst.nc"));
    TFramePlayer player;
    std::vector<std::size_t> shown;
    const TSubscription frames = player.GetOnFrame().Add([&](TFramePlayer* told) {
        if (told->GetFrame())
            shown.push_back(told->GetFrame()->Index);
    });
    player.SetSource(
        std::make_shared<TClimateFrames>(dataset, TClimateSelection{dataset->FindVariable("SST").GetValue()}));
    for (std::size_t month = 0; month < 12; ++month) {
        ASSERT_TRUE(PumpUntil([&] { return !player.IsWaiting(); }));
        ASSERT_TRUE(player.GetFrame()->HasValues);
        player.Next();
    }
    EXPECT_EQ(shown, (std::vector<std::size_t>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}));
    EXPECT_EQ(player.GetCaption(), "December");
}

} // namespace
} // namespace lmx
