#include <lmx/Widgets/Private/lmxFormHeading.h>
#include <tests/Support/Printers.h>
#include <tests/Support/WidgetPictures.h>

#include <QFontInfo>

namespace lmx {
namespace {

TEST(FormHeading, ShowsItsTextLargeAndAsItIs) {
    const TFormHeading heading(QStringLiteral("<b>Ruler</b>"));
    EXPECT_EQ(heading.text(), "<b>Ruler</b>");
    EXPECT_EQ(heading.textFormat(), Qt::PlainText);
    EXPECT_GT(QFontInfo(heading.HeadingFont()).pixelSize(), QFontInfo(QLabel().font()).pixelSize());
    EXPECT_TRUE(heading.HeadingFont().bold());
}

TEST(FormHeading, FollowsTheFontOfItsDialog) {
    QWidget dialog;
    const TFormHeading heading(QStringLiteral("Ruler"), &dialog);
    const QSize before = heading.sizeHint();
    EXPECT_GE(before.width(), QFontMetrics(heading.HeadingFont()).horizontalAdvance(heading.text()) + 24);
    QFont large = dialog.font();
    large.setPixelSize(QFontInfo(large).pixelSize() * 2);
    dialog.setFont(large);
    EXPECT_GT(heading.sizeHint().height(), before.height());
    EXPECT_GT(heading.sizeHint().width(), before.width());
}

TEST(FormHeading, EndsWithALineOnTheColourOfFields) {
    TFormHeading heading(QStringLiteral("Ruler"));
    QPalette palette;
    palette.setColor(QPalette::Base, Qt::blue);
    palette.setColor(QPalette::Mid, Qt::red);
    heading.setPalette(palette);
    heading.resize(200, 30);
    const QImage picture = tests::PictureOf(heading);
    EXPECT_EQ(picture.pixel(1, 1), 0xFF0000FFU);
    EXPECT_EQ(picture.pixel(1, picture.height() - 1), 0xFFFF0000U);
}

} // namespace
} // namespace lmx
