#include <lmx/Controls/lmxRulerListView.h>
#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Layers/lmxRulerMapLayer.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <tests/Support/Printers.h>
#include <tests/Support/WidgetPictures.h>

#include <QHeaderView>
#include <QPainter>

#include <gtest/gtest.h>

// These tests hold at every ratio of the screen; they run at 1, 1.5 and 2.

namespace lmx {
namespace {

using tests::Letters;

constexpr auto Vertical = TRulerOrientation::roVertical;
constexpr auto Horizontal = TRulerOrientation::roHorizontal;
const std::map<QRgb, char> RowLetters = {{0xFFFFFFFF, '.'}, {0xFF000000, '#'}, {0xFFFF8000, 'o'}, {0xFF0078D7, 's'}};

/// A row of 90 x 13 pixels whose cells are 30 wide.
QImage Painted(const TRulerItem& ruler, bool isSelected, int ratio = 1) {
    const TSystemColorsScope colors(std::make_shared<TFixedSystemColors>());
    QImage image(100 * ratio, 15 * ratio, QImage::Format_ARGB32);
    image.fill(Qt::magenta);
    image.setDevicePixelRatio(ratio);
    QPainter painter(&image);
    const QRect cells[] = {QRect(0, 1, 30, 13), QRect(30, 1, 30, 13), QRect(60, 1, 30, 13)};
    DrawRulerItem(painter, {QRect(0, 1, 100, 13), cells, isSelected}, ruler);
    return image;
}

TEST(RulerItemDrawing, FillsTheWholeRow) {
    const QImage plain = Painted({Vertical, 0, 0xFFFF8000}, false);
    EXPECT_EQ(Letters(plain, {95, 0}, {0, 1}, RowLetters), "?.............?");
    const QImage selected = Painted({Vertical, 0, 0xFFFF8000}, true);
    EXPECT_EQ(Letters(selected, {95, 0}, {0, 1}, RowLetters), "?sssssssssssss?");
}

TEST(RulerItemDrawing, ShowsTheLineAsItStandsOnTheMap) {
    const std::string across = ".." + std::string(26, '#') + "..";
    const QImage vertical = Painted({Vertical, 0, 0}, false); // inset by 2: rows 3 to 11, the middle at 3 + 4
    EXPECT_EQ(Letters(vertical.copy(30, 0, 30, 15), {0, 7}, {1, 0}, RowLetters), across);
    EXPECT_EQ(Letters(vertical.copy(30, 0, 30, 15), {0, 6}, {1, 0}, RowLetters), std::string(30, '.'));
    EXPECT_EQ(Letters(vertical.copy(30, 0, 30, 15), {0, 8}, {1, 0}, RowLetters), std::string(30, '.'));
    const QImage horizontal = Painted({Horizontal, 0, 0}, false); // columns 32 to 57, the middle at 32 + 13
    EXPECT_EQ(Letters(horizontal, {45, 0}, {0, 1}, RowLetters), "?..#########..?");
    EXPECT_EQ(Letters(horizontal, {44, 0}, {0, 1}, RowLetters), "?.............?");
}

TEST(RulerItemDrawing, ShowsTheColourWithoutAlphaInAFrame) {
    const QImage picture = Painted({Vertical, 0, 0x10FF8000}, false); // inset by 3 and 4: 24 x 5 at (63, 5)
    const QImage cell = picture.copy(60, 0, 30, 15);
    EXPECT_EQ(Letters(cell, {0, 5}, {1, 0}, RowLetters), "..." + std::string(24, '#') + "...");
    EXPECT_EQ(Letters(cell, {0, 6}, {1, 0}, RowLetters), "...#" + std::string(22, 'o') + "#...");
    EXPECT_EQ(Letters(cell, {15, 0}, {0, 1}, RowLetters), "?....#ooo#....?");
}

TEST(RulerItemDrawing, DrawsInTheColourOfSelectedTextIfSelected) {
    const QImage picture = Painted({Vertical, 0, 0xFFFF8000}, true);
    EXPECT_EQ(Letters(picture.copy(30, 0, 30, 15), {0, 7}, {1, 0}, RowLetters), "ss" + std::string(26, '.') + "ss");
    EXPECT_EQ(Letters(picture.copy(60, 0, 30, 15), {15, 0}, {0, 1}, RowLetters), "?ssss.ooo.ssss?");
}

TEST(RulerItemDrawing, WritesTheLocationInsideItsCell) {
    const QImage narrow = Painted({Vertical, 123456789.25L, 0xFFFF8000}, false); // too long for the cell
    int inside = 0;
    for (int y = 0; y < 15; ++y) {
        for (int x = 0; x < 30; ++x) {
            const bool isDrawn = narrow.pixel(x, y) != 0xFFFFFFFFU && y > 0 && y < 14;
            inside += isDrawn;
            EXPECT_FALSE(isDrawn && (x < 2 || x >= 28)) << x << ',' << y;
        }
    }
    EXPECT_GT(inside, 20);
}

TEST(RulerItemDrawing, DoublesItsLinesAtRatio2) {
    const QImage picture = Painted({Vertical, 0, 0xFFFF8000}, false, 2);
    EXPECT_EQ(Letters(picture, {90, 0}, {0, 1}, RowLetters), "??............##............??");
    EXPECT_EQ(Letters(picture.copy(120, 0, 60, 30), {30, 0}, {0, 1}, RowLetters), "??........##oooooo##........??");
}

struct RulerListView : testing::Test {
    static QString Local(QString text) { return text.replace(u'.', TFormatSettings::Current().DecimalSeparator); }
    /// The letter of a pixel in a cell, counted from its left edge and from the middle of the row.
    QRgb PixelInCell(int row, int column, QPoint at) {
        const QImage picture = tests::PictureOf(*List.viewport());
        const QRect cell = List.visualRect(List.model()->index(row, column));
        const QPointF place = QPointF(cell.left() + at.x() + 0.5, cell.top() + cell.height() / 2 + at.y() + 0.5);
        const QPointF device = place * List.devicePixelRatioF();
        return picture.pixel(static_cast<int>(device.x()), static_cast<int>(device.y()));
    }

    TSystemColorsScope Colors{std::make_shared<TFixedSystemColors>()};
    TRulerItem First{Vertical, -41.28664L, 0xFFFF8000};
    TRulerItem Second{Horizontal, 174.776L, 0x8000FFFF};
    TRulerListView List;
};

TEST_F(RulerListView, HasThreeColumns) {
    ASSERT_EQ(List.model()->columnCount(), 3);
    const int widths[] = {70, 50, 60};
    const QString titles[] = {"Location", "Type", "Color"};
    for (int column = 0; column < 3; ++column) {
        EXPECT_EQ(List.columnWidth(column), widths[column]);
        EXPECT_EQ(List.model()->headerData(column, Qt::Horizontal).toString(), titles[column]);
    }
    EXPECT_EQ(List.selectionMode(), QAbstractItemView::SingleSelection);
    EXPECT_EQ(List.selectionBehavior(), QAbstractItemView::SelectRows);
    EXPECT_EQ(List.editTriggers(), QAbstractItemView::NoEditTriggers);
}

TEST_F(RulerListView, AppendsRulersAndKnowsThem) {
    List.AddRuler(&First);
    List.AddRuler(nullptr);
    List.AddRuler(&Second);
    ASSERT_EQ(List.GetRowCount(), 2);
    EXPECT_EQ(List.GetRuler(0), &First);
    EXPECT_EQ(List.GetRuler(1), &Second);
    EXPECT_EQ(List.GetRuler(2), nullptr);
    EXPECT_EQ(List.GetRuler(-1), nullptr);
}

TEST_F(RulerListView, TakesTheFirstRowOfARulerOut) {
    for (TRulerItem* ruler : {&First, &Second, &First})
        List.AddRuler(ruler);
    List.RemoveRuler(&First);
    ASSERT_EQ(List.GetRowCount(), 2);
    EXPECT_EQ(List.GetRuler(0), &Second);
    EXPECT_EQ(List.GetRuler(1), &First);
    List.RemoveRuler(nullptr);
    EXPECT_EQ(List.GetRowCount(), 2);
}

TEST_F(RulerListView, ListsOtherRulersInstead) {
    List.AddRuler(&First);
    List.SelectRow(0);
    List.SetRulers({&Second, &First});
    ASSERT_EQ(List.GetRowCount(), 2);
    EXPECT_EQ(List.GetRuler(0), &Second);
    EXPECT_EQ(List.GetRuler(1), &First);
    EXPECT_EQ(List.GetSelectedRuler(), nullptr);
    List.SetRulers({});
    EXPECT_EQ(List.GetRowCount(), 0);
}

TEST_F(RulerListView, KnowsTheSelectedRuler) {
    EXPECT_EQ(List.GetSelectedRuler(), nullptr);
    List.AddRuler(&First);
    List.AddRuler(&Second);
    EXPECT_EQ(List.GetSelectedRuler(), nullptr);
    tests::ShowActive(List);
    QTest::mouseClick(List.viewport(), Qt::LeftButton, {}, List.RowRect(1).center());
    EXPECT_EQ(List.GetSelectedRuler(), &Second);
    QTest::keyClick(&List, Qt::Key_Up);
    EXPECT_EQ(List.GetSelectedRuler(), &First);
}

TEST_F(RulerListView, DrawsItsRowsFromThePresentValues) {
    List.AddRuler(&First);
    List.resize(250, 100);
    EXPECT_EQ(PixelInCell(0, 2, {30, 0}), 0xFFFF8000U);
    EXPECT_EQ(PixelInCell(0, 1, {4, 0}), 0xFF000000U) << "the line runs across";
    First = TRulerItem(Horizontal, 0, 0xFF00FFFF);
    EXPECT_EQ(PixelInCell(0, 2, {30, 0}), 0xFF00FFFFU);
    EXPECT_EQ(PixelInCell(0, 1, {4, 0}), 0xFFFFFFFFU);
    List.SelectRow(0);
    EXPECT_EQ(PixelInCell(0, 1, {4, 0}), 0xFF0078D7U);
    EXPECT_EQ(PixelInCell(0, 2, {70, 0}), 0xFF0078D7U) << "beyond the last column";
}

TEST_F(RulerListView, TellsScreenReadersWhatItDraws) {
    List.AddRuler(&First);
    List.AddRuler(&Second);
    const auto told = [&](int row, int column) {
        return List.model()->index(row, column).data(Qt::AccessibleTextRole).toString();
    };
    EXPECT_EQ(told(0, 0), Local("-41.287"));
    EXPECT_EQ(told(0, 1), "Vertical");
    EXPECT_EQ(told(0, 2), "#FF8000");
    EXPECT_EQ(told(1, 1), "Horizontal");
    EXPECT_EQ(told(1, 2), "#00FFFF");
}

TEST_F(RulerListView, MarksTheRowThatTheKeyboardIsOn) {
    List.AddRuler(&First);
    List.AddRuler(&Second);
    List.resize(250, 100);
    tests::ShowActive(List);
    const QImage without = tests::PictureOf(*List.viewport());
    List.setCurrentIndex(List.model()->index(1, 0));
    List.clearSelection();
    ASSERT_TRUE(List.hasFocus());
    EXPECT_EQ(List.GetSelectedRuler(), nullptr);
    EXPECT_NE(tests::PictureOf(*List.viewport()), without);
}

} // namespace
} // namespace lmx
