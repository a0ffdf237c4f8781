#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Widgets/lmxBaseToggleButton.h>
#include <tests/Support/CoordinatePrinters.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/WidgetPictures.h>

#include <QAccessible>

namespace lmx {
namespace {

/// Writes down the states that it renders.
class TTestToggle : public TBaseToggleButton {
public:
    using TBaseToggleButton::GetRenderPoint;
    using TBaseToggleButton::TBaseToggleButton;

    std::vector<bool> Rendered;
    bool Fails = false;

protected:
    void RenderToggleState(QPainter& canvas, bool state) override {
        Rendered.push_back(state);
        if (Fails)
            throw Exception(QStringLiteral("no picture"));
        canvas.fillRect(rect(), state ? Qt::red : Qt::blue);
    }
};

struct BaseToggleButton : testing::Test {
    BaseToggleButton() {
        QObject::connect(&Button, &QAbstractButton::toggled, [this](bool on) { Toggled.push_back(on); });
        QObject::connect(&Button, &QAbstractButton::clicked, [this] { ++Clicks; });
    }
    TTestToggle Button;
    std::vector<bool> Toggled;
    int Clicks = 0;
};

TEST_F(BaseToggleButton, BeginsUnselected) {
    EXPECT_FALSE(Button.GetSelected());
    EXPECT_EQ(Button.sizeHint(), QSize(20, 20));
}

TEST_F(BaseToggleButton, IsTurnedOverWithoutAClick) {
    Button.Toggle();
    EXPECT_TRUE(Button.GetSelected());
    Button.Toggle();
    EXPECT_FALSE(Button.GetSelected());
    EXPECT_EQ(Toggled, (std::vector{true, false}));
    EXPECT_EQ(Clicks, 0);
}

TEST_F(BaseToggleButton, TellsOnlyOfRealChanges) {
    Button.SetSelected(false);
    Button.SetSelected(true);
    Button.SetSelected(true);
    EXPECT_EQ(Toggled, std::vector{true});
}

TEST_F(BaseToggleButton, IsTurnedOverByAClickAndByTheSpaceBar) {
    tests::ShowActive(Button);
    QTest::mouseClick(&Button, Qt::LeftButton);
    EXPECT_TRUE(Button.GetSelected());
    Button.setFocus();
    QTest::keyClick(&Button, Qt::Key_Space);
    EXPECT_FALSE(Button.GetSelected());
    EXPECT_EQ(Clicks, 2);
}

TEST_F(BaseToggleButton, LeavesOtherMouseButtonsAndADragOutAlone) {
    tests::ShowActive(Button);
    QTest::mouseClick(&Button, Qt::RightButton);
    QTest::mousePress(&Button, Qt::LeftButton);
    QTest::mouseRelease(&Button, Qt::LeftButton, {}, {-5, -5});
    EXPECT_FALSE(Button.GetSelected());
    EXPECT_EQ(Clicks, 0);
}

TEST_F(BaseToggleButton, StaysAsItIsWhileDisabled) {
    Button.setEnabled(false);
    tests::ShowActive(Button);
    QTest::mouseClick(&Button, Qt::LeftButton);
    EXPECT_FALSE(Button.GetSelected());
}

TEST_F(BaseToggleButton, RendersItsState) {
    EXPECT_EQ(tests::PictureOf(Button).pixel(5, 5), 0xFF0000FFU);
    Button.Toggle();
    EXPECT_EQ(tests::PictureOf(Button).pixel(5, 5), 0xFFFF0000U);
    EXPECT_EQ(Button.Rendered, (std::vector{false, true}));
}

TEST_F(BaseToggleButton, IsPaleWhileDisabled) {
    Button.Toggle();
    Button.setEnabled(false);
    const QRgb pixel = tests::PictureOf(Button).pixel(5, 5);
    EXPECT_GT(qGreen(pixel), 0x40);
    EXPECT_LT(qGreen(pixel), 0xFF);
}

TEST_F(BaseToggleButton, PutsAPictureInTheMiddle) {
    Button.resize(20, 21);
    EXPECT_EQ(Button.GetRenderPoint({12, 12}), TPoint(4, 4));
    EXPECT_EQ(Button.GetRenderPoint({20, 21}), TPoint(0, 0));
    EXPECT_EQ(Button.GetRenderPoint({23, 24}), TPoint(-2, -2)) << "larger than the button";
}

TEST_F(BaseToggleButton, ShowsWhatItsPictureRaisesOnce) {
    const tests::TScriptedMsgBox messages;
    Button.Fails = true;
    tests::PictureOf(Button);
    tests::PictureOf(Button);
    QCoreApplication::processEvents();
    EXPECT_EQ(messages->Shown, (std::vector<tests::TShownMessage>{{"Error", "no picture", "Error", &Button}}));
    EXPECT_EQ(Button.Rendered.size(), 1U);
    Button.Fails = false;
    QPalette palette;
    palette.setColor(QPalette::ButtonText, Qt::yellow);
    Button.setPalette(palette);
    EXPECT_EQ(tests::PictureOf(Button).pixel(5, 5), 0xFF0000FFU) << "a change of its look is another chance";
}

TEST_F(BaseToggleButton, TellsScreenReadersItsNameAndState) {
    Button.SetHint(QStringLiteral("Toggle it"));
    Button.Toggle();
    EXPECT_EQ(Button.toolTip(), "Toggle it");
    const QAccessibleInterface* told = QAccessible::queryAccessibleInterface(&Button);
    ASSERT_TRUE(told);
    EXPECT_EQ(told->text(QAccessible::Name), "Toggle it");
    EXPECT_TRUE(told->state().checkable);
    EXPECT_TRUE(told->state().checked);
}

} // namespace
} // namespace lmx
