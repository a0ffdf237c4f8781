#include <lmx/Controls/Legend/lmxObjectLayerLegendControl.h>
#include <lmx/Dialogs/lmxTextObjectDialog.h>
#include <lmx/Layers/Objects/lmxCompassRoseObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxRectangleObjectTypeItem.h>
#include <lmx/Layers/Objects/lmxShapeLegendObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxTextBoxObjectLayerItem.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxObjectMapLayer.h>
#include <lmx/Widgets/lmxAnchorEditor.h>
#include <lmx/Widgets/lmxDrawnListView.h>
#include <lmx/Widgets/lmxPngButton.h>
#include <tests/Support/DialogChecks.h>
#include <tests/Support/ModalAnswer.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/WidgetPictures.h>

#include <QAccessible>
#include <QMenu>

#include <memory>

// The list, its buttons and the editor of anchors. What the dialogs do to annotations: lmxControlDialogsTest.cpp.

namespace lmx {
namespace {

using enum TAnchorKind;

/// A control on a layer, shown, with the keyboard.
struct ObjectLayerLegendControl : testing::Test {
    ObjectLayerLegendControl() {
        Control->resize(300, 200);
        tests::ShowActive(*Control);
    }
    ~ObjectLayerLegendControl() override {
        QCoreApplication::processEvents(); // boxes that were not asked for would come up now
        EXPECT_TRUE(Messages->Shown.empty());
    }

    template<class Item>
    Item* Add() {
        return Layer->GetObjects().Add(std::make_unique<Item>(Layer.get()));
    }
    TTextBoxObjectLayerItem* AddText(const QString& text) {
        auto* item = Add<TTextBoxObjectLayerItem>();
        item->SetText(text);
        return item;
    }
    TDrawnListView& List() { return *Control->GetLayerList(); }
    QStringList Rows() {
        QStringList rows;
        for (int row = 0; row < List().GetRowCount(); ++row)
            rows.append(List().model()->index(row, 0).data().toString());
        return rows;
    }
    void Select(int row, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mouseClick(List().viewport(), Qt::LeftButton, modifiers, List().RowRect(row).center());
    }
    static void Click(TPngButton* button) { QTest::mouseClick(button, Qt::LeftButton); }
    TAnchorEditor& Anchors() { return *Control->GetAnchorsEditor(); }
    void Choose(const QString& kind) {
        for (QAction* action : Control->GetAddMenu()->actions())
            if (action->text() == kind)
                return action->trigger();
        ADD_FAILURE() << kind.toStdString();
    }

    tests::TScriptedMsgBox Messages;
    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    std::unique_ptr<TObjectMapLayer> Layer = std::make_unique<TObjectMapLayer>(Manager, false);
    std::unique_ptr<TObjectLayerLegendControl> Control{TObjectLayerLegendControl::CreateComp(nullptr, Layer.get())};
};

// ---- What stands where

TEST_F(ObjectLayerLegendControl, HasThreeButtonsAboveAList) {
    const std::pair<TPngButton*, QStringList> buttons[] = {
        {Control->GetAddButton(), {"MapWindowFactory.AddLayer", "Add Object"}},
        {Control->GetDelButton(), {"MapWindowFactory.DeleteLayer", "Delete Object"}},
        {Control->GetEditButton(), {"MapWindowFactory.Edit", "Edit Object"}},
    };
    int right = 0;
    for (const auto& [button, texts] : buttons) {
        EXPECT_EQ(button->GetImageName(), texts[0]);
        EXPECT_EQ(button->toolTip(), texts[1]);
        EXPECT_EQ(button->accessibleName(), texts[1]);
        EXPECT_GT(button->x(), right);
        right = button->geometry().right();
    }
    EXPECT_EQ(List().model()->columnCount(), 1);
    EXPECT_EQ(List().model()->headerData(0, Qt::Horizontal).toString(), "Object");
    EXPECT_EQ(List().editTriggers(), QAbstractItemView::NoEditTriggers);
    EXPECT_EQ(List().accessibleName(), "Objects");
    EXPECT_EQ(Control->GetSuggestedHeight(), 100);
    EXPECT_TRUE(Control->objectName().startsWith("TObjectLayerLegendControl_"));
}

TEST_F(ObjectLayerLegendControl, HasItsAnchorsOnTheRight) {
    AddText("a");
    Select(0);
    QCoreApplication::processEvents();
    const QWidget* panel = Control->GetAnchorsPanel();
    EXPECT_EQ(panel->mapTo(Control.get(), QPoint(0, 0)), QPoint(200, 28));
    EXPECT_EQ(panel->size(), QSize(100, 172));
    EXPECT_EQ(Anchors().geometry(), QRect(0, 0, 100, 100));
    EXPECT_EQ(List().mapTo(Control.get(), QPoint(0, 0)), QPoint(0, 28));
    EXPECT_EQ(List().size(), QSize(200, 172));
}

TEST_F(ObjectLayerLegendControl, IsUsableAtTheHeightThatItSuggests) {
    AddText("a");
    Select(0);
    Control->resize(240, Control->GetSuggestedHeight());
    QCoreApplication::processEvents();
    EXPECT_EQ(Control->height(), 100);
    EXPECT_EQ(Anchors().geometry(), QRect(0, 0, 100, 72));
    EXPECT_GT(List().RowRect(0).height(), 0);
    EXPECT_TRUE(List().viewport()->rect().contains(List().RowRect(0).center()));
}

TEST_F(ObjectLayerLegendControl, IsReadAndOperatedAtEveryFontSize) {
    AddText("a");
    tests::CheckForm([this] {
        std::unique_ptr<TObjectLayerLegendControl> control(TObjectLayerLegendControl::CreateComp(nullptr, Layer.get()));
        control->GetLayerList()->SelectRow(0);
        return control;
    });
}

TEST_F(ObjectLayerLegendControl, OffersFiveKinds) {
    QStringList kinds;
    for (const QAction* action : Control->GetAddMenu()->actions())
        kinds.append(action->text());
    EXPECT_EQ(kinds, (QStringList{"Compass rose", "Text box", "Legend", "Shape key", "Rectangle"}));
}

TEST_F(ObjectLayerLegendControl, OpensItsMenuBelowTheButton) {
    Click(Control->GetAddButton());
    const QMenu* menu = Control->GetAddMenu();
    ASSERT_TRUE(menu->isVisible());
    EXPECT_EQ(menu->pos(), Control->GetAddButton()->mapToGlobal(QPoint(0, 24)));
    QTest::keyClick(Control->GetAddMenu(), Qt::Key_Escape);
    EXPECT_FALSE(menu->isVisible());
    EXPECT_EQ(Layer->GetObjects().Count(), 0);
}

TEST_F(ObjectLayerLegendControl, IsMadeByTheLayerThatWantsIt) {
    const TObjectMapLayer layer(Manager, true);
    const auto* control = dynamic_cast<TObjectLayerLegendControl*>(layer.GetLegendComponent());
    ASSERT_NE(control, nullptr);
    EXPECT_EQ(control->GetLayer(), &layer);
    EXPECT_EQ(Layer->GetLegendComponent(), nullptr);
}

// ---- The list in step with the layer

TEST_F(ObjectLayerLegendControl, ListsWhatStandsOnTheLayer) {
    EXPECT_EQ(Rows(), QStringList());
    AddText("title");
    auto* rectangle = Add<TRectangleObjectTypeItem>();
    Add<TCompassRoseObjectLayerItem>();
    Add<TShapeLegendObjectLayerItem>();
    EXPECT_EQ(Rows(), (QStringList{"Text: title", "Rectangle", "Compass rose", "Shape key"}));
    Layer->GetObjects().Insert(1, std::make_unique<TShapeLegendObjectLayerItem>(Layer.get()));
    EXPECT_EQ(Rows(), (QStringList{"Text: title", "Shape key", "Rectangle", "Compass rose", "Shape key"}));
    Layer->GetObjects().Remove(rectangle);
    EXPECT_EQ(Rows(), (QStringList{"Text: title", "Shape key", "Compass rose", "Shape key"}));
    const auto taken = Layer->GetObjects().Extract(Layer->GetObjects()[0]);
    EXPECT_EQ(Rows(), (QStringList{"Shape key", "Compass rose", "Shape key"}));
    Layer->GetObjects().Clear();
    EXPECT_EQ(Rows(), QStringList());
}

TEST_F(ObjectLayerLegendControl, FollowsAnOrderThatNobodyToldItOf) {
    AddText("a");
    AddText("b");
    Layer->GetObjects().Move(1, 0);
    AddText("c");
    EXPECT_EQ(Rows(), (QStringList{"Text: b", "Text: a", "Text: c"}));
    Layer->GetObjects().Move(0, 2);
    Layer->GetObjects().Remove(Layer->GetObjects()[0]);
    EXPECT_EQ(Rows(), (QStringList{"Text: c", "Text: b"}));
}

TEST_F(ObjectLayerLegendControl, FollowsChangesWithinChanges) {
    int left = 2;
    Layer->GetObjects().Clear();
    Control->SetLayer(nullptr);
    const TSubscription subscription = Layer->GetOnObjectAdded().Add([&](TObjectMapLayer*, TBaseObjectLayerItem* item) {
        if (left-- > 0)
            Add<TRectangleObjectTypeItem>();
        else
            Layer->GetObjects().Remove(item);
    });
    Control->SetLayer(Layer.get()); // told behind that subscriber
    AddText("a");
    EXPECT_EQ(Rows(), (QStringList{"Text: a", "Rectangle"}));
    EXPECT_EQ(Layer->GetObjects().Count(), 2);
}

TEST_F(ObjectLayerLegendControl, ShowsTheTextThatABoxHasNow) {
    TTextBoxObjectLayerItem* item = AddText("a");
    Select(0);
    const QImage before = tests::PictureOf(List());
    item->SetText("another");
    EXPECT_EQ(Rows(), QStringList{"Text: another"});
    QCoreApplication::processEvents();
    EXPECT_NE(tests::PictureOf(List()), before);
}

TEST_F(ObjectLayerLegendControl, ListsAnotherLayer) {
    AddText("a");
    TObjectMapLayer other(Manager, false);
    other.GetObjects().Add(std::make_unique<TRectangleObjectTypeItem>(&other));
    Control->SetLayer(&other);
    EXPECT_EQ(Rows(), QStringList{"Rectangle"});
    AddText("b");
    Layer->SetSelectedObject(Layer->GetObjects()[0]);
    EXPECT_EQ(Rows(), QStringList{"Rectangle"}) << "the old layer is not heard any more";
    EXPECT_FALSE(List().HasSelection());
    Control->SetLayer(nullptr);
    EXPECT_EQ(Rows(), QStringList());
    EXPECT_FALSE(Control->GetAddButton()->isEnabled());
    Control->SetLayer(Layer.get());
    EXPECT_EQ(Rows(), (QStringList{"Text: a", "Text: b"}));
    EXPECT_EQ(Layer->GetOnObjectAdded().Count(), 1);
    Control->SetLayer(Layer.get());
    EXPECT_EQ(Layer->GetOnObjectAdded().Count(), 1) << "the same layer again does nothing";
}

TEST_F(ObjectLayerLegendControl, SelectsOnTheMapWhatIsSelectedInTheList) {
    TBaseObjectLayerItem* a = AddText("a");
    TBaseObjectLayerItem* b = AddText("b");
    Select(1);
    EXPECT_EQ(Layer->GetSelectedObject(), b);
    EXPECT_EQ(Control->GetSelectedObjectItem(), b);
    QTest::keyClick(&List(), Qt::Key_Up);
    EXPECT_EQ(Layer->GetSelectedObject(), a);
    EXPECT_FALSE(b->GetIsSelected());
}

TEST_F(ObjectLayerLegendControl, SelectsInTheListWhatIsSelectedOnTheMap) {
    AddText("a");
    TBaseObjectLayerItem* b = AddText("b");
    b->SetLocked(true);
    Layer->SetSelectedObject(b);
    EXPECT_EQ(Control->GetSelectedObjectItem(), b);
    EXPECT_TRUE(Anchors().isVisible());
    Layer->SetSelectedObject(nullptr);
    EXPECT_EQ(Control->GetSelectedObjectItem(), b) << "nobody tells of that";
}

TEST_F(ObjectLayerLegendControl, LeavesARowSelectedThatIsSelectedAlready) {
    TBaseObjectLayerItem* a = AddText("a");
    AddText("b");
    Select(0);
    Select(1, Qt::ControlModifier);
    a->SetIsSelected(false);
    Layer->SetSelectedObject(a);
    EXPECT_EQ(List().GetSelectedRows(), (std::vector{0, 1}));
}

TEST_F(ObjectLayerLegendControl, KeepsTheSelectionWhileOthersComeAndGo) {
    TBaseObjectLayerItem* a = AddText("a");
    TBaseObjectLayerItem* b = AddText("b");
    Select(1);
    AddText("c");
    EXPECT_EQ(Control->GetSelectedObjectItem(), b);
    Layer->GetObjects().Remove(a);
    EXPECT_EQ(Control->GetSelectedObjectItem(), b);
    Layer->GetObjects().Move(0, 1);
    AddText("d");
    EXPECT_EQ(Control->GetSelectedObjectItem(), b);
    EXPECT_TRUE(Anchors().isVisible());
}

// ---- Adding and deleting

TEST_F(ObjectLayerLegendControl, AddsWhatNeedsNoDialog) {
    Choose("Compass rose");
    Choose("Shape key");
    Choose("Rectangle");
    EXPECT_EQ(Rows(), (QStringList{"Compass rose", "Shape key", "Rectangle"}));
    EXPECT_EQ(Layer->GetObjects()[0]->GetRect(), TRect(0, 0, 256, 256));
    EXPECT_EQ(Layer->GetObjects()[2]->GetRect(), TRect(0, 0, 100, 100));
    EXPECT_EQ(Layer->GetObjects()[2]->GetLayer(), Layer.get());
}

TEST_F(ObjectLayerLegendControl, AddsByTheKeyboardAlone) {
    List().setFocus();
    QTest::keyClick(&List(), Qt::Key_Insert);
    ASSERT_TRUE(Control->GetAddMenu()->isVisible());
    QTest::keyClick(Control->GetAddMenu(), Qt::Key_Up);
    QTest::keyClick(Control->GetAddMenu(), Qt::Key_Return);
    EXPECT_EQ(Rows(), QStringList{"Rectangle"});
}

TEST_F(ObjectLayerLegendControl, DeletesTheSelectedObject) {
    AddText("a");
    AddText("b");
    AddText("c");
    Select(1);
    Click(Control->GetDelButton());
    EXPECT_EQ(Rows(), (QStringList{"Text: a", "Text: c"}));
    EXPECT_FALSE(List().HasSelection());
    EXPECT_FALSE(Anchors().isVisible());
    EXPECT_FALSE(Control->GetDelButton()->isEnabled());
    Select(1);
    QTest::keyClick(&List(), Qt::Key_Delete);
    EXPECT_EQ(Rows(), QStringList{"Text: a"});
}

TEST_F(ObjectLayerLegendControl, DoesNothingWithTwoRowsSelected) {
    AddText("a");
    AddText("b");
    Select(0);
    Select(1, Qt::ControlModifier);
    EXPECT_EQ(List().GetSelectedRows(), (std::vector{0, 1}));
    EXPECT_EQ(Control->GetSelectedObjectItem(), nullptr);
    EXPECT_FALSE(Anchors().isVisible());
    EXPECT_FALSE(Control->GetDelButton()->isEnabled());
    EXPECT_FALSE(Control->GetEditButton()->isEnabled());
    QTest::keyClick(&List(), Qt::Key_Delete);
    Control->DelButton_OnClick();
    Control->EditButton_OnClick();
    EXPECT_EQ(Rows(), (QStringList{"Text: a", "Text: b"}));
    Select(1, Qt::ControlModifier); // back to one
    EXPECT_TRUE(Anchors().isVisible());
    EXPECT_TRUE(Control->GetDelButton()->isEnabled());
}

TEST_F(ObjectLayerLegendControl, DoesNothingWithoutASelection) {
    AddText("a");
    Control->DelButton_OnClick();
    Control->EditButton_OnClick();
    EXPECT_EQ(Rows(), QStringList{"Text: a"});
    EXPECT_TRUE(Control->GetAddButton()->isEnabled());
    EXPECT_FALSE(Control->GetDelButton()->isEnabled());
    EXPECT_FALSE(Control->GetEditButton()->isEnabled());
}

TEST_F(ObjectLayerLegendControl, HasNothingToEditInAShapeKey) {
    Add<TShapeLegendObjectLayerItem>();
    Select(0);
    EXPECT_TRUE(Control->GetDelButton()->isEnabled());
    EXPECT_FALSE(Control->GetEditButton()->isEnabled());
    Control->EditButton_OnClick();
    QTest::mouseDClick(List().viewport(), Qt::LeftButton, {}, List().RowRect(0).center());
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(ObjectLayerLegendControl, EditsByADoubleClickAndByEnter) {
    AddText("a");
    const auto edit = [](const QString& letter) {
        return [letter](TTextObjectDialog& dialog) {
            dialog.SetText(dialog.GetText() + letter);
            dialog.SetFontName(dialog.GetFontName()); // one that there is
            QTest::keyClick(dialog.findChild<QWidget*>("btnOK"), Qt::Key_Return);
        };
    };
    Select(0);
    {
        const tests::TModalAnswer<TTextObjectDialog> answer(edit("b"));
        QTest::mouseDClick(List().viewport(), Qt::LeftButton, {}, List().RowRect(0).center());
    }
    {
        const tests::TModalAnswer<TTextObjectDialog> answer(edit("c"));
        QTest::keyClick(&List(), Qt::Key_Return);
    }
    {
        const tests::TModalAnswer<TTextObjectDialog> answer(edit("d"));
        Click(Control->GetEditButton());
    }
    EXPECT_EQ(Rows(), QStringList{"Text: abcd"});
}

// ---- The anchors

TEST_F(ObjectLayerLegendControl, ShowsTheAnchorsOfTheSelectedObject) {
    EXPECT_FALSE(Anchors().isVisible());
    AddText("a");
    AddText("b")->SetAnchors({akRight, akBottom});
    EXPECT_FALSE(Anchors().isVisible());
    Select(0);
    EXPECT_TRUE(Anchors().isVisible());
    EXPECT_EQ(Anchors().GetAnchors(), (TAnchors{akLeft, akTop}));
    Select(1);
    EXPECT_EQ(Anchors().GetAnchors(), (TAnchors{akRight, akBottom}));
    Select(1, Qt::ControlModifier);
    EXPECT_FALSE(List().HasSelection());
    EXPECT_FALSE(Anchors().isVisible());
}

TEST_F(ObjectLayerLegendControl, SetsTheAnchorsWithoutMeasuring) {
    TBaseObjectLayerItem* item = AddText("a");
    Layer->SetPrevViewSize({400, 300});
    const TAnchorData measured = item->GetAnchorData();
    Select(0);
    QCoreApplication::processEvents();
    QTest::mouseClick(Anchors().GetEdge(akRight), Qt::LeftButton);
    EXPECT_EQ(item->GetAnchors(), (TAnchors{akLeft, akTop, akRight}));
    QTest::mouseClick(Anchors().GetEdge(akLeft), Qt::LeftButton);
    EXPECT_EQ(item->GetAnchors(), (TAnchors{akTop, akRight}));
    EXPECT_EQ(item->GetAnchorData(), measured);
    EXPECT_EQ(measured.Right, -120) << "of the view of no size in which it was made";
}

TEST_F(ObjectLayerLegendControl, LeadsTheTabKeyThroughTheAnchors) {
    AddText("a");
    Select(0);
    QTest::keyClick(&List(), Qt::Key_Tab);
    EXPECT_TRUE(Anchors().GetEdge(akLeft)->hasFocus());
    QTest::keyClick(Anchors().GetEdge(akLeft), Qt::Key_Space);
    EXPECT_EQ(Layer->GetObjects()[0]->GetAnchors(), TAnchors{akTop});
}

// ---- What goes meanwhile

TEST_F(ObjectLayerLegendControl, OutlivesItsLayer) {
    AddText("a");
    Select(0);
    Layer.reset();
    EXPECT_EQ(Control->GetLayer(), nullptr);
    EXPECT_EQ(Rows(), QStringList());
    EXPECT_FALSE(Anchors().isVisible());
    Control->AddButton_OnClick();
    EXPECT_FALSE(Control->GetAddMenu()->isVisible());
    Choose("Rectangle");
    Choose("Text box");
    Control->DelButton_OnClick();
    Control->EditButton_OnClick();
    Control->SetLayer(nullptr);
    Layer = std::make_unique<TObjectMapLayer>(Manager, false);
    Control->SetLayer(Layer.get());
    Choose("Rectangle");
    EXPECT_EQ(Rows(), QStringList{"Rectangle"});
}

TEST_F(ObjectLayerLegendControl, GoesBeforeItsLayer) {
    AddText("a");
    Select(0);
    Control.reset();
    AddText("b");
    Layer->SetSelectedObject(Layer->GetObjects()[1]);
    EXPECT_EQ(Layer->GetOnObjectAdded().Count(), 0);
}

TEST_F(ObjectLayerLegendControl, MayGoWhenASelectionIsTold) {
    AddText("a");
    const TSubscription subscription =
        Layer->GetOnObjectSelected().Add([this](TObjectMapLayer*, TBaseObjectLayerItem*) { Control.reset(); });
    List().SelectRow(0);
    EXPECT_EQ(Control, nullptr);
}

TEST_F(ObjectLayerLegendControl, MayGoWhenADeletionIsTold) {
    AddText("a");
    Select(0);
    const TSubscription subscription =
        Layer->GetOnObjectRemoved().Add([this](TObjectMapLayer*, TBaseObjectLayerItem*) { Control.reset(); });
    Control->GetDelButton()->click();
    EXPECT_EQ(Control, nullptr);
    EXPECT_EQ(Layer->GetObjects().Count(), 0);
}

// A subscriber before this one ends the layer in the middle of a removal, of which nobody hears then.
TEST_F(ObjectLayerLegendControl, OutlivesALayerThatGoesInItsOwnEvent) {
    Control->SetLayer(nullptr);
    const TSubscription subscription = Layer->GetOnObjectRemoved().Add([this](TObjectMapLayer*, TBaseObjectLayerItem*) {
        const std::unique_ptr<TObjectMapLayer> last = std::move(Layer);
    });
    Control->SetLayer(Layer.get());
    AddText("a");
    AddText("b");
    Select(0);
    Control->DelButton_OnClick();
    EXPECT_EQ(Layer, nullptr);
    EXPECT_EQ(Control->GetSelectedObjectItem(), nullptr);
    tests::PictureOf(*Control);
    Control->EditButton_OnClick();
    Control->DelButton_OnClick();
}

} // namespace
} // namespace lmx
