#include <lmx/Layers/lmxLayerStackPainter.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/TestLayer.h>
#include <tests/Support/TestMap.h>

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>
#include <utility>

namespace lmx {
namespace {

using tests::TTestLayer;

/// Layers that write down their letters as they paint.
struct LayerStackPainter : testing::Test {
    TTestLayer* Add(char letter) { return Manager->GetLayers().Add(Make(letter)); }
    std::unique_ptr<TTestLayer> Make(char letter) {
        auto layer = std::make_unique<TTestLayer>(Manager);
        layer->SetIsReadyToDraw(true);
        layer->OnPaint = [this, letter](TWorld*, TWorldViewport*, TBitmap32&) { Painted += letter; };
        return layer;
    }
    /// Runs `action` in the paint of a layer, after it has written its letter.
    template<class Action>
    void In(TTestLayer* layer, Action action) {
        layer->OnPaint = [paint = layer->OnPaint, action](TWorld* w, TWorldViewport* v, TBitmap32& b) mutable {
            paint(w, v, b);
            action();
        };
    }
    bool Paint(std::span<const TBorrowed<TBaseMapLayer>> special = {}, const std::function<bool()>& goesOn = {}) {
        Painted.clear();
        return PaintLayerStack(Manager, *Viewport, Bitmap, special, goesOn);
    }

    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    std::unique_ptr<TWorld> World = std::make_unique<TWorld>(TLatLonWorldSystemFactory::GetObject());
    std::unique_ptr<TWorldViewport> Viewport = std::make_unique<TWorldViewport>(World.get());
    TBitmap32 Bitmap{10, 10};
    std::string Painted;
};

TEST_F(LayerStackPainter, PaintsFromTheBottomWhatIsVisibleAndReadyAndHasContent) {
    Add('a');
    TTestLayer* b = Add('b');
    TTestLayer* c = Add('c');
    TTestLayer* d = Add('d');
    Add('e');
    EXPECT_TRUE(Paint());
    EXPECT_EQ(Painted, "abcde");
    b->SetIsVisible(false);
    c->HasContent = false;
    d->SetIsReadyToDraw(false);
    EXPECT_TRUE(Paint());
    EXPECT_EQ(Painted, "ae");
}

TEST_F(LayerStackPainter, GivesLayersItsWorldViewportAndBitmapAsItIs) {
    Bitmap.Clear(0xFF123456);
    Add('a')->OnPaint = [&](TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) {
        EXPECT_EQ(world, World.get());
        EXPECT_EQ(viewport, Viewport.get());
        EXPECT_EQ(&bitmap, &Bitmap);
        EXPECT_EQ(bitmap.Pixel(3, 3), 0xFF123456U);
        Painted += 'x';
    };
    EXPECT_TRUE(Paint());
    EXPECT_EQ(Painted, "x");
}

TEST_F(LayerStackPainter, PaintsSpecialLayersAboveAsTheyAre) {
    Add('a');
    const auto hidden = Make('s');
    hidden->SetIsVisible(false);
    hidden->SetIsReadyToDraw(false);
    auto freed = Make('t');
    const std::array<TBorrowed<TBaseMapLayer>, 4> special = {hidden.get(), nullptr, freed.get(), hidden.get()};
    freed.reset();
    EXPECT_TRUE(Paint(special));
    EXPECT_EQ(Painted, "ass");
    Manager = nullptr;
    EXPECT_TRUE(Paint(special));
    EXPECT_EQ(Painted, "ss");
}

TEST_F(LayerStackPainter, SurvivesChangesOfTheStack) {
    TTestLayer* a = Add('a');
    TTestLayer* b = Add('b');
    TTestLayer* c = Add('c');
    Add('d');
    In(b, [=, this, isFirst = std::make_shared<bool>(true)] {
        if (!std::exchange(*isFirst, false))
            return;
        auto& layers = Manager->GetLayers();
        layers.Remove(a);
        layers.Remove(c);
        layers.Insert(0, Make('n'));
        layers.Add(Make('m'));
    });
    EXPECT_TRUE(Paint());
    EXPECT_EQ(Painted, "abd");
    EXPECT_TRUE(Paint());
    EXPECT_EQ(Painted, "nbdm");
}

TEST_F(LayerStackPainter, SurvivesLayersThatFreeThemselvesAndOthers) {
    TTestLayer* a = Add('a');
    Add('b');
    const auto below = Make('s');
    auto above = Make('t');
    const std::array<TBorrowed<TBaseMapLayer>, 2> special = {below.get(), above.get()};
    In(below.get(), [&] { above.reset(); });
    a->OnPaint = [this, manager = Manager.get(), a](TWorld*, TWorldViewport*, TBitmap32&) {
        Painted += 'a';
        manager->GetLayers().Extract(a).release()->GetAttributes(); // freed below, when nobody stands in it
    };
    EXPECT_TRUE(Paint(special));
    EXPECT_EQ(Painted, "abs");
    delete a;
}

TEST_F(LayerStackPainter, KeepsTheManagerUntilItEnds) {
    In(Add('a'), [this] { Manager.reset(); });
    Add('b');
    const std::weak_ptr<ILayerManager> watch = Manager;
    EXPECT_TRUE(Paint());
    EXPECT_EQ(Painted, "ab");
    EXPECT_TRUE(watch.expired());
}

TEST_F(LayerStackPainter, EndsWithItsViewport) {
    In(Add('a'), [this] { Viewport.reset(); });
    Add('b');
    const auto special = Make('s');
    const std::array<TBorrowed<TBaseMapLayer>, 1> above = {special.get()};
    EXPECT_FALSE(Paint(above));
    EXPECT_EQ(Painted, "a");
}

TEST_F(LayerStackPainter, EndsWithItsWorld) {
    Add('a');
    const auto special = Make('s');
    const auto last = Make('t');
    In(special.get(), [this] { World.reset(); });
    const std::array<TBorrowed<TBaseMapLayer>, 2> above = {special.get(), last.get()};
    EXPECT_FALSE(Paint(above));
    EXPECT_EQ(Painted, "as");
}

TEST_F(LayerStackPainter, EndsWhereItIsToldTo) {
    Add('a');
    Add('b');
    Add('c');
    EXPECT_FALSE(Paint({}, [this] { return Painted != "ab"; }));
    EXPECT_EQ(Painted, "ab");
    EXPECT_FALSE(Paint({}, [] { return false; }));
    EXPECT_EQ(Painted, "");
    EXPECT_TRUE(Paint({}, [] { return true; }));
}

TEST_F(LayerStackPainter, LetsThroughWhatALayerRaises) {
    Add('a');
    In(Add('b'), [] { throw Exception(QStringLiteral("lost")); });
    Add('c');
    EXPECT_THROW(Paint(), Exception);
    EXPECT_EQ(Painted, "ab");
}

} // namespace
} // namespace lmx
