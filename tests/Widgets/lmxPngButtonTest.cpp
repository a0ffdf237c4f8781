#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Widgets/lmxExternalResources.h>
#include <lmx/Widgets/lmxPngButton.h>
#include <lmx/Widgets/lmxServiceSlot.h>
#include <tests/Support/Printers.h>
#include <tests/Support/WidgetPictures.h>

#include <QVBoxLayout>

// These tests hold at every ratio of the screen; they run at 1, 1.5 and 2.

namespace lmx {
namespace {

using tests::MessageOf;

const QString Edit = QStringLiteral("MapWindowFactory.Edit");

/// One image of 8 x 6 logical pixels, in the ink, that counts how often it is asked for.
class TCountedImages final : public IExternalResourcesService {
public:
    int Asked = 0;
    QImage GetImage(const QString& name, double ratio, const QColor& ink) override {
        if (name != QStringLiteral("Own"))
            return {};
        ++Asked;
        QImage image(static_cast<int>(8 * ratio), static_cast<int>(6 * ratio), QImage::Format_ARGB32);
        image.fill(ink);
        image.setDevicePixelRatio(ratio);
        return image;
    }
};

void SetInk(QWidget& widget, const QColor& ink) {
    QPalette palette = widget.palette();
    palette.setColor(QPalette::ButtonText, ink);
    widget.setPalette(palette);
}

TEST(PngButton, IsAsLargeAsItsImage) {
    const TPngButton button(nullptr, Edit, QStringLiteral("Edit ruler"));
    EXPECT_EQ(button.size(), QSize(24, 24));
    EXPECT_EQ(button.sizeHint(), QSize(24, 24));
    EXPECT_EQ(button.GetImageName(), Edit);
}

TEST(PngButton, SaysItsHint) {
    const TPngButton button(nullptr, Edit, QStringLiteral("Edit ruler"));
    EXPECT_EQ(button.toolTip(), "Edit ruler");
    EXPECT_EQ(button.accessibleName(), "Edit ruler");
    EXPECT_FALSE(button.isCheckable());
}

TEST(PngButton, RefusesAnUnknownImageAndStaysAsItWas) {
    EXPECT_EQ(MessageOf<EArgumentException>([] { TPngButton(nullptr, "Nothing", {}); }),
              "There is no image \"Nothing\"");
    TPngButton button(nullptr, Edit, {});
    EXPECT_EQ(MessageOf<EArgumentException>([&] { button.SetImageName("Nothing"); }), "There is no image \"Nothing\"");
    EXPECT_EQ(button.GetImageName(), Edit);
    EXPECT_EQ(button.size(), QSize(24, 24));
}

TEST(PngButton, ClicksByMouseAndSpaceBar) {
    TPngButton button(nullptr, Edit, {});
    int clicks = 0;
    QObject::connect(&button, &QAbstractButton::clicked, [&] { ++clicks; });
    tests::ShowActive(button);
    QTest::mouseClick(&button, Qt::LeftButton);
    button.setFocus();
    QTest::keyClick(&button, Qt::Key_Space);
    EXPECT_EQ(clicks, 2);
}

TEST(PngButton, ShowsItsImagePixelForPixelInTheColourOfText) {
    TPngButton button(nullptr, Edit, {});
    for (const QColor ink : {QColor(20, 30, 40), QColor(250, 240, 230)}) {
        SetInk(button, ink);
        const QImage picture = tests::PictureOf(button);
        const QImage image = TExternalResources::GetImage(Edit, button.devicePixelRatioF(), ink);
        ASSERT_EQ(picture.size(), image.size());
        int solid = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (qAlpha(image.pixel(x, y)) != 255)
                    continue;
                ++solid;
                ASSERT_EQ(picture.pixel(x, y), ink.rgb()) << x << ',' << y;
            }
        }
        EXPECT_GT(solid, 30);
    }
}

TEST(PngButton, KeepsItsImageUntilColoursChange) {
    const auto images = std::make_shared<TCountedImages>();
    const TServiceScope<TExternalResources> scope(images);
    TPngButton button(nullptr, QStringLiteral("Own"), {});
    EXPECT_EQ(button.size(), QSize(8, 6));
    images->Asked = 0;
    SetInk(button, Qt::red);
    EXPECT_EQ(tests::PictureOf(button).pixel(0, 0), 0xFFFF0000U);
    EXPECT_EQ(tests::PictureOf(button).pixel(0, 0), 0xFFFF0000U);
    EXPECT_EQ(images->Asked, 1);
    SetInk(button, Qt::blue);
    EXPECT_EQ(tests::PictureOf(button).pixel(0, 0), 0xFF0000FFU);
    EXPECT_EQ(images->Asked, 2);
}

TEST(PngButton, ShowsTheKeyboardFocus) {
    QWidget window;
    auto* first = new TPngButton(&window, Edit, {});
    auto* second = new TPngButton(&window, Edit, {});
    auto* column = new QVBoxLayout(&window);
    column->addWidget(first);
    column->addWidget(second);
    tests::ShowActive(window);
    first->setFocus();
    const QImage without = tests::PictureOf(*second);
    QTest::keyClick(first, Qt::Key_Tab);
    ASSERT_TRUE(second->hasFocus());
    EXPECT_NE(tests::PictureOf(*second), without);
}

} // namespace
} // namespace lmx
