#include <lmx/DataSources/lmxClimateAttributes.h>

#include <tests/Support/Printers.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lmx {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(ClimateAttributes, HoldTextsAndNumbersApart) {
    TClimateAttributes attributes;
    attributes.Set("units", QStringLiteral("K"));
    attributes.Set("valid_range", std::vector<double>{-5.0, 7.5});
    EXPECT_EQ(attributes.Text("units"), "K");
    EXPECT_THAT(attributes.Numbers("units"), IsEmpty());
    EXPECT_THAT(attributes.Numbers("valid_range"), ElementsAre(-5.0, 7.5));
    EXPECT_EQ(attributes.Text("valid_range"), "");
    EXPECT_TRUE(attributes.Has("units"));
    EXPECT_FALSE(attributes.Has("Units"));
    EXPECT_EQ(attributes.Text("axis"), "");
    EXPECT_THAT(attributes.Numbers("axis"), IsEmpty());
}

TEST(ClimateAttributes, ALaterOneReplacesInPlace) {
    TClimateAttributes attributes;
    attributes.Set("a", QStringLiteral("1"));
    attributes.Set("b", QStringLiteral("2"));
    attributes.Set("a", std::vector<double>{3.0});
    ASSERT_EQ(attributes.All().size(), 2U);
    EXPECT_EQ(attributes.All()[0].Name, "a");
    EXPECT_THAT(attributes.Numbers("a"), ElementsAre(3.0));
}

TEST(ClimateAttributes, WhatPadsATextDoesNotCount) {
    TClimateAttributes attributes;
    attributes.Set("units", QString(QStringLiteral(" deg C \n")) + QChar(0) + QChar(0));
    EXPECT_EQ(attributes.Text("units"), " deg C");
}

} // namespace
} // namespace lmx
