#include <lmx/Formats/Idrisi/lmxIdrisiPalFile.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Formats/ImageFiles.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <vector>

namespace lmx::tests {

namespace {

using TColors = std::vector<std::int32_t>;

TColors ColorsOf(const QByteArray& content) {
    TIdrisiPalFile file;
    file.LoadFromBytes(content, QStringLiteral("x.pal"));
    TColors colors;
    for (std::size_t i = 0; i < file.GetCount(); ++i)
        colors.push_back(file.GetColor(i).Value);
    return colors;
}

/// Header of a binary palette, then `colors` triplets (i, 2, 255 - i).
QByteArray BinaryPalette(int colors) {
    QByteArray content("[Idrisi]\x01\x0A\x08\x12\xFF\x00\x00\x00\xFF\x00", 18);
    for (int i = 0; i < colors; ++i) {
        content += static_cast<char>(i);
        content += '\x02';
        content += static_cast<char>(255 - i);
    }
    return content;
}

QString FaultOf(const QByteArray& content) {
    return MessageOf<EFileFormatException>([&] { ColorsOf(content); });
}

} // namespace

TEST(IdrisiPalFile, ScalesHardwareLevels) {
    EXPECT_EQ(ColorsOf("0 0 0 0\r\n1 63 0 0\r\n2 0 63 0\r\n3 0 0 63\r\n4 63 63 63\r\n5 32 1 31\r\n"),
              (TColors{0x000000, 0x0000FF, 0x00FF00, 0xFF0000, 0xFFFFFF, 0x7D0482}));
}

TEST(IdrisiPalFile, TakesComponentsTo255AsTheyAre) {
    EXPECT_EQ(ColorsOf("0 1 2 3\n1 0 0 64\n"), (TColors{0x030201, 0x400000}));
    EXPECT_EQ(ColorsOf("0 255 128 0"), TColors{0x0080FF});
}

TEST(IdrisiPalFile, PutsColoursAtTheirIndexes) {
    EXPECT_EQ(ColorsOf(" 3\t63  63 63 \n\n1 63 0 0\n1 0 63 0\n\x1A"), (TColors{0, 0x00FF00, 0, 0xFFFFFF}));
    EXPECT_EQ(ColorsOf("255 0 0 0").size(), 256U);
}

TEST(IdrisiPalFile, ReadsTheBinaryForm) {
    const TColors colors = ColorsOf(BinaryPalette(256));
    ASSERT_EQ(colors.size(), 256U);
    EXPECT_EQ(colors[0], 0xFF0200);
    EXPECT_EQ(colors[16], 0xEF0210);
    EXPECT_EQ(colors[255], 0x0002FF);
}

TEST(IdrisiPalFile, ReadsAsManyBinaryColoursAsThereAre) {
    EXPECT_EQ(ColorsOf(BinaryPalette(16)).size(), 16U);
    EXPECT_EQ(ColorsOf(BinaryPalette(16).chopped(1)).size(), 15U);
    EXPECT_EQ(ColorsOf(BinaryPalette(256) + QByteArray(99, 'x')).size(), 256U);
}

TEST(IdrisiPalFile, TakesTheHeadersLengthFromTheHeader) {
    QByteArray content = BinaryPalette(2);
    content[11] = 21;
    EXPECT_EQ(ColorsOf(content), TColors{0xFE0201});
}

TEST(IdrisiPalFile, RefusesACutBinaryForm) {
    const QString message = QStringLiteral("x.pal: the palette is cut short");
    EXPECT_EQ(FaultOf("[Idrisi]"), message);
    EXPECT_EQ(FaultOf(BinaryPalette(0)), message);
    EXPECT_EQ(FaultOf(BinaryPalette(1).chopped(1)), message);
    QByteArray noHeader = BinaryPalette(4);
    noHeader[11] = 0;
    EXPECT_EQ(FaultOf(noHeader), message);
    QByteArray longHeader = BinaryPalette(4);
    longHeader[11] = '\xFF';
    EXPECT_EQ(FaultOf(longHeader), message);
}

TEST(IdrisiPalFile, RefusesLinesThatAreNoColour) {
    const auto message = [](const char* line) {
        return QStringLiteral("x.pal: line ") + QString::fromLatin1(line) +
               QStringLiteral(" of the palette is not an index and three components");
    };
    EXPECT_EQ(FaultOf("0 1 2 3\n1 2 3\n"), message("2"));
    EXPECT_EQ(FaultOf("0 1 2 3 4"), message("1"));
    EXPECT_EQ(FaultOf("\n\n0 1 2 x"), message("3"));
    EXPECT_EQ(FaultOf("0 1 2 256"), message("1"));
    EXPECT_EQ(FaultOf("0 -1 2 3"), message("1"));
    EXPECT_EQ(FaultOf("256 1 2 3"), message("1"));
    EXPECT_EQ(FaultOf("2147483647 1 2 3"), message("1"));
    EXPECT_EQ(FaultOf(QByteArray(500, '\xFF')), message("1"));
    EXPECT_EQ(FaultOf(QByteArray(500, '\0') + "x"), message("1"));
}

TEST(IdrisiPalFile, RefusesAFileWithoutColours) {
    EXPECT_EQ(FaultOf(""), QStringLiteral("x.pal: the palette has no colours"));
    EXPECT_EQ(FaultOf("\r\n  \r\n"), QStringLiteral("x.pal: the palette has no colours"));
}

TEST(IdrisiPalFile, RefusesAFileThatIsMuchTooLarge) {
    const TImageFolder folder;
    folder.Write("large.pal", QByteArray(1024 * 1024 + 1, '\n'));
    const QString file = folder.Path("large.pal");
    EXPECT_EQ(MessageOf<EFileFormatException>([&] { TIdrisiPalFile().LoadFromFile(file); }),
              file + QStringLiteral(": holds more than 1048576 bytes"));
}

TEST(IdrisiPalFile, KeepsItsColoursWhenAFileIsRefused) {
    const TImageFolder folder;
    folder.Write("good.pal", "0 63 0 0");
    folder.Write("bad.pal", "garbage");
    TIdrisiPalFile file;
    file.LoadFromFile(folder.Path("good.pal"));
    EXPECT_THROW(file.LoadFromFile(folder.Path("bad.pal")), EFileFormatException);
    EXPECT_THROW(file.LoadFromFile(folder.Path("none.pal")), EFileException);
    ASSERT_EQ(file.GetCount(), 1U);
    EXPECT_EQ(file.GetColor(0).Value, 0x0000FF);
    EXPECT_EQ(MessageOf<EArgumentException>([&] { file.GetColor(1); }), QStringLiteral("Color index is out of range"));
}

} // namespace lmx::tests
