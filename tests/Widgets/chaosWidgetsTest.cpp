// A window with one widget that calls its host at some place, where the host answers by anything: each place meets each
// deed, and what is left is used once more. Maps, their panels and their layers meet in a chaos of their own.

#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Widgets/lmxAnchorEditor.h>
#include <lmx/Widgets/lmxBaseToggleButton.h>
#include <lmx/Widgets/lmxColor32Button.h>
#include <lmx/Widgets/lmxColorShape.h>
#include <lmx/Widgets/lmxListPanel.h>
#include <lmx/Widgets/lmxPaintBox32.h>
#include <lmx/Widgets/lmxPngButton.h>
#include <lmx/Widgets/lmxToggleButtonBar.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/WidgetPictures.h>

#include <QCoreApplication>
#include <QLineEdit>
#include <QPointer>
#include <QVBoxLayout>

#include <memory>
#include <vector>

namespace lmx {
namespace {

/// A window with the widget and a field beside it, to which the keyboard can go.
struct TScene {
    std::unique_ptr<QWidget> Window = std::make_unique<QWidget>();
    QPointer<QLineEdit> Field = new QLineEdit(Window.get());
    QPointer<QWidget> Widget;
    std::function<void()> Host; ///< what the host does when it is called
    tests::TScriptedColorChooser Chooser;
    tests::TScriptedMsgBox Messages;
    TSubscription Subscription;

    /// The host is called. What it does may destroy whoever calls.
    void Call() const {
        if (const auto host = Host)
            host();
    }
    void Settle() const { QCoreApplication::processEvents(); }
};

/// What becomes of an exception that the host lets go.
enum class TFault {
    IsShown,
    IsSwallowed,
    CannotBe, ///< a signal of Qt, through which none may go
};

struct TPlace {
    const char* Name;
    std::function<QWidget*(TScene&)> Make; ///< the widget, which calls TScene::Call
    std::function<void(TScene&)> Use;      ///< what makes it call; the widget is there
    TFault Fault = TFault::IsShown;
    bool KeepsWidget = false; ///< Qt goes on with the widget afterwards, and says so: a host deletes it later
};

struct TDeed {
    const char* Name;
    std::function<void(TScene&)> Do;
    bool Raises = false;
    bool EndsWidget = false;
};

class TTwoColors final : public TBaseToggleButton {
protected:
    void RenderToggleState(QPainter&, bool) override {}
};

class TProbe final : public TPaintBox32 {
public:
    TProbe(TScene& scene, const char* place) : FScene(scene), FPlace(QString::fromLatin1(place)) {
        setFocusPolicy(Qt::StrongFocus);
    }

protected:
    void MouseDown(TMouseButton, TPoint) override { Call("MouseDown"); }
    void MouseMove(TPoint) override { Call("MouseMove"); }
    void MouseUp(TMouseButton, TPoint) override { Call("MouseUp"); }
    void KeyDown(int) override { Call("KeyDown"); }
    void KeyUp(int) override { Call("KeyUp"); }
    void DoEnter() override { Call("DoEnter"); }
    void DoExit() override { Call("DoExit"); }

private:
    void Call(const char* operation) const {
        if (FPlace == QLatin1String(operation))
            FScene.Call();
    }

    TScene& FScene;
    QString FPlace;
};

class TThreeRows final : public IListRows {
public:
    int GetCount() const override { return 3; }
    QString GetText(int row, int) const override { return QString(row + 1, u'x'); }
};

TListPanel* MakePanel() {
    auto* const list = new TDrawnListView;
    list->SetColumns({{QStringLiteral("Rows"), 50}});
    list->SetRows(std::make_shared<TThreeRows>());
    return new TListPanel(list, QStringLiteral("Rows"));
}

TDrawnListView* ListOf(TScene& s) {
    return static_cast<TListPanel*>(s.Widget.data())->GetList();
}

// Each event goes to what is still there.

void PressKey(const QPointer<QWidget>& widget, Qt::Key key) {
    widget->setFocus();
    if (widget)
        QTest::keyPress(widget, key);
    if (widget)
        QTest::keyRelease(widget, key);
}

void ClickAt(const QPointer<QWidget>& widget, QPoint at) {
    QTest::mousePress(widget, Qt::LeftButton, {}, at);
    if (widget)
        QTest::mouseRelease(widget, Qt::LeftButton, {}, at);
}

void PressSpace(TScene& s) {
    PressKey(s.Widget, Qt::Key_Space);
}

void Click(TScene& s) {
    ClickAt(s.Widget, s.Widget->rect().center());
}

void UsePaintBox(TScene& s) {
    const auto step = [&s](auto send) {
        if (s.Widget)
            send(s.Widget.data());
    };
    step([](QWidget* box) { box->setFocus(); });
    step([](QWidget* box) { QTest::mousePress(box, Qt::LeftButton); });
    step([](QWidget* box) { QTest::mouseMove(box, {3, 4}); });
    step([](QWidget* box) { QTest::mouseRelease(box, Qt::LeftButton); });
    step([](QWidget* box) { QTest::keyPress(box, Qt::Key_A); });
    step([](QWidget* box) { QTest::keyRelease(box, Qt::Key_A); });
    if (s.Field)
        s.Field->setFocus();
}

TPlace PaintBox(const char* operation, bool keepsWidget = false) {
    return {operation, [operation](TScene& s) { return new TProbe(s, operation); }, UsePaintBox, TFault::IsShown,
            keepsWidget};
}

/// A chooser that calls the host while it is open, and then confirms a colour.
template<class Widget>
QWidget* WithChooser(TScene& s) {
    s.Chooser->WhileOpen = [&s] { s.Call(); };
    s.Chooser->Answers.assign(20, 0xFF102030U);
    return new Widget;
}

template<class Signal>
std::function<QWidget*(TScene&)> ToggleButton(Signal signal) {
    return [signal](TScene& s) {
        auto* const button = new TTwoColors;
        QObject::connect(button, signal, button, [&s] { s.Call(); });
        return button;
    };
}

std::vector<TPlace> Places() {
    return {
        {"the chooser of a colour field", WithChooser<TColorShape>, Click},
        {"the chooser of a colour field, by key", WithChooser<TColorShape>, PressSpace},
        {"the chooser of a colour button", WithChooser<TColor32Button>, Click},
        {"another colour of a button",
         [](TScene& s) {
             s.Chooser->Answers.assign(20, 0x80102030U);
             auto* const button = new TColor32Button;
             button->SetOnColorChanged([&s](TColor32Button*) { s.Call(); });
             return button;
         },
         PressSpace},
        {"a toggled button", ToggleButton(&QAbstractButton::toggled), Click, TFault::CannotBe, true},
        {"a toggled button, by key", ToggleButton(&QAbstractButton::toggled), PressSpace, TFault::CannotBe, true},
        {"a clicked toggle button", ToggleButton(&QAbstractButton::clicked), Click, TFault::CannotBe},
        {"a pressed toggle button", ToggleButton(&QAbstractButton::pressed), Click, TFault::CannotBe},
        {"a button of a bar",
         [](TScene& s) {
             auto* const bar = new TToggleButtonBar;
             auto* const button = new TPngButton(bar, QStringLiteral("MapWindowFactory.Edit"), QStringLiteral("Edit"));
             QObject::connect(button, &QAbstractButton::clicked, button, [&s] { s.Call(); });
             bar->AddButton(button);
             return bar;
         },
         [](TScene& s) {
             ClickAt(s.Widget->findChild<TPngButton*>(), {3, 3});
         },
         TFault::CannotBe},
        {"an edge of the anchors",
         [](TScene& s) {
             auto* const editor = new TAnchorEditor;
             editor->SetOnChanged([&s](TAnchorEditor*) { s.Call(); });
             return editor;
         },
         [](TScene& s) {
             QWidget* const edge = static_cast<TAnchorEditor*>(s.Widget.data())->GetEdge(TAnchorKind::akTop);
             ClickAt(edge, edge->rect().center());
         }},
        {"a command of a list",
         [](TScene& s) {
             auto* const panel = MakePanel();
             panel->AddCommand({QStringLiteral("MapWindowFactory.Edit"),
                                QStringLiteral("Edit"),
                                {Qt::Key_Return},
                                [&s] { s.Call(); },
                                {}});
             return panel;
         },
         [](TScene& s) { PressKey(ListOf(s), Qt::Key_Return); }},
        {"a double click in a list",
         [](TScene& s) {
             auto* const panel = MakePanel();
             panel->SetDoubleClickButton(panel->AddCommand(
                 {QStringLiteral("MapWindowFactory.Edit"), QStringLiteral("Edit"), {}, [&s] { s.Call(); }, {}}));
             return panel;
         },
         [](TScene& s) {
             const QPointer<QWidget> viewport = ListOf(s)->viewport();
             const QPoint row(10, ListOf(s)->RowRect(1).center().y());
             ClickAt(viewport, row);
             if (viewport)
                 QTest::mouseEvent(QTest::MouseDClick, viewport.data(), Qt::LeftButton, {}, row);
         }},
        {"the selection of a list",
         [](TScene& s) {
             auto* const panel = MakePanel();
             s.Subscription = panel->GetList()->GetOnSelectionChanged().Add([&s](TDrawnListView*) { s.Call(); });
             return panel;
         },
         [](TScene& s) { ListOf(s)->SelectRow(ListOf(s)->GetSelectedRow() == 2 ? 0 : 2); }, TFault::IsSwallowed},
        PaintBox("MouseDown"),
        PaintBox("MouseMove"),
        PaintBox("MouseUp"),
        PaintBox("KeyDown"),
        PaintBox("KeyUp"),
        PaintBox("DoEnter", true),
        PaintBox("DoExit", true),
    };
}

std::vector<TDeed> Deeds() {
    const auto use = [](const auto& action) {
        return [action](TScene& s) {
            if (s.Widget)
                action(*s.Widget);
        };
    };
    return {
        {"nothing", [](TScene&) {}},
        {"raise", [](TScene&) { throw Exception(QStringLiteral("chaos")); }, true},
        {"delete the widget", [](TScene& s) { delete s.Widget; }, false, true},
        {"delete the window", [](TScene& s) { s.Window.reset(); }, false, true},
        {"delete the widget later", use([](QWidget& w) { w.deleteLater(); })},
        {"take the widget out", use([](QWidget& w) { w.setParent(nullptr); })},
        {"hide the widget", use([](QWidget& w) { w.hide(); })},
        {"hide the window", [](TScene& s) { s.Window->hide(); }},
        {"close the window", [](TScene& s) { s.Window->close(); }},
        {"disable the widget", use([](QWidget& w) { w.setEnabled(false); })},
        {"resize the widget", use([](QWidget& w) { w.resize(5, 3); })},
        {"grab the widget", use([](QWidget& w) { w.grab(); })},
        {"give the keyboard away",
         [](TScene& s) {
             if (s.Field)
                 s.Field->setFocus();
         }},
        {"handle events", [](TScene& s) { s.Settle(); }},
    };
}

class WidgetChaos : public testing::TestWithParam<std::size_t> {};

TEST_P(WidgetChaos, MayComeOverAWidgetWhereItCallsItsHost) {
    const TPlace place = Places()[GetParam()];
    for (const TDeed& deed : Deeds()) {
        if ((deed.Raises && place.Fault == TFault::CannotBe) || (deed.EndsWidget && place.KeepsWidget))
            continue;
        SCOPED_TRACE(testing::Message() << place.Name << ": " << deed.Name);
        TScene scene;
        scene.Widget = place.Make(scene);
        auto* const layout = new QVBoxLayout(scene.Window.get());
        layout->addWidget(scene.Field);
        layout->addWidget(scene.Widget);
        tests::ShowActive(*scene.Window);
        int calls = 0;
        bool isActing = false;
        scene.Host = [&] {
            ++calls;
            if (isActing)
                return;
            isActing = true;
            deed.Do(scene);
        };
        place.Use(scene);
        EXPECT_GE(calls, 1);
        scene.Settle();
        EXPECT_EQ(scene.Messages->Shown.size(), deed.Raises && place.Fault == TFault::IsShown ? 1U : 0U);
        if (scene.Widget)
            place.Use(scene);
        scene.Settle();
        scene.Host = {};
        if (scene.Widget && !scene.Widget->parent())
            delete scene.Widget;
    }
}

INSTANTIATE_TEST_SUITE_P(Places, WidgetChaos, testing::Range<std::size_t>(0, Places().size()));

} // namespace
} // namespace lmx
