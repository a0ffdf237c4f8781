#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>
#include <lmx/Raster/lmxField.h>
#include <lmx/Raster/lmxFieldArithmetic.h>
#include <lmx/Raster/lmxLinearRasterFrame.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <vector>

namespace lmx {
namespace {

using tests::MessageOf;

// One row of numbers, from 0 to 10 degrees north.
std::shared_ptr<TLinearRasterFrame> Row(const std::vector<double>& numbers, const TMapArea& area = {0, 10, 10, 0}) {
    auto frame =
        std::make_shared<TLinearRasterFrame>(area, static_cast<std::int32_t>(numbers.size()), 1, TDataKind::dkDouble);
    for (std::size_t column = 0; column < numbers.size(); ++column)
        frame->WriteCell(0, static_cast<std::int32_t>(column), numbers[column]);
    return frame;
}

std::vector<float> NumbersOf(TRealImage& image) {
    const std::span<float> row = image.GetRow(1);
    return {row.begin(), row.end()};
}

constexpr float Missing = TSpatialConst::NoData;

TEST(FieldArithmetic, TakesTheDifferenceCellByCell) {
    const auto a = Row({1, 2.5, -9990, 4});
    const auto b = Row({0.25, 5, 1, std::numeric_limits<double>::quiet_NaN()});
    const auto difference = DifferenceOf(TField::Of(*a, true), TField::Of(*b, true));
    EXPECT_EQ(NumbersOf(*difference), (std::vector<float>{0.75F, -2.5F, Missing, Missing}));
    const TImageHeader& header = *difference->getHeader();
    EXPECT_EQ(header.GetMinValue(), -2.5F);
    EXPECT_EQ(header.GetMaxValue(), 0.75F);
    EXPECT_TRUE(header.GetFlag());
    EXPECT_EQ(header.GetFlagValue(), -9990.0F);
    EXPECT_TRUE(header.IsGeographic());
    EXPECT_EQ(header.GetMaxY(), 10.0F);
    EXPECT_EQ(header.GetMinX(), 0.0F);
}

// In single precision the two would be equal.
TEST(FieldArithmetic, RoundsOnce) {
    const auto a = Row({100000.001});
    const auto b = Row({100000.0});
    EXPECT_EQ(NumbersOf(*DifferenceOf(TField::Of(*a, false), TField::Of(*b, false))),
              (std::vector<float>{static_cast<float>(100000.001 - 100000.0)}));
}

TEST(FieldArithmetic, TakesTheRatioAndHasNoneToZero) {
    const auto a = Row({1, 3, 0, 1e25});
    const auto b = Row({4, 0, 2, 1e-25});
    EXPECT_EQ(NumbersOf(*RatioOf(TField::Of(*a, true), TField::Of(*b, true))),
              (std::vector<float>{0.25F, Missing, 0, Missing}));
}

TEST(FieldArithmetic, TakesTheDepartureFromTheMean) {
    const auto a = Row({1, 2, 5});
    const auto b = Row({2, 4, -9999});
    const auto c = Row({6, 0, 1});
    const std::array fields = {TField::Of(*a, true), TField::Of(*b, true), TField::Of(*c, true)};
    EXPECT_EQ(NumbersOf(*DepartureFromMean(fields, 0)), (std::vector<float>{-2, 0, Missing}));
    EXPECT_EQ(NumbersOf(*DepartureFromMean(fields, 2)), (std::vector<float>{3, -2, Missing}));
    EXPECT_EQ(MessageOf<EArgumentException>([&] { DepartureFromMean(fields, 3); }), "Field index is out of range");
    EXPECT_EQ(MessageOf<EArgumentException>([&] { DepartureFromMean(std::span(fields).first(1), 0); }),
              "At least two fields are needed");
}

TEST(FieldArithmetic, KeepsATrueResultThatLooksLikeAFlag) {
    const auto a = Row({1, 10});
    const auto b = Row({10000, 10000});
    EXPECT_EQ(NumbersOf(*DifferenceOf(TField::Of(*a, true), TField::Of(*b, true))),
              (std::vector<float>{std::nextafter(-9999.0F, 0.0F), std::nextafter(-9990.0F, 0.0F)}));
}

TEST(FieldArithmetic, RefusesFieldsOfDifferentGrids) {
    const auto a = Row({1, 2, 3});
    const auto b = Row({1, 2});
    const auto elsewhere = Row({1, 2, 3}, {0, 10, 20, 0});
    EXPECT_EQ(MessageOf<EArgumentException>([&] { DifferenceOf(TField::Of(*a, true), TField::Of(*b, true)); }),
              "The fields have different grids: 3 x 1 and 2 x 1");
    EXPECT_EQ(MessageOf<EArgumentException>([&] { RatioOf(TField::Of(*a, true), TField::Of(*elsewhere, true)); }),
              "The fields cover different areas: " + TMapArea(0, 10, 10, 0).ToString() + " and " +
                  TMapArea(0, 10, 20, 0).ToString());
    EXPECT_EQ(MessageOf<EArgumentException>([&] { RatioOf(TField::Of(*a, true), TField::Of(*a, false)); }),
              "The fields have different reference systems");
}

} // namespace
} // namespace lmx
