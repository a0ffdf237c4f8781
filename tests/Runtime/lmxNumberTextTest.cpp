#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>

namespace lmx {
namespace {

using tests::MessageOf;

__extension__ using TUInt128 = unsigned __int128;

const TFormatSettings Point = TFormatSettings::Invariant();
const TFormatSettings Comma{u','};
constexpr extended Infinity = std::numeric_limits<extended>::infinity();
constexpr extended NaN = std::numeric_limits<extended>::quiet_NaN();

// ---- Fixed form

struct TFixedRow {
    extended Value;
    int Decimals;
    const char* Expected;
};

class FloatToFixedText : public testing::TestWithParam<TFixedRow> {};

TEST_P(FloatToFixedText, RoundsHalfUpInDecimal) {
    const TFixedRow& row = GetParam();
    EXPECT_EQ(FloatToFixed(row.Value, row.Decimals, Point), row.Expected);
}

INSTANTIATE_TEST_SUITE_P(
    Values, FloatToFixedText,
    testing::Values(TFixedRow{0.0625L, 3, "0.063"}, TFixedRow{-0.0625L, 3, "-0.063"}, TFixedRow{2.5L, 0, "3"},
                    TFixedRow{0.5L, 0, "1"}, TFixedRow{0.49999999999999999L, 0, "0"}, TFixedRow{0, 2, "0.00"},
                    TFixedRow{-0.0L, 2, "0.00"}, TFixedRow{-0.0001L, 3, "0.000"}, TFixedRow{-0.0005L, 3, "-0.001"},
                    TFixedRow{0.1F, 4, "0.1000"}, TFixedRow{999.9995L, 3, "1000.000"}, TFixedRow{9.99L, 1, "10.0"},
                    TFixedRow{0.99L, 0, "1"}, TFixedRow{0.04L, 0, "0"}, TFixedRow{0.05L, 1, "0.1"},
                    TFixedRow{0.004L, 1, "0.0"}, TFixedRow{1234567.125L, 2, "1234567.13"}, TFixedRow{12, 5, "12.00000"},
                    TFixedRow{1e-4950L, 3, "0.000"}, TFixedRow{1, 18, "1.000000000000000000"},
                    TFixedRow{1, 40, "1.000000000000000000"}, TFixedRow{1.5L, -3, "2"},
                    TFixedRow{123456789012345678.0L, 1, "123456789012345678.0"}, TFixedRow{1e18L, 3, "1E18"},
                    TFixedRow{-1.5e20L, 3, "-1.5E20"}, TFixedRow{NaN, 3, "NAN"}, TFixedRow{Infinity, 3, "INF"},
                    TFixedRow{-Infinity, 3, "-INF"}));

// ---- General form

struct TGeneralRow {
    extended Value;
    const char* Expected;
};

class FloatToStrText : public testing::TestWithParam<TGeneralRow> {};

TEST_P(FloatToStrText, HasFifteenDigits) {
    EXPECT_EQ(FloatToStr(GetParam().Value, Point), GetParam().Expected);
}

INSTANTIATE_TEST_SUITE_P(
    Values, FloatToStrText,
    testing::Values(TGeneralRow{0, "0"}, TGeneralRow{-0.0L, "0"}, TGeneralRow{-9999, "-9999"}, TGeneralRow{0.5L, "0.5"},
                    TGeneralRow{0.1F, "0.100000001490116"}, TGeneralRow{0.1, "0.1"}, TGeneralRow{100000, "100000"},
                    TGeneralRow{0.00001L, "0.00001"}, TGeneralRow{0.000009999L, "9.999E-6"}, TGeneralRow{1e-6L, "1E-6"},
                    TGeneralRow{123456789012345.0L, "123456789012345"},
                    TGeneralRow{999999999999999.0L, "999999999999999"}, TGeneralRow{999999999999999.5L, "1E15"},
                    TGeneralRow{1e15L, "1E15"}, TGeneralRow{1.5e20L, "1.5E20"}, TGeneralRow{-1.25e-20L, "-1.25E-20"},
                    TGeneralRow{1e4000L, "1E4000"}, TGeneralRow{3.4028235e38F, "3.40282346638529E38"},
                    TGeneralRow{NaN, "NAN"}, TGeneralRow{Infinity, "INF"}, TGeneralRow{-Infinity, "-INF"}));

TEST(FloatToGeneralText, HasTheWantedDigits) {
    EXPECT_EQ(FloatToGeneral(1234.5L, 4, Point), "1235");
    EXPECT_EQ(FloatToGeneral(1234.5L, 3, Point), "1.23E3");
    EXPECT_EQ(FloatToGeneral(9.99L, 2, Point), "10");
    EXPECT_EQ(FloatToGeneral(9.99L, 1, Point), "1E1");
    EXPECT_EQ(FloatToGeneral(2.5L, 0, Point), "3") << "at least one";
    EXPECT_EQ(FloatToGeneral(0.1F, 99, Point), "0.100000001490116119") << "at most eighteen";
}

TEST(NumberText, TakesTheSeparatorOfItsSettings) {
    EXPECT_EQ(FloatToStr(1.5L, Comma), "1,5");
    EXPECT_EQ(FloatToFixed(1.5L, 2, Comma), "1,50");
    EXPECT_EQ(FloatToStr(1.5e20L, Comma), "1,5E20");
    const TFormatSettingsScope scope(Comma);
    EXPECT_EQ(FloatToStr(1.5L), "1,5");
    EXPECT_EQ(FloatToFixed(1.5L, 2), "1,50");
    EXPECT_EQ(StrToFloat(QStringLiteral("1,5")), 1.5L);
}

TEST(NumberText, DoesNotFollowTheLocaleOfTheCLibrary) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    for (const char* locale : {"de_DE.UTF-8", "de_DE", "fr_FR.UTF-8", "C.UTF-8"})
        if (std::setlocale(LC_ALL, locale))
            break;
    EXPECT_EQ(FloatToStr(1.5L, Point), "1.5");
    EXPECT_EQ(StrToFloat(QStringLiteral("1.5"), Point), 1.5L);
    std::setlocale(LC_ALL, before.c_str());
}

// Digits of value * 10^scale after the two roundings, by whole numbers of 128 bits: to eighteen digits, ties to even,
// and from there to `decimals`, half up.
std::string FixedByIntegers(double value, int decimals) {
    int exponent = 0;
    const auto mantissa = static_cast<std::uint64_t>(std::ldexp(std::frexp(value, &exponent), 53));
    const int shift = 53 - exponent; // value = mantissa / 2^shift
    int digits = 1;
    for (double power = 10; power <= value; power *= 10)
        ++digits;
    TUInt128 scaled = mantissa;
    for (int i = 0; i < 18 - digits; ++i)
        scaled *= 10;
    TUInt128 whole = scaled >> shift;
    const TUInt128 rest = scaled - (whole << shift);
    const TUInt128 half = TUInt128{1} << (shift - 1);
    if (rest > half || (rest == half && whole % 2 == 1))
        ++whole;
    TUInt128 unit = 1;
    for (int i = 0; i < 18 - digits - decimals; ++i)
        unit *= 10;
    whole = (whole + unit / 2) / unit;
    std::string text = std::to_string(static_cast<std::uint64_t>(whole));
    if (static_cast<int>(text.size()) <= decimals)
        text.insert(0, static_cast<std::size_t>(decimals) + 1 - text.size(), '0');
    if (decimals > 0)
        text.insert(text.size() - static_cast<std::size_t>(decimals), ".");
    return text;
}

TEST(NumberText, FixedFormEqualsIntegerArithmetic) {
    std::mt19937_64 random(3);
    std::uniform_real_distribution<double> exponents(0, 6);
    std::uniform_int_distribution<int> sixteenths(16, 16'000'000);
    for (int i = 0; i < 500'000; ++i) {
        const double any = std::pow(10.0, exponents(random));
        const double tie = sixteenths(random) / 16.0; // up to four decimals, the last of them 5
        const int decimals = i % 7;
        ASSERT_EQ(FloatToFixed(any, decimals, Point).toStdString(), FixedByIntegers(any, decimals)) << any;
        ASSERT_EQ(FloatToFixed(tie, decimals, Point).toStdString(), FixedByIntegers(tie, decimals)) << tie;
    }
}

TEST(NumberText, GeneralFormReadsBackWithinItsDigits) {
    std::mt19937_64 random(4);
    std::uniform_real_distribution<double> mantissas(-10, 10);
    std::uniform_int_distribution<int> exponents(-300, 300);
    for (int i = 0; i < 200'000; ++i) {
        const double value = std::ldexp(mantissas(random), exponents(random));
        const double back = StrToDouble(FloatToStr(value, Point), Point);
        ASSERT_NEAR(back / value, 1, 5.3e-15) << value;
        ASSERT_EQ(FloatToStr(back, Point), FloatToStr(value, Point)) << value;
    }
}

// ---- Floats from text

struct TFloatRow {
    const char* Text;
    extended Expected;
};

class StrToFloatValue : public testing::TestWithParam<TFloatRow> {};

TEST_P(StrToFloatValue, IsRead) {
    const QString text = QString::fromUtf8(GetParam().Text);
    EXPECT_EQ(StrToFloat(text, Point), GetParam().Expected);
    extended value = -1;
    EXPECT_TRUE(TryStrToFloat(text, value, Point));
    EXPECT_EQ(value, GetParam().Expected);
    EXPECT_EQ(StrToFloat(QString(text).replace(u'.', u','), Comma), GetParam().Expected);
}

INSTANTIATE_TEST_SUITE_P(Texts, StrToFloatValue,
                         testing::Values(TFloatRow{"5", 5}, TFloatRow{"5.", 5}, TFloatRow{".5", 0.5L},
                                         TFloatRow{"+5", 5}, TFloatRow{"-5", -5}, TFloatRow{"  5  ", 5},
                                         TFloatRow{"-.5", -0.5L}, TFloatRow{"1E3", 1000}, TFloatRow{"1e+3", 1000},
                                         TFloatRow{"1.5e-2", 0.015L}, TFloatRow{"1E", 1}, TFloatRow{"1e-", 1},
                                         TFloatRow{"1.e2", 100}, TFloatRow{"007", 7}, TFloatRow{"0.1", 0.1L},
                                         TFloatRow{"1e-5000", 0}, TFloatRow{"0e99999999999", 0},
                                         TFloatRow{"1e-99999999999", 0},
                                         TFloatRow{"174.123456789012345", 174.123456789012345L},
                                         TFloatRow{"3.6e-4930", 3.6e-4930L}, TFloatRow{"1e4932", 1e4932L}));

class StrToFloatRefuses : public testing::TestWithParam<const char*> {};

TEST_P(StrToFloatRefuses, WhatIsNoNumber) {
    const QString text = QString::fromUtf8(GetParam());
    const QString message = u'\'' + text + QStringLiteral("' is not a valid floating point value");
    EXPECT_EQ(MessageOf<EConvertError>([&] { StrToFloat(text, Point); }), message);
    EXPECT_EQ(MessageOf<EConvertError>([&] { StrToDouble(text, Point); }), message);
    EXPECT_EQ(MessageOf<EConvertError>([&] { StrToSingle(text, Point); }), message);
    extended value = 7;
    EXPECT_FALSE(TryStrToFloat(text, value, Point));
    EXPECT_EQ(value, 7);
}

INSTANTIATE_TEST_SUITE_P(Texts, StrToFloatRefuses,
                         testing::Values("", " ", "+", "-", ".", "-.", "e5", ".e5", "1 2", "1,5", "1.2.3", "1e5.5",
                                         "0x10", "$10", "inf", "INF", "nan", "NAN", "\t5", "5\n", "--5", "+-5", "- 5",
                                         "1e5000", "5m",
                                         "\xC2\xA0"
                                         "5",
                                         "\xD9\xA1", "1_000", "1'000", "1e1e1", "1e4933"));

TEST(StrToSingle, RoundsOnceAndKeepsWhatRoundsToAFiniteNumber) {
    EXPECT_EQ(StrToSingle(QStringLiteral("3.4028235e38"), Point), std::numeric_limits<float>::max());
    EXPECT_EQ(StrToSingle(QStringLiteral("3.40282356e38"), Point), std::numeric_limits<float>::max());
    EXPECT_EQ(StrToSingle(QStringLiteral("-3.4028235e38"), Point), -std::numeric_limits<float>::max());
    EXPECT_EQ(StrToSingle(QStringLiteral("1e-45"), Point), std::numeric_limits<float>::denorm_min());
    EXPECT_EQ(StrToSingle(QStringLiteral("1e-50"), Point), 0);
    EXPECT_TRUE(std::signbit(StrToSingle(QStringLiteral("-1e-50"), Point)));
    // Halfway between two singles, plus a little that a rounding to double first would lose.
    EXPECT_EQ(StrToSingle(QStringLiteral("1.00000005960464477539062501"), Point), std::nextafter(1.0F, 2.0F));
    for (const char* text : {"1e39", "3.4028236e38", "-1e39"})
        EXPECT_THROW(StrToSingle(QString::fromLatin1(text), Point), EConvertError) << text;
}

TEST(StrToDouble, HasItsOwnRange) {
    EXPECT_EQ(StrToDouble(QStringLiteral("1.7976931348623157e308"), Point), std::numeric_limits<double>::max());
    EXPECT_EQ(StrToDouble(QStringLiteral("5e-324"), Point), std::numeric_limits<double>::denorm_min());
    EXPECT_EQ(StrToDouble(QStringLiteral("1e-400"), Point), 0);
    EXPECT_THROW(StrToDouble(QStringLiteral("1e309"), Point), EConvertError);
}

TEST(NumberText, ReadsWhatTheCLibraryReads) {
    std::mt19937_64 random(5);
    std::uniform_int_distribution<int> exponents(-60, 60);
    std::uniform_int_distribution<int> lengths(1, 25);
    std::uniform_int_distribution<int> digits('0', '9');
    for (int i = 0; i < 200'000; ++i) {
        std::string text = i % 3 == 0 ? "-" : "";
        const int length = lengths(random);
        const int point = lengths(random);
        for (int k = 0; k < length; ++k) {
            if (k == point)
                text += '.';
            text += static_cast<char>(digits(random));
        }
        if (i % 2 == 0)
            text += "E" + std::to_string(exponents(random));
        const QString qtext = QString::fromStdString(text);
        double asDouble = 0;
        extended asExtended = 0;
        float asSingle = 0;
        ASSERT_TRUE(TryStrToFloat(qtext, asDouble, Point)) << text;
        ASSERT_TRUE(TryStrToFloat(qtext, asExtended, Point)) << text;
        ASSERT_EQ(asDouble, std::strtod(text.c_str(), nullptr)) << text;
        ASSERT_EQ(asExtended, std::strtold(text.c_str(), nullptr)) << text;
        const float expected = std::strtof(text.c_str(), nullptr);
        ASSERT_EQ(TryStrToFloat(qtext, asSingle, Point), std::isfinite(expected)) << text;
        if (std::isfinite(expected)) {
            ASSERT_EQ(asSingle, expected) << text;
        }
    }
}

TEST(StrToFloat, TakesTheTiniestForZeroOrNearlySo) {
    for (const char* text : {"3.6e-4951", "0.36e-4940", "1e-9999"}) {
        extended value = 1;
        EXPECT_TRUE(TryStrToFloat(QString::fromLatin1(text), value, Point)) << text;
        EXPECT_GE(value, 0) << text;
        EXPECT_LT(value, std::numeric_limits<extended>::min()) << text;
    }
}

// ---- Integers and booleans

struct TIntegerRow {
    const char* Text;
    std::int32_t Expected;
};

class StrToIntValue : public testing::TestWithParam<TIntegerRow> {};

TEST_P(StrToIntValue, IsRead) {
    EXPECT_EQ(StrToInt(QString::fromLatin1(GetParam().Text)), GetParam().Expected);
}

INSTANTIATE_TEST_SUITE_P(Texts, StrToIntValue,
                         testing::Values(TIntegerRow{"0", 0}, TIntegerRow{"  12", 12}, TIntegerRow{"+12", 12},
                                         TIntegerRow{"-12", -12}, TIntegerRow{"0012", 12},
                                         TIntegerRow{"2147483647", 2147483647},
                                         TIntegerRow{"-2147483648", std::numeric_limits<std::int32_t>::min()},
                                         TIntegerRow{"$1F", 31}, TIntegerRow{"x1f", 31}, TIntegerRow{"X1F", 31},
                                         TIntegerRow{"0x1F", 31}, TIntegerRow{"0X1f", 31}, TIntegerRow{"-$10", -16},
                                         TIntegerRow{"$FFFFFFFF", -1},
                                         TIntegerRow{"$80000000", std::numeric_limits<std::int32_t>::min()}));

class StrToIntRefuses : public testing::TestWithParam<const char*> {};

TEST_P(StrToIntRefuses, WhatIsNoInteger) {
    const QString text = QString::fromUtf8(GetParam());
    EXPECT_EQ(MessageOf<EConvertError>([&] { StrToInt(text); }),
              u'\'' + text + QStringLiteral("' is not a valid integer value"));
    std::int32_t value = 7;
    EXPECT_FALSE(TryStrToInt(text, value));
    EXPECT_EQ(value, 7);
}

INSTANTIATE_TEST_SUITE_P(Texts, StrToIntRefuses,
                         testing::Values("", " ", "10 ", "1.5", "2147483648", "-2147483649", "99999999999999999999",
                                         "$", "0x", "x", "$100000000", "1e3", "\t1", "- 1", "--1", "1 2", "$1G",
                                         "\xD9\xA1"));

struct TBooleanRow {
    const char* Text;
    bool Expected;
};

class StrToBoolValue : public testing::TestWithParam<TBooleanRow> {};

TEST_P(StrToBoolValue, IsAWordOrANumber) {
    const TFormatSettingsScope scope(Point);
    EXPECT_EQ(StrToBool(QString::fromLatin1(GetParam().Text)), GetParam().Expected);
}

INSTANTIATE_TEST_SUITE_P(Texts, StrToBoolValue,
                         testing::Values(TBooleanRow{"True", true}, TBooleanRow{"tRUE", true},
                                         TBooleanRow{"False", false}, TBooleanRow{"FALSE", false},
                                         TBooleanRow{"0", false}, TBooleanRow{"-1", true}, TBooleanRow{"0.5", true},
                                         TBooleanRow{" 0.0 ", false}));

TEST(StrToBool, RefusesEverythingElse) {
    const TFormatSettingsScope scope(Point);
    for (const char* text : {"", "yes", "True ", "T",
                             "Fal\xC5\xBF"
                             "e"}) {
        const QString qtext = QString::fromUtf8(text);
        EXPECT_EQ(MessageOf<EConvertError>([&] { StrToBool(qtext); }),
                  u'\'' + qtext + QStringLiteral("' is not a valid boolean value"));
        bool value = true;
        EXPECT_FALSE(TryStrToBool(qtext, value));
        EXPECT_TRUE(value);
    }
}

TEST(NumberText, QuotesTheBeginningOfLongTexts) {
    const QString whole(100, u'x');
    const auto quoted = [](const QString& text) { return u'\'' + text + QStringLiteral("' is not a valid "); };
    EXPECT_EQ(MessageOf<EConvertError>([&] { StrToFloat(whole); }), quoted(whole) + "floating point value");
    const QString cut = whole + QChar(0x2026);
    const QString longer = whole + u'x';
    EXPECT_EQ(MessageOf<EConvertError>([&] { StrToFloat(longer); }), quoted(cut) + "floating point value");
    EXPECT_EQ(MessageOf<EConvertError>([&] { StrToInt(longer); }), quoted(cut) + "integer value");
    EXPECT_EQ(MessageOf<EConvertError>([&] { StrToBool(longer); }), quoted(cut) + "boolean value");
    const QString pair = QString::fromUcs4(U"\U0001D11E");
    EXPECT_EQ(MessageOf<EConvertError>([&] { StrToInt(whole.chopped(1) + pair); }),
              quoted(whole.chopped(1) + QChar(0x2026)) + "integer value")
        << "no half of a character";
}

TEST(NumberText, ReadsBooleansInTheSettings) {
    EXPECT_TRUE(StrToBool("0,5", {u','}));
    EXPECT_FALSE(StrToBool("0,0", {u','}));
    EXPECT_THROW(StrToBool("0.5", {u','}), EConvertError);
}

TEST(NumberText, WritesIntegersAndBooleans) {
    EXPECT_EQ(IntToStr(0), "0");
    EXPECT_EQ(IntToStr(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
    EXPECT_EQ(IntToStr(0xFFFFFFFFU), "4294967295");
    EXPECT_EQ(BoolToStr(true), "-1");
    EXPECT_EQ(BoolToStr(false), "0");
    EXPECT_EQ(BoolToWord(true), "True");
    EXPECT_EQ(BoolToWord(false), "False");
}

} // namespace
} // namespace lmx
