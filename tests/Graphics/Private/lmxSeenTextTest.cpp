#include <lmx/Graphics/Private/lmxSeenText.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxFont32.h>

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace lmx {
namespace {

constexpr int Width = 160;
constexpr int Height = 90;
constexpr int Margin = 10; // of the picture around the box

QFont TestFont() {
    TFont32 font;
    font.Size = 9;
    return MakeFont(font, TFontSmoothing::fsGrey);
}

int QtFlags(unsigned flags) {
    const int across = flags & dtCenter ? Qt::AlignHCenter : flags & dtRight ? Qt::AlignRight : Qt::AlignLeft;
    return across | Qt::AlignTop | (flags & dtWordBreak ? Qt::TextWordWrap : 0) |
           (flags & dtSingleLine ? Qt::TextSingleLine : 0) | Qt::TextShowMnemonic;
}

QImage PictureOf(const QString& text, unsigned flags) {
    QImage picture(Width + Margin, Height + Margin, QImage::Format_Grayscale8);
    picture.fill(255);
    QPainter painter(&picture);
    painter.setFont(TestFont());
    painter.drawText(QRect(0, 0, Width, Height), QtFlags(flags), text);
    return picture;
}

qsizetype Seen(const QString& text, unsigned flags) {
    return SeenLength(text, TestFont(), Width, flags, {Width, Height});
}

QString Repeated(const QString& words, qsizetype length) {
    return words.repeated(length / words.size() + 1);
}

TEST(SeenText, AShortTextIsWhole) {
    EXPECT_EQ(Seen(QString(), dtWordBreak), 0);
    EXPECT_EQ(Seen(Repeated(QStringLiteral("rain "), 3000), dtWordBreak), 3000 + 5);
}

TEST(SeenText, OfALongTextTheBeginningIsEnough) {
    constexpr qsizetype Long = 200'000;
    constexpr qsizetype Most = 20'000;
    const QString words =
        Repeated(QStringLiteral("Niederschlag, rain & snow (mm), e\u0301t\u00E9 fi AVAVA 12.5 "), Long);
    const QString word = Repeated(QStringLiteral("Wfi12AV"), Long);
    const QString lines = Repeated(QStringLiteral("\nrain\n\nand snow \u6C34"), Long);
    const QString words32 = Repeated(QStringLiteral("\U0001F327 snow "), Long);
    for (const unsigned side : {0U, +dtCenter, +dtRight})
        for (const QString& text : {words, lines, words32}) {
            const unsigned flags = side | dtWordBreak;
            EXPECT_LT(Seen(text, flags), Most);
            EXPECT_EQ(PictureOf(text.left(Seen(text, flags)), flags), PictureOf(text, flags)) << flags;
        }
    for (const unsigned flags : {+dtWordBreak, +dtSingleLine, 0U})
        for (const QString& text : {word, words}) {
            EXPECT_LT(Seen(text, flags), Most);
            EXPECT_EQ(PictureOf(text.left(Seen(text, flags)), flags), PictureOf(text, flags)) << flags;
        }
}

TEST(SeenText, WhereTheEndCountsAllOfItIsLaidOut) {
    const QString word(20'000, u'W');
    for (const unsigned side : {+dtCenter, +dtRight})
        EXPECT_EQ(Seen(word, side | dtWordBreak), word.size()); // it stands out of the box on the left
    const QString hebrew = Repeated(QStringLiteral("\u05D2\u05E9\u05DD "), 20'000);
    EXPECT_EQ(Seen(hebrew, dtWordBreak), hebrew.size());
    const QString digits(20'000, u'1'); // which way they run is said behind them
    EXPECT_EQ(Seen(digits + u'\u05D2', dtWordBreak), digits.size() + 1);
    const QString isolated = Repeated(QStringLiteral("rain \u2067"), 20'000);
    EXPECT_EQ(Seen(isolated, dtWordBreak), isolated.size());
}

} // namespace
} // namespace lmx
