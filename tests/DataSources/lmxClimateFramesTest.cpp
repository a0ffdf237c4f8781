#include <lmx/DataSources/lmxClimateFrames.h>

#include <lmx/DataSources/Private/lmxClimateCatalog.h>
#include <lmx/DataSources/Private/lmxClimateFileOpening.h>
#include <lmx/DataSources/lmxFramePlayer.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/DataSources/ArraySource.h>
#include <tests/DataSources/BlockFiles.h>
#include <tests/Support/Printers.h>
#include <tests/Support/Threads.h>

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
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

/// A source that is seen when it reads.
class TWatchedSource final : public IClimateSource {
public:
    TWatchedSource(std::unique_ptr<IClimateSource> source, std::vector<TSourceWindow>& windows)
        : FSource(std::move(source)),
          FWindows(windows) {}
    const std::vector<TSourceArray>& GetArrays() const override { return FSource->GetArrays(); }
    bool IsNetCdf() const override { return FSource->IsNetCdf(); }
    TClimateAttributes ReadFileAttributes() override { return FSource->ReadFileAttributes(); }
    TSourceAttributes ReadAttributes(std::size_t array) override { return FSource->ReadAttributes(array); }
    TRawSlice Read(std::size_t array, const TSourceWindow& window) override {
        if (window.Counts.size() == 3)
            FWindows.push_back(window);
        return FSource->Read(array, window);
    }

private:
    std::unique_ptr<IClimateSource> FSource;
    std::vector<TSourceWindow>& FWindows;
};

TEST(ClimateFrames, ABlockOfSeveralTimesIsUnpackedOnce) {
    const QTemporaryDir folder;
    for (const char* const driver : {"netCDF", "Zarr"}) {
        SCOPED_TRACE(driver);
        const QString path = folder.filePath(driver == std::string("Zarr") ? "blocks.zarr" : "blocks.nc");
        RunOnReader([&] { MakeBlockFile(path, driver, "3,2,6"); });
        std::vector<TSourceWindow> windows;
        const TClimateCatalog catalog(std::make_unique<TWatchedSource>(OpenClimateSource(path, {}), windows), path);
        ASSERT_EQ(catalog.GetInfos().size(), 1U);
        TKeptBlock kept(TClimateFrames::MostKeptBytes);
        for (std::size_t time = 0; time < 7; ++time) {
            const auto image = catalog.Read({0, time}, kept).Image;
            EXPECT_EQ(image->GetCell(1, 1), float(24 * time));
            EXPECT_EQ(image->GetCell(6, 4), float(24 * time + 23));
        }
        ASSERT_EQ(windows.size(), 3U) << "blocks of three times, of which the last has one";
        EXPECT_EQ(windows[1], (TSourceWindow{{3, 0, 0}, {3, 4, 6}}));
        EXPECT_EQ(windows[2], (TSourceWindow{{6, 0, 0}, {1, 4, 6}}));
    }
}

// The blocks themselves are taken away after the first frame.
TEST(ClimateFrames, FramesComeFromTheBlockThatIsKept) {
    const QTemporaryDir folder;
    const QString path = folder.filePath("blocks.zarr");
    RunOnReader([&] { MakeBlockFile(path, "Zarr", "3,2,6"); });
    const auto dataset = std::make_shared<TClimateDataset>(path);
    TClimateFrames frames(dataset, {0});
    EXPECT_EQ(frames.ReadFrame(0, Never)->GetCell(1, 1), 0);
    for (const char* const block : {"0.0.0", "0.1.0", "0/0/0", "0/1/0"})
        QFile::remove(path + "/v/" + block);
    EXPECT_EQ(frames.ReadFrame(2, Never)->GetCell(1, 1), 48);
    EXPECT_EQ(frames.ReadFrame(2, Never)->GetCell(6, 4), 71);
    EXPECT_EQ(frames.ReadFrame(3, Never)->GetCell(1, 1), 72);
    EXPECT_NE(frames.ReadFrame(2, Never)->GetCell(1, 1), 48) << "the block before is given back";
}

TEST(ClimateFrames, TheHostSaysHowMuchIsKept) {
    const QTemporaryDir folder;
    const QString path = folder.filePath("blocks.zarr");
    RunOnReader([&] { MakeBlockFile(path, "Zarr", "3,2,6"); });
    const auto dataset = std::make_shared<TClimateDataset>(path);
    TClimateFrames two(dataset, {0}, 2 * 48);
    TClimateFrames none(dataset, {0}, 0);
    EXPECT_EQ(two.ReadFrame(0, Never)->GetCell(1, 1), 0);
    EXPECT_EQ(none.ReadFrame(0, Never)->GetCell(1, 1), 0);
    for (const char* const block : {"0.0.0", "0.1.0", "0/0/0", "0/1/0"})
        QFile::remove(path + "/v/" + block);
    EXPECT_EQ(two.ReadFrame(1, Never)->GetCell(1, 1), 24);
    EXPECT_NE(two.ReadFrame(2, Never)->GetCell(1, 1), 48) << "for which there was no room";
    EXPECT_NE(none.ReadFrame(1, Never)->GetCell(1, 1), 24);
}

QStringList NotesOfBlocks(quint64 times, std::vector<quint64> blocks) {
    auto source = std::make_unique<TArraySource>();
    std::vector<double> numbers(1024);
    for (std::size_t i = 0; i < numbers.size(); ++i)
        numbers[i] = 80 - double(i) / 10;
    const TSourceDimension lat = source->AddAxis("lat", "degrees_north", numbers);
    const TSourceDimension lon = source->AddAxis("lon", "degrees_east", numbers);
    std::vector<double> days(times);
    std::iota(days.begin(), days.end(), 0);
    const TSourceDimension time = source->AddAxis("time", "days since 2001-01-01", days);
    source->Add({"/v", {time, lat, lon}, std::move(blocks), true, TClimateCellType::ctInt16, {}, {}}, {});
    return TClimateCatalog(std::move(source), "f").GetInfos().at(0).Notes;
}

// Slices of 2 MiB: 128 of them are 256 MiB.
TEST(ClimateFrames, ANoteTellsOfBlocksThatAreTooLargeToKeep) {
    EXPECT_EQ(NotesOfBlocks(200, {129, 64, 64}),
              QStringList("The file stores 129 steps as one, more than are kept in memory: it plays slowly. Store it "
                          "step by step, for example: nccopy -c time/1 in out"));
    EXPECT_EQ(NotesOfBlocks(200, {128, 64, 64}), QStringList());
    EXPECT_EQ(NotesOfBlocks(100, {129, 64, 64}), QStringList()) << "there are no more than 100";
    EXPECT_EQ(NotesOfBlocks(200, {1, 1024, 1024}), QStringList());
    EXPECT_EQ(NotesOfBlocks(200, {}), QStringList());
}

} // namespace
} // namespace lmx
