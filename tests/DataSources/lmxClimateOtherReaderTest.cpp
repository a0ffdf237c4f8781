#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Runtime/lmxText.h>

#include <tests/DataSources/ClimateSamples.h>
#include <tests/Support/Printers.h>

#include <QProcess>

#include <gtest/gtest.h>

#include <algorithm>

// Real files against another reader, which is asked if the machine has it: its own classification of flags and its own
// arithmetic in double, by Python.

namespace lmx {
namespace {

using namespace tests;

// Prints for each band how many cells are values, their sum and the sum of each by its row. Fill values only: these
// files have nothing else.
constexpr char Script[] = R"(
import sys
try:
    from osgeo import gdal
    import numpy as np
except ImportError:
    print("none")
    sys.exit(0)
gdal.UseExceptions()
f = gdal.Open('NETCDF:"%s":%s' % (sys.argv[1], sys.argv[2]))
for i in range(1, f.RasterCount + 1):
    b = f.GetRasterBand(i)
    raw = b.ReadAsArray()
    good = raw != np.array(b.GetNoDataValue(), raw.dtype)
    good &= ~np.isnan(raw.astype("f8"))
    v = raw.astype("f8") * (b.GetScale() or 1) + (b.GetOffset() or 0)
    rows = np.arange(1, raw.shape[0] + 1)[:, None]
    print("%d %.12g %.12g" % (good.sum(), v[good].sum(), (v * rows)[good].sum()))
)";

// Lines of numbers, or none without such a reader.
QStringList Ask(const QString& file, const QString& variable) {
    for (const char* const python : {"python3", "/usr/bin/python3"}) {
        QProcess process;
        process.start(QString::fromLatin1(python), {QStringLiteral("-c"), QString::fromLatin1(Script), file, variable});
        if (!process.waitForFinished())
            continue;
        EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
        const QStringList lines = SplitLines(QString::fromUtf8(process.readAllStandardOutput()));
        if (lines.value(0) != QStringLiteral("none"))
            return lines;
    }
    return {};
}

struct TSums {
    double Count = 0;
    double Sum = 0;
    double ByRow = 0;
};

TSums SumsOf(const TClimatePicture& picture) {
    TSums sums;
    const int rows = picture.Image->getHeader()->GetHeight();
    for (int row = 1; row <= rows; ++row)
        for (const float value : picture.Image->GetRow(row))
            if (TSpatialConst::IsValue(value)) {
                ++sums.Count;
                sums.Sum += double(value);
                sums.ByRow += double(value) * row;
            }
    return sums;
}

void Compare(const char* file, const char* variable) {
    SCOPED_TRACE(variable);
    const TClimateDataset dataset(ClimateSample(file));
    const QStringList lines = Ask(ClimateSample(file), variable);
    if (lines.isEmpty())
        return;
    const TClimateVariableInfo& info = dataset.GetVariables().at(dataset.FindVariable(variable).GetValue());
    const std::size_t levels = std::max<std::size_t>(info.Levels.size(), 1);
    ASSERT_EQ(std::size_t(lines.size()), info.TimeCount * levels);
    for (std::size_t i = 0; i < info.TimeCount * levels; ++i) {
        const TSums sums = SumsOf(ReadSample(dataset, variable, i / levels, i % levels));
        const QStringList words = Split(lines[qsizetype(i)], u' ');
        const auto number = [&](qsizetype word) {
            return StrToDouble(words.value(word), TFormatSettings::Invariant());
        };
        EXPECT_EQ(sums.Count, number(0)) << i;
        EXPECT_NEAR(sums.Sum, number(1), 1e-6 * std::abs(number(1)) + 1e-3) << i;
        EXPECT_NEAR(sums.ByRow, number(2), 1e-6 * std::abs(number(2)) + 0.1) << i;
    }
}

TEST(ClimateOtherReader, AgreesOnTheRealClimatologies) {
    Compare("coads_sst.nc", "SST");
    for (const char* const variable : {"UWND", "VWND", "SLP"})
        Compare("coads_wind.nc", variable);
    for (const char* const variable : {"TEMP", "SALT"})
        Compare("levitus_ocean.nc", variable);
}

TEST(ClimateOtherReader, AgreesOnLevelsAndVariables) {
    for (const char* const variable : {"tas", "pr", "psl", "clt"})
        Compare("variables.nc", variable);
    Compare("levels_pressure.nc", "ta");
}

} // namespace
} // namespace lmx
