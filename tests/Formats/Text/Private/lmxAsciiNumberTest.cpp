#include <lmx/Formats/Text/Private/lmxAsciiNumber.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

namespace lmx::tests {

TEST(AsciiNumber, WritesTheShortestExactText) {
    EXPECT_EQ(AsciiNumber(0), QStringLiteral("0"));
    EXPECT_EQ(AsciiNumber(0.1F), QStringLiteral("0.1"));
    EXPECT_EQ(AsciiNumber(-9999), QStringLiteral("-9999"));
    EXPECT_EQ(AsciiNumber(100000), QStringLiteral("100000"));
    EXPECT_EQ(AsciiNumber(6295220), QStringLiteral("6295220"));
    EXPECT_EQ(AsciiNumber(0.0001F), QStringLiteral("0.0001"));
    EXPECT_EQ(AsciiNumber(0.000001F), QStringLiteral("1e-06"));
    EXPECT_EQ(AsciiNumber(1e35F), QStringLiteral("1e+35"));
    EXPECT_EQ(AsciiNumber(std::numeric_limits<float>::quiet_NaN()), QStringLiteral("nan"));
    EXPECT_EQ(AsciiNumber(-INFINITY), QStringLiteral("-inf"));
}

TEST(AsciiNumber, ReadsBackWhatItWroteBitForBit) {
    std::mt19937 random(20240101);
    for (int i = 0; i < 100'000; ++i) {
        const auto bits = static_cast<std::uint32_t>(random());
        const float number = std::bit_cast<float>(bits);
        if (std::isnan(number))
            continue;
        QByteArray text;
        AppendAsciiNumber(text, number);
        QByteArrayView rest(text);
        float back = 0;
        ASSERT_TRUE(TakeAsciiNumber(rest, back)) << text.toStdString();
        ASSERT_EQ(std::bit_cast<std::uint32_t>(back), bits) << text.toStdString();
        ASSERT_TRUE(rest.isEmpty());
    }
}

TEST(AsciiNumber, TakesNumbersOffTheFrontOfAText) {
    const QByteArray text = " \r\n1\t-2.5e1 +3\f.5 7. nan 1e-60\n";
    QByteArrayView rest(text);
    for (const float expected : {1.0F, -25.0F, 3.0F, 0.5F, 7.0F}) {
        float number = 0;
        ASSERT_TRUE(TakeAsciiNumber(rest, number));
        EXPECT_EQ(number, expected);
    }
    float number = 1;
    ASSERT_TRUE(TakeAsciiNumber(rest, number));
    EXPECT_TRUE(std::isnan(number));
    ASSERT_TRUE(TakeAsciiNumber(rest, number));
    EXPECT_EQ(number, 0);
    EXPECT_FALSE(TakeAsciiNumber(rest, number));
    EXPECT_TRUE(rest.isEmpty());
}

TEST(AsciiNumber, TakesDoublesInTheirOwnRange) {
    const QByteArray text = "1e39 16777217 0.1 1e-400";
    QByteArrayView rest(text);
    for (const double expected : {1e39, 16777217.0, 0.1, 0.0}) {
        double number = 1;
        ASSERT_TRUE(TakeAsciiNumber(rest, number));
        EXPECT_EQ(number, expected);
    }
    double number = 7;
    QByteArrayView huge("1e309");
    EXPECT_FALSE(TakeAsciiNumber(huge, number));
    EXPECT_EQ(number, 7);
}

TEST(AsciiNumber, TakesNumbersBelowTheSmallestForZero) {
    for (const char* text : {"1e-60", "-1e-60", "1e-400", "-1e-400", "1e-99999", "-0.0000000001e-45"}) {
        QByteArrayView rest(text);
        float number = 7;
        ASSERT_TRUE(TakeAsciiNumber(rest, number)) << text;
        EXPECT_EQ(number, 0) << text;
        EXPECT_EQ(std::signbit(number), text[0] == '-') << text;
        EXPECT_TRUE(rest.isEmpty()) << text;
    }
}

TEST(AsciiNumber, RefusesWhatIsNoNumber) {
    for (const char* text : {"", "x", "1,5", "1x", "--1", "+-1", "+", "1e39", "-1e400", "1e99999", "0x10"}) {
        QByteArrayView rest(text);
        float number = 7;
        EXPECT_FALSE(TakeAsciiNumber(rest, number)) << text;
        EXPECT_EQ(number, 7) << text;
        EXPECT_EQ(rest.size(), QByteArrayView(text).size()) << text;
    }
}

} // namespace lmx::tests
