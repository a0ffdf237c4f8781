#include <lmx/Layers/Objects/lmxTextBoxObjectLayerItem.h>
#include <tests/Graphics/Pictures.h>
#include <tests/Layers/Objects/ObjectScene.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using tests::AllPixels;
using tests::TObjectNews;
using tests::TObjectScene;

TTextBoxObjectLayerItem* AddText(TObjectScene& scene, const QString& text,
                                 TAlignment align = TAlignment::taLeftJustify) {
    return scene.Add<TTextBoxObjectLayerItem>(text, QStringLiteral("Tahoma"), 8, clBlack, TFontStyles(), align);
}

/// The pixels that are not white: Left and Top the first, Right and Bottom behind the last.
TRect InkOf(const TBitmap32& bitmap) {
    TRect ink(bitmap.GetWidth(), bitmap.GetHeight(), 0, 0);
    for (int y = 0; y < bitmap.GetHeight(); ++y)
        for (int x = 0; x < bitmap.GetWidth(); ++x)
            if (bitmap.Pixel(x, y) != clWhite32)
                ink = {std::min(ink.Left, x), std::min(ink.Top, y), std::max(ink.Right, x + 1),
                       std::max(ink.Bottom, y + 1)};
    return ink;
}

TEST(TextBoxObjectLayerItem, AlignmentsHaveTheirOrder) {
    EXPECT_EQ(static_cast<int>(TAlignment::taLeftJustify), 0);
    EXPECT_EQ(static_cast<int>(TAlignment::taRightJustify), 1);
    EXPECT_EQ(static_cast<int>(TAlignment::taCenter), 2);
}

TEST(TextBoxObjectLayerItem, BeginsWithItsDefaults) {
    TObjectScene scene;
    const TTextBoxObjectLayerItem item(scene.Layer.Get());
    EXPECT_EQ(item.GetRect(), TRect(0, 0, 120, 40));
    EXPECT_EQ(item.GetAnchorData(), TAnchorData(0, 0, 80, 60));
    EXPECT_EQ(item.GetGrabberOptions(), TGrabberOptions{TGrabberOption::goResizable});
    EXPECT_EQ(item.GetObjectClassType(), QStringLiteral("TEXT"));
    EXPECT_EQ(item.GetObjectType(), QStringLiteral("Text: "));
    EXPECT_EQ(item.GetFont(), QStringLiteral("Tahoma"));
    EXPECT_EQ(item.GetFontSize(), 8);
    EXPECT_FALSE(item.GetShowBackground());
    EXPECT_FALSE(item.GetShowBorder());
    scene.Layer->SetDeviceRatio(1.5);
    EXPECT_EQ(TTextBoxObjectLayerItem(scene.Layer.Get()).GetRect(), TRect(0, 0, 180, 60));
}

TEST(TextBoxObjectLayerItem, TakesAndTellsItsProperties) {
    TObjectScene scene;
    auto* item = scene.Add<TTextBoxObjectLayerItem>(QStringLiteral("t"), QStringLiteral("Arial"), 12, TColor{255},
                                                    TFontStyles{TFontStyle::fsBold}, TAlignment::taCenter);
    EXPECT_EQ(item->GetText(), QStringLiteral("t"));
    EXPECT_EQ(item->GetFont(), QStringLiteral("Arial"));
    EXPECT_EQ(item->GetFontSize(), 12);
    EXPECT_EQ(item->GetColor(), TColor{255});
    EXPECT_EQ(item->GetFontStyles(), TFontStyles{TFontStyle::fsBold});
    EXPECT_EQ(item->GetTextAlign(), TAlignment::taCenter);
    TObjectNews news(scene.Layer.Get());
    const auto expectNews = [&](auto set) {
        set();
        EXPECT_EQ(news.Take(), QStringLiteral("changed: 1"));
        set();
        EXPECT_EQ(news.Take(), QStringLiteral("0"));
    };
    expectNews([&] { item->SetText(QStringLiteral("u")); });
    expectNews([&] { item->SetFont(QStringLiteral("Tahoma")); });
    expectNews([&] { item->SetFontSize(9); });
    expectNews([&] { item->SetColor(clBlack); });
    expectNews([&] { item->SetFontStyles({}); });
    expectNews([&] { item->SetTextAlign(TAlignment::taRightJustify); });
}

TEST(TextBoxObjectLayerItem, ItsDisplayTextIsCut) {
    TTextBoxObjectLayerItem item(nullptr);
    const auto shown = [&](int length) {
        item.SetText(QString(length, u'x'));
        return item.GetObjectType();
    };
    EXPECT_EQ(shown(24), QStringLiteral("Text: ") + QString(24, u'x')); // 30 in all
    EXPECT_EQ(shown(25), QStringLiteral("Text: ") + QString(21, u'x') + QStringLiteral("..."));
    EXPECT_EQ(shown(1 << 20).size(), 30);
}

TEST(TextBoxObjectLayerItem, DrawsItsTextInItsRectangle) {
    TObjectScene scene;
    auto* item = AddText(scene, QStringLiteral("HHHH"));
    item->SetRect({50, 20, 150, 60});
    TBitmap32 expected = tests::TTestMap(200, 100).Bitmap;
    expected.Textout({50, 20, 150, 60}, dtWordBreak, QStringLiteral("HHHH"));
    EXPECT_EQ(AllPixels(scene.Painted()), AllPixels(expected));
    const TRect left = InkOf(scene.Map->Bitmap);
    item->SetTextAlign(TAlignment::taRightJustify);
    const TRect right = InkOf(scene.Painted());
    item->SetTextAlign(TAlignment::taCenter);
    const TRect center = InkOf(scene.Painted());
    EXPECT_NEAR(left.Left, 50, 2);
    EXPECT_NEAR(right.Right, 150, 2);
    EXPECT_NEAR((center.Left + center.Right) / 2.0, 100, 1.5);
    EXPECT_GE(left.Top, 20);
}

TEST(TextBoxObjectLayerItem, WrapsAndClipsAndDoesNotGrow) {
    TObjectScene scene;
    auto* item = AddText(scene, QStringLiteral("HHHH HHHH HHHH HHHH HHHHHHHHHHHHHHHHHH"));
    item->SetRect({50, 20, 90, 55});
    const TRect ink = InkOf(scene.Painted());
    EXPECT_GE(ink.Left, 50);
    EXPECT_LE(ink.Right, 90);
    EXPECT_LE(ink.Bottom, 55);
    EXPECT_GT(ink.GetHeight(), 20); // more than one line
    EXPECT_EQ(item->GetRect(), TRect(50, 20, 90, 55));
}

TEST(TextBoxObjectLayerItem, ASmallOneKeepsToItsRectangleNotToItsGrabbersRoom) {
    TObjectScene scene;
    auto* item = AddText(scene, QStringLiteral("HHHHHH"));
    item->SetRect({50, 20, 60, 60});
    EXPECT_LE(InkOf(scene.Painted()).Right, 60);
    EXPECT_EQ(item->GetViewRect().Right, 76);
}

TEST(TextBoxObjectLayerItem, AnAmpersandUnderlinesTheNextLetter) {
    TObjectScene scene;
    auto* item = AddText(scene, QStringLiteral("&H"));
    const TRect underlined = InkOf(scene.Painted());
    item->SetText(QStringLiteral("H"));
    const TRect plain = InkOf(scene.Painted());
    EXPECT_GT(underlined.Bottom, plain.Bottom);
    item->SetText(QStringLiteral("&&"));
    EXPECT_LT(InkOf(scene.Painted()).GetWidth(), 12); // one ampersand
}

TEST(TextBoxObjectLayerItem, LettersGrowWithTheDeviceRatio) {
    TObjectScene scene;
    auto* item = AddText(scene, QStringLiteral("H"));
    const TRect plain = InkOf(scene.Painted());
    scene.Layer->SetDeviceRatio(2);
    EXPECT_EQ(item->GetRect(), TRect(0, 0, 240, 80));
    EXPECT_NEAR(InkOf(scene.Painted()).GetHeight(), 2 * plain.GetHeight(), 1.5);
}

TEST(TextBoxObjectLayerItem, OfABillionPixelsShowsWhatIsSeen) {
    TObjectScene scene;
    auto* item = AddText(scene, QStringLiteral("HHHH"));
    item->SetRect({-20, 10, 1000000000, 1000000000});
    TObjectScene small;
    AddText(small, QStringLiteral("HHHH"))->SetRect({-20, 10, 300, 300});
    EXPECT_EQ(AllPixels(scene.Painted()), AllPixels(small.Painted()));
    EXPECT_FALSE(InkOf(scene.Map->Bitmap).IsEmpty());
    item->SetRect({100, 50, 20, 10}); // inverted
    EXPECT_TRUE(InkOf(scene.Painted()).IsEmpty());
}

TEST(TextBoxObjectLayerItem, StandsAnyText) {
    TObjectScene scene;
    auto* item = AddText(scene, QString(1 << 20, u'W'));
    item->SetRect({0, 0, 200, 100});
    EXPECT_FALSE(InkOf(scene.Painted()).IsEmpty());
    item->SetText(QStringLiteral("\u05E9\u05DC\u05D5\u05DD \u0645\u0631\u062D\u0628\u0627"));
    EXPECT_FALSE(InkOf(scene.Painted()).IsEmpty());
    item->SetText(QStringLiteral("e\u0301\u0302\u0303\u0304"));
    EXPECT_FALSE(InkOf(scene.Painted()).IsEmpty());
    item->SetFont(QStringLiteral("There Is No Such Font"));
    EXPECT_FALSE(InkOf(scene.Painted()).IsEmpty());
    item->SetFontSize(-1000000);
    scene.Painted();
    item->SetFontSize(1000000);
    scene.Painted();
}

TEST(TextBoxObjectLayerItem, OfAWordThatIsTooWideShowsTheEndThatItIsAlignedBy) {
    TObjectScene scene;
    const auto picture = [&](const QString& text, TAlignment align) {
        scene.Layer->GetObjects().Clear();
        AddText(scene, text, align)->SetRect({10, 10, 190, 90});
        return AllPixels(scene.Painted());
    };
    constexpr int Many = 300'000;
    constexpr int Enough = 1000;
    const std::pair<QChar, QChar> halves[] = {{u'i', u'W'}, {QChar(0x05D5), QChar(0x05E9)}};
    for (const auto& [first, second] : halves) {
        const QString word = QString(Many, first) + QString(Many, second);
        const auto [left, right] = first == u'i' ? std::pair(first, second) : std::pair(second, first);
        EXPECT_EQ(picture(word, TAlignment::taLeftJustify), picture(QString(Enough, left), TAlignment::taLeftJustify));
        EXPECT_EQ(picture(word, TAlignment::taRightJustify),
                  picture(QString(Enough, right), TAlignment::taRightJustify));
        EXPECT_EQ(picture(QString(Many, first), TAlignment::taCenter),
                  picture(QString(Enough, first), TAlignment::taCenter));
    }
}

} // namespace
} // namespace lmx
