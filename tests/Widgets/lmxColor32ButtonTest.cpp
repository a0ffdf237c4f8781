#include <lmx/Widgets/lmxColor32Button.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/WidgetPictures.h>

#include <memory>

namespace lmx {
namespace {

const TColorChooserDialogOptions WithAlpha{TColorChooserDialogOption::coColor32};

struct Color32Button : testing::Test {
    Color32Button() {
        Button->SetOnColorChanged([this](TColor32Button* sender) {
            EXPECT_EQ(sender, Button.get());
            Told.push_back(sender->GetColor());
        });
    }

    std::unique_ptr<TColor32Button> Button = std::make_unique<TColor32Button>();
    tests::TScriptedColorChooser Chooser;
    std::vector<TColor32> Told;
};

TEST_F(Color32Button, BeginsWhite) {
    EXPECT_EQ(Button->GetColor(), clWhite32);
    EXPECT_EQ(Button->accessibleDescription(), "#FFFFFFFF");
}

TEST_F(Color32Button, TakesAColourFromCodeWithoutAWord) {
    Button->SetColor(0x80FF8000U);
    EXPECT_EQ(Button->GetColor(), 0x80FF8000U);
    EXPECT_EQ(Button->accessibleDescription(), "#80FF8000");
    EXPECT_TRUE(Told.empty());
}

TEST_F(Color32Button, TellsOfWhatTheUserConfirmed) {
    Button->SetColor(0x80FF8000U);
    Chooser->Answers = {0x40102030U, 0x40102030U, std::nullopt};
    tests::ShowActive(*Button);
    QTest::mouseClick(Button.get(), Qt::LeftButton);
    EXPECT_EQ(Chooser->Made, std::vector<TColorChooserDialogOptions>{WithAlpha});
    EXPECT_EQ(Chooser->Shown, std::vector<TColor32>{0x80FF8000U});
    EXPECT_EQ(Told, std::vector<TColor32>{0x40102030U});
    EXPECT_EQ(Button->accessibleDescription(), "#40102030");
    QTest::keyClick(Button.get(), Qt::Key_Space);
    EXPECT_EQ(Told.size(), 2U) << "also the colour that there was";
    QTest::keyClick(Button.get(), Qt::Key_Space);
    EXPECT_EQ(Told.size(), 2U) << "and not a cancel";
    EXPECT_EQ(Button->GetColor(), 0x40102030U);
}

TEST_F(Color32Button, AsksTheChooserThatItWasGiven) {
    Button->SetColorChooser(TColorChooserFactory::GetObject(WithAlpha));
    Chooser->Answers = {0x01020304U, 0x05060708U};
    Button->SelectColor();
    Button->SelectColor();
    EXPECT_EQ(Chooser->Made.size(), 1U);
    EXPECT_EQ(Chooser->Shown, (std::vector<TColor32>{clWhite32, 0x01020304U}));
    EXPECT_EQ(Button->GetColor(), 0x05060708U);
    Button->SetColorChooser(nullptr);
    Chooser->Answers = {std::nullopt};
    Button->SelectColor();
    EXPECT_EQ(Chooser->Made.size(), 2U);
}

TEST_F(Color32Button, MayGoWhileTheUserChooses) {
    Chooser->Answers = {0x40102030U};
    Chooser->WhileOpen = [this] { Button.reset(); };
    Button->click();
    EXPECT_EQ(Button, nullptr);
    EXPECT_TRUE(Told.empty());
}

TEST_F(Color32Button, MayBeDestroyedByWhomItTells) {
    Chooser->Answers = {0x40102030U};
    Button->SetOnColorChanged([this](TColor32Button*) { Button.reset(); });
    Button->click();
    EXPECT_EQ(Button, nullptr);
}

TEST_F(Color32Button, ShowsItsColourOverSquares) {
    Button->SetColor(0x00FF8000U);
    Button->resize(Button->sizeHint());
    const auto pixelAt = [this](int x, int y) {
        return tests::PictureOf(*Button).pixel(tests::DevicePixel(*Button, {x, y}));
    };
    EXPECT_EQ(pixelAt(8, 8), 0xFFFFFFFFU);
    EXPECT_EQ(pixelAt(13, 8), 0xFFC0C0C0U);
    Button->SetColor(0xFFFF8000U);
    EXPECT_EQ(pixelAt(8, 8), 0xFFFF8000U);
    EXPECT_EQ(pixelAt(13, 8), 0xFFFF8000U);
    Button->setEnabled(false);
    EXPECT_NE(pixelAt(8, 8), 0xFFFF8000U) << "pale";
}

TEST_F(Color32Button, GrowsWithTheFont) {
    const QSize before = Button->sizeHint();
    QFont large = Button->font();
    large.setPixelSize(40);
    Button->setFont(large);
    EXPECT_GT(Button->sizeHint().height(), before.height());
    EXPECT_GT(Button->sizeHint().width(), before.width());
}

} // namespace
} // namespace lmx
