#include <lmx/Formats/Text/lmxCSVReader.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxText.h>
#include <tests/Support/Printers.h>

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <vector>

namespace lmx {
namespace {

using tests::MessageOf;
using TRows = std::vector<QStringList>;

TRows RowsOf(const TCSVReader& reader) {
    TRows rows;
    for (std::size_t row = 0; row < reader.GetRowCount(); ++row)
        rows.push_back(reader.GetRow(row));
    return rows;
}

TRows Read(const QString& text, QChar delimiter = u',') {
    return RowsOf(TCSVReader::FromText(text, delimiter));
}

TCSVReader ReadSample(const char* name) {
    return TCSVReader::FromFile(QStringLiteral(LMX_SOURCE_DIR "/tests/data/csv/") + QString::fromLatin1(name));
}

struct TRowsRow {
    const char* Name;
    QString Text;
    TRows Rows;
};

class RowsOfText : public testing::TestWithParam<TRowsRow> {};

TEST_P(RowsOfText, Are) {
    EXPECT_EQ(Read(GetParam().Text), GetParam().Rows);
}

INSTANTIATE_TEST_SUITE_P(
    Plain, RowsOfText,
    testing::Values(TRowsRow{"Nothing", "", {}}, TRowsRow{"OneCell", "a", {{"a"}}},
                    TRowsRow{"OneRow", "a,b,c", {{"a", "b", "c"}}},
                    TRowsRow{"EmptyCells", ",a,\n,\n", {{"", "a", ""}, {"", ""}}},
                    TRowsRow{"LineFeeds", "a,b\nc\n", {{"a", "b"}, {"c"}}},
                    TRowsRow{"BothLineEnds", "a,b\r\nc\r\n", {{"a", "b"}, {"c"}}},
                    TRowsRow{"CarriageReturns", "a,b\rc", {{"a", "b"}, {"c"}}},
                    TRowsRow{"EmptyLines", "\n\na\n\r\n\nb\n\n", {{"a"}, {"b"}}},
                    TRowsRow{"Blanks", " a , b \n \n", {{" a ", " b "}, {" "}}},
                    TRowsRow{"OtherDelimiters", "a;b\tc|d", {{"a;b\tc|d"}}},
                    TRowsRow{"Mark", QString(QChar(0xFEFF)) + "a,b", {{"a", "b"}}},
                    TRowsRow{"MarkInside", "a," + QString(QChar(0xFEFF)) + "b", {{"a", QString(QChar(0xFEFF)) + "b"}}},
                    TRowsRow{"OnlyAMark", QString(QChar(0xFEFF)), {}},
                    TRowsRow{"Nul", QString(QChar(0)) + ",b", {{QString(QChar(0)), "b"}}}),
    [](const auto& row) { return row.param.Name; });

INSTANTIATE_TEST_SUITE_P(
    Quoted, RowsOfText,
    testing::Values(TRowsRow{"Delimiter", "\"a,b\",c", {{"a,b", "c"}}},
                    TRowsRow{"LineBreaks", "\"a\nb\r\n\rc\",d\ne", {{"a\nb\r\n\rc", "d"}, {"e"}}},
                    TRowsRow{"QuotesInside", "\"a\"\"b\",\"\"\"\",\"\"\"c\"\"\"", {{"a\"b", "\"", "\"c\""}}},
                    TRowsRow{"EmptyCell", "\"\",\"\"\n\"\"\n", {{"", ""}, {""}}},
                    TRowsRow{"TextBehindTheQuote", "\"a\"b,\"c\" \"d\"", {{"ab", "c \"d\""}}},
                    TRowsRow{"QuoteInsideACell", "5'6\",a\"b\"", {{"5'6\"", "a\"b\""}}},
                    TRowsRow{"BlankBeforeTheQuote", "a, \"b", {{"a", " \"b"}}},
                    TRowsRow{"NeverClosed", "a,\"b,c\nd", {{"a", "b,c\nd"}}},
                    TRowsRow{"NeverClosedBehindTwo", "\"a\"\"\nb", {{"a\"\nb"}}}, TRowsRow{"OnlyAQuote", "\"", {{""}}},
                    TRowsRow{"ThreeQuotes", "\"\"\"", {{"\""}}}),
    [](const auto& row) { return row.param.Name; });

TEST(CSVReader, TakesTheDelimiterItIsGiven) {
    EXPECT_EQ(Read("a,b;c", u';'), (TRows{{"a,b", "c"}}));
    EXPECT_EQ(Read("a\t\tb", u'\t'), (TRows{{"a", "", "b"}}));
    EXPECT_EQ(Read("a b", u' '), (TRows{{"a", "b"}}));
    for (const QChar impossible : {u'"', u'\n', u'\r'})
        EXPECT_EQ(MessageOf<EArgumentException>([&] { TCSVReader::FromText("a", impossible); }), "Delimiter");
}

TEST(CSVReader, GivesItsCellsOneByOne) {
    const TCSVReader reader = TCSVReader::FromText("a,b\nc,\"d\"\"e\",f\n", u',');
    EXPECT_EQ(reader.GetRowCount(), 2U);
    EXPECT_EQ(reader.GetCellCount(0), 2U);
    EXPECT_EQ(reader.GetCellCount(1), 3U);
    EXPECT_EQ(reader.GetCell(0, 0), u"a");
    EXPECT_EQ(reader.GetCell(1, 1), u"d\"e");
    EXPECT_EQ(reader.GetCell(0, 2), u"") << "a cell that the row lacks";
    EXPECT_EQ(reader.GetCell(0, 1'000'000), u"");
    EXPECT_EQ(MessageOf<EArgumentException>([&] { reader.GetCell(2, 0); }), "Row index is out of range");
    EXPECT_EQ(MessageOf<EArgumentException>([&] { reader.GetCellCount(2); }), "Row index is out of range");
    EXPECT_EQ(MessageOf<EArgumentException>([&] { reader.GetRow(2); }), "Row index is out of range");
}

TEST(CSVReader, HasNoRowsAtFirst) {
    const TCSVReader reader;
    EXPECT_EQ(reader.GetRowCount(), 0U);
    EXPECT_EQ(reader.GetColumnNames(), QStringList());
    EXPECT_EQ(MessageOf<EArgumentException>([&] { reader.GetRow(0); }), "Row index is out of range");
}

TEST(CSVReader, CopiesKeepTheirCells) {
    auto reader = std::make_unique<TCSVReader>(TCSVReader::FromText("a,b", u','));
    const TCSVReader copy = *reader;
    const QStringView cell = reader->GetCell(0, 1);
    reader.reset();
    EXPECT_EQ(cell, u"b");
    EXPECT_EQ(copy.GetRow(0), (QStringList{"a", "b"}));
}

// Names

struct TNamesRow {
    const char* Name;
    const char* Text;
    QStringList Names;
};

class ColumnNames : public testing::TestWithParam<TNamesRow> {};

TEST_P(ColumnNames, Are) {
    const TCSVReader reader = TCSVReader::FromText(QString::fromLatin1(GetParam().Text), u',');
    EXPECT_EQ(reader.GetColumnNames(), GetParam().Names);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ColumnNames,
    testing::Values(TNamesRow{"Given", "lat,lon\n1,2", {"lat", "lon"}}, TNamesRow{"Nothing", "", {}},
                    TNamesRow{"Missing", "lat,, ,lon\n", {"lat", "Column 2", "Column 3", "lon"}},
                    TNamesRow{"Repeated", "x,y,x,x\n", {"x", "y", "Column 3", "Column 4"}},
                    TNamesRow{"OtherCase", "x,X\n", {"x", "X"}}, TNamesRow{"Blanks", " x ,x\n", {" x ", "x"}},
                    TNamesRow{"LongerRows", "x\n1,2\n1,2,3\n1", {"x", "Column 2", "Column 3"}},
                    TNamesRow{"PlainNamesInPlace", "Column 1,Column 2\n", {"Column 1", "Column 2"}},
                    TNamesRow{"PlainNameElsewhere", "Column 2,\n", {"Column 1", "Column 2"}},
                    TNamesRow{"PlainNamesExchanged", "Column 2,Column 1\n", {"Column 2", "Column 1"}},
                    TNamesRow{"PlainNamesInARow",
                              "Column 2,,Column 1,Column 3\n",
                              {"Column 1", "Column 2", "Column 3", "Column 4"}}),
    [](const auto& row) { return row.param.Name; });

TEST(CSVReader, KeepsTheRowOfItsNames) {
    EXPECT_EQ(Read("lat,\n1,2"), (TRows{{"lat", ""}, {"1", "2"}}));
}

// Delimiters

struct TDelimiterRow {
    const char* Name;
    QString Text;
    QChar Delimiter;
};

class DelimiterOfText : public testing::TestWithParam<TDelimiterRow> {};

TEST_P(DelimiterOfText, Is) {
    EXPECT_EQ(GetCSVDelim(GetParam().Text), GetParam().Delimiter);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, DelimiterOfText,
    testing::Values(
        TDelimiterRow{"Nothing", "", u','}, TDelimiterRow{"OneColumn", "a\nb\n", u','},
        TDelimiterRow{"Comma", "a,b\n1,2\n", u','}, TDelimiterRow{"Tab", "a\tb\n1\t2\n", u'\t'},
        TDelimiterRow{"Bar", "a|b\n1|2\n", u'|'}, TDelimiterRow{"DecimalCommas", "x;y\n1,5;2,5\n3,5;4,5\n", u';'},
        TDelimiterRow{"CommasInTheFirstColumn", "unit,geo\tx\nNBR,FOO\t1\n", u'\t'},
        TDelimiterRow{"TiesInOrder", "a|b,c;d\te\n", u'\t'}, TDelimiterRow{"TiesWithoutTabs", "a|b,c;d\n", u';'},
        TDelimiterRow{"MostRows", "a title; with a semicolon\nx,y\n1,2\n", u','},
        TDelimiterRow{"TheSameNumber", "a;b;c\na;b\na;b;c;d\n1,2\n1,2\n1,2,3\n", u','},
        TDelimiterRow{"InsideQuotes", "\"a;b\",\"c;\nd\"\n\"e;f\",g\n", u','},
        TDelimiterRow{"OnlyTheFirstRows", QString("a;b\n").repeated(100) + QString("a,b\n").repeated(300), u';'},
        TDelimiterRow{"ManyRows", QString("a;b\n").repeated(49) + QString("a,b\n").repeated(300), u','}),
    [](const auto& row) { return row.param.Name; });

// Files

TEST(CSVReader, ReadsRealFiles) {
    const TCSVReader places = ReadSample("csv_with_utf8_bom.csv");
    EXPECT_EQ(places.GetColumnNames(), (QStringList{"id", "name", "WKT", "Column 4"}));
    EXPECT_EQ(places.GetRowCount(), 3U);
    EXPECT_EQ(places.GetCell(1, 1), QString::fromUtf8("Colac Bay/\xC5\x8Craka"));
    EXPECT_EQ(places.GetCell(2, 3), u"POINT (1208242.531016 4852284.8976)");

    EXPECT_EQ(RowsOf(ReadSample("double_quotes_in_middle_of_field.csv")),
              (TRows{{"id", "coord", "str"},
                     {"1",
                      QString::fromUtf8("50\xC2\xB0"
                                        "46'06.6\"N 116\xC2\xB0"
                                        "42'04.4"),
                      "foo"}}));
    EXPECT_EQ(ReadSample("header_with_line_break.csv").GetColumnNames(),
              (QStringList{"Column one", "Column two", "Column with a\nline break", "Column three",
                           "Another\nline break", "Column four", "Column five"}));
    EXPECT_EQ(ReadSample("header_with_line_break.csv").GetRowCount(), 4U);
    EXPECT_EQ(RowsOf(ReadSample("inf_nan.csv")),
              (TRows{{"id", "v"}, {"1", "10"}, {"2", "inf"}, {"3", "-inf"}, {"4", "NaN"}}));
    EXPECT_EQ(RowsOf(ReadSample("single_column.csv")), (TRows{{"WKT"}, {"POINT (1 2)"}}));
    EXPECT_EQ(RowsOf(ReadSample("test_eurostat.tsv")),
              (TRows{{"unit,geo\\time", "2010 ", "2011 ", "2012 "}, {"NBR,FOO", ": ", "1 u", "2.34 "}}));
    EXPECT_EQ(RowsOf(ReadSample("testnull.csv")),
              (TRows{{"INTCOL", "REALCOL", "INTCOL2", "REALCOL2", "STRINGCOL"}, {"12", "5.7", "foo", "foo", "foo"}}));
    EXPECT_EQ(RowsOf(ReadSample("testquoteheader1.csv")), (TRows{{"test", "2000", "2000.12"}, {"1", "2", "3"}}));
    EXPECT_EQ(RowsOf(ReadSample("unbalanced_double_quotes.csv")), (TRows{{"id", "txt"}, {"1", "foo\"\n2,bar\n"}}));
}

struct CSVFile : testing::Test {
    QTemporaryDir Folder;
    QString Name = Folder.filePath(QStringLiteral("places.csv"));
};

TEST_F(CSVFile, MayBeInAnyOfFourEncodings) {
    const QString umlaut(QChar(0xFC));
    for (const QByteArray& bytes :
         {QByteArray("\xC3\xBC,b"), QByteArray("\xEF\xBB\xBF\xC3\xBC,b"), QByteArray("\xFC,b"),
          QByteArray("\xFF\xFE\xFC\0,\0b\0", 8), QByteArray("\xFE\xFF\0\xFC\0,\0b", 8)}) {
        WriteFile(Name, bytes);
        EXPECT_EQ(RowsOf(TCSVReader::FromFile(Name)), (TRows{{umlaut, "b"}})) << bytes.toHex().constData();
    }
}

TEST_F(CSVFile, ThatCannotBeReadIsNamed) {
    EXPECT_EQ(MessageOf<EFileException>([&] { TCSVReader::FromFile(Name); }),
              Name + QStringLiteral(": cannot be opened: No such file or directory"));
    WriteFile(Name, "a\n" + QByteArray(65'536, ',') + "\n");
    EXPECT_EQ(MessageOf<EFileFormatException>([&] { TCSVReader::FromFile(Name); }),
              Name + QStringLiteral(": row 2 has more than 65536 cells"));
    QFile sparse(Name);
    ASSERT_TRUE(sparse.resize(TCSVReader::MostBytes + 1));
    EXPECT_EQ(MessageOf<EFileFormatException>([&] { TCSVReader::FromFile(Name); }),
              Name + QStringLiteral(": holds more than 268435456 bytes"));
}

// Sizes

TEST(CSVReader, HasAsManyColumnsAsFit) {
    const QString widest(65'535, u',');
    EXPECT_EQ(TCSVReader::FromText(widest, u',').GetColumnNames().size(), 65'536);
    EXPECT_EQ(MessageOf<EFileFormatException>([&] { TCSVReader::FromText(widest + u',', u','); }),
              "Delimited text: row 1 has more than 65536 cells");
}

TEST(CSVReader, ReadsAHundredThousandRows) {
    QString text("x,y,label\n");
    for (int i = 0; i < 100'000; ++i)
        text += QStringLiteral("174.5,\"-41.25\",\"Place, \"\"one\"\"\"\r\n");
    EXPECT_EQ(GetCSVDelim(text), u',');
    const TCSVReader reader = TCSVReader::FromText(text, u',');
    EXPECT_EQ(reader.GetRowCount(), 100'001U);
    EXPECT_EQ(reader.GetRow(100'000), (QStringList{"174.5", "-41.25", "Place, \"one\""}));
}

} // namespace
} // namespace lmx
