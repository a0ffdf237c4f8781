// How much work lists do for many items, counted by the functions that they enter: the compiler has each function of
// this file tell. Ten times the items may take about ten times the work.

#include <lmx/Runtime/lmxEventList.h>
#include <lmx/Runtime/lmxObjectList.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace {

thread_local std::uint64_t Entered = 0; // functions

} // namespace

extern "C" {
__attribute__((no_instrument_function)) void __cyg_profile_func_enter(void*, void*) { // NOLINT
    ++Entered;
}
__attribute__((no_instrument_function)) void __cyg_profile_func_exit(void*, void*) {} // NOLINT
}

namespace lmx {
namespace {

constexpr int Few = 300;
constexpr int Many = 10 * Few;
constexpr double MostGrowth = 16; // with the logarithm of a map, and room for a list that grows by doubling

std::uint64_t WorkOf(const std::function<void()>& work) {
    const std::uint64_t before = Entered;
    work();
    return Entered - before;
}

/// How many times as much `use` does with many items as with few; both after `prepare`.
template<class Scene>
double GrowthOf(void (*prepare)(Scene&, int count), void (*use)(Scene&, int count)) {
    const auto workWith = [&](int count) {
        Scene scene;
        prepare(scene, count);
        return static_cast<double>(WorkOf([&] { use(scene, count); }));
    };
    const double few = workWith(Few);
    EXPECT_GE(few, Few) << "the work is not counted";
    return workWith(Many) / few;
}

// ---- Owning lists

struct TItem {
    int Number = 0;
};

struct TOwned {
    TOwned() {
        List.SetOnChange([this](TItem* item, TListChange) { Told += item->Number; });
    }
    void Fill(int count) {
        for (int i = 0; i < count; ++i)
            List.Add(std::make_unique<TItem>(TItem{i}));
    }

    std::int64_t Told = 0;
    TObjectList<TItem> List;
};

void Nothing(TOwned&, int) {}
void Fill(TOwned& owned, int count) {
    owned.Fill(count);
}

TEST(ListWork, TheCountSeesASearch) {
    const auto searchForEach = [](TOwned& owned, int count) {
        for (int i = 0; i < count; ++i)
            owned.List.IndexOf(owned.List[i]);
    };
    EXPECT_GT(GrowthOf<TOwned>(Fill, searchForEach), 50);
}

TEST(ListWork, AnOwningListFillsAndClearsInProportion) {
    EXPECT_LT(GrowthOf<TOwned>(Nothing, Fill), MostGrowth);
    EXPECT_LT(GrowthOf<TOwned>(Fill, [](TOwned& owned, int) { owned.List.Clear(); }), MostGrowth);
    EXPECT_LT(GrowthOf<TOwned>(Fill, [](TOwned& owned, int) { owned.List.ForEach([](const TItem*) {}); }), MostGrowth);
}

TEST(ListWork, AnOwningListGivesItsEndsInProportion) {
    EXPECT_LT(GrowthOf<TOwned>(Fill,
                               [](TOwned& owned, int) {
                                   while (!owned.List.IsEmpty())
                                       owned.List.Remove(owned.List[0]);
                               }),
              MostGrowth);
    EXPECT_LT(GrowthOf<TOwned>(Fill,
                               [](TOwned& owned, int) {
                                   while (!owned.List.IsEmpty())
                                       owned.List.Extract(owned.List[owned.List.Count() - 1]);
                               }),
              MostGrowth);
}

// ---- Event lists

struct TNews {
    int Number = 0;
};

struct THearer : TEventReceiver {
    void Hear(TNews*) { ++Heard; }

    int Heard = 0;
};

struct TToldOf {
    TEventList<TNews*> List;
    std::vector<TSubscription> Subscriptions;
    std::vector<THearer> Hearers;
    std::vector<TNews> News;
};

void NoOne(TToldOf&, int) {}
void SubscribeCallables(TToldOf& told, int count) {
    for (int i = 0; i < count; ++i)
        told.Subscriptions.push_back(told.List.Add([](TNews*) {}));
}
void MakeHearers(TToldOf& told, int count) {
    told.Hearers.resize(static_cast<std::size_t>(count));
    told.News.resize(static_cast<std::size_t>(count));
}
void SubscribeMethods(TToldOf& told, int count) {
    MakeHearers(told, count);
    for (THearer& hearer : told.Hearers)
        told.List.Add(&hearer, &THearer::Hear);
}
void SubscribeAbout(TToldOf& told, int count) {
    MakeHearers(told, count);
    for (std::size_t i = 0; i < told.Hearers.size(); ++i)
        told.List.AddAbout(&told.News[i], &told.Hearers[i], &THearer::Hear);
}

TEST(ListWork, AnEventListTakesSubscribersInProportion) {
    EXPECT_LT(GrowthOf<TToldOf>(NoOne, SubscribeCallables), MostGrowth);
    EXPECT_LT(GrowthOf<TToldOf>(NoOne, SubscribeMethods), MostGrowth);
    EXPECT_LT(GrowthOf<TToldOf>(NoOne, SubscribeAbout), MostGrowth);
}

TEST(ListWork, AnEventListTellsInProportion) {
    const auto send = [](TToldOf& told, int) {
        TNews news;
        told.List.Send(&news);
    };
    EXPECT_LT(GrowthOf<TToldOf>(SubscribeMethods, send), MostGrowth);
    const auto sendOfEach = [](TToldOf& told, int) {
        for (TNews& news : told.News)
            told.List.Send(&news);
    };
    EXPECT_LT(GrowthOf<TToldOf>(SubscribeAbout, sendOfEach), MostGrowth) << "each hears of its own alone";
}

TEST(ListWork, AnEventListForgetsSubscribersInProportion) {
    EXPECT_LT(GrowthOf<TToldOf>(SubscribeCallables, [](TToldOf& told, int) { told.Subscriptions.clear(); }),
              MostGrowth);
    EXPECT_LT(GrowthOf<TToldOf>(SubscribeMethods,
                                [](TToldOf& told, int) {
                                    for (THearer& hearer : told.Hearers)
                                        told.List.Remove(&hearer, &THearer::Hear);
                                }),
              MostGrowth)
        << "in the order in which they came";
    const auto comeAndGo = [](TToldOf& told, int count) {
        for (int i = 0; i < 2 * count; ++i)
            told.Subscriptions[static_cast<std::size_t>(i % count)] = told.List.Add([](TNews*) {});
    };
    EXPECT_LT(GrowthOf<TToldOf>(SubscribeCallables, comeAndGo), MostGrowth);
}

} // namespace
} // namespace lmx
