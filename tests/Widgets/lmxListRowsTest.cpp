#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Widgets/lmxListRows.h>
#include <tests/Support/WidgetPictures.h>

#include <map>

namespace lmx {
namespace {

const std::map<QRgb, char> RowLetters = {{0xFFFFFFFF, '.'}, {0xFF000000, '#'}, {0xFF0078D7, 's'}};

/// Rows that say how often each column was asked for.
class TCountedRows final : public IListRows {
public:
    mutable std::map<int, int> Asked;
    int GetCount() const override { return 1; }
    QString GetText(int, int column) const override {
        ++Asked[column];
        return QStringLiteral("WWWWWWWWWWWW\nW");
    }
};

struct ListRows : testing::Test {
    /// A row of 60 x 12 pixels at (0, 2).
    QImage Painted(const IListRows& rows, std::span<const QRect> cells, bool isSelected = false) {
        QImage image(60, 16, QImage::Format_ARGB32);
        image.fill(Qt::magenta);
        QPainter painter(&image);
        rows.Draw(painter, {QRect(0, 2, 60, 12), cells, isSelected}, 0);
        return image;
    }

    TSystemColorsScope Colors{std::make_shared<TFixedSystemColors>()};
    TCountedRows Rows;
};

TEST_F(ListRows, HaveTheColoursOfTheSystem) {
    const TListRow plain{QRect(), {}, false};
    EXPECT_EQ(plain.Ground().rgb(), 0xFFFFFFFFU);
    EXPECT_EQ(plain.Ink().rgb(), 0xFF000000U);
    const TListRow selected{QRect(), {}, true};
    EXPECT_EQ(selected.Ground().rgb(), 0xFF0078D7U);
    EXPECT_EQ(selected.Ink().rgb(), 0xFFFFFFFFU);
}

TEST_F(ListRows, FillTheWholeRow) {
    EXPECT_EQ(tests::Letters(Painted(Rows, {}), {59, 0}, {0, 1}, RowLetters), "??............??");
    EXPECT_EQ(tests::Letters(Painted(Rows, {}, true), {0, 0}, {0, 1}, RowLetters), "??ssssssssssss??");
}

TEST_F(ListRows, WriteTheirTextsInsideTheirCells) {
    const QRect cells[] = {QRect(10, 2, 20, 12)};
    const QImage image = Painted(Rows, cells);
    int inside = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const bool isInk = qGray(image.pixel(x, y)) < 200 && y >= 2 && y < 14;
            inside += isInk;
            EXPECT_FALSE(isInk && (x < 12 || x >= 28)) << x << ',' << y;
        }
    }
    EXPECT_GT(inside, 20);
}

TEST_F(ListRows, AreAskedOnlyForCellsThatCanBeSeen) {
    const QRect cells[] = {QRect(-30, 2, 30, 12), QRect(0, 2, 30, 12), QRect(60, 2, 30, 12), QRect(30, 2, 0, 12)};
    Painted(Rows, cells);
    EXPECT_EQ(Rows.Asked, (std::map<int, int>{{1, 1}}));
}

} // namespace
} // namespace lmx
