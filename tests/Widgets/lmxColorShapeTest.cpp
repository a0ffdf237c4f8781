#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Widgets/lmxColorShape.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/WidgetPictures.h>

#include <QMouseEvent>

#include <memory>

namespace lmx {
namespace {

constexpr TColor Orange = {0x000080FF}; // blue, green, red

struct ColorShape : testing::Test {
    TColorShape Shape;
    tests::TScriptedColorChooser Chooser;
};

TEST_F(ColorShape, BeginsWhite) {
    EXPECT_EQ(Shape.GetColor(), clWhite);
    EXPECT_EQ(Shape.accessibleDescription(), "#FFFFFF");
}

TEST_F(ColorShape, ShowsItsColourInAFrameThatReachesToTheEdges) {
    Shape.SetColor(Orange);
    Shape.resize(Shape.sizeHint());
    const QImage picture = tests::PictureOf(Shape);
    const QRgb frame = Shape.palette().color(QPalette::WindowText).rgb();
    const int middle = picture.height() / 2;
    EXPECT_EQ(picture.pixel(picture.width() / 2, middle), 0xFFFF8000U);
    EXPECT_EQ(picture.pixel(0, middle), frame);
    EXPECT_EQ(picture.pixel(picture.width() - 1, middle), frame);
    EXPECT_EQ(picture.pixel(picture.width() / 2, 0), frame);
    EXPECT_EQ(picture.pixel(picture.width() / 2, picture.height() - 1), frame);
    EXPECT_EQ(Shape.accessibleDescription(), "#FF8000");
}

TEST_F(ColorShape, MarksTheFocusInsideItsEdges) {
    QPalette colors;
    colors.setColor(QPalette::Highlight, Qt::red);
    colors.setColor(QPalette::Window, Qt::blue);
    colors.setColor(QPalette::WindowText, Qt::green);
    Shape.setPalette(colors);
    tests::ShowActive(Shape);
    const auto edge = [this] {
        std::string letters;
        for (const int x : {0, 1, 2, 3, 6}) // behind the frame, however wide its line is
            letters += tests::Letters(tests::PictureOf(Shape), tests::DevicePixel(Shape, {x, 10}), {10000, 0},
                                      {{0xFFFF0000U, 'm'}, {0xFF0000FFU, 'g'}, {0xFF00FF00U, 'f'}, {0xFFFFFFFFU, 'c'}});
        return letters;
    };
    Shape.setFocus();
    EXPECT_EQ(edge(), "mggfc") << "mark, ground, frame, colour";
    Shape.clearFocus();
    EXPECT_EQ(edge(), "fcccc");
}

TEST_F(ColorShape, GrowsWithTheFont) {
    const QSize small = Shape.sizeHint();
    QFont font = Shape.font();
    font.setPointSize(40);
    Shape.setFont(font);
    EXPECT_GT(Shape.sizeHint().height(), small.height());
    EXPECT_GE(Shape.sizeHint().height(), Shape.fontMetrics().height());
    EXPECT_EQ(Shape.sizeHint().width(), small.width());
}

TEST_F(ColorShape, ResolvesASystemColour) {
    const TSystemColorsScope colors(std::make_shared<TFixedSystemColors>());
    Shape.SetColor(clHighlight);
    EXPECT_EQ(Shape.accessibleDescription(), "#0078D7");
}

TEST_F(ColorShape, LetsTheUserChooseAtThePress) {
    Shape.SetColor(Orange);
    Chooser->Answers = {0x80102030U};
    tests::ShowActive(Shape);
    QTest::mousePress(&Shape, Qt::LeftButton);
    EXPECT_EQ(Chooser->Shown, std::vector<TColor32>{0xFFFF8000U});
    EXPECT_EQ(Chooser->Made, std::vector<TColorChooserDialogOptions>{{}}) << "opaque colours only";
    EXPECT_EQ(Color32(Shape.GetColor()), 0xFF102030U);
    QTest::mouseRelease(&Shape, Qt::LeftButton);
    EXPECT_EQ(Chooser->Shown.size(), 1U);
    EXPECT_FALSE(Shape.isDown());
}

TEST_F(ColorShape, TakesAnyMouseButtonAndTheSpaceBar) {
    Chooser->Answers = {0xFF000001U, 0xFF000002U};
    tests::ShowActive(Shape);
    QTest::mouseClick(&Shape, Qt::RightButton);
    EXPECT_EQ(Color32(Shape.GetColor()), 0xFF000001U);
    Shape.setFocus();
    QTest::keyClick(&Shape, Qt::Key_Space);
    EXPECT_EQ(Color32(Shape.GetColor()), 0xFF000002U);
}

TEST_F(ColorShape, KeepsItsColourAfterACancel) {
    Shape.SetColor(Orange);
    Chooser->Answers = {std::nullopt};
    tests::ShowActive(Shape);
    QTest::mouseClick(&Shape, Qt::LeftButton);
    EXPECT_EQ(Shape.GetColor(), Orange);
}

TEST_F(ColorShape, MayGoWhileTheUserChooses) {
    auto shape = std::make_unique<TColorShape>();
    Chooser->Answers = {0xFF102030U};
    Chooser->WhileOpen = [&] { shape.reset(); };
    shape->SelectColor();
    EXPECT_EQ(shape, nullptr);
    shape = std::make_unique<TColorShape>();
    Chooser->Answers = {0xFF102030U};
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(5, 5), shape->mapToGlobal(QPointF(5, 5)), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(shape.get(), &press);
    EXPECT_EQ(shape, nullptr);
}

} // namespace
} // namespace lmx
