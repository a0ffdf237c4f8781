#include <lmx/Controls/lmxMapViewRulersPanelControl.h>
#include <lmx/Controls/lmxRulerListView.h>
#include <lmx/Dialogs/lmxRulerDialog.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxRulerMapLayer.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <lmx/Widgets/lmxPngButton.h>
#include <lmx/Widgets/lmxToggleButtonBar.h>
#include <tests/Graphics/Pictures.h>
#include <tests/Support/DialogChecks.h>
#include <tests/Support/ModalAnswer.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/ShownView.h>
#include <tests/Support/TestMap.h>
#include <tests/Support/WidgetPictures.h>

#include <QAction>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

namespace lmx {
namespace {

using TRulerAnswer = tests::TModalAnswer<TRulerDialog>;

constexpr auto Vertical = TRulerOrientation::roVertical;
constexpr auto Horizontal = TRulerOrientation::roHorizontal;
constexpr TColor32 Cyan = 0xFF00FFFF;
constexpr TColor32 Orange = 0xFFFF8000;

QLineEdit* Location(TRulerDialog& dialog) {
    return dialog.findChild<QLineEdit*>("edLocation");
}
QRadioButton* Radio(TRulerDialog& dialog, const char* name) {
    return dialog.findChild<QRadioButton*>(QString::fromLatin1(name));
}
/// Types a location over the present one and presses Enter.
void Confirm(TRulerDialog& dialog, const QString& location) {
    Location(dialog)->selectAll();
    QTest::keyClicks(Location(dialog), location);
    QTest::keyClick(Location(dialog), Qt::Key_Return);
}
void Cancel(TRulerDialog& dialog) {
    QTest::keyClick(&dialog, Qt::Key_Escape);
}

/// A panel on a layer, shown, with the keyboard.
struct MapViewRulersPanelControl : testing::Test {
    MapViewRulersPanelControl() {
        Panel->SetRulersLayer(Layer.get());
        tests::ShowActive(*Panel);
    }
    ~MapViewRulersPanelControl() override {
        QCoreApplication::processEvents(); // boxes that were not asked for would come up now
    }

    TRulerItem* AddRuler(TRulerOrientation orientation, extended location, TColor32 color = Orange) {
        auto item = std::make_unique<TRulerItem>(orientation, location, color);
        TRulerItem* added = item.get();
        Layer->Add(std::move(item));
        return added;
    }
    TRulerListView& List(TMapViewRulersPanelControl& panel) { return *panel.GetListView(); }
    TRulerListView& List() { return List(*Panel); }
    std::vector<TRulerItem*> Rulers(TMapViewRulersPanelControl& panel) {
        std::vector<TRulerItem*> rulers;
        for (int row = 0; row < List(panel).GetRowCount(); ++row)
            rulers.push_back(List(panel).GetRuler(row));
        return rulers;
    }
    std::vector<TRulerItem*> Rulers() { return Rulers(*Panel); }
    void Select(int row) { QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, List().RowRect(row).center()); }
    static void Click(TPngButton* button) { QTest::mouseClick(button, Qt::LeftButton); }
    int Invalidations() const { return InvalidationCount; }

    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    std::unique_ptr<TRulerMapLayer> Layer = std::make_unique<TRulerMapLayer>(Manager);
    int InvalidationCount = 0;
    TSubscription Subscription = Layer->GetOnInvalidated().Add([this](TBaseMapLayer*) { ++InvalidationCount; });
    tests::TScriptedMsgBox Messages;
    std::unique_ptr<TMapViewRulersPanelControl> Panel = std::make_unique<TMapViewRulersPanelControl>();
};

TEST_F(MapViewRulersPanelControl, HasThreeButtonsAboveAList) {
    const std::pair<TPngButton*, QStringList> buttons[] = {
        {Panel->GetAddButton(), {"MapWindowFactory.AddLayer", "Add ruler"}},
        {Panel->GetDelButton(), {"MapWindowFactory.DeleteLayer", "Delete ruler"}},
        {Panel->GetEditButton(), {"MapWindowFactory.Edit", "Edit ruler"}},
    };
    int right = 0;
    for (const auto& [button, texts] : buttons) {
        EXPECT_EQ(button->GetImageName(), texts[0]);
        EXPECT_EQ(button->toolTip(), texts[1]);
        EXPECT_EQ(button->accessibleName(), texts[1]);
        EXPECT_EQ(button->size(), QSize(24, 24));
        EXPECT_EQ(button->parentWidget(), Panel->GetButtonBar());
        EXPECT_GT(button->x(), right);
        right = button->geometry().right();
    }
    EXPECT_EQ(Panel->GetButtonBar()->pos(), QPoint(0, 0));
    EXPECT_EQ(Panel->GetButtonBar()->width(), Panel->width());
    EXPECT_EQ(List().geometry(), QRect(0, 28, Panel->width(), Panel->height() - 28));
    EXPECT_EQ(List().accessibleName(), "Rulers");
}

TEST_F(MapViewRulersPanelControl, ListsTheHorizontalRulersFirst) {
    TRulerItem* vertical = AddRuler(Vertical, 1);
    TRulerItem* horizontal = AddRuler(Horizontal, 2);
    TRulerItem* last = AddRuler(Vertical, 3);
    EXPECT_EQ(Rulers(), (std::vector{vertical, horizontal, last})) << "those that come later stand at the end";
    Panel->SetRulersLayer(nullptr);
    EXPECT_TRUE(Rulers().empty());
    Panel->SetRulersLayer(Layer.get());
    EXPECT_EQ(Rulers(), (std::vector{horizontal, vertical, last}));
}

TEST_F(MapViewRulersPanelControl, LeavesItsListAloneForTheSameLayer) {
    AddRuler(Vertical, 1);
    AddRuler(Horizontal, 2);
    const auto before = Rulers();
    Panel->SetRulersLayer(Layer.get());
    EXPECT_EQ(Rulers(), before);
    EXPECT_EQ(Layer->GetOnRulerAdded().Count(), 1);
    EXPECT_EQ(Layer->GetOnRulerRemoved().Count(), 1);
}

TEST_F(MapViewRulersPanelControl, HearsOnlyOfItsLayer) {
    TRulerMapLayer other(Manager);
    Panel->SetRulersLayer(&other);
    EXPECT_EQ(Panel->GetRulersLayer(), &other);
    AddRuler(Vertical, 1);
    EXPECT_TRUE(Rulers().empty());
    EXPECT_EQ(Layer->GetOnRulerAdded().Count(), 0);
    EXPECT_EQ(Layer->GetOnRulerRemoved().Count(), 0);
    Panel->SetRulersLayer(nullptr);
    EXPECT_EQ(other.GetOnRulerAdded().Count(), 0);
}

TEST_F(MapViewRulersPanelControl, TakesNoNoticeOfARulerThatIsNone) {
    Layer->GetOnRulerAdded().Send(Layer.get(), nullptr);
    Layer->GetOnRulerRemoved().Send(Layer.get(), nullptr);
    EXPECT_TRUE(Rulers().empty());
}

TEST_F(MapViewRulersPanelControl, FollowsWhatTheLayerDeletes) {
    TRulerItem* first = AddRuler(Vertical, 1);
    TRulerItem* second = AddRuler(Vertical, 2);
    Layer->Delete(first);
    EXPECT_EQ(Rulers(), std::vector{second});
    Layer->GetVRulers().Clear();
    EXPECT_TRUE(Rulers().empty());
}

TEST_F(MapViewRulersPanelControl, SharesItsLayerWithOtherPanels) {
    TMapViewRulersPanelControl other;
    other.SetRulersLayer(Layer.get());
    TRulerItem* ruler = AddRuler(Horizontal, 5);
    EXPECT_EQ(Rulers(), std::vector{ruler});
    EXPECT_EQ(Rulers(other), std::vector{ruler});
    Select(0);
    Click(Panel->GetDelButton());
    EXPECT_TRUE(Rulers(other).empty());
    other.SetRulersLayer(nullptr);
}

TEST_F(MapViewRulersPanelControl, AddsTheRulerOfTheDialog) {
    const tests::TScriptedColorChooser chooser;
    chooser->Answers = {Orange};
    const TRulerAnswer answer([](TRulerDialog& dialog) {
        QTest::mouseClick(Radio(dialog, "rbHorizontal"), Qt::LeftButton, {}, {5, 5});
        QTest::mouseClick(dialog.findChild<QAbstractButton*>("shpColor"), Qt::LeftButton);
        Confirm(dialog, QStringLiteral("174"));
    });
    Click(Panel->GetAddButton());
    ASSERT_EQ(Layer->GetHRulers().Count(), 1);
    const TRulerItem* ruler = Layer->GetHRulers()[0];
    EXPECT_EQ(ruler->GetLocation(), 174.0L);
    EXPECT_EQ(ruler->GetOrientation(), Horizontal);
    EXPECT_EQ(ruler->GetColor(), Orange);
    EXPECT_EQ(Rulers().size(), 1U);
    EXPECT_FALSE(Panel->findChild<TRulerDialog*>()) << "the dialog is gone";
}

TEST_F(MapViewRulersPanelControl, AddsNothingAfterACancel) {
    const TRulerAnswer answer(Cancel);
    Click(Panel->GetAddButton());
    EXPECT_TRUE(Rulers().empty());
    EXPECT_FALSE(Panel->findChild<TRulerDialog*>());
}

TEST_F(MapViewRulersPanelControl, ShowsABadLocationAsAnErrorAndAddsNothing) {
    const TRulerAnswer answer([](TRulerDialog& dialog) { Confirm(dialog, QStringLiteral("east")); });
    Click(Panel->GetAddButton());
    QCoreApplication::processEvents();
    ASSERT_EQ(Messages->Shown.size(), 1U);
    EXPECT_EQ(Messages->Shown[0].Text, "'east' is not a valid floating point value");
    EXPECT_TRUE(Rulers().empty());
    EXPECT_FALSE(Panel->findChild<TRulerDialog*>());
}

TEST_F(MapViewRulersPanelControl, RaisesABadLocationInItsCaller) {
    const TRulerAnswer answer([](TRulerDialog& dialog) { Confirm(dialog, QStringLiteral("east")); });
    EXPECT_EQ(tests::MessageOf<EConvertError>([this] { Panel->AddButton_Click(); }),
              "'east' is not a valid floating point value");
}

TEST_F(MapViewRulersPanelControl, DeletesTheSelectedRuler) {
    AddRuler(Vertical, 1);
    TRulerItem* second = AddRuler(Vertical, 2);
    Select(0);
    const int before = Invalidations();
    Click(Panel->GetDelButton());
    EXPECT_EQ(Rulers(), std::vector{second});
    EXPECT_EQ(Layer->GetVRulers().Count(), 1);
    EXPECT_EQ(Invalidations() - before, 2) << "the list's own repaint and the panel's";
}

TEST_F(MapViewRulersPanelControl, DeletesAndEditsNothingWithoutASelection) {
    TRulerItem* ruler = AddRuler(Vertical, 1);
    Click(Panel->GetDelButton());
    Click(Panel->GetEditButton());
    Panel->DelButton_Click();
    Panel->EditButton_Click();
    EXPECT_EQ(Rulers(), std::vector{ruler});
    EXPECT_FALSE(Panel->GetDelButton()->isEnabled());
    EXPECT_FALSE(Panel->GetEditButton()->isEnabled());
    Select(0);
    EXPECT_TRUE(Panel->GetDelButton()->isEnabled());
    EXPECT_TRUE(Panel->GetEditButton()->isEnabled());
}

TEST_F(MapViewRulersPanelControl, EditsTheSelectedRuler) {
    TRulerItem* ruler = AddRuler(Vertical, -41.2866L, 0x80FF8000);
    Select(0);
    const int before = Invalidations();
    const TRulerAnswer answer([](TRulerDialog& dialog) {
        QString shown = QStringLiteral("-41.287");
        EXPECT_EQ(Location(dialog)->text(), shown.replace(u'.', TFormatSettings::Current().DecimalSeparator));
        EXPECT_TRUE(Radio(dialog, "rbVertical")->isChecked());
        EXPECT_EQ(dialog.GetRulerColor(), Orange);
        Confirm(dialog, QStringLiteral("-36"));
    });
    Click(Panel->GetEditButton());
    EXPECT_EQ(ruler->GetLocation(), -36.0L);
    EXPECT_EQ(ruler->GetColor(), Orange) << "opaque now, though nobody touched the colour";
    EXPECT_EQ(Invalidations() - before, 1);
    EXPECT_EQ(Rulers(), std::vector{ruler});
}

TEST_F(MapViewRulersPanelControl, KeepsSingleUnitsInThePrecisionOfTheDialogOnly) {
    TRulerItem* ruler = AddRuler(Horizontal, 16777217); // one beyond what single precision tells apart
    Select(0);
    const TRulerAnswer answer([](TRulerDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Return); });
    Click(Panel->GetEditButton());
    EXPECT_EQ(ruler->GetLocation(), 16777216.0L);
}

TEST_F(MapViewRulersPanelControl, LeavesARulerAloneAfterACancelOrABadLocation) {
    TRulerItem* ruler = AddRuler(Vertical, 1.23456789L, 0x80FF8000);
    Select(0);
    {
        const TRulerAnswer answer(Cancel);
        Click(Panel->GetEditButton());
    }
    {
        const TRulerAnswer answer([](TRulerDialog& dialog) {
            Radio(dialog, "rbHorizontal")->click();
            Confirm(dialog, QStringLiteral("?"));
        });
        Click(Panel->GetEditButton());
    }
    QCoreApplication::processEvents();
    ASSERT_EQ(Messages->Shown.size(), 1U);
    EXPECT_EQ(Messages->Shown[0].Text, "'?' is not a valid floating point value");
    EXPECT_EQ(ruler->GetLocation(), 1.23456789L);
    EXPECT_EQ(ruler->GetColor(), 0x80FF8000U);
    EXPECT_EQ(ruler->GetOrientation(), Vertical);
}

TEST_F(MapViewRulersPanelControl, TurnsARulerInItsListAndNotOnTheMap) {
    TRulerItem* ruler = AddRuler(Vertical, 89, Orange);
    const auto drawn = [&] {
        tests::TTestMap map(4, 3);
        Layer->Paint(&map.World, &map.Viewport, map.Bitmap);
        return tests::Show(map.Bitmap, {{clWhite32, '.'}, {Orange, 'o'}});
    };
    const auto pixelOfGlyph = [&] { // near the left edge of the type's cell: drawn only if the line runs across
        const QRect cell = List().visualRect(List().model()->index(0, 1));
        const QPoint at = QPoint(cell.left() + 3, cell.top() + cell.height() / 2) * Panel->devicePixelRatioF();
        return tests::PictureOf(*List().viewport()).pixel(at);
    };
    Select(0);
    const QRgb line = pixelOfGlyph();
    const TRulerAnswer answer([](TRulerDialog& dialog) {
        Radio(dialog, "rbHorizontal")->click();
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    Click(Panel->GetEditButton());
    EXPECT_EQ(ruler->GetOrientation(), Horizontal);
    EXPECT_NE(pixelOfGlyph(), line);
    EXPECT_EQ(Layer->GetVRulers().IndexOf(ruler), 0) << "it stays in the list where it was";
    EXPECT_EQ(Layer->GetHRulers().Count(), 0);
    EXPECT_EQ(drawn(), (tests::TPicture{"....", "oooo", "...."}));
}

TEST_F(MapViewRulersPanelControl, IsOperatedByTheKeyboardAlone) {
    {
        Panel->setFocus();
        EXPECT_TRUE(List().hasFocus());
        const TRulerAnswer answer([](TRulerDialog& dialog) { Confirm(dialog, QStringLiteral("7")); });
        QTest::keyClick(&List(), Qt::Key_Insert);
    }
    ASSERT_EQ(Layer->GetVRulers().Count(), 1);
    List().SelectRow(0);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_F2}) {
        const TRulerAnswer answer([key](TRulerDialog& dialog) { Confirm(dialog, QString::number(key % 9)); });
        QTest::keyClick(&List(), key);
        EXPECT_EQ(Layer->GetVRulers()[0]->GetLocation(), key % 9);
    }
    QTest::keyClick(&List(), Qt::Key_Delete);
    EXPECT_EQ(Layer->GetVRulers().Count(), 0);
}

TEST_F(MapViewRulersPanelControl, LeadsTheTabKeyThroughItsButtonsToItsList) {
    AddRuler(Vertical, 1);
    Select(0);
    Panel->GetAddButton()->setFocus();
    for (QWidget* next : {static_cast<QWidget*>(Panel->GetDelButton()), static_cast<QWidget*>(Panel->GetEditButton()),
                          static_cast<QWidget*>(&List())}) {
        QTest::keyClick(Panel->window()->focusWidget(), Qt::Key_Tab);
        EXPECT_TRUE(next->hasFocus()) << next->accessibleName().toStdString();
    }
    const TRulerAnswer answer(Cancel);
    Panel->GetEditButton()->setFocus();
    QTest::keyClick(Panel->GetEditButton(), Qt::Key_Space);
}

TEST_F(MapViewRulersPanelControl, KeepsItsKeysToItsList) {
    AddRuler(Vertical, 1);
    Select(0);
    Panel->GetAddButton()->setFocus();
    QTest::keyClick(Panel->GetAddButton(), Qt::Key_Delete);
    EXPECT_EQ(Layer->GetVRulers().Count(), 1);
}

TEST_F(MapViewRulersPanelControl, TakesItsKeysBeforeTheHostDoes) {
    AddRuler(Vertical, 1);
    Select(0);
    QAction command(Panel.get());
    command.setShortcut(Qt::Key_Delete);
    int commands = 0;
    QObject::connect(&command, &QAction::triggered, [&] { ++commands; });
    Panel->addAction(&command);
    QTest::keyClick(&List(), Qt::Key_Delete, Qt::ControlModifier);
    EXPECT_EQ(Layer->GetVRulers().Count(), 1) << "another key";
    QTest::keyClick(&List(), Qt::Key_Delete);
    EXPECT_EQ(Layer->GetVRulers().Count(), 0);
    EXPECT_EQ(commands, 0);
    ASSERT_FALSE(Panel->GetDelButton()->isEnabled());
    QTest::keyClick(&List(), Qt::Key_Delete);
    EXPECT_EQ(commands, 1) << "it means nothing in the list now";
}

TEST_F(MapViewRulersPanelControl, TakesAHeldKeyOnce) {
    AddRuler(Vertical, 1);
    AddRuler(Vertical, 2);
    Select(0);
    const auto press = [this](bool isRepeated) {
        QKeyEvent event(QEvent::KeyPress, Qt::Key_Delete, Qt::NoModifier, QString(), isRepeated);
        QCoreApplication::sendEvent(&List(), &event);
    };
    press(false);
    List().SelectRow(0);
    press(true);
    EXPECT_EQ(Layer->GetVRulers().Count(), 1);
}

TEST_F(MapViewRulersPanelControl, EditsAtADoubleClick) {
    TRulerItem* ruler = AddRuler(Vertical, 1);
    const TRulerAnswer answer([](TRulerDialog& dialog) { Confirm(dialog, QStringLiteral("2")); });
    const QPoint place = List().RowRect(0).center();
    QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, place);
    QTest::mouseDClick(List().viewport(), Qt::LeftButton, {}, place);
    EXPECT_EQ(ruler->GetLocation(), 2.0L);
}

TEST_F(MapViewRulersPanelControl, RepaintsWhatOthersEdit) {
    TRulerItem* ruler = AddRuler(Vertical, 1, Orange);
    QCoreApplication::processEvents();
    const QRect cell = List().visualRect(List().model()->index(0, 2));
    struct TPaintCounter : QObject {
        int Paints = 0;
        bool eventFilter(QObject*, QEvent* event) override {
            Paints += event->type() == QEvent::Paint;
            return false;
        }
    } counter;
    List().viewport()->installEventFilter(&counter);
    ruler->SetColor(Cyan);
    Layer->Invalidate();
    QCoreApplication::processEvents();
    EXPECT_GT(counter.Paints, 0);
    const QPoint middle = QPoint(cell.center()) * Panel->devicePixelRatioF();
    EXPECT_EQ(tests::PictureOf(*List().viewport()).pixel(middle), Cyan);
}

TEST_F(MapViewRulersPanelControl, LosesItsRulersWithTheLayer) {
    AddRuler(Vertical, 1);
    AddRuler(Horizontal, 2);
    Select(0);
    Layer.reset();
    EXPECT_EQ(Panel->GetRulersLayer(), nullptr);
    EXPECT_TRUE(Rulers().empty());
    Click(Panel->GetAddButton());
    Panel->AddButton_Click();
    Panel->DelButton_Click();
    Panel->EditButton_Click();
    Panel->SetRulersLayer(nullptr);
    TRulerMapLayer other(Manager);
    Panel->SetRulersLayer(&other);
    EXPECT_EQ(other.GetOnRulerAdded().Count(), 1);
    Panel->SetRulersLayer(nullptr);
}

TEST_F(MapViewRulersPanelControl, ListsWhatIsPlacedOnAView) {
    tests::TShownView shown;
    shown.AddReadyLayer();
    Panel->SetRulersLayer(shown.View.GetSpRulersLayer());
    shown.View.SetMode(TMapMode::mdPlaceRulerH);
    shown.Drag({20, 20}, {40, 30});
    shown.View.SetMode(TMapMode::mdPlaceRulerV);
    shown.Drag({20, 20}, {40, 30});
    ASSERT_EQ(Rulers().size(), 2U);
    EXPECT_EQ(Rulers()[0]->GetOrientation(), Horizontal);
    EXPECT_EQ(Rulers()[1]->GetOrientation(), Vertical);
    shown.View.SetLayerManager(Manager); // the rulers go with the layer of the old manager
    EXPECT_TRUE(Rulers().empty());
    EXPECT_EQ(Panel->GetRulersLayer(), nullptr);
    Panel->SetRulersLayer(shown.View.GetSpRulersLayer());
    EXPECT_NE(Panel->GetRulersLayer(), nullptr);
    Panel->SetRulersLayer(nullptr);
}

TEST_F(MapViewRulersPanelControl, CanDoNothingWithoutALayer) {
    Panel->SetRulersLayer(nullptr);
    EXPECT_FALSE(Panel->GetAddButton()->isEnabled());
    Panel->AddButton_Click();
    Panel->DelButton_Click();
    Panel->EditButton_Click();
    Panel->SetRulersLayer(Layer.get());
    EXPECT_TRUE(Panel->GetAddButton()->isEnabled());
}

TEST_F(MapViewRulersPanelControl, SurvivesTheEndOfARulerWhileItIsEdited) {
    TRulerItem* ruler = AddRuler(Vertical, 1);
    Select(0);
    const TRulerAnswer answer([&](TRulerDialog& dialog) {
        Layer->Delete(ruler);
        Confirm(dialog, QStringLiteral("2"));
    });
    Click(Panel->GetEditButton());
    EXPECT_TRUE(Rulers().empty());
}

TEST_F(MapViewRulersPanelControl, SurvivesTheEndOfTheLayerWhileADialogIsOpen) {
    const TRulerAnswer answer([&](TRulerDialog& dialog) {
        Layer.reset();
        Confirm(dialog, QStringLiteral("2"));
    });
    Click(Panel->GetAddButton());
    EXPECT_TRUE(Rulers().empty());
}

TEST_F(MapViewRulersPanelControl, SurvivesItsOwnEndWhileADialogIsOpen) {
    AddRuler(Vertical, 1);
    for (const bool isEdit : {false, true}) {
        if (!Panel) {
            Panel = std::make_unique<TMapViewRulersPanelControl>();
            Panel->SetRulersLayer(Layer.get());
            Panel->GetListView()->SelectRow(0);
        }
        const TRulerAnswer answer([&](TRulerDialog&) { Panel.reset(); });
        isEdit ? Panel->EditButton_Click() : Panel->AddButton_Click();
        EXPECT_EQ(Panel, nullptr);
    }
    EXPECT_EQ(Layer->GetVRulers().Count(), 1);
    EXPECT_EQ(Layer->GetVRulers()[0]->GetLocation(), 1.0L);
    EXPECT_EQ(Layer->GetOnRulerAdded().Count(), 0);
}

/// Sends a key as the window system does, for lists that do not live to see the key's release.
void SendKey(QWidget& list, Qt::Key key) {
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
    QCoreApplication::sendEvent(&list, &press);
}

TEST_F(MapViewRulersPanelControl, SurvivesItsOwnEndWhileItDeletes) {
    for (const bool isFirst : {true, false}) { // told before the panel is, and after it
        Panel.reset();
        TSubscription early;
        TSubscription late;
        const auto end = [this](TRulerMapLayer*, TRulerItem*) { Panel.reset(); };
        if (isFirst)
            early = Layer->GetOnRulerRemoved().Add(end);
        Panel = std::make_unique<TMapViewRulersPanelControl>();
        Panel->SetRulersLayer(Layer.get());
        if (!isFirst)
            late = Layer->GetOnRulerRemoved().Add(end);
        AddRuler(Vertical, 1);
        List().SelectRow(0);
        const int before = Invalidations();
        SendKey(List(), Qt::Key_Delete);
        EXPECT_EQ(Panel, nullptr);
        EXPECT_EQ(Layer->GetVRulers().Count(), 0);
        EXPECT_EQ(Invalidations() - before, 2);
    }
}

TEST_F(MapViewRulersPanelControl, SurvivesItsOwnEndWhileItTellsOfAnEdit) {
    TRulerItem* ruler = AddRuler(Vertical, 1);
    List().SelectRow(0);
    const TSubscription end = Layer->GetOnInvalidated().Add([this](TBaseMapLayer*) { Panel.reset(); });
    const TRulerAnswer answer([](TRulerDialog& dialog) { Confirm(dialog, QStringLiteral("2")); });
    SendKey(List(), Qt::Key_Return);
    EXPECT_EQ(Panel, nullptr);
    EXPECT_EQ(ruler->GetLocation(), 2.0L);
}

TEST_F(MapViewRulersPanelControl, LosesItsLayerWhileItDeletes) {
    AddRuler(Vertical, 1);
    List().SelectRow(0);
    const TSubscription end = Layer->GetOnInvalidated().Add([&](TBaseMapLayer*) { Panel->SetRulersLayer(nullptr); });
    Panel->DelButton_Click();
    EXPECT_EQ(Panel->GetRulersLayer(), nullptr);
    EXPECT_TRUE(Rulers().empty());
}

TEST_F(MapViewRulersPanelControl, EditsTheRulerThatWasSelectedWhateverComesMeanwhile) {
    TRulerItem* first = AddRuler(Vertical, 1);
    TRulerItem* second = AddRuler(Vertical, 2);
    Select(1);
    const TRulerAnswer answer([&](TRulerDialog& dialog) {
        Layer->Delete(first);
        AddRuler(Vertical, 3);
        List().SelectRow(1);
        Confirm(dialog, QStringLiteral("5"));
    });
    Click(Panel->GetEditButton());
    EXPECT_EQ(second->GetLocation(), 5.0L);
    EXPECT_EQ(Rulers()[1]->GetLocation(), 3.0L);
}

TEST_F(MapViewRulersPanelControl, IsReadAndOperatedAtEveryFontSize) {
    AddRuler(Vertical, 1);
    tests::CheckForm([this] {
        auto panel = std::make_unique<TMapViewRulersPanelControl>();
        panel->SetRulersLayer(Layer.get());
        panel->GetListView()->SelectRow(0);
        panel->resize(300, 200);
        return panel;
    });
}

} // namespace
} // namespace lmx
