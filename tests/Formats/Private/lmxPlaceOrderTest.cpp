#include <lmx/Formats/Private/lmxPlaceOrder.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>

namespace lmx::tests {

namespace {

using TPlaces = std::vector<TPlace>;

std::vector<std::uint32_t> Order(const TPlaces& places) {
    return OrderByPlace(places.size(), [&](std::size_t i) { return places[i]; });
}

TPlaces RandomPlaces(std::size_t count, double size) {
    std::mt19937_64 random(11);
    std::uniform_real_distribution<double> coordinate(0, size);
    TPlaces places(count);
    for (TPlace& place : places)
        place = {coordinate(random), coordinate(random)};
    return places;
}

/// From place to place, in the given order.
double WayOf(const TPlaces& places, const std::vector<std::uint32_t>& order) {
    double way = 0;
    for (std::size_t i = 1; i < order.size(); ++i)
        way += std::hypot(places[order[i]].X - places[order[i - 1]].X, places[order[i]].Y - places[order[i - 1]].Y);
    return way;
}

bool IsPermutation(std::vector<std::uint32_t> order) {
    std::ranges::sort(order);
    for (std::uint32_t i = 0; i < order.size(); ++i)
        if (order[i] != i)
            return false;
    return true;
}

} // namespace

TEST(PlaceOrder, ACurveGoesThroughEveryCellOfASquare) {
    TPlaces places; // each place in a cell of its own, and all in the middle of the grid
    for (int i = 0; i < 256; ++i)
        places.push_back({static_cast<double>(i * 7 % 16), static_cast<double>(i * 7 / 16 % 16)});
    const auto order = Order(places);
    ASSERT_EQ(order.size(), places.size());
    EXPECT_TRUE(IsPermutation(order));
    EXPECT_LT(WayOf(places, order), 1.1 * 255) << "nearly every step is to a neighbour";
}

TEST(PlaceOrder, ScatteredPlacesBecomeNeighbours) {
    const TPlaces places = RandomPlaces(10'000, 100); // a place each in a square of side 1
    const auto order = Order(places);
    ASSERT_EQ(order.size(), places.size());
    EXPECT_TRUE(IsPermutation(order));
    EXPECT_LT(WayOf(places, order) / 10'000, 1.5);
}

TEST(PlaceOrder, AFewFarPlacesDoNotSpoilTheRest) {
    TPlaces places = RandomPlaces(10'000, 100);
    for (std::size_t i = 0; i < 50; ++i)
        places[i * 100 + 7] = {i % 2 == 0 ? 1e300 : -1e300, 1e20};
    const auto order = Order(places);
    ASSERT_EQ(order.size(), places.size());
    std::vector<std::uint32_t> near;
    std::ranges::copy_if(order, std::back_inserter(near), [&](std::uint32_t i) { return places[i].Y <= 100; });
    EXPECT_LT(WayOf(places, near) / 10'000, 1.5);
}

TEST(PlaceOrder, WhatIsInOrderStaysInIt) {
    TPlaces rows;
    for (int i = 0; i < 10'000; ++i)
        rows.push_back({static_cast<double>(i % 100), static_cast<double>(i / 100)});
    EXPECT_TRUE(Order(rows).empty());
    EXPECT_TRUE(Order(TPlaces(1000, TPlace{3, 4})).empty()) << "all at one place";
    EXPECT_TRUE(Order(RandomPlaces(64, 100)).empty()) << "too few to matter";
    EXPECT_TRUE(Order({}).empty());
}

TEST(PlaceOrder, EqualPlacesKeepTheirOrder) {
    TPlaces places = RandomPlaces(1000, 100);
    for (std::size_t i = 0; i < 500; ++i)
        places.push_back(places[i]);
    const auto order = Order(places);
    ASSERT_EQ(order.size(), places.size());
    for (std::uint32_t i = 0; i < 500; ++i)
        ASSERT_LT(std::ranges::find(order, i), std::ranges::find(order, i + 1000));
}

} // namespace lmx::tests
