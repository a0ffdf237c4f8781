#include <lmx/Controls/Legend/lmxMapViewShapeExplorerControl.h>
#include <lmx/Formats/Shapes/lmxDBFReader.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxText.h>
#include <lmx/Widgets/lmxDrawnListView.h>
#include <tests/Support/Printers.h>
#include <tests/Support/TableBytes.h>
#include <tests/Support/WidgetPictures.h>

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using tests::MessageOf;
using tests::TTableBytes;

struct ShapeExplorer : testing::Test {
    QString Write(const QByteArray& bytes) const {
        const QString path = Folder.filePath("table.dbf");
        WriteFile(path, bytes);
        return path;
    }
    static TTableBytes Records(int count) {
        TTableBytes table = TTableBytes(3, 0).Field("NAME", 'C', 4).Field("N", 'N', 3);
        for (int i = 0; i < count; ++i)
            table.Record(QStringLiteral("r%1").arg(i).toLatin1().leftJustified(4) + QByteArray("  7"));
        return table;
    }
    QString Text(int row, int column) const {
        const QAbstractItemModel* model = Explorer.GetGrid()->model();
        return model->data(model->index(row, column), Qt::AccessibleTextRole).toString();
    }
    QString Heading(int column) const {
        return Explorer.GetGrid()->model()->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
    }

    QTemporaryDir Folder;
    TMapViewShapeExplorerControl Explorer;
};

TEST_F(ShapeExplorer, ShowsAllRecordsButTheLast) {
    Explorer.Load(Write(Records(10).File()));
    EXPECT_EQ(Explorer.GetGrid()->GetRowCount(), 9);
    EXPECT_EQ(Heading(0), "NAME");
    EXPECT_EQ(Heading(1), "N");
    EXPECT_EQ(Text(0, 0), "r0");
    EXPECT_EQ(Text(8, 0), "r8");
    EXPECT_EQ(Text(8, 1), "7");
}

TEST_F(ShapeExplorer, OneRecordOrNoneShowsTheHeadingAlone) {
    for (const int count : {0, 1}) {
        Explorer.Load(Write(Records(1).Count(static_cast<std::uint32_t>(count)).File()));
        EXPECT_EQ(Explorer.GetGrid()->GetRowCount(), 0) << count;
        EXPECT_EQ(Heading(1), "N");
    }
}

TEST_F(ShapeExplorer, AnotherTableTakesThePlaceOfTheFirst) {
    Explorer.Load(Write(Records(10).File()));
    Explorer.Load(Write(TTableBytes(3, 0).Field("ONLY", 'C', 1).Record("a").Record("b").File()));
    EXPECT_EQ(Explorer.GetGrid()->model()->columnCount(), 1);
    EXPECT_EQ(Explorer.GetGrid()->GetRowCount(), 1);
    EXPECT_EQ(Text(0, 0), "a");
}

TEST_F(ShapeExplorer, AFailureLeavesWhatWasShown) {
    Explorer.Load(Write(Records(3).File()));
    const QString damaged = Folder.filePath("damaged.dbf");
    WriteFile(damaged, "no table");
    EXPECT_THROW(Explorer.Load(damaged), EFileFormatException);
    EXPECT_THROW(Explorer.Load(Folder.filePath("none.dbf")), EFileException);
    EXPECT_EQ(Explorer.GetGrid()->GetRowCount(), 2);
    EXPECT_EQ(Text(1, 0), "r1");
}

TEST_F(ShapeExplorer, ItsPaintReadsTheRowsThatAreSeen) {
    Explorer.Load(Write(Records(500).File()));
    Explorer.resize(300, 120);
    const QImage picture = tests::PictureOf(Explorer);
    EXPECT_FALSE(picture.isNull());
    Explorer.GetGrid()->SelectRow(498);
    EXPECT_EQ(Explorer.GetGrid()->GetSelectedRow(), 498);
    EXPECT_NE(tests::PictureOf(Explorer), picture);
}

} // namespace
} // namespace lmx
