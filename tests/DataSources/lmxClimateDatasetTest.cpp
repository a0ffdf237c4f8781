#include <lmx/DataSources/lmxClimateDataset.h>

#include <lmx/DataSources/Private/lmxClimateCatalog.h>
#include <lmx/DataSources/Private/lmxClimateFileOpening.h>
#include <lmx/DataSources/lmxClimateAxis.h>

#include <tests/DataSources/ClimateSamples.h>
#include <tests/Support/Printers.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cpl_error.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

namespace lmx {
namespace {

using namespace tests;
using testing::ElementsAre;
using enum TClimateVariable;

const TClimateVariableInfo& InfoOf(const TClimateDataset& dataset, const QString& name) {
    return dataset.GetVariables().at(dataset.FindVariable(name).GetValue());
}

QStringList NamesOf(const TClimateDataset& dataset) {
    QStringList names;
    for (const TClimateVariableInfo& info : dataset.GetVariables())
        names += info.Name;
    return names;
}

TEST(ClimateDataset, ListsVariablesAndLeavesAxesOut) {
    const TClimateDataset dataset(ClimateSample("variables.nc"));
    EXPECT_EQ(NamesOf(dataset),
              QStringList({"tas", "tasmin", "tasmax", "pr", "psl", "hurs", "huss", "clt", "sftlf", "global_mean"}));
    EXPECT_EQ(dataset.GetAttributes().Text("source"), "formulas");
    const TClimateVariableInfo& pr = InfoOf(dataset, "pr");
    EXPECT_EQ(pr.StandardName, "precipitation_flux");
    EXPECT_EQ(pr.Units, "kg m-2 s-1");
    EXPECT_EQ(pr.CellMethods, "time: mean");
    EXPECT_EQ(pr.GetTitle(), "pr") << "it has no long name";
    ASSERT_EQ(pr.Dimensions.size(), 3U);
    EXPECT_EQ(pr.Dimensions[1].Name, "lat");
    EXPECT_EQ(pr.Dimensions[1].Size, 18U);
    EXPECT_EQ(pr.TimeCount, 2U);
    EXPECT_EQ(pr.FirstTime, "1 July 2010 12:00");
    EXPECT_EQ(pr.LastTime, "2 July 2010 12:00");
    EXPECT_EQ(pr.Conversion.ToText(), "kg m-2 s-1 to mm/day: value × 86400");
    EXPECT_EQ(pr.Variable, TNullable(cvPr));
    EXPECT_EQ(pr.Refusal, "");
    EXPECT_TRUE(pr.Notes.isEmpty());
    EXPECT_EQ(InfoOf(dataset, "tasmin").Variable, TNullable(cvTasmin));
    EXPECT_EQ(InfoOf(dataset, "sftlf").TimeCount, 1U);
    EXPECT_EQ(InfoOf(dataset, "sftlf").FirstTime, "");
    EXPECT_FALSE(dataset.FindVariable("lat").GetHasValue());
}

TEST(ClimateDataset, UnitsAreThoseOfAMapUnlessTheHostWantsTheFiles) {
    const TClimateDataset dataset(ClimateSample("variables.nc"));
    const std::size_t pr = dataset.FindVariable("pr").GetValue();
    const TClimatePicture shown = dataset.Read({pr, 1});
    EXPECT_EQ(shown.Image->getHeader()->GetValueUnits(), "mm/day");
    EXPECT_EQ(shown.Image->getHeader()->GetComment(), "kg m-2 s-1 to mm/day: value × 86400");
    EXPECT_EQ(shown.Image->getHeader()->GetTitle(), "pr, 2 July 2010 12:00");
    EXPECT_EQ(shown.Image->getHeader()->GetLineage(), ClimateSample("variables.nc") + "\npr\n2 July 2010 12:00");
    EXPECT_NEAR(double(ShownAt(shown, 5, 5)), (SampleField(5, 5, 1) - 240) * 1e-6 * 86'400, 1e-5);
    const TClimatePicture raw = dataset.Read({pr, 1, 0, TClimateShownUnits::suFile});
    EXPECT_EQ(raw.Image->getHeader()->GetValueUnits(), "kg m-2 s-1");
    EXPECT_TRUE(raw.Conversion.IsIdentity());
    EXPECT_NEAR(double(ShownAt(raw, 5, 5)), (SampleField(5, 5, 1) - 240) * 1e-6, 1e-10);
}

TEST(ClimateDataset, HasLevelsWithCaptions) {
    const TClimateDataset dataset(ClimateSample("levels_pressure.nc"));
    const TClimateVariableInfo& ta = InfoOf(dataset, "ta");
    EXPECT_THAT(ta.Levels, ElementsAre(100'000, 85'000, 50'000, 20'000));
    EXPECT_EQ(ta.LevelName, "plev");
    EXPECT_EQ(ta.LevelUnits, "Pa");
    EXPECT_EQ(ta.Variable, TNullable(cvTa));
    for (std::size_t time = 0; time < 2; ++time)
        for (std::size_t level = 1; level < 4; ++level)
            ExpectField(ReadSample(dataset, "ta", time, level), Lats10(), Lons10(), double(time) - 15 * double(level));
    const TClimatePicture low = ReadSample(dataset, "ta");
    EXPECT_EQ(low.LevelCaption, "1000 hPa");
    EXPECT_EQ(ta.GetLevelCaption(3), "200 hPa");
    EXPECT_EQ(low.Image->getHeader()->GetLineage(),
              ClimateSample("levels_pressure.nc") + "\nta\nJanuary 1990\n1000 hPa");
    EXPECT_EQ(low.TimeCaption, "January 1990");
    ExpectField(low, Steps(-85, 10, 16), Lons10());
    ExpectCells(low, {75, 85}, Lons10(), [](double, double) { return -9990.0; });

    const TClimateDataset depth(ClimateSample("levels_depth.nc"));
    EXPECT_EQ(ReadSample(depth, "thetao", 0, 3).LevelCaption, "1000 m");
    ExpectField(ReadSample(depth, "thetao", 0, 3), Lats10(), Lons10(), -273.15 - 12);
    const TClimateDataset sigma(ClimateSample("levels_sigma.nc"));
    EXPECT_EQ(ReadSample(sigma, "ua", 0, 0).LevelCaption, "sigma 0.995");
    ExpectField(ReadSample(sigma, "ua", 0, 2), Lats10(), Lons10(), -282);
    ExpectCells(
        ReadSample(sigma, "ps"), Lats10(), Lons10(),
        [](double lat, double lon) { return 100'000 + 10 * SampleField(lat, lon); }, 0.01);
    EXPECT_EQ(NamesOf(sigma), QStringList({"ps", "ua"}));
}

TEST(ClimateDataset, WhatCannotBeShownIsListedWithItsReason) {
    const auto refusal = [](const char* file, const char* variable) {
        const TClimateDataset dataset(ClimateSample(file));
        const QString text = InfoOf(dataset, variable).Refusal;
        EXPECT_EQ(MessageOf<EClimateFile>([&] { ReadSample(dataset, variable); }), ClimateSample(file) + ": " + text);
        return text;
    };
    EXPECT_EQ(refusal("rotated_pole.nc", "tas"), RefusalText(TClimateRefusal::crRotatedPole, "tas"));
    EXPECT_EQ(refusal("curvilinear.nc", "tos"), RefusalText(TClimateRefusal::crCurvilinear, "tos"));
    EXPECT_EQ(refusal("unstructured.nc", "tas"), RefusalText(TClimateRefusal::crUnstructured, "tas"));
    EXPECT_EQ(refusal("variables.nc", "global_mean"), RefusalText(TClimateRefusal::crNoMap, "global_mean"));
    EXPECT_EQ(refusal("form_plain.h5", "model/tas"), RefusalText(TClimateRefusal::crNoCoordinates, "model/tas"));
    EXPECT_EQ(refusal("form_strings.nc", "season"), "Variable \"season\" holds texts or records, not numbers");
    EXPECT_EQ(refusal("form_strings.nc", "station"), "Variable \"station\" holds texts or records, not numbers");
    EXPECT_EQ(refusal("form_no_records.nc", "tas"),
              "Variable \"tas\" holds no cells yet: one of its dimensions has the length 0");
}

TEST(ClimateDataset, WhatIsNotThereIsNamed) {
    const TClimateDataset dataset(ClimateSample("levels_pressure.nc"));
    EXPECT_EQ(MessageOf<EArgumentException>([&] { dataset.Read({1}); }), "Variable");
    EXPECT_EQ(MessageOf<EArgumentException>([&] { dataset.Read({0, 2}); }), "Time");
    EXPECT_EQ(MessageOf<EArgumentException>([&] { dataset.Read({0, 0, 4}); }), "Level");
    EXPECT_EQ(MessageOf<EArgumentException>([&] { dataset.GetTimes(1); }), "Variable");
    EXPECT_EQ(dataset.GetTimes(0).GetCount(), 2U);
    EXPECT_EQ(MessageOf<EClimateFile>([] { TClimateDataset("nothing.nc"); }), "nothing.nc: does not exist");
}

TEST(ClimateDataset, NoConnectionIsMadeToAHostThatIsNotAllowed) {
    const QString refused = ": lies on a host that this program does not allow to be read from";
    for (const char* const name : {"http://localhost:1/a.tif", "HTTPS://example.invalid/a.tif", "http://"})
        EXPECT_EQ(MessageOf<EClimateFile>([&] { TClimateDataset dataset(name); }), name + refused);
    TClimateDataset::SetAllowedHosts({"127.0.0.1"});
    EXPECT_EQ(MessageOf<EClimateFile>([] { TClimateDataset dataset("http://127.0.0.1@localhost/a.tif"); }),
              "http://127.0.0.1@localhost/a.tif" + refused)
        << "a name of the user is no host";
    EXPECT_NE(MessageOf<EClimateFile>([] { TClimateDataset dataset("http://127.0.0.1:1/a.tif"); }),
              "http://127.0.0.1:1/a.tif" + refused)
        << "nobody listens there";
    TClimateDataset::SetAllowedHosts({});
    EXPECT_TRUE(TClimateDataset::GetAllowedHosts().isEmpty());
}

TEST(ClimateDataset, FilesInMemoryReadAsOnDisk) {
    for (const char* const name : {"form_classic.nc", "form_data64.nc", "tiny_grib1.grib", "scaled_int16.tif"}) {
        SCOPED_TRACE(name);
        QFile file(ClimateSample(name));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const TClimateCatalog catalog(OpenClimateBytes(file.readAll(), name), name);
        const TClimateDataset dataset(ClimateSample(name));
        ASSERT_EQ(catalog.GetInfos().size(), dataset.GetVariables().size());
        const TClimatePicture inMemory = catalog.Read({0});
        const TClimatePicture onDisk = dataset.Read({0});
        for (int row = 1; row <= onDisk.Image->getHeader()->GetHeight(); ++row)
            EXPECT_TRUE(std::ranges::equal(inMemory.Image->GetRow(row), onDisk.Image->GetRow(row))) << row;
    }
    EXPECT_EQ(MessageOf<EClimateFile>([] { OpenClimateBytes("text", "f"); }),
              "f: is of a kind that is not read from memory");
}

// What is cut short must not be taken for cells that are 0.
TEST(ClimateDataset, AFileThatIsCutIsRefusedOrReadsWhole) {
    QTemporaryDir folder;
    for (const char* const name : {"form_classic.nc", "form_netcdf4.nc", "tiny_grib2.grib2", "scaled_int16.tif"}) {
        QFile source(ClimateSample(name));
        ASSERT_TRUE(source.open(QIODevice::ReadOnly));
        const QByteArray whole = source.readAll();
        const QString path = folder.filePath(name);
        const qsizetype step = whole.size() < 2000 ? 7 : 331;
        for (qsizetype length = 0; length < whole.size(); length += step) {
            QFile file(path);
            ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
            file.write(whole.left(length));
            file.close();
            try {
                const TClimateDataset dataset(path);
                const TClimatePicture picture = dataset.Read({0});
                EXPECT_GT(double(ShownAt(picture, 1, 1)), 1) << name << ' ' << length << " reads as zeros";
            } catch (const EClimateFile& failure) {
                EXPECT_TRUE(failure.Message().startsWith(path)) << failure.what();
            }
        }
    }
}

TEST(ClimateDataset, ADamagedChunkIsNamedWithItsStep) {
    QTemporaryDir folder;
    QFile source(ClimateSample("form_deflate.nc"));
    ASSERT_TRUE(source.open(QIODevice::ReadOnly));
    QByteArray bytes = source.readAll();
    const qsizetype chunk = bytes.lastIndexOf(QByteArray("\x78\xda", 2)); // where deflated bytes begin
    ASSERT_GT(chunk, 0);
    for (qsizetype i = chunk + 20; i < chunk + 60; ++i)
        bytes[i] = '\xff';
    QFile file(folder.filePath("damaged.nc"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    file.close();
    const TClimateDataset dataset(file.fileName());
    QStringList failures;
    for (std::size_t step = 0; step < 3; ++step) {
        try {
            dataset.Read({0, step});
        } catch (const EClimateFile& failure) {
            failures += failure.Problem();
        }
    }
    ASSERT_EQ(failures.size(), 1);
    EXPECT_TRUE(failures[0].startsWith("step 3: tas: is damaged here")) << failures[0].toStdString();
}

TEST(ClimateDataset, NothingIsWrittenAndNothingIsSaid) {
    const QDir folder(ClimateSample("."));
    const QStringList before = folder.entryList(QDir::Files);
    testing::internal::CaptureStderr();
    for (const char* const name : {"tiled_overviews.tif", "variables.nc", "tiny_grib1.grib", "form_plain.h5"}) {
        const TClimateDataset dataset(ClimateSample(name));
        if (dataset.GetVariables()[0].Refusal.isEmpty())
            dataset.Read({0});
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(folder.entryList(QDir::Files), before);
    EXPECT_STREQ(CPLGetLastErrorMsg(), "");
}

TEST(ClimateDataset, AnyThreadMayRead) {
    const TClimateDataset packed(ClimateSample("form_deflate.nc"));
    const TClimateDataset tiff(ClimateSample("scaled_int16.tif"));
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < 3; ++i)
        threads.emplace_back([&, i] {
            for (int k = 0; k < 20; ++k) {
                ExpectField(ReadSample(packed, "tas", i), Lats10(), Lons10(), double(i));
                ExpectField(ReadSample(tiff, "Band 1"), Lats10(), Lons10(), 0, 0.051);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace
} // namespace lmx
