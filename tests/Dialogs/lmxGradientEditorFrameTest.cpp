#include <lmx/Colour/lmxColorPack.h>
#include <lmx/Dialogs/lmxGradientEditorFrame.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <lmx/Widgets/lmxClipboardEnvelope.h>
#include <lmx/Widgets/lmxColor32Button.h>
#include <lmx/Widgets/lmxGradientEditor.h>
#include <tests/Support/DialogChecks.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/WidgetPictures.h>

#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>

namespace lmx {
namespace {

constexpr TColor32 Blue = 0xFF0000FF;
constexpr TColor32 Red = 0x80FF0000;

struct GradientEditorFrame : testing::Test {
    GradientEditorFrame() {
        Low = Editor.Add(Blue, 0);
        High = Editor.Add(Red, 1);
        Frame->SetValueRange(-30, 45);
    }
    template<class Widget>
    Widget& Find(const char* name) {
        return *Frame->findChild<Widget*>(QString::fromLatin1(name));
    }
    void Show() { tests::ShowActive(*Frame); }
    void Click(const char* name) { QTest::mouseClick(&Find<QPushButton>(name), Qt::LeftButton); }
    void Type(QLineEdit& edit, const QString& text) {
        edit.setFocus();
        edit.selectAll();
        QTest::keyClicks(&edit, text);
    }
    QString Text() const { return Editor.GetGradient()->ToString(); }

    const TFormatSettingsScope Point{TFormatSettings{u'.'}};
    const tests::TScriptedColorChooser Chooser; // there before the frame makes its own
    std::unique_ptr<TGradientEditorFrame> Frame = std::make_unique<TGradientEditorFrame>();
    TGradientEditor& Editor = *Frame->GetGradEdit();
    TColor32Button& Color = Find<TColor32Button>("shpColor");
    QLineEdit& Location = Find<QLineEdit>("edLoc");
    QLineEdit& Value = Find<QLineEdit>("edVal");
    TGrabber Low, High;
};

TEST_F(GradientEditorFrame, SaysWhatItShows) {
    QStringList labels;
    for (const QLabel* label : Frame->findChildren<QLabel*>())
        labels += QString(label->text()).remove(u'&') + (label->buddy() ? label->buddy()->objectName() : QString());
    EXPECT_EQ(labels, (QStringList{"Color:shpColor", "Location:edLoc", "%", "Value:edVal"}));
    const std::pair<const char*, const char*> buttons[] = {{"btnPrev", "<"},      {"btnNext", ">"},
                                                           {"btnDel", "&Delete"}, {"btnClear", "&Clear all"},
                                                           {"btnCopy", "&Copy"},  {"btnPaste", "&Paste"}};
    for (const auto& [name, text] : buttons)
        EXPECT_EQ(Find<QPushButton>(name).text(), text);
    EXPECT_EQ(Find<QPushButton>("btnPrev").toolTip(), "Previous color");
    EXPECT_EQ(Find<QPushButton>("btnNext").toolTip(), "Next color");
    EXPECT_EQ(Color.GetColor(), 0xFFFFFFFFU);
    EXPECT_FALSE(Location.isEnabled());
    EXPECT_FALSE(Value.isEnabled());
    using enum TGradientEditorOption;
    EXPECT_EQ(Editor.GetOptions(),
              (TGradientEditorOptions{geoShowLabels, geoValueRange, geoShowGrabbers, geoAddOnDblClick}));
}

TEST_F(GradientEditorFrame, ShowsTheSelectedStop) {
    Show();
    Click("btnNext");
    Click("btnNext");
    EXPECT_EQ(Editor.GetSelected(), High);
    EXPECT_TRUE(Location.isEnabled());
    EXPECT_EQ(Location.text(), "100.00");
    EXPECT_EQ(Value.text(), "45.0000");
    EXPECT_EQ(Color.GetColor(), Red);
    Click("btnPrev");
    EXPECT_EQ(Location.text(), "0.00");
    EXPECT_EQ(Value.text(), "-30.0000");
    QTest::keyClick(&Editor, Qt::Key_Right);
    EXPECT_EQ(Location.text(), "1.00") << "and follows it";
    EXPECT_EQ(Value.text(), "-29.2500");
    Frame->SetValueRange(0, 1);
    EXPECT_EQ(Value.text(), "0.0100");
    Editor.Select({});
    EXPECT_FALSE(Location.isEnabled());
    EXPECT_EQ(Location.text(), "1.00") << "the last one's, which nobody can change";
}

TEST_F(GradientEditorFrame, MovesAStopWhileItsPlaceIsTyped) {
    Show();
    Editor.Select(Low);
    Type(Location, "2");
    EXPECT_EQ(Low.GetLocation(), 0.02);
    EXPECT_EQ(Location.text(), "2") << "never rewritten under the cursor";
    EXPECT_EQ(Value.text(), "-28.5000");
    QTest::keyClicks(&Location, "5");
    EXPECT_EQ(Low.GetLocation(), 0.25);
    QTest::keyClicks(&Location, "x");
    EXPECT_EQ(Low.GetLocation(), 0.25) << "no number, no change";
    Type(Location, "250");
    EXPECT_EQ(Low.GetLocation(), 1) << "the nearest place";
    EXPECT_EQ(Location.text(), "250");
}

TEST_F(GradientEditorFrame, MovesAStopWhileItsValueIsTyped) {
    Show();
    Editor.Select(High);
    Type(Value, "-");
    EXPECT_EQ(High.GetLocation(), 1) << "half a number is none";
    QTest::keyClicks(&Value, "15");
    EXPECT_EQ(High.GetLocation(), 0.2);
    EXPECT_EQ(Value.text(), "-15");
    EXPECT_EQ(Location.text(), "20.00");
    for (const char* bad : {"", "1e400", "nan", "1 2", "abc"}) {
        Type(Value, "-15");
        Value.setText(bad);
        EXPECT_EQ(High.GetLocation(), 0.2) << bad;
    }
}

TEST_F(GradientEditorFrame, PassesOverWhatIsNoNumberWithoutAWord) {
    const tests::TScriptedMsgBox messages;
    Show();
    Editor.Select(Low);
    Low.SetLocation(0.25);
    for (QLineEdit* field : {&Location, &Value})
        for (const QString& bad : {QString(""), QString(" "), QString("-"), QString("+"), QString("."), QString("abc"),
                                   QString("1 2"), QString("0,5"), QString("0x10"), QString("1e400"), QString("-1e400"),
                                   QString("nan"), QString("inf"), QString("5 %"), QString(30'000, u'9')}) {
            field->setText(bad);
            EXPECT_EQ(Low.GetLocation(), 0.25) << field->objectName().toStdString() << ' ' << bad.left(9).toStdString();
            EXPECT_EQ(field->text(), bad);
        }
    QCoreApplication::processEvents();
    EXPECT_TRUE(messages->Shown.empty());
    Location.setText(" 5e1 ");
    EXPECT_EQ(Low.GetLocation(), 0.5) << "blanks around a number are none of it";
    Location.setText("1e300");
    EXPECT_EQ(Low.GetLocation(), 1);
}

TEST_F(GradientEditorFrame, FollowsTheDecimalSeparator) {
    const TFormatSettingsScope comma{TFormatSettings{u','}};
    Show();
    Editor.Select(High);
    EXPECT_EQ(Location.text(), "100,00");
    EXPECT_EQ(Value.text(), "45,0000");
    Type(Location, "12,5");
    EXPECT_EQ(High.GetLocation(), 0.125);
    EXPECT_EQ(Value.text(), "-20,6250");
    Type(Value, "30.5");
    EXPECT_EQ(High.GetLocation(), 0.8) << "30 is a number, and with a point there is none";
}

TEST_F(GradientEditorFrame, WritesTwoDecimalsOfAPlaceAndFourOfAValue) {
    Editor.Select(Low);
    Low.SetLocation(0.00125);
    EXPECT_EQ(Location.text(), "0.13") << "a half is rounded up";
    Frame->SetValueRange(0, 1e-6);
    EXPECT_EQ(Value.text(), "0.0000");
    Value.setText("2.5e-7");
    EXPECT_EQ(Low.GetLocation(), 0.25) << "though more can be typed";
    Frame->SetValueRange(1e6, -1e6);
    EXPECT_EQ(Value.text(), "500000.0000");
    Value.setText("-5e5");
    EXPECT_EQ(Low.GetLocation(), 0.75) << "upside down";
}

TEST_F(GradientEditorFrame, ShowsNothingOfOtherStops) {
    Editor.Select(Low);
    High.SetLocation(0.5);
    High.SetColor(0xFF010203U);
    EXPECT_EQ(Location.text(), "0.00");
    EXPECT_EQ(Value.text(), "-30.0000");
    EXPECT_EQ(Color.GetColor(), Blue);
}

TEST_F(GradientEditorFrame, FollowsWhatIsTakenBack) {
    Show();
    Editor.Select(Low);
    Type(Location, "25");
    Editor.setFocus();
    QTest::keySequence(&Editor, QKeySequence(QKeySequence::Undo));
    EXPECT_EQ(Location.text(), "2.00") << "each key was a change";
    QTest::keySequence(&Editor, QKeySequence(QKeySequence::Undo));
    EXPECT_EQ(Location.text(), "0.00");
    EXPECT_EQ(Value.text(), "-30.0000");
    QTest::keySequence(&Editor, QKeySequence(QKeySequence::Redo));
    EXPECT_EQ(Location.text(), "2.00");
}

TEST_F(GradientEditorFrame, GivesAStopAnotherColor) {
    Show();
    Editor.Select(High);
    Chooser->Answers = {0x40123456U, std::nullopt, 0xFF00FF00U, 0x11223344U};
    QTest::mouseClick(&Color, Qt::LeftButton);
    EXPECT_EQ(High.GetColor(), 0x40123456U);
    QTest::mouseClick(&Color, Qt::LeftButton); // and cancel
    EXPECT_EQ(High.GetColor(), 0x40123456U);
    QTest::keyClick(&Editor, Qt::Key_Space);
    EXPECT_EQ(High.GetColor(), 0xFF00FF00U);
    EXPECT_EQ(Color.GetColor(), 0xFF00FF00U);
    EXPECT_EQ(Chooser->Shown, (std::vector<TColor32>{Red, 0x40123456U, 0xFF123456U})) << "the editor's wish, opaque";
    EXPECT_EQ(Chooser->Made, std::vector<TColorChooserDialogOptions>{{TColorChooserDialogOption::coColor32}});
    Editor.Select({});
    QTest::mouseClick(&Color, Qt::LeftButton);
    EXPECT_EQ(Color.GetColor(), 0x11223344U) << "that of the next stop";
    EXPECT_EQ(Text(), "(0:#FF0000FF),(1:#FF00FF00)");
    QTest::mouseDClick(&Editor, Qt::LeftButton, {}, Editor.BarRect().center());
    EXPECT_EQ(Editor.GetSelected().GetColor(), 0x11223344U);
    Chooser->Answers = {0x40ABCDEFU, std::nullopt};
    QTest::keyClick(&Editor, Qt::Key_Space);
    EXPECT_EQ(Editor.GetSelected().GetColor(), 0x40ABCDEFU) << "with the alpha that was chosen";
    QTest::keyClick(&Editor, Qt::Key_Space); // and cancel
    EXPECT_EQ(Editor.GetSelected().GetColor(), 0x40ABCDEFU);
}

TEST_F(GradientEditorFrame, DeletesOneAndAll) {
    Show();
    Click("btnDel");
    EXPECT_EQ(Editor.GetCount(), 2) << "none is selected";
    Editor.Select(Low);
    Click("btnDel");
    EXPECT_EQ(Text(), "(1:#80FF0000)");
    EXPECT_EQ(Location.text(), "100.00") << "the neighbour's";
    Click("btnClear");
    EXPECT_EQ(Editor.GetCount(), 0);
    EXPECT_FALSE(Location.isEnabled());
}

TEST_F(GradientEditorFrame, ExchangesGradientsByTheClipboard) {
    const tests::TScriptedClipboard clipboard;
    Show();
    Click("btnPaste");
    EXPECT_EQ(Editor.GetCount(), 2) << "nothing there";
    TClipboardEnvelope::SetText("CLASSIFIED", "x");
    Click("btnPaste");
    EXPECT_EQ(Editor.GetCount(), 2) << "nothing of that kind";
    Click("btnCopy");
    EXPECT_EQ(TClipboardEnvelope::GetText("GRADIENT"), "(0:#FF0000FF),(1:#80FF0000)");
    Click("btnClear");
    Click("btnPaste");
    EXPECT_EQ(Text(), "(0:#FF0000FF),(1:#80FF0000)");
    Editor.Undo();
    EXPECT_EQ(Editor.GetCount(), 0) << "a paste is one change";
}

TEST_F(GradientEditorFrame, LosesNothingByADamagedText) {
    const tests::TScriptedClipboard clipboard;
    const tests::TScriptedMsgBox messages;
    Show();
    Editor.Select(Low);
    std::size_t count = 0;
    for (const QString& bad :
         {QString("(0:#FF00"), QString("x"), QString("()"), QString("(0:#FF0000FF"), QString("(0;#FF0000FF)"),
          QString("(0:#GG0000FF)"), QString("(0:#FF0000FF),"), QString("(0,5:#FF0000FF)"), QString("(1e400:#FF0000FF)"),
          QString("(0:#FF0000FF)(1:#FF0000FF)"), QString(100'000, u'(')}) {
        TClipboardEnvelope::SetText("GRADIENT", bad);
        Click("btnPaste");
        QCoreApplication::processEvents();
        ASSERT_EQ(messages->Shown.size(), ++count) << bad.left(30).toStdString();
        EXPECT_EQ(messages->Shown.back().Text, "Invalid gradient text");
        EXPECT_EQ(Text(), "(0:#FF0000FF),(1:#80FF0000)");
        EXPECT_EQ(Editor.GetSelected(), Low);
    }
}

TEST_F(GradientEditorFrame, PastesWhatStandsThereHoweverOdd) {
    const tests::TScriptedClipboard clipboard;
    Show();
    QStringList stops;
    for (int i = 0; i < 5000; ++i)
        stops += "(0.5:#FF00000" + QString(QChar(u'0' + i % 10)) + ')';
    TClipboardEnvelope::SetText("GRADIENT", stops.join(u','));
    Click("btnPaste");
    EXPECT_EQ(Editor.GetCount(), 5000);
    TClipboardEnvelope::SetText("GRADIENT", "(nan:#FF000001),(inf:#FF000002),(-7:#FF000003)");
    Click("btnPaste");
    EXPECT_EQ(Text(), "(nan:#FF000001),(inf:#FF000002),(-7:#FF000003)");
    Click("btnNext");
    EXPECT_EQ(Location.text(), "-700.00") << "the only one that has a place";
    TClipboardEnvelope::SetText("GRADIENT", {});
    Click("btnPaste");
    EXPECT_EQ(Editor.GetCount(), 0) << "no stops are a gradient, too";
}

TEST_F(GradientEditorFrame, SurvivesItsEndWhileAColorIsChosen) {
    Show();
    Editor.Select(Low);
    Chooser->Answers = {0xFF123456U};
    Chooser->WhileOpen = [this] { Frame.reset(); };
    QTest::keyClick(&Editor, Qt::Key_Space);
    EXPECT_EQ(Frame, nullptr);
}

TEST_F(GradientEditorFrame, TakesAScaleOfThePackFromItsMenu) {
    Show();
    auto& presets = Find<QPushButton>("btnPresets");
    EXPECT_EQ(presets.text(), "Pre&sets");
    QMenu& menu = *presets.menu();
    menu.popup({0, 0});
    QStringList groups;
    for (const QAction* entry : menu.actions())
        groups += entry->isSeparator() ? QStringLiteral("-") : entry->text();
    EXPECT_EQ(groups, (QStringList{"Sequential", "Diverging", "Cyclic", "Categorical", "Climate", "-", "&Reverse"}));
    QMenu* climate = menu.actions()[4]->menu();
    QStringList names;
    for (const QAction* entry : climate->actions())
        names += entry->text();
    EXPECT_EQ(names, (QStringList{"Temperature", "Rain", "Anomaly", "Rain anomaly", "Relief", "Sea ice"}));

    climate->popup({0, 0});
    QTest::mouseClick(climate, Qt::LeftButton, {}, climate->actionGeometry(climate->actions()[5]).center());
    EXPECT_FALSE(climate->isVisible());
    const auto expected = TColorPack::Find("Sea ice")->CreateGradient();
    EXPECT_EQ(Editor.GetGradient()->ToString(), expected->ToString());
    EXPECT_FALSE(Location.isEnabled()) << "no stop is selected";
    Editor.Undo();
    EXPECT_EQ(Editor.GetCount(), 2);
}

TEST_F(GradientEditorFrame, PicturesTheScalesInItsMenu) {
    Show();
    QMenu& menu = *Find<QPushButton>("btnPresets").menu();
    menu.popup({0, 0});
    QMenu* climate = menu.actions()[4]->menu();
    climate->popup({0, 0});
    const QImage picture = climate->grab().toImage();
    const QRect row = climate->actionGeometry(climate->actions()[5]);
    const double ratio = climate->devicePixelRatioF();
    const auto at = [&](int fromRight) {
        return picture.pixel(static_cast<int>((row.right() - fromRight) * ratio),
                             static_cast<int>(row.center().y() * ratio));
    };
    EXPECT_LT(qGray(at(95)), 80) << "the dark end";
    EXPECT_GT(qGray(at(8)), 230) << "the light end";
    climate->close();
    menu.close();
    menu.popup({0, 0});
    EXPECT_EQ(menu.actions().size(), 7) << "the groups come once";
    menu.close();
}

TEST_F(GradientEditorFrame, TurnsTheGradientRound) {
    Show();
    auto& menu = *Find<QPushButton>("btnPresets").menu();
    QAction* reverse = menu.actions().last();
    Editor.SetGradient(TGradientFactory::GetObject(
        std::vector<TColorStop>{{0, 0xFF000001U}, {0.25, 0xFF000002U}, {0.25, 0xFF000003U}, {1, 0xFF000004U}}));
    menu.popup({0, 0});
    EXPECT_TRUE(reverse->isEnabled());
    QTest::keyClick(&menu, Qt::Key_R);
    EXPECT_EQ(Editor.GetGradient()->ToString(), "(0:#FF000004),(0.75:#FF000003),(0.75:#FF000002),(1:#FF000001)");
    Editor.Clear();
    menu.popup({0, 0});
    EXPECT_FALSE(reverse->isEnabled());
    menu.close();
}

TEST_F(GradientEditorFrame, LeavesTheBarAsHighAsItIsUseful) {
    Frame->resize(800, 1000);
    Show();
    const int high = Editor.height();
    EXPECT_EQ(high, 2 * Editor.sizeHint().height());
    EXPECT_LT(Location.geometry().bottom(), 500) << "the fields stay at the bar";
    QFont large = Frame->font();
    large.setPointSize(24);
    Frame->setFont(large);
    EXPECT_TRUE(QTest::qWaitFor([&] { return Editor.height() > high; }));
    EXPECT_GE(Editor.height(), Editor.minimumSizeHint().height());
}

TEST_F(GradientEditorFrame, IsReadAndOperatedAtEveryFontSize) {
    tests::CheckForm(
        [] {
            auto frame = std::make_unique<TGradientEditorFrame>();
            frame->GetGradEdit()->SelectNextGrabber();
            return frame;
        },
        {QStringLiteral("Alt+C")});
}

} // namespace
} // namespace lmx
