// The second example host as a user runs it, by the picture that it makes.

#include <tests/Support/Printers.h>

#include <QImage>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

TEST(OwnLayer, ShowsTheSunTheNightAndBandsWithLines) {
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("map.png"));
    QProcess program;
    program.setProcessChannelMode(QProcess::ForwardedChannels);
    program.start(QStringLiteral(OWN_LAYER_PROGRAM), {QStringLiteral("--picture"), file});
    ASSERT_TRUE(program.waitForFinished(-1));
    ASSERT_EQ(program.exitCode(), 0);
    const QImage map = QImage(file).convertToFormat(QImage::Format_RGB32);
    const int ratio = map.width() / 720;
    ASSERT_GE(ratio, 1);
    ASSERT_EQ(map.size(), QSize(720, 360) * ratio);
    const auto at = [&](double longitude, double latitude) {
        return QColor(
            map.pixel(static_cast<int>((longitude + 180) * 2 * ratio), static_cast<int>((90 - latitude) * 2 * ratio)));
    };
    EXPECT_EQ(at(-30, 18), QColor(0xFF, 0xC9, 0x33)) << "the sun";
    EXPECT_LT(at(150, 0).lightness() * 3, at(-30, 0).lightness() * 2) << "midnight and noon";
    EXPECT_LT(at(-30, -85).lightness() * 3, at(-30, 85).lightness() * 2) << "polar night and polar day";
    EXPECT_NE(at(-30, 40), at(-30, 55)) << "bands";
    const auto isLine = [&](int y) { return QColor(map.pixel(360 * ratio, y)) == QColor(0x4A, 0x55, 0x68); };
    int lines = 0;
    for (int y = 1; y < map.height(); ++y)
        lines += isLine(y) && !isLine(y - 1) ? 1 : 0;
    EXPECT_EQ(lines, 17) << "200 to 400 W/m2 north and south of the equator; the southernmost is in the night";
}

} // namespace
