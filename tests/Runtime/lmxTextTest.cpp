#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxText.h>
#include <tests/Support/Printers.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using tests::MessageOf;

TEST(Text, TrimTakesUpToTheBlankAndNothingElse) {
    EXPECT_EQ(Trim(QStringLiteral(" \t\r\n\x01 a b \x1F ")), "a b");
    EXPECT_EQ(Trim(QStringLiteral("\u00A0a\u00A0")), QStringLiteral("\u00A0a\u00A0"));
    EXPECT_EQ(Trim(QStringLiteral("  ")), "");
    EXPECT_EQ(Trim(QString()), "");
}

TEST(Text, SplitKeepsEmptyPiecesButAnEmptyTextHasNone) {
    EXPECT_EQ(Split(QStringLiteral("a,,b,"), u','), (QStringList{"a", "", "b", ""}));
    EXPECT_EQ(Split(QStringLiteral("a"), u','), QStringList{"a"});
    EXPECT_EQ(Split(QStringLiteral(","), u','), (QStringList{"", ""}));
    EXPECT_EQ(Split(QString(), u','), QStringList());
}

TEST(Text, SameTextFoldsAsciiLettersOnly) {
    EXPECT_TRUE(SameText(u"rainFALL_1", u"RainFall_1"));
    EXPECT_FALSE(SameText(u"rain", u"rain1"));
    EXPECT_FALSE(SameText(u"\u212A", u"k")) << "the Kelvin sign";
    EXPECT_FALSE(SameText(u"\u00C4", u"\u00E4"));
    EXPECT_FALSE(SameText(u"@", u"`")) << "one below A and a";
    EXPECT_FALSE(SameText(u"[", u"{")) << "one above Z and z";
    EXPECT_TRUE(SameText(u"", QString()));
}

TEST(Text, LinesEndInAllThreeWays) {
    EXPECT_EQ(SplitLines(QStringLiteral("a\nb\rc\r\nd")), (QStringList{"a", "b", "c", "d"}));
    EXPECT_EQ(SplitLines(QStringLiteral("a\n")), QStringList{"a"}) << "a final line break adds no line";
    EXPECT_EQ(SplitLines(QStringLiteral("\n\r\r\n\n")), (QStringList{"", "", "", ""}));
    EXPECT_EQ(SplitLines(QString()), QStringList());
}

struct TextFile : testing::Test {
    QTemporaryDir Folder;
    QString Path(const char* name) const { return Folder.filePath(QString::fromLatin1(name)); }
    void Create(const char* name) const { WriteFile(Path(name), {}); }
};

TEST_F(TextFile, HoldsWhatWasWritten) {
    const QByteArray content("a\0b\xFF", 4);
    WriteFile(Path("data.bin"), content);
    EXPECT_EQ(ReadFile(Path("data.bin")), content);
    WriteFile(Path("data.bin"), "x");
    EXPECT_EQ(ReadFile(Path("data.bin")), "x");
}

TEST_F(TextFile, LinesAreUtf8WithoutAMark) {
    WriteLines(Path("lines.txt"), {QStringLiteral("Höhe"), QString(), QStringLiteral("m")});
    QByteArray expected("H\xC3\xB6he\n\nm\n");
    expected.replace("\n", LineBreak().toLatin1());
    EXPECT_EQ(ReadFile(Path("lines.txt")), expected);
    EXPECT_EQ(ReadLines(Path("lines.txt")), (QStringList{QStringLiteral("Höhe"), "", "m"}));
}

TEST_F(TextFile, AByteOrderMarkIsSkipped) {
    WriteFile(Path("bom.txt"), "\xEF\xBB\xBF"
                               "a\r\nb");
    EXPECT_EQ(ReadLines(Path("bom.txt")), (QStringList{"a", "b"}));
}

TEST_F(TextFile, AFailureNamesTheFile) {
    const QString absent = Path("absent.txt");
    EXPECT_EQ(MessageOf<EFileException>([&] { ReadFile(absent); }),
              absent + QStringLiteral(": cannot be opened: No such file or directory"));
    EXPECT_THROW(ReadLines(absent), EFileException);
    EXPECT_THROW(ReadFile(Folder.path()), EFileException) << "a folder";
    const QString nowhere = Path("no/such/folder.txt");
    EXPECT_EQ(MessageOf<EFileException>([&] { WriteFile(nowhere, "x"); }),
              nowhere + QStringLiteral(": cannot be written: No such file or directory"));
}

TEST_F(TextFile, MayBeRefusedForItsLength) {
    WriteFile(Path("data.bin"), "1234");
    EXPECT_EQ(ReadFile(Path("data.bin"), 4), "1234");
    const QString message = Path("data.bin") + QStringLiteral(": holds more than 3 bytes");
    EXPECT_EQ(MessageOf<EFileFormatException>([&] { ReadFile(Path("data.bin"), 3); }), message);
    EXPECT_EQ(MessageOf<EFileFormatException>([&] { ReadLines(Path("data.bin"), 3); }), message);
}

TEST_F(TextFile, MayBeAPipeThatNeverEnds) {
    EXPECT_EQ(MessageOf<EFileFormatException>([] { ReadFile(QStringLiteral("/dev/zero"), 100'000); }),
              "/dev/zero: holds more than 100000 bytes");
    EXPECT_EQ(ReadFile(QStringLiteral("/dev/null"), 0), "");
}

TEST_F(TextFile, FindsItsSister) {
    Create("Rivers.v1.SHP");
    Create("rivers.V1.prj");
    Create("Rivers.v1.dbf");
    QDir(Folder.path()).mkdir(QStringLiteral("Rivers.v1.shx"));
    EXPECT_EQ(FindSisterFile(Path("Rivers.v1.SHP"), QStringLiteral("dbf")), Path("Rivers.v1.dbf"));
    EXPECT_EQ(FindSisterFile(Path("Rivers.v1.SHP"), QStringLiteral("PRJ")), Path("rivers.V1.prj"));
    EXPECT_EQ(FindSisterFile(Path("Rivers.v1.SHP"), QStringLiteral("cpg")), QString());
    EXPECT_EQ(FindSisterFile(Path("Rivers.v1.SHP"), QStringLiteral("shx")), QString()) << "a folder is no file";
    Create("rivers.v1.DBF");
    EXPECT_EQ(FindSisterFile(Path("Rivers.v1.SHP"), QStringLiteral("dbf")), Path("Rivers.v1.dbf"))
        << "the exact name first";
}

} // namespace
} // namespace lmx
