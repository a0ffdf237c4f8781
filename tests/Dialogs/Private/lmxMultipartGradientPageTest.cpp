#include <lmx/Dialogs/Private/lmxMultipartGradientPage.h>

#include <lmx/Colour/lmxMultipartGradient.h>
#include <lmx/Dialogs/lmxAddMPGradientDialog.h>
#include <lmx/Graphics/lmxGradient.h>
#include <tests/Dialogs/DisplayPageFixture.h>
#include <tests/Support/ModalAnswer.h>

#include <QLabel>

namespace lmx {
namespace {

using tests::Find;
using tests::Local;
using tests::TModalAnswer;
using tests::TShownMessage;

std::shared_ptr<IGradientColorCalculator> Part(float min, float max) {
    return TGradientColorCalculatorFactory::GetObject(
        min, max, 0xFF123456U, TGradientFactory::GetObject({{0.25, 0xFF000000U}, {1, 0x80FFFFFFU}}));
}

struct MultipartGradientPage : tests::TDisplayPageTest {
    using TAnswer = TModalAnswer<TAddMPGradientDialog>;

    MultipartGradientPage() {
        Show(TMultipartGradientColorCalculatorFactory::GetObject(-5, 5, {Part(0, 10.5F), nullptr, Part(10.5F, 50)}),
             {-12.3456, 100});
    }
    void Press(const char* button) { tests::Click(Find<QWidget>(Frame, "MultipartGradientPage"), button); }
    QStringList Rows() const { return tests::TextsOf(List); }

    TDrawnListView& List = In<TDrawnListView>("MultipartGradientPage", "lvMultipartGradients");
};

TEST_F(MultipartGradientPage, ListsItsGradients) {
    EXPECT_EQ(ActivePage(), "MultipartGradientPage");
    EXPECT_EQ(tests::TitlesOf(List), QStringList{"Range"});
    EXPECT_EQ(List.columnWidth(0), 150);
    EXPECT_EQ(Rows(), (QStringList{Local("0.000 to 10.500"), Local("10.500 to 50.000")}));
    QStringList labels;
    for (const QLabel* label : Find<QWidget>(Frame, "MultipartGradientPage").findChildren<QLabel*>())
        labels.append(label->text());
    EXPECT_TRUE(labels.contains("Specify one or more gradients for the range of values:"));
    EXPECT_TRUE(labels.contains("Gradients:"));
    EXPECT_EQ(In<QLabel>("MultipartGradientPage", "lbFullRange").text(), Local("Full range: -12.346 - 100.000"));
    EXPECT_EQ(In<QPushButton>("MultipartGradientPage", "btnMPAdd").text(), "&Add...");
    EXPECT_EQ(In<QPushButton>("MultipartGradientPage", "btnMPEdit").text(), "&Edit...");
    EXPECT_EQ(In<QPushButton>("MultipartGradientPage", "btnMPDelete").text(), "&Delete");
}

TEST_F(MultipartGradientPage, MakesACalculatorOfItsOwn) {
    const auto created = Frame.CreateMultipartGradientColorCalc();
    EXPECT_EQ(created->GetMinVal(), static_cast<float>(-12.3456)) << "over the layer's range";
    EXPECT_EQ(created->GetMaxVal(), 100.0F);
    ASSERT_EQ(created->GetGradients().size(), 2U);
    const auto part = *created->GetGradients().begin();
    EXPECT_EQ(part->GetMinVal(), 0.0F);
    EXPECT_EQ(part->GetMaxVal(), 10.5F);
    EXPECT_EQ(part->GetDefaultColor(), 0U) << "which is not carried over";
    EXPECT_EQ(part->GetGradient()->ToString(), "(0.25:#FF000000),(1:#80FFFFFF)");
}

TEST_F(MultipartGradientPage, AddsAGradient) {
    {
        const TAnswer answer([](TAddMPGradientDialog& dialog) {
            EXPECT_EQ(Find<QLabel>(dialog, "lbFullRange").text(), Local("-12.346 - 100.000"));
            TMPGradItem item;
            item.Stops = {{0.5, 0xFFFF0000U}};
            item.Min = 5;
            item.Max = 1;
            dialog.SetData(item);
            dialog.accept();
        });
        Press("btnMPAdd");
    }
    EXPECT_EQ(Rows().last(), Local("5.000 to 1.000"));
    const auto created = Frame.CreateMultipartGradientColorCalc();
    ASSERT_EQ(created->GetGradients().size(), 3U);
    EXPECT_EQ((*(created->GetGradients().end() - 1))->GetGradient()->ToString(), "(0.5:#FFFF0000)");
}

TEST_F(MultipartGradientPage, AddsNothingAfterACancel) {
    const TAnswer answer([](TAddMPGradientDialog& dialog) {
        TMPGradItem item;
        item.Stops = {{0.5, 0xFFFF0000U}};
        dialog.SetData(item);
        dialog.reject();
    });
    Press("btnMPAdd");
    EXPECT_EQ(Rows().size(), 2);
    EXPECT_EQ(Frame.CreateMultipartGradientColorCalc()->GetGradients().size(), 2U);
}

TEST_F(MultipartGradientPage, EditsTheSelectedGradient) {
    EXPECT_FALSE(In<QPushButton>("MultipartGradientPage", "btnMPEdit").isEnabled());
    {
        const TAnswer answer([](TAddMPGradientDialog& dialog) {
            EXPECT_EQ(Find<QLabel>(dialog, "lbFullRange").text(), Local("-12.346 - 100.000"));
            EXPECT_EQ(dialog.GetMin(), 10.5F);
            EXPECT_EQ(dialog.GetMax(), 50.0F);
            EXPECT_EQ(dialog.GetStops(), (std::vector<TColorStop>{{0.25, 0xFF000000U}, {1, 0x80FFFFFFU}}));
            TMPGradItem item;
            item.Min = 11;
            item.Max = 51;
            dialog.SetData(item); // adds no stops to those that there are
            dialog.accept();
        });
        tests::DoubleClickRow(List, 1);
    }
    EXPECT_EQ(Rows(), (QStringList{Local("0.000 to 10.500"), Local("11.000 to 51.000")}));
    EXPECT_EQ(List.GetSelectedRow(), 1);
    {
        const TAnswer answer([](TAddMPGradientDialog& dialog) { dialog.reject(); });
        Press("btnMPEdit");
    }
    EXPECT_EQ(Rows()[1], Local("11.000 to 51.000"));
    const auto created = Frame.CreateMultipartGradientColorCalc();
    const auto part = *(created->GetGradients().begin() + 1);
    EXPECT_EQ(part->GetMinVal(), 11.0F);
    EXPECT_EQ(part->GetMaxVal(), 51.0F);
}

TEST_F(MultipartGradientPage, AsksBeforeItDeletes) {
    Messages->Answers = {false, true};
    tests::ClickRow(List, 0);
    Press("btnMPDelete");
    EXPECT_EQ(Rows().size(), 2);
    ASSERT_EQ(Messages->Shown.size(), 1U);
    EXPECT_EQ(Messages->Shown[0].Kind, "YesNo");
    EXPECT_EQ(Messages->Shown[0].Text, "Delete gradient?");
    EXPECT_EQ(Messages->Shown[0].Title, "Gradient");
    Press("btnMPDelete");
    EXPECT_EQ(Rows(), QStringList{Local("10.500 to 50.000")});
    EXPECT_EQ(Frame.CreateMultipartGradientColorCalc()->GetGradients().size(), 1U);
}

TEST_F(MultipartGradientPage, TakesPartsWithoutAGradient) {
    TMultipartGradientPage page;
    page.SetMultipartGradient(*TMultipartGradientColorCalculatorFactory::GetObject(
        0, 1, {TGradientColorCalculatorFactory::GetObject(0, 1, nullptr)}));
    EXPECT_TRUE((*page.CreateColorCalc()->GetGradients().begin())->GetGradient()->GetColorStops().empty());
}

} // namespace
} // namespace lmx
