#include <lmx/Dialogs/Private/lmxBasicPalettePage.h>

#include <lmx/Dialogs/lmxAddBasicPaletteColorDialog.h>
#include <lmx/Graphics/lmxSystemColors.h>
#include <tests/Dialogs/DisplayPageFixture.h>
#include <tests/Support/ModalAnswer.h>

#include <QLabel>
#include <QRadioButton>

namespace lmx {
namespace {

using tests::Find;
using tests::LetMessagesCome;
using tests::Local;
using tests::TModalAnswer;

struct BasicPalettePage : tests::TDisplayPageTest {
    using TAnswer = TModalAnswer<TAddBasicPaletteColorDialog>;

    BasicPalettePage() {
        Show(TBasicPaletteColorCalculatorFactory::GetObject(
                 {0, 60},
                 {{"", 0xFF000000U}, {"", 0x800000FFU}, {"Name", 0xFF00FF00U}, {" ", 0xFFFF0000U}, {"", 0xFFFFFFFFU}},
                 false),
             {0, 60});
    }
    void Press(const char* button) { tests::Click(Find<QWidget>(Frame, "BasicPalPage"), button); }
    QStringList Rows() const { return tests::TextsOf(List); }
    QString Key() const { return Frame.CreateBasicPaletteColorCalc()->GetColorKey()->Serialize(); }

    TDrawnListView& List = In<TDrawnListView>("BasicPalPage", "lvBasicPalette");
    QRadioButton& First = In<QRadioButton>("BasicPalPage", "rbFirstColorNoData");
    QRadioButton& Transparent = In<QRadioButton>("BasicPalPage", "rbTransparentNoData");
};

TEST_F(BasicPalettePage, ListsColorsWithTheirBands) {
    EXPECT_EQ(ActivePage(), "BasicPalPage");
    EXPECT_EQ(tests::TitlesOf(List), (QStringList{"Index", "Label", "Color"}));
    EXPECT_EQ(List.columnWidth(1), 160);
    EXPECT_EQ(List.columnWidth(2), 60);
    EXPECT_TRUE(Transparent.isChecked());
    EXPECT_EQ(Rows(), (QStringList{"1|0 - 12|", "2|12 - 24|", "3|Name|", "4|36 - 48|", "5|48 - 60|"}));
}

TEST_F(BasicPalettePage, LabelsQuartersBehindTheColorForNoData) {
    tests::ClickRow(List, 3);
    QTest::mouseClick(&First, Qt::LeftButton, {}, {8, First.height() / 2});
    EXPECT_EQ(Rows(), (QStringList{"1|NODATA|", "2|0 - 15|", "3|Name|", "4|30 - 45|", "5|45 - 60|"}));
    EXPECT_EQ(List.GetSelectedRow(), 3);
    QTest::mouseClick(&Transparent, Qt::LeftButton, {}, {8, Transparent.height() / 2});
    EXPECT_EQ(Rows()[4], "5|48 - 60|");
}

// The rest of the range is that of no colour: one reserved colour alone has no band.
TEST_F(BasicPalettePage, HasNoBandForAReservedColorAlone) {
    TBasicPalettePage page;
    page.SetValueRange({0, 60});
    page.SetBasicPalette(*TBasicPaletteColorCalculatorFactory::GetObject({0, 1}, {{"", 0xFF000000U}}, true));
    EXPECT_EQ(tests::TextsOf(Find<TDrawnListView>(page, "lvBasicPalette")), QStringList{"1|NODATA|"});
}

TEST_F(BasicPalettePage, TakesOnlyBlanksAndControlCharactersForNoName) {
    TBasicPalettePage page;
    page.SetValueRange({0, 60});
    page.SetBasicPalette(*TBasicPaletteColorCalculatorFactory::GetObject(
        {0, 1}, {{"\x01\t ", 0xFF000000U}, {QStringLiteral(u"\u00A0"), 0xFF000000U}, {" Name ", 0xFF000000U}}, false));
    EXPECT_EQ(tests::TextsOf(Find<TDrawnListView>(page, "lvBasicPalette")),
              (QStringList{"1|0 - 20|", QStringLiteral(u"2|\u00A0|"), "3| Name |"}));
}

TEST_F(BasicPalettePage, HasItsControls) {
    const std::vector<std::pair<const char*, const char*>> buttons{
        {"Button8", "Add..."},           {"edBasicEditBtn", "&Edit..."}, {"Button1", "Delete"},
        {"btnBasicPalLoad", "&Load..."}, {"btnBasicPalCopy", "&Copy"},   {"btnBasicPalPaste", "&Paste"}};
    for (const auto& [name, text] : buttons)
        EXPECT_EQ(In<QPushButton>("BasicPalPage", name).text(), QString::fromLatin1(text));
    QStringList labels;
    for (const QLabel* label : Find<QWidget>(Frame, "BasicPalPage").findChildren<QLabel*>())
        labels.append(label->text());
    EXPECT_EQ(labels, QStringList{"NODATA: "});
    EXPECT_EQ(First.text(), "Use first color for NODATA cells");
    EXPECT_EQ(Transparent.text(), "Use transparency for NODATA cells");
    EXPECT_TRUE(TBasicPalettePage().findChild<QRadioButton*>(QStringLiteral("rbTransparentNoData"))->isChecked());
}

TEST_F(BasicPalettePage, TakesOverWhatTheCalculatorReserves) {
    TBasicPalettePage page;
    page.SetValueRange({-5, 5});
    const auto calculator =
        TBasicPaletteColorCalculatorFactory::GetObject({0, 1}, {{"A", 0xFF000000U}, {"B", 0xFFFFFFFFU}}, true);
    page.SetBasicPalette(*calculator);
    const auto created = page.CreateColorCalc();
    EXPECT_TRUE(created->GetReserveFirstColorForNoData());
    EXPECT_EQ(created->GetMinVal(), -5.0F) << "over the layer's range";
    EXPECT_EQ(created->GetMaxVal(), 5.0F);
    EXPECT_EQ(created->GetColorKey()->GetColors(), calculator->GetColorKey()->GetColors());
    EXPECT_NE(created->GetColorKey(), calculator->GetColorKey());
}

TEST_F(BasicPalettePage, TakesACalculatorWithoutAKey) {
    TBasicPalettePage page;
    page.SetBasicPalette(*TBasicPaletteColorCalculatorFactory::GetObject());
    EXPECT_TRUE(page.IsEmpty());
}

TEST_F(BasicPalettePage, AddsAColor) {
    {
        const TAnswer answer([](TAddBasicPaletteColorDialog& dialog) {
            EXPECT_EQ(dialog.GetPalColor(), 0xFF000000U);
            dialog.SetPalColor(0x11223344U);
            dialog.SetPalLabel(QStringLiteral("New"));
            dialog.accept();
        });
        Press("Button8");
    }
    EXPECT_EQ(Rows(), (QStringList{"1|0 - 10|", "2|10 - 20|", "3|Name|", "4|30 - 40|", "5|40 - 50|", "6|New|"}));
    EXPECT_TRUE(Key().endsWith("(\"New\":#11223344)"));
    EXPECT_EQ(Frame.focusWidget(), &List);
}

TEST_F(BasicPalettePage, AddsNothingAfterACancel) {
    const QString before = Key();
    const TAnswer answer([](TAddBasicPaletteColorDialog& dialog) {
        dialog.SetPalLabel(QStringLiteral("New"));
        dialog.reject();
    });
    Press("Button8");
    EXPECT_EQ(Key(), before);
    EXPECT_EQ(List.GetRowCount(), 5);
}

TEST_F(BasicPalettePage, EditsTheOneSelectedColor) {
    EXPECT_FALSE(In<QPushButton>("BasicPalPage", "edBasicEditBtn").isEnabled());
    {
        const TAnswer answer([](TAddBasicPaletteColorDialog& dialog) {
            EXPECT_EQ(dialog.GetPalLabel(), "Name");
            EXPECT_EQ(dialog.GetPalColor(), 0xFF00FF00U);
            dialog.SetPalLabel(QStringLiteral("Other"));
            dialog.SetPalColor(0x00FFFFFFU);
            dialog.accept();
        });
        tests::DoubleClickRow(List, 2);
    }
    EXPECT_EQ(Rows()[2], "3|Other|");
    EXPECT_EQ(List.GetSelectedRow(), 2);
    EXPECT_TRUE(Key().contains("(\"Other\":#00FFFFFF)"));
    {
        const TAnswer answer([](TAddBasicPaletteColorDialog& dialog) {
            dialog.SetPalLabel(QStringLiteral("Third"));
            dialog.reject();
        });
        Press("edBasicEditBtn");
    }
    EXPECT_EQ(Rows()[2], "3|Other|");
    tests::ClickRow(List, 3, Qt::ControlModifier);
    EXPECT_FALSE(In<QPushButton>("BasicPalPage", "edBasicEditBtn").isEnabled());
}

TEST_F(BasicPalettePage, DeletesWithoutAQuestionAndCountsAnew) {
    EXPECT_FALSE(In<QPushButton>("BasicPalPage", "Button1").isEnabled());
    tests::ClickRow(List, 1);
    tests::ClickRow(List, 3, Qt::ControlModifier);
    tests::ClickRow(List, 4, Qt::ControlModifier);
    Press("Button1");
    EXPECT_TRUE(Messages->Shown.empty());
    EXPECT_EQ(Rows(), (QStringList{"1|0 - 30|", "2|Name|"}));
    EXPECT_EQ(Key(), "(\"\":#FF000000),(\"Name\":#FF00FF00)");
    EXPECT_FALSE(List.HasSelection());
    List.selectAll();
    QTest::keyClick(&List, Qt::Key_Delete);
    EXPECT_TRUE(Rows().isEmpty());
}

TEST_F(BasicPalettePage, LoadsAPalette) {
    AnswerBrowser(WriteFile("two.pal", "QUORVAN45PAL\n255 0 0 255\n0 255 0 128\n"));
    Press("btnBasicPalLoad");
    EXPECT_EQ(Browser->Shown, (std::vector<std::vector<QString>>{{"One", "Two"}}));
    EXPECT_EQ(Key(), "(\"\":#FFFF0000),(\"\":#8000FF00)");
    EXPECT_EQ(Rows(), (QStringList{"1|0 - 30|", "2|30 - 60|"}));
}

TEST_F(BasicPalettePage, LoadsAnEmptyPalette) {
    AnswerBrowser(WriteFile("empty.pal", "QUORVAN45PAL\n"));
    Press("btnBasicPalLoad");
    EXPECT_TRUE(Rows().isEmpty());
    EXPECT_EQ(Key(), "");
}

TEST_F(BasicPalettePage, IgnoresOtherResources) {
    const QStringList before = Rows();
    AnswerBrowser(QStringLiteral("x.txt"), QStringLiteral("GradientFileName"));
    Press("btnBasicPalLoad");
    Browser->Answers.push_back(std::nullopt);
    Press("btnBasicPalLoad");
    LetMessagesCome();
    EXPECT_TRUE(Messages->Shown.empty());
    EXPECT_EQ(Rows(), before);
}

TEST_F(BasicPalettePage, ChangesNothingForABadFile) {
    const QString before = Key();
    const QStringList rows = Rows();
    const QString garbage = WriteFile("garbage.pal", "\x01\xFF\xFE garbage");
    const std::vector<std::pair<QString, QString>> files{
        {WriteFile("bad.pal", "QUORVAN45PAL\n1 2 3 4\nred 2 3 4\n"), "'red' is not a valid integer value"},
        {WriteFile("far.pal", "QUORVAN45PAL\n1 2 3 256\n"), "'256' is not a valid color component"},
        {WriteFile("none.pal", ""), "Invalid palette file"},
        {garbage, garbage + ": line 1 of the palette is not an index and three components"}};
    for (const auto& [fileName, message] : files) {
        Messages->Shown.clear();
        AnswerBrowser(fileName);
        Press("btnBasicPalLoad");
        LetMessagesCome();
        ASSERT_EQ(Messages->Shown.size(), 1U) << fileName.toStdString();
        EXPECT_EQ(Messages->Shown[0].Kind, "Error");
        EXPECT_EQ(Messages->Shown[0].Text, message);
    }
    EXPECT_EQ(Key(), before);
    EXPECT_EQ(Rows(), rows);
}

TEST_F(BasicPalettePage, BrowsesNothingWithoutAConfig) {
    Frame.SetData({0, 60}, Frame.CreateBasicPaletteColorCalc(), 255, nullptr);
    Browser->Answers.push_back(std::nullopt);
    Press("btnBasicPalLoad");
    EXPECT_EQ(Browser->Shown, std::vector<std::vector<QString>>{{}});
}

TEST_F(BasicPalettePage, CopiesAndPastes) {
    const QString key = Key();
    Press("btnBasicPalCopy");
    EXPECT_EQ(QString::fromUtf8(Clipboard->Data["application/x-lmx-colorkey"]), key);
    Clipboard->Data["application/x-lmx-colorkey"] = "(\"A\":#FF112233),(\"\":#FF445566)";
    Press("btnBasicPalPaste");
    EXPECT_EQ(Rows(), (QStringList{"1|A|", "2|30 - 60|"}));
}

TEST_F(BasicPalettePage, KeepsTheSelectedIndexIfThereStillIsOne) {
    tests::ClickRow(List, 1);
    Clipboard->Data["application/x-lmx-colorkey"] = "(\"A\":#FF112233),(\"B\":#FF445566)";
    Press("btnBasicPalPaste");
    EXPECT_EQ(List.GetSelectedRows(), std::vector<int>{1});
    Clipboard->Data["application/x-lmx-colorkey"] = "(\"A\":#FF112233)";
    Press("btnBasicPalPaste");
    EXPECT_TRUE(List.GetSelectedRows().empty());
    EXPECT_FALSE(In<QPushButton>("BasicPalPage", "edBasicEditBtn").isEnabled());
}

TEST_F(BasicPalettePage, ScrollsToTheSelectedIndex) {
    QStringList colors;
    for (int i = 0; i < 200; ++i)
        colors.append(QStringLiteral("(\"\":#FF000000)"));
    Clipboard->Data["application/x-lmx-colorkey"] = colors.join(u',').toUtf8();
    Press("btnBasicPalPaste");
    List.SelectRow(150);
    List.scrollToTop();
    ASSERT_FALSE(List.viewport()->rect().contains(List.RowRect(150)));
    QTest::mouseClick(&First, Qt::LeftButton, {}, {8, First.height() / 2});
    EXPECT_EQ(List.GetSelectedRow(), 150);
    EXPECT_TRUE(List.viewport()->rect().contains(List.RowRect(150)));
}

TEST_F(BasicPalettePage, PastesNothingOfOtherKinds) {
    const QString before = Key();
    Clipboard->Text = "(\"A\":#FF112233)";
    Press("btnBasicPalPaste");
    Clipboard->Data["application/x-lmx-classified"] = "(\"A\":#FF112233)";
    Press("btnBasicPalPaste");
    EXPECT_EQ(Key(), before);
}

TEST_F(BasicPalettePage, KeepsWhatCouldBeReadOfADamagedText) {
    Clipboard->Data["application/x-lmx-colorkey"] = "(\"A\":#FF112233),(\"B\":#nonsense)";
    Press("btnBasicPalPaste");
    LetMessagesCome();
    ASSERT_EQ(Messages->Shown.size(), 1U);
    EXPECT_EQ(Messages->Shown[0].Text, "'#nonsense' is not a valid color value");
    EXPECT_EQ(Rows(), QStringList{"1|A|"});
    for (const QByteArray& text : {QByteArray("damaged from the start"), QByteArray(), QByteArray(1'000'000, '('),
                                   QByteArray("(\"") + QByteArray(1'000'000, 'x')}) {
        Clipboard->Data["application/x-lmx-colorkey"] = "(\"A\":#FF112233)";
        Press("btnBasicPalPaste");
        EXPECT_EQ(Rows(), QStringList{"1|A|"});
        Clipboard->Data["application/x-lmx-colorkey"] = text;
        Press("btnBasicPalPaste");
        LetMessagesCome();
        EXPECT_TRUE(Rows().isEmpty()) << text.left(30).toStdString();
        EXPECT_EQ(Messages->Shown.size(), 1U);
    }
}

TEST_F(BasicPalettePage, DrawsAnOpaqueSwatch) {
    const QImage picture = tests::PictureOf(*List.viewport());
    const QRect row = List.RowRect(1);
    const int left = List.columnViewportPosition(2);
    EXPECT_EQ(picture.pixel(left, row.top() + 1), 0xFF0000FFU) << "of half the alpha";
    EXPECT_EQ(picture.pixel(left, row.top()), Color32(clWindow));
    tests::ClickRow(List, 1);
    const int behind = left + List.columnWidth(2) - 1;
    EXPECT_EQ(tests::PictureOf(*List.viewport()).pixel(behind, row.center().y()), Color32(clHighlight));
}

} // namespace
} // namespace lmx
