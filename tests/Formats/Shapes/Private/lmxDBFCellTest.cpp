#include <lmx/Formats/Shapes/Private/lmxDBFCell.h>
#include <tests/Support/Printers.h>
#include <tests/Support/TableBytes.h>

#include <gtest/gtest.h>

#include <limits>

namespace lmx::tests {

namespace {

/// The text of a value of a type, in a record of its own.
QString Text(char type, const QByteArray& bytes, const char* codePage = "1252") {
    TDBFColumn column;
    column.Type = type;
    column.Width = static_cast<std::int32_t>(bytes.size());
    column.Offset = 1;
    TDBFMemo memo(QStringLiteral("/nowhere/x.dbf"), false);
    return DBFCellText({}, column, ' ' + bytes, *CodePageOfName(QString::fromLatin1(codePage)), memo);
}

} // namespace

TEST(DBFCell, TextsLoseBlanksAtTheirEnd) {
    EXPECT_EQ(Text('C', "  two words   "), "  two words");
    EXPECT_EQ(Text('C', QByteArray("one\0old", 7)), "one") << "what stands behind a NUL is left over";
    EXPECT_EQ(Text('C', QByteArray(5, '\0')), "");
    EXPECT_EQ(Text('C', "     "), "");
    EXPECT_EQ(Text('C', ""), "");
    EXPECT_EQ(Text('C', "M\xE9xico "), QString::fromUtf16(u"México"));
    EXPECT_EQ(Text('C', QByteArray("\xFD\x56 \0 \0", 6), "UTF-16"), QString::fromUtf16(u"国"));
    EXPECT_EQ(Text('V', "abc "), "abc");
    EXPECT_EQ(Text('?', "abc "), "abc") << "a type that nobody knows";
}

TEST(DBFCell, NumbersAndLogicalsStandAsInTheFile) {
    for (const char type : {'N', 'F'}) {
        EXPECT_EQ(Text(type, "   12.500"), "12.500");
        EXPECT_EQ(Text(type, "68,500   "), "68,500");
        EXPECT_EQ(Text(type, "*****"), "*****");
        EXPECT_EQ(Text(type, "nan"), "nan");
        EXPECT_EQ(Text(type, "1.39E+02"), "1.39E+02");
        EXPECT_EQ(Text(type, "      "), "");
        EXPECT_EQ(Text(type, QByteArray(6, '\0')), "");
    }
    EXPECT_EQ(Text('L', "T"), "T");
    EXPECT_EQ(Text('L', "n"), "n");
    EXPECT_EQ(Text('L', "?"), "?");
    EXPECT_EQ(Text('L', " "), "");
}

TEST(DBFCell, DatesStandAsInTheFile) {
    EXPECT_EQ(Text('D', "20050712"), "20050712");
    EXPECT_EQ(Text('D', "NotAYear"), "NotAYear");
    EXPECT_EQ(Text('D', "12/07/2005"), "12/07/2005");
    EXPECT_EQ(Text('D', "        "), "");
    EXPECT_EQ(Text('D', "00000000"), "");
    EXPECT_EQ(Text('D', QByteArray(8, '\0')), "");
}

TEST(DBFCell, BinaryNumbersAreConverted) {
    EXPECT_EQ(Text('I', BytesOf(std::int32_t{-12})), "-12");
    EXPECT_EQ(Text('+', BytesOf(std::numeric_limits<std::int32_t>::max())), "2147483647");
    EXPECT_EQ(Text('B', BytesOf(-0.1)), "-0.1");
    EXPECT_EQ(Text('O', BytesOf(1e20)), "1E20");
    EXPECT_EQ(Text('Y', BytesOf(std::int64_t{180'000})), "18.0000");
    EXPECT_EQ(Text('Y', BytesOf(std::int64_t{-5})), "-0.0005");
    EXPECT_EQ(Text('Y', BytesOf(std::numeric_limits<std::int64_t>::min())), "-922337203685477.5808");
    EXPECT_EQ(Text('Q', QByteArray("\x00\xAB", 2)), "00AB");
}

TEST(DBFCell, NumbersOfAnotherWidthAreNone) {
    for (const char type : {'I', '+', 'B', 'O', 'Y', 'T', '@'})
        for (const int width : {0, 1, 3, 5, 7, 9})
            EXPECT_EQ(Text(type, QByteArray(width, '1')), "") << type << width;
    for (const char type : {'G', 'P', 'W'})
        EXPECT_EQ(Text(type, "       123"), "") << "pictures";
    EXPECT_EQ(Text('B', "       123"), "") << "the block of a picture";
}

TEST(DBFCell, DateTimesAreADayAndMilliseconds) {
    const auto text = [](std::int32_t day, std::int32_t milliseconds) {
        return Text('T', BytesOf(day) + BytesOf(milliseconds));
    };
    EXPECT_EQ(text(2'451'545, 43'200'000), "20000101 12:00:00");
    EXPECT_EQ(text(2'451'545, 43'199'999), "20000101 12:00:00") << "a second, to the nearest";
    EXPECT_EQ(text(2'451'545, 43'200'499), "20000101 12:00:00");
    EXPECT_EQ(text(2'451'545, 86'399'999), "20000102 00:00:00");
    EXPECT_EQ(text(0, 0), "");
    EXPECT_EQ(text(-1, 0), "");
    EXPECT_EQ(text(2'451'545, 86'400'000), "");
    EXPECT_EQ(text(2'451'545, -1), "");
    EXPECT_EQ(Text('T', QByteArray(8, ' ')).left(1), "") << "blanks are no time";
}

TEST(DBFCell, FlagsTellNullsAndLengths) {
    TDBFHeader header;
    header.NullFlagsOffset = 5;
    header.NullFlagsWidth = 1;
    TDBFColumn column;
    column.Type = 'V';
    column.Width = 4;
    column.Offset = 1;
    column.LengthBit = 3;
    column.NullBit = 4;
    TDBFMemo memo(QStringLiteral("/nowhere/x.dbf"), true);
    const auto page = CodePageOfName(QStringLiteral("1252"));
    const auto text = [&](const QByteArray& record) { return DBFCellText(header, column, record, *page, memo); };
    EXPECT_EQ(text(QByteArray(" abcd\x00", 6)), "abcd");
    EXPECT_EQ(text(QByteArray(" ab\0\x02\x08", 6)), "ab");
    EXPECT_EQ(text(QByteArray(" a c\x03\x08", 6)), "a c");
    EXPECT_EQ(text(QByteArray(" abc\xFF\x08", 6)), "abc") << "no longer than its bytes";
    EXPECT_EQ(text(QByteArray(" abcd\x10", 6)), "") << "null";
    column.NullBit = 8;
    EXPECT_EQ(text(QByteArray(" abcd\x00", 6)), "abcd") << "a flag that is not there";
}

} // namespace lmx::tests
