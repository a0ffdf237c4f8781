#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <lmx/Widgets/lmxGradientEditor.h>
#include <tests/Support/DialogChecks.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/WidgetPictures.h>

#include <QAccessible>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPaintEvent>

namespace lmx {
namespace {

using tests::MessageOf;

constexpr TColor32 Blue = 0xFF0000FF;
constexpr TColor32 White = 0xFFFFFFFF;
constexpr TColor32 Red = 0xFFFF0000;

struct GradientEditor : testing::Test {
    GradientEditor() {
        Editor->resize(417, 130); // a bar of 401 pixels: a quarter of a per cent each
        Low = Editor->Add(Blue, 0);
        Middle = Editor->Add(White, 0.5);
        High = Editor->Add(Red, 1);
        Editor->SetOnSelectionChanged([this](TGradientEditor*) { Told += "selection "; });
        Editor->SetOnChanged(
            [this](TGradientEditor*, TGrabber grabber) { Told += grabber.IsValid() ? "stop " : "stops "; });
    }
    void Show() { tests::ShowActive(*Editor); }
    QPoint At(const TGrabber& grabber) const { return Editor->GrabberRect(grabber).center(); }
    QPoint Below(double location) const {
        return {8 + static_cast<int>(location * 400), Editor->BarRect().bottom() + 8};
    }
    void Press(QPoint at) { QTest::mousePress(Editor.get(), Qt::LeftButton, {}, at); }
    void MoveTo(QPoint at) { QTest::mouseMove(Editor.get(), at); }
    void Release(QPoint at) { QTest::mouseRelease(Editor.get(), Qt::LeftButton, {}, at); }
    void Drag(QPoint from, QPoint to) {
        Press(from);
        MoveTo(to);
        Release(to);
    }
    void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(Editor.get(), key, modifiers); }
    QString Text() const { return Editor->GetGradient()->ToString(); }

    const TFormatSettingsScope Point{TFormatSettings{u'.'}};
    std::unique_ptr<TGradientEditor> Editor = std::make_unique<TGradientEditor>();
    TGrabber Low, Middle, High;
    std::string Told;
};

TEST_F(GradientEditor, IsASourceOfItsGradient) {
    EXPECT_EQ(Text(), "(0:#FF0000FF),(0.5:#FFFFFFFF),(1:#FFFF0000)");
    EXPECT_EQ(Editor->GetLowValue(), 0);
    EXPECT_EQ(Editor->GetHighValue(), 1);
    Editor->SetValueRange(-30, 45);
    const auto calculator = TGradientColorCalculatorFactory::GetObject(Editor.get());
    EXPECT_EQ(calculator->GetColor(-30), Blue);
    EXPECT_EQ(calculator->GetColor(7.5), White);
    Editor->Clear();
    EXPECT_EQ(Text(), "");
    EXPECT_EQ(calculator->GetColor(-30), Blue) << "what was given is no part of the editor";
    EXPECT_EQ(MessageOf<EExArgumentNilException>([&] { Editor->SetGradient(nullptr); }).isEmpty(), false);
}

TEST_F(GradientEditor, TakesAGradientAsItIs) {
    Editor->Select(Middle);
    Told.clear();
    Editor->SetGradient(TGradientFactory::GetObject({{1, Red}, {-0.5, Blue}, {0.25, White}}));
    EXPECT_EQ(Text(), "(1:#FFFF0000),(-0.5:#FF0000FF),(0.25:#FFFFFFFF)");
    EXPECT_FALSE(Editor->GetSelected().IsValid());
    EXPECT_FALSE(Middle.IsValid());
    EXPECT_EQ(Told, "selection stops ");
    Editor->Undo();
    EXPECT_TRUE(Middle.IsValid());
    EXPECT_EQ(Editor->GetSelected(), Middle);
}

TEST_F(GradientEditor, StopsHavePlacesValuesAndColors) {
    Editor->SetValueRange(100, -100); // upside down
    EXPECT_EQ(Middle.GetValue(), 0);
    EXPECT_EQ(High.GetValue(), -100);
    Middle.SetValue(50);
    EXPECT_EQ(Middle.GetLocation(), 0.25);
    Middle.SetValue(1e9);
    EXPECT_EQ(Middle.GetLocation(), 0);
    Middle.SetColor(0x80123456);
    EXPECT_EQ(Middle.GetColor(), 0x80123456U);
    EXPECT_EQ(Told, "stop stop stop ");
    Editor->SetValueRange(7, 7);
    Middle.SetValue(9);
    EXPECT_EQ(Middle.GetLocation(), 0);
    EXPECT_EQ(Middle.GetValue(), 7);
}

TEST_F(GradientEditor, RangesMayBeTinyAndLarge) {
    for (const double size : {1e-6, 1e6}) {
        Editor->SetValueRange(0, size);
        Middle.SetValue(size / 4);
        EXPECT_DOUBLE_EQ(Middle.GetLocation(), 0.25);
        EXPECT_DOUBLE_EQ(Middle.GetValue(), size / 4);
    }
}

TEST_F(GradientEditor, NamesOfWhatIsGoneDoNothing) {
    Editor->Select(Middle);
    Editor->DeleteSelected();
    EXPECT_FALSE(Middle.IsValid());
    Middle.SetLocation(0.1);
    Middle.SetColor(1);
    EXPECT_EQ(Middle.GetValue(), 0);
    Editor.reset();
    EXPECT_FALSE(Low.IsValid());
    Low.SetLocation(1);
    Low.SetValue(1);
    EXPECT_EQ(Low.GetLocation(), 0);
}

TEST_F(GradientEditor, DragsAStopAsOneChange) {
    Show();
    Press(At(Middle));
    EXPECT_EQ(Editor->GetSelected(), Middle);
    MoveTo(At(Middle) + QPoint(60, 0));
    MoveTo(Below(0.75));
    EXPECT_NEAR(Middle.GetLocation(), 0.75, 0.0026);
    MoveTo(Below(3));
    Release(Below(3));
    EXPECT_EQ(Middle.GetLocation(), 1);
    EXPECT_EQ(Told.substr(0, 15), "selection stop ");
    Editor->Undo();
    EXPECT_EQ(Middle.GetLocation(), 0.5);
}

TEST_F(GradientEditor, AHandThatTremblesMovesNothing) {
    Show();
    Drag(At(Middle), At(Middle) + QPoint(1, 1));
    EXPECT_EQ(Middle.GetLocation(), 0.5);
    EXPECT_EQ(Editor->GetSelected(), Middle);
}

TEST_F(GradientEditor, DraggingAwayDeletesAndComingBackDoesNot) {
    Show();
    Press(At(Middle));
    MoveTo({200, 300});
    EXPECT_FALSE(Middle.IsValid());
    EXPECT_EQ(Editor->GetCount(), 2);
    MoveTo(Below(0.25));
    EXPECT_TRUE(Middle.IsValid());
    EXPECT_NEAR(Middle.GetLocation(), 0.25, 0.0026);
    EXPECT_EQ(Editor->GetSelected(), Middle);
    MoveTo({200, -100});
    Release({200, -100});
    EXPECT_EQ(Text(), "(0:#FF0000FF),(1:#FFFF0000)");
    Editor->Undo();
    EXPECT_EQ(Middle.GetLocation(), 0.5);
}

TEST_F(GradientEditor, ADragEndsWithAReleaseThatNobodyTold) {
    Show();
    Press(At(Middle));
    MoveTo(Below(0.75));
    const double dragged = Middle.GetLocation();
    const QPointF back = Below(0.25);
    QMouseEvent move(QEvent::MouseMove, back, Editor->mapToGlobal(back), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(Editor.get(), &move);
    EXPECT_EQ(Middle.GetLocation(), dragged) << "no button is held";
    Key(Qt::Key_Home);
    EXPECT_EQ(Middle.GetLocation(), 0) << "and the keys count again";
    Release(Below(0.25));
    Editor->Undo();
    Editor->Undo();
    EXPECT_EQ(Middle.GetLocation(), 0.5) << "the drag was one change";
}

TEST_F(GradientEditor, EscapeTakesADragBackAndElseIsTheWindows) {
    Show();
    Press(At(Middle));
    MoveTo(Below(0.75));
    Key(Qt::Key_Delete); // not in the middle of a drag
    Key(Qt::Key_Escape);
    EXPECT_EQ(Middle.GetLocation(), 0.5);
    MoveTo(Below(0.25));
    Release(Below(0.25));
    EXPECT_EQ(Middle.GetLocation(), 0.5);
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QCoreApplication::sendEvent(Editor.get(), &escape);
    EXPECT_FALSE(escape.isAccepted());
}

TEST_F(GradientEditor, StacksOfStopsGiveTheLastOneOrTheSelected) {
    Low.SetLocation(0.5);
    Show();
    Drag(At(Middle), At(Middle));
    EXPECT_EQ(Editor->GetSelected(), Middle) << "the later one stands above";
    Editor->Select(Low);
    Drag(At(Middle), Below(0.25));
    EXPECT_EQ(Editor->GetSelected(), Low) << "the selected one stands above all";
    EXPECT_NEAR(Low.GetLocation(), 0.25, 0.0026);
    EXPECT_EQ(Middle.GetLocation(), 0.5);
}

TEST_F(GradientEditor, ADoubleClickAddsAStopOfTheColorThere) {
    Show();
    QTest::mouseDClick(Editor.get(), Qt::LeftButton, {}, Below(0.75));
    ASSERT_EQ(Editor->GetCount(), 4);
    EXPECT_NEAR(Editor->GetSelected().GetLocation(), 0.75, 0.0026);
    EXPECT_NEAR(qGreen(Editor->GetSelected().GetColor()), 127, 2);
    Editor->SetOnQueryColor([](TGradientEditor*, TColor32& color) { color = 0x80112233; });
    QTest::mouseDClick(Editor.get(), Qt::LeftButton, {}, Editor->BarRect().center());
    EXPECT_EQ(Editor->GetSelected().GetColor(), 0x80112233U);
    Editor->SetOptions({TGradientEditorOption::geoShowGrabbers});
    QTest::mouseDClick(Editor.get(), Qt::LeftButton, {}, Below(0.25));
    EXPECT_EQ(Editor->GetCount(), 5) << "only where that is wanted";
}

TEST_F(GradientEditor, ADoubleClickOnAStopAsksForItsColor) {
    Show();
    const tests::TScriptedColorChooser chooser;
    chooser->Answers = {0x40123456U, std::nullopt};
    for (int i = 0; i < 2; ++i) {
        Drag(At(Middle), At(Middle));
        QTest::mouseDClick(Editor.get(), Qt::LeftButton, {}, At(Middle));
        EXPECT_EQ(Middle.GetColor(), 0x40123456U);
    }
    EXPECT_EQ(chooser->Shown, (std::vector<TColor32>{White, 0x40123456U}));
    EXPECT_EQ(chooser->Made[0], TColorChooserDialogOptions{TColorChooserDialogOption::coColor32});
    Editor->SetOnQueryGrabberColor([](TGradientEditor*, TColor32& color) { color ^= 1; });
    Key(Qt::Key_Space);
    EXPECT_EQ(Middle.GetColor(), 0x40123457U) << "the handler's, and by the space bar";
}

TEST_F(GradientEditor, IsEditedByTheKeyboardAlone) {
    Show();
    Key(Qt::Key_Right);
    EXPECT_EQ(Editor->GetSelected(), Low) << "the first key selects";
    Key(Qt::Key_Right);
    Key(Qt::Key_Up);
    EXPECT_EQ(Low.GetLocation(), 0.02);
    Key(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(Low.GetLocation(), 0.021);
    Key(Qt::Key_Left);
    Key(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(Low.GetLocation(), 0.01);
    Key(Qt::Key_End);
    EXPECT_EQ(Low.GetLocation(), 1);
    Key(Qt::Key_Home);
    EXPECT_EQ(Low.GetLocation(), 0);
    Key(Qt::Key_Insert);
    EXPECT_EQ(Editor->GetSelected().GetLocation(), 0.25) << "halfway to the next";
    Key(Qt::Key_Delete);
    EXPECT_EQ(Editor->GetCount(), 3);
    EXPECT_EQ(Editor->GetSelected(), Middle);
    QTest::keySequence(Editor.get(), QKeySequence(QKeySequence::Undo));
    EXPECT_EQ(Editor->GetCount(), 4);
    QTest::keySequence(Editor.get(), QKeySequence(QKeySequence::Redo));
    EXPECT_EQ(Editor->GetCount(), 3);
    for (int i = 0; i < 4; ++i)
        Key(Qt::Key_Backspace);
    EXPECT_EQ(Editor->GetCount(), 0);
    Key(Qt::Key_Insert);
    EXPECT_EQ(Text(), "(0.5:#FFFFFFFF)") << "the first stop of all";
}

TEST_F(GradientEditor, TheTabKeyLeadsThroughTheStopsAndOn) {
    QWidget form;
    QLineEdit before(&form);
    Editor->setParent(&form);
    QLineEdit behind(&form);
    QHBoxLayout row(&form);
    for (QWidget* widget :
         {static_cast<QWidget*>(&before), static_cast<QWidget*>(Editor.get()), static_cast<QWidget*>(&behind)})
        row.addWidget(widget);
    tests::ShowActive(form);
    before.setFocus();
    const auto press = [&](Qt::Key key) { QTest::keyClick(form.focusWidget(), key); };
    for (const TGrabber& stop : {Low, Middle, High}) {
        press(Qt::Key_Tab);
        EXPECT_TRUE(Editor->hasFocus());
        EXPECT_EQ(Editor->GetSelected(), stop);
    }
    press(Qt::Key_Tab);
    EXPECT_TRUE(behind.hasFocus());
    for (const TGrabber& stop : {High, Middle, Low}) {
        press(Qt::Key_Backtab);
        EXPECT_EQ(Editor->GetSelected(), stop);
    }
    press(Qt::Key_Backtab);
    EXPECT_TRUE(before.hasFocus());
    Editor->Clear();
    press(Qt::Key_Tab);
    EXPECT_TRUE(Editor->hasFocus());
    press(Qt::Key_Tab);
    EXPECT_TRUE(behind.hasFocus()) << "an empty one is passed over";
    Editor->setParent(nullptr);
}

TEST_F(GradientEditor, SelectsByCall) {
    Editor->SelectPrevGrabber();
    EXPECT_EQ(Editor->GetSelected(), Low);
    Editor->SelectPrevGrabber();
    EXPECT_EQ(Editor->GetSelected(), Low);
    Editor->SelectNextGrabber();
    Editor->SelectNextGrabber();
    Editor->SelectNextGrabber();
    EXPECT_EQ(Editor->GetSelected(), High);
    EXPECT_EQ(Told, "selection selection selection ");
    Editor->Select({});
    EXPECT_FALSE(Editor->GetSelected().IsValid());
}

TEST_F(GradientEditor, ShowsItsStopsToScreenReaders) {
    Editor->SetValueRange(0, 10);
    Show();
    Editor->Select(Middle);
    QAccessibleInterface* access = QAccessible::queryAccessibleInterface(Editor.get());
    ASSERT_NE(access, nullptr);
    EXPECT_EQ(access->text(QAccessible::Name), "Gradient");
    ASSERT_EQ(access->childCount(), 3);
    QAccessibleInterface* stop = access->child(1);
    EXPECT_EQ(stop->text(QAccessible::Name), "Color stop 2 of 3, #FFFFFFFF");
    EXPECT_EQ(stop->text(QAccessible::Value), "50 %, 5");
    EXPECT_EQ(stop->role(), QAccessible::Slider);
    EXPECT_TRUE(stop->state().selected && stop->state().focused);
    EXPECT_EQ(access->indexOfChild(stop), 1);
    EXPECT_EQ(access->focusChild(), stop);
    EXPECT_EQ(stop->parent(), access);
    EXPECT_EQ(access->childAt(stop->rect().center().x(), stop->rect().center().y()), stop);
    ASSERT_NE(stop->valueInterface(), nullptr);
    EXPECT_EQ(stop->valueInterface()->maximumValue().toDouble(), 10);
    stop->valueInterface()->setCurrentValue(7.5);
    EXPECT_EQ(Middle.GetLocation(), 0.75);
    Editor->DeleteSelected();
    EXPECT_FALSE(stop->isValid());
    EXPECT_EQ(access->childCount(), 2);
    EXPECT_EQ(access->child(5), nullptr);
}

TEST_F(GradientEditor, HandlersMayEndIt) {
    Show();
    Editor->SetOnSelectionChanged([this](TGradientEditor*) { Editor.reset(); });
    Editor->SelectNextGrabber();
    EXPECT_EQ(Editor, nullptr);
    Editor = std::make_unique<TGradientEditor>();
    Editor->SetOnQueryColor([this](TGradientEditor*, TColor32&) { Editor.reset(); });
    QTest::mouseDClick(Editor.get(), Qt::LeftButton, {}, {50, 20});
    EXPECT_EQ(Editor, nullptr);
}

TEST_F(GradientEditor, AFailureOfAHandlerIsShown) {
    const tests::TScriptedMsgBox messages;
    Show();
    Editor->Select(Middle);
    Editor->SetOnChanged([](TGradientEditor*, TGrabber) { throw Exception(QStringLiteral("no")); });
    Key(Qt::Key_Right);
    QCoreApplication::processEvents();
    ASSERT_EQ(messages->Shown.size(), 1U);
    EXPECT_EQ(messages->Shown[0].Text, "no");
    EXPECT_EQ(Middle.GetLocation(), 0.51);
}

TEST_F(GradientEditor, ShowsColorsAndTheSelectedStop) {
    Show();
    const QImage picture = tests::PictureOf(*Editor);
    const QRect bar = Editor->BarRect();
    const QRgb left = picture.pixel(tests::DevicePixel(*Editor, {bar.left() + 1, bar.center().y()}));
    const QRgb right = picture.pixel(tests::DevicePixel(*Editor, {bar.right() - 1, bar.center().y()}));
    EXPECT_EQ(qBlue(left), 255);
    EXPECT_LE(qRed(left), 2);
    EXPECT_EQ(qRed(right), 255);
    EXPECT_LE(qBlue(right), 2);
    EXPECT_EQ(picture.pixel(tests::DevicePixel(*Editor, At(Low))), Blue);
    Editor->Select(Middle);
    const QImage selected = tests::PictureOf(*Editor);
    EXPECT_NE(selected, picture);
    Editor->clearFocus();
    EXPECT_NE(tests::PictureOf(*Editor), selected) << "the keyboard is elsewhere";
    Editor->setFocus();
    Editor->Select({});
    EXPECT_EQ(tests::PictureOf(*Editor), picture);
    for (const auto option : {TGradientEditorOption::geoShowLabels, TGradientEditorOption::geoValueRange,
                              TGradientEditorOption::geoShowGrabbers}) {
        TGradientEditorOptions options = Editor->GetOptions();
        options.Exclude(option);
        Editor->SetOptions(options);
        EXPECT_NE(tests::PictureOf(*Editor), picture);
        options.Include(option);
        Editor->SetOptions(options);
        EXPECT_EQ(tests::PictureOf(*Editor), picture);
    }
}

TEST_F(GradientEditor, TellsPerCentAboveAndValuesBelow) {
    Editor->SetValueRange(10, -10); // upside down
    Show();
    const QImage picture = tests::PictureOf(*Editor);
    const QRgb ink = Editor->palette().color(QPalette::WindowText).rgb();
    const auto ticks = [&](int y) {
        std::vector<int> columns;
        for (int x = 0; x < Editor->width(); ++x)
            if (picture.pixel(tests::DevicePixel(*Editor, {x, y})) == ink)
                columns.push_back(x);
        return columns;
    };
    EXPECT_EQ(ticks(Editor->BarRect().top() - 3), (std::vector<int>{8, 88, 168, 248, 328, 408})) << "each 20 %";
    const int axis = Editor->height() - Editor->fontMetrics().height() - 6;
    EXPECT_EQ(ticks(axis).size(), 401U) << "a line as long as the bar";
    EXPECT_EQ(ticks(axis + 2), (std::vector<int>{8, 108, 208, 308, 408})) << "10, 5, 0, -5, -10";
}

TEST_F(GradientEditor, ShowsSquaresUnderTranslucentColors) {
    for (TGrabber stop : {Low, Middle, High})
        stop.SetColor(0);
    const QImage picture = tests::PictureOf(*Editor);
    const auto at = [&](int x) {
        const QPoint corner = Editor->BarRect().topLeft() + QPoint(x, 1);
        return picture.pixel(tests::DevicePixel(*Editor, corner));
    };
    EXPECT_EQ(at(1), 0xFFFFFFFFU);
    EXPECT_EQ(at(7), 0xFFC0C0C0U);
}

TEST_F(GradientEditor, CopesWithThousandsOfStops) {
    std::vector<TColorStop> stops;
    for (int i = 0; i < 5000; ++i)
        stops.push_back({(i * 7919 % 5000) / 4999.0, 0xFF000000 + static_cast<TColor32>(i)});
    Editor->SetGradient(TGradientFactory::GetObject(std::span<const TColorStop>(stops)));
    Show();
    tests::PictureOf(*Editor);
    Drag(Below(0.5), Below(0.6));
    ASSERT_TRUE(Editor->GetSelected().IsValid());
    EXPECT_NEAR(Editor->GetSelected().GetLocation(), 0.6, 0.005);
    EXPECT_EQ(Editor->GetCount(), 5000);
}

TEST_F(GradientEditor, HasRoomAtEveryFontSize) {
    tests::CheckForm([] {
        auto form = std::make_unique<QWidget>();
        auto* row = new QHBoxLayout(form.get());
        auto* editor = new TGradientEditor(form.get());
        editor->Add(Blue, 0);
        editor->Add(Red, 1);
        row->addWidget(editor);
        auto* edit = new QLineEdit(form.get());
        edit->setAccessibleName("Other");
        row->addWidget(edit);
        return form;
    });
}

} // namespace
} // namespace lmx
