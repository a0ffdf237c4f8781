#include <lmx/Dialogs/Private/lmxColorClassesPage.h>

#include <lmx/Dialogs/lmxAddColorClassDialog.h>
#include <lmx/Graphics/lmxSystemColors.h>
#include <tests/Dialogs/DisplayPageFixture.h>
#include <tests/Support/ModalAnswer.h>

#include <QLabel>
#include <QLineEdit>

namespace lmx {
namespace {

using tests::Find;
using tests::LetMessagesCome;
using tests::Local;
using tests::TModalAnswer;

struct ColorClassesPage : tests::TDisplayPageTest {
    using TAnswer = TModalAnswer<TAddColorClassDialog>;

    ColorClassesPage() {
        Show(TColorClassCalculatorFactory::GetObject({{"Dry", 0, 10.5F, 0xFF804020U},
                                                      {"", 10.5F, 50, 0x8000FF00U},
                                                      {" ", 50, 75, 0xFF0000FFU},
                                                      {"Wet", 75, 100, 0xFF0000AAU}}));
    }
    void Press(const char* button) { tests::Click(Find<QWidget>(Frame, "ClassifiedPage"), button); }
    QStringList Rows() const { return tests::TextsOf(List); }
    /// The classes that would be applied.
    QString Classes() const { return Frame.CreateClassifiedColorCalc()->GetColorClasses()->Serialize(); }

    TDrawnListView& List = In<TDrawnListView>("ClassifiedPage", "lvClasses");
};

TEST_F(ColorClassesPage, ListsClasses) {
    EXPECT_EQ(ActivePage(), "ClassifiedPage");
    EXPECT_EQ(tests::TitlesOf(List), (QStringList{"Index", "Label", "Range", "Color"}));
    EXPECT_EQ(List.columnWidth(1), 160);
    EXPECT_EQ(List.columnWidth(2), 160);
    EXPECT_EQ(List.columnWidth(3), 60);
    EXPECT_EQ(Rows(), (QStringList{Local("1|Dry|0 - 10.5|"), Local("2|10.5 - 50|10.5 - 50|"), "3|50 - 75|50 - 75|",
                                   "4|Wet|75 - 100|"}));
}

TEST_F(ColorClassesPage, HasItsButtons) {
    const std::vector<std::pair<const char*, const char*>> buttons{
        {"btnAddColorClass", "Add..."}, {"btnEditColorClass", "&Edit..."}, {"btnDeleteColorClass", "&Delete"},
        {"Button2", "&Load..."},        {"btnClassifiedCopy", "&Copy"},    {"Button3", "&Paste"}};
    for (const auto& [name, text] : buttons)
        EXPECT_EQ(In<QPushButton>("ClassifiedPage", name).text(), QString::fromLatin1(text));
}

TEST_F(ColorClassesPage, WorksOnCopies) {
    const auto calculator = TColorClassCalculatorFactory::GetObject({{"Dry", 0, 1, 0xFF000000U}});
    TColorClassesPage page;
    page.SetColorClasses(*calculator);
    calculator->GetColorClasses()->GetClasses()[0]->SetName(QStringLiteral("Other"));
    const auto created = page.CreateColorCalc();
    EXPECT_EQ(created->GetColorClasses()->GetClasses()[0]->GetName(), "Dry");
    EXPECT_NE(created->GetColorClasses(), calculator->GetColorClasses());
}

TEST_F(ColorClassesPage, TakesACalculatorWithoutClasses) {
    TColorClassesPage page;
    page.SetColorClasses(*TColorClassCalculatorFactory::GetObject());
    EXPECT_TRUE(page.IsEmpty());
}

TEST_F(ColorClassesPage, DoesNotCarryThePolicyOver) {
    const auto calculator = TColorClassCalculatorFactory::GetObject({{"Dry", 0, 1, 0xFF000000U}});
    calculator->SetOutOfRangePolicy(TOutOfRangePolicy::orpClosestMatch);
    TColorClassesPage page;
    page.SetColorClasses(*calculator);
    EXPECT_EQ(page.CreateColorCalc()->GetOutOfRangePolicy(), TOutOfRangePolicy::orpReturnNil);
}

TEST_F(ColorClassesPage, AddsAClass) {
    {
        const TAnswer answer([](TAddColorClassDialog& dialog) {
            EXPECT_EQ(dialog.GetClassColor(), 0xFF000000U);
            EXPECT_EQ(dialog.GetClassLabel(), "");
            EXPECT_EQ(Find<QLabel>(dialog, "lbFullRange").text(), Local("0.000 - 100.000"));
            dialog.SetClassColor(0x40123456U);
            dialog.SetClassLabel(QStringLiteral("Flood"));
            dialog.SetMin(100);
            dialog.SetMax(200);
            dialog.accept();
        });
        Press("btnAddColorClass");
    }
    EXPECT_EQ(Rows().last(), "5|Flood|100 - 200|");
    EXPECT_EQ(Frame.focusWidget(), &List);
    EXPECT_TRUE(Classes().endsWith(Local("(\"Flood\":100.0000:200.0000:#40123456)"))) << Classes().toStdString();
}

TEST_F(ColorClassesPage, AddsNothingAfterACancel) {
    const QString before = Classes();
    const TAnswer answer([](TAddColorClassDialog& dialog) {
        dialog.SetMin(1);
        dialog.SetMax(2);
        dialog.reject();
    });
    Press("btnAddColorClass");
    EXPECT_EQ(Classes(), before);
    EXPECT_EQ(List.GetRowCount(), 4);
}

TEST_F(ColorClassesPage, EditsTheOneSelectedClass) {
    EXPECT_FALSE(In<QPushButton>("ClassifiedPage", "btnEditColorClass").isEnabled());
    tests::ClickRow(List, 1);
    {
        const TAnswer answer([](TAddColorClassDialog& dialog) {
            EXPECT_EQ(dialog.GetClassLabel(), "");
            EXPECT_EQ(dialog.GetClassColor(), 0x8000FF00U);
            EXPECT_EQ(dialog.GetMin(), 10.5F);
            EXPECT_EQ(dialog.GetMax(), 50.0F);
            EXPECT_EQ(Find<QLabel>(dialog, "lbFullRange").text(), Local("0.000 - 100.000"));
            dialog.SetClassLabel(QStringLiteral("Moist"));
            dialog.SetMax(51);
            dialog.accept();
        });
        Press("btnEditColorClass");
    }
    EXPECT_EQ(Rows()[1], Local("2|Moist|10.5 - 51|"));
    EXPECT_EQ(List.GetSelectedRow(), 1);
    tests::ClickRow(List, 2, Qt::ControlModifier);
    EXPECT_FALSE(In<QPushButton>("ClassifiedPage", "btnEditColorClass").isEnabled()) << "two rows are selected";
}

TEST_F(ColorClassesPage, EditsTheClassOfADoubleClick) {
    {
        const TAnswer answer([](TAddColorClassDialog& dialog) {
            EXPECT_EQ(dialog.GetClassLabel(), "Wet");
            dialog.SetClassLabel(QStringLiteral("Other"));
            dialog.reject();
        });
        tests::DoubleClickRow(List, 3);
    }
    EXPECT_EQ(Rows()[3], "4|Wet|75 - 100|");
}

TEST_F(ColorClassesPage, DeletesWithoutAQuestionAndKeepsNumbers) {
    EXPECT_FALSE(In<QPushButton>("ClassifiedPage", "btnDeleteColorClass").isEnabled());
    tests::ClickRow(List, 0);
    tests::ClickRow(List, 2, Qt::ControlModifier);
    Press("btnDeleteColorClass");
    EXPECT_TRUE(Messages->Shown.empty());
    EXPECT_EQ(Rows(), (QStringList{Local("2|10.5 - 50|10.5 - 50|"), "4|Wet|75 - 100|"}));
    EXPECT_EQ(Frame.focusWidget(), &List);
    EXPECT_EQ(Frame.CreateClassifiedColorCalc()->GetColorClasses()->GetClasses().Count(), 2);
    Press("btnClassifiedCopy");
    Press("Button3");
    EXPECT_EQ(Rows(), (QStringList{Local("1|10.5 - 50|10.5 - 50|"), "2|Wet|75 - 100|"})) << "an update counts anew";
}

TEST_F(ColorClassesPage, DeletesByTheKey) {
    List.selectAll();
    QTest::keyClick(&List, Qt::Key_Delete);
    EXPECT_TRUE(Rows().isEmpty());
    EXPECT_EQ(Classes(), "");
}

TEST_F(ColorClassesPage, LoadsAPalette) {
    AnswerBrowser(WriteFile("two.pal", "QUORVAN45PAL\n255 0 0 255\n0 255 0 128\n0 0 255 255\n"));
    Press("Button2");
    EXPECT_EQ(Browser->Shown, (std::vector<std::vector<QString>>{{"One", "Two"}}));
    EXPECT_EQ(Rows(),
              (QStringList{Local("1|0.000 - 33.333|0 - 33.33333|"), Local("2|33.333 - 66.667|33.33333 - 66.66666|"),
                           Local("3|66.667 - 100.000|66.66666 - 100|")}));
    const auto created = Frame.CreateClassifiedColorCalc();
    const auto& classes = created->GetColorClasses()->GetClasses();
    EXPECT_EQ(classes[1]->GetColor(), 0x8000FF00U);
    EXPECT_EQ(classes[1]->GetMinValue(), static_cast<float>(100.0 / 3));
    EXPECT_EQ(classes[1]->GetMaxValue(), static_cast<float>(2 * (100.0 / 3)));
}

TEST_F(ColorClassesPage, LoadsNothingAfterACancel) {
    const QStringList before = Rows();
    Browser->Answers.push_back(std::nullopt);
    Press("Button2");
    LetMessagesCome();
    EXPECT_EQ(Rows(), before);
    EXPECT_TRUE(Messages->Shown.empty());
}

TEST_F(ColorClassesPage, KeepsRowsWhenAPaletteIsEmpty) {
    const QStringList before = Rows();
    AnswerBrowser(WriteFile("empty.pal", "QUORVAN45PAL\n"));
    Press("Button2");
    LetMessagesCome();
    EXPECT_TRUE(Messages->Shown.empty());
    EXPECT_EQ(Classes(), "");
    EXPECT_EQ(Rows(), before) << "as they were";
    tests::PictureOf(List);
    tests::DoubleClickRow(List, 0); // there is no class behind the row
    tests::ClickRow(List, 0);
    Press("btnDeleteColorClass");
    EXPECT_EQ(List.GetRowCount(), 3);
    EXPECT_EQ(Classes(), "");
}

TEST_F(ColorClassesPage, RefusesOtherResources) {
    const QStringList before = Rows();
    AnswerBrowser(QStringLiteral("x.txt"), QStringLiteral("GradientFileName"));
    Press("Button2");
    LetMessagesCome();
    ASSERT_EQ(Messages->Shown.size(), 1U);
    EXPECT_EQ(Messages->Shown[0].Text, "'GradientFileName' type not supported");
    EXPECT_EQ(Rows(), before);
    AnswerBrowser(QStringLiteral("x.pal"), QStringLiteral("idrisipalfilename"));
    Press("Button2");
    LetMessagesCome();
    EXPECT_EQ(Messages->Shown.back().Text, "'idrisipalfilename' type not supported");
}

TEST_F(ColorClassesPage, ChangesNothingWhenASourceFails) {
    struct TFailingSource final : IResBrowserSourceProvider {
        std::shared_ptr<IResBrowserSource> GetSource() override { throw Exception(QStringLiteral("no source")); }
    };
    const QString before = Classes();
    Config->PaletteSources() = {std::make_shared<TFailingSource>()};
    Press("Button2");
    LetMessagesCome();
    ASSERT_EQ(Messages->Shown.size(), 1U);
    EXPECT_EQ(Messages->Shown[0].Text, "no source");
    EXPECT_TRUE(Browser->Shown.empty());
    EXPECT_EQ(Classes(), before);
}

TEST_F(ColorClassesPage, ChangesNothingForABadFile) {
    const QStringList before = Rows();
    const QString classes = Classes();
    AnswerBrowser(WriteFile("bad.pal", "QUORVAN45PAL\n1 2 3 4\nred 2 3 4\n"));
    AnswerBrowser(Folder.filePath("absent.pal"));
    AnswerBrowser(WriteFile("none.pal", ""));
    for (int i = 0; i < 3; ++i) {
        Press("Button2");
        LetMessagesCome();
    }
    ASSERT_EQ(Messages->Shown.size(), 3U);
    EXPECT_EQ(Messages->Shown[0].Text, "'red' is not a valid integer value");
    EXPECT_EQ(Messages->Shown[1].Text, Folder.filePath("absent.pal") + ": cannot be opened: No such file or directory");
    EXPECT_EQ(Messages->Shown[2].Text, "Invalid palette file");
    EXPECT_EQ(Rows(), before);
    EXPECT_EQ(Classes(), classes);
}

TEST_F(ColorClassesPage, CopiesItsClasses) {
    Press("btnClassifiedCopy");
    EXPECT_EQ(QString::fromUtf8(Clipboard->Data["application/x-lmx-classified"]), Classes());
    EXPECT_TRUE(Classes().startsWith(Local("(\"Dry\":0.0000:10.5000:#FF804020)")));
}

TEST_F(ColorClassesPage, PastesInThePlaceOfItsClasses) {
    Clipboard->Data["application/x-lmx-classified"] = Local("(\"Ice\":-5.0000:0.0000:#FFFFFFFF)").toUtf8();
    tests::ClickRow(List, 2);
    Press("Button3");
    EXPECT_EQ(Rows(), QStringList{"1|Ice|-5 - 0|"});
    EXPECT_FALSE(List.HasSelection()) << "the list does not reach the index";
}

TEST_F(ColorClassesPage, PastesNothingOfOtherKinds) {
    const QStringList before = Rows();
    Clipboard->Text = Classes();
    Press("Button3");
    Clipboard->Data["application/x-lmx-colorkey"] = "(\"A\":#FF000000)";
    Press("Button3");
    EXPECT_EQ(Rows(), before);
}

TEST_F(ColorClassesPage, LosesItsClassesToADamagedText) {
    Clipboard->Data["application/x-lmx-classified"] = "(\"Ice\":cold:0:#FFFFFFFF)";
    Press("Button3");
    LetMessagesCome();
    ASSERT_EQ(Messages->Shown.size(), 1U);
    EXPECT_EQ(Messages->Shown[0].Text, "'cold' is not a valid floating point value");
    EXPECT_TRUE(Rows().isEmpty());
    EXPECT_EQ(Classes(), "");
    Clipboard->Data["application/x-lmx-classified"] = "no class at all";
    Press("Button3");
    LetMessagesCome();
    EXPECT_EQ(Messages->Shown.size(), 1U);
    EXPECT_TRUE(Rows().isEmpty());
}

TEST_F(ColorClassesPage, TakesAnEmptyOrAHugeTextForNoClasses) {
    const QByteArray name = QByteArray("(\"") + QByteArray(1'000'000, 'x');
    for (const QByteArray& text : {QByteArray(), QByteArray(1'000'000, '('), name, name + "\":1"}) {
        Clipboard->Data["application/x-lmx-classified"] = "(\"Ice\":-5:0:#FFFFFFFF)";
        Press("Button3");
        EXPECT_EQ(Rows(), QStringList{"1|Ice|-5 - 0|"});
        Clipboard->Data["application/x-lmx-classified"] = text;
        Press("Button3");
        LetMessagesCome();
        EXPECT_TRUE(Rows().isEmpty()) << text.left(30).toStdString();
        EXPECT_TRUE(Messages->Shown.empty());
    }
}

// Of the first class there is nothing left either: classes are added when all of the text has been read.
TEST_F(ColorClassesPage, TellsWhatIsWrongWithADamagedText) {
    const std::vector<std::pair<QByteArray, QString>> texts{
        {"(\"Ice\":-5:0:#FFFFFFFF),(\"Hot\":30:1e400:#FFFFFFFF)", "'1e400' is not a valid floating point value"},
        {"(\"Ice\":-5:NaN:#FFFFFFFF)", "'NaN' is not a valid floating point value"},
        {"(\"Ice\":-5::#FFFFFFFF)", "'' is not a valid floating point value"},
        {"(\"Ice\":-5:0:#FFFFFFFG)", "'#FFFFFFFG' is not a valid color value"},
        {"(\"Ice\":-5:0)", "Expected: :"},
        {"(\"Ice\":-5:0:#FFF)", "Expected: )"}};
    for (const auto& [text, message] : texts) {
        Messages->Shown.clear();
        Clipboard->Data["application/x-lmx-classified"] = text;
        Press("Button3");
        LetMessagesCome();
        ASSERT_EQ(Messages->Shown.size(), 1U) << text.toStdString();
        EXPECT_EQ(Messages->Shown[0].Text, message);
        EXPECT_TRUE(Rows().isEmpty());
    }
}

TEST_F(ColorClassesPage, KeepsTheSelectedIndex) {
    tests::ClickRow(List, 1);
    tests::ClickRow(List, 3, Qt::ControlModifier);
    Press("btnClassifiedCopy");
    Press("Button3");
    EXPECT_EQ(List.GetSelectedRows(), std::vector<int>{1});
}

TEST_F(ColorClassesPage, DrawsRowsWithAnOpaqueSwatch) {
    tests::ClickRow(List, 0);
    const QImage picture = tests::PictureOf(*List.viewport());
    const QRect row = List.RowRect(1);
    const int left = List.columnViewportPosition(3);
    const int right = left + List.columnWidth(3);
    const QRgb green = 0xFF00FF00U; // which has half its alpha
    EXPECT_EQ(picture.pixel(left, row.top() + 1), green);
    EXPECT_EQ(picture.pixel(right - 3, row.bottom() - 1), green);
    EXPECT_EQ(picture.pixel(right - 2, row.center().y()), Color32(clWindow));
    EXPECT_EQ(picture.pixel(left, row.top()), Color32(clWindow));
    EXPECT_EQ(picture.pixel(left, row.bottom()), Color32(clWindow));
    EXPECT_EQ(picture.pixel(right - 1, List.RowRect(0).center().y()), Color32(clHighlight));
    const QRect label(List.columnViewportPosition(1), row.top(), 2, row.height());
    EXPECT_EQ(picture.copy(label), [&] {
        QImage plain(label.size(), picture.format());
        plain.fill(Color32(clWindow));
        return plain;
    }()) << "texts stand two pixels from the left";
    const auto hasInk = [&](int inRow, TColor ink) {
        const QRect cell(List.columnViewportPosition(1), List.RowRect(inRow).top(), 160, row.height());
        const QImage text = picture.copy(cell);
        bool isThere = false;
        for (int y = 0; y < text.height(); ++y)
            for (int x = 0; x < text.width(); ++x)
                isThere |= text.pixel(x, y) == Color32(ink);
        return isThere;
    };
    EXPECT_TRUE(hasInk(0, clHighlightText));
    EXPECT_TRUE(hasInk(1, clWindowText));
    EXPECT_FALSE(hasInk(0, clWindowText));
}

} // namespace
} // namespace lmx
