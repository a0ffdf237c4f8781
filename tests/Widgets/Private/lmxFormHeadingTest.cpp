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
    EXPECT_GT(QFontInfo(heading.font()).pixelSize(), QFontInfo(QLabel().font()).pixelSize());
    EXPECT_TRUE(heading.font().bold());
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
