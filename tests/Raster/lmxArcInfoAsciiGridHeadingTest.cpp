#include <lmx/Coordinates/wskMappingTypes.h>
#include <lmx/Raster/lmxArcInfoAsciiGridHeading.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <lmx/Runtime/lmxText.h>
#include <lmx/Runtime/lmxTextStreams.h>
#include <tests/Support/Printers.h>

#include <QBuffer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using tests::MessageOf;
using TFactory = TArcInfoAsciiGridHeadingFactory;

struct WithAPoint : testing::Test {
    TFormatSettingsScope Settings{{u'.'}};
};

const QStringList& Plain() {
    static const QStringList lines{"ncols 4",      "nrows 3",      "xllcorner -180.5",
                                   "yllcorner 10", "cellsize 0.1", "NODATA_value -9999"};
    return lines;
}

QStringList WithLine(int index, const QString& line) {
    QStringList lines = Plain();
    lines[index] = line;
    return lines;
}

class ArcInfoAsciiGridHeading : public WithAPoint {};

TEST_F(ArcInfoAsciiGridHeading, HasSixEntriesInDoublePrecision) {
    const auto heading = TFactory::GetObject(Plain());
    EXPECT_EQ(heading->GetNCols(), 4);
    EXPECT_EQ(heading->GetNRows(), 3);
    EXPECT_EQ(heading->GetXCorner(), -180.5);
    EXPECT_EQ(heading->GetYCorner(), 10);
    EXPECT_EQ(heading->GetCellSize(), 0.1);
    EXPECT_EQ(heading->GetNODATAValue(), -9999);
}

struct TAcceptedRow {
    const char* Name;
    int Line;
    const char* Text;
    double Value;
};

class HeadingLine : public WithAPoint, public testing::WithParamInterface<TAcceptedRow> {};

double EntryOf(const IArcInfoAsciiGridHeading& heading, int line) {
    const double entries[] = {static_cast<double>(heading.GetNCols()),
                              static_cast<double>(heading.GetNRows()),
                              heading.GetXCorner(),
                              heading.GetYCorner(),
                              heading.GetCellSize(),
                              heading.GetNODATAValue()};
    return entries[line];
}

TEST_P(HeadingLine, IsReadAs) {
    const auto& [name, line, text, value] = GetParam();
    const auto heading = TFactory::GetObject(WithLine(line, QString::fromLatin1(text)));
    EXPECT_EQ(EntryOf(*heading, line), value);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, HeadingLine,
    testing::Values(TAcceptedRow{"UpperCase", 0, "NCOLS 3", 3}, TAcceptedRow{"MixedCase", 5, "nodata_VALUE 1", 1},
                    TAcceptedRow{"NoWhiteSpace", 0, "ncols5", 5}, TAcceptedRow{"BlanksAround", 1, "  nrows   7  ", 7},
                    TAcceptedRow{"Tabs", 1, "\tnrows\t \t7\t\t", 7}, TAcceptedRow{"VerticalSpace", 1, "nrows\v\f7", 7},
                    TAcceptedRow{"Hexadecimal", 0, "ncols $1F", 31}, TAcceptedRow{"ZeroColumns", 0, "ncols 0", 0},
                    TAcceptedRow{"LargestCount", 0, "ncols 2147483647", 2147483647},
                    TAcceptedRow{"Exponent", 2, "xllcorner 0.100000E+06", 100000},
                    TAcceptedRow{"NoDigitBeforeThePoint", 4, "cellsize .500E+02", 50},
                    TAcceptedRow{"BarePoint", 5, "NODATA_value -99999.", -99999},
                    TAcceptedRow{"NearTheLargestSingle", 5, "NODATA_value 1.70141E38", 1.70141e38},
                    TAcceptedRow{"RoundsToTheLargestSingle", 5, "NODATA_value 3.4028235e38", 3.4028235e38},
                    TAcceptedRow{"MoreDigitsThanASingle", 2, "xllcorner 440720.123456789", 440720.123456789},
                    TAcceptedRow{"ThirteenDigits", 5, "nodata_value -1.234567890123", -1.234567890123},
                    TAcceptedRow{"TooSmallForASingle", 3, "yllcorner 1e-300", 1e-300},
                    TAcceptedRow{"NegativeCellSize", 4, "cellsize -1", -1}),
    [](const auto& row) { return row.param.Name; });

struct TRefusedRow {
    const char* Name;
    int Line;
    const char* Text;
    const char* Message;
};

class DamagedHeadingLine : public WithAPoint, public testing::WithParamInterface<TRefusedRow> {};

TEST_P(DamagedHeadingLine, IsRefused) {
    const auto& [name, line, text, message] = GetParam();
    const QStringList lines = WithLine(line, QString::fromUtf8(text));
    EXPECT_EQ(MessageOf<EArgumentException>([&] { TFactory::GetObject(lines); }), message);
}

constexpr const char* WrongKey = "Line does not start with expected line ID";

INSTANTIATE_TEST_SUITE_P(
    Rows, DamagedHeadingLine,
    testing::Values(TRefusedRow{"CellCentre", 2, "xllcenter 5", WrongKey},
                    TRefusedRow{"OtherKey", 0, "nrows 5", WrongKey}, TRefusedRow{"Empty", 3, "", WrongKey},
                    TRefusedRow{"PartOfTheKey", 0, "ncol", WrongKey},
                    TRefusedRow{"NoLetterButALetterlikeSign", 5, "NODATA_value\xE2\x84\xAA",
                                "Value for \"NODATA_value\" is invalid"},
                    TRefusedRow{"LongS", 4, "cell\xC5\xBFize 1", WrongKey},
                    TRefusedRow{"NoValueColumns", 0, "ncols", "No value found for \"ncols\""},
                    TRefusedRow{"NoValueRows", 1, " nrows \t", "No value found for \"nrows\""},
                    TRefusedRow{"NoValueX", 2, "xllcorner ", "No value found for \"xllcorner\""},
                    TRefusedRow{"NoValueY", 3, "YLLCORNER", "No value found for \"yllcorner\""},
                    TRefusedRow{"NoValueCellSize", 4, "cellsize", "No value found for \"cellsize\""},
                    TRefusedRow{"NoValueNoData", 5, "nodata_value", "No value found for \"NODATA_value\""},
                    TRefusedRow{"NegativeColumns", 0, "ncols -1", "Value for \"ncols\" is invalid"},
                    TRefusedRow{"NegativeRows", 1, "nrows -2147483648", "Value for \"nrows\" is invalid"},
                    TRefusedRow{"FractionOfARow", 1, "nrows 5.0", "Value for \"nrows\" is invalid"},
                    TRefusedRow{"TooManyColumns", 0, "ncols 2147483648", "Value for \"ncols\" is invalid"},
                    TRefusedRow{"TwoValues", 0, "ncols 1 2", "Value for \"ncols\" is invalid"},
                    TRefusedRow{"WordForX", 2, "xllcorner west", "Value for \"xllcorner\" is invalid"},
                    TRefusedRow{"CommaForY", 3, "yllcorner 1,5", "Value for \"yllcorner\" is invalid"},
                    TRefusedRow{"InfiniteCellSize", 4, "cellsize inf", "Value for \"cellsize\" is invalid"},
                    TRefusedRow{"NanForNoData", 5, "NODATA_value nan", "Value for \"NODATA_value\" is invalid"},
                    TRefusedRow{"BeyondSingles", 5, "NODATA_value 1e39", "Value for \"NODATA_value\" is invalid"},
                    TRefusedRow{"NoBreakSpace", 0,
                                "ncols\xC2\xA0"
                                "5",
                                "Value for \"ncols\" is invalid"}),
    [](const auto& row) { return row.param.Name; });

TEST_F(ArcInfoAsciiGridHeading, NeedsExactlySixLines) {
    const QString message = QStringLiteral("Invalid number of heading lines");
    EXPECT_EQ(MessageOf<EArgumentException>([] { TFactory::GetObject(QStringList()); }), message);
    EXPECT_EQ(MessageOf<EArgumentException>([] { TFactory::GetObject(Plain().first(5)); }), message);
    EXPECT_EQ(MessageOf<EArgumentException>([] { TFactory::GetObject(Plain() + QStringList("1 2 3 4")); }), message);
}

TEST_F(ArcInfoAsciiGridHeading, TakesItsLinesInOneOrderOnly) {
    for (int line = 0; line < 5; ++line) {
        QStringList lines = Plain();
        lines.swapItemsAt(line, line + 1);
        EXPECT_EQ(MessageOf<EArgumentException>([&] { TFactory::GetObject(lines); }), WrongKey) << line;
    }
}

TEST_F(ArcInfoAsciiGridHeading, FollowsTheDecimalSeparator) {
    const TFormatSettingsScope comma({u','});
    const auto heading = TFactory::GetObject(
        QStringList{"ncols 4", "nrows 3", "xllcorner ,5", "yllcorner 1,25E1", "cellsize 0,1", "NODATA_value -99,"});
    EXPECT_EQ(heading->GetXCorner(), 0.5);
    EXPECT_EQ(heading->GetYCorner(), 12.5);
    EXPECT_EQ(heading->GetCellSize(), 0.1);
    EXPECT_EQ(heading->GetNODATAValue(), -99);
    EXPECT_EQ(MessageOf<EArgumentException>([] { TFactory::GetObject(Plain()); }),
              "Value for \"xllcorner\" is invalid");
    EXPECT_TRUE(heading->ToString().contains(QStringLiteral("yllcorner     12,5")));
}

TEST_F(ArcInfoAsciiGridHeading, FollowsTheSettingsThatItIsGiven) {
    constexpr TFormatSettings comma{u','};
    const QStringList lines{"ncols 4",          "nrows 3",      "xllcorner ,5",
                            "yllcorner 1,25E1", "cellsize 0,1", "NODATA_value -99,"};
    const auto heading = TFactory::GetObject(lines, comma);
    EXPECT_EQ(heading->GetYCorner(), 12.5);
    EXPECT_TRUE(heading->ToString(comma).contains(QStringLiteral("yllcorner     12,5")));
    EXPECT_TRUE(heading->ToString().contains(QStringLiteral("yllcorner     12.5")));
    QBuffer stream;
    stream.open(QIODevice::ReadWrite);
    {
        TStreamWriter writer(stream);
        heading->Save(writer, comma);
    }
    stream.seek(0);
    EXPECT_EQ(TFactory::GetObject(stream, comma)->GetCellSize(), 0.1);
    stream.seek(0);
    TStreamReader reader(stream);
    EXPECT_EQ(TFactory::GetObject(reader, comma)->GetXCorner(), 0.5);
    QTemporaryDir folder;
    WriteFile(folder.filePath(QStringLiteral("grid.asc")), stream.data());
    EXPECT_EQ(TFactory::GetObject(folder.filePath(QStringLiteral("grid.asc")), comma)->GetNODATAValue(), -99);
}

TEST_F(ArcInfoAsciiGridHeading, IsReadFromAReaderAStreamAndAFile) {
    const QByteArray text = Plain().join(QStringLiteral("\r\n")).toUtf8() + "\r\n1 2 3 4\r\n";
    QBuffer stream;
    stream.setData(text);
    stream.open(QIODevice::ReadOnly);
    EXPECT_EQ(TFactory::GetObject(stream)->GetCellSize(), 0.1);
    EXPECT_EQ(stream.readAll(), "1 2 3 4\r\n") << "the stream is left at the first row";

    stream.seek(0);
    TStreamReader reader(stream);
    EXPECT_EQ(TFactory::GetObject(reader)->GetNCols(), 4);
    EXPECT_EQ(reader.ReadLine(), "1 2 3 4");

    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("grid.asc"));
    WriteFile(fileName, "\xEF\xBB\xBF" + text);
    EXPECT_EQ(TFactory::GetObject(fileName)->GetNRows(), 3);
    const QString missing = folder.filePath(QStringLiteral("missing.asc"));
    EXPECT_EQ(MessageOf<EFileException>([&] { TFactory::GetObject(missing); }),
              missing + QStringLiteral(": cannot be read: No such file or directory"));
}

TEST_F(ArcInfoAsciiGridHeading, MissesTheKeyOfALineThatIsNotThere) {
    for (qsizetype lines = 0; lines < 6; ++lines) {
        QBuffer stream;
        stream.setData(Plain().first(lines).join(u'\n').toUtf8());
        stream.open(QIODevice::ReadOnly);
        EXPECT_EQ(MessageOf<EArgumentException>([&] { TFactory::GetObject(stream); }), WrongKey) << lines;
    }
}

TEST_F(ArcInfoAsciiGridHeading, IsMadeFromAnAreaWithoutTests) {
    const auto heading = TFactory::GetObject(TMapArea(10, 50, 30, 40), -1, 7, 2.5, -1);
    EXPECT_EQ(heading->GetXCorner(), 10);
    EXPECT_EQ(heading->GetYCorner(), 40);
    EXPECT_EQ(heading->GetNCols(), -1);
    EXPECT_EQ(heading->GetNRows(), 7);
    EXPECT_EQ(heading->GetCellSize(), 2.5);
    EXPECT_EQ(heading->GetNODATAValue(), -1);
}

const char* const TextOfAHeading = "ncols         720\n"
                                   "nrows         360\n"
                                   "xllcorner     -180\n"
                                   "yllcorner     0.1\n"
                                   "cellsize      0.333333333333333\n"
                                   "NODATA_value  1E20\n";

std::shared_ptr<IArcInfoAsciiGridHeading> HeadingOfAText() {
    return TFactory::GetObject(TMapArea(-180, 90, 180, 0.1), 720, 360, 1.0 / 3, 1e20);
}

QString WithLineFeeds(QString text) {
    return text.replace(LineBreak(), QStringLiteral("\n"));
}

TEST_F(ArcInfoAsciiGridHeading, IsTextInSixLinesWithKeysOfEqualWidth) {
    EXPECT_EQ(WithLineFeeds(HeadingOfAText()->ToString()), TextOfAHeading);
}

TEST_F(ArcInfoAsciiGridHeading, ReadsItsOwnText) {
    const auto heading = TFactory::GetObject(SplitLines(HeadingOfAText()->ToString()));
    EXPECT_EQ(heading->ToString(), HeadingOfAText()->ToString());
    EXPECT_EQ(heading->GetCellSize(), 0.333333333333333);
}

TEST_F(ArcInfoAsciiGridHeading, IsSavedWithAnEmptyLineBehindIt) {
    QBuffer stream;
    stream.open(QIODevice::WriteOnly);
    {
        TStreamWriter writer(stream);
        HeadingOfAText()->Save(writer);
    }
    EXPECT_EQ(WithLineFeeds(QString::fromUtf8(stream.data())), QString::fromLatin1(TextOfAHeading) + u'\n');
}

} // namespace
} // namespace lmx
