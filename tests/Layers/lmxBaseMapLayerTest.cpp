#include <lmx/Controls/Legend/lmxBaseLegendControl.h>
#include <lmx/Layers/lmxBaseMapLayer.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/Printers.h>
#include <tests/Support/TestLayer.h>

#include <QCoreApplication>
#include <QPointer>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace lmx {
namespace {

class TPlainLayer : public TBaseMapLayer {
public:
    QString GetLayerTypeName() const override { return QStringLiteral("Plain"); }
    using TBaseMapLayer::UpdateDuplicateBaseMapLayer;
};
class T : public TPlainLayer {};
class Unprefixed : public TPlainLayer {};

/// Counts the sends of each event of a layer.
struct TWatch {
    explicit TWatch(TBaseMapLayer& layer) {
        Subscriptions.push_back(layer.GetOnLayerNameChanged().Add([this](TBaseMapLayer*) { ++Names; }));
        Subscriptions.push_back(layer.GetOnVisibilityChanged().Add([this](TBaseMapLayer*) { ++Visibilities; }));
        Subscriptions.push_back(layer.GetOnReadyToDrawChanged().Add(
            [this](TBaseMapLayer* sender) { Ready.push_back(sender->GetIsReadyToDraw()); }));
        Subscriptions.push_back(layer.GetOnInvalidated().Add([this](TBaseMapLayer*) { ++Invalidations; }));
        Subscriptions.push_back(layer.GetOnLayerAreaChanged().Add([this](TBaseMapLayer*) { ++Areas; }));
        Subscriptions.push_back(layer.GetOnLegendComponentChanged().Add(
            [this](TBaseMapLayer*, TBaseLegendControl* component) { Legends.push_back(component); }));
        Subscriptions.push_back(
            layer.GetOnMapCommand().Add([this](TBaseMapLayer*, TLayerMapCommand command, void* data) {
                ++Commands;
                EXPECT_EQ(command, TLayerMapCommand::cmdGotoExtent);
                EXPECT_EQ(data, nullptr);
            }));
    }

    int Names = 0;
    int Visibilities = 0;
    std::vector<bool> Ready;
    int Invalidations = 0;
    int Areas = 0;
    std::vector<TBaseLegendControl*> Legends;
    int Commands = 0;
    std::vector<TSubscription> Subscriptions;
};

void ProcessDeferredDeletes() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

TEST(BaseMapLayer, BeginsVisibleNotReadyAndWithoutAnArea) {
    const TPlainLayer layer;
    EXPECT_TRUE(layer.GetIsVisible());
    EXPECT_FALSE(layer.GetIsReadyToDraw());
    EXPECT_EQ(layer.GetLayerName(), QString());
    EXPECT_TRUE(layer.GetLayerArea().Area.Equals(TMapArea()));
    EXPECT_EQ(layer.GetLayerArea().WorldSystem, nullptr);
    EXPECT_EQ(layer.GetLegendComponent(), nullptr);
    EXPECT_EQ(layer.GetTag(), 0);
    EXPECT_TRUE(layer.GetFlags().IsEmpty());
    EXPECT_TRUE(layer.GetAttributes().empty());
    EXPECT_FALSE(layer.GetLayerID().isNull());
}

TEST(BaseMapLayer, EachLayerHasAnIdOfItsOwn) {
    EXPECT_NE(TPlainLayer().GetLayerID(), TPlainLayer().GetLayerID());
}

TEST(BaseMapLayer, OffersTheDefaultsOfALayer) {
    TPlainLayer layer;
    EXPECT_TRUE(layer.GetShowsInLayersList());
    EXPECT_TRUE(layer.GetMouseSupport().IsEmpty());
    EXPECT_EQ(layer.GetLayerOptionFlags(), (TLayerOptionFlags{TLayerOptionFlag::lofDelete, TLayerOptionFlag::lofRename,
                                                              TLayerOptionFlag::lofProperties}));
    EXPECT_TRUE(layer.GetHasContent());
    EXPECT_EQ(tests::MessageOf<ENotSupportedException>([&] { layer.Duplicate(); }),
              QStringLiteral("Duplication method not provided"));
}

TEST(BaseMapLayer, TheClassNameLosesItsLeadingT) {
    EXPECT_EQ(TPlainLayer().GetLayerClassName(), QStringLiteral("PlainLayer"));
    EXPECT_EQ(Unprefixed().GetLayerClassName(), QStringLiteral("Unprefixed"));
    EXPECT_EQ(T().GetLayerClassName(), QStringLiteral("T"));
}

TEST(BaseMapLayer, SettersSendOnRealChangesOnly) {
    TPlainLayer layer;
    const TWatch watch(layer);
    for (int i = 0; i < 2; ++i) {
        layer.SetLayerName(QStringLiteral("Rain"));
        layer.SetIsVisible(false);
        layer.SetIsReadyToDraw(true);
        layer.SetLayerArea(tests::LatLonArea({10, 20, 30, 5}));
    }
    EXPECT_EQ(watch.Names, 1);
    EXPECT_EQ(watch.Visibilities, 1);
    EXPECT_EQ(watch.Ready, std::vector<bool>{true});
    EXPECT_EQ(watch.Areas, 1);
}

TEST(BaseMapLayer, AnAreaWithinTheToleranceIsTheSame) {
    TPlainLayer layer;
    layer.SetLayerArea(tests::LatLonArea({10, 20, 30, 5}));
    const TWatch watch(layer);
    layer.SetLayerArea(tests::LatLonArea({10 + 1e-17L, 20, 30, 5}));
    EXPECT_EQ(watch.Areas, 0);
    layer.SetLayerArea({TMapArea(10, 20, 30, 5), TNZMGWorldSystemFactory::GetObject()});
    EXPECT_EQ(watch.Areas, 1);
}

TEST(BaseMapLayer, InvalidateOfAReadyLayerSendsReadyTwiceAndInvalidatedOnce) {
    TPlainLayer layer;
    layer.SetIsReadyToDraw(true);
    const TWatch watch(layer);
    layer.Invalidate();
    EXPECT_EQ(watch.Ready, (std::vector<bool>{false, true}));
    EXPECT_EQ(watch.Invalidations, 1);
    EXPECT_TRUE(layer.GetIsReadyToDraw());
}

TEST(BaseMapLayer, InvalidateOfALayerThatWasNotReadySendsReadyOnce) {
    TPlainLayer layer;
    const TWatch watch(layer);
    layer.Invalidate();
    EXPECT_EQ(watch.Ready, std::vector<bool>{true});
}

TEST(BaseMapLayer, ASubscriberMayFreeTheLayerThatIsInvalidated) {
    for (const bool freeWhenReady : {false, true}) {
        auto layer = std::make_unique<TPlainLayer>();
        layer->SetIsReadyToDraw(true);
        int told = 0;
        const TSubscription ready = layer->GetOnReadyToDrawChanged().Add([&](TBaseMapLayer* sender) {
            ++told;
            if (sender->GetIsReadyToDraw() == freeWhenReady)
                layer.reset();
        });
        const TSubscription invalidated = layer->GetOnInvalidated().Add([&](TBaseMapLayer*) { ++told; });
        layer->Invalidate();
        EXPECT_EQ(layer, nullptr);
        EXPECT_EQ(told, freeWhenReady ? 2 : 1);
    }
}

TEST(BaseMapLayer, AnUpdateCollapsesInvalidationsIntoOne) {
    TPlainLayer layer;
    const TWatch watch(layer);
    layer.BeginUpdate();
    layer.Invalidate();
    layer.Invalidate();
    layer.Invalidate();
    EXPECT_EQ(watch.Invalidations, 0);
    layer.EndUpdate();
    EXPECT_EQ(watch.Invalidations, 1);
    layer.EndUpdate();
    EXPECT_EQ(watch.Invalidations, 1);
}

TEST(BaseMapLayer, ASecondBeginUpdateDoesNotCount) {
    TPlainLayer layer;
    const TWatch watch(layer);
    layer.BeginUpdate();
    layer.BeginUpdate();
    layer.Invalidate();
    layer.EndUpdate();
    EXPECT_EQ(watch.Invalidations, 1);
    layer.Invalidate();
    EXPECT_EQ(watch.Invalidations, 2);
}

TEST(BaseMapLayer, AnUpdateWithoutInvalidationSendsNothing) {
    TPlainLayer layer;
    const TWatch watch(layer);
    layer.BeginUpdate();
    layer.EndUpdate();
    EXPECT_EQ(watch.Invalidations, 0);
    EXPECT_TRUE(watch.Ready.empty());
}

TEST(BaseMapLayer, TheMenuNeedsAList) {
    TPlainLayer layer;
    try {
        layer.GetContextMenuItems(nullptr);
        FAIL() << "no exception";
    } catch (const EExArgumentNilException& failure) {
        EXPECT_EQ(failure.Routine(), QStringLiteral("TBaseMapLayer.GetContextMenuItems"));
        EXPECT_EQ(failure.Argument(), QStringLiteral("List"));
    }
}

TEST(BaseMapLayer, ALayerWithoutAreaOffersNoGotoExtent) {
    TPlainLayer layer;
    std::vector<TLayerMenuItem> items;
    layer.GetContextMenuItems(&items);
    EXPECT_TRUE(items.empty());
    const TWatch watch(layer);
    layer.GotoExtendMenuItem_Click();
    EXPECT_EQ(watch.Commands, 0);
}

TEST(BaseMapLayer, GotoExtentSendsTheMapCommand) {
    TPlainLayer layer;
    layer.SetLayerArea(tests::LatLonArea({10, 20, 30, 5}));
    std::vector<TLayerMenuItem> items;
    layer.GetContextMenuItems(&items);
    ASSERT_EQ(items.size(), 1U);
    EXPECT_EQ(items[0].FText, QStringLiteral("&Goto Extent"));
    EXPECT_TRUE(items[0].FEnabled);
    const TWatch watch(layer);
    items[0].FEvent();
    EXPECT_EQ(watch.Commands, 1);
}

TEST(BaseMapLayer, AMenuEntryOutlivesItsLayerAndDoesNothingThen) {
    auto layer = std::make_unique<TPlainLayer>();
    layer->SetLayerArea(tests::LatLonArea({10, 20, 30, 5}));
    std::vector<TLayerMenuItem> items;
    layer->GetContextMenuItems(&items);
    layer.reset();
    items.at(0).FEvent();
    EXPECT_EQ(items.size(), 1U);
}

TEST(BaseMapLayer, SettingALegendFreesTheOneBefore) {
    TPlainLayer layer;
    QPointer<TBaseLegendControl> first = new TBaseLegendControl(nullptr);
    auto* second = new TBaseLegendControl(nullptr);
    const TWatch watch(layer);
    layer.SetLegendComponent(first);
    layer.SetLegendComponent(first);
    layer.SetLegendComponent(second);
    ProcessDeferredDeletes();
    EXPECT_TRUE(first.isNull());
    EXPECT_EQ(layer.GetLegendComponent(), second);
    layer.SetLegendComponent(nullptr);
    ProcessDeferredDeletes();
    EXPECT_EQ(watch.Legends.size(), 3U);
    EXPECT_EQ(watch.Legends[1], second);
    EXPECT_EQ(watch.Legends[2], nullptr);
}

/// Does as it is told when it is hidden, which is the first that it sees of its end.
class TLastWordLegend : public TBaseLegendControl {
public:
    explicit TLastWordLegend(std::function<void(TLastWordLegend*)> lastWord)
        : TBaseLegendControl(nullptr),
          FLastWord(std::move(lastWord)) {
        show();
    }

protected:
    void hideEvent(QHideEvent*) override {
        if (const auto lastWord = std::exchange(FLastWord, nullptr))
            lastWord(this);
    }

private:
    std::function<void(TLastWordLegend*)> FLastWord;
};

TEST(BaseMapLayer, ALegendThatGoesMayTakeItsLayerWithIt) {
    auto layer = std::make_unique<TPlainLayer>();
    layer->SetLegendComponent(new TLastWordLegend([&](TLastWordLegend*) { layer.reset(); }));
    int told = 0;
    const auto count = layer->GetOnLegendComponentChanged().Add([&](TBaseMapLayer*, TBaseLegendControl*) { ++told; });
    layer->SetLegendComponent(nullptr);
    EXPECT_EQ(layer, nullptr);
    EXPECT_EQ(told, 0);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

TEST(BaseMapLayer, ALegendThatGoesMayBringAnother) {
    TPlainLayer layer;
    auto* third = new TBaseLegendControl(nullptr);
    layer.SetLegendComponent(new TLastWordLegend([&](TLastWordLegend*) { layer.SetLegendComponent(third); }));
    const QPointer<TBaseLegendControl> second = new TBaseLegendControl(nullptr);
    TWatch watch(layer);
    layer.SetLegendComponent(second);
    EXPECT_EQ(layer.GetLegendComponent(), third);
    EXPECT_EQ(watch.Legends, (std::vector<TBaseLegendControl*>{third, third}));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(second.isNull()) << "nobody has it";
}

TEST(BaseMapLayer, AnUnparentedLegendGoesWithItsLayer) {
    auto layer = std::make_unique<TPlainLayer>();
    const QPointer<TBaseLegendControl> legend = new TBaseLegendControl(nullptr);
    layer->SetLegendComponent(legend);
    layer.reset();
    ProcessDeferredDeletes();
    EXPECT_TRUE(legend.isNull());
}

TEST(BaseMapLayer, AParentedLegendBelongsToItsForm) {
    auto layer = std::make_unique<TPlainLayer>();
    QWidget form;
    const QPointer<TBaseLegendControl> legend = new TBaseLegendControl(&form);
    layer->SetLegendComponent(legend);
    layer.reset();
    ProcessDeferredDeletes();
    EXPECT_FALSE(legend.isNull());
}

TEST(BaseMapLayer, ALegendFreedByItsFormIsForgotten) {
    TPlainLayer layer;
    auto form = std::make_unique<QWidget>();
    layer.SetLegendComponent(new TBaseLegendControl(form.get()));
    form.reset();
    EXPECT_EQ(layer.GetLegendComponent(), nullptr);
}

TEST(BaseMapLayer, ADuplicateTakesNameTagFlagsAndAreaOnly) {
    TPlainLayer layer;
    layer.SetLayerName(QStringLiteral("Rain"));
    layer.SetTag(42);
    layer.SetFlags({TLayerFlag::lfSpecial});
    layer.SetLayerArea(tests::LatLonArea({10, 20, 30, 5}));
    layer.SetIsVisible(false);
    layer.GetAttributes()[QStringLiteral("source")] = TAttributeData::Empty();
    TPlainLayer target;
    const QUuid id = target.GetLayerID();
    layer.UpdateDuplicateBaseMapLayer(&target);
    EXPECT_EQ(target.GetLayerName(), QStringLiteral("Rain"));
    EXPECT_EQ(target.GetTag(), 42);
    EXPECT_TRUE(target.GetFlags().Contains(TLayerFlag::lfSpecial));
    EXPECT_TRUE(target.GetLayerArea().Equals(layer.GetLayerArea()));
    EXPECT_TRUE(target.GetIsVisible());
    EXPECT_TRUE(target.GetAttributes().empty());
    EXPECT_EQ(target.GetLayerID(), id);
    EXPECT_NE(target.GetLayerID(), layer.GetLayerID());
}

} // namespace
} // namespace lmx
