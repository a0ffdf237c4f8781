#include <lmx/Dialogs/lmxAddMultipleInfoQueryPointPasteDialog.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Widgets/Private/lmxFormHeading.h>
#include <tests/Support/DialogChecks.h>
#include <tests/Support/ModalAnswer.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/WidgetPictures.h>

#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QTableView>

namespace lmx {
namespace {

using tests::MessageOf;
using tests::TModalAnswer;
using tests::TShownMessage;

struct PasteDialog : testing::Test {
    template<class Widget>
    Widget& Find(const char* name) {
        return *Dialog.findChild<Widget*>(QString::fromLatin1(name));
    }
    static QStringList Options(const QComboBox& choice) {
        QStringList options;
        for (int i = 0; i < choice.count(); ++i)
            options += choice.itemText(i);
        return options;
    }
    QString Shown(int row, int column) const { return View.model()->index(row, column).data().toString(); }
    QStringList Item(int index, const QString& label = {}) const {
        QString x, y, text = label;
        Dialog.GetItem(index, x, y, text);
        return {x, y, text};
    }
    void Choose(int x, int y, int label = 0) {
        Xs.setCurrentIndex(x);
        Ys.setCurrentIndex(y);
        Labels.setCurrentIndex(label);
    }

    TAddMultipleInfoQueryPointPasteDialog Dialog;
    QComboBox& Xs = Find<QComboBox>("cbX");
    QComboBox& Ys = Find<QComboBox>("cbY");
    QComboBox& Labels = Find<QComboBox>("cbLabel");
    QTableView& View = Find<QTableView>("sgView");
    QCheckBox& TopRow = Find<QCheckBox>("cbTopRowHeader");
};

TEST_F(PasteDialog, SaysWhatItIsAbout) {
    EXPECT_EQ(Dialog.findChild<TFormHeading*>()->text(), "Specify data columns");
    QStringList labels;
    for (const QLabel* label : Dialog.findChildren<QLabel*>())
        labels += QString(label->text()).remove(u'&') + (label->buddy() ? label->buddy()->objectName() : QString());
    labels.removeOne("Specify data columns");
    labels.sort();
    EXPECT_EQ(labels, (QStringList{"(optional)", "Data preview:sgView", "Label column:cbLabel", "X column:cbX",
                                   "Y column:cbY"}));
    EXPECT_EQ(QString(TopRow.text()).remove(u'&'), "Treat top row as header");
    EXPECT_TRUE(TopRow.isChecked());
}

TEST_F(PasteDialog, OffersTheColumnsAndChoosesNone) {
    Dialog.LoadFromText("lon\tlat\tname\tlat\n1\t2\tA\t3\n");
    for (const QComboBox* choice : {&Xs, &Ys, &Labels}) {
        EXPECT_EQ(Options(*choice), (QStringList{"-", "lon", "lat", "name", "Column 4"}));
        EXPECT_EQ(choice->currentIndex(), 0);
        EXPECT_FALSE(choice->isEditable());
    }
    EXPECT_EQ(Dialog.GetXColIndex(), -1);
    EXPECT_EQ(Dialog.GetYColIndex(), -1);
    EXPECT_EQ(Dialog.GetLabelColIndex(), -1);
    Choose(1, 2, 3);
    EXPECT_EQ(Dialog.GetXColIndex(), 0);
    EXPECT_EQ(Dialog.GetYColIndex(), 1);
    EXPECT_EQ(Dialog.GetLabelColIndex(), 2);
    Dialog.LoadFromText("a;b\n1;2\n");
    EXPECT_EQ(Options(Xs), (QStringList{"-", "a", "b"})) << "the options are those of the text";
    EXPECT_EQ(Dialog.GetXColIndex(), -1);
}

TEST_F(PasteDialog, TheTopRowIsTheHeaderUntilTheBoxIsCleared) {
    Dialog.LoadFromText("1,2\n3,4\n5,6\n");
    tests::ShowActive(Dialog);
    EXPECT_TRUE(View.horizontalHeader()->isVisible());
    EXPECT_EQ(View.model()->headerData(0, Qt::Horizontal).toString(), "1");
    EXPECT_EQ(View.model()->rowCount(), 2);
    EXPECT_EQ(Shown(0, 1), "4");
    EXPECT_EQ(Dialog.GetItemCount(), 2);
    Choose(1, 2);
    EXPECT_EQ(Item(0), (QStringList{"3", "4", ""}));
    EXPECT_EQ(Item(1), (QStringList{"5", "6", ""}));
    TopRow.setFocus();
    QTest::keyClick(&TopRow, Qt::Key_Space);
    EXPECT_FALSE(View.horizontalHeader()->isVisible());
    EXPECT_EQ(View.model()->rowCount(), 3);
    EXPECT_EQ(Shown(0, 1), "2");
    EXPECT_EQ(Dialog.GetItemCount(), 3) << "the first row counts as data";
    EXPECT_EQ(Item(0), (QStringList{"1", "2", ""})) << "and the choices stay";
}

TEST_F(PasteDialog, ASingleRowIsNeverShownAsAHeader) {
    Dialog.LoadFromText("1,2\n");
    tests::ShowActive(Dialog);
    EXPECT_FALSE(View.horizontalHeader()->isVisible());
    EXPECT_EQ(Shown(0, 1), "2");
    EXPECT_EQ(Dialog.GetItemCount(), 0) << "but it is one";
    TopRow.setFocus();
    QTest::keyClick(&TopRow, Qt::Key_Space);
    EXPECT_FALSE(View.horizontalHeader()->isVisible());
    EXPECT_EQ(Dialog.GetItemCount(), 1);
    QTest::keyClick(&TopRow, Qt::Key_Space);
    EXPECT_FALSE(View.horizontalHeader()->isVisible());
    EXPECT_EQ(Dialog.GetItemCount(), 0);
}

TEST_F(PasteDialog, AnEmptyTextHasNoRows) {
    for (const char* text : {"", "\n\n"}) {
        Dialog.LoadFromText(text);
        EXPECT_EQ(Options(Xs), QStringList{"-"});
        EXPECT_EQ(View.model()->rowCount(), 0);
        EXPECT_EQ(Dialog.GetItemCount(), 0);
        TopRow.setChecked(false);
        EXPECT_EQ(Dialog.GetItemCount(), 0);
        TopRow.setChecked(true);
    }
}

TEST_F(PasteDialog, ReadsCellsThatARowLacksAsEmpty) {
    Dialog.LoadFromText("x;y;label\n1\n2;3;c;more\n");
    EXPECT_EQ(View.model()->columnCount(), 4) << "as wide as the longest row";
    Choose(1, 2, 3);
    EXPECT_EQ(Item(0), (QStringList{"1", "", ""}));
    EXPECT_EQ(Item(1), (QStringList{"2", "3", "c"}));
}

TEST_F(PasteDialog, LeavesTheLabelAsItIsWithoutAColumnForIt) {
    Dialog.LoadFromText("x,y,z\n1,2,3\n");
    Choose(1, 2);
    EXPECT_EQ(Item(0, "given"), (QStringList{"1", "2", "given"}));
    Choose(3, 1, 2);
    EXPECT_EQ(Item(0, "given"), (QStringList{"3", "1", "2"}));
    EXPECT_EQ(MessageOf<EArgumentException>([&] { Item(1); }), "Row index is out of range");
    EXPECT_EQ(MessageOf<EArgumentException>([&] { Item(-1); }), "Row index is out of range");
}

TEST_F(PasteDialog, WantsAColumnForXThenForY) {
    Dialog.LoadFromText("x,y\n1,2\n");
    const tests::TScriptedMsgBox messages;
    const TModalAnswer<TAddMultipleInfoQueryPointPasteDialog> answer([&](auto& dialog) {
        ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
        EXPECT_TRUE(Xs.hasFocus());
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
        ASSERT_TRUE(dialog.isVisible());
        ASSERT_EQ(messages->Shown.size(), 1U);
        EXPECT_EQ(messages->Shown[0], (TShownMessage{"Info", "Please select a column for X.", "X", &dialog}));
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Down);
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
        ASSERT_TRUE(dialog.isVisible());
        ASSERT_EQ(messages->Shown.size(), 2U);
        EXPECT_EQ(messages->Shown[1], (TShownMessage{"Info", "Please select a column for Y.", "Y", &dialog}));
        EXPECT_TRUE(Ys.hasFocus());
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Down);
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
    });
    EXPECT_EQ(Dialog.ShowModal(), TModalResult::mrOk) << "the label may stay";
    EXPECT_EQ(Dialog.GetXColIndex(), 0);
    EXPECT_EQ(Dialog.GetYColIndex(), 0);
    EXPECT_EQ(Dialog.GetLabelColIndex(), -1);
}

TEST_F(PasteDialog, ShowsTheBeginningOfALongCellInOneLine) {
    Dialog.LoadFromText("x,y\n\"a\nb\"," + QString(1000, u'z') + "\n");
    EXPECT_EQ(Shown(0, 0), "a b");
    EXPECT_EQ(Shown(0, 1).size(), 100);
    Choose(1, 2);
    EXPECT_EQ(Item(0)[0], "a\nb") << "what is taken is the cell itself";
    EXPECT_EQ(Item(0)[1].size(), 1000);
}

TEST_F(PasteDialog, RefusesATextOfTooManyColumnsAndKeepsWhatItHas) {
    Dialog.LoadFromText("x,y\n1,2\n");
    EXPECT_EQ(MessageOf<EFileFormatException>([&] { Dialog.LoadFromText(QString(70'000, u',')); }),
              "Delimited text: row 1 has more than 65536 cells");
    EXPECT_EQ(Options(Xs), (QStringList{"-", "x", "y"}));
}

TEST_F(PasteDialog, IsReadAndOperatedAtEveryFontSize) {
    tests::CheckForm([] {
        auto dialog = std::make_unique<TAddMultipleInfoQueryPointPasteDialog>();
        dialog->LoadFromText("longitude,latitude,name of the place\n1,2,Here\n3,4,There\n");
        return dialog;
    });
}

} // namespace
} // namespace lmx
