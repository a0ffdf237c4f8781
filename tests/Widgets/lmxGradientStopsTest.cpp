#include <lmx/Widgets/lmxGradientStops.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace lmx {
namespace {

using TStops = std::vector<TColorStop>;
using TIds = std::vector<TGradientStops::TId>;
constexpr TGradientStops::TId None = TGradientStops::None;

struct GradientStops : testing::Test {
    TGradientStops Stops;
    TGradientStops::TId B = Stops.Add({0.5, 2});
    TGradientStops::TId A = Stops.Add({0, 1});
    TGradientStops::TId C = Stops.Add({1, 3});
};

TEST_F(GradientStops, KeepTheOrderOfTheListAndKnowThatOfThePlaces) {
    EXPECT_EQ(Stops.GetStops(), (TStops{{0.5, 2}, {0, 1}, {1, 3}}));
    EXPECT_EQ(Stops.GetOrder(), (TIds{A, B, C}));
    EXPECT_EQ(Stops.GetFirst(), A);
    EXPECT_EQ(Stops.GetLast(), C);
    EXPECT_EQ(Stops.GetNext(A), B);
    EXPECT_EQ(Stops.GetNext(C), None);
    EXPECT_EQ(Stops.GetPrevious(A), None);
    EXPECT_EQ(Stops.GetPrevious(C), B);
    EXPECT_EQ(Stops.GetNext(None), None);
}

TEST_F(GradientStops, MovesPassEachOtherAndStayWithinTheEnds) {
    Stops.SetLocation(A, 0.75);
    EXPECT_EQ(Stops.GetOrder(), (TIds{B, A, C}));
    EXPECT_EQ(Stops.GetStops(), (TStops{{0.5, 2}, {0.75, 1}, {1, 3}})) << "the list stays";
    Stops.SetLocation(A, 7);
    EXPECT_EQ(Stops.Get(A).Location, 1);
    Stops.SetLocation(A, -std::numeric_limits<double>::infinity());
    EXPECT_EQ(Stops.Get(A).Location, 0);
    Stops.SetLocation(A, std::nan(""));
    EXPECT_EQ(Stops.Get(A).Location, 0);
}

TEST_F(GradientStops, AtOnePlaceFollowTheList) {
    Stops.SetLocation(C, 0.5);
    Stops.SetLocation(A, 0.5);
    EXPECT_EQ(Stops.GetOrder(), (TIds{B, A, C}));
    EXPECT_EQ(Stops.GetNext(B), A);
    EXPECT_EQ(Stops.GetNext(A), C);
}

TEST_F(GradientStops, WithoutAPlaceStayInTheListAlone) {
    const TStops stops{{std::nan(""), 1}, {3, 2}, {-1, 3}, {std::numeric_limits<double>::infinity(), 4}};
    Stops.SetStops(stops);
    ASSERT_EQ(Stops.Count(), 4U);
    EXPECT_EQ(Stops.GetStops()[1], stops[1]) << "beyond the ends, too";
    ASSERT_EQ(Stops.GetOrder().size(), 2U);
    EXPECT_EQ(Stops.Get(Stops.GetFirst()).Color, 3U);
    EXPECT_EQ(Stops.Get(Stops.GetLast()).Color, 2U);
}

TEST_F(GradientStops, NumbersOfNoneDoNothing) {
    const std::uint64_t change = Stops.GetChangeCount();
    Stops.Remove(99);
    Stops.SetLocation(99, 0.1);
    Stops.SetColor(None, 5);
    Stops.Select(99);
    EXPECT_EQ(Stops.GetChangeCount(), change);
    EXPECT_EQ(Stops.GetSelected(), None);
    EXPECT_EQ(Stops.Get(99), TColorStop());
    EXPECT_FALSE(Stops.Has(99));
}

TEST_F(GradientStops, ARemovedOneHandsTheSelectionToItsNeighbour) {
    Stops.Select(B);
    Stops.Remove(B);
    EXPECT_EQ(Stops.GetSelected(), C);
    Stops.Remove(C);
    EXPECT_EQ(Stops.GetSelected(), A);
    Stops.Remove(A);
    EXPECT_EQ(Stops.GetSelected(), None);
    Stops.Undo();
    Stops.Select(None);
    const TGradientStops::TId other = Stops.Add({0.3, 1});
    Stops.Remove(other);
    EXPECT_EQ(Stops.GetSelected(), None) << "one that was not selected takes nothing with it";
}

TEST_F(GradientStops, ChangesAreTakenBackAndMadeAgainOneByOne) {
    Stops.Select(B);
    Stops.SetColor(B, 9);
    Stops.Remove(B);
    Stops.Clear();
    EXPECT_FALSE(Stops.CanRedo());
    Stops.Undo();
    EXPECT_EQ(Stops.GetStops(), (TStops{{0, 1}, {1, 3}}));
    Stops.Undo();
    EXPECT_EQ(Stops.GetStops(), (TStops{{0.5, 9}, {0, 1}, {1, 3}}));
    EXPECT_EQ(Stops.GetSelected(), B) << "the same stop under its number";
    Stops.Undo();
    EXPECT_EQ(Stops.Get(B).Color, 2U);
    Stops.Redo();
    EXPECT_EQ(Stops.Get(B).Color, 9U);
    Stops.SetLocation(A, 0.25);
    EXPECT_FALSE(Stops.CanRedo()) << "a new change has taken its place";
    for (int i = 0; i < 10; ++i)
        Stops.Undo();
    EXPECT_EQ(Stops.Count(), 0U);
    EXPECT_FALSE(Stops.CanUndo());
}

TEST_F(GradientStops, WhatChangesNothingIsNoChange) {
    Stops.SetColor(B, 9);
    Stops.SetColor(B, 9);
    Stops.SetLocation(B, 0.5);
    Stops.Undo();
    EXPECT_EQ(Stops.Get(B).Color, 2U);
}

TEST_F(GradientStops, ManyStepsCanBeOneChange) {
    Stops.BeginChange();
    for (int i = 0; i < 10; ++i)
        Stops.SetLocation(B, i / 10.0);
    EXPECT_FALSE(Stops.CanUndo()) << "not in the middle";
    Stops.EndChange();
    EXPECT_EQ(Stops.Get(B).Location, 0.9);
    Stops.Undo();
    EXPECT_EQ(Stops.Get(B).Location, 0.5);
}

TEST_F(GradientStops, AChangeCanBeBegunAgainAndCancelled) {
    Stops.Select(B);
    Stops.BeginChange();
    Stops.Remove(B);
    Stops.RestartChange();
    EXPECT_EQ(Stops.GetSelected(), B);
    EXPECT_TRUE(Stops.IsChanging());
    Stops.SetLocation(B, 0.1);
    Stops.CancelChange();
    EXPECT_FALSE(Stops.IsChanging());
    EXPECT_EQ(Stops.Get(B).Location, 0.5);
    Stops.Undo();
    EXPECT_FALSE(Stops.Has(C)) << "the change before it";
}

TEST_F(GradientStops, KeepsTheLatestChanges) {
    for (int i = 0; i < 150; ++i)
        Stops.SetColor(B, 100 + static_cast<TColor32>(i));
    int count = 0;
    for (; Stops.CanUndo(); ++count)
        Stops.Undo();
    EXPECT_EQ(count, static_cast<int>(TGradientStops::MostChanges));
    EXPECT_EQ(Stops.Get(B).Color, 149U);
}

TEST_F(GradientStops, CountsChangesOfTheSelectedOneApart) {
    Stops.Select(B);
    const std::uint64_t all = Stops.GetChangeCount();
    const std::uint64_t others = Stops.GetOthersChangeCount();
    Stops.SetLocation(B, 0.6);
    EXPECT_GT(Stops.GetChangeCount(), all);
    EXPECT_EQ(Stops.GetOthersChangeCount(), others);
    Stops.SetLocation(A, 0.6);
    EXPECT_GT(Stops.GetOthersChangeCount(), others);
}

TEST_F(GradientStops, ForgetsChangesButNotTheOneThatGoesOn) {
    Stops.SetColor(B, 9);
    Stops.SetColor(B, 8);
    Stops.Undo();
    Stops.ForgetChanges();
    EXPECT_FALSE(Stops.CanUndo());
    EXPECT_FALSE(Stops.CanRedo());
    EXPECT_EQ(Stops.Get(B).Color, 9U);
    Stops.BeginChange();
    Stops.SetColor(B, 7);
    Stops.ForgetChanges();
    Stops.EndChange();
    Stops.Undo();
    EXPECT_EQ(Stops.Get(B).Color, 9U);
}

} // namespace
} // namespace lmx
