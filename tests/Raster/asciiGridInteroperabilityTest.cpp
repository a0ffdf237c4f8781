// An independent reader, the command line tools of GDAL, sees what we wrote. Built only where the tools are installed.

#include <lmx/Raster/lmxArcInfoAsciiGridRasterFrame.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <lmx/Runtime/lmxText.h>
#include <tests/Support/Printers.h>

#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

namespace lmx {
namespace {

void RunProgram(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.start(program, arguments);
    ASSERT_TRUE(process.waitForFinished(60'000)) << process.errorString().toStdString();
    ASSERT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
}

TEST(AsciiGridInteroperability, AnotherProgramReadsPlaceAndCells) {
    const TFormatSettingsScope point(TFormatSettings::Invariant());
    const QTemporaryDir folder;
    TArcInfoAsciiGridRasterFrame frame(TMapArea(166.5, -38.5, 178.5, -47.5), 4, 3, TDataKind::dkFloat);
    const std::vector<float> cells = {0,     0.1F, -9999, 1.5e20F, 1e-6F,       100000,
                                      -2.5F, 7,    8,     9,       1.23456776F, 3.4028235e38F};
    for (std::int32_t i = 0; i < 12; ++i)
        frame.WriteCell(i / 4, i % 4, cells[static_cast<std::size_t>(i)]);
    const QString fileName = folder.filePath(QStringLiteral("grid.asc"));
    const QString raw = folder.filePath(QStringLiteral("cells.bin"));
    frame.Save(fileName);
    RunProgram(QStringLiteral(LMX_GDAL_TRANSLATE), {"-q", "-of", "ENVI", "-ot", "Float32", fileName, raw});

    const QByteArray bytes = ReadFile(raw);
    std::vector<float> read(12);
    ASSERT_EQ(bytes.size(), 48);
    std::memcpy(read.data(), bytes.constData(), 48);
    EXPECT_EQ(read, cells);
    const QString header = QString::fromUtf8(ReadFile(folder.filePath(QStringLiteral("cells.hdr"))));
    EXPECT_TRUE(header.contains(QStringLiteral("samples = 4"))) << header.toStdString();
    EXPECT_TRUE(header.contains(QStringLiteral("lines   = 3"))) << header.toStdString();
    EXPECT_TRUE(header.contains(QStringLiteral("1, 1, 166.5, -38.5, 3, 3"))) << header.toStdString();
}

} // namespace
} // namespace lmx
