#include <lmx/Graphics/Private/lmxLongWords.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxFont32.h>

#include <QFontMetricsF>

#include <gtest/gtest.h>

#include <cmath>

namespace lmx {
namespace {

constexpr qsizetype ItemLength = 4096;

TLaidText Shortened(const QString& text, unsigned flags, int seenWidth = 100) {
    TLaidText result = {text, {}, {}};
    ShortenWords(result, MakeFont(TFont32(), TFontSmoothing::fsGrey), flags | dtWordBreak, seenWidth);
    return result;
}

TEST(LongWords, RemovingMovesWhatStandsBehind) {
    TLaidText text = {QStringLiteral("abcdefgh"), {1, 6}, {{2, 1.5}, {5, -1}}};
    text.Remove(3, 2);
    EXPECT_EQ(text.Text, QStringLiteral("abcfgh"));
    EXPECT_EQ(text.Underlined, (std::vector<qsizetype>{1, 4}));
    ASSERT_EQ(text.Offsets.size(), 2U);
    EXPECT_EQ(text.Offsets[0].Place, 2);
    EXPECT_EQ(text.Offsets[1].Place, 3);
}

TEST(LongWords, OfAWordOneItemOnEachSideFillsASmallBox) {
    const QString word(100 * ItemLength, u'W');
    for (const unsigned side : {0U, +dtRight}) {
        const TLaidText cut = Shortened(word, side);
        EXPECT_EQ(cut.Text.size(), 3 * ItemLength) << "and the item that the word begins in";
        EXPECT_TRUE(cut.Offsets.empty());
    }
}

TEST(LongWords, WhatGoesIsWholeItems) {
    for (const qsizetype length : {40'961, 49'152, 60'000})
        for (const unsigned side : {0U, +dtRight, +dtCenter}) {
            const QString text = QStringLiteral("rain ") + QString(length, u'W') + QStringLiteral(" snow");
            const qsizetype cut = text.size() - Shortened(text, side).Text.size();
            EXPECT_GT(cut, 0) << length;
            EXPECT_EQ(cut % ItemLength, 0) << length;
        }
}

TEST(LongWords, ACenteredLineMovesByHalfOfWhatItLacksMoreOnOneSide) {
    const double itemWidth =
        QFontMetricsF(MakeFont(TFont32(), TFontSmoothing::fsGrey)).horizontalAdvance(QString(ItemLength, u'W'));
    const TLaidText even = Shortened(QString(41 * ItemLength, u'W'), dtCenter);
    ASSERT_EQ(even.Offsets.size(), 1U);
    EXPECT_EQ(even.Offsets[0].Place, 0);
    EXPECT_EQ(std::abs(even.Offsets[0].Right), itemWidth / 2) << "the first item stays, too";
    const TLaidText uneven = Shortened(QString(40 * ItemLength, u'i') + QString(20 * ItemLength, u'W'), dtCenter);
    ASSERT_EQ(uneven.Offsets.size(), 1U);
    EXPECT_NE(uneven.Offsets[0].Right, 0);
    EXPECT_LT(std::abs(uneven.Offsets[0].Right), itemWidth) << "as much was cut out on either side, but for an item";
}

TEST(LongWords, ShortOrBrokenWordsStay) {
    const QString texts[] = {QString(2 * ItemLength, u'W'), QStringLiteral("rain ").repeated(20'000),
                             QStringLiteral("rain-").repeated(20'000), QString(100'000, QChar(0x6C34))};
    for (const QString& text : texts)
        EXPECT_EQ(Shortened(text, 0).Text, text) << text.left(10).toStdString();
}

TEST(LongWords, AnUnderlinedLetterIsNotCutOut) {
    TLaidText text = {QString(100 * ItemLength, u'W'), {50 * ItemLength}, {}};
    ShortenWords(text, MakeFont(TFont32(), TFontSmoothing::fsGrey), dtWordBreak | dtRight, 100);
    EXPECT_EQ(text.Text.size(), 100 * ItemLength);
}

TEST(LongWords, AWideBoxShowsMore) {
    const QString word(100 * ItemLength, u'W');
    EXPECT_GT(Shortened(word, 0, 100'000).Text.size(), Shortened(word, 0, 100).Text.size());
}

} // namespace
} // namespace lmx
