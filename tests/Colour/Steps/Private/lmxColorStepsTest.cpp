#include <lmx/Colour/Steps/Private/lmxColorSteps.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace lmx {
namespace {

constexpr float Inf = std::numeric_limits<float>::infinity();
using TStarts = std::vector<float>;
using TColors = std::vector<TColor32>;

TEST(ColorSteps, BeginsWithOneStepOfOneColor) {
    const TColorSteps steps(7);
    EXPECT_EQ(steps.GetCount(), 1U);
    EXPECT_EQ(steps.GetStarts(), TStarts{-Inf});
    EXPECT_EQ(steps.GetColors(), TColors{7});
}

TEST(ColorSteps, EachAddedStepStartsWhereItSays) {
    TColorSteps steps(7);
    steps.Add(1, 8);
    steps.Add(2, 9);
    EXPECT_EQ(steps.GetStarts(), (TStarts{-Inf, 1, 2}));
    EXPECT_EQ(steps.GetColors(), (TColors{7, 8, 9}));
}

TEST(ColorSteps, AStepOfTheSameColorGoesOn) {
    TColorSteps steps(7);
    steps.Add(1, 7);
    steps.Add(2, 8);
    steps.Add(3, 8);
    EXPECT_EQ(steps.GetStarts(), (TStarts{-Inf, 2}));
}

TEST(ColorSteps, AStepAtTheSameStartReplacesTheLast) {
    TColorSteps steps(7);
    steps.Add(1, 8);
    steps.Add(1, 9);
    EXPECT_EQ(steps.GetStarts(), (TStarts{-Inf, 1}));
    EXPECT_EQ(steps.GetColors(), (TColors{7, 9}));
    steps.Add(1, 7);
    EXPECT_EQ(steps.GetStarts(), TStarts{-Inf});
    EXPECT_EQ(steps.GetColors(), TColors{7});
    steps.Add(-Inf, 5);
    EXPECT_EQ(steps.GetStarts(), TStarts{-Inf});
    EXPECT_EQ(steps.GetColors(), TColors{5});
}

TEST(ColorSteps, TakesStepsOfAnotherColouring) {
    TColorSteps other(1);
    for (int i = 1; i < 6; ++i)
        other.Add(static_cast<float>(i), static_cast<TColor32>(10 + i));
    TColorSteps steps(7);
    steps.Add(2, 8);
    steps.Add(other, 3, 5);
    EXPECT_EQ(steps.GetStarts(), (TStarts{-Inf, 2, 3, 4}));
    EXPECT_EQ(steps.GetColors(), (TColors{7, 8, 13, 14}));
    steps.Add(other, 5, 5);
    EXPECT_EQ(steps.GetCount(), 4U);
    EXPECT_EQ(steps.GetNaNColor(), 7U);
}

TEST(ColorSteps, WhatIsNoNumberKeepsTheColorOfTheBeginning) {
    TColorSteps steps(7);
    steps.Add(-Inf, 5);
    steps.Add(1, 6);
    EXPECT_EQ(steps.GetNaNColor(), 7U);
}

TEST(ColorSteps, AStartThatIsNoNumberAddsNothing) {
    TColorSteps steps(7);
    steps.Add(std::nanf(""), 8);
    EXPECT_EQ(steps.GetCount(), 1U);
}

} // namespace
} // namespace lmx
