#include <lmx/Graphics/Private/lmxSeenText.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxFont32.h>

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <cstddef>
#include <ostream>
#include <vector>

namespace lmx {
namespace {

constexpr int Width = 160;
constexpr int Height = 90;
constexpr int Margin = 10; // of the picture around the box
constexpr qsizetype Long = 50'000;
constexpr qsizetype Most = 45'000;

struct TLook {
    unsigned Flags;
    bool IsUnderlined;

    friend void PrintTo(const TLook& look, std::ostream* out) {
        *out << "flags " << look.Flags << (look.IsUnderlined ? ", underlined" : "");
    }
};

QFont FontOf(const TLook& look) {
    TFont32 font;
    font.Size = 9;
    QFont result = MakeFont(font, TFontSmoothing::fsGrey);
    result.setUnderline(look.IsUnderlined);
    return result;
}

int QtFlags(unsigned flags) {
    const int across = flags & dtCenter ? Qt::AlignHCenter : flags & dtRight ? Qt::AlignRight : Qt::AlignLeft;
    const int down = flags & dtVCenter ? Qt::AlignVCenter : Qt::AlignTop;
    return across | down | (flags & dtWordBreak ? Qt::TextWordWrap : 0) |
           (flags & dtSingleLine ? Qt::TextSingleLine : 0) | (flags & dtNoPrefix ? 0 : Qt::TextShowMnemonic);
}

template<class Draw>
QImage PictureWith(const TLook& look, Draw draw) {
    QImage picture(Width + Margin, Height + Margin, QImage::Format_Grayscale8);
    picture.fill(255);
    QPainter painter(&picture);
    painter.setLayoutDirection(Qt::LeftToRight);
    painter.setFont(FontOf(look));
    painter.setClipRect(0, 0, Width, Height);
    draw(painter);
    return picture;
}

QImage WholePicture(QString text, const TLook& look) {
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n');
    return PictureWith(
        look, [&](QPainter& painter) { painter.drawText(QRect(0, 0, Width, Height), QtFlags(look.Flags), text); });
}

TLaidText Seen(const QString& text, const TLook& look) {
    return SeenText(text, FontOf(look), Width, look.Flags, {Width, Height});
}

QImage SeenPicture(const TLaidText& text, const TLook& look) {
    return PictureWith(look, [&](QPainter& painter) { DrawLaidText(painter, text, {Width, Height}, look.Flags); });
}

QString Repeated(const QString& words, qsizetype length) {
    return words.repeated(length / words.size() + 1);
}

/// Lengths that do not fall on borders of items.
QString Letters(const QString& letters, qsizetype length = Long) {
    return Repeated(letters, length + 1237).left(length + 1237);
}

std::vector<TLook> Looks() {
    std::vector<TLook> looks;
    for (const unsigned side : {0U, +dtCenter, +dtRight})
        looks.push_back({side | dtWordBreak, side == dtCenter});
    return looks;
}

/// The same picture from fewer letters.
void CheckCut(const QString& text, const TLook& look, qsizetype most = Most) {
    const TLaidText seen = Seen(text, look);
    EXPECT_LT(seen.Text.size(), most) << testing::PrintToString(look) << ": " << text.left(20).toStdString();
    EXPECT_EQ(SeenPicture(seen, look), WholePicture(text, look))
        << testing::PrintToString(look) << ": " << text.left(20).toStdString();
}

TEST(SeenText, AShortTextIsWhole) {
    EXPECT_EQ(Seen(QString(), {dtWordBreak, false}).Text, QString());
    const QString text = Repeated(QStringLiteral("rain "), 3000);
    EXPECT_EQ(Seen(text, {dtWordBreak, false}).Text, text);
}

TEST(SeenText, LaysOutWhatQtDoes) {
    const TLaidText laid = Seen(QStringLiteral("a&b && c\r\nd\re\tf&"), {dtWordBreak, false});
    EXPECT_EQ(laid.Text, QStringLiteral("ab & c\u2028d\u2028e f"));
    EXPECT_EQ(laid.Underlined, std::vector<qsizetype>{1});
    EXPECT_EQ(Seen(QStringLiteral("a&b\nc"), {dtSingleLine | dtNoPrefix, false}).Text, QStringLiteral("a&b c"));
    const QString text = QStringLiteral("&Rain && snow\r\nin \u05D2\u05E9\u05DD (mm)\tof fi \U0001F327 e\u0301 days");
    for (const unsigned across : {0U, +dtCenter, +dtRight})
        for (const unsigned down : {0U, +dtSingleLine, dtSingleLine | dtVCenter, +dtWordBreak, +dtNoPrefix}) {
            const TLook look = {across | down, true};
            EXPECT_EQ(SeenPicture(Seen(text, look), look), WholePicture(text, look)) << testing::PrintToString(look);
        }
}

TEST(SeenText, OfManyLinesTheFirstAreEnough) {
    const QString texts[] = {
        Letters(QStringLiteral("Niederschlag, rain & snow (mm), e\u0301t\u00E9 fi AVAVA 12.5 ")),
        Letters(QStringLiteral("\nrain\n\nand snow \u6C34")),
        Letters(QStringLiteral("\U0001F327 snow ")),
        Letters(QStringLiteral("\u05D2\u05E9\u05DD \u05E9\u05DC\u05B9\u05D2 12 mm ")),                   // Hebrew
        Letters(QStringLiteral("\u0645\u0637\u0631 \u0648\u062B\u0644\u0651\u062C 12 \u0661\u0662 % ")), // Arabic
        Letters(QStringLiteral("rain \u05D2\u05E9\u05DD snow, \u0645\u0637\u0631 - e\u0301 ")),
        Letters(QStringLiteral("\u6C34\u96E8"))};
    for (const TLook& look : Looks())
        for (const QString& text : texts)
            CheckCut(text, look, 20'000);
}

TEST(SeenText, OfALongLineTheBeginningIsEnough) {
    for (const unsigned flags : {+dtSingleLine, 0U})
        for (const QString& text : {Letters(QStringLiteral("Wfi12AV")), Letters(QStringLiteral("rain & snow "))})
            CheckCut(text, {flags, false});
    const QString lines = Letters(QStringLiteral("AVA")) + QStringLiteral("\nrain");
    EXPECT_EQ(SeenPicture(Seen(lines, {0, false}), {0, false}), WholePicture(lines, {0, false}));
}

TEST(SeenText, OfAWordThatIsTooWideWhatIsSeenIsEnough) {
    const QString words[] = {Letters(QStringLiteral("W")),
                             Letters(QStringLiteral("Wfi12AVe\u0301.,")),
                             Letters(QStringLiteral("e\u0301\u0323")),
                             Letters(QStringLiteral("\U0001D400\U0001D401A")), // of two units each, and one
                             Letters(QStringLiteral("\u05D2\u05E9\u05B7\u05DD")),
                             Letters(QStringLiteral("\u0633\u0644\u0627\u064E\u0645")),
                             Letters(QStringLiteral("____"))};
    const std::vector<TLook> looks = Looks();
    std::size_t next = 0;
    for (const QString& word : words) {
        for (const TLook& look : looks)
            CheckCut(word, look);
        const TLook& look = looks[next++ % looks.size()];
        CheckCut(QStringLiteral("Rain & snow, ") + word + QStringLiteral(" (mm)\nsnow"), look);
        CheckCut(QStringLiteral("\u05D2 (12) ") + word + QStringLiteral(" \u05D2"), look);
    }
}

TEST(SeenText, SeveralSuchWordsMayBeSeen) {
    const QString text = Letters(QStringLiteral("AVA")) + QStringLiteral("\nrain ") +
                         Letters(QStringLiteral("\u05D2")) + u' ' + Letters(QStringLiteral("\u0436T"), 10'000);
    for (const TLook& look : Looks())
        CheckCut(text, look, 10'000 + 2 * Most); // the last word changes scripts
}

TEST(SeenText, AWordOfTwoScriptsIsCutInBoth) {
    const QString latin = Letters(QStringLiteral("AVA"), 60'000);
    const QString others[] = {Letters(QStringLiteral("\u0433\u0442"), 40'000),
                              Letters(QStringLiteral("\u05D2\u05E9"), 40'000)};
    for (const TLook& look : Looks())
        for (const QString& other : others) {
            CheckCut(latin + other, look);
            CheckCut(other + latin, look);
        }
}

TEST(SeenText, TheMiddleOfAWordIsThatOfItsWidth) {
    const TLook look = {dtWordBreak | dtCenter, false};
    CheckCut(Letters(QStringLiteral("i"), 20'000) + Letters(QStringLiteral("W"), 40'000), look);
    CheckCut(Letters(QStringLiteral("\u05D5"), 20'000) + Letters(QStringLiteral("\u05E9"), 40'000), look);
}

// The limits that are told at SeenText and ShortenWords.

TEST(SeenText, WhereTheEndCountsAllOfALineIsLaidOut) {
    const QString word = Letters(QStringLiteral("W"));
    for (const unsigned side : {+dtCenter, +dtRight})
        EXPECT_EQ(Seen(word, {side | dtSingleLine, false}).Text.size(), word.size());
    const QString hebrew = Letters(QStringLiteral("\u05D2\u05E9\u05DD "));
    EXPECT_EQ(Seen(hebrew, {dtSingleLine, false}).Text.size(), hebrew.size());
}

TEST(SeenText, DoubtfulTextsAreHeardFarBehind) {
    const QString texts[] = {Letters(QStringLiteral("12 34 "), 300'000),
                             Letters(QStringLiteral("\u05D2 (rain "), 300'000),
                             Letters(QStringLiteral("rain \u2067\u05D2 "), 300'000)};
    for (const QString& text : texts) {
        const qsizetype length = Seen(text, {dtWordBreak, false}).Text.size();
        EXPECT_GT(length, 60'000) << text.left(10).toStdString();
        EXPECT_LT(length, 140'000) << text.left(10).toStdString();
    }
}

TEST(SeenText, NoWordIsLaidOutWholeHoweverLong) {
    const QString words[] = {Letters(QStringLiteral("W\u0436"), 200'000), // changes scripts
                             Letters(QStringLiteral("a\u05D2"), 200'000), // changes directions
                             u'e' + Letters(QStringLiteral("\u0301"), 200'000)};
    for (const QString& word : words)
        EXPECT_LE(Seen(word, {dtWordBreak | dtCenter, false}).Text.size(), 72'000) << word.left(2).toStdString();
}

} // namespace
} // namespace lmx
