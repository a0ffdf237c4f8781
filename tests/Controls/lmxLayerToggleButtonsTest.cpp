#include <lmx/Controls/lmxLayerToggleButtons.h>
#include <lmx/Controls/lmxMapViewAssets.h>
#include <tests/Support/Printers.h>
#include <tests/Support/WidgetPictures.h>

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <memory>

// These tests hold at every ratio of the screen; they run at 1, 1.5 and 2.

namespace lmx {
namespace {

struct TButtonRow {
    const char* Name;
    std::unique_ptr<TBaseToggleButton> (*Make)();
    const char* Hint;
    int ImageOn;
    int ImageOff;
};

void PrintTo(const TButtonRow& row, std::ostream* stream) {
    *stream << row.Name;
}

template<class Button>
std::unique_ptr<TBaseToggleButton> Make() {
    return std::make_unique<Button>();
}

/// Shows for each index a colour of its own in place of the real images.
class TColoredAssets {
public:
    static constexpr std::array<QRgb, 6> Colors = {0xFF000001, 0xFF000002, 0xFF000003,
                                                   0xFF000004, 0xFF000005, 0xFF000006};
    TColoredAssets() {
        for (int index = 0; index < 6; ++index) {
            Replaced.push_back(Images.Replace(index, [index](double ratio, const QColor&) {
                QImage image(static_cast<int>(12 * ratio), static_cast<int>(12 * ratio), QImage::Format_ARGB32);
                image.fill(Colors.at(static_cast<std::size_t>(index)));
                image.setDevicePixelRatio(ratio);
                return image;
            }));
        }
    }
    ~TColoredAssets() {
        for (int index = 0; index < 6; ++index)
            Images.Replace(index, Replaced[static_cast<std::size_t>(index)]);
    }
    TColoredAssets(const TColoredAssets&) = delete;
    TColoredAssets& operator=(const TColoredAssets&) = delete;

private:
    TImageList& Images = TMapViewAssets::GetInstance().GetLayerPanelAssets();
    std::vector<TImageList::TPicture> Replaced;
};

struct LayerToggleButtons : testing::TestWithParam<TButtonRow> {
    std::unique_ptr<TBaseToggleButton> Button = GetParam().Make();

    QRgb ColorOf(int image) const { return TColoredAssets::Colors.at(static_cast<std::size_t>(image)); }
};

TEST_P(LayerToggleButtons, SayWhatTheyDo) {
    EXPECT_EQ(Button->toolTip(), GetParam().Hint);
    EXPECT_EQ(Button->accessibleName(), GetParam().Hint);
}

TEST_P(LayerToggleButtons, ShowTheImageOfTheirStateInTheMiddle) {
    const TColoredAssets assets;
    Button->resize(20, 20);
    for (const bool isOn : {false, true}) {
        Button->SetSelected(isOn);
        const QImage picture = tests::PictureOf(*Button);
        const QRgb color = ColorOf(isOn ? GetParam().ImageOn : GetParam().ImageOff);
        const double ratio = Button->devicePixelRatioF();
        const auto first = static_cast<int>(4 * ratio);
        const auto last = static_cast<int>(16 * ratio) - 1;
        EXPECT_EQ(picture.pixel(first, first), color);
        EXPECT_EQ(picture.pixel(last, last), color);
        EXPECT_NE(picture.pixel(first - 1, first), color);
        EXPECT_NE(picture.pixel(last, last + 1), color);
    }
}

TEST_P(LayerToggleButtons, AreTurnedOverByMouseAndKeyboard) {
    tests::ShowActive(*Button);
    QTest::mouseClick(Button.get(), Qt::LeftButton);
    EXPECT_TRUE(Button->GetSelected());
    Button->setFocus();
    QTest::keyClick(Button.get(), Qt::Key_Space);
    EXPECT_FALSE(Button->GetSelected());
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, LayerToggleButtons,
    testing::Values(TButtonRow{"OpenClose", Make<TLayerOpenCloseToggleButton>, "Toggle layer information", 1, 0},
                    TButtonRow{"Visibility", Make<TLayerVisibilityToggleButton>, "Toggle layer visibility", 3, 2},
                    TButtonRow{"ShowMenu", Make<TShowMenuButton>, "Layer menu", 5, 5}),
    [](const auto& row) { return row.param.Name; });

TEST(LayerToggleButton, FollowsTheTheme) {
    TShowMenuButton button;
    button.resize(20, 20);
    QPalette palette;
    palette.setColor(QPalette::ButtonText, QColor(240, 230, 220));
    button.setPalette(palette);
    const auto middle = static_cast<int>(10 * button.devicePixelRatioF());
    EXPECT_EQ(tests::PictureOf(button).pixel(middle, middle), 0xFFF0E6DCU);
}

} // namespace
} // namespace lmx
