#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxSelectionMapLayer.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Graphics/Pictures.h>
#include <tests/Support/CoordinatePrinters.h>
#include <tests/Support/TestMap.h>

#include <gtest/gtest.h>

#include <memory>

namespace lmx {
namespace {

using tests::TPicture;

const tests::TLetters Letters = {{0xFF808080, '.'}, {clBlack32, 'b'}, {clWhite32, 'w'}};

/// A layer that counts its invalidations, over a grey map whose pixel (x, y) is at (x - 180, 90 - y).
class SelectionMapLayer : public testing::Test {
protected:
    SelectionMapLayer() {
        FInvalidated = Layer.GetOnInvalidated().Add([this](TBaseMapLayer*) { ++Invalidations; });
    }

    TPicture Picture() {
        Map.Bitmap.Clear(0xFF808080);
        Layer.Paint(&Map.World, &Map.Viewport, Map.Bitmap);
        return tests::Show(Map.Bitmap, Letters);
    }

    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    TSelectionMapLayer Layer{Manager};
    tests::TTestMap Map{7, 5};
    int Invalidations = 0;

private:
    TSubscription FInvalidated;
};

TEST_F(SelectionMapLayer, HasItsNamesAndHidesFromLists) {
    EXPECT_EQ(Layer.GetLayerTypeName(), QStringLiteral("Selection"));
    EXPECT_EQ(Layer.GetLayerClassName(), QStringLiteral("SelectionMapLayer"));
    EXPECT_FALSE(Layer.GetShowsInLayersList());
    EXPECT_THROW(TSelectionMapLayer{nullptr}, EExArgumentNilException);
}

TEST_F(SelectionMapLayer, HasTheOptionsAndTheMouseOfItsBase) {
    EXPECT_TRUE(Layer.GetMouseSupport().IsEmpty());
    EXPECT_EQ(Layer.GetLayerOptionFlags(), (TLayerOptionFlags{TLayerOptionFlag::lofDelete, TLayerOptionFlag::lofRename,
                                                              TLayerOptionFlag::lofProperties}));
}

TEST_F(SelectionMapLayer, BeginsDisabledAndEmpty) {
    EXPECT_FALSE(Layer.GetEnabled());
    EXPECT_EQ(Layer.GetSelectedRect(), TMapArea(0, 0, 0, 0));
    EXPECT_EQ(Picture(), TPicture(5, "......."));
}

TEST_F(SelectionMapLayer, ASubscriberMayFreeTheLayerThatStarts) {
    auto layer = std::make_unique<TSelectionMapLayer>(Manager);
    const TSubscription free = layer->GetOnInvalidated().Add([&](TBaseMapLayer*) { layer.reset(); });
    layer->StartSelection({3, 4});
    EXPECT_EQ(layer, nullptr);
}

TEST_F(SelectionMapLayer, StartingEnablesItAtAPoint) {
    Layer.StartSelection({3, 4});
    EXPECT_TRUE(Layer.GetEnabled());
    EXPECT_EQ(Layer.GetTopLeft(), TMapPoint(3, 4));
    EXPECT_EQ(Layer.GetBottomRight(), TMapPoint(3, 4));
}

TEST_F(SelectionMapLayer, StartingTwiceAtOnePointInvalidatesEachTime) {
    Layer.StartSelection({3, 4});
    Invalidations = 0;
    Layer.StartSelection({3, 4});
    EXPECT_EQ(Invalidations, 1);
    Layer.StartSelection({3, 4});
    EXPECT_EQ(Invalidations, 2);
}

TEST_F(SelectionMapLayer, CornersInvalidateOnARealChangeOnly) {
    Layer.SetTopLeft({1, 2});
    Layer.SetBottomRight({3, 4});
    EXPECT_EQ(Invalidations, 2);
    Layer.SetTopLeft({1, 2});
    Layer.SetBottomRight({3, 4});
    Layer.Adjust({3, 4});
    EXPECT_EQ(Invalidations, 2);
    Layer.Adjust({5, 6});
    EXPECT_EQ(Invalidations, 3);
    EXPECT_EQ(Layer.GetBottomRight(), TMapPoint(5, 6));
    EXPECT_FALSE(Layer.GetEnabled()); // corners alone enable nothing
}

TEST_F(SelectionMapLayer, DisablingKeepsTheCorners) {
    Layer.StartSelection({1, 2});
    Layer.Adjust({3, 4});
    Invalidations = 0;
    Layer.SetEnabled(false);
    Layer.SetEnabled(false);
    EXPECT_EQ(Invalidations, 1);
    EXPECT_EQ(Layer.GetSelectedRect(), TMapArea(1, 2, 3, 4));
}

TEST_F(SelectionMapLayer, ADragFromBottomRightToTopLeftGivesInvertedEdges) {
    Layer.StartSelection({30, -10});
    Layer.Adjust({10, 20});
    const TMapArea rect = Layer.GetSelectedRect();
    EXPECT_EQ(rect.Left, 30);
    EXPECT_EQ(rect.Right, 10);
    EXPECT_EQ(rect.Top, -10);
    EXPECT_EQ(rect.Bottom, 20);
    EXPECT_EQ(rect.GetWidth(), 20);
    EXPECT_EQ(rect.GetHeight(), 30);
}

// The colours go on around the corners. A side of whole pixels ends with a sample without weight, which takes a colour,
// too, so that two equal pixels meet at two of the corners.
TEST_F(SelectionMapLayer, PaintsADashedFrame) {
    Layer.StartSelection({-179, 89});
    Layer.Adjust({-175, 87});
    EXPECT_EQ(Picture(), (TPicture{".......", //
                                   ".bwbww.", //
                                   ".b...b.", //
                                   ".wwbwb.", //
                                   "......."}));
}

TEST_F(SelectionMapLayer, PaintsTheSameFromAnyCorner) {
    Layer.StartSelection({-175, 87});
    Layer.Adjust({-179, 89});
    EXPECT_EQ(Picture(), (TPicture{".......", //
                                   ".bwbww.", //
                                   ".b...b.", //
                                   ".wwbwb.", //
                                   "......."}));
}

TEST_F(SelectionMapLayer, DoesNotPaintWhileDisabled) {
    Layer.StartSelection({-179, 89});
    Layer.Adjust({-175, 87});
    Layer.SetEnabled(false);
    EXPECT_EQ(Picture(), TPicture(5, "......."));
}

TEST_F(SelectionMapLayer, FollowsTheMap) {
    Layer.StartSelection({-179, 89});
    Layer.Adjust({-177, 88});
    Map.Viewport.SetTranslation({2, 1});
    EXPECT_EQ(Picture()[1], ".......");
    EXPECT_NE(Picture()[2][3], '.');
}

TEST_F(SelectionMapLayer, APointPaintsNothing) {
    Layer.StartSelection({-179, 89});
    EXPECT_EQ(Picture(), TPicture(5, "......."));
}

TEST_F(SelectionMapLayer, PaintsWhatOfItIsInView) {
    Layer.StartSelection({-179, 89});
    Layer.Adjust({1e6L, -1e6L});
    const TPicture picture = Picture();
    EXPECT_EQ(picture[0], ".......");
    EXPECT_EQ(picture[1], ".bwbwbw");
    EXPECT_EQ(picture[2].substr(2), ".....");
}

} // namespace
} // namespace lmx
