#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Widgets/lmxDrawnListView.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/WidgetPictures.h>

#include <QAccessible>
#include <QHeaderView>
#include <QScrollBar>

namespace lmx {
namespace {

using TRows = std::vector<int>;

/// Rows that count how often they are asked.
class TNamedRows : public IListRows {
public:
    QStringList Names;
    mutable int Asked = 0;
    mutable int Drawn = 0;
    bool DrawRaises = false;
    bool TextRaises = false;
    bool CountRaises = false;

    int GetCount() const override {
        if (CountRaises)
            throw Exception(QStringLiteral("no count"));
        return static_cast<int>(Names.size());
    }
    QString GetText(int row, int column) const override {
        ++Asked;
        if (TextRaises)
            throw Exception(QStringLiteral("no text"));
        return column == 0 ? Names[row] : QStringLiteral("%1/%2").arg(row).arg(column);
    }
    void Draw(QPainter& canvas, const TListRow& place, int row) const override {
        ++Drawn;
        if (DrawRaises)
            throw Exception(QStringLiteral("no picture"));
        canvas.setClipRect(QRect()); // which must not reach the next row
        canvas.setClipping(false);
        IListRows::Draw(canvas, place, row);
    }
};

struct DrawnListView : testing::Test {
    DrawnListView() {
        Rows->Names = {"a", "b", "c", "d"};
        List->SetColumns({{"Name", 80}, {"Place", 60}});
        List->SetRows(Rows);
        List->resize(240, 200);
    }
    void Show() { tests::ShowActive(*List); }
    QPoint Middle(int row) const { return List->RowRect(row).center(); }
    void Press(int row, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mouseClick(List->viewport(), Qt::LeftButton, modifiers, Middle(row));
    }
    void Insert(int row, const QString& name) {
        Rows->Names.insert(row, name);
        List->RowsInserted(row);
    }
    void Remove(int row) {
        Rows->Names.removeAt(row);
        List->RowsRemoved(row);
    }
    QString Text(int row, int column, int role = Qt::DisplayRole) const {
        return List->model()->index(row, column).data(role).toString();
    }
    QRgb PixelAt(QPoint place) const {
        return tests::PictureOf(*List->viewport()).pixel(tests::DevicePixel(*List, place));
    }

    TSystemColorsScope Colors{std::make_shared<TFixedSystemColors>()};
    tests::TScriptedMsgBox Messages;
    std::shared_ptr<TNamedRows> Rows = std::make_shared<TNamedRows>();
    std::unique_ptr<TDrawnListView> List = std::make_unique<TDrawnListView>();
    int Changes = 0;
    TSubscription Subscription = List->GetOnSelectionChanged().Add([this](TDrawnListView*) { ++Changes; });
};

TEST_F(DrawnListView, ShowsColumnsAndRows) {
    EXPECT_EQ(List->model()->columnCount(), 2);
    EXPECT_EQ(List->model()->headerData(1, Qt::Horizontal).toString(), "Place");
    EXPECT_EQ(List->columnWidth(0), 80);
    EXPECT_EQ(List->columnWidth(1), 60);
    EXPECT_EQ(List->GetRowCount(), 4);
    EXPECT_EQ(Text(2, 0), "c");
    EXPECT_EQ(Text(2, 1), "2/1");
    EXPECT_EQ(List->selectionMode(), QAbstractItemView::SingleSelection);
    EXPECT_EQ(List->editTriggers(), QAbstractItemView::NoEditTriggers);
}

TEST_F(DrawnListView, AddsAndRemovesColumns) {
    List->AddColumn({"Long", 150});
    List->RemoveColumn(1);
    List->RemoveColumn(-1);
    List->RemoveColumn(2);
    ASSERT_EQ(List->model()->columnCount(), 2);
    EXPECT_EQ(List->columnWidth(0), 80);
    EXPECT_EQ(List->columnWidth(1), 150);
    EXPECT_EQ(List->model()->headerData(1, Qt::Horizontal).toString(), "Long");
    List->SetColumns({{"Only", 33}});
    EXPECT_EQ(List->model()->columnCount(), 1);
}

TEST_F(DrawnListView, WidensAColumnThatItsTitleDoesNotFit) {
    List->SetColumns({{"A title of many words", 20}});
    EXPECT_EQ(List->columnWidth(0), List->header()->sectionSizeHint(0));
    QFont large = List->font();
    large.setPixelSize(30);
    List->setFont(large);
    EXPECT_GE(List->columnWidth(0), List->header()->sectionSizeHint(0));
}

TEST_F(DrawnListView, GivesAColumnAnotherTitle) {
    const auto title = [this](int column) { return List->model()->headerData(column, Qt::Horizontal).toString(); };
    List->SetColumnTitle(1, "A title of many words");
    EXPECT_EQ(title(1), "A title of many words");
    const int wide = List->columnWidth(1);
    EXPECT_EQ(wide, List->header()->sectionSizeHint(1)) << "which has its room";
    List->SetColumnTitle(1, "P");
    EXPECT_EQ(List->columnWidth(1), wide) << "and leaves it";
    List->SetColumnTitle(-1, "none");
    List->SetColumnTitle(2, "none");
    EXPECT_EQ(title(0), "Name");
    EXPECT_EQ(title(1), "P");
}

TEST_F(DrawnListView, GivesAColumnTheRest) {
    List->SetColumns({{"Name", 80, true}, {"Place", 60}});
    Show();
    EXPECT_EQ(List->columnWidth(0), List->viewport()->width() - 60);
}

TEST_F(DrawnListView, KnowsNoRowsWithoutASource) {
    List->SetRows(nullptr);
    EXPECT_EQ(List->GetRowCount(), 0);
    List->RowsInserted(0);
    List->RowsReset();
    EXPECT_EQ(List->GetRowCount(), 0);
    EXPECT_EQ(List->GetSelectedRow(), -1);
    EXPECT_FALSE(List->RowRect(0).isValid());
}

TEST_F(DrawnListView, AsksOnlyForWhatItShows) {
    Rows->Names = QStringList(100'000, QStringLiteral("row"));
    List->RowsReset();
    Show();
    List->verticalScrollBar()->setValue(List->verticalScrollBar()->maximum());
    QCoreApplication::processEvents();
    EXPECT_EQ(List->GetRowCount(), 100'000);
    EXPECT_TRUE(List->RowRect(99'999).isValid());
    EXPECT_LT(Rows->Asked, 500);
    EXPECT_GT(Rows->Drawn, 5);
}

TEST_F(DrawnListView, FollowsWhatComesAndGoes) {
    List->SelectRow(2);
    Insert(0, "first");
    EXPECT_EQ(List->GetRowCount(), 5);
    EXPECT_EQ(List->GetSelectedRow(), 3);
    Remove(1);
    EXPECT_EQ(List->GetSelectedRow(), 2);
    EXPECT_EQ(Text(2, 0), "c");
    EXPECT_EQ(Changes, 1) << "the selected row is the same";
}

TEST_F(DrawnListView, TakesNoNoticeOfRowsOutside) {
    List->RowsRemoved(-1);
    List->RowsRemoved(4);
    List->RowsRemoved(1, 0);
    List->RowsInserted(2, 0);
    List->RowsChanged(9);
    List->SelectRow(4);
    List->SelectRow(-1);
    EXPECT_EQ(List->GetRowCount(), 4);
    EXPECT_EQ(List->GetSelectedRow(), -1);
    Rows->Names.resize(2);
    List->RowsRemoved(2, 9);
    EXPECT_EQ(List->GetRowCount(), 2);
}

TEST_F(DrawnListView, SurvivesRowsThatItWasNotToldOf) {
    Show();
    Rows->Names.clear();
    EXPECT_EQ(List->GetRowCount(), 4);
    EXPECT_EQ(Text(3, 0), "");
    Rows->Drawn = 0;
    tests::PictureOf(*List->viewport());
    EXPECT_EQ(Rows->Drawn, 0);
}

TEST_F(DrawnListView, ForgetsTheSelectionWithTheRows) {
    List->SelectRow(1);
    List->RowsReset();
    EXPECT_EQ(List->GetSelectedRow(), -1);
    EXPECT_EQ(Changes, 2);
    List->RowsReset();
    List->SetRows(Rows);
    EXPECT_EQ(Changes, 2) << "there was nothing to forget";
}

TEST_F(DrawnListView, SelectsOneRow) {
    Show();
    Press(1);
    EXPECT_EQ(List->GetSelectedRow(), 1);
    Press(3, Qt::ControlModifier);
    EXPECT_EQ(List->GetSelectedRows(), TRows{3});
    QTest::keyClick(List.get(), Qt::Key_Up);
    EXPECT_EQ(List->GetSelectedRow(), 2);
    EXPECT_TRUE(List->IsRowSelected(2));
    EXPECT_FALSE(List->IsRowSelected(3));
    EXPECT_EQ(Changes, 3);
}

TEST_F(DrawnListView, SelectsSeveralRows) {
    List->SetMultiSelect(true);
    Show();
    Press(3);
    Press(0, Qt::ControlModifier);
    EXPECT_EQ(List->GetSelectedRows(), (TRows{0, 3})) << "in the order of the list";
    EXPECT_EQ(List->GetSelectedRow(), -1) << "several";
    EXPECT_TRUE(List->HasSelection());
    Remove(1);
    EXPECT_EQ(List->GetSelectedRows(), (TRows{0, 2}));
    List->AddColumn({"More", 50});
    EXPECT_EQ(List->GetSelectedRows(), (TRows{0, 2}));
    List->selectAll();
    EXPECT_EQ(List->GetSelectedRows(), (TRows{0, 1, 2}));
    List->SelectRow(1);
    EXPECT_EQ(List->GetSelectedRows(), TRows{1});
    List->clearSelection();
    EXPECT_FALSE(List->HasSelection());
    EXPECT_EQ(List->GetSelectedRows(), TRows{});
}

TEST_F(DrawnListView, ScrollsToTheRowThatItSelects) {
    Rows->Names = QStringList(1000, QStringLiteral("row"));
    List->RowsReset();
    Show();
    List->SelectRow(999);
    EXPECT_TRUE(List->viewport()->rect().contains(Middle(999)));
}

TEST_F(DrawnListView, MarksARowWhereverItGoes) {
    const QPersistentModelIndex mark = List->MarkRow(2);
    Insert(0, "first");
    EXPECT_EQ(mark.row(), 3);
    Remove(3);
    EXPECT_FALSE(mark.isValid());
    const QPersistentModelIndex other = List->MarkRow(0);
    List->RowsReset();
    EXPECT_FALSE(other.isValid());
    EXPECT_FALSE(List->MarkRow(99).isValid());
}

TEST_F(DrawnListView, TellsOfTheSelectionWhenListAndRowsAgree) {
    List->SelectRow(1);
    QStringList told;
    const TSubscription subscription = List->GetOnSelectionChanged().Add([&](TDrawnListView* list) {
        EXPECT_EQ(list, List.get());
        EXPECT_EQ(list->GetRowCount(), Rows->GetCount());
        const int row = list->GetSelectedRow();
        told.append(row < 0 ? QStringLiteral("none") : Rows->Names[row]);
    });
    Remove(1); // its neighbour is selected instead
    EXPECT_EQ(told, QStringList{"c"});
    Remove(0);
    EXPECT_EQ(told, QStringList{"c"}) << "another row went";
}

TEST_F(DrawnListView, MayBeDestroyedByWhomItTells) {
    const auto destroysAt = [this](const char* what, const std::function<void()>& act) {
        SCOPED_TRACE(what);
        List = std::make_unique<TDrawnListView>();
        List->SetColumns({{"Name", 80}, {"Place", 60}});
        List->SetRows(Rows);
        List->resize(240, 200);
        Show();
        const TSubscription end = List->GetOnSelectionChanged().Add([this](TDrawnListView*) { List.reset(); });
        act();
        EXPECT_EQ(List, nullptr);
    };
    destroysAt("code", [this] { List->SelectRow(1); });
    destroysAt("mouse", [this] {
        QMouseEvent press(QEvent::MouseButtonPress, Middle(1), List->viewport()->mapToGlobal(Middle(1)), Qt::LeftButton,
                          Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(List->viewport(), &press);
    });
    destroysAt("keyboard", [this] {
        List->selectionModel()->setCurrentIndex(List->model()->index(0, 0), QItemSelectionModel::NoUpdate);
        QKeyEvent press(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier);
        QCoreApplication::sendEvent(List.get(), &press);
    });
}

TEST_F(DrawnListView, TellsOfADoubleClickOnARow) {
    Show();
    TRows rows;
    const TSubscription subscription =
        List->GetOnRowDoubleClick().Add([&](TDrawnListView*, int row) { rows.push_back(row); });
    Press(1);
    QTest::mouseDClick(List->viewport(), Qt::LeftButton, {}, Middle(1));
    EXPECT_EQ(rows, TRows{1});
    QTest::mouseDClick(List->viewport(), Qt::LeftButton, {}, QPoint(20, 190)); // below the rows
    QTest::mouseDClick(List->viewport(), Qt::RightButton, {}, Middle(1));
    EXPECT_EQ(rows, TRows{1});
    QMouseEvent second(QEvent::MouseButtonDblClick, Middle(3), List->viewport()->mapToGlobal(Middle(3)), Qt::LeftButton,
                       Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(List->viewport(), &second);
    EXPECT_EQ(rows, TRows{1}) << "the first press was on another row";
    EXPECT_EQ(List->GetSelectedRow(), 3);
}

TEST_F(DrawnListView, MayBeDestroyedByADoubleClick) {
    Show();
    const TSubscription end = List->GetOnRowDoubleClick().Add([this](TDrawnListView*, int) { List.reset(); });
    Press(1);
    QMouseEvent second(QEvent::MouseButtonDblClick, Middle(1), List->viewport()->mapToGlobal(Middle(1)), Qt::LeftButton,
                       Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(List->viewport(), &second);
    EXPECT_EQ(List, nullptr);
}

TEST_F(DrawnListView, FindsARowByTyping) {
    Show();
    QTest::keyClick(List.get(), Qt::Key_C);
    EXPECT_EQ(List->GetSelectedRow(), 2);
}

TEST_F(DrawnListView, DrawsRowsInTheColoursOfTheSystem) {
    Show();
    List->SelectRow(1);
    EXPECT_EQ(PixelAt({200, Middle(0).y()}), 0xFFFFFFFFU);
    EXPECT_EQ(PixelAt({200, Middle(1).y()}), 0xFF0078D7U);
    EXPECT_EQ(PixelAt({200, Middle(2).y()}), 0xFFFFFFFFU);
}

TEST_F(DrawnListView, MarksTheRowThatHasTheKeyboard) {
    Show();
    const QRgb before = PixelAt(List->RowRect(2).topLeft());
    List->selectionModel()->setCurrentIndex(List->model()->index(2, 0), QItemSelectionModel::NoUpdate);
    ASSERT_TRUE(List->hasFocus());
    const QImage marked = tests::PictureOf(*List->viewport());
    EXPECT_EQ(before, 0xFFFFFFFFU);
    int ink = 0;
    const int top = tests::DevicePixel(*List, List->RowRect(2).topLeft()).y();
    for (int x = 0; x < marked.width(); ++x)
        ink += qGray(marked.pixel(x, top)) < 128;
    EXPECT_GT(ink, marked.width() / 4);
}

TEST_F(DrawnListView, MarksTheKeyboardAmongSeveralSelectedRows) {
    List->SetMultiSelect(true);
    Show();
    List->selectAll();
    List->selectionModel()->setCurrentIndex(List->model()->index(1, 0), QItemSelectionModel::NoUpdate);
    const QImage first = tests::PictureOf(*List->viewport());
    List->selectionModel()->setCurrentIndex(List->model()->index(2, 0), QItemSelectionModel::NoUpdate);
    EXPECT_NE(tests::PictureOf(*List->viewport()), first);
}

TEST_F(DrawnListView, ShowsAFailureOfDrawingOnceUntilRowsChange) {
    Rows->DrawRaises = true;
    tests::PictureOf(*List->viewport());
    tests::PictureOf(*List->viewport());
    QCoreApplication::processEvents();
    ASSERT_EQ(Messages->Shown.size(), 1U);
    EXPECT_EQ(Messages->Shown[0].Text, "no picture");
    List->RowsChanged(0);
    tests::PictureOf(*List->viewport());
    QCoreApplication::processEvents();
    EXPECT_EQ(Messages->Shown.size(), 2U);
}

TEST_F(DrawnListView, AsksForNothingBeforeAChangedRowIsSeen) {
    for (int i = 0; i < 1000; ++i)
        Rows->Names.append("more");
    List->RowsReset();
    Show();
    tests::PictureOf(*List);
    Rows->Asked = 0;
    Rows->Drawn = 0;
    List->RowsChanged(0, 1004);
    List->RowsChanged(0);
    EXPECT_EQ(Rows->Asked, 0) << "telling of a change makes no text";
    const int seen = List->viewport()->height() / List->RowRect(0).height() + 1;
    QTRY_VERIFY(Rows->Drawn > 0);
    EXPECT_LE(Rows->Drawn, seen);
    EXPECT_LE(Rows->Asked, 2 * seen) << "and a text is made of each cell that is seen";
}

TEST_F(DrawnListView, PaintsNothingButTheRowThatHasChanged) {
    Show();
    QCoreApplication::processEvents();
    Rows->Drawn = 0;
    List->RowsChanged(2);
    QTRY_VERIFY(Rows->Drawn > 0);
    EXPECT_EQ(Rows->Drawn, 1);
}

TEST_F(DrawnListView, LeavesACellEmptyThatCannotBeRead) {
    Rows->TextRaises = true;
    EXPECT_EQ(Text(0, 0), "");
}

TEST_F(DrawnListView, TellsScreenReadersWhatItShows) {
    Show();
    EXPECT_EQ(Text(1, 1, Qt::AccessibleTextRole), "1/1");
    QAccessibleInterface* list = QAccessible::queryAccessibleInterface(List.get());
    ASSERT_NE(list, nullptr);
    ASSERT_NE(list->tableInterface(), nullptr);
    EXPECT_EQ(list->tableInterface()->rowCount(), 4);
    EXPECT_EQ(list->tableInterface()->cellAt(2, 0)->text(QAccessible::Name), "c");
}

TEST_F(DrawnListView, ShowsTheWholeOfATextThatIsCutOff) {
    Rows->Names[0] = QStringLiteral("<b>a name that is much too long for its column");
    EXPECT_EQ(Text(0, 0, Qt::ToolTipRole), "&lt;b&gt;a name that is much too long for its column");
    EXPECT_EQ(Text(1, 0, Qt::ToolTipRole), "");
}

TEST_F(DrawnListView, StaysAsItIsIfNobodyKnowsHowManyRowsThereAre) {
    List->SelectRow(1);
    Changes = 0;
    Rows->CountRaises = true;
    EXPECT_THROW(List->RowsReset(), Exception);
    EXPECT_THROW(List->SetRows(std::make_shared<TNamedRows>(*Rows)), Exception);
    EXPECT_EQ(List->GetRowCount(), 4);
    EXPECT_EQ(List->GetSelectedRow(), 1);
    EXPECT_EQ(Changes, 0);
    Rows->CountRaises = false;
    List->SelectRow(2);
    EXPECT_EQ(Changes, 1) << "and goes on telling";
}

} // namespace
} // namespace lmx
