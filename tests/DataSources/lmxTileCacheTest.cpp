#include <lmx/DataSources/lmxTileCache.h>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

namespace lmx {
namespace {

std::shared_ptr<const TTileCells> Tile(std::size_t cells) {
    return std::make_shared<const TTileCells>(cells, 1.5F);
}

constexpr std::size_t Kilo = 1000; // cells of a test tile: 4,000 bytes and what an entry takes

TEST(TileCache, GivesWhatWasPut) {
    TTileCache cache;
    EXPECT_EQ(cache.GetCapacity(), TTileCache::DefaultCapacity);
    EXPECT_EQ(cache.Get({1, 0, 0, 0}), nullptr);
    const auto tile = Tile(4);
    cache.Put({1, 2, 3, 4}, tile);
    EXPECT_EQ(cache.Get({1, 2, 3, 4}), tile);
    EXPECT_TRUE(cache.Has({1, 2, 3, 4}));
    for (const TTileKey& other : {TTileKey{2, 2, 3, 4}, {1, 1, 3, 4}, {1, 2, 4, 4}, {1, 2, 3, 3}})
        EXPECT_FALSE(cache.Has(other));
    const auto another = Tile(4);
    cache.Put({1, 2, 3, 4}, another);
    EXPECT_EQ(cache.Get({1, 2, 3, 4}), another);
}

TEST(TileCache, FreesTheTilesThatWereNotUsedForLongest) {
    TTileCache cache(3 * 4500);
    for (int column = 0; column < 3; ++column)
        cache.Put({1, 0, column, 0}, Tile(Kilo));
    EXPECT_NE(cache.Get({1, 0, 0, 0}), nullptr);
    EXPECT_TRUE(cache.Has({1, 0, 1, 0})); // to be asked whether it is there is no use
    cache.Put({1, 0, 3, 0}, Tile(Kilo));
    EXPECT_FALSE(cache.Has({1, 0, 1, 0}));
    for (const int column : {0, 2, 3})
        EXPECT_TRUE(cache.Has({1, 0, column, 0})) << column;
    EXPECT_LE(cache.GetSize(), cache.GetCapacity());
    EXPECT_GE(cache.GetSize(), 3 * Kilo * sizeof(float));
}

TEST(TileCache, ASmallerCapacityFreesAtOnceAndNoneKeepsNothing) {
    TTileCache cache;
    const std::weak_ptr<const TTileCells> first = [&] {
        const auto tile = Tile(Kilo);
        cache.Put({1, 0, 0, 0}, tile);
        return tile;
    }();
    cache.Put({1, 0, 1, 0}, Tile(Kilo));
    cache.SetCapacity(5000);
    EXPECT_TRUE(first.expired());
    EXPECT_TRUE(cache.Has({1, 0, 1, 0}));
    cache.Put({1, 0, 1, 0}, Tile(2 * Kilo)); // larger than all of it: neither it nor the one in its place
    EXPECT_FALSE(cache.Has({1, 0, 1, 0}));
    EXPECT_EQ(cache.GetSize(), 0U);
    cache.SetCapacity(0);
    cache.Put({1, 0, 0, 0}, Tile(1));
    EXPECT_EQ(cache.GetSize(), 0U);
}

TEST(TileCache, DropsTheTilesOfOneSource) {
    TTileCache cache;
    for (int row = 0; row < 5; ++row) {
        cache.Put({1, 0, 0, row}, Tile(Kilo));
        cache.Put({2, 0, 0, row}, Tile(Kilo));
    }
    const std::size_t both = cache.GetSize();
    cache.Drop(1);
    EXPECT_EQ(cache.GetSize(), both / 2);
    for (int row = 0; row < 5; ++row) {
        EXPECT_FALSE(cache.Has({1, 0, 0, row}));
        EXPECT_TRUE(cache.Has({2, 0, 0, row}));
    }
}

TEST(TileCache, ATileThatCouldNotBeReadIsKeptAsEmpty) {
    TTileCache cache;
    cache.Put({1, 0, 0, 0}, std::make_shared<const TTileCells>());
    ASSERT_NE(cache.Get({1, 0, 0, 0}), nullptr);
    EXPECT_TRUE(cache.Get({1, 0, 0, 0})->empty());
    cache.Put({1, 0, 0, 0}, nullptr);
    EXPECT_FALSE(cache.Has({1, 0, 0, 0}));
}

TEST(TileCache, ServesManyThreads) {
    TTileCache cache(50 * 4500);
    std::atomic<int> wrong = 0;
    {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < 4; ++thread)
            threads.emplace_back([&cache, &wrong, thread] {
                for (int i = 0; i < 2000; ++i) {
                    const TTileKey key{1, 0, i * (thread + 1) % 90, 0};
                    cache.Put(key, std::make_shared<const TTileCells>(Kilo, static_cast<float>(key.Column)));
                    if (const auto tile = cache.Get(key); tile && (*tile)[0] != static_cast<float>(key.Column))
                        ++wrong;
                }
            });
    }
    EXPECT_EQ(wrong, 0);
    EXPECT_LE(cache.GetSize(), cache.GetCapacity());
}

} // namespace
} // namespace lmx
