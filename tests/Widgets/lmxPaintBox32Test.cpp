#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxExtended.h>
#include <lmx/Widgets/lmxPaintBox32.h>
#include <tests/Support/GeometryPrinters.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>

#include <QImage>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPixmap>
#include <QPointer>
#include <QTest>
#include <QWindow>

#include <functional>
#include <string>
#include <vector>

// These tests hold at every ratio of the screen; they run at 1, 1.5 and 2.

namespace lmx {
namespace {

using TNotes = std::vector<std::string>;

std::string Text(TPoint p) {
    return std::to_string(p.X) + "," + std::to_string(p.Y);
}
std::string Text(TMouseButton button) {
    return std::to_string(static_cast<int>(button));
}

/// A colour that tells its place; the alpha varies, since the screen must not care.
TColor32 PlaceColor(int x, int y) {
    return Color32(static_cast<std::uint8_t>(x), static_cast<std::uint8_t>(y),
                   static_cast<std::uint8_t>(x / 256 * 16 + y / 256), static_cast<std::uint8_t>(x + y));
}

class TTestBox : public TPaintBox32 {
public:
    int Paints = 0;
    int Resizes = 0;
    std::function<void()> WhilePainting;
    bool FailsToPaint = false;
    bool FailsToHandle = false;
    double Ratio = 0; ///< 0: that of the screen
    TNotes Notes;

    double GetDeviceRatio() const override { return Ratio != 0 ? Ratio : TPaintBox32::GetDeviceRatio(); }

protected:
    void DoPaintBuffer() override {
        ++Paints;
        if (FailsToPaint)
            throw Exception(QStringLiteral("paint failed"));
        const QPointer<TTestBox> self(this);
        if (const auto action = WhilePainting)
            action();
        if (!self)
            return;
        for (int y = 0; y < GetBuffer().GetHeight(); ++y)
            for (int x = 0; x < GetBuffer().GetWidth(); ++x)
                GetBuffer().ScanLine(y)[x] = PlaceColor(x, y);
        TPaintBox32::DoPaintBuffer();
    }
    void Resize() override {
        ++Resizes;
        TPaintBox32::Resize();
    }
    void MouseDown(TMouseButton button, TPoint p) override { Note("down " + Text(button) + " " + Text(p)); }
    void MouseMove(TPoint p) override { Note("move " + Text(p)); }
    void MouseUp(TMouseButton button, TPoint p) override { Note("up " + Text(button) + " " + Text(p)); }
    void KeyDown(int key) override { Note("key " + std::to_string(key)); }
    void KeyUp(int key) override { Note("release " + std::to_string(key)); }
    void DoEnter() override { Note("enter"); }
    void DoExit() override { Note("exit"); }

private:
    void Note(const std::string& note) {
        Notes.push_back(note);
        if (FailsToHandle)
            throw Exception(QStringLiteral("handler failed"));
    }
};

struct PaintBox32 : testing::Test {
    tests::TScriptedMsgBox Messages;
    std::unique_ptr<TTestBox> Box = std::make_unique<TTestBox>();

    void Show(int width = 103, int height = 51) {
        Box->resize(width, height);
        Box->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(Box.get()));
        QCoreApplication::processEvents();
    }
    /// The pixel in which a position of the widget lies.
    TPoint Pixel(double x, double y) const {
        const double ratio = Box->devicePixelRatioF();
        return {static_cast<std::int32_t>(Floor(x * ratio)), static_cast<std::int32_t>(Floor(y * ratio))};
    }
    void Mouse(QEvent::Type type, QPointF position, Qt::MouseButton button) {
        QMouseEvent event(type, position, Box->mapToGlobal(position), button, button, {});
        QCoreApplication::sendEvent(Box.get(), &event);
    }
    QImage Screen() { return Box->grab().toImage().convertToFormat(QImage::Format_ARGB32); }
};

// ---- Sizes

TEST_F(PaintBox32, HasABufferOfDevicePixels) {
    Show();
    const double ratio = Box->devicePixelRatioF();
    const TSize expected(static_cast<int>(Floor(103 * ratio + 0.5)), static_cast<int>(Floor(51 * ratio + 0.5)));
    EXPECT_EQ(Box->GetDeviceSize(), expected);
    EXPECT_EQ(Box->GetDeviceWidth(), expected.cx);
    EXPECT_EQ(Box->GetDeviceHeight(), expected.cy);
    EXPECT_EQ(Box->GetBuffer().GetWidth(), expected.cx);
    EXPECT_EQ(Box->GetBuffer().GetHeight(), expected.cy);
}

TEST_F(PaintBox32, IsNeverWithoutPixels) {
    EXPECT_EQ(TSize(Box->GetBuffer().GetWidth(), Box->GetBuffer().GetHeight()), TSize(1, 1));
    EXPECT_FALSE(Box->IsBufferValid());
    EXPECT_EQ(Box->sizeHint(), QSize(192, 192));
    QWidget window;
    window.resize(100, 100);
    TTestBox box;
    box.setParent(&window);
    box.resize(60, 0);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    EXPECT_EQ(box.GetDeviceHeight(), 0);
    EXPECT_EQ(TSize(box.GetBuffer().GetWidth(), box.GetBuffer().GetHeight()), TSize(box.GetDeviceWidth(), 1));
}

TEST_F(PaintBox32, ResizesOnceForEachSize) {
    Show();
    const int resizes = Box->Resizes;
    const int paints = Box->Paints;
    Box->resize(103, 51);
    Box->repaint();
    EXPECT_EQ(Box->Resizes, resizes);
    EXPECT_EQ(Box->Paints, paints);
    Box->resize(120, 70);
    QCoreApplication::processEvents();
    EXPECT_EQ(Box->Resizes, resizes + 1);
    EXPECT_EQ(Box->Paints, paints + 1);
    EXPECT_EQ(Box->GetBuffer().GetWidth(), Box->GetDeviceWidth());
}

TEST_F(PaintBox32, AnswersItsSizeWhileHiddenAndFollowsWithTheNextPaint) {
    Box->resize(80, 40);
    EXPECT_EQ(Box->GetDeviceSize(), TSize(static_cast<int>(Floor(80 * Box->devicePixelRatioF() + 0.5)),
                                          static_cast<int>(Floor(40 * Box->devicePixelRatioF() + 0.5))));
    Screen();
    EXPECT_EQ(Box->GetBuffer().GetWidth(), Box->GetDeviceWidth());
    EXPECT_EQ(Box->Paints, 1);
}

TEST_F(PaintBox32, NoticesAnotherRatioWithTheNextPaint) {
    Show(101, 51);
    const int resizes = Box->Resizes;
    Box->Ratio = 2.5;
    EXPECT_EQ(Box->GetDeviceSize(), TSize(253, 128)) << "halves up";
    Box->repaint();
    EXPECT_EQ(Box->Resizes, resizes + 1);
    EXPECT_EQ(Box->GetBuffer().GetWidth(), 253);
    EXPECT_EQ(Box->GetBuffer().GetHeight(), 128);
    EXPECT_EQ(Box->ToDevicePoint({10.5, -0.1}), TPoint(26, -1));
    EXPECT_EQ(Box->GetBuffer().GetDeviceRatio(), 2.5);
}

TEST_F(PaintBox32, NoticesARatioThatLeavesTheSizeAsItWas) {
    Show();
    const int resizes = Box->Resizes;
    const TSize size = Box->GetDeviceSize();
    Box->Ratio = Box->devicePixelRatioF() + 0.001;
    ASSERT_EQ(Box->GetDeviceSize(), size);
    Box->repaint();
    EXPECT_EQ(Box->Resizes, resizes + 1);
}

TEST_F(PaintBox32, FollowsTheRatioOfAnotherScreenAtOnce) {
    Show(101, 51);
    Box->setUpdatesEnabled(false); // no paint that would notice it, too
    Box->Ratio = 4;
    QWindow* window = Box->windowHandle();
    Q_EMIT window->screenChanged(window->screen());
    EXPECT_EQ(TSize(Box->GetBuffer().GetWidth(), Box->GetBuffer().GetHeight()), TSize(404, 204));
}

TEST_F(PaintBox32, HasAMarginIfAsked) {
    Show();
    Box->SetBufferOversize(4);
    EXPECT_EQ(Box->GetBufferOversize(), 4);
    EXPECT_EQ(Box->GetBuffer().GetWidth(), Box->GetDeviceWidth() + 8);
    EXPECT_EQ(Box->GetBuffer().GetHeight(), Box->GetDeviceHeight() + 8);
    const QImage screen = Screen();
    EXPECT_EQ(screen.pixel(0, 0), SetAlpha(PlaceColor(4, 4), 255));
    EXPECT_EQ(screen.pixel(20, 10), SetAlpha(PlaceColor(24, 14), 255));
    const int resizes = Box->Resizes;
    Box->SetBufferOversize(4);
    EXPECT_EQ(Box->Resizes, resizes);
    Box->SetBufferOversize(-3);
    EXPECT_EQ(Box->GetBufferOversize(), 0);
    Box->SetBufferOversize(1 << 30);
    EXPECT_EQ(Box->GetBufferOversize(), 4096);
}

TEST_F(PaintBox32, RemembersItsRepaintMode) {
    EXPECT_EQ(Box->GetRepaintMode(), TRepaintMode::rmFull);
    Box->SetRepaintMode(TRepaintMode::rmDirect);
    EXPECT_EQ(Box->GetRepaintMode(), TRepaintMode::rmDirect);
}

// ---- Painting

TEST_F(PaintBox32, ShowsEveryPixelOfItsBufferWithoutItsAlpha) {
    Show();
    const QImage screen = Screen();
    ASSERT_EQ(TSize(screen.size()), Box->GetDeviceSize());
    for (int y = 0; y < screen.height(); ++y)
        for (int x = 0; x < screen.width(); ++x)
            ASSERT_EQ(screen.pixel(x, y), SetAlpha(PlaceColor(x, y), 255)) << x << ", " << y;
    EXPECT_EQ(Box->GetBuffer().ScanLine(3)[5], PlaceColor(5, 3)) << "the buffer keeps its alpha";
}

TEST_F(PaintBox32, PaintsOnceForManyInvalidations) {
    Show();
    const int paints = Box->Paints;
    EXPECT_TRUE(Box->IsBufferValid());
    for (int i = 0; i < 3; ++i)
        Box->Invalidate();
    EXPECT_FALSE(Box->IsBufferValid());
    EXPECT_EQ(Box->Paints, paints);
    QTest::qWait(0);
    EXPECT_EQ(Box->Paints, paints + 1);
    EXPECT_TRUE(Box->IsBufferValid());
}

TEST_F(PaintBox32, ExposureOnlyCopies) {
    Show();
    const int paints = Box->Paints;
    Box->update();
    QTest::qWait(0);
    Box->repaint();
    EXPECT_EQ(Box->Paints, paints);
}

TEST_F(PaintBox32, ReportsAFailedPaintOnceUntilItIsInvalidatedAgain) {
    Box->FailsToPaint = true;
    Show();
    EXPECT_EQ(Box->Paints, 1);
    EXPECT_TRUE(Box->IsBufferValid());
    EXPECT_EQ(Messages->Shown, (std::vector<tests::TShownMessage>{{"Error", "paint failed", "Error", Box.get()}}));
    Box->repaint();
    QCoreApplication::processEvents();
    EXPECT_EQ(Box->Paints, 1);
    EXPECT_EQ(Messages->Shown.size(), 1U);
    Box->FailsToPaint = false;
    Box->Invalidate();
    QTest::qWait(0);
    EXPECT_EQ(Box->Paints, 2);
    EXPECT_EQ(Messages->Shown.size(), 1U);
}

TEST_F(PaintBox32, DoesNotShowAMessageInTheMiddleOfAPaint) {
    Show();
    Box->FailsToPaint = true;
    Box->Invalidate();
    Box->repaint();
    EXPECT_TRUE(Messages->Shown.empty());
    QCoreApplication::processEvents();
    EXPECT_EQ(Messages->Shown.size(), 1U);
}

TEST_F(PaintBox32, MayGoWhileItsBufferIsPainted) {
    Show();
    Box->WhilePainting = [this] { Box.reset(); };
    Box->Invalidate();
    QCoreApplication::processEvents();
    EXPECT_EQ(Box, nullptr);
}

TEST_F(PaintBox32, DoesNotPaintItsBufferInsideAPaintOfIt) {
    Show();
    Box->Paints = 0;
    Box->WhilePainting = [this] {
        Box->Invalidate();
        Box->repaint();
        Box->grab();
    };
    Box->Invalidate();
    QCoreApplication::processEvents();
    EXPECT_EQ(Box->Paints, 1);
    EXPECT_TRUE(Box->IsBufferValid());
}

TEST_F(PaintBox32, IsPaintedAgainIfItWasResizedMeanwhile) {
    Show();
    Box->Paints = 0;
    Box->WhilePainting = [this] {
        Box->WhilePainting = {};
        Box->resize(130, 60);
    };
    Box->Invalidate();
    QTest::qWait(0);
    EXPECT_EQ(Box->Paints, 2);
    EXPECT_TRUE(Box->IsBufferValid());
    EXPECT_EQ(Box->GetBuffer().GetWidth(), Box->GetDeviceWidth());
}

TEST_F(PaintBox32, IsNotPaintedWhileNobodySeesIt) {
    Show();
    Box->hide();
    Box->Paints = 0;
    Box->Invalidate();
    QTest::qWait(0);
    EXPECT_EQ(Box->Paints, 0);
    Box->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(Box.get()));
    QTest::qWait(0);
    EXPECT_EQ(Box->Paints, 1);
}

// ---- Mouse and keys

TEST_F(PaintBox32, HearsTheMouseInDevicePixels) {
    Show();
    Box->Notes.clear();
    Mouse(QEvent::MouseButtonPress, {10.4, 20.9}, Qt::LeftButton);
    Mouse(QEvent::MouseMove, {11, 21}, Qt::NoButton);
    Mouse(QEvent::MouseButtonRelease, {12, 22}, Qt::RightButton);
    Mouse(QEvent::MouseButtonPress, {-0.5, 0}, Qt::MiddleButton);
    Mouse(QEvent::MouseButtonPress, {1, 1}, Qt::BackButton);
    EXPECT_EQ(Box->Notes, (TNotes{"down 0 " + Text(Pixel(10.4, 20.9)), "move " + Text(Pixel(11, 21)),
                                  "up 1 " + Text(Pixel(12, 22)), "down 2 -1,0"}));
}

TEST_F(PaintBox32, TakesTheSecondPressOfADoubleClickForAPress) {
    Show();
    Box->Notes.clear();
    Mouse(QEvent::MouseButtonPress, {10, 10}, Qt::LeftButton);
    Mouse(QEvent::MouseButtonRelease, {10, 10}, Qt::LeftButton);
    Mouse(QEvent::MouseButtonDblClick, {10, 10}, Qt::LeftButton);
    Mouse(QEvent::MouseButtonRelease, {10, 10}, Qt::LeftButton);
    const std::string at = " 0 " + Text(Pixel(10, 10));
    EXPECT_EQ(Box->Notes, (TNotes{"down" + at, "up" + at, "down" + at, "up" + at}));
}

TEST_F(PaintBox32, IsSetUpForMouseFocusAndMenus) {
    EXPECT_TRUE(Box->hasMouseTracking());
    EXPECT_EQ(Box->focusPolicy(), Qt::StrongFocus);
    EXPECT_EQ(Box->contextMenuPolicy(), Qt::PreventContextMenu);
}

TEST_F(PaintBox32, HearsAHeldKeyManyTimesAndItsReleaseOnce) {
    Show();
    Box->Notes.clear();
    const auto send = [this](QEvent::Type type, bool repeated) {
        QKeyEvent event(type, Qt::Key_Space, {}, QStringLiteral(" "), repeated);
        QCoreApplication::sendEvent(Box.get(), &event);
    };
    send(QEvent::KeyPress, false);
    send(QEvent::KeyRelease, true);
    send(QEvent::KeyPress, true);
    send(QEvent::KeyRelease, false);
    EXPECT_EQ(Box->Notes, (TNotes{"key 32", "key 32", "release 32"}));
}

TEST_F(PaintBox32, HearsOfTheFocus) {
    Show();
    Box->Notes.clear();
    for (const auto type : {QEvent::FocusIn, QEvent::FocusOut}) {
        QFocusEvent event(type);
        QCoreApplication::sendEvent(Box.get(), &event);
    }
    EXPECT_EQ(Box->Notes, (TNotes{"enter", "exit"}));
}

TEST_F(PaintBox32, ReportsWhatItsHandlersRaise) {
    Show();
    Messages->Shown.clear();
    Box->FailsToHandle = true;
    QTest::mouseClick(Box.get(), Qt::LeftButton, {}, {5, 5});
    QTest::keyClick(Box.get(), Qt::Key_A);
    QCoreApplication::processEvents();
    Box->FailsToHandle = false;
    ASSERT_EQ(Messages->Shown.size(), 4U);
    for (const tests::TShownMessage& message : Messages->Shown)
        EXPECT_EQ(message.Text, "handler failed");
}

} // namespace
} // namespace lmx
