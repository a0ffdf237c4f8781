#include <lmx/Graphics/Private/lmxTextCache.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <tests/Graphics/Pictures.h>

#include <QGuiApplication>

#include <gtest/gtest.h>

#include <thread>

namespace lmx {
namespace {

using tests::AllPixels;

TTextKey Key(const QString& text) {
    TTextKey key;
    key.Text = text;
    return key;
}

TEST(TextCache, GivesWhatItHasMadeOnce) {
    TTextCache<int> cache(100000);
    int made = 0;
    const auto get = [&](const QString& text) {
        return cache.Get(
            Key(text), [&] { return ++made; }, [](int) { return std::size_t{0}; });
    };
    EXPECT_EQ(get(QStringLiteral("a")), 1);
    EXPECT_EQ(get(QStringLiteral("b")), 2);
    EXPECT_EQ(get(QStringLiteral("a")), 1);
    cache.Clear();
    EXPECT_EQ(get(QStringLiteral("a")), 3);
}

TEST(TextCache, ForgetsWhatNobodyAsksFor) {
    constexpr std::size_t entry = 10000;
    TTextCache<int> cache(10 * entry);
    int made = 0;
    const auto get = [&](int number) {
        return cache.Get(
            Key(QString(1, QChar(number))), [&] { return ++made; }, [](int) { return entry - 500; });
    };
    EXPECT_EQ(get(1), 1);
    for (int number = 100; number < 200; ++number) {
        get(number);
        EXPECT_EQ(get(1), 1) << "asked for again and again";
        EXPECT_LE(cache.Count(), 10U);
    }
    for (int number = 200; number < 300; ++number)
        get(number);
    EXPECT_GT(get(1), 1) << "not asked for";
}

TEST(TextCache, TellsTextsApartByEverythingThatIsSeen) {
    TTextKey key = Key(QStringLiteral("a"));
    const auto differs = [&](auto change) {
        TTextKey other = key;
        change(other);
        return !(other == key) && TTextKeyHash()(other) != TTextKeyHash()(key);
    };
    EXPECT_TRUE(differs([](TTextKey& k) { k.Text = QStringLiteral("b"); }));
    EXPECT_TRUE(differs([](TTextKey& k) { k.Font.Name = QStringLiteral("b"); }));
    EXPECT_TRUE(differs([](TTextKey& k) { k.Font.Size = 9; }));
    EXPECT_TRUE(differs([](TTextKey& k) { k.Font.Height = 9; }));
    EXPECT_TRUE(differs([](TTextKey& k) { k.Font.Ratio = 2; }));
    EXPECT_TRUE(differs([](TTextKey& k) { k.Font.Styles = {TFontStyle::fsBold}; }));
    EXPECT_TRUE(differs([](TTextKey& k) { k.Level = 1; }));
    EXPECT_TRUE(differs([](TTextKey& k) { k.Flags = 16; }));
    EXPECT_TRUE(differs([](TTextKey& k) { k.Box.cx = 1; }));
    EXPECT_TRUE(differs([](TTextKey& k) { k.Seen.Right = 1; }));
}

/// A white bitmap with a text in two ways.
std::vector<TColor32> Drawn(const TFont32& font, int x, TColor32 color) {
    TBitmap32 bitmap(60, 40);
    bitmap.Clear(clWhite32);
    bitmap.SetFont(font);
    bitmap.RenderText(x, 2, QStringLiteral("Wg"), 0, color);
    bitmap.Textout({x, 20, x + 50, 40}, dtWordBreak, QStringLiteral("Wg"));
    return AllPixels(bitmap);
}

TEST(TextCache, APictureIsTheSameAgainAndOnAnotherThread) {
    TFont32 font;
    const auto first = Drawn(font, 3, clBlack32);
    EXPECT_EQ(Drawn(font, 3, clBlack32), first);
    std::vector<TColor32> elsewhere; // where nothing is kept
    std::thread([&] { elsewhere = Drawn(font, 3, clBlack32); }).join();
    EXPECT_EQ(elsewhere, first);
    EXPECT_NE(Drawn(font, 3, 0xFFFF0000), first);
    EXPECT_NE(Drawn(font, -4, clBlack32), first);
    font.Color = TColor{255};
    EXPECT_NE(Drawn(font, 3, clBlack32), first);
    font.Styles = {TFontStyle::fsBold};
    EXPECT_NE(Drawn(font, 3, clBlack32), first);
}

TEST(TextCache, IsEmptyOnceTheApplicationHasOtherFonts) {
    int made = 0;
    const auto measure = [&] {
        return TextMeasuresOf(TFont32(), 0, QStringLiteral("fonts come and go"),
                              [&] {
                                  return TTextMeasures{++made, 1, 1};
                              })
            .Width;
    };
    EXPECT_EQ(measure(), 1);
    EXPECT_EQ(measure(), 1);
    Q_EMIT qGuiApp->fontDatabaseChanged();
    EXPECT_EQ(measure(), 2);
    Q_EMIT qGuiApp->fontDatabaseChanged(); // leaves no false measures behind
}

TEST(TextCache, AMaskHasNoEmptyMargins) {
    TTextKey key = Key(QStringLiteral("a text that nobody else draws"));
    const TTextMask mask = TextMaskOf(key, [] {
        QImage cover(20, 10, QImage::Format_Alpha8);
        cover.fill(0);
        cover.scanLine(3)[5] = 255;
        cover.scanLine(7)[9] = 1;
        return cover;
    });
    EXPECT_EQ(mask.Place, TPoint(5, 3));
    EXPECT_EQ(mask.Cover.size(), QSize(5, 5));
    EXPECT_EQ(mask.Cover.constScanLine(4)[4], 1);
    key.Level = 1;
    const auto empty = [] {
        QImage cover(20, 10, QImage::Format_Alpha8);
        cover.fill(0);
        return cover;
    };
    EXPECT_TRUE(TextMaskOf(key, empty).Cover.isNull());
}

} // namespace
} // namespace lmx
