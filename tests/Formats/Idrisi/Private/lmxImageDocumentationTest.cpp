#include <lmx/Formats/Idrisi/Private/lmxImageDocumentation.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Formats/ImageFiles.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace lmx::tests {

namespace {

const QString Name = QStringLiteral("x.rdc");

TImageHeader Parse(const QByteArray& text) {
    return ParseImageDocumentation(text, Name).Header;
}

TImageHeader FullHeader() {
    TImageHeader header;
    header.SetTitle(QStringLiteral("Rain: January, Zürich"));
    header.SetDataType(TImageDataType::dtInteger);
    header.SetWidth(12);
    header.SetHeight(7);
    header.SetRefSystem(QStringLiteral("latlon"));
    header.SetRefUnits(QStringLiteral("deg"));
    header.SetMinX(166.4F);
    header.SetMaxX(178.6F);
    header.SetMinY(-47.3F);
    header.SetMaxY(-34.1F);
    header.SetPositionError(QStringLiteral("0.1"));
    header.SetResolutionX(0.05F);
    header.SetResolutionY(0.05F);
    header.SetMinValue(-1.5F);
    header.SetMaxValue(1e35F);
    header.SetDisplayMin(0);
    header.SetDisplayMax(100.25F);
    header.SetValueUnits(QStringLiteral("mm"));
    header.SetValueError(QStringLiteral("2.5"));
    header.SetFlag(true);
    header.SetFlagValue(-9990);
    header.SetFlagDef(QStringLiteral("NODATA"));
    header.SetLegendCategories(
        {{0, QStringLiteral("dry")}, {11, QStringLiteral("wet: very")}, {-40, QStringLiteral("cold")}});
    header.SetLineage(QStringLiteral("first\nsecond"));
    header.SetComment(QStringLiteral("one\n\nthree"));
    header.SetCompleteness(QStringLiteral("complete"));
    header.SetConsistency(QStringLiteral("consistent"));
    return header;
}

} // namespace

TEST(ImageDocumentation, IsWrittenInTheWindowsForm) {
    EXPECT_EQ(FormatImageDocumentation(FullHeader(), TDocumentationForm::dfWindows),
              QByteArray("file format : IDRISI Raster A.1\r\n"
                         "file title  : Rain: January, Z\xFCrich\r\n"
                         "data type   : integer\r\n"
                         "file type   : binary\r\n"
                         "columns     : 12\r\n"
                         "rows        : 7\r\n"
                         "ref. system : latlong\r\n"
                         "ref. units  : deg\r\n"
                         "unit dist.  : 1\r\n"
                         "min. X      : 166.4\r\n"
                         "max. X      : 178.6\r\n"
                         "min. Y      : -47.3\r\n"
                         "max. Y      : -34.1\r\n"
                         "pos'n error : 0.1\r\n"
                         "resolution  : 0.05\r\n"
                         "min. value  : -1.5\r\n"
                         "max. value  : 1e+35\r\n"
                         "display min : 0\r\n"
                         "display max : 100.25\r\n"
                         "value units : mm\r\n"
                         "value error : 2.5\r\n"
                         "flag value  : -9990\r\n"
                         "flag def'n  : NODATA\r\n"
                         "legend cats : 3\r\n"
                         "code    -40 : cold\r\n"
                         "code      0 : dry\r\n"
                         "code     11 : wet: very\r\n"
                         "lineage     : first\r\n"
                         "lineage     : second\r\n"
                         "comment     : one\r\n"
                         "comment     : \r\n"
                         "comment     : three\r\n"
                         "completeness: complete\r\n"
                         "consistency : consistent\r\n"));
}

TEST(ImageDocumentation, IsWrittenInTheOlderForm) {
    TImageHeader header;
    header.SetWidth(2);
    header.SetHeight(3);
    header.SetRefSystem(QStringLiteral("LatLong"));
    header.SetMaxX(1);
    header.SetMaxY(1);
    header.SetDataType(TImageDataType::dtByte);
    header.SetFileType(TImageFileType::ftAscii);
    header.SetLegendCategories({{7, QStringLiteral("sand")}, {120, QStringLiteral("rock")}});
    EXPECT_EQ(FormatImageDocumentation(header, TDocumentationForm::dfDos), QByteArray("file title  : \r\n"
                                                                                      "data type   : byte\r\n"
                                                                                      "file type   : ascii\r\n"
                                                                                      "columns     : 2\r\n"
                                                                                      "rows        : 3\r\n"
                                                                                      "ref. system : lat/long\r\n"
                                                                                      "ref. units  : deg\r\n"
                                                                                      "unit dist.  : 1\r\n"
                                                                                      "min. X      : 0\r\n"
                                                                                      "max. X      : 1\r\n"
                                                                                      "min. Y      : 0\r\n"
                                                                                      "max. Y      : 1\r\n"
                                                                                      "pos'n error : unknown\r\n"
                                                                                      "resolution  : unknown\r\n"
                                                                                      "min. value  : 0\r\n"
                                                                                      "max. value  : 0\r\n"
                                                                                      "value units : unspecified\r\n"
                                                                                      "value error : unknown\r\n"
                                                                                      "flag value  : none\r\n"
                                                                                      "flag def'n  : none\r\n"
                                                                                      "legend cats : 2\r\n"
                                                                                      "category  7 : sand\r\n"
                                                                                      "category120 : rock\r\n"));
}

TEST(ImageDocumentation, RestoresEveryEntry) {
    TImageHeader expected = FullHeader();
    expected.SetRefSystem(QStringLiteral("latlong"));
    EXPECT_EQ(Parse(FormatImageDocumentation(FullHeader(), TDocumentationForm::dfWindows)), expected);
    expected.SetRefSystem(QStringLiteral("lat/long"));
    expected.SetDisplayMin(-1.5F); // the older form has no display range: it is the range of values
    expected.SetDisplayMax(1e35F);
    EXPECT_EQ(Parse(FormatImageDocumentation(FullHeader(), TDocumentationForm::dfDos)), expected);
}

TEST(ImageDocumentation, IsStableOnceWritten) {
    TImageHeader odd;
    odd.SetWidth(1);
    odd.SetHeight(1);
    odd.SetTitle(QStringLiteral(" two\r\nlines "));
    odd.SetResolutionX(2);
    odd.SetResolutionY(3);
    odd.SetFlag(true);
    odd.SetFlagValue(1.70141e38F);
    odd.SetFlagDef(QStringLiteral("none"));
    odd.SetComment(QStringLiteral("\r\na\rb\n"));
    for (const auto form : {TDocumentationForm::dfWindows, TDocumentationForm::dfDos}) {
        const QByteArray once = FormatImageDocumentation(odd, form);
        EXPECT_EQ(FormatImageDocumentation(Parse(once), form), once);
        EXPECT_TRUE(once.contains("resolution  : unknown\r\n"));
        EXPECT_TRUE(once.contains("flag def'n  : missing data\r\n"));
        EXPECT_TRUE(Parse(once).GetFlag());
        EXPECT_EQ(Parse(once).GetComment(), QStringLiteral("\na\nb\n"));
    }
}

TEST(ImageDocumentation, WritesNoNumberThatIsNone) {
    TImageHeader header = FullHeader();
    header.SetMinValue(std::numeric_limits<float>::quiet_NaN());
    header.SetMaxValue(INFINITY);
    header.SetFlagValue(std::numeric_limits<float>::quiet_NaN());
    const QByteArray text = FormatImageDocumentation(header, TDocumentationForm::dfWindows);
    EXPECT_TRUE(text.contains("min. value  : unknown\r\nmax. value  : unknown\r\n"));
    EXPECT_TRUE(text.contains("flag value  : none\r\nflag def'n  : none\r\n"));
    EXPECT_FALSE(ParseImageDocumentation(text, Name).HasValueRange);
}

namespace {

struct TVariant {
    const char* Name;
    QByteArray Line; ///< in place of the strict one
};

void PrintTo(const TVariant& variant, std::ostream* stream) {
    *stream << variant.Name;
}

const TVariant Variants[] = {
    {"Strict", "pos'n error : 5\r\n"},
    {"Backquote", "pos`n error : 5\r\n"},
    {"TypographicQuoteOfTheCodePage", "pos\x92n error : 5\r\n"},
    {"TypographicQuoteInUtf8", "pos\xE2\x80\x99n error : 5\r\n"},
    {"BlankBeforeTheQuote", "pos 'n error: 5\r\n"},
    {"Capitals", "Pos'N ERROR : 5\r\n"},
    {"Tabs", "pos'n error\t:\t5\r\n"},
    {"NoBlankAfterTheColon", "pos'n error :5\r\n"},
    {"TrailingBlanks", "pos'n error : 5   \r\n"},
    {"LineFeedAlone", "pos'n error : 5\n"},
    {"CarriageReturnAlone", "pos'n error : 5\r"},
    {"BlankLines", "\r\n  \r\npos'n error : 5\r\n\r\n"},
    {"ExtraKeys", "byteorder   : little\r\npos'n error : 5\r\n"},
    {"NoLineEndAtTheEnd", "pos'n error : 5"},
    {"RepeatedLater", "pos'n error : 5\r\npos'n error : 6\r\n"},
    {"FreeTextBehind", "pos'n error : 5\r\n\r\nTo read data use:\r\nGRID: newgrid\r\n: no key\r\ncolumns : many\r\n"},
};

} // namespace

class DocumentationVariant : public testing::TestWithParam<TVariant> {};

TEST_P(DocumentationVariant, ReadsTheSameEntry) {
    const TImageHeader header = Parse(Documentation("byte", "binary", 3, 4, GetParam().Line));
    EXPECT_EQ(header.GetPositionError(), QStringLiteral("5"));
    EXPECT_EQ(header.GetWidth(), 3);
    EXPECT_EQ(header.GetHeight(), 4);
    EXPECT_EQ(header.GetMaxY(), 10);
}

INSTANTIATE_TEST_SUITE_P(Seen, DocumentationVariant, testing::ValuesIn(Variants),
                         [](const auto& row) { return std::string(row.param.Name); });

TEST(ImageDocumentation, TakesKeysWithoutTheirDotsAndBlanks) {
    const TImageHeader header = Parse("rows:2\nMinX:1.5\nmax.X : 2.5\nmin Y: -3\nMAXY:4\ncolumns:9\n"
                                      "ref.system:utm-37n\nflag def 'n: background\nflag value: 0\n");
    EXPECT_EQ(header.GetWidth(), 9);
    EXPECT_EQ(header.GetMinX(), 1.5F);
    EXPECT_EQ(header.GetMaxX(), 2.5F);
    EXPECT_EQ(header.GetMinY(), -3);
    EXPECT_EQ(header.GetMaxY(), 4);
    EXPECT_EQ(header.GetRefSystem(), QStringLiteral("utm-37n"));
    EXPECT_TRUE(header.GetFlag());
    EXPECT_EQ(header.GetFlagDef(), QStringLiteral("background"));
}

namespace {

struct TFlagLines {
    const char* Name;
    QByteArray Lines;
    bool IsDeclared;
    float Value;
};

void PrintTo(const TFlagLines& row, std::ostream* stream) {
    *stream << row.Name;
}

const TFlagLines FlagLines[] = {
    {"NumberAndMeaning", "flag value  : -9999\r\nflag def'n  : missing data\r\n", true, -9999},
    {"NumberAlone", "flag value  : 0\r\n", true, 0},
    {"Exponent", "flag value  : -3.402823E38\r\nflag def'n  : x\r\n", true, -3.402823e38F},
    {"NoneTwice", "flag value  : none\r\nflag def'n  : none\r\n", false, 0},
    {"NumberWithoutMeaning", "flag value  : 5\r\nflag def'n  : None\r\n", false, 5},
    {"MeaningWithoutNumber", "flag value  : none\r\nflag def'n  : missing data\r\n", false, 0},
    {"Empty", "flag value  : \r\nflag def'n  : \r\n", false, 0},
    {"BeyondASingle", "flag value  : -1.7976931348623157e+308\r\n", false, 0},
    {"DecimalComma", "flag value  : 1,5\r\n", false, 0},
};

} // namespace

class DocumentationFlag : public testing::TestWithParam<TFlagLines> {};

TEST_P(DocumentationFlag, IsDeclaredByANumberWithAMeaning) {
    const TImageHeader header = Parse(Documentation("real", "binary", 1, 1, GetParam().Lines));
    EXPECT_EQ(header.GetFlag(), GetParam().IsDeclared);
    EXPECT_EQ(header.GetFlagValue(), GetParam().Value);
}

INSTANTIATE_TEST_SUITE_P(Lines, DocumentationFlag, testing::ValuesIn(FlagLines),
                         [](const auto& row) { return std::string(row.param.Name); });

TEST(ImageDocumentation, LeavesOutWhatIsNoNumber) {
    const TImageDocumentation read = ParseImageDocumentation(
        "columns:1\nrows:1\nmin X:0\nmax X:1\nmin Y:0\nmax Y:1\nunit dist. : unspecified\nresolution : unknown\n"
        "min. value : 0 0 0\nmax. value : 255 255 255\nlegend cats : 99\ncode : nothing\ncode x : nothing\n",
        Name);
    EXPECT_FALSE(read.HasDataType);
    EXPECT_FALSE(read.HasValueRange);
    EXPECT_EQ(read.Header.GetUnitDistance(), 1);
    EXPECT_EQ(read.Header.GetResolutionX(), 0);
    EXPECT_EQ(read.Header.GetMinValue(), 0);
    EXPECT_EQ(read.Header.GetMaxValue(), 0);
    EXPECT_TRUE(read.Header.GetLegendCategories().empty());
    EXPECT_EQ(read.Header.GetFileType(), TImageFileType::ftBinary);
}

TEST(ImageDocumentation, KnowsTheTypesInAnyCase) {
    const auto dataType = [](const char* word) { return Parse(Documentation(word, "binary", 1, 1)).GetDataType(); };
    EXPECT_EQ(dataType("Real"), TImageDataType::dtReal);
    EXPECT_EQ(dataType("INTEGER"), TImageDataType::dtInteger);
    EXPECT_EQ(dataType("byte"), TImageDataType::dtByte);
    EXPECT_EQ(dataType("rgb8"), TImageDataType::dtRgb8);
    EXPECT_EQ(dataType("RGB24"), TImageDataType::dtRgb24);
    const auto fileType = [](const char* word) { return Parse(Documentation("byte", word, 1, 1)).GetFileType(); };
    EXPECT_EQ(fileType("ASCII"), TImageFileType::ftAscii);
    EXPECT_EQ(fileType("ascii GRID format"), TImageFileType::ftAscii);
    EXPECT_EQ(fileType("Binary"), TImageFileType::ftBinary);
    EXPECT_EQ(fileType("packed"), TImageFileType::ftPacked);
    EXPECT_EQ(fileType("Packed Binary"), TImageFileType::ftPacked);
}

namespace {

struct TDefect {
    const char* Name;
    QByteArray Original; ///< a line of good documentation ...
    QByteArray Damaged;  ///< ... and what stands in its place
    const char* Message;
};

void PrintTo(const TDefect& defect, std::ostream* stream) {
    *stream << defect.Name;
}

const char* const NoColumns = "x.rdc: the number of columns is missing or not a positive integer";
const char* const BadColumns = "x.rdc: line 3: the number of columns is missing or not a positive integer";

const TDefect Defects[] = {
    {"NoColumns", "columns     : 3\r\n", "", NoColumns},
    {"ZeroColumns", "columns     : 3\r\n", "columns : 0\r\n", BadColumns},
    {"NegativeColumns", "columns     : 3\r\n", "columns : -3\r\n", BadColumns},
    {"FractionOfAColumn", "columns     : 3\r\n", "columns : 3.5\r\n", BadColumns},
    {"MoreColumnsThanThereAreNumbers", "columns     : 3\r\n", "columns : 99999999999\r\n", BadColumns},
    {"NoRows", "rows        : 4\r\n", "rows : \r\n",
     "x.rdc: line 4: the number of rows is missing or not a positive integer"},
    {"NoWesternBound", "min. X      : 0\r\n", "", "x.rdc: the bound min X is missing or not a number"},
    {"BoundIsNan", "max. X      : 10\r\n", "max. X : nan\r\n",
     "x.rdc: line 8: the bound max X is missing or not a number"},
    {"BoundIsInfinite", "min. Y      : 0\r\n", "min. Y : 1e39\r\n",
     "x.rdc: line 9: the bound min Y is missing or not a number"},
    {"BoundIsAWord", "max. Y      : 10\r\n", "max. Y : north\r\n",
     "x.rdc: line 10: the bound max Y is missing or not a number"},
    {"UnknownDataType", "data type   : byte\r\n", "data type : longint\r\n",
     "x.rdc: line 1: the data type 'longint' is unknown"},
    {"UnknownFileType", "file type   : binary\r\n", "file type : zipped\r\n",
     "x.rdc: line 2: the file type 'zipped' is unknown"},
    {"LongDataType", "data type   : byte\r\n", "data type : " + QByteArray(1'000'000, 'x') + "\r\n",
     "x.rdc: line 1: the data type "
     "'xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx"
     "xxxxxxxxxxxxxxxx\xE2\x80\xA6' is unknown"},
};

} // namespace

class DocumentationDefect : public testing::TestWithParam<TDefect> {};

TEST_P(DocumentationDefect, IsNamed) {
    QByteArray text = Documentation("byte", "binary", 3, 4);
    ASSERT_TRUE(text.contains(GetParam().Original));
    text.replace(GetParam().Original, GetParam().Damaged);
    EXPECT_EQ(MessageOf<EFileFormatException>([&] { Parse(text); }), QString::fromUtf8(GetParam().Message));
}

INSTANTIATE_TEST_SUITE_P(Lines, DocumentationDefect, testing::ValuesIn(Defects),
                         [](const auto& row) { return std::string(row.param.Name); });

TEST(ImageDocumentation, RefusesWhatIsNoDocumentation) {
    for (const QByteArray& text :
         {QByteArray(), QByteArray(1000, '\0'), QByteArray(1000, '\xFF'), QByteArray(":::\n::")})
        EXPECT_EQ(MessageOf<EFileFormatException>([&] { Parse(text); }), QString::fromLatin1(NoColumns));
}

} // namespace lmx::tests
