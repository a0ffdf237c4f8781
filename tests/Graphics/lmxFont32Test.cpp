#include <lmx/Graphics/lmxFont32.h>

#include <QFont>
#include <QStringList>

#include <gtest/gtest.h>

#include <limits>

namespace lmx {
namespace {

TEST(Font32, DefaultsToTahomaEight) {
    const TFont32 font;
    EXPECT_EQ(font.Name, QStringLiteral("Tahoma"));
    EXPECT_EQ(font.Size, 8);
    EXPECT_TRUE(font.Styles.IsEmpty());
    EXPECT_EQ(font.Color, clBlack);
}

TEST(Font32, PixelsOfPoints) {
    const std::pair<int, int> rows[] = {{8, 11}, {9, 12}, {10, 13}, {11, 15}, {12, 16}, {14, 19}, {72, 96}};
    for (const auto& [size, pixels] : rows)
        EXPECT_EQ(FontPixels(size), pixels) << size;
}

TEST(Font32, PixelsAreNeverBelowOne) {
    EXPECT_EQ(FontPixels(0), 1);
    EXPECT_EQ(FontPixels(-1), 1);
    EXPECT_EQ(FontPixels(std::numeric_limits<int>::min()), 1);
}

TEST(Font32, PixelsEndAtTheLargestLetters) {
    constexpr int most = std::numeric_limits<int>::max();
    EXPECT_EQ(FontPixels(3072), 4096);
    EXPECT_EQ(FontPixels(3073), 4096);
    EXPECT_EQ(FontPixels(most), 4096);
    TFont32 font;
    for (const double ratio : {1.0, 1e300, std::numeric_limits<double>::infinity()}) {
        font.Size = most;
        font.Height = 0;
        font.Ratio = ratio;
        EXPECT_EQ(FontPixels(font), 4096) << ratio;
        font.Height = most;
        EXPECT_EQ(FontPixels(font), 4096) << ratio;
    }
    font.Ratio = 0;
    EXPECT_EQ(FontPixels(font), 1);
}

TEST(Font32, RatioScalesPixels) {
    TFont32 font;
    font.Ratio = 1.5;
    EXPECT_EQ(FontPixels(font), 16) << "11 * 1.5 = 16.5 rounds to even";
    font.Ratio = 2;
    EXPECT_EQ(FontPixels(font), 22);
    font.Height = 20;
    EXPECT_EQ(FontPixels(font), 40) << "a height in pixels rules over the size";
}

TEST(Font32, MakesTheQtFont) {
    TFont32 font;
    font.Size = 12;
    font.Styles = {TFontStyle::fsBold, TFontStyle::fsUnderline};
    const QFont bold = MakeFont(font, TFontSmoothing::fsHard);
    EXPECT_EQ(bold.pixelSize(), 16);
    EXPECT_TRUE(bold.bold());
    EXPECT_TRUE(bold.underline());
    EXPECT_FALSE(bold.italic());
    EXPECT_FALSE(bold.strikeOut());
    EXPECT_EQ(bold.styleStrategy(), QFont::NoAntialias);
    EXPECT_EQ(bold.hintingPreference(), QFont::PreferFullHinting);

    font.Styles = {TFontStyle::fsItalic, TFontStyle::fsStrikeOut};
    const QFont italic = MakeFont(font, TFontSmoothing::fsGrey);
    EXPECT_TRUE(italic.italic());
    EXPECT_TRUE(italic.strikeOut());
    EXPECT_FALSE(italic.bold());
    EXPECT_EQ(italic.styleStrategy(), QFont::NoSubpixelAntialias);
}

TEST(Font32, MissingFamiliesAreReplaced) {
    for (const char* family : {"Tahoma", "Arial", "tahoma", "ARIAL"}) {
        TFont32 font;
        font.Name = QString::fromLatin1(family);
        const QFont made = MakeFont(font, TFontSmoothing::fsHard);
        EXPECT_EQ(made.families(), QStringList({font.Name, QStringLiteral("DejaVu Sans")}));
        EXPECT_EQ(made.family(), font.Name);
    }
    TFont32 other;
    other.Name = QStringLiteral("Noto Serif");
    EXPECT_EQ(MakeFont(other, TFontSmoothing::fsHard).families(), QStringList("Noto Serif"));
}

TEST(Font32, TheFontsOfTheApplicationStayAsTheyAre) {
    MakeFont({}, TFontSmoothing::fsHard);
    EXPECT_EQ(QFont::substitutions(), QStringList());
    EXPECT_EQ(QFont(QStringLiteral("Arial")).families(), QStringList("Arial"));
}

} // namespace
} // namespace lmx
