#include <lmx/Layers/Objects/lmxGeneralOptions.h>
#include <lmx/Layers/Objects/lmxLegendObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxTextBoxObjectLayerItem.h>
#include <tests/Layers/Objects/ObjectScene.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using tests::TObjectNews;
using tests::TObjectScene;
using tests::TTestItem;

TEST(GeneralOptions, BeginAsTold) {
    const TGeneralOptions options;
    EXPECT_TRUE(options.GetShowBg());
    EXPECT_FALSE(options.GetLockObject());
    EXPECT_EQ(options.GetBgColor(), Color32(255, 255, 255, 200));
    EXPECT_EQ(options.GetBorderColor(), Color32(0, 0, 0, 200));
    EXPECT_FALSE(options.GetShowBorder());
    EXPECT_TRUE(options.GetIsVisible());
}

TEST(GeneralOptions, GoToAnAnnotationAndBack) {
    TObjectScene scene;
    TTestItem* item = scene.Add();
    TGeneralOptions options;
    options.SetShowBg(true);
    options.SetLockObject(true);
    options.SetBgColor(1);
    options.SetBorderColor(2);
    options.SetShowBorder(true);
    options.SetIsVisible(false);
    TObjectNews news(scene.Layer.Get());
    options.UpdateObject(item);
    EXPECT_EQ(news.Take(), QStringLiteral("changed: changed: changed: changed: changed: 5")); // all but the lock
    EXPECT_TRUE(item->GetShowBackground());
    EXPECT_TRUE(item->GetLocked());
    EXPECT_EQ(item->GetBackgroundColor(), 1U);
    EXPECT_EQ(item->GetBorderColor(), 2U);
    EXPECT_TRUE(item->GetShowBorder());
    EXPECT_FALSE(item->GetIsVisible());
    TGeneralOptions back;
    back.UpdateOptions(item);
    EXPECT_TRUE(back.GetShowBg());
    EXPECT_TRUE(back.GetLockObject());
    EXPECT_EQ(back.GetBgColor(), 1U);
    EXPECT_EQ(back.GetBorderColor(), 2U);
    EXPECT_TRUE(back.GetShowBorder());
    EXPECT_FALSE(back.GetIsVisible());
}

TEST(GeneralOptions, AListenerMayFreeTheAnnotation) {
    TObjectScene scene;
    TTestItem* item = scene.Add();
    const TSubscription watch = scene.Layer->GetOnObjectChanged().Add(
        [](TObjectMapLayer* layer, TBaseObjectLayerItem* changed) { layer->GetObjects().Remove(changed); });
    TGeneralOptions options;
    options.UpdateObject(item);
    EXPECT_TRUE(scene.Layer->GetObjects().IsEmpty());
}

TEST(GeneralOptions, DefaultsOfTheKindsOfAnnotation) {
    TGeneralOptions options;
    options.SetShowBg(false);
    options.SetBgColor(1);
    TTextBoxObjectLayerItem::SetDefaultGeneralOptions(options);
    EXPECT_FALSE(options.GetShowBg()); // of a text box the colour alone
    EXPECT_EQ(options.GetBgColor(), Color32(255, 255, 255, 200));
    options.SetBgColor(1);
    TLegendObjectLayerItem::SetDefaultGeneralOptions(options);
    EXPECT_TRUE(options.GetShowBg());
    EXPECT_EQ(options.GetBgColor(), Color32(255, 255, 255, 200));
}

} // namespace
} // namespace lmx
