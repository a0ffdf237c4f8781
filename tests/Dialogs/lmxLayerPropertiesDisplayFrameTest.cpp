#include <lmx/Dialogs/lmxLayerPropertiesDisplayFrame.h>

#include <lmx/Colour/lmxColorClassList.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Colour/lmxMultipartGradient.h>
#include <lmx/Dialogs/lmxGradientEditorFrame.h>
#include <lmx/Dialogs/lmxLayerPropertiesAttributesFrame.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Widgets/lmxGradientEditor.h>
#include <tests/Dialogs/CalculatorKinds.h>
#include <tests/Dialogs/DisplayPageFixture.h>
#include <tests/Layers/IdrisiMapLayerFixture.h>
#include <tests/Support/DialogChecks.h>

#include <QLabel>
#include <QLineEdit>
#include <QSlider>
#include <QTabBar>

#include <string>

namespace lmx {
namespace {

using tests::Click;
using tests::Find;
using tests::FrameOf;
using tests::MessageOf;
using tests::TShownMessage;

std::shared_ptr<IGradientColorCalculator> Gradient(float min = -5, float max = 5) {
    return TGradientColorCalculatorFactory::GetObject(
        min, max, 0xFF123456U, TGradientFactory::GetObject({{1, 0xFFFFFFFFU}, {0, 0x80000000U}}));
}

std::shared_ptr<IBasicPaletteColorCalculator> Palette(int count = 2) {
    return TBasicPaletteColorCalculatorFactory::GetObject(
        {0, 1}, std::vector<TColorKeyItem>(static_cast<std::size_t>(count), {"", 0xFF00FF00U}), false);
}

struct LayerPropertiesDisplayFrame : tests::TDisplayPageTest {
    bool IsEmpty() {
        return In<TGradientEditorFrame>("GradientPage", "SingleGradientEditor").GetGradEdit()->GetCount() == 0 &&
               In<TDrawnListView>("MultipartGradientPage", "lvMultipartGradients").GetRowCount() == 0 &&
               In<TDrawnListView>("ClassifiedPage", "lvClasses").GetRowCount() == 0 &&
               In<TDrawnListView>("BasicPalPage", "lvBasicPalette").GetRowCount() == 0;
    }

    QTabWidget& Pages = Find<QTabWidget>(Frame, "Pages");
    QSlider& Opacity = Find<QSlider>(Frame, "rbOpacity");
    QLineEdit& OpacityEdit = Find<QLineEdit>(Frame, "edOpacity");
};

TEST_F(LayerPropertiesDisplayFrame, BeginsEmptyAndOpaque) {
    QStringList tabs;
    for (int i = 0; i < Pages.count(); ++i)
        tabs.append(Pages.widget(i)->objectName() + ' ' + Pages.tabText(i));
    EXPECT_EQ(tabs, (QStringList{"GradientPage Gradient", "MultipartGradientPage Multipart gradient",
                                 "ClassifiedPage Classified", "BasicPalPage Basic palette"}));
    EXPECT_EQ(Pages.currentIndex(), 0);
    EXPECT_TRUE(IsEmpty());
    EXPECT_EQ(Opacity.minimum(), 0);
    EXPECT_EQ(Opacity.maximum(), 255);
    EXPECT_EQ(Opacity.value(), 255);
    EXPECT_EQ(OpacityEdit.text(), "255");
    EXPECT_EQ(OpacityEdit.parentWidget()->findChild<QLabel*>()->text(), "Opacity:");
}

TEST_F(LayerPropertiesDisplayFrame, WantsACalculator) {
    Frame.SetData({10, 60}, Palette(), 77, Config);
    EXPECT_EQ(MessageOf<EArgumentException>([&] { Frame.SetData({0, 1}, nullptr, 255, Config); }), "ColorCalc is null");
    EXPECT_EQ(Frame.GetOpacity(), 77) << "nothing has been taken";
    EXPECT_FLOAT_EQ(Frame.CreateBasicPaletteColorCalc()->GetMaxVal(), 60);
}

// What it tests last it finds out last: range and opacity are there by then.
TEST_F(LayerPropertiesDisplayFrame, WantsACalculatorThatItKnows) {
    const auto unknown = std::make_shared<tests::TValueAsColor>();
    EXPECT_EQ(MessageOf<EArgumentException>([&] {
                  Frame.SetData({10, 60}, unknown, 77, Config);
              }),
              "Unsupported ColorCalc");
    EXPECT_TRUE(IsEmpty());
    EXPECT_EQ(Pages.currentIndex(), 0);
    EXPECT_EQ(Frame.GetOpacity(), 77);
    EXPECT_EQ(In<QLabel>("MultipartGradientPage", "lbFullRange").text(), tests::Local("Full range: 10.000 - 60.000"));
    EXPECT_FLOAT_EQ(Frame.CreateGradientColorCalc()->GetMaxVal(), 60);
}

TEST_F(LayerPropertiesDisplayFrame, TakesTheFirstKindThatFits) {
    Frame.SetData({0, 1}, tests::OfKinds<tests::TAsParts, tests::TAsGradient>(), 255, Config);
    EXPECT_EQ(ActivePage(), "GradientPage");
    Pages.setCurrentIndex(1);
    Frame.SetData({0, 1}, tests::OfKinds<tests::TAsParts, tests::TAsGradient, tests::TAsClasses>(), 255, Config);
    EXPECT_EQ(ActivePage(), "ClassifiedPage");
    Frame.SetData({0, 1}, tests::OfKinds<tests::TAsParts, tests::TAsGradient, tests::TAsClasses, tests::TAsPalette>(),
                  255, Config);
    EXPECT_EQ(ActivePage(), "BasicPalPage");
    Frame.SetData({0, 1}, tests::OfKinds<tests::TAsParts>(), 255, Config);
    EXPECT_EQ(ActivePage(), "MultipartGradientPage");
}

TEST_F(LayerPropertiesDisplayFrame, OpensOnAPaletteAndLeavesTheOtherTabsEmpty) {
    Frame.SetData({0, 100}, Palette(), 77, nullptr);
    EXPECT_EQ(ActivePage(), "BasicPalPage");
    EXPECT_EQ(In<TDrawnListView>("BasicPalPage", "lvBasicPalette").GetRowCount(), 2);
    EXPECT_EQ(In<TDrawnListView>("ClassifiedPage", "lvClasses").GetRowCount(), 0);
    EXPECT_EQ(In<TGradientEditorFrame>("GradientPage", "SingleGradientEditor").GetGradEdit()->GetCount(), 0);
    EXPECT_EQ(Opacity.value(), 77);
    EXPECT_EQ(OpacityEdit.text(), "77");
}

// What is not seen costs nothing when the page comes up.
TEST_F(LayerPropertiesDisplayFrame, MakesATabWhenItIsFirstSeen) {
    Show(Palette(), {10, 60});
    const auto isMade = [this](const char* name) { return Frame.findChild<QWidget*>(QString::fromLatin1(name)); };
    EXPECT_TRUE(isMade("lvBasicPalette"));
    EXPECT_FALSE(isMade("SingleGradientEditor"));
    EXPECT_FALSE(isMade("lvMultipartGradients"));
    EXPECT_FALSE(isMade("lvClasses"));
    QTest::mouseClick(Pages.tabBar(), Qt::LeftButton, {}, Pages.tabBar()->tabRect(1).center());
    ASSERT_TRUE(isMade("lvMultipartGradients"));
    EXPECT_TRUE(isMade("lvMultipartGradients")->isVisible());
    EXPECT_EQ(In<QLabel>("MultipartGradientPage", "lbFullRange").text(), tests::Local("Full range: 10.000 - 60.000"));
    EXPECT_FALSE(isMade("lvClasses"));
    EXPECT_EQ(Frame.CreateClassifiedColorCalc()->GetColorClasses()->GetClasses().Count(), 0);
    EXPECT_TRUE(isMade("lvClasses"));
}

TEST_F(LayerPropertiesDisplayFrame, PreparesATabThatIsThereAnew) {
    Show(Palette(), {10, 60});
    Frame.SetData({20, 30}, Palette(), 255, Config);
    EXPECT_FLOAT_EQ(Frame.CreateBasicPaletteColorCalc()->GetMinVal(), 20);
    EXPECT_FLOAT_EQ(Frame.CreateBasicPaletteColorCalc()->GetMaxVal(), 30);
}

TEST_F(LayerPropertiesDisplayFrame, OpensOnAGradientOverItsOwnRange) {
    Frame.SetData({0, 100}, Gradient(), 255, Config);
    EXPECT_EQ(ActivePage(), "GradientPage");
    const TGradientEditor& editor = *In<TGradientEditorFrame>("GradientPage", "SingleGradientEditor").GetGradEdit();
    EXPECT_EQ(editor.GetLowValue(), -5);
    EXPECT_EQ(editor.GetHighValue(), 5);
    const auto created = Frame.CreateGradientColorCalc();
    EXPECT_EQ(created->GetMinVal(), -5.0F);
    EXPECT_EQ(created->GetMaxVal(), 5.0F);
    EXPECT_EQ(created->GetDefaultColor(), 0U) << "which is not carried over";
    EXPECT_EQ(created->GetGradient()->ToString(), "(1:#FFFFFFFF),(0:#80000000)");
}

TEST_F(LayerPropertiesDisplayFrame, GivesAnEmptyEditorTheRangeOfTheLayer) {
    Frame.SetData({-20, 40}, Palette(), 255, Config);
    const TGradientEditor& editor = *In<TGradientEditorFrame>("GradientPage", "SingleGradientEditor").GetGradEdit();
    EXPECT_EQ(editor.GetLowValue(), -20);
    EXPECT_EQ(editor.GetHighValue(), 40);
    EXPECT_TRUE(Frame.CreateGradientColorCalc()->GetGradient()->GetColorStops().empty());
}

TEST_F(LayerPropertiesDisplayFrame, TakesAGradientCalculatorWithoutAGradient) {
    Frame.SetData({0, 1}, TGradientColorCalculatorFactory::GetObject(0, 1, nullptr), 255, Config);
    EXPECT_EQ(ActivePage(), "GradientPage");
    EXPECT_TRUE(IsEmpty());
}

TEST_F(LayerPropertiesDisplayFrame, LetsBarAndFieldOfTheOpacityFollowEachOther) {
    Show(Palette());
    OpacityEdit.setFocus();
    OpacityEdit.selectAll();
    QTest::keyClicks(&OpacityEdit, QStringLiteral("128"));
    EXPECT_EQ(Opacity.value(), 128);
    Opacity.setFocus();
    QTest::keyClick(&Opacity, Qt::Key_Right);
    EXPECT_EQ(OpacityEdit.text(), "129");
    EXPECT_EQ(Frame.GetOpacity(), 129);
}

TEST_F(LayerPropertiesDisplayFrame, LeavesTheBarForWhatIsNoInteger) {
    Show(Palette());
    Opacity.setValue(100);
    for (const char* text :
         {"", " ", "x", "12x", "12 ", "1 2", "1.5", "1,5", "1e2", "1e400", "NaN", "99999999999999"}) {
        OpacityEdit.setText(QString::fromLatin1(text));
        EXPECT_EQ(Opacity.value(), 100) << text;
        EXPECT_EQ(OpacityEdit.text(), text) << "nobody rewrites what is being typed";
    }
    OpacityEdit.clear();
    OpacityEdit.insert(QString(100'000, u'9'));
    EXPECT_EQ(Opacity.value(), 100);
}

TEST_F(LayerPropertiesDisplayFrame, TakesEveryTextThatIsAnInteger) {
    Show(Palette());
    const std::vector<std::pair<const char*, int>> texts{
        {"+5", 5}, {" 12", 12}, {"007", 7}, {"$40", 64}, {"0xfF", 255}};
    for (const auto& [text, value] : texts) {
        OpacityEdit.setText(QString::fromLatin1(text));
        EXPECT_EQ(Opacity.value(), value) << text;
        EXPECT_EQ(OpacityEdit.text(), QString::fromLatin1(std::to_string(value).c_str())) << "the bar writes it";
    }
}

TEST_F(LayerPropertiesDisplayFrame, TakesTheNearerEndBeyondTheBar) {
    Show(Palette());
    for (const bool isBefore : {false, true}) { // the bar may be at its end already
        Opacity.setValue(isBefore ? 255 : 100);
        OpacityEdit.setText(QStringLiteral("300"));
        EXPECT_EQ(Opacity.value(), 255);
        EXPECT_EQ(OpacityEdit.text(), "255");
        OpacityEdit.setText(QStringLiteral("-7"));
        EXPECT_EQ(Opacity.value(), 0);
        EXPECT_EQ(OpacityEdit.text(), "0");
    }
}

TEST_F(LayerPropertiesDisplayFrame, MakesNoObjectsForColors) {
    TLayerPropertiesDisplayFrame few;
    few.SetData({0, 1}, Palette(2), 255, nullptr);
    TLayerPropertiesDisplayFrame many;
    many.SetData({0, 1}, Palette(10'000), 255, nullptr);
    EXPECT_EQ(Find<TDrawnListView>(many, "lvBasicPalette").GetRowCount(), 10'000);
    EXPECT_EQ(many.findChildren<QObject*>().size(), few.findChildren<QObject*>().size());
}

// Some of the texts that the tabs have share a letter; Qt then walks from one to the next.
TEST_F(LayerPropertiesDisplayFrame, IsReadAndOperatedOnEachTab) {
    tests::CheckForm(
        [this] {
            auto frame = std::make_unique<TLayerPropertiesDisplayFrame>();
            frame->SetData({0, 1}, Palette(), 255, Config);
            return frame;
        },
        {QStringLiteral("Alt+C")});
}

// ---- The page

struct LayerPropertiesDisplayOptionFrame : tests::TIdrisiMapLayerTest {
    LayerPropertiesDisplayOptionFrame() { AddRendered(tests::NumberedImage(4, 2, {0, 2, 4, 0})); }

    TLayerPropertiesDisplayFrame& Open(const std::shared_ptr<IBaseColorCalculator>& calculator) {
        Layer.SetColorCalc(calculator);
        Layer.InitPropertiesDialog(&Dialog);
        tests::PagesOf(Dialog).SelectRow(1);
        tests::ShowActive(Dialog);
        return dynamic_cast<TLayerPropertiesDisplayFrame&>(FrameOf(Dialog, "Raster display"));
    }
    TIdrisiMapLayer& AddToManager(const std::shared_ptr<IBaseColorCalculator>& calculator) {
        auto* layer = Manager->GetLayers().Add(std::make_unique<TIdrisiMapLayer>(Manager));
        layer->TakeImage(tests::NumberedImage(4, 2, {0, 2, 4, 0}));
        layer->SetColorCalc(calculator);
        layer->Render();
        return *layer;
    }
    void ExpectToStay(const QString& message) {
        const auto before = Layer.GetColorCalc();
        const auto opacity = Layer.GetOpacity();
        Click(Find<QWidget>(Dialog, "pnMainActions"), "Button1");
        EXPECT_TRUE(Dialog.isVisible());
        EXPECT_EQ(Messages->Shown, (std::vector<TShownMessage>{{"Error", message, "Error", &Dialog}}));
        EXPECT_EQ(Layer.GetColorCalc(), before);
        EXPECT_EQ(Layer.GetOpacity(), opacity);
    }

    tests::TScriptedMsgBox Messages;
    TLayerPropertiesDialog Dialog;
};

TEST_F(LayerPropertiesDisplayOptionFrame, StandsAmongThePagesOfAnImage) {
    Open(Palette());
    EXPECT_EQ(tests::PageNamesOf(Dialog),
              (QStringList{"Extent", "Raster display", "Image header", "Layer attributes"}));
    EXPECT_EQ(MessageOf<EExArgumentNilException>([] { TLayerPropertiesDisplayOptionFrame page(nullptr); }),
              "TLayerPropertiesDisplayOptionFrame.Create: argument Layer is nil");
}

TEST_F(LayerPropertiesDisplayOptionFrame, StandsThereForALayerWithoutAnImage) {
    Layer.TakeImage(nullptr);
    Open(Palette());
    EXPECT_EQ(tests::PageNamesOf(Dialog), (QStringList{"Extent", "Raster display", "Layer attributes"}));
}

TEST_F(LayerPropertiesDisplayOptionFrame, WantsACalculator) {
    TIdrisiMapLayer bare(Manager);
    EXPECT_EQ(MessageOf<EArgumentException>([&] { bare.InitPropertiesDialog(&Dialog); }), "ColorCalc is null");
    EXPECT_EQ(tests::PageNamesOf(Dialog), QStringList{"Extent"});
    EXPECT_EQ(MessageOf<EExArgumentNilException>([&] { bare.InitPropertiesDialog(nullptr); }),
              "TIdrisiMapLayer.InitPropertiesDialog: argument Dialog is nil");
}

TEST_F(LayerPropertiesDisplayOptionFrame, GivesANewCalculatorEvenIfNothingWasEdited) {
    const auto calculator = Palette();
    Open(calculator);
    const int legends = Layer.Legends;
    Click(Find<QWidget>(Dialog, "pnMainActions"), "Button1");
    EXPECT_FALSE(Dialog.isVisible());
    EXPECT_NE(Layer.GetColorCalc(), calculator);
    EXPECT_TRUE(std::dynamic_pointer_cast<IBasicPaletteColorCalculator>(Layer.GetColorCalc()));
    EXPECT_EQ(Layer.Legends, legends + 1);
    EXPECT_TRUE(Messages->Shown.empty());
}

TEST_F(LayerPropertiesDisplayOptionFrame, BeginsWithWhatTheLayerHas) {
    const tests::TScriptedResBrowser browser;
    browser->Answers = {std::nullopt};
    Manager->GetConfig()->PaletteSources() = {std::make_shared<tests::TNamedPaletteSource>("Host")};
    Layer.SetOpacity(99);
    auto& frame = Open(Palette());
    EXPECT_EQ(frame.GetOpacity(), 99);
    EXPECT_EQ(frame.CreateBasicPaletteColorCalc()->GetMinVal(), 1.0F) << "the least value of the image";
    Click(frame, "btnBasicPalLoad");
    EXPECT_EQ(browser->Shown, (std::vector<std::vector<QString>>{{"Host"}}));
}

TEST_F(LayerPropertiesDisplayOptionFrame, LeavesTheLayersCalculatorAsItWas) {
    const auto calculator = TColorClassCalculatorFactory::GetObject({{"A", 0, 50, 1}, {"B", 50, 99, 2}});
    const auto& classes = calculator->GetColorClasses()->GetClasses();
    auto& frame = Open(calculator);
    auto& list = Find<TDrawnListView>(frame, "lvClasses");
    tests::ClickRow(list, 0);
    QTest::keyClick(&list, Qt::Key_Delete);
    Find<QSlider>(frame, "rbOpacity").setValue(40);
    EXPECT_EQ(classes.Count(), 2);
    EXPECT_EQ(Layer.GetColorCalc(), calculator) << "nothing reaches the layer before it is applied";
    EXPECT_EQ(Layer.GetOpacity(), 255);
    Click(Find<QWidget>(Dialog, "pnMainActions"), "Button3");
    EXPECT_EQ(classes.Count(), 2) << "the layer gets another one";
    const auto applied = std::dynamic_pointer_cast<IColorClassCalculator>(Layer.GetColorCalc());
    ASSERT_TRUE(applied);
    EXPECT_EQ(applied->GetColorClasses()->GetClasses().Count(), 1);
    list.selectAll();
    QTest::keyClick(&list, Qt::Key_Delete);
    EXPECT_EQ(applied->GetColorClasses()->GetClasses().Count(), 1) << "which is not the page's either";
    Click(Find<QWidget>(Dialog, "pnMainActions"), "Button2");
    EXPECT_EQ(Layer.GetColorCalc(), applied);
    EXPECT_EQ(Layer.GetOpacity(), 40);
}

TEST_F(LayerPropertiesDisplayOptionFrame, SetsTheOpacityLast) {
    auto& frame = Open(Palette());
    Find<QLineEdit>(frame, "edOpacity").setText(QStringLiteral("40"));
    EXPECT_TRUE(Dialog.ApplyChanges());
    EXPECT_EQ(Layer.GetOpacity(), 40);
    EXPECT_EQ(Layer.GetBitmap()->Pixel(0, 0) >> 24, 40U) << "rendered with it";
}

TEST_F(LayerPropertiesDisplayOptionFrame, RendersTheCalculatorBeforeTheOpacity) {
    const auto calculator = Palette();
    auto& frame = Open(calculator);
    Find<QLineEdit>(frame, "edOpacity").setText(QStringLiteral("40"));
    std::vector<std::pair<bool, int>> told; // is the calculator new, and the opacity
    const auto subscription = Layer.GetOnInvalidated().Add(
        [&](TBaseMapLayer*) { told.emplace_back(Layer.GetColorCalc() != calculator, Layer.GetOpacity()); });
    Click(Find<QWidget>(Dialog, "pnMainActions"), "Button3");
    EXPECT_EQ(told, (std::vector<std::pair<bool, int>>{{true, 255}, {true, 40}}));
    EXPECT_TRUE(Dialog.isVisible());
}

TEST_F(LayerPropertiesDisplayOptionFrame, RendersAgainWhatCouldNotBeRendered) {
    auto& frame = Open(Palette(1)); // which, reserved, leaves no color for the values
    Find<QAbstractButton>(frame, "rbFirstColorNoData").click();
    Find<QLineEdit>(frame, "edOpacity").setText(QStringLiteral("40"));
    for (int i = 0; i < 2; ++i)
        Click(Find<QWidget>(Dialog, "pnMainActions"), "Button1");
    EXPECT_TRUE(Dialog.isVisible());
    const TShownMessage failure{"Error", "Error applying changes: Floating point division by zero", "Error", &Dialog};
    EXPECT_EQ(Messages->Shown, (std::vector<TShownMessage>{failure, failure}));
    EXPECT_EQ(Layer.GetOpacity(), 255);
    EXPECT_FALSE(Layer.GetBitmap());

    Find<QAbstractButton>(frame, "rbTransparentNoData").click();
    int told = 0;
    const auto subscription = Layer.GetOnInvalidated().Add([&told](TBaseMapLayer*) { ++told; });
    Click(Find<QWidget>(Dialog, "pnMainActions"), "Button1");
    EXPECT_FALSE(Dialog.isVisible());
    EXPECT_EQ(Layer.GetOpacity(), 40);
    ASSERT_TRUE(Layer.GetBitmap());
    EXPECT_TRUE(Layer.GetIsReadyToDraw());
    EXPECT_EQ(told, 2) << "of the calculator and of the opacity";
}

TEST_F(LayerPropertiesDisplayOptionFrame, RendersNoLayerThatHasNotBeenRendered) {
    Layer.SetBitmap(nullptr);
    Open(Palette());
    EXPECT_TRUE(Dialog.ApplyChanges());
    EXPECT_FALSE(Layer.GetBitmap());
}

TEST_F(LayerPropertiesDisplayOptionFrame, KeepsTheEditsOfLaterPagesOnTheScreen) {
    auto& frame = Open(Palette());
    auto& attributes =
        dynamic_cast<TLayerPropertiesAttributesFrame&>(FrameOf(Dialog, QStringLiteral("Layer attributes")));
    const TAttributes edited{{"New", {TAttributeDataType::adtInteger, "2"}}};
    attributes.SetWorking(edited);
    Find<QTabWidget>(frame, "Pages").setCurrentIndex(2);
    ExpectToStay(QStringLiteral("Error applying changes: Please specify one or more colors"));
    EXPECT_TRUE(Layer.GetAttributes().empty());
    Find<QTabWidget>(frame, "Pages").setCurrentIndex(3);
    Click(Find<QWidget>(Dialog, "pnMainActions"), "Button1");
    EXPECT_FALSE(Dialog.isVisible());
    EXPECT_EQ(Layer.GetAttributes(), edited);
}

TEST_F(LayerPropertiesDisplayOptionFrame, WantsClasses) {
    auto& frame = Open(Palette());
    Find<QTabWidget>(frame, "Pages").setCurrentIndex(2);
    Find<QLineEdit>(frame, "edOpacity").setText(QStringLiteral("40"));
    ExpectToStay(QStringLiteral("Error applying changes: Please specify one or more colors"));
}

TEST_F(LayerPropertiesDisplayOptionFrame, WantsColorsInAPalette) {
    auto& frame = Open(Gradient());
    Find<QTabWidget>(frame, "Pages").setCurrentIndex(3);
    ExpectToStay(QStringLiteral("Error applying changes: Please specify one or more colors"));
}

TEST_F(LayerPropertiesDisplayOptionFrame, RefusesTabsOfOthers) {
    auto& frame = Open(Gradient());
    auto& pages = Find<QTabWidget>(frame, "Pages");
    pages.setCurrentIndex(pages.addTab(new QWidget, QStringLiteral("Other")));
    EXPECT_EQ(MessageOf<ENotImplemented>([&] { frame.CreateColorCalc(); }),
              "Unable to apply changes for the specified raster type");
    ExpectToStay(QStringLiteral("Error applying changes: Unable to apply changes for the specified raster type"));
}

TEST_F(LayerPropertiesDisplayOptionFrame, AppliesAGradientWithoutStops) {
    auto& frame = Open(Palette());
    Find<QTabWidget>(frame, "Pages").setCurrentIndex(0);
    EXPECT_TRUE(Dialog.ApplyChanges());
    const auto applied = std::dynamic_pointer_cast<IGradientColorCalculator>(Layer.GetColorCalc());
    ASSERT_TRUE(applied);
    EXPECT_TRUE(applied->GetGradient()->GetColorStops().empty());
    EXPECT_EQ(applied->GetMinVal(), 1.0F);
    EXPECT_EQ(applied->GetMaxVal(), 99.0F);
}

TEST_F(LayerPropertiesDisplayOptionFrame, AppliesTheTabThatIsSeen) {
    auto& frame = Open(TColorClassCalculatorFactory::GetObject({{"", 0, 50, 0xFF102030U}}));
    EXPECT_TRUE(Dialog.ApplyChanges());
    EXPECT_TRUE(std::dynamic_pointer_cast<IColorClassCalculator>(Layer.GetColorCalc()));
    EXPECT_EQ(Layer.GetBitmap()->Pixel(0, 0), 0xFF102030U);
    Find<QTabWidget>(frame, "Pages").setCurrentIndex(1);
    EXPECT_TRUE(Dialog.ApplyChanges());
    const auto parts = std::dynamic_pointer_cast<IMultipartGradientColorCalculator>(Layer.GetColorCalc());
    ASSERT_TRUE(parts);
    EXPECT_EQ(parts->GetGradients().size(), 0U) << "it wants none";
}

TEST_F(LayerPropertiesDisplayOptionFrame, IsAppliedWithoutHavingBeenSeen) {
    const auto calculator = Palette();
    Layer.SetColorCalc(calculator);
    Layer.InitPropertiesDialog(&Dialog);
    EXPECT_TRUE(Dialog.ApplyChanges());
    EXPECT_NE(Layer.GetColorCalc(), calculator);
    EXPECT_FALSE(FrameOf(Dialog, "Raster display").parentWidget());
}

TEST_F(LayerPropertiesDisplayOptionFrame, AppliesNothingOnceTheLayerHasGone) {
    auto layer = std::make_unique<TIdrisiMapLayer>(Manager);
    layer->SetColorCalc(Palette());
    layer->InitPropertiesDialog(&Dialog);
    layer.reset();
    EXPECT_TRUE(Dialog.ApplyChanges());
    EXPECT_TRUE(Messages->Shown.empty());
}

TEST_F(LayerPropertiesDisplayOptionFrame, SurvivesALayerThatGoesWhenItIsTold) {
    TIdrisiMapLayer& raster = AddToManager(Palette());
    auto dialog = std::make_unique<TLayerPropertiesDialog>();
    raster.InitPropertiesDialog(dialog.get());
    const auto subscription = raster.GetOnReadyToDrawChanged().Add([&](TBaseMapLayer* told) {
        Manager->GetLayers().Remove(told);
        dialog.reset();
    });
    TLayerPropertiesDialog* const open = dialog.get();
    EXPECT_FALSE(open->ApplyChanges());
    EXPECT_TRUE(Manager->GetLayers().IsEmpty());
}

TEST_F(LayerPropertiesDisplayOptionFrame, SurvivesALayerThatGoesWhenItIsRenderedAgain) {
    TIdrisiMapLayer& raster = AddToManager(Palette(1));
    auto dialog = std::make_unique<TLayerPropertiesDialog>();
    raster.InitPropertiesDialog(dialog.get());
    const QWidget& frame = FrameOf(*dialog, "Raster display");
    Find<QAbstractButton>(frame, "rbFirstColorNoData").click();
    EXPECT_FALSE(dialog->ApplyChanges());
    const auto subscription = raster.GetOnReadyToDrawChanged().Add([&](TBaseMapLayer* told) {
        Manager->GetLayers().Remove(told);
        dialog.reset();
    });
    Find<QAbstractButton>(frame, "rbTransparentNoData").click();
    TLayerPropertiesDialog* const open = dialog.get();
    EXPECT_FALSE(open->ApplyChanges());
    EXPECT_TRUE(Manager->GetLayers().IsEmpty());
    EXPECT_EQ(Messages->Shown.size(), 1U);
}

} // namespace
} // namespace lmx
