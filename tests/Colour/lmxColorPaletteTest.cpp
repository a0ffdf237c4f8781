#include <lmx/Colour/lmxColorPalette.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxText.h>
#include <tests/Support/Printers.h>

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using tests::MessageOf;
using TColors = std::vector<TColor32>;

class ColorPalette : public testing::Test {
protected:
    QString FileOf(const QByteArray& content) const {
        WriteFile(FFileName, content);
        return FFileName;
    }
    TColors Loaded(const QByteArray& content) const {
        TColorPalette palette = {1, 2, 3};
        palette.Load(FileOf(content));
        return palette;
    }

    QTemporaryDir FFolder;
    QString FFileName = FFolder.filePath(QStringLiteral("colors.pal"));
};

TEST_F(ColorPalette, ReadsRedGreenBlueAlpha) {
    EXPECT_EQ(Loaded("QUORVAN45PAL\n1 2 3 255\n255 254 253 128\n"), (TColors{0xFF010203U, 0x80FFFEFDU}));
}

TEST_F(ColorPalette, TakesAllLineBreaksAndAByteOrderMark) {
    const TColors colors = {0xFF010203U, 0x80040506U};
    EXPECT_EQ(Loaded("QUORVAN45PAL\r\n1 2 3 255\r\n4 5 6 128"), colors);
    EXPECT_EQ(Loaded("QUORVAN45PAL\r1 2 3 255\r4 5 6 128\r"), colors);
    EXPECT_EQ(Loaded("\xEF\xBB\xBFQUORVAN45PAL\n1 2 3 255\n4 5 6 128\n"), colors);
}

TEST_F(ColorPalette, TheFirstLineAloneIsAnEmptyPalette) {
    EXPECT_EQ(Loaded("QUORVAN45PAL"), TColors());
    EXPECT_EQ(Loaded("QUORVAN45PAL\n\n\n"), TColors());
}

TEST_F(ColorPalette, SkipsLinesOfOtherThanFourPieces) {
    EXPECT_EQ(Loaded("QUORVAN45PAL\n1 2 3\n\n1 2 3 4 5\n1  2 3 4\n 1 2 3 4\n1 2 3 4 \n# note\n1 2 3 4\n"),
              TColors{0x04010203U});
}

TEST_F(ColorPalette, KeepsTheColorsBeforeADamagedLine) {
    TColorPalette palette = {9};
    FileOf("QUORVAN45PAL\n1 2 3 4\n1 2 x 4\n5 6 7 8\n");
    EXPECT_EQ(MessageOf<EConvertError>([&] { palette.Load(FFileName); }), "'x' is not a valid integer value");
    EXPECT_EQ(static_cast<const TColors&>(palette), TColors{0x04010203U});
}

TEST_F(ColorPalette, RefusesComponentsOutsideAByte) {
    EXPECT_EQ(MessageOf<EConvertError>([&] { Loaded("QUORVAN45PAL\n1 2 3 256\n"); }),
              "'256' is not a valid color component");
    EXPECT_EQ(MessageOf<EConvertError>([&] { Loaded("QUORVAN45PAL\n-1 2 3 4\n"); }),
              "'-1' is not a valid color component");
    EXPECT_EQ(MessageOf<EConvertError>([&] { Loaded("QUORVAN45PAL\n1 2 99999999999 4\n"); }),
              "'99999999999' is not a valid integer value");
    EXPECT_EQ(MessageOf<EConvertError>([&] { Loaded("QUORVAN45PAL\n1.0 2 3 4\n"); }),
              "'1.0' is not a valid integer value");
}

TEST_F(ColorPalette, NamesTheFirstBadNumberOfALine) {
    EXPECT_EQ(MessageOf<EConvertError>([&] { Loaded("QUORVAN45PAL\n1 b c d\n"); }), "'b' is not a valid integer value");
    EXPECT_EQ(MessageOf<EConvertError>([&] { Loaded("QUORVAN45PAL\n300 2 x 4\n"); }),
              "'300' is not a valid color component");
    EXPECT_EQ(MessageOf<EConvertError>([&] { Loaded("QUORVAN45PAL\na b c d\n"); }), "'a' is not a valid integer value");
}

TEST_F(ColorPalette, AnEmptyFileIsInvalid) {
    TColorPalette palette = {9};
    FileOf("");
    EXPECT_EQ(MessageOf<Exception>([&] { palette.Load(FFileName); }), "Invalid palette file");
    EXPECT_TRUE(palette.empty());
}

TEST_F(ColorPalette, OtherFilesAreTakenForIdrisiPalettes) {
    EXPECT_EQ(Loaded("0 0 0 0\n1 63 0 0\n2 0 0 63\n"), (TColors{0xFF000000U, 0xFFFF0000U, 0xFF0000FFU}));
    TColorPalette palette;
    palette.LoadIdrisiPal(FileOf("0 10 20 250\n"));
    EXPECT_EQ(static_cast<const TColors&>(palette), TColors{0xFF0A14FAU});
    for (const char* content : {"quorvan45pal\n1 2 3 4\n", "QUORVAN45PAL \n1 2 3 4\n", "\nQUORVAN45PAL\n"}) {
        TColorPalette other = {9};
        FileOf(content);
        EXPECT_THROW(other.Load(FFileName), EFileFormatException) << content;
        EXPECT_TRUE(other.empty());
    }
}

TEST_F(ColorPalette, AFileThatIsMuchTooLargeIsRefused) {
    TColorPalette palette = {9};
    FileOf(QByteArray(16 * 1024 * 1024 + 1, '\n'));
    EXPECT_EQ(MessageOf<EFileFormatException>([&] { palette.Load(FFileName); }),
              FFileName + QStringLiteral(": holds more than 16777216 bytes"));
    EXPECT_TRUE(palette.empty());
}

TEST_F(ColorPalette, AMissingFileSaysSo) {
    TColorPalette palette = {9};
    EXPECT_THROW(palette.Load(FFolder.filePath(QStringLiteral("none.pal"))), EFileException);
    EXPECT_TRUE(palette.empty());
}

TEST_F(ColorPalette, WritesOneLineForEachColor) {
    TColorPalette({0xFF010203U, 0x00FFFEFDU}).Save(FFileName);
    EXPECT_EQ(ReadLines(FFileName), (QStringList{QStringLiteral("QUORVAN45PAL"), QStringLiteral("1 2 3 255"),
                                                 QStringLiteral("255 254 253 0")}));
    EXPECT_TRUE(ReadFile(FFileName).startsWith("QUORVAN45PAL"));
}

TEST_F(ColorPalette, GivesTheSameColorsAgain) {
    TColorPalette palette;
    for (TColor32 i = 0; i < 300; ++i)
        palette.push_back(i * 0x01030507U);
    palette.Save(FFileName);
    TColorPalette read;
    read.Load(FFileName);
    EXPECT_EQ(read, palette);
}

TEST_F(ColorPalette, AFileThatCannotBeWrittenIsAFailure) {
    EXPECT_THROW(TColorPalette().Save(FFolder.filePath(QStringLiteral("none/colors.pal"))), EFileException);
}

} // namespace
} // namespace lmx
