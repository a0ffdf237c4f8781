// The layers panel of the viewer by real events: its rows follow the stack, and the stack follows what is done to them
// with the mouse and the keyboard.

#include "LayersPanel.h"

#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Controls/Legend/lmxBaseLegendControl.h>
#include <lmx/Controls/lmxLayerToggleButtons.h>
#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <tests/Support/Printers.h>
#include <tests/Support/TestLayer.h>
#include <tests/Support/WidgetPictures.h>

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QScrollArea>
#include <QScrollBar>
#include <QSlider>
#include <QTest>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <gtest/gtest.h>

#include "ColorStrip.h"
#include "LayerRow.h"
#include "LayerStack.h"

namespace lmx {
namespace {

/// A layer that lists do not show.
class TUnlistedLayer : public tests::TTestLayer {
public:
    using TTestLayer::TTestLayer;
    bool GetShowsInLayersList() const override { return false; }
};

/// The panel in an active window, 280 x 300, over a stack of "low", one that is not listed, "middle" and "high".
class LayersPanel : public testing::Test {
protected:
    LayersPanel() {
        Low = tests::AddTestLayer(Manager, QStringLiteral("low"));
        Manager->GetLayers().Add(std::make_unique<TUnlistedLayer>(Manager));
        Middle = tests::AddTestLayer(Manager, QStringLiteral("middle"));
        High = tests::AddTestLayer(Manager, QStringLiteral("high"));
        (new QVBoxLayout(&Window))->addWidget(Panel);
        Window.resize(280, 300);
        Panel->SetLayerManager(Manager);
        tests::ShowActive(Window);
        Settle();
    }

    static void Settle() {
        for (int i = 0; i < 3; ++i)
            QCoreApplication::processEvents();
    }
    /// From top to bottom.
    std::vector<TLayerRow*> Rows() const {
        std::vector<TLayerRow*> rows;
        for (QWidget* widget : Panel->findChildren<QWidget*>())
            if (auto* row = dynamic_cast<TLayerRow*>(widget))
                rows.push_back(row);
        std::ranges::sort(rows, {}, [](const TLayerRow* row) { return row->y(); });
        return rows;
    }
    QStringList Names() const {
        QStringList names;
        for (const TLayerRow* row : Rows())
            names += row->accessibleName();
        return names;
    }
    TLayerRow* RowOf(const QString& name) const {
        for (TLayerRow* row : Rows())
            if (row->accessibleName() == name)
                return row;
        ADD_FAILURE() << "no row " << name.toStdString();
        return nullptr;
    }
    /// What is named so for screen readers.
    template<class Widget>
    Widget* Part(const QString& name) const {
        for (Widget* widget : Panel->findChildren<Widget*>())
            if (widget->accessibleName() == name)
                return widget;
        ADD_FAILURE() << "nothing named " << name.toStdString();
        return nullptr;
    }
    QAction* Command(int number) const { return Panel->GetCommands().at(number); }
    static QPoint Heading(const TLayerRow* row) { return {row->width() / 2, 12}; }
    void Click(TLayerRow* row) { QTest::mouseClick(row, Qt::LeftButton, {}, Heading(row)); }
    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
        Settle();
    }
    TIdrisiMapLayer* AddRaster(const QString& name, float low, float high) {
        TImageHeader header;
        header.SetWidth(2);
        header.SetHeight(1);
        header.SetMaxX(10);
        header.SetMaxY(10);
        header.SetRefSystem(QStringLiteral("latlong"));
        header.SetValueUnits(QStringLiteral("mm"));
        auto image = std::make_unique<TRealImage>(QString(), header);
        image->GetRow(1)[0] = low;
        image->GetRow(1)[1] = high;
        image->UpdateValueRange();
        auto layer = std::make_unique<TIdrisiMapLayer>(Manager);
        layer->SetLayerName(name);
        layer->TakeImage(std::move(image));
        layer->SetColorCalc(Gradient(low, high));
        layer->Render();
        TIdrisiMapLayer* added = Manager->GetLayers().Add(std::move(layer));
        Settle();
        return added;
    }
    static std::shared_ptr<IBaseColorCalculator> Gradient(float low, float high) {
        const std::vector<TColorStop> stops = {{0, 0xFF0000FF}, {1, 0xFFFF0000}};
        return TGradientColorCalculatorFactory::GetObject(low, high, TGradientFactory::GetObject(stops));
    }

    const TFormatSettingsScope Point{TFormatSettings{u'.'}};
    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    TBaseMapLayer* Low;
    TBaseMapLayer* Middle;
    TBaseMapLayer* High;
    QWidget Window;
    TLayersPanel* Panel = new TLayersPanel(&Window);
};

enum { Properties, Rename, Duplicate, ShowOrHide, MoveUp, MoveDown, RemoveIt };

TEST_F(LayersPanel, RowsFollowTheStack) {
    EXPECT_EQ(Names(), QStringList({"high", "middle", "low"}));
    tests::AddTestLayer(Manager, QStringLiteral("top"));
    Manager->GetLayers().Remove(Middle);
    Manager->MoveLayer(0, 2); // "low" over "high"
    Settle();
    EXPECT_EQ(Names(), QStringList({"top", "low", "high"}));
    High->SetLayerName(QStringLiteral("lowest"));
    EXPECT_EQ(Names(), QStringList({"top", "low", "lowest"}));
}

TEST_F(LayersPanel, ScrollsToTheSelectedLayer) {
    for (int i = 0; i < 12; ++i)
        tests::AddTestLayer(Manager, QStringLiteral("more"));
    Settle();
    EXPECT_LT(Window.minimumSizeHint().height(), 150);
    const auto* scroll = Panel->findChild<QScrollArea*>();
    EXPECT_GT(scroll->verticalScrollBar()->maximum(), 0);
    EXPECT_TRUE(RowOf(QStringLiteral("low"))->visibleRegion().isEmpty());
    Manager->SetSelLayer(Low);
    EXPECT_EQ(RowOf(QStringLiteral("low"))->visibleRegion().boundingRect().size(),
              RowOf(QStringLiteral("low"))->size());
    EXPECT_EQ(scroll->horizontalScrollBar()->maximum(), 0);
}

TEST_F(LayersPanel, TheSelectionIsThatOfTheManager) {
    Click(RowOf(QStringLiteral("middle")));
    EXPECT_EQ(Manager->GetSelLayer(), Middle);
    EXPECT_EQ(QApplication::focusWidget(), RowOf(QStringLiteral("middle")));
    const QImage selected = tests::PictureOf(*RowOf(QStringLiteral("middle")));
    Manager->SetSelLayer(Low);
    const QImage other = tests::PictureOf(*RowOf(QStringLiteral("middle")));
    const QRgb mark = Panel->palette().color(QPalette::Highlight).rgba();
    EXPECT_EQ(selected.pixel(1, selected.height() / 2), mark) << "the bar at its left";
    EXPECT_NE(other.pixel(1, other.height() / 2), mark);
    EXPECT_EQ(tests::PictureOf(*RowOf(QStringLiteral("low"))).pixel(1, 10), mark);
    Part<TLayerVisibilityToggleButton>(QStringLiteral("Visibility of high"))->setFocus();
    EXPECT_EQ(Manager->GetSelLayer(), High) << "what is in a row selects it, too";
}

TEST_F(LayersPanel, ArrowsGoFromRowToRow) {
    Click(RowOf(QStringLiteral("high")));
    const auto goes = [&](Qt::Key key) {
        Press(key);
        EXPECT_EQ(QApplication::focusWidget()->accessibleName(), Manager->GetSelLayer()->GetLayerName());
        return Manager->GetSelLayer();
    };
    EXPECT_EQ(goes(Qt::Key_Down), Middle);
    EXPECT_EQ(goes(Qt::Key_Down), Low);
    EXPECT_EQ(goes(Qt::Key_Down), Low);
    EXPECT_EQ(goes(Qt::Key_Up), Middle);
    EXPECT_EQ(goes(Qt::Key_Home), High);
    EXPECT_EQ(goes(Qt::Key_Up), High);
    EXPECT_EQ(goes(Qt::Key_End), Low);
}

TEST_F(LayersPanel, TheTabKeyGoesDownTheRows) {
    Manager->MoveLayer(3, 0); // "high" to the bottom: made first, it comes last
    Settle();
    Click(RowOf(QStringLiteral("middle")));
    QStringList names;
    for (int i = 0; i < 9; ++i) {
        names += QApplication::focusWidget()->accessibleName();
        Press(Qt::Key_Tab);
    }
    EXPECT_EQ(names, QStringList({"middle", "Visibility of middle", "Commands of middle", "low", "Visibility of low",
                                  "Commands of low", "high", "Visibility of high", "Commands of high"}));
}

TEST_F(LayersPanel, ANameIsEditedInItsRow) {
    Click(RowOf(QStringLiteral("middle")));
    const auto edit = [&](const QString& text, Qt::Key end) {
        Press(Qt::Key_F2);
        auto* editor = dynamic_cast<QLineEdit*>(QApplication::focusWidget());
        ASSERT_NE(editor, nullptr);
        EXPECT_EQ(editor->selectedText(), Middle->GetLayerName());
        QTest::keyClicks(editor, text);
        QTest::keyClick(editor, end);
        EXPECT_FALSE(editor->isVisible());
        EXPECT_NE(dynamic_cast<TLayerRow*>(QApplication::focusWidget()), nullptr);
    };
    edit(QStringLiteral("rain"), Qt::Key_Return);
    EXPECT_EQ(Middle->GetLayerName(), QStringLiteral("rain"));
    EXPECT_EQ(Names(), QStringList({"high", "rain", "low"}));
    edit(QStringLiteral("snow"), Qt::Key_Escape);
    EXPECT_EQ(Middle->GetLayerName(), QStringLiteral("rain"));
    edit(QStringLiteral("  "), Qt::Key_Return);
    EXPECT_EQ(Middle->GetLayerName(), QStringLiteral("rain")) << "a layer has a name";
    Press(Qt::Key_F2);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Delete);
    EXPECT_EQ(Manager->GetLayers().Count(), 4) << "the key is the editor's";
    Click(RowOf(QStringLiteral("low")));
    EXPECT_EQ(Middle->GetLayerName(), QStringLiteral("rain")) << "the focus has gone from an empty name";
    Click(RowOf(QStringLiteral("rain")));
    Press(Qt::Key_F2);
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("hail"));
    Click(RowOf(QStringLiteral("low")));
    EXPECT_EQ(Middle->GetLayerName(), QStringLiteral("hail")) << "the focus has gone from a name";
}

TEST_F(LayersPanel, DeleteRemovesAndSelectsTheNext) {
    Click(RowOf(QStringLiteral("middle")));
    Press(Qt::Key_Delete);
    EXPECT_EQ(Names(), QStringList({"high", "low"}));
    EXPECT_EQ(Manager->GetSelLayer(), Low);
    EXPECT_EQ(QApplication::focusWidget(), RowOf(QStringLiteral("low")));
    Press(Qt::Key_Delete);
    EXPECT_EQ(Names(), QStringList({"high"}));
    EXPECT_EQ(Manager->GetSelLayer(), High);
    Press(Qt::Key_Delete);
    EXPECT_EQ(Names(), QStringList());
    EXPECT_EQ(Manager->GetSelLayer(), nullptr);
    EXPECT_EQ(Manager->GetLayers().Count(), 1) << "the one that is not listed";
    for (const QAction* command : Panel->GetCommands())
        EXPECT_FALSE(command->isEnabled()) << command->text().toStdString();
}

TEST_F(LayersPanel, KeysMoveALayer) {
    Click(RowOf(QStringLiteral("low")));
    EXPECT_FALSE(Command(MoveDown)->isEnabled());
    Press(Qt::Key_Up, Qt::ControlModifier);
    EXPECT_EQ(Names(), QStringList({"high", "low", "middle"}));
    EXPECT_TRUE(Command(MoveDown)->isEnabled());
    Press(Qt::Key_Up, Qt::ControlModifier);
    EXPECT_EQ(Names(), QStringList({"low", "high", "middle"}));
    EXPECT_FALSE(Command(MoveUp)->isEnabled());
    Press(Qt::Key_Up, Qt::ControlModifier);
    EXPECT_EQ(Names(), QStringList({"low", "high", "middle"}));
    EXPECT_EQ(Manager->GetSelLayer(), Low);
    EXPECT_EQ(QApplication::focusWidget(), RowOf(QStringLiteral("low")));
    Press(Qt::Key_Down, Qt::ControlModifier);
    EXPECT_EQ(Names(), QStringList({"high", "low", "middle"}));
    EXPECT_EQ(Manager->GetLayers().IndexOf(Low), 2);
}

TEST_F(LayersPanel, ADragMovesALayer) {
    TLayerRow* low = RowOf(QStringLiteral("low"));
    const auto over = [&](const QString& name, int dy) {
        return low->mapFromGlobal(RowOf(name)->mapToGlobal(QPoint(40, RowOf(name)->height() / 2 + dy)));
    };
    QTest::mousePress(low, Qt::LeftButton, {}, Heading(low));
    QTest::mouseMove(low, over(QStringLiteral("middle"), 0));
    QTest::mouseMove(low, over(QStringLiteral("high"), -4));
    QTest::mouseRelease(low, Qt::LeftButton, {}, over(QStringLiteral("high"), -4));
    Settle();
    EXPECT_EQ(Names(), QStringList({"low", "high", "middle"}));
    EXPECT_EQ(Manager->GetSelLayer(), Low);

    QTest::mousePress(low, Qt::LeftButton, {}, Heading(low));
    QTest::mouseMove(low, over(QStringLiteral("middle"), -4)); // the gap between the others
    QTest::mouseRelease(low, Qt::LeftButton, {}, over(QStringLiteral("middle"), -4));
    Settle();
    EXPECT_EQ(Names(), QStringList({"high", "low", "middle"}));

    QTest::mousePress(low, Qt::LeftButton, {}, Heading(low));
    QTest::mouseMove(low, over(QStringLiteral("middle"), 100)); // below all
    QTest::mouseRelease(low, Qt::LeftButton, {}, over(QStringLiteral("middle"), 100));
    Settle();
    EXPECT_EQ(Names(), QStringList({"high", "middle", "low"}));
}

TEST_F(LayersPanel, ADragIsShownAndGivenUpByEscape) {
    TLayerRow* low = RowOf(QStringLiteral("low"));
    const QRgb mark = Panel->palette().color(QPalette::Highlight).rgba();
    const auto inked = [&] { // pixels of the mark over the right half, where rows are empty but for their buttons
        const QImage picture = tests::PictureOf(*Panel);
        int count = 0;
        for (int y = 0; y < picture.height(); ++y)
            count += picture.pixel(picture.width() * 2 / 3, y) == mark ? 1 : 0;
        return count;
    };
    QTest::mousePress(low, Qt::LeftButton, {}, Heading(low));
    const int before = inked();
    QTest::mouseMove(low, Heading(low) - QPoint(0, 60));
    EXPECT_GE(inked(), before + 3);
    QTest::keyClick(low, Qt::Key_Escape);
    EXPECT_EQ(inked(), before);
    QTest::mouseMove(low, Heading(low) - QPoint(0, 55));
    QTest::mouseRelease(low, Qt::LeftButton, {}, Heading(low) - QPoint(0, 60));
    Settle();
    EXPECT_EQ(Names(), QStringList({"high", "middle", "low"}));
}

TEST_F(LayersPanel, APressThatHardlyMovesIsNoDrag) {
    TLayerRow* low = RowOf(QStringLiteral("low"));
    QTest::mousePress(low, Qt::LeftButton, {}, {60, 1});
    QTest::mouseMove(low, {60, -2});
    QTest::mouseRelease(low, Qt::LeftButton, {}, {60, -2});
    Settle();
    EXPECT_EQ(Names(), QStringList({"high", "middle", "low"}));
}

TEST_F(LayersPanel, TheEyeAndTheSpaceBarShowAndHide) {
    auto* eye = Part<TLayerVisibilityToggleButton>(QStringLiteral("Visibility of low"));
    QTest::mouseClick(eye, Qt::LeftButton);
    EXPECT_FALSE(Low->GetIsVisible());
    EXPECT_FALSE(eye->GetSelected());
    Click(RowOf(QStringLiteral("low")));
    Press(Qt::Key_Space);
    EXPECT_TRUE(Low->GetIsVisible());
    EXPECT_TRUE(eye->GetSelected());
    Low->SetIsVisible(false); // by whoever
    EXPECT_FALSE(eye->GetSelected());
}

TEST_F(LayersPanel, ARasterShowsItsColours) {
    TIdrisiMapLayer* raster = AddRaster(QStringLiteral("rain"), 10, 20);
    auto* strip = Part<TColorStrip>(QStringLiteral("Scale of rain"));
    EXPECT_EQ(strip->accessibleDescription(), QStringLiteral("10 to 20 mm"));
    const auto colorAt = [&](double share) {
        const QImage picture = tests::PictureOf(*strip);
        const int x = static_cast<int>(share * (picture.width() - 1));
        return QColor(picture.pixel(x, picture.height() / 6));
    };
    EXPECT_GT(colorAt(0.02).blue(), 240);
    EXPECT_LT(colorAt(0.02).red(), 15);
    EXPECT_NEAR(colorAt(0.5).red(), 128, 3);
    EXPECT_GT(colorAt(0.98).red(), 240);

    auto* choice = Part<QComboBox>(QStringLiteral("Colours of rain"));
    const auto own = raster->GetColorCalc();
    choice->setFocus();
    Press(Qt::Key_Down);
    EXPECT_EQ(choice->currentText(), QStringLiteral("Viridis"));
    EXPECT_NE(raster->GetColorCalc(), own);
    EXPECT_NEAR(colorAt(0.98).green(), 231, 12) << "the yellow end";
    Press(Qt::Key_Up);
    EXPECT_EQ(raster->GetColorCalc(), own) << "its own colours come back";
    Press(Qt::Key_Down);
    raster->SetColorCalc(Gradient(0, 40)); // by whoever
    EXPECT_EQ(choice->currentIndex(), 0);
    EXPECT_EQ(strip->accessibleDescription(), QStringLiteral("0 to 40 mm"));
}

TEST_F(LayersPanel, OpacityFollowsBothWays) {
    TIdrisiMapLayer* raster = AddRaster(QStringLiteral("rain"), 10, 20);
    auto* slider = Part<QSlider>(QStringLiteral("Opacity of rain"));
    slider->setFocus();
    Press(Qt::Key_PageDown);
    EXPECT_EQ(raster->GetOpacity(), 255 - 32);
    raster->SetOpacity(51);
    EXPECT_EQ(slider->value(), 51);
    QStringList texts;
    for (const QLabel* label : RowOf(QStringLiteral("rain"))->findChildren<QLabel*>())
        texts += label->text();
    EXPECT_TRUE(texts.contains(QStringLiteral("20 %"))) << texts.join(u'|').toStdString();
}

TEST_F(LayersPanel, TheWheelDoesNotTurnWhatHasNotTheFocus) {
    TIdrisiMapLayer* raster = AddRaster(QStringLiteral("rain"), 10, 20);
    Click(RowOf(QStringLiteral("rain")));
    for (QWidget* part : {static_cast<QWidget*>(Part<QSlider>(QStringLiteral("Opacity of rain"))),
                          static_cast<QWidget*>(Part<QComboBox>(QStringLiteral("Colours of rain")))}) {
        QWheelEvent wheel({5, 5}, part->mapToGlobal(QPointF(5, 5)), {}, {0, -120}, {}, {}, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(part, &wheel);
        EXPECT_FALSE(wheel.isAccepted());
    }
    EXPECT_EQ(raster->GetOpacity(), 255);
    EXPECT_EQ(Part<QComboBox>(QStringLiteral("Colours of rain"))->currentIndex(), 0);
}

TEST_F(LayersPanel, RowsFold) {
    AddRaster(QStringLiteral("rain"), 10, 20);
    auto* slider = Part<QSlider>(QStringLiteral("Opacity of rain"));
    Click(RowOf(QStringLiteral("rain")));
    EXPECT_TRUE(slider->isVisible());
    Press(Qt::Key_Left);
    EXPECT_FALSE(slider->isVisible());
    Press(Qt::Key_Right);
    EXPECT_TRUE(slider->isVisible());
    QTest::mouseClick(Part<TLayerOpenCloseToggleButton>(QStringLiteral("Details of rain")), Qt::LeftButton);
    EXPECT_FALSE(slider->isVisible());
    EXPECT_FALSE(Part<TLayerOpenCloseToggleButton>(QStringLiteral("Details of low"))->isEnabled());
    Manager->MoveLayer(0, 1);
    Settle();
    EXPECT_FALSE(slider->isVisible()) << "rows stay as they are when others move";
}

TEST_F(LayersPanel, DuplicatesStandOverTheirSource) {
    TIdrisiMapLayer* raster = AddRaster(QStringLiteral("rain"), 10, 20);
    Manager->MoveLayer(4, 0);
    Settle();
    Click(RowOf(QStringLiteral("low")));
    EXPECT_FALSE(Command(Duplicate)->isEnabled());
    Click(RowOf(QStringLiteral("rain")));
    Press(Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(Names(), QStringList({"high", "middle", "low", "rain (2)", "rain"}));
    EXPECT_NE(Manager->GetSelLayer(), raster);
    EXPECT_EQ(Manager->GetSelLayer()->GetLayerName(), QStringLiteral("rain (2)"));
}

TEST_F(LayersPanel, TheMenuHasTheLayersEntriesAndTheCommands) {
    AddRaster(QStringLiteral("rain"), 10, 20);
    QTest::mouseClick(Part<TShowMenuButton>(QStringLiteral("Commands of rain")), Qt::LeftButton);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    QStringList texts;
    for (const QAction* action : menu->actions())
        texts += action->isSeparator() ? QStringLiteral("-") : action->text();
    EXPECT_EQ(texts.first(), QStringLiteral("&Goto Extent"));
    EXPECT_EQ(texts.last(7), QStringList({"Pr&operties...", "&Rename", "D&uplicate", "Show or &hide", "Move u&p",
                                          "Move &down", "Re&move"}));
    for (QAction* action : menu->actions())
        if (action->text() == QStringLiteral("Re&move"))
            action->trigger();
    menu->close();
    Settle();
    EXPECT_EQ(Names(), QStringList({"high", "middle", "low"}));

    Click(RowOf(QStringLiteral("low")));
    TLayerRow* low = RowOf(QStringLiteral("low"));
    QContextMenuEvent byKey(QContextMenuEvent::Keyboard, {5, 5}, low->mapToGlobal(QPoint(5, 5)));
    QCoreApplication::sendEvent(low, &byKey);
    ASSERT_NE(QApplication::activePopupWidget(), nullptr);
    QApplication::activePopupWidget()->close();
}

TEST_F(LayersPanel, LayersAndManagersMayGo) {
    auto* eye = Part<TLayerVisibilityToggleButton>(QStringLiteral("Visibility of low"));
    Manager->GetLayers().Remove(Low);
    QTest::mouseClick(eye, Qt::LeftButton); // its row has not gone yet
    QTest::keyClick(eye->parentWidget(), Qt::Key_F2);
    Settle();
    EXPECT_EQ(Names(), QStringList({"high", "middle"}));

    const auto other = TLayerManagerFactory::GetObject();
    tests::AddTestLayer(other, QStringLiteral("other"));
    Panel->SetLayerManager(other);
    Settle();
    EXPECT_EQ(Names(), QStringList({"other"}));
    tests::AddTestLayer(Manager, QStringLiteral("late"));
    Settle();
    EXPECT_EQ(Names(), QStringList({"other"}));
    Click(RowOf(QStringLiteral("other")));
    EXPECT_EQ(other->GetSelLayer(), other->GetLayers()[0]);
    EXPECT_EQ(Manager->GetSelLayer(), nullptr);

    Panel->SetLayerManager(nullptr);
    Settle();
    EXPECT_EQ(Names(), QStringList());
    Command(RemoveIt)->trigger();
    EXPECT_EQ(other->GetLayers().Count(), 1);
}

TEST_F(LayersPanel, ALayerMayGoInTheMiddleOfADrag) {
    TLayerRow* low = RowOf(QStringLiteral("low"));
    QTest::mousePress(low, Qt::LeftButton, {}, Heading(low));
    QTest::mouseMove(low, Heading(low) - QPoint(0, 60));
    Manager->GetLayers().Remove(Low);
    QTest::mouseRelease(low, Qt::LeftButton, {}, Heading(low) - QPoint(0, 60));
    Settle();
    EXPECT_EQ(Names(), QStringList({"high", "middle"}));
}

class TLegend : public TBaseLegendControl {
public:
    explicit TLegend() : TBaseLegendControl(nullptr, QStringLiteral("TLegend")) {}
    int GetSuggestedHeight() const override { return 33; }
};

TEST_F(LayersPanel, ALegendStandsInItsRow) {
    auto* first = new TLegend;
    High->SetLegendComponent(first);
    Settle();
    EXPECT_TRUE(RowOf(QStringLiteral("high"))->isAncestorOf(first));
    EXPECT_TRUE(first->isVisible());
    EXPECT_EQ(first->height(), 33);
    QTest::mouseClick(Part<TLayerOpenCloseToggleButton>(QStringLiteral("Details of high")), Qt::LeftButton);
    EXPECT_FALSE(first->isVisible());
    auto* second = new TLegend;
    High->SetLegendComponent(second);
    EXPECT_TRUE(RowOf(QStringLiteral("high"))->isAncestorOf(second));

    TIdrisiMapLayer* raster = AddRaster(QStringLiteral("rain"), 10, 20);
    auto* scale = Part<TColorStrip>(QStringLiteral("Scale of rain"));
    raster->SetLegendComponent(nullptr);
    EXPECT_TRUE(scale->isVisible());
    raster->SetLegendComponent(new TLegend);
    EXPECT_FALSE(scale->isVisible()) << "the legend shows the colours";
    raster->SetLegendComponent(nullptr);
    EXPECT_TRUE(scale->isVisible());

    Panel->SetLayerManager(nullptr);
    Settle();
    EXPECT_EQ(High->GetLegendComponent(), second) << "it goes with its layer";
    Panel->SetLayerManager(Manager);
    Settle();
    EXPECT_TRUE(RowOf(QStringLiteral("high"))->isAncestorOf(second));
}

TEST_F(LayersPanel, ALayerMovesIntoAGapOfTheList) {
    EXPECT_FALSE(MoveToGap(*Manager, High, 0));
    EXPECT_FALSE(MoveToGap(*Manager, High, 1));
    EXPECT_FALSE(MoveToGap(*Manager, High, -1));
    EXPECT_FALSE(MoveToGap(*Manager, High, 4));
    EXPECT_FALSE(MoveToGap(*Manager, Manager->GetLayers()[1], 0)) << "not listed";
    EXPECT_TRUE(MoveToGap(*Manager, High, 3));
    EXPECT_EQ(ListedLayers(*Manager), (std::vector<TBaseMapLayer*>{Middle, Low, High}));
    EXPECT_EQ(NeighbourOf(*Manager, Manager->GetLayers()[2], 1), nullptr);
    EXPECT_EQ(NeighbourOf(*Manager, Middle, 5), High);
}

} // namespace
} // namespace lmx
