#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxTextForms.h>
#include <tests/Support/GeometryPrinters.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <random>

namespace lmx {
namespace {

using tests::MessageOf;

struct TEscapeRow {
    QString Plain;
    QString Escaped;
};

class CStyle : public testing::TestWithParam<TEscapeRow> {};

TEST_P(CStyle, EscapesAndUnescapes) {
    EXPECT_EQ(CStyleEscape(GetParam().Plain), GetParam().Escaped);
    EXPECT_EQ(CStyleUnescape(GetParam().Escaped), GetParam().Plain);
}

INSTANTIATE_TEST_SUITE_P(Texts, CStyle,
                         testing::Values(TEscapeRow{"", ""}, TEscapeRow{"Rainfall (mm)", "Rainfall (mm)"},
                                         TEscapeRow{"a\"b", "a\\\"b"}, TEscapeRow{"c:\\data", "c:\\\\data"},
                                         TEscapeRow{"\a\b\f\n\r\t\v", "\\a\\b\\f\\n\\r\\t\\v"},
                                         TEscapeRow{QString(QChar(0)) + "1", "\\0001"},
                                         TEscapeRow{"\x1F\x7F", "\\037\\177"}, TEscapeRow{"'?/", "'?/"},
                                         TEscapeRow{QStringLiteral("Wörgl \u2603"), QStringLiteral("Wörgl \u2603")}));

TEST(CStyleUnescapeText, TakesMoreThanIsWritten) {
    EXPECT_EQ(CStyleUnescape("\\'\\?"), "'?");
    EXPECT_EQ(CStyleUnescape("\\x41 \\x263A!"), QStringLiteral("A \u263A!"));
    EXPECT_EQ(CStyleUnescape("\\x00411"), "A1") << "four digits at most";
    EXPECT_EQ(CStyleUnescape("\\u00e4b"), QStringLiteral("\u00E4b"));
    EXPECT_EQ(CStyleUnescape("\\7\\101"), "\aA");
    EXPECT_EQ(CStyleUnescape("\\1018"), "A8");
}

TEST(CStyleUnescapeText, RefusesOtherEscapes) {
    for (const char* text : {"\\", "a\\", "\\q", "\\x", "\\xg", "\\u", "\\u12", "\\u12g4", "\\8", "\\N"})
        EXPECT_EQ(MessageOf<EConvertError>([&] { CStyleUnescape(text); }), "Invalid escape sequence") << text;
}

TEST(CStyleUnescapeText, RestoresEveryText) {
    std::mt19937 random(6);
    std::uniform_int_distribution<int> units(0, 300);
    for (int i = 0; i < 20000; ++i) {
        QString text;
        for (int k = 0; k < i % 12; ++k)
            text += QChar(static_cast<char16_t>(units(random)));
        const QString escaped = CStyleEscape(text);
        ASSERT_EQ(CStyleUnescape(escaped), text);
        ASSERT_EQ(CStyleEscapedGetLength(u'"' + escaped + QStringLiteral("\":rest"), 1), escaped.size() + 2);
    }
}

TEST(CStyleEscapedLength, CountsBothQuotes) {
    EXPECT_EQ(CStyleEscapedGetLength("(\"ab\":5)", 2), 4);
    EXPECT_EQ(CStyleEscapedGetLength("\"\"", 1), 2);
    EXPECT_EQ(CStyleEscapedGetLength("\"a\\\"b\"", 1), 6);
    EXPECT_EQ(CStyleEscapedGetLength("\"a\\\\\"b\"", 1), 5);
}

TEST(CStyleEscapedLength, IsZeroWithoutAQuotedText) {
    EXPECT_EQ(CStyleEscapedGetLength("ab", 1), 0);
    EXPECT_EQ(CStyleEscapedGetLength("\"ab", 1), 0);
    EXPECT_EQ(CStyleEscapedGetLength("\"ab\\\"", 1), 0);
    EXPECT_EQ(CStyleEscapedGetLength("\"", 1), 0);
    for (qsizetype index : {qsizetype{-5}, qsizetype{0}, qsizetype{5}})
        EXPECT_EQ(CStyleEscapedGetLength("\"ab\"", index), 0);
}

TEST(TextForms, OfPointsSizesAndRectangles) {
    EXPECT_EQ(PointToString({-1, 2}), "-1,2");
    EXPECT_EQ(SizeToString({3, 4}), "3,4");
    EXPECT_EQ(RectToString({1, -2, 3, -2147483647}), "1,-2,3,-2147483647");
    EXPECT_EQ(StringToPoint("-1, 2"), TPoint(-1, 2));
    EXPECT_EQ(StringToSize("3,4"), TSize(3, 4));
    EXPECT_EQ(StringToRect("1,-2,3,$10"), TRect(1, -2, 3, 16));
}

TEST(TextForms, RefuseOtherCountsAndTexts) {
    for (const char* text : {"", "1", "1,2,3", "1,", "a,2", "1 ,2", "1.5,2", "2147483648,0"}) {
        EXPECT_EQ(MessageOf<EConvertError>([&] { StringToPoint(text); }), "Invalid point text") << text;
        EXPECT_EQ(MessageOf<EConvertError>([&] { StringToSize(text); }), "Invalid size text") << text;
        EXPECT_EQ(MessageOf<EConvertError>([&] { StringToRect(text); }), "Invalid rectangle text") << text;
    }
}

} // namespace
} // namespace lmx
