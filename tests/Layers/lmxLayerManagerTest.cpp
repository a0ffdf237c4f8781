#include <tests/Support/Printers.h>
#include <tests/Support/TestLayer.h>

#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <utility>
#include <vector>

namespace lmx {
namespace {

using tests::AddTestLayer;
using tests::TTestLayer;

/// Writes down the events of a manager as words.
struct TLog {
    explicit TLog(ILayerManager& manager) {
        const auto write = [this](const char* word) {
            return [this, word](ILayerManager*, TBaseMapLayer* layer) {
                Text += QLatin1StringView(word) + u' ' + (layer ? layer->GetLayerName() : QStringLiteral("nil")) + u';';
            };
        };
        Keep(manager.GetOnLayerAdded().Add(write("added")));
        Keep(manager.GetOnLayerRemoved().Add(write("removed")));
        Keep(manager.GetOnLayerVisibilityChanged().Add(write("visibility")));
        Keep(manager.GetOnLayerReadyToDraw().Add(write("ready")));
        Keep(manager.GetOnLayerInvalidated().Add(write("invalidated")));
        Keep(manager.GetOnSelectedLayerChanged().Add(write("selected")));
        Keep(manager.GetOnTitleChanged().Add(
            [this](ILayerManager* sender) { Text += QStringLiteral("title ") + sender->GetTitle() + u';'; }));
        Keep(manager.GetOnLayerMoved().Add(
            [this](ILayerManager*, int from, int to) { Text += QStringLiteral("moved %1 %2;").arg(from).arg(to); }));
        Keep(manager.GetOnMapCommand().Add([this](TBaseMapLayer* layer, TLayerMapCommand, void*) {
            Text += QStringLiteral("command ") + layer->GetLayerName() + u';';
        }));
    }
    void Keep(TSubscription subscription) { Subscriptions.push_back(std::move(subscription)); }
    QString Take() { return std::exchange(Text, QString()); }

    QString Text;
    std::vector<TSubscription> Subscriptions;
};

TEST(LayerManager, EachCallOfTheFactoryGivesANewOne) {
    EXPECT_NE(TLayerManagerFactory::GetObject(), TLayerManagerFactory::GetObject());
}

TEST(LayerManager, TellsOfLayersThatComeAndGo) {
    const auto manager = TLayerManagerFactory::GetObject();
    TLog log(*manager);
    TTestLayer* layer = AddTestLayer(manager, QStringLiteral("Rain"));
    EXPECT_EQ(log.Take(), QStringLiteral("added Rain;"));
    manager->GetLayers().Remove(layer);
    EXPECT_EQ(log.Take(), QStringLiteral("removed Rain;"));
}

TEST(LayerManager, TellsOfSpecialLayersToo) {
    const auto manager = TLayerManagerFactory::GetObject();
    TLog log(*manager);
    auto special = std::make_unique<TTestLayer>(manager);
    special->SetFlags({TLayerFlag::lfSpecial});
    TBaseMapLayer* added = manager->GetSpecialLayers().Add(std::move(special));
    manager->GetSpecialLayers().Extract(added);
    EXPECT_EQ(log.Take(), QStringLiteral("added ;removed ;"));
}

TEST(LayerManager, ForwardsTheEventsOfItsLayers) {
    const auto manager = TLayerManagerFactory::GetObject();
    TTestLayer* layer = AddTestLayer(manager, QStringLiteral("Rain"));
    layer->SetIsReadyToDraw(true);
    layer->SetLayerArea(tests::LatLonArea({0, 1, 1, 0}));
    TLog log(*manager);
    layer->SetIsVisible(false);
    layer->Invalidate();
    layer->GotoExtendMenuItem_Click();
    EXPECT_EQ(log.Take(), QStringLiteral("visibility Rain;ready Rain;ready Rain;invalidated Rain;command Rain;"));
}

TEST(LayerManager, DoesNotForwardNamesLegendsAndAreas) {
    const auto manager = TLayerManagerFactory::GetObject();
    TTestLayer* layer = AddTestLayer(manager);
    TLog log(*manager);
    layer->SetLayerName(QStringLiteral("Snow"));
    layer->SetLayerArea(tests::LatLonArea({0, 1, 1, 0}));
    EXPECT_EQ(log.Take(), QString());
}

TEST(LayerManager, NoLongerHearsALayerThatLeft) {
    const auto manager = TLayerManagerFactory::GetObject();
    TTestLayer* layer = AddTestLayer(manager);
    layer->SetLayerArea(tests::LatLonArea({0, 1, 1, 0}));
    const auto extracted = manager->GetLayers().Extract(layer);
    TLog log(*manager);
    layer->SetIsVisible(false);
    layer->Invalidate();
    layer->GotoExtendMenuItem_Click();
    EXPECT_EQ(log.Take(), QString());
}

TEST(LayerManager, PreventNotifySilencesComingAndGoingOnly) {
    const auto manager = TLayerManagerFactory::GetObject();
    TLog log(*manager);
    manager->PreventNotify();
    TTestLayer* layer = AddTestLayer(manager, QStringLiteral("Rain"));
    AddTestLayer(manager, QStringLiteral("Snow"));
    EXPECT_EQ(log.Take(), QString());
    layer->SetIsVisible(false);
    EXPECT_TRUE(manager->MoveLayer(0, 1));
    EXPECT_EQ(log.Take(), QStringLiteral("visibility Rain;moved 0 1;"));
    const auto extracted = manager->GetLayers().Extract(layer);
    layer->SetIsVisible(true);
    EXPECT_EQ(log.Take(), QString());
}

TEST(LayerManager, ALayerAddedTwiceOverIsHeardOnce) {
    const auto manager = TLayerManagerFactory::GetObject();
    TTestLayer* layer = AddTestLayer(manager, QStringLiteral("Rain"));
    manager->GetLayers().Add(manager->GetLayers().Extract(layer));
    TLog log(*manager);
    layer->SetIsVisible(false);
    EXPECT_EQ(log.Take(), QStringLiteral("visibility Rain;"));
}

TEST(LayerManager, ASubscriberMayTakeALayerOutAsItComes) {
    const auto manager = TLayerManagerFactory::GetObject();
    const TSubscription refuse = manager->GetOnLayerAdded().Add(
        [](ILayerManager* sender, TBaseMapLayer* layer) { sender->GetLayers().Remove(layer); });
    manager->GetLayers().Add(std::make_unique<TTestLayer>(manager));
    EXPECT_EQ(manager->GetLayers().Count(), 0);
}

TEST(LayerManager, OnesBehindASubscriberThatMovesALayerToAnotherManagerAreNotToldOfIt) {
    const auto manager = TLayerManagerFactory::GetObject();
    const auto other = TLayerManagerFactory::GetObject();
    const TSubscription move = manager->GetOnLayerAdded().Add([&](ILayerManager* sender, TBaseMapLayer* layer) {
        other->GetLayers().Add(sender->GetLayers().Extract(layer));
    });
    int told = 0;
    const TSubscription count = manager->GetOnLayerAdded().Add([&](ILayerManager*, TBaseMapLayer*) { ++told; });
    EXPECT_EQ(manager->GetLayers().Add(std::make_unique<TTestLayer>(manager)), nullptr);
    EXPECT_EQ(told, 0);
    ASSERT_EQ(other->GetLayers().Count(), 1);
    TLog log(*manager);
    TLog otherLog(*other);
    other->GetLayers()[0]->SetIsVisible(false);
    EXPECT_EQ(log.Take(), QString());
    EXPECT_EQ(otherLog.Take(), QStringLiteral("visibility ;"));
}

TEST(LayerManager, ALayerThatASubscriberPutsElsewhereAsItComesIsHeardOnce) {
    const auto manager = TLayerManagerFactory::GetObject();
    AddTestLayer(manager, QStringLiteral("Snow"));
    TBaseMapLayer* rain = nullptr;
    const TSubscription sink = manager->GetOnLayerAdded().Add([&](ILayerManager* sender, TBaseMapLayer* layer) {
        if (!rain)
            rain = sender->GetLayers().Insert(0, sender->GetLayers().Extract(rain = layer));
    });
    TLog log(*manager);
    AddTestLayer(manager, QStringLiteral("Rain"));
    EXPECT_EQ(log.Take(), QStringLiteral("removed Rain;added Rain;"));
    EXPECT_EQ(manager->GetLayers()[0], rain);
    rain->SetIsVisible(false);
    EXPECT_EQ(log.Take(), QStringLiteral("visibility Rain;"));
}

struct TEndRow {
    const char* Name;
    TSubscription (*Subscribe)(ILayerManager& manager, const std::function<void()>& end);
    void (*Cause)(ILayerManager& manager, TBaseMapLayer* layer);
};

class ManagersEnd : public testing::TestWithParam<TEndRow> {};

TEST_P(ManagersEnd, MayComeFromASubscriber) {
    auto manager = TLayerManagerFactory::GetObject();
    TTestLayer* layer = AddTestLayer(manager);
    layer->SetIsReadyToDraw(true);
    ILayerManager& told = *manager;
    const TSubscription end = GetParam().Subscribe(told, [&] { manager.reset(); });
    GetParam().Cause(told, layer);
    EXPECT_EQ(manager, nullptr);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ManagersEnd,
    testing::Values(
        TEndRow{"Added",
                [](ILayerManager& manager, const std::function<void()>& end) {
                    return manager.GetOnLayerAdded().Add([end](ILayerManager*, TBaseMapLayer*) { end(); });
                },
                [](ILayerManager& manager, TBaseMapLayer*) {
                    const auto other = TLayerManagerFactory::GetObject();
                    EXPECT_EQ(manager.GetLayers().Add(std::make_unique<TTestLayer>(other)), nullptr);
                }},
        TEndRow{"Removed",
                [](ILayerManager& manager, const std::function<void()>& end) {
                    return manager.GetOnLayerRemoved().Add([end](ILayerManager*, TBaseMapLayer*) { end(); });
                },
                [](ILayerManager& manager, TBaseMapLayer* layer) {
                    EXPECT_EQ(manager.GetLayers().Extract(layer).get(), layer);
                }},
        TEndRow{"Cleared",
                [](ILayerManager& manager, const std::function<void()>& end) {
                    return manager.GetOnLayerRemoved().Add([end](ILayerManager*, TBaseMapLayer*) { end(); });
                },
                [](ILayerManager& manager, TBaseMapLayer*) { manager.GetLayers().Clear(); }},
        TEndRow{"Selected",
                [](ILayerManager& manager, const std::function<void()>& end) {
                    return manager.GetOnSelectedLayerChanged().Add([end](ILayerManager*, TBaseMapLayer*) { end(); });
                },
                [](ILayerManager& manager, TBaseMapLayer* layer) { manager.SetSelLayer(layer); }},
        TEndRow{"Ready",
                [](ILayerManager& manager, const std::function<void()>& end) {
                    return manager.GetOnLayerReadyToDraw().Add([end](ILayerManager*, TBaseMapLayer*) { end(); });
                },
                [](ILayerManager&, TBaseMapLayer* layer) { layer->Invalidate(); }}),
    [](const auto& row) { return row.param.Name; });

TEST(LayerManager, ItsEndComesThoughASubscriberAddsALayerForEachThatGoes) {
    auto manager = TLayerManagerFactory::GetObject();
    AddTestLayer(manager, QStringLiteral("Rain"));
    AddTestLayer(manager, QStringLiteral("Snow"));
    const auto other = TLayerManagerFactory::GetObject();
    int removed = 0;
    const TSubscription refill = manager->GetOnLayerRemoved().Add([&](ILayerManager* sender, TBaseMapLayer*) {
        ++removed;
        sender->GetLayers().Add(std::make_unique<TTestLayer>(other));
    });
    manager.reset();
    EXPECT_EQ(removed, 2);
}

TEST(LayerManager, ItsListsCanBeReadWhereItIsConstant) {
    const auto manager = TLayerManagerFactory::GetObject();
    TTestLayer* layer = AddTestLayer(manager);
    TBaseMapLayer* special = manager->GetSpecialLayers().Add(std::make_unique<TTestLayer>(manager));
    const ILayerManager& constant = *manager;
    EXPECT_EQ(constant.GetLayers()[0], layer);
    EXPECT_EQ(constant.GetSpecialLayers()[0], special);
}

TEST(LayerManager, ForwardsALayersEventsOnlyOnceItsComingIsTold) {
    const auto manager = TLayerManagerFactory::GetObject();
    TLog log(*manager);
    const TSubscription hide =
        manager->GetOnLayerAdded().Add([](ILayerManager*, TBaseMapLayer* layer) { layer->SetIsVisible(false); });
    AddTestLayer(manager, QStringLiteral("Rain"));
    EXPECT_EQ(log.Take(), QStringLiteral("added Rain;"));
}

TEST(LayerManager, ForwardsALayersEventsUntilItsGoingIsTold) {
    const auto manager = TLayerManagerFactory::GetObject();
    TLog log(*manager);
    TTestLayer* layer = AddTestLayer(manager, QStringLiteral("Rain"));
    const TSubscription hide =
        manager->GetOnLayerRemoved().Add([](ILayerManager*, TBaseMapLayer* gone) { gone->SetIsVisible(false); });
    log.Take();
    manager->GetLayers().Remove(layer);
    EXPECT_EQ(log.Take(), QStringLiteral("removed Rain;visibility Rain;"));
}

struct TNewsRow {
    const char* Name;
    TLayerManagerLayerEventList& (ILayerManager::*Event)();
    void (*Cause)(ILayerManager& manager, TBaseMapLayer& layer);
};

class LayerNews : public testing::TestWithParam<TNewsRow> {};

TEST_P(LayerNews, EndWithTheLayerWhenASubscriberFreesIt) {
    const auto manager = TLayerManagerFactory::GetObject();
    TTestLayer* layer = AddTestLayer(manager);
    layer->SetIsReadyToDraw(true);
    const TSubscription free = (*manager.*GetParam().Event)().Add(
        [](ILayerManager* sender, TBaseMapLayer* freed) { sender->GetLayers().Remove(freed); });
    int told = 0;
    const TSubscription count = (*manager.*GetParam().Event)().Add([&](ILayerManager*, TBaseMapLayer*) { ++told; });
    GetParam().Cause(*manager, *layer);
    EXPECT_EQ(manager->GetLayers().Count(), 0);
    EXPECT_EQ(told, 0);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, LayerNews,
    testing::Values(TNewsRow{"Added", &ILayerManager::GetOnLayerAdded,
                             [](ILayerManager& manager, TBaseMapLayer& layer) {
                                 manager.GetLayers().Add(manager.GetLayers().Extract(&layer));
                             }},
                    TNewsRow{"Visibility", &ILayerManager::GetOnLayerVisibilityChanged,
                             [](ILayerManager&, TBaseMapLayer& layer) { layer.SetIsVisible(false); }},
                    TNewsRow{"Ready", &ILayerManager::GetOnLayerReadyToDraw,
                             [](ILayerManager&, TBaseMapLayer& layer) { layer.Invalidate(); }},
                    TNewsRow{"Invalidated", &ILayerManager::GetOnLayerInvalidated,
                             [](ILayerManager&, TBaseMapLayer& layer) { layer.Invalidate(); }},
                    TNewsRow{"Selected", &ILayerManager::GetOnSelectedLayerChanged,
                             [](ILayerManager& manager, TBaseMapLayer& layer) { manager.SetSelLayer(&layer); }}),
    [](const auto& row) { return row.param.Name; });

TEST(LayerManager, AMapCommandEndsWithTheLayerWhenASubscriberFreesIt) {
    const auto manager = TLayerManagerFactory::GetObject();
    TTestLayer* layer = AddTestLayer(manager);
    layer->SetLayerArea(tests::LatLonArea({0, 1, 1, 0}));
    const TSubscription free = manager->GetOnMapCommand().Add(
        [&](TBaseMapLayer* freed, TLayerMapCommand, void*) { manager->GetLayers().Remove(freed); });
    int told = 0;
    const TSubscription count =
        manager->GetOnMapCommand().Add([&](TBaseMapLayer*, TLayerMapCommand, void*) { ++told; });
    layer->GotoExtendMenuItem_Click();
    EXPECT_EQ(told, 0);
}

TEST(LayerManager, TheTitleIsToldOnRealChanges) {
    const auto manager = TLayerManagerFactory::GetObject();
    TLog log(*manager);
    manager->SetTitle(QStringLiteral("Rainfall"));
    manager->SetTitle(QStringLiteral("Rainfall"));
    EXPECT_EQ(log.Take(), QStringLiteral("title Rainfall;"));
    EXPECT_EQ(manager->GetTitle(), QStringLiteral("Rainfall"));
}

TEST(LayerManager, TheSelectionIsToldOnRealChanges) {
    const auto manager = TLayerManagerFactory::GetObject();
    TTestLayer* layer = AddTestLayer(manager, QStringLiteral("Rain"));
    TLog log(*manager);
    manager->SetSelLayer(layer);
    manager->SetSelLayer(layer);
    manager->SetSelLayer(nullptr);
    EXPECT_EQ(log.Take(), QStringLiteral("selected Rain;selected nil;"));
}

TEST(LayerManager, RemovingTheSelectedLayerTellsNothingOfTheSelection) {
    const auto manager = TLayerManagerFactory::GetObject();
    TTestLayer* layer = AddTestLayer(manager, QStringLiteral("Rain"));
    manager->SetSelLayer(layer);
    TLog log(*manager);
    auto extracted = manager->GetLayers().Extract(layer);
    EXPECT_EQ(log.Take(), QStringLiteral("removed Rain;"));
    EXPECT_EQ(manager->GetSelLayer(), layer);
    extracted.reset();
    EXPECT_EQ(manager->GetSelLayer(), nullptr);
}

TEST(LayerManager, SelectingNothingAfterTheSelectedLayerHasGoneIsToldOnce) {
    const auto manager = TLayerManagerFactory::GetObject();
    TTestLayer* layer = AddTestLayer(manager, QStringLiteral("Rain"));
    manager->SetSelLayer(layer);
    manager->GetLayers().Remove(layer);
    TLog log(*manager);
    manager->SetSelLayer(nullptr);
    manager->SetSelLayer(nullptr);
    EXPECT_EQ(log.Take(), QStringLiteral("selected nil;"));
}

TEST(LayerManager, SelectingALayerInThePlaceOfOneThatHasGoneIsTold) {
    const auto manager = TLayerManagerFactory::GetObject();
    alignas(TTestLayer) unsigned char place[sizeof(TTestLayer)];
    auto* layer = new (place) TTestLayer(manager);
    manager->SetSelLayer(layer);
    layer->~TTestLayer();
    layer = new (place) TTestLayer(manager);
    TLog log(*manager);
    manager->SetSelLayer(layer);
    EXPECT_EQ(log.Take(), QStringLiteral("selected ;"));
    layer->~TTestLayer();
}

TEST(LayerManager, FindsLayersByTheirExactName) {
    const auto manager = TLayerManagerFactory::GetObject();
    TTestLayer* first = AddTestLayer(manager, QStringLiteral("Rain"));
    AddTestLayer(manager, QStringLiteral("Rain"));
    EXPECT_EQ(manager->FindLayer(QStringLiteral("Rain")), first);
    EXPECT_EQ(manager->FindLayer(QStringLiteral("rain")), nullptr);
}

TEST(LayerManager, FindsLayersByTheirId) {
    const auto manager = TLayerManagerFactory::GetObject();
    AddTestLayer(manager);
    TTestLayer* second = AddTestLayer(manager);
    EXPECT_EQ(manager->FindLayer(second->GetLayerID()), second);
    EXPECT_EQ(manager->FindLayer(QUuid::createUuid()), nullptr);
}

TEST(LayerManager, FindsSpecialLayersByTheirClass) {
    const auto manager = TLayerManagerFactory::GetObject();
    AddTestLayer(manager);
    EXPECT_EQ(manager->GetSpecialLayerWithType(QStringLiteral("TestLayer")), nullptr);
    TBaseMapLayer* special = manager->GetSpecialLayers().Add(std::make_unique<TTestLayer>(manager));
    EXPECT_EQ(manager->GetSpecialLayerWithType(QStringLiteral("TestLayer")), special);
    EXPECT_EQ(manager->GetSpecialLayerWithType(QStringLiteral("testLayer")), nullptr);
}

TEST(LayerManager, GivesTheNextFreeName) {
    const auto manager = TLayerManagerFactory::GetObject();
    EXPECT_EQ(manager->GetNextName(QStringLiteral("Rain")), QStringLiteral("Rain"));
    AddTestLayer(manager, QStringLiteral("Rain (2)"));
    EXPECT_EQ(manager->GetNextName(QStringLiteral("Rain")), QStringLiteral("Rain"));
    AddTestLayer(manager, QStringLiteral("Rain"));
    EXPECT_EQ(manager->GetNextName(QStringLiteral("Rain")), QStringLiteral("Rain (3)"));
}

TEST(LayerManager, GivesTheNextFreeNameAmongMany) {
    const auto manager = TLayerManagerFactory::GetObject();
    for (int i = 0; i < 1000; ++i)
        AddTestLayer(manager, manager->GetNextName(QStringLiteral("Rain")));
    EXPECT_EQ(manager->GetLayers()[999]->GetLayerName(), QStringLiteral("Rain (1000)"));
    manager->GetLayers()[500]->SetLayerName(QStringLiteral("Snow"));
    EXPECT_EQ(manager->GetNextName(QStringLiteral("Rain")), QStringLiteral("Rain (501)"));
}

TEST(LayerManager, NamesOfSpecialLayersAreFree) {
    const auto manager = TLayerManagerFactory::GetObject();
    manager->GetSpecialLayers().Add(std::make_unique<TTestLayer>(manager))->SetLayerName(QStringLiteral("Rain"));
    EXPECT_EQ(manager->GetNextName(QStringLiteral("Rain")), QStringLiteral("Rain"));
}

struct TMoveRow {
    int From;
    int To;
    bool Moves;
    const char* Order;
};

class MoveLayer : public testing::TestWithParam<TMoveRow> {};

TEST_P(MoveLayer, KeepsTheOrderOfTheOthers) {
    const auto manager = TLayerManagerFactory::GetObject();
    for (const char* name : {"a", "b", "c"})
        AddTestLayer(manager, QString::fromLatin1(name));
    TLog log(*manager);
    EXPECT_EQ(manager->MoveLayer(GetParam().From, GetParam().To), GetParam().Moves);
    QString order;
    for (TBaseMapLayer* layer : manager->GetLayers())
        order += layer->GetLayerName();
    EXPECT_EQ(order, QString::fromLatin1(GetParam().Order));
    EXPECT_EQ(log.Take(),
              GetParam().Moves ? QStringLiteral("moved %1 %2;").arg(GetParam().From).arg(GetParam().To) : QString());
}

INSTANTIATE_TEST_SUITE_P(Rows, MoveLayer,
                         testing::Values(TMoveRow{0, 0, false, "abc"}, TMoveRow{2, 0, true, "cab"},
                                         TMoveRow{0, 2, true, "bca"}, TMoveRow{1, 2, true, "acb"},
                                         TMoveRow{-1, 0, false, "abc"}, TMoveRow{0, -1, false, "abc"},
                                         TMoveRow{3, 0, false, "abc"}, TMoveRow{0, 3, false, "abc"}));

TEST(LayerManager, ItsEndTellsOfTheStackButNotOfSpecialLayers) {
    auto manager = TLayerManagerFactory::GetObject();
    TLog log(*manager);
    AddTestLayer(manager, QStringLiteral("Rain"));
    manager->GetSpecialLayers().Add(std::make_unique<TTestLayer>(manager))->SetLayerName(QStringLiteral("Rulers"));
    log.Take();
    manager.reset();
    EXPECT_EQ(log.Take(), QStringLiteral("removed Rain;"));
}

} // namespace
} // namespace lmx
