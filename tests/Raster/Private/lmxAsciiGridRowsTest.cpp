#include <lmx/Raster/Private/lmxAsciiGridRows.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Runtime/lmxTextStreams.h>
#include <tests/Support/Printers.h>

#include <QBuffer>

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace lmx {
namespace {

using tests::MessageOf;

constexpr TFormatSettings Point{u'.'};
constexpr TFormatSettings Comma{u','};
constexpr TFormatSettings Momayyez{QChar(0x066B)}; // a separator of two bytes

template<class Cell>
std::vector<Cell> Read(const QByteArray& text, std::int32_t columns, std::int32_t rows,
                       const TFormatSettings& settings = Point) {
    QBuffer stream;
    stream.setData(text);
    stream.open(QIODevice::ReadOnly);
    TStreamReader reader(stream);
    return ReadGridRows<Cell>(reader, columns, rows, settings);
}

template<class Cell>
QString Write(const std::vector<Cell>& cells, const TFormatSettings& settings = Point) {
    QByteArray text;
    AppendGridRow(text, std::span<const Cell>(cells), settings);
    return QString::fromUtf8(text);
}

// Reading

struct TCellRow {
    const char* Name;
    const char* Text;
    float Value;
};

class CellText : public testing::TestWithParam<TCellRow> {};

TEST_P(CellText, IsReadAs) {
    const auto& [name, text, value] = GetParam();
    const std::vector<float> cells = Read<float>(QByteArray("7 ") + text + " 8", 3, 1);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(cells[1]), std::bit_cast<std::uint32_t>(value)) << cells[1];
    const QByteArray withComma = QByteArray(text).replace('.', ',');
    EXPECT_EQ(std::bit_cast<std::uint32_t>(Read<float>(withComma, 1, 1, Comma)[0]),
              std::bit_cast<std::uint32_t>(value));
    const QByteArray withMomayyez = QByteArray(text).replace(".", "\xD9\xAB");
    EXPECT_EQ(std::bit_cast<std::uint32_t>(Read<float>(withMomayyez, 1, 1, Momayyez)[0]),
              std::bit_cast<std::uint32_t>(value));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, CellText,
    testing::Values(TCellRow{"Whole", "12", 12}, TCellRow{"Negative", "-9999", -9999},
                    TCellRow{"Fraction", "0.1", 0.1F}, TCellRow{"NoDigitBefore", ".5", 0.5F},
                    TCellRow{"NoDigitAfter", "5.", 5}, TCellRow{"Exponent", "1.70141E38", 1.70141e38F},
                    TCellRow{"SmallE", "-.500e+02", -50}, TCellRow{"PlusSign", "+3", 3},
                    TCellRow{"ExponentWithoutDigits", "1E", 1}, TCellRow{"NegativeZero", "-0", -0.0F},
                    TCellRow{"LeadingZeros", "007.50", 7.5F},
                    TCellRow{"RoundsToTheLargest", "3.40282356e38", std::numeric_limits<float>::max()},
                    TCellRow{"Denormal", "1e-45", std::numeric_limits<float>::denorm_min()},
                    TCellRow{"TooSmall", "-1e-50", -0.0F}, TCellRow{"FarTooSmall", "1e-99999", 0},
                    TCellRow{"OneRoundingOnly", "1.00000005960464477540", 1.00000011920928955F}),
    [](const auto& row) { return row.param.Name; });

struct TRefusedRow {
    const char* Name;
    const char* Row;
    const char* Piece;
};

class PieceOfARow : public testing::TestWithParam<TRefusedRow> {};

TEST_P(PieceOfARow, IsRefused) {
    const auto& [name, row, piece] = GetParam();
    EXPECT_EQ(MessageOf<EConvertError>([&] { Read<float>(GetParam().Row, 2, 1); }),
              u'\'' + DecodeUtf8(piece) + QStringLiteral("' is not a valid floating point value"));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, PieceOfARow,
    testing::Values(TRefusedRow{"Word", "1 x", "x"}, TRefusedRow{"TwoBlanks", "1  2", ""},
                    TRefusedRow{"Tab", "1\t2", "1\t2"}, TRefusedRow{"TabAmongBlanks", "1 \t 2", "\t"},
                    TRefusedRow{"Nan", "nan 2", "nan"}, TRefusedRow{"Infinity", "1 inf", "inf"},
                    TRefusedRow{"NegativeInfinity", "1 -INF", "-INF"}, TRefusedRow{"Minus", "1 -", "-"},
                    TRefusedRow{"PointAlone", "1 .", "."}, TRefusedRow{"TwoPoints", "1 1.2.3", "1.2.3"},
                    TRefusedRow{"Comma", "1,5 2", "1,5"}, TRefusedRow{"Hexadecimal", "1 0x10", "0x10"},
                    TRefusedRow{"BeyondSingles", "1 1e39", "1e39"},
                    TRefusedRow{"FarBeyondSingles", "1 -1e999", "-1e999"},
                    TRefusedRow{"NoBreakSpace",
                                "1\xC2\xA0"
                                "2",
                                "1\xC2\xA0"
                                "2"},
                    TRefusedRow{"ByteOrderMark",
                                "1 \xEF\xBB\xBF"
                                "2",
                                "\xEF\xBB\xBF"
                                "2"},
                    TRefusedRow{"ConvertedBeforeCounted", "1 2 3 4 x", "x"}),
    [](const auto& row) { return row.param.Name; });

TEST(AsciiGridRows, NameTheWholePieceUnderADecimalComma) {
    EXPECT_EQ(MessageOf<EConvertError>([] { Read<float>("1,5 2.5", 2, 1, Comma); }),
              "'2.5' is not a valid floating point value");
    EXPECT_EQ(MessageOf<EConvertError>([] { Read<float>("1.5", 1, 1, Momayyez); }),
              "'1.5' is not a valid floating point value");
    EXPECT_EQ(MessageOf<EConvertError>([] { Read<float>("1,5", 1, 1, Momayyez); }),
              "'1,5' is not a valid floating point value");
}

TEST(AsciiGridRows, AreReadRowAfterRow) {
    EXPECT_EQ(Read<float>("1 2 3\n4 5 6\n", 3, 2), (std::vector<float>{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(Read<float>("1 2 3\r4 5 6", 3, 2), (std::vector<float>{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(Read<float>("1 2 3\r\n4 5 6\r\nrest that is no number", 3, 2), (std::vector<float>{1, 2, 3, 4, 5, 6}));
}

TEST(AsciiGridRows, AreTrimmedOfWhatever) {
    EXPECT_EQ(Read<float>("  \t 1 2 \t \x01 ", 2, 1), (std::vector<float>{1, 2}));
}

TEST(AsciiGridRows, OfIntegersFollowTheRulesOfIntegers) {
    EXPECT_EQ(Read<std::int32_t>("-1 $1F 2147483647\n-2147483648 +7 007", 3, 2),
              (std::vector<std::int32_t>{-1, 31, 2147483647, std::numeric_limits<std::int32_t>::min(), 7, 7}));
    for (const char* const piece : {"1.5", "2147483648", "", "x", ".", "-"})
        EXPECT_EQ(MessageOf<EConvertError>([&] { Read<std::int32_t>(QByteArray("1 ") + piece + " 3", 3, 1); }),
                  u'\'' + QString::fromLatin1(piece) + QStringLiteral("' is not a valid integer value"));
}

struct TCountRow {
    const char* Name;
    const char* Text;
    int Columns;
    int Rows;
    const char* Message;
};

class RowsOfTheWrongLength : public testing::TestWithParam<TCountRow> {};

TEST_P(RowsOfTheWrongLength, AreRefused) {
    const auto& row = GetParam();
    EXPECT_EQ(MessageOf<Exception>([&] { Read<float>(row.Text, row.Columns, row.Rows); }), row.Message);
    EXPECT_EQ(MessageOf<Exception>([&] { Read<std::int32_t>(row.Text, row.Columns, row.Rows); }), row.Message);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, RowsOfTheWrongLength,
    testing::Values(TCountRow{"OneTooMany", "1\n2\n3\n4\n5 6\n", 1, 5, "Row 4 contains 2 values, 1 were expected"},
                    TCountRow{"OneTooFew", "1 2\n", 3, 1, "Row 0 contains 2 values, 3 were expected"},
                    TCountRow{"OverTwoLines", "1 2\n3\n4 5 6\n", 3, 2, "Row 0 contains 2 values, 3 were expected"},
                    TCountRow{"EmptyLine", "1 2\n\n3 4\n", 2, 2, "Row 1 contains 0 values, 2 were expected"},
                    TCountRow{"OnlyBlanks", "1 2\n   \n3 4\n", 2, 2, "Row 1 contains 0 values, 2 were expected"},
                    TCountRow{"EndedEarly", "1 2\n3 4\n", 2, 3, "Row 2 contains 0 values, 2 were expected"},
                    TCountRow{"Nothing", "", 2, 1, "Row 0 contains 0 values, 2 were expected"},
                    TCountRow{"CellsWithoutColumns", "1\n", 0, 1, "Row 0 contains 1 values, 0 were expected"},
                    TCountRow{"AnAbsurdSize", "1 2\n", 2147483647, 2147483647,
                              "Row 0 contains 2 values, 2147483647 were expected"},
                    TCountRow{"AbsurdlyManyRows", "1\n1\n", 1, 2147483647, "Row 2 contains 0 values, 1 were expected"}),
    [](const auto& row) { return row.param.Name; });

TEST(AsciiGridRows, TellOnWhichLineTheyFail) {
    const auto placeOf = [](const QByteArray& text) {
        try {
            Read<float>(text, 2, 3);
        } catch (const Exception& failure) {
            return failure.Place();
        }
        return QString();
    };
    EXPECT_EQ(placeOf("1 2\n3 4\n5\n"), "stream, line 3");
    EXPECT_EQ(placeOf("1 2\n3 x\n5 6\n"), "stream, line 2");
    EXPECT_EQ(placeOf(""), "stream, line 1");
    EXPECT_EQ(placeOf("1 2\n3 4\n5 6\n"), "");
}

TEST(AsciiGridRows, QuoteLittleOfAPieceThatIsLong) {
    EXPECT_EQ(MessageOf<EConvertError>([] { Read<float>(QByteArray(1'000'000, 'x'), 1, 1); }),
              u'\'' + QString(100, u'x') + QChar(0x2026) + QStringLiteral("' is not a valid floating point value"));
    EXPECT_EQ(MessageOf<EFileFormatException>([] { Read<float>("1\n" + QByteArray(17'000'000, '1'), 1, 2); }),
              "stream: line 2 is longer than 16777216 bytes");
}

TEST(AsciiGridRows, WithoutColumnsHaveNoFirstCell) {
    EXPECT_EQ(MessageOf<EArgumentException>([] { Read<float>("\n", 0, 2147483647); }), "Col index is out of range");
    EXPECT_TRUE(Read<float>("1 2 3", 3, 0).empty());
    EXPECT_TRUE(Read<float>("", 0, 0).empty());
}

TEST(AsciiGridRows, TakeExactlyTheMemoryOfTheirCells) {
    QByteArray text;
    for (int row = 0; row < 100; ++row)
        text += QByteArray("1 2 3 4 5 6 7\n");
    const std::vector<float> cells = Read<float>(text, 7, 100);
    EXPECT_EQ(cells.size(), 700U);
    EXPECT_EQ(cells.capacity(), 700U);
    EXPECT_EQ(Read<float>("1 2 3", 3, 1).capacity(), 3U) << "the last row may lack its line break";
}

// The shortcut for plain numbers against the conversions that define what a number is.
TEST(AsciiGridRows, ReadAnyTextAsTheConversionsDo) {
    std::mt19937 random(1);
    const std::string letters = "0123456789.,-+eE x$";
    int accepted = 0;
    for (int round = 0; round < 100'000; ++round) {
        std::string piece;
        for (std::size_t length = 1 + random() % 7; piece.size() < length;)
            piece += letters[random() % (letters.size() - (piece.empty() ? 4 : 3))];
        for (const TFormatSettings& settings : {Point, Comma, Momayyez}) {
            float expected = 0;
            if (TryStrToFloat(QString::fromStdString(piece), expected, settings)) {
                const std::vector<float> cells = Read<float>(QByteArray::fromStdString(piece), 1, 1, settings);
                ASSERT_EQ(std::bit_cast<std::uint32_t>(cells[0]), std::bit_cast<std::uint32_t>(expected)) << piece;
                ++accepted;
            } else {
                ASSERT_THROW(Read<float>(QByteArray::fromStdString(piece), 1, 1, settings), EConvertError) << piece;
            }
        }
        std::int32_t integer = 0;
        if (TryStrToInt(QString::fromStdString(piece), integer))
            ASSERT_EQ(Read<std::int32_t>(QByteArray::fromStdString(piece), 1, 1)[0], integer) << piece;
        else
            ASSERT_THROW(Read<std::int32_t>(QByteArray::fromStdString(piece), 1, 1), EConvertError) << piece;
    }
    EXPECT_GT(accepted, 10'000);
}

// Writing

struct TTextRow {
    const char* Name;
    float Value;
    const char* Text;
};

class TextOfASingle : public testing::TestWithParam<TTextRow> {};

TEST_P(TextOfASingle, Is) {
    EXPECT_EQ(Write<float>({GetParam().Value}), GetParam().Text);
}

INSTANTIATE_TEST_SUITE_P(Rows, TextOfASingle,
                         testing::Values(TTextRow{"Zero", 0, "0"}, TTextRow{"NegativeZero", -0.0F, "0"},
                                         TTextRow{"Whole", -9999, "-9999"}, TTextRow{"Tenth", 0.1F, "0.1"},
                                         TTextRow{"NineDigits", 1.23456776F, "1.2345678"},
                                         TTextRow{"Hundredthousand", 100000, "100000"},
                                         TTextRow{"LargestFixed", 999999919882240.0F, "999999919882240"},
                                         TTextRow{"SmallestScientific", 1e15F, "1E15"},
                                         TTextRow{"Large", 1.5e20F, "1.5E20"},
                                         TTextRow{"Largest", std::numeric_limits<float>::max(), "3.4028235E38"},
                                         TTextRow{"SmallestFixed", 1e-5F, "0.00001"}, TTextRow{"Small", 1e-6F, "1E-6"},
                                         TTextRow{"Denormal", -std::numeric_limits<float>::denorm_min(), "-1E-45"},
                                         TTextRow{"Nan", std::numeric_limits<float>::quiet_NaN(), "NAN"},
                                         TTextRow{"Infinity", std::numeric_limits<float>::infinity(), "INF"},
                                         TTextRow{"NegativeInfinity", -std::numeric_limits<float>::infinity(), "-INF"}),
                         [](const auto& row) { return row.param.Name; });

TEST(AsciiGridRows, HaveOneBlankBetweenValuesAndNoneAtTheEnds) {
    EXPECT_EQ(Write<float>({1, -2.5F, 3}), "1 -2.5 3");
    EXPECT_EQ(Write<std::int32_t>({1, std::numeric_limits<std::int32_t>::min(), 2147483647}),
              "1 -2147483648 2147483647");
    EXPECT_EQ(Write<float>({}), "");
    QByteArray text = "before ";
    const float cell = 7;
    AppendGridRow(text, std::span(&cell, 1), Point);
    EXPECT_EQ(text, "before 7");
}

TEST(AsciiGridRows, AreWrittenWithTheDecimalSeparator) {
    EXPECT_EQ(Write<float>({1.5F, -1.5e20F, 2}, Comma), "1,5 -1,5E20 2");
    EXPECT_EQ(Write<float>({1.25F, -1.5e20F, 2}, Momayyez), QString("1.25 -1.5E20 2").replace(u'.', QChar(0x066B)));
}

TEST(AsciiGridRows, ReadBackExactlyWhateverSingleWasWritten) {
    std::mt19937 random(2);
    for (const TFormatSettings& settings : {Point, Comma, Momayyez}) {
        std::vector<float> cells;
        while (cells.size() < 100'000)
            if (const float cell = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
                std::isfinite(cell) && cell != 0)
                cells.push_back(cell);
        const QString text = Write(cells, settings);
        ASSERT_EQ(Read<float>(text.toUtf8(), static_cast<std::int32_t>(cells.size()), 1, settings), cells);
    }
}

} // namespace
} // namespace lmx
