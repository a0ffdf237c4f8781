#include <lmx/Controls/Legend/lmxShapeFileLayerLegendControl.h>
#include <lmx/Controls/Legend/lmxVectorFileLayerLegendControl.h>
#include <lmx/Formats/Shapes/lmxShpFile.h>
#include <lmx/Runtime/lmxText.h>
#include <lmx/Widgets/lmxPngButton.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/ShapeBytes.h>
#include <tests/Support/WidgetPictures.h>

#include <QFontMetrics>
#include <QPointer>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using tests::PictureOf;

QPoint Middle(const TRect& rect) {
    return {(rect.Left + rect.Right) / 2, (rect.Top + rect.Bottom) / 2};
}

struct ColorLegend : testing::Test {
    QWidget Form;
    TVectorFileLayerLegendControl* Control = TVectorFileLayerLegendControl::CreateComp(&Form, TColor{0x00112233});
    tests::TScriptedColorChooser Chooser;
    std::vector<TColor> Chosen;

    ColorLegend() {
        Control->SetOnColorChanged([this](TBaseLegendControl* sender, TColor color) {
            EXPECT_EQ(sender, Control);
            Chosen.push_back(color);
        });
        Form.resize(200, 60);
        Control->resize(200, 60);
        tests::ShowActive(Form);
    }
};

TEST_F(ColorLegend, LabelAndSwatchStandSideBySide) {
    const QFontMetrics metrics(Control->font());
    const int side = std::max(20, metrics.height());
    EXPECT_EQ(Control->GetColorLabelText(), "Color: ");
    const int right = 4 + metrics.horizontalAdvance("Color: ");
    EXPECT_EQ(Control->GetLabelRect(), TRect(4, 4, right, 4 + side));
    EXPECT_EQ(Control->GetColorRect(), TRect(right + 2, 4, right + 2 + side, 4 + side));
    Control->SetColorLabelText("C");
    EXPECT_EQ(Control->GetLabelRect().Right, 4 + metrics.horizontalAdvance("C"));
    EXPECT_EQ(Control->GetSuggestedHeight(), 2 * metrics.height() + 10);
    EXPECT_TRUE(Control->objectName().startsWith(QStringLiteral("TVectorFileLayerLegendControl_")));
}

TEST_F(ColorLegend, TellsWhatIsWhere) {
    const TRect label = Control->GetLabelRect();
    const TRect swatch = Control->GetColorRect();
    EXPECT_EQ(Control->HitTest({label.Left, label.Top}), 1);
    EXPECT_EQ(Control->HitTest({label.Right, label.Top}), 0);
    EXPECT_EQ(Control->HitTest({swatch.Left, swatch.Top}), 2);
    EXPECT_EQ(Control->HitTest({swatch.Right - 1, swatch.Bottom - 1}), 2);
    EXPECT_EQ(Control->HitTest({swatch.Right, swatch.Bottom}), 0);
}

TEST_F(ColorLegend, ShowsItsColorInABlackFrame) {
    const int ratio = static_cast<int>(Control->devicePixelRatioF());
    const QImage picture = PictureOf(*Control);
    const TRect swatch = Control->GetColorRect();
    EXPECT_EQ(picture.pixel(Middle(swatch) * ratio), 0xFF332211U);
    EXPECT_EQ(picture.pixel(swatch.Left * ratio, Middle(swatch).y() * ratio), 0xFF000000U);
    EXPECT_EQ(picture.pixel((swatch.Right * ratio) - 1, Middle(swatch).y() * ratio), 0xFF000000U);
    EXPECT_EQ(Control->accessibleDescription(), "#332211");
}

TEST_F(ColorLegend, APressOnTheSwatchChoosesAColor) {
    Chooser->Answers.push_back(0xFFAABBCC);
    QTest::mouseClick(Control, Qt::LeftButton, {}, Middle(Control->GetColorRect()));
    EXPECT_EQ(Chooser->Shown, std::vector<TColor32>{0xFF332211});
    EXPECT_EQ(Chosen, std::vector<TColor>{TColor{0x00CCBBAA}});
    EXPECT_EQ(Control->GetShapeColor(), TColor{0x00112233}) << "the control only tells";
}

TEST_F(ColorLegend, TheKeyboardChoosesAColor) {
    Chooser->Answers = {0xFFAABBCC, 0xFF000001};
    Control->setFocus();
    QTest::keyClick(Control, Qt::Key_Space);
    QTest::keyClick(Control, Qt::Key_Return);
    EXPECT_EQ(Chosen.size(), 2U);
}

TEST_F(ColorLegend, APressElsewhereOrACancelDoesNothing) {
    QTest::mouseClick(Control, Qt::LeftButton, {}, Middle(Control->GetLabelRect()));
    QTest::mouseClick(Control, Qt::LeftButton, {}, {190, 55});
    EXPECT_TRUE(Chooser->Shown.empty());
    Chooser->Answers.push_back(std::nullopt);
    QTest::mouseClick(Control, Qt::LeftButton, {}, Middle(Control->GetColorRect()));
    EXPECT_EQ(Chooser->Shown.size(), 1U);
    EXPECT_TRUE(Chosen.empty());
}

TEST_F(ColorLegend, ItsOwnerMayFreeItWhileItTells) {
    const QPointer<QWidget> control = Control;
    Chooser->Answers.push_back(0xFFAABBCC);
    Control->SetOnColorChanged([this](TBaseLegendControl*, TColor) { delete std::exchange(Control, nullptr); });
    Control->ChooseColor();
    EXPECT_EQ(control, nullptr);
}

struct ShapeLegend : testing::Test {
    QTemporaryDir Folder;
    tests::TScriptedMsgBox Messages;

    std::unique_ptr<TShpFile> FileNamed(const char* name) const {
        const QString path = Folder.filePath(name);
        WriteFile(path, tests::TShapeBytes().Point(1, {1, 2}).File(1));
        return TShpFile::LoadFromFile(path, nullptr);
    }
};

TEST_F(ShapeLegend, TheButtonStandsBehindTheSwatchAsLargeAsItsImage) {
    const std::unique_ptr<TShapeFileLayerLegendControl> control(
        TShapeFileLayerLegendControl::CreateComp(nullptr, nullptr, TColor{0x1}));
    const TRect swatch = control->GetColorRect();
    const QRect button = control->GetExploreButton()->geometry();
    EXPECT_EQ(button, QRect(swatch.Right + 4, swatch.Top + swatch.GetHeight() / 2 - 12, 24, 24));
    EXPECT_EQ(control->GetExploreButton()->toolTip(), "Explore shape file");
    EXPECT_EQ(control->GetExploreButton()->GetImageName(), "MapWindowFactory.ExploreShape");
    EXPECT_TRUE(control->objectName().startsWith(QStringLiteral("TShapeFileLayerLegendControl_")));
}

TEST_F(ShapeLegend, TellsOfTheTableBesideTheFile) {
    const auto file = FileNamed("coast.shp");
    WriteFile(Folder.filePath("COAST.DBF"), "table");
    const std::unique_ptr<TShapeFileLayerLegendControl> control(
        TShapeFileLayerLegendControl::CreateComp(nullptr, file.get(), TColor{0x1}));
    QStringList told;
    const auto subscription =
        control->GetOnExploreShapeFile().Add([&](TShapeFileLayerLegendControl*, const QString& name) { told += name; });
    control->GetExploreButton()->click();
    EXPECT_EQ(told, QStringList{Folder.filePath("COAST.DBF")});
    EXPECT_TRUE(Messages->Shown.empty());
}

TEST_F(ShapeLegend, AMissingTableIsReported) {
    const auto file = FileNamed("coast.shp");
    const std::unique_ptr<TShapeFileLayerLegendControl> control(
        TShapeFileLayerLegendControl::CreateComp(nullptr, file.get(), TColor{0x1}));
    bool told = false;
    const auto subscription =
        control->GetOnExploreShapeFile().Add([&](TShapeFileLayerLegendControl*, const QString&) { told = true; });
    control->GetExploreButton()->click();
    EXPECT_FALSE(told);
    ASSERT_EQ(Messages->Shown.size(), 1U);
    EXPECT_EQ(Messages->Shown[0].Kind, "Error");
    EXPECT_EQ(Messages->Shown[0].Text, "Unable to find file: " + Folder.filePath("coast.dbf"));
    EXPECT_EQ(Messages->Shown[0].Title, "File not found");
}

TEST_F(ShapeLegend, WithoutAFileTheButtonDoesNothing) {
    auto file = FileNamed("coast.shp");
    const std::unique_ptr<TShapeFileLayerLegendControl> control(
        TShapeFileLayerLegendControl::CreateComp(nullptr, file.get(), TColor{0x1}));
    file.reset();
    EXPECT_EQ(control->GetShpFile(), nullptr);
    control->GetExploreButton()->click();
    EXPECT_TRUE(Messages->Shown.empty());
}

} // namespace
} // namespace lmx
