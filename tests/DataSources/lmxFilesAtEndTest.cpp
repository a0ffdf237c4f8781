#include <lmx/DataSources/Private/lmxFilesAtEnd.h>

#include <lmx/DataSources/lmxGeoTiffTiles.h>
#include <tests/DataSources/ClimateSamples.h>

#include <QProcess>
#include <QProcessEnvironment>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using namespace tests;

struct TOutcome {
    bool IsEnded = false; ///< by itself
    int ExitCode = -1;
    QString Output;
    QString Errors;
};

TOutcome RunLeaving(const QString& way, const QString& fileName, const QString& openedBeforeMain = {}) {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    if (!openedBeforeMain.isEmpty())
        environment.insert("LMX_OPEN_BEFORE_MAIN", openedBeforeMain);
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(LMX_LEAVING_MAIN), {way, fileName});
    TOutcome outcome;
    outcome.IsEnded = process.waitForFinished(-1) && process.exitStatus() == QProcess::NormalExit;
    outcome.ExitCode = process.exitCode();
    outcome.Output = QString::fromUtf8(process.readAllStandardOutput());
    outcome.Errors = QString::fromUtf8(process.readAllStandardError());
    return outcome;
}

constexpr const char* Files[] = {"form_netcdf4.nc", "form_classic.nc", "form_scales.h5", "form_deflate.nc",
                                 "tiny_grib1.grib", "store.zarr",      "store.zarr.zip", "cog.tif"};

void ExpectClean(const TOutcome& outcome) {
    EXPECT_TRUE(outcome.IsEnded);
    EXPECT_EQ(outcome.ExitCode, 0);
    EXPECT_EQ(outcome.Errors, "");
}

class FilesAtEnd : public testing::TestWithParam<const char*> {};

// Several times: what may go wrong is a matter of moments.
TEST_P(FilesAtEnd, LeavingMainIsClean) {
    for (const char* const file : Files)
        for (int i = 0; i < 3; ++i) {
            SCOPED_TRACE(file);
            ExpectClean(RunLeaving(GetParam(), ClimateSample(file)));
        }
}

INSTANTIATE_TEST_SUITE_P(Ways, FilesAtEnd,
                         testing::Values("inOrder", "staticDataset", "staticPlayer", "leakedPlayer", "datasetFirst",
                                         "readingThreads", "exit"),
                         [](const auto& way) { return std::string(way.param); });

TEST(FilesAtEndOnce, ADatasetMayBeOpenedBeforeMain) {
    for (const char* const file : Files)
        for (const char* const way : {"nothing", "staticPlayer"}) {
            SCOPED_TRACE(file);
            ExpectClean(RunLeaving(way, ClimateSample("form_netcdf4.nc"), ClimateSample(file)));
        }
}

TEST(FilesAtEndOnce, TheLastObjectsReadNoMore) {
    for (const char* const file : {"form_netcdf4.nc", "form_classic.nc", "tiny_grib1.grib", "cog.tif"}) {
        SCOPED_TRACE(file);
        const TOutcome outcome = RunLeaving("lateReader", ClimateSample(file));
        ExpectClean(outcome);
        EXPECT_EQ(outcome.Output, "is closed: the program ends\n1 variables\nis closed: the program ends\n");
    }
}

TEST(FilesAtEndOnce, LeavingMainWithTilesIsClean) {
    for (const char* const way :
         {"staticTiles", "leakedTiles", "readingTiles", "readingTilesAlone", "lateTiles", "lateTilesAlone"})
        for (int i = 0; i < 5; ++i) {
            SCOPED_TRACE(way);
            ExpectClean(RunLeaving(way, ClimateSample("cog.tif")));
        }
}

TEST(FilesAtEndOnce, TheLastObjectsReadNoMoreTiles) {
    const TOutcome outcome = RunLeaving("lateTiles", ClimateSample("cog.tif"));
    ExpectClean(outcome);
    const TGeoTiffTiles tiles(ClimateSample("cog.tif"));
    EXPECT_EQ(outcome.Output, QStringLiteral("is closed: the program ends\n%1 columns\nis closed: the program ends\n")
                                  .arg(tiles.GetLevels().front().Width));
}

TEST(FilesAtEndOnce, AFileIsClosedWithItsObject) {
    int closed = 0;
    {
        const TOpenFile file([&closed] { ++closed; });
        const TFileUse use("f");
        EXPECT_EQ(closed, 0);
    }
    EXPECT_EQ(closed, 1);
}

} // namespace
} // namespace lmx
