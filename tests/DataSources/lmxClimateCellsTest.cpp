#include <lmx/DataSources/Private/lmxClimateCells.h>

#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <tests/Support/Printers.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace lmx {
namespace {

using namespace tests;
using enum TClimateCellType;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr float Flag = TSpatialConst::NoData;

TClimateAttributes Packed(double scale = 0.01, double offset = 280) {
    TClimateAttributes attributes;
    attributes.Set("scale_factor", std::vector<double>{scale});
    attributes.Set("add_offset", std::vector<double>{offset});
    return attributes;
}

template<class Raw>
std::vector<float> Unpacked(const TClimateCells& cells, const std::vector<Raw>& raw) {
    return cells.Unpack(std::span<const Raw>(raw));
}

TEST(ClimateCells, UnpackInDouble) {
    TClimateAttributes attributes = Packed();
    attributes.Set("_FillValue", std::vector<double>{-32768});
    const TClimateCells cells({ctInt16}, attributes);
    EXPECT_TRUE(cells.IsPacked());
    EXPECT_THAT(Unpacked<std::int16_t>(cells, {-1200, 0, 1100, 32767, -32768, -32767}),
                ElementsAre(268.0F, 280.0F, 291.0F, static_cast<float>(32767 * 0.01 + 280), Flag,
                            static_cast<float>(-32767 * 0.01 + 280)));
    EXPECT_THAT(cells.GetNotes(), IsEmpty());
}

TEST(ClimateCells, ATableMeansTheSameAsTheArithmetic) {
    TClimateAttributes attributes = Packed(0.1, -5);
    attributes.Set("missing_value", std::vector<double>{7, -9});
    attributes.Set("valid_min", std::vector<double>{-30000});
    const TClimateCells shorts({ctInt16}, attributes);
    const TClimateCells wide({ctInt32, false}, [&] {
        TClimateAttributes same = attributes;
        same.Set("_FillValue", std::vector<double>{-32767});
        return same;
    }());
    std::vector<std::int16_t> few;
    std::vector<std::int32_t> many;
    for (int i = 0; i < 70'000; ++i) {
        few.push_back(static_cast<std::int16_t>(i - 32768));
        many.push_back(few.back());
    }
    EXPECT_EQ(Unpacked(shorts, few), Unpacked(wide, many));
    EXPECT_EQ(
        Unpacked(shorts, std::vector<std::int16_t>{7, -9, 8, -30001, -30000}),
        (std::vector<float>{Flag, Flag, static_cast<float>(8 * 0.1 - 5), Flag, static_cast<float>(-30000 * 0.1 - 5)}));
}

TEST(ClimateCells, EveryMissingValueIsAFlag) {
    TClimateAttributes attributes;
    attributes.Set("_FillValue", std::vector<double>{-32767});
    attributes.Set("missing_value", std::vector<double>{-9999, -8888});
    EXPECT_THAT(Unpacked<std::int16_t>(TClimateCells({ctInt16}, attributes), {-32767, -9999, -8888, 1}),
                ElementsAre(Flag, Flag, Flag, 1.0F));
}

TEST(ClimateCells, DefaultFillsCountInNetCdfBeyondBytes) {
    const TClimateAttributes none;
    EXPECT_THAT(Unpacked<std::int16_t>(TClimateCells({ctInt16}, none), {-32767, 1}), ElementsAre(Flag, 1.0F));
    EXPECT_THAT(Unpacked<std::int16_t>(TClimateCells({ctInt16, false}, none), {-32767, 1}),
                ElementsAre(-32767.0F, 1.0F));
    EXPECT_THAT(Unpacked<std::int8_t>(TClimateCells({ctInt8}, none), {-127, 1}), ElementsAre(-127.0F, 1.0F));
    EXPECT_THAT(Unpacked<std::uint8_t>(TClimateCells({ctUInt8}, none), {255, 1}), ElementsAre(255.0F, 1.0F));
    EXPECT_THAT(Unpacked<std::uint16_t>(TClimateCells({ctUInt16}, none), {65535, 1}), ElementsAre(Flag, 1.0F));
    EXPECT_THAT(Unpacked<std::int32_t>(TClimateCells({ctInt32}, none), {-2147483647, 1}), ElementsAre(Flag, 1.0F));
    EXPECT_THAT(Unpacked<std::uint32_t>(TClimateCells({ctUInt32}, none), {4294967295U, 1}), ElementsAre(Flag, 1.0F));
    EXPECT_THAT(Unpacked<std::int64_t>(TClimateCells({ctInt64}, none), {-9223372036854775806LL, 1}),
                ElementsAre(Flag, 1.0F));
    EXPECT_THAT(Unpacked<std::uint64_t>(TClimateCells({ctUInt64}, none), {18446744073709551614ULL, 1}),
                ElementsAre(Flag, 1.0F));
    EXPECT_THAT(Unpacked<double>(TClimateCells({ctDouble}, none), {9.9692099683868690e+36, 1}),
                ElementsAre(Flag, 1.0F));
}

TEST(ClimateCells, AFillOfZeroInZarrIsOneOnlyIfItIsNamed) {
    TClimateAttributes attributes;
    attributes.Set("_FillValue", std::vector<double>{0});
    EXPECT_THAT(Unpacked<float>(TClimateCells({ctFloat, false}, attributes), {0, 1}), ElementsAre(Flag, 1.0F));
    EXPECT_THAT(Unpacked<float>(TClimateCells({ctFloat, false}, {}), {0, 1}), ElementsAre(0.0F, 1.0F));
}

TEST(ClimateCells, SinglesMeetAMarkWrittenAsADouble) {
    TClimateAttributes attributes;
    attributes.Set("missing_value", std::vector<double>{0.1});
    attributes.Set("valid_max", std::vector<double>{0.7});
    EXPECT_THAT(Unpacked<float>(TClimateCells({ctFloat}, attributes), {0.1F, 0.2F, 0.7F, 0.71F}),
                ElementsAre(Flag, 0.2F, 0.7F, Flag));
}

TEST(ClimateCells, NumbersThatAreFlagsStayFlags) {
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    constexpr float infinity = std::numeric_limits<float>::infinity();
    EXPECT_THAT(Unpacked<float>(TClimateCells({ctFloat}, {}), {nan, infinity, -infinity, 1e30F, -9999, -9990, -10376}),
                ElementsAre(Flag, Flag, Flag, Flag, Flag, Flag, -10376.0F));
    EXPECT_THAT(Unpacked<double>(TClimateCells({ctDouble}, {}), {1e300, -1e300, 1e-300}),
                ElementsAre(Flag, Flag, 0.0F));
    EXPECT_THAT(Unpacked<std::int16_t>(TClimateCells({ctInt16}, Packed(1e30, 0)), {0, 1}), ElementsAre(0.0F, Flag));
}

TEST(ClimateCells, LimitsSpeakOfRawNumbersOrOfValues) {
    TClimateAttributes attributes = Packed();
    attributes.Set("valid_range", std::vector<double>{-1000, 1000});
    const std::vector<std::int16_t> raw{-1001, -1000, 1000, 1001};
    EXPECT_THAT(Unpacked(TClimateCells({ctInt16}, attributes), raw), ElementsAre(Flag, 270.0F, 290.0F, Flag));
    attributes.Set("valid_range", std::vector<double>{270, 280});
    TClimateCellTraits traits{ctInt16};
    traits.HasFloatingLimits = true;
    EXPECT_THAT(Unpacked<std::int16_t>(TClimateCells(traits, attributes), {-1001, -1000, 0, 1}),
                ElementsAre(Flag, 270.0F, 280.0F, Flag));
    traits.Type = ctFloat; // floating limits of floating cells are of their type
    TClimateAttributes floating = Packed(10, 0);
    floating.Set("valid_min", std::vector<double>{2});
    EXPECT_THAT(Unpacked<float>(TClimateCells(traits, floating), {1.5F, 2.0F}), ElementsAre(Flag, 20.0F));
}

TEST(ClimateCells, BytesMayBeMeantWithoutSign) {
    TClimateAttributes attributes = Packed(0.5, 200);
    attributes.Set("_Unsigned", QStringLiteral("true"));
    attributes.Set("_FillValue", std::vector<double>{-1});
    const TClimateCells cells({ctInt8}, attributes);
    EXPECT_THAT(Unpacked<std::int8_t>(cells, {0, 127, -128, -1}), ElementsAre(200.0F, 263.5F, 264.0F, Flag));
    EXPECT_THAT(Unpacked<std::uint8_t>(cells, {0, 127, 128, 255}), ElementsAre(200.0F, 263.5F, 264.0F, Flag));
}

TEST(ClimateCells, BytesMayBeMeantWithSign) {
    TClimateAttributes attributes = Packed(0.5, 200);
    attributes.Set("_Unsigned", QStringLiteral("false"));
    attributes.Set("_FillValue", std::vector<double>{255}); // -1
    attributes.Set("valid_range", std::vector<double>{0x90, 0x7F});
    for (const TClimateCellType type : {ctUInt8, ctInt8}) {
        const TClimateCells cells({type}, attributes);
        if (type == ctUInt8)
            EXPECT_THAT(Unpacked<std::uint8_t>(cells, {0, 127, 0x90, 0x8F, 255}),
                        ElementsAre(200.0F, 263.5F, 144.0F, Flag, Flag));
        else
            EXPECT_THAT(cells.GetNotes().size(), 1) << "144 is above 127 where the file has signed bytes";
    }
    EXPECT_THAT(Unpacked<std::uint8_t>(TClimateCells({ctUInt8}, Packed(1, 0)), {128, 255}),
                ElementsAre(128.0F, 255.0F));
}

TEST(ClimateCells, WiderNumbersMayBeMeantWithSign) {
    TClimateAttributes attributes;
    attributes.Set("_Unsigned", QStringLiteral("False"));
    EXPECT_THAT(Unpacked<std::uint16_t>(TClimateCells({ctUInt16}, attributes), {65535, 65534, 1}),
                ElementsAre(Flag, -2.0F, 1.0F))
        << "the fill of the type in the file";
    std::vector<std::uint16_t> many(70'000, 65534); // by a table
    EXPECT_EQ(TClimateCells({ctUInt16}, attributes).Unpack(std::span<const std::uint16_t>(many)).back(), -2.0F);
}

TEST(ClimateCells, OnlyTrueAndFalseSayWhetherNumbersHaveASign) {
    const auto shown = [](TClimateAttributes::TValue value) {
        TClimateAttributes attributes;
        attributes.Set("_Unsigned", std::move(value));
        return Unpacked<std::int8_t>(TClimateCells({ctInt8}, attributes), {-2}).front();
    };
    for (const char* const text : {"true", "True", "TRUE"})
        EXPECT_EQ(shown(QString(text)), 254.0F) << text;
    for (const char* const text : {"false", "False", "", "1", "yes", "true ", " true", "untrue"})
        EXPECT_EQ(shown(QString(text)), -2.0F) << text;
    EXPECT_EQ(shown(std::vector<double>{1}), -2.0F) << "a number is no text";
    TClimateAttributes capital; // names are told apart by case
    capital.Set("_unsigned", QStringLiteral("true"));
    EXPECT_EQ(Unpacked<std::int8_t>(TClimateCells({ctInt8}, capital), {-2}).front(), -2.0F);
    TClimateAttributes says;
    says.Set("_Unsigned", QStringLiteral("no"));
    EXPECT_EQ(Unpacked<std::uint8_t>(TClimateCells({ctUInt8}, says), {254}).front(), 254.0F);
    says.Set("_Unsigned", QStringLiteral("true"));
    EXPECT_EQ(Unpacked<float>(TClimateCells({ctFloat}, says), {-2}).front(), -2.0F) << "which have no such bits";
}

// Bytes 0 to 250 as the file writes them, with sign: 0b, -6b.
TEST(ClimateCells, LimitsMayBeMeantWithoutSign) {
    TClimateAttributes attributes;
    attributes.Set("_Unsigned", QStringLiteral("true"));
    attributes.Set("valid_range", std::vector<double>{0, -6});
    const TClimateCells cells({ctInt8}, attributes);
    EXPECT_THAT(cells.GetNotes(), IsEmpty());
    EXPECT_THAT(Unpacked<std::int8_t>(cells, {0, 127, -128, -6, -5}), ElementsAre(0.0F, 127.0F, 128.0F, 250.0F, Flag));
    EXPECT_THAT(Unpacked<std::uint8_t>(cells, {0, 250, 251}), ElementsAre(0.0F, 250.0F, Flag));

    TClimateAttributes below; // a number beneath every unsigned one
    below.Set("valid_min", std::vector<double>{-1});
    below.Set("missing_value", std::vector<double>{-2});
    EXPECT_THAT(Unpacked<std::uint8_t>(TClimateCells({ctUInt8}, below), {0, 254, 255}),
                ElementsAre(0.0F, 254.0F, 255.0F));
}

// The library fills a variable of shorts with -32767 whatever its attributes say: 32769 without sign.
TEST(ClimateCells, DefaultFillsAreThoseOfTheTypeInTheFile) {
    TClimateAttributes attributes;
    attributes.Set("_Unsigned", QStringLiteral("true"));
    EXPECT_THAT(Unpacked<std::int16_t>(TClimateCells({ctInt16}, attributes), {-32767, -1, 1}),
                ElementsAre(Flag, 65535.0F, 1.0F));
    EXPECT_THAT(Unpacked<std::uint16_t>(TClimateCells({ctUInt16}, attributes), {32769, 65535, 1}),
                ElementsAre(Flag, 65535.0F, 1.0F))
        << "the reader may have changed the type";
    EXPECT_THAT(Unpacked<std::int32_t>(TClimateCells({ctInt32}, attributes), {-2147483647, -1, 1}),
                ElementsAre(Flag, 4294967295.0F, 1.0F));
}

TEST(ClimateCells, DoublesMeetAMarkThatWasASingleAndTheOtherWayRound) {
    const auto marked = [](double mark) {
        TClimateAttributes attributes;
        attributes.Set("missing_value", std::vector<double>{mark});
        return TClimateCells({ctDouble}, attributes);
    };
    constexpr double widened = 100000002004087734272.0; // 1e20F
    EXPECT_THAT(Unpacked<double>(marked(1e20), {1e20, widened, 9e19}), ElementsAre(Flag, Flag, 9e19F));
    EXPECT_THAT(Unpacked<double>(marked(widened), {1e20, widened, 9e19}), ElementsAre(Flag, Flag, 9e19F));
    EXPECT_THAT(Unpacked<double>(marked(double(-99.9F)), {-99.9, double(-99.9F), -99.8}),
                ElementsAre(Flag, Flag, -99.8F));
    EXPECT_THAT(Unpacked<double>(marked(-999), {-999, -999.00001, 5}), ElementsAre(Flag, -999.00001F, 5.0F));
    EXPECT_THAT(Unpacked<double>(marked(1e300), {1e29}), ElementsAre(1e29F));
}

TEST(ClimateCells, ATypeMayComeWider) {
    TClimateAttributes attributes;
    attributes.Set("_FillValue", std::vector<double>{-127});
    EXPECT_THAT(Unpacked<std::int16_t>(TClimateCells({ctInt8}, attributes), {-127, -32767, 5}),
                ElementsAre(Flag, -32767.0F, 5.0F));
}

TEST(ClimateCells, AttributesWithoutSenseAreNoted) {
    const auto note = [](const char* name) {
        return QStringLiteral("The attribute \"%1\" makes no sense and does not count.").arg(QString::fromLatin1(name));
    };
    TClimateAttributes attributes;
    attributes.Set("scale_factor", std::vector<double>{0});
    attributes.Set("add_offset", std::vector<double>{std::numeric_limits<double>::quiet_NaN()});
    attributes.Set("_FillValue", QStringLiteral("none"));
    attributes.Set("missing_value", QStringLiteral("-999"));
    attributes.Set("valid_range", std::vector<double>{1, 2, 3});
    attributes.Set("valid_min", std::vector<double>{});
    const TClimateCells cells({ctInt16}, attributes);
    EXPECT_THAT(cells.GetNotes(), ElementsAre(note("scale_factor"), note("add_offset"), note("_FillValue"),
                                              note("missing_value"), note("valid_range"), note("valid_min")));
    EXPECT_FALSE(cells.IsPacked());
    EXPECT_THAT(Unpacked<std::int16_t>(cells, {-999, -32767}), ElementsAre(-999.0F, Flag));

    TClimateAttributes more;
    more.Set("scale_factor", QStringLiteral("0.1"));
    more.Set("valid_range", std::vector<double>{3, 2});
    more.Set("missing_value", std::vector<double>(1000, 5));
    EXPECT_THAT(TClimateCells({ctInt16}, more).GetNotes(),
                ElementsAre(note("scale_factor"), "Of the attribute \"missing_value\" only the first 64 numbers count.",
                            note("valid_range")));
}

TEST(ClimateCells, OtherUnitsKeepFlagsAndValuesApart) {
    TUnitConversion toCelsius;
    toCelsius.Offset = -273.15;
    const TClimateCells cells({ctInt16}, Packed());
    const std::vector<std::int16_t> raw{0, -32767, 100};
    std::vector<float> values(raw.size());
    cells.Unpack(std::span<const std::int16_t>(raw), values, toCelsius);
    EXPECT_THAT(values, ElementsAre(static_cast<float>(280 - 273.15), Flag, static_cast<float>(281 - 273.15)));

    TUnitConversion toFlag; // 5 becomes -9990, and a large value one too large
    toFlag.Factor = -1998;
    const std::vector<float> floats{5, 9e29F};
    values.resize(2);
    TClimateCells({ctFloat}, {}).Unpack(std::span<const float>(floats), values, toFlag);
    EXPECT_THAT(values, ElementsAre(std::nextafter(-9990.0F, 0.0F), -std::nextafter(1e30F, 0.0F)));

    TUnitConversion byMonth;
    byMonth.IsByMonth = true;
    TClimateCells({ctFloat}, {}).Unpack(std::span<const float>(floats), values, byMonth, 30);
    EXPECT_EQ(values[0], static_cast<float>(5.0 / 30));
}

TEST(ClimateCells, NeedAPlaceForEachCell) {
    const std::vector<std::int16_t> raw(3);
    std::vector<float> values(2);
    const TClimateCells cells({ctInt16}, {});
    EXPECT_EQ(MessageOf<EArgumentException>([&] { cells.Unpack(std::span<const std::int16_t>(raw), values); }),
              "Values");
    EXPECT_THAT(Unpacked<std::int16_t>(cells, {}), IsEmpty());
}

} // namespace
} // namespace lmx
