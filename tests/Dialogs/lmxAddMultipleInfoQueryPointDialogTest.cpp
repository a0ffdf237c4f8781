#include <lmx/Dialogs/Private/lmxIQPAItems.h>
#include <lmx/Dialogs/lmxAddMultipleInfoQueryPointDialog.h>
#include <lmx/Dialogs/lmxAddMultipleInfoQueryPointPasteDialog.h>
#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Widgets/Private/lmxFormHeading.h>
#include <tests/Support/DialogChecks.h>
#include <tests/Support/ModalAnswer.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/WidgetPictures.h>

#include <QAccessible>
#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>

#include <set>

namespace lmx {
namespace {

using tests::TModalAnswer;
using TPaste = TAddMultipleInfoQueryPointPasteDialog;

struct AddMultipleDialog : testing::Test {
    template<class Widget>
    Widget& Find(const char* name) {
        return *Dialog->findChild<Widget*>(QString::fromLatin1(name));
    }
    QString Row(int row) const {
        const TIQPAItem& item = Dialog->GetItems().at(static_cast<std::size_t>(row));
        return item.X + '|' + item.Y + '|' + item.Label;
    }
    int Count() const { return static_cast<int>(Dialog->GetItems().size()); }
    void Show() { tests::ShowActive(*Dialog); }
    void Type(const QString& text) { QTest::keyClicks(Dialog->focusWidget(), text); }
    void Press(Qt::Key key) { QTest::keyClick(Dialog->focusWidget(), key); }
    QString Focused() const { return Dialog->focusWidget()->objectName(); }
    QPoint Middle(int row, int column) const { return Table.visualRect(Table.model()->index(row, column)).center(); }
    /// Answers the dialog that a paste brings up by the columns of X, Y and label, or cancels it.
    static TModalAnswer<TPaste> Pasting(int x, int y, int label, bool confirm = true) {
        return TModalAnswer<TPaste>([=](TPaste& dialog) {
            dialog.findChild<QComboBox*>("cbX")->setCurrentIndex(x);
            dialog.findChild<QComboBox*>("cbY")->setCurrentIndex(y);
            dialog.findChild<QComboBox*>("cbLabel")->setCurrentIndex(label);
            QTest::mouseClick(dialog.findChild<QPushButton*>(confirm ? "btnOK" : "btnCancel"), Qt::LeftButton);
        });
    }
    void ClickPaste() { QTest::mouseClick(&PasteButton, Qt::LeftButton); }

    std::unique_ptr<TAddMultipleInfoQueryPointDialog> Dialog = std::make_unique<TAddMultipleInfoQueryPointDialog>();
    QTableView& Table = Find<QTableView>("sbRoot");
    QPushButton& AddButton = Find<QPushButton>("Button3");
    QPushButton& PasteButton = Find<QPushButton>("Button4");
};

TEST_F(AddMultipleDialog, SaysWhatItIsAbout) {
    EXPECT_EQ(Dialog->windowTitle(), "Add multiple");
    EXPECT_EQ(Dialog->findChild<TFormHeading*>()->text(), "Add multiple info query points");
    EXPECT_EQ(AddButton.text(), "&Add ");
    EXPECT_EQ(PasteButton.text(), "&Paste");
    EXPECT_EQ(Find<QPushButton>("btnOK").text(), "&OK");
    EXPECT_EQ(Find<QPushButton>("btnCancel").text(), "&Cancel");
}

TEST_F(AddMultipleDialog, HasTheColumnsOfAPoint) {
    QStringList titles;
    const QHeaderView& header = Find<QHeaderView>("ColHeader");
    for (int column = 0; column < header.count(); ++column)
        titles += Table.model()->headerData(column, Qt::Horizontal).toString();
    EXPECT_EQ(titles, (QStringList{"X", "Y", "Label (optional)", "Color", ""}));
    EXPECT_EQ(header.sectionSize(0), 70);
    EXPECT_EQ(header.sectionSize(1), 70);
    EXPECT_EQ(header.sectionSize(2), 150);
    EXPECT_EQ(header.sectionSize(3), 70);
    EXPECT_GE(Table.verticalHeader()->sectionSize(0), 24);
}

TEST_F(AddMultipleDialog, FieldsFollowTheSectionsOfTheHeader) {
    Show();
    QHeaderView& header = Find<QHeaderView>("ColHeader");
    header.resizeSection(0, 120);
    header.resizeSection(3, 100);
    QCoreApplication::processEvents();
    const auto field = [this] { return Dialog->focusWidget()->geometry(); };
    EXPECT_EQ(Focused(), "FXEdit");
    EXPECT_EQ(field().left(), 0);
    EXPECT_EQ(field().top(), 1);
    EXPECT_EQ(field().width(), 118);
    Press(Qt::Key_Tab);
    EXPECT_EQ(field().left(), 120);
    EXPECT_EQ(field().width(), 68);
    Press(Qt::Key_Tab);
    EXPECT_EQ(field().left(), 190);
    EXPECT_EQ(field().width(), 148);
    EXPECT_EQ(Table.visualRect(Table.model()->index(0, TIQPAItems::clRemove)).left(), 440);

    // The colour is a square in the middle of its section.
    const tests::TScriptedColorChooser chooser;
    chooser->Answers = {0xFF00FF00U};
    QTest::mouseClick(Table.viewport(), Qt::LeftButton, {}, Middle(0, TIQPAItems::clColor));
    const QImage picture = tests::PictureOf(*Table.viewport());
    int first = 0, last = 0;
    for (int x = 340; x < 440; ++x)
        if (picture.pixel(tests::DevicePixel(*Table.viewport(), {x, Middle(0, 3).y()})) == 0xFF00FF00U) {
            first = first == 0 ? x : first;
            last = x;
        }
    EXPECT_NEAR((first + last) / 2.0, 389.5, 1);
    EXPECT_NEAR(last - first, Table.rowHeight(0), 8);
}

TEST_F(AddMultipleDialog, ANewRowHasAColorByChance) {
    for (int i = 0; i < 40; ++i)
        Dialog->AddItem();
    std::set<TColor32> colors;
    for (const TIQPAItem& item : Dialog->GetItems())
        colors.insert(Color32(item.Color));
    EXPECT_GT(colors.size(), 30U);
}

TEST_F(AddMultipleDialog, BeginsWithOneEmptyRowToTypeIn) {
    ASSERT_EQ(Count(), 1);
    EXPECT_EQ(Row(0), "||");
    EXPECT_EQ(qAlpha(Color32(Dialog->GetItems()[0].Color)), 255);
    Show();
    EXPECT_EQ(Focused(), "FXEdit");
}

TEST_F(AddMultipleDialog, IsFilledByTheKeyboardAlone) {
    Show();
    Type("174.5");
    EXPECT_EQ(Row(0), "174.5||") << "each key counts at once";
    Press(Qt::Key_Tab);
    EXPECT_EQ(Focused(), "FYEdit");
    Type("-41");
    Press(Qt::Key_Tab);
    EXPECT_EQ(Focused(), "FLabelEdit");
    Type("Here");
    Press(Qt::Key_Backtab);
    EXPECT_EQ(Focused(), "FYEdit");
    Type(".5");
    EXPECT_EQ(Row(0), "174.5|.5|Here") << "a field that is entered is typed over";
    for (const char* stop : {"FLabelEdit", "sbRoot", "sbRoot", "btnOK", "btnCancel", "Button3", "Button4", "FXEdit"}) {
        Press(Qt::Key_Tab);
        EXPECT_EQ(Focused(), stop);
    }
    Press(Qt::Key_Backtab);
    EXPECT_EQ(Focused(), "Button4") << "and back over the first field";
}

TEST_F(AddMultipleDialog, KeepsTheCursorWhereItIsWhileATextIsMended) {
    Show();
    Type("1745");
    Press(Qt::Key_Left);
    Type(".");
    Type("0");
    EXPECT_EQ(Row(0), "174.05||");
}

TEST_F(AddMultipleDialog, TheTabKeyLeadsFromRowToRow) {
    Dialog->AddItem();
    Show();
    for (int i = 0; i < 5; ++i)
        Press(Qt::Key_Tab);
    EXPECT_EQ(Focused(), "FXEdit");
    Type("2");
    EXPECT_EQ(Row(1), "2||");
    Press(Qt::Key_Backtab);
    EXPECT_EQ(Table.currentIndex(), Table.model()->index(0, TIQPAItems::clRemove));
}

TEST_F(AddMultipleDialog, AddsARowAndGoesThere) {
    Show();
    for (int i = 0; i < 30; ++i)
        QTest::mouseClick(&AddButton, Qt::LeftButton);
    EXPECT_EQ(Count(), 31);
    EXPECT_EQ(Focused(), "FXEdit");
    Type("9");
    EXPECT_EQ(Row(30), "9||");
    EXPECT_TRUE(Table.viewport()->rect().contains(Middle(30, 0))) << "the row is seen";
    QTest::keyClick(Dialog.get(), Qt::Key_A, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([this] { return Count() == 32; }));
}

TEST_F(AddMultipleDialog, RemovesRowsByMouseAndKey) {
    for (int i = 0; i < 3; ++i)
        Dialog->AddItem();
    Show();
    for (int row = 0; row < 4; ++row)
        Table.model()->setData(Table.model()->index(row, 0), QString::number(row));
    QTest::mouseClick(Table.viewport(), Qt::LeftButton, {}, Middle(1, TIQPAItems::clRemove));
    ASSERT_EQ(Count(), 3);
    EXPECT_EQ(Row(1), "2||");
    QTest::mousePress(Table.viewport(), Qt::LeftButton, {}, Middle(1, TIQPAItems::clRemove));
    QTest::mouseRelease(Table.viewport(), Qt::LeftButton, {}, Middle(2, TIQPAItems::clRemove));
    EXPECT_EQ(Count(), 3) << "let go elsewhere";
    Table.setCurrentIndex(Table.model()->index(0, TIQPAItems::clRemove));
    Table.setFocus();
    for (int rest = 2; rest >= 0; --rest) {
        Press(Qt::Key_Space);
        EXPECT_EQ(Count(), rest);
    }
    Press(Qt::Key_Tab);
    EXPECT_EQ(Focused(), "btnOK") << "an empty table is passed over";
    QTest::mouseClick(&Find<QPushButton>("btnOK"), Qt::LeftButton);
    EXPECT_EQ(Dialog->GetModalResult(), TModalResult::mrOk);
    EXPECT_EQ(Count(), 0);
}

TEST_F(AddMultipleDialog, ChoosesAColorByMouseAndKey) {
    const tests::TScriptedColorChooser chooser;
    chooser->Answers = {0x40123456U, std::nullopt, 0xFFABCDEFU};
    const TColor32 first = Color32(Dialog->GetItems()[0].Color);
    Show();
    QTest::mousePress(Table.viewport(), Qt::LeftButton, {}, Middle(0, TIQPAItems::clColor));
    EXPECT_EQ(chooser->Shown, std::vector<TColor32>{first}) << "as the button goes down";
    QTest::mouseRelease(Table.viewport(), Qt::LeftButton, {}, Middle(0, TIQPAItems::clColor));
    EXPECT_EQ(Color32(Dialog->GetItems()[0].Color), 0xFF123456U);
    Table.setFocus();
    Press(Qt::Key_Space); // and cancel
    EXPECT_EQ(Color32(Dialog->GetItems()[0].Color), 0xFF123456U);
    Press(Qt::Key_Space);
    EXPECT_EQ(Color32(Dialog->GetItems()[0].Color), 0xFFABCDEFU);
    EXPECT_EQ(Table.model()->index(0, TIQPAItems::clColor).data(Qt::AccessibleTextRole).toString(), "#ABCDEF");
}

TEST_F(AddMultipleDialog, SurvivesItsEndWhileAColorIsChosen) {
    const tests::TScriptedColorChooser chooser;
    chooser->Answers = {0xFF123456U};
    chooser->WhileOpen = [this] { Dialog.reset(); };
    Show();
    Table.setCurrentIndex(Table.model()->index(0, TIQPAItems::clColor));
    QTest::keyClick(&Table, Qt::Key_Space);
    EXPECT_EQ(Dialog, nullptr);
}

TEST_F(AddMultipleDialog, ClosesWithOkByEnterWhateverTheRowsHold) {
    const tests::TScriptedMsgBox messages;
    const TModalAnswer<TAddMultipleInfoQueryPointDialog> answer([this](auto& dialog) {
        ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
        Type("east");
        Press(Qt::Key_Return);
    });
    EXPECT_EQ(Dialog->ShowModal(), TModalResult::mrOk);
    EXPECT_EQ(Row(0), "east||");
    EXPECT_TRUE(messages->Shown.empty());
}

TEST_F(AddMultipleDialog, IsCancelledByEscapeInAField) {
    const TModalAnswer<TAddMultipleInfoQueryPointDialog> answer([this](auto& dialog) {
        ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
        Type("1");
        Press(Qt::Key_Escape);
    });
    EXPECT_EQ(Dialog->ShowModal(), TModalResult::mrCancel);
}

TEST_F(AddMultipleDialog, PastesBehindTheRowsThatThereAre) {
    const tests::TScriptedClipboard clipboard;
    clipboard->Text = "name\tlat\tlon\nA\t1\t2\n\t\tx\n";
    Show();
    const auto answer = Pasting(3, 2, 1);
    ClickPaste();
    ASSERT_EQ(Count(), 3);
    EXPECT_EQ(Row(0), "||") << "the first, empty row stays";
    EXPECT_EQ(Row(1), "2|1|A");
    EXPECT_EQ(Row(2), "x||") << "nothing is looked at";
    EXPECT_EQ(Dialog->findChild<TPaste*>(), nullptr) << "the other dialog is gone";
}

TEST_F(AddMultipleDialog, PastesWithoutALabel) {
    const tests::TScriptedClipboard clipboard;
    clipboard->Text = "x,y\n1,2\n";
    Show();
    const auto answer = Pasting(1, 2, 0);
    ClickPaste();
    EXPECT_EQ(Row(1), "1|2|");
}

TEST_F(AddMultipleDialog, PastesNothingIfThatIsCancelled) {
    const tests::TScriptedClipboard clipboard;
    clipboard->Text = "x,y\n1,2\n";
    Show();
    const auto answer = Pasting(1, 2, 0, false);
    ClickPaste();
    EXPECT_EQ(Count(), 1);
}

TEST_F(AddMultipleDialog, SaysWhatIsWrongWithATextThatCannotBePasted) {
    const tests::TScriptedClipboard clipboard;
    const tests::TScriptedMsgBox messages;
    clipboard->Text = QString(70'000, u',');
    Show();
    ClickPaste();
    QCoreApplication::processEvents();
    ASSERT_EQ(messages->Shown.size(), 1U);
    EXPECT_EQ(messages->Shown[0].Text, "Delimited text: row 1 has more than 65536 cells");
    EXPECT_EQ(Count(), 1);
    EXPECT_TRUE(Dialog->isVisible());
}

TEST_F(AddMultipleDialog, SurvivesItsEndWhileATextIsPasted) {
    const tests::TScriptedClipboard clipboard;
    clipboard->Text = "x,y\n1,2\n";
    Show();
    const TModalAnswer<TPaste> answer([this](TPaste&) { Dialog.reset(); });
    ClickPaste();
    EXPECT_EQ(Dialog, nullptr);
}

TEST_F(AddMultipleDialog, TakesAHundredThousandRowsAndMakesWhatIsSeen) {
    constexpr int rows = 100'000;
    const tests::TScriptedClipboard clipboard;
    clipboard->Text = "x\ty\n";
    for (int i = 0; i < rows; ++i)
        clipboard->Text += QString::number(i % 360 - 180) + '\t' + QString::number(i % 180 - 90) + '\n';
    Show();
    const auto widgets = Dialog->findChildren<QWidget*>().size();
    const auto answer = Pasting(1, 2, 0);
    ClickPaste();
    ASSERT_EQ(Count(), rows + 1);
    EXPECT_EQ(Row(rows), QString("%1|%2|").arg((rows - 1) % 360 - 180).arg((rows - 1) % 180 - 90));
    Table.verticalScrollBar()->setValue(Table.verticalScrollBar()->maximum());
    tests::PictureOf(*Dialog);
    EXPECT_LE(Dialog->findChildren<QWidget*>().size(), widgets + 2) << "no widget for a row";
    QTest::mouseClick(Table.viewport(), Qt::LeftButton, {}, Middle(rows, TIQPAItems::clRemove));
    EXPECT_EQ(Count(), rows);
}

TEST_F(AddMultipleDialog, DrawsRowsAsWhatTheyAre) {
    const tests::TScriptedColorChooser chooser;
    chooser->Answers = {0xFF00FF00U};
    Show();
    Table.setCurrentIndex(Table.model()->index(0, TIQPAItems::clColor));
    Table.setFocus();
    Press(Qt::Key_Space);
    const QImage picture = tests::PictureOf(*Table.viewport());
    EXPECT_EQ(picture.pixel(tests::DevicePixel(*Table.viewport(), Middle(0, TIQPAItems::clColor))), 0xFF00FF00U);
    Table.model()->setData(Table.model()->index(0, 1), QString("88888888"));
    EXPECT_NE(tests::PictureOf(*Table.viewport()), picture) << "a text";
    const QImage released = tests::PictureOf(*Table.viewport());
    QTest::mousePress(Table.viewport(), Qt::LeftButton, {}, Middle(0, TIQPAItems::clRemove));
    EXPECT_NE(tests::PictureOf(*Table.viewport()), released) << "a button that is held";
}

TEST_F(AddMultipleDialog, TellsScreenReadersItsCells) {
    Show();
    Type("5");
    QAccessibleInterface* table = QAccessible::queryAccessibleInterface(&Table);
    ASSERT_TRUE(table && table->tableInterface());
    EXPECT_EQ(table->text(QAccessible::Name), "Points");
    EXPECT_EQ(table->tableInterface()->columnDescription(2), "Label (optional)");
    EXPECT_EQ(table->tableInterface()->cellAt(0, 0)->text(QAccessible::Name), "5");
    EXPECT_EQ(table->tableInterface()->cellAt(0, 4)->text(QAccessible::Name), "Remove");
    EXPECT_EQ(QAccessible::queryAccessibleInterface(Dialog->focusWidget())->text(QAccessible::Name), "X");
}

TEST_F(AddMultipleDialog, IsReadAndOperatedAtEveryFontSize) {
    tests::CheckForm([] { return std::make_unique<TAddMultipleInfoQueryPointDialog>(); });
}

} // namespace
} // namespace lmx
