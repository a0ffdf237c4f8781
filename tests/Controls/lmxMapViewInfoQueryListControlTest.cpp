#include <lmx/Colour/lmxBaseColorCalculator.h>
#include <lmx/Controls/Private/lmxInfoQueryTable.h>
#include <lmx/Controls/lmxMapViewInfoQueryListControl.h>
#include <lmx/Coordinates/wskWorldSystem.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxInfoQueryPointLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxSelectionMapLayer.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <lmx/Runtime/lmxText.h>
#include <lmx/Widgets/lmxPngButton.h>
#include <tests/Support/NumberedImage.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/WidgetPictures.h>

#include <QCoreApplication>
#include <QMenu>
#include <QPointer>
#include <QTest>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using tests::NumberedImage;
using tests::PictureOf;

/// Says a value by an opaque colour, and raises at 13.
class TValueAsColor : public IBaseColorCalculator {
public:
    TColor32 GetColor(float value) const override {
        if (Asked)
            Asked();
        if (value == 13)
            throw EInvalidOperation(QStringLiteral("unlucky"));
        return 0x40000000U + static_cast<TColor32>(value);
    }
    std::shared_ptr<IBaseColorCalculator> Clone() const override { return std::make_shared<TValueAsColor>(); }

    std::function<void()> Asked;
};

/// A table of the points of a layer against the rasters of a manager.
struct InfoQueryList : testing::Test {
    InfoQueryList() { Table->SetIQPLayer(Points.get()); }

    TIdrisiMapLayer* AddRaster(const QString& name, const TMapArea& area, int columns = 2, int rows = 2) {
        auto layer = std::make_unique<TIdrisiMapLayer>(Manager);
        layer->SetLayerName(name);
        layer->TakeImage(NumberedImage(columns, rows, area));
        layer->SetColorCalc(Calculator);
        return static_cast<TIdrisiMapLayer*>(Manager->GetLayers().Add(std::move(layer)));
    }
    TInfoQueryPoint* AddPoint(extended x, extended y, const QString& label = {}) {
        auto point = std::make_unique<TInfoQueryPoint>(Points.get(), TMapPoint(x, y), 0xFFFF0000);
        point->SetPointLabel(label);
        return Points->GetPoints().Add(std::move(point));
    }
    void NameSystem() { Table->SetCursorMapPt({1, 1}, LatLon); }
    QString Text(int row, int column) const {
        const QAbstractItemModel* model = Table->GetList()->model();
        return model->data(model->index(row, column), Qt::AccessibleTextRole).toString();
    }
    QStringList Texts(int row) const {
        QStringList texts;
        for (int column = 0; column < Table->GetList()->model()->columnCount(); ++column)
            texts += Text(row, column);
        return texts;
    }
    QString Heading(int column) const {
        return Table->GetList()->model()->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
    }
    void Select(const std::vector<int>& rows) {
        Table->GetList()->clearSelection();
        for (const int row : rows)
            Table->GetList()->selectionModel()->select(Table->GetList()->model()->index(row, 0),
                                                       QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
    QString Copied() {
        tests::TScriptedClipboard clipboard;
        Table->GetCopyButton()->click();
        return clipboard->Text;
    }

    const TFormatSettingsScope Point{TFormatSettings{u'.'}};
    const std::shared_ptr<IWorldSystem> LatLon = TWorldSystemFactory::GetObject("latlon");
    std::shared_ptr<TValueAsColor> Calculator = std::make_shared<TValueAsColor>();
    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    std::unique_ptr<TInfoQueryPointLayer> Points = std::make_unique<TInfoQueryPointLayer>(Manager);
    std::unique_ptr<TMapViewInfoQueryListControl> Table = std::make_unique<TMapViewInfoQueryListControl>();
};

TEST_F(InfoQueryList, BeginsWithAPointColumnAndFourButtons) {
    EXPECT_EQ(Table->GetRowCount(), 0);
    EXPECT_EQ(Heading(0), "Point");
    EXPECT_EQ(Table->GetList()->columnWidth(0), 200);
    const std::pair<TPngButton*, QStringList> buttons[] = {
        {Table->GetAddButton(), {"MapWindowFactory.AddLayer", "Add"}},
        {Table->GetDeleteButton(), {"MapWindowFactory.DeleteLayer", "Delete"}},
        {Table->GetEditButton(), {"MapWindowFactory.Edit", "Edit"}},
        {Table->GetCopyButton(), {"MapWindowFactory.Copy", "Copy"}},
    };
    for (const auto& [button, texts] : buttons) {
        EXPECT_EQ(button->GetImageName(), texts[0]);
        EXPECT_EQ(button->toolTip(), texts[1]);
    }
    ASSERT_EQ(Table->GetAddMenu()->actions().size(), 2);
    EXPECT_EQ(Table->GetAddMenu()->actions()[0]->text(), "Add point...");
    EXPECT_EQ(Table->GetAddMenu()->actions()[1]->text(), "Add multiple points...");
}

TEST_F(InfoQueryList, HasARowForEachPointAndAColumnForEachRaster) {
    Table->SetLayerManager(Manager);
    AddRaster("Rain", {0, 20, 20, 0});
    Manager->GetLayers().Add(std::make_unique<TSelectionMapLayer>(Manager));
    AddRaster("Heat", {0, 20, 20, 0});
    NameSystem();
    AddPoint(5, 15, "Here");
    AddPoint(5, 5);
    EXPECT_EQ(Heading(1), "Rain");
    EXPECT_EQ(Heading(2), "Heat");
    EXPECT_EQ(Table->GetList()->columnWidth(2), 150);
    EXPECT_EQ(Texts(0), (QStringList{"Here", "11.000", "11.000"}));
    EXPECT_EQ(Texts(1), (QStringList{"5.000, 5.000", "21.000", "21.000"}));
    EXPECT_EQ(Table->GetRowValue(0, 1), (TInfoQueryRowDataValue{11, 0x4000000B}));
}

TEST_F(InfoQueryList, WithoutAWorldSystemThereAreNoValues) {
    Table->SetLayerManager(Manager);
    AddRaster("Rain", {0, 20, 20, 0});
    AddPoint(5, 15, "Here");
    EXPECT_EQ(Texts(0), (QStringList{"Here", "-"}));
    NameSystem();
    EXPECT_EQ(Texts(0), (QStringList{"Here", "-"})) << "naming it reads the row of the cursor alone";
    Table->RebuildData();
    EXPECT_EQ(Texts(0), (QStringList{"Here", "11.000"}));
}

TEST_F(InfoQueryList, ValuesComeFromLayersThatHoldThePointInTheirOwnSystem) {
    Table->SetLayerManager(Manager);
    AddRaster("West", {-20, 20, 0, 0});
    AddRaster("Round", {0, 90, 360, -90}, 36, 18);
    NameSystem();
    AddPoint(-5, 15, "Both");
    AddPoint(5, 15, "One");
    AddPoint(500, 15, "None");
    // 355 degrees east is the last column of ten degrees; 15 north the eighth row.
    EXPECT_EQ(Texts(0), (QStringList{"Both", "12.000", "116.000"}));
    EXPECT_EQ(Texts(1), (QStringList{"One", "-", "81.000"}));
    EXPECT_EQ(Texts(2), (QStringList{"None", "-", "-"}));
}

TEST_F(InfoQueryList, WhatCannotBeReadOrColouredIsLeftOut) {
    Table->SetLayerManager(Manager);
    TIdrisiMapLayer* raster = AddRaster("Rain", {0, 10, 30, 0}, 3, 1);
    NameSystem();
    AddPoint(25, 5, "13 raises"); // the third cell is 13
    AddPoint(5, 5, "11");
    EXPECT_EQ(Text(0, 1), "-");
    EXPECT_EQ(Text(1, 1), "11.000");
    raster->SetColorCalc(nullptr);
    Table->RebuildData();
    EXPECT_EQ(Text(1, 1), "-");
    raster->SetColorCalc(Calculator);
    Table->RebuildData();
    EXPECT_EQ(Text(1, 1), "11.000");
    raster->SetImage(nullptr);
    Table->RebuildData();
    EXPECT_EQ(Text(1, 1), "-");
}

TEST_F(InfoQueryList, AnInvalidatedRasterIsReadAnewAndNoOtherLayer) {
    Table->SetLayerManager(Manager);
    TIdrisiMapLayer* raster = AddRaster("Rain", {0, 20, 20, 0});
    auto* other = Manager->GetLayers().Add(std::make_unique<TSelectionMapLayer>(Manager));
    NameSystem();
    AddPoint(5, 15);
    static_cast<TRealImage*>(raster->GetImage())->SetCell(1, 1, 77);
    other->DoNotifyInvalidated();
    EXPECT_EQ(Text(0, 1), "11.000");
    raster->DoNotifyInvalidated();
    EXPECT_EQ(Text(0, 1), "77.000");
}

TEST_F(InfoQueryList, ALayersRemovalTakesItsColumnOnly) {
    Table->SetLayerManager(Manager);
    AddRaster("A", {0, 20, 20, 0});
    TIdrisiMapLayer* middle = AddRaster("B", {0, 40, 40, 0});
    AddRaster("C", {0, 20, 20, 0});
    NameSystem();
    AddPoint(5, 15, "P");
    EXPECT_EQ(Texts(0), (QStringList{"P", "11.000", "21.000", "11.000"}));
    Manager->GetLayers().Remove(middle);
    EXPECT_EQ(Texts(0), (QStringList{"P", "11.000", "11.000"}));
    EXPECT_EQ(Heading(1), "A");
    EXPECT_EQ(Heading(2), "C");
}

TEST_F(InfoQueryList, HeadsAColumnByTheNameOfItsLayer) {
    Table->SetLayerManager(Manager);
    TIdrisiMapLayer* rain = AddRaster("Rain", {0, 20, 20, 0});
    AddRaster("Heat", {0, 20, 20, 0});
    rain->SetLayerName("Rain and snow");
    EXPECT_EQ(Heading(1), "Rain and snow");
    EXPECT_EQ(Heading(2), "Heat");
    EXPECT_EQ(Copied(), "Location\t\"Rain and snow\"\t\"Heat\"" + LineBreak());
    Manager->GetLayers().Extract(rain).reset();
    EXPECT_EQ(Heading(1), "Heat");
    Table->SetLayerManager(nullptr);
    EXPECT_EQ(Manager->GetLayers()[0]->GetOnLayerNameChanged().Count(), 0) << "nobody listens any more";
}

TEST_F(InfoQueryList, TheRowOfTheCursorFollowsTheMouse) {
    Table->AddCursorInfoQueryPoint();
    Table->AddCursorInfoQueryPoint();
    ASSERT_EQ(Table->GetRowCount(), 1) << "there is one";
    EXPECT_EQ(Table->GetRowPoint(0)->GetColor(), 0xFF000000U);
    EXPECT_TRUE(Table->GetRowPoint(0)->GetPoint().Equals({0, 0}));
    EXPECT_EQ(Table->GetRowPoint(0)->GetLayer(), nullptr);
    Table->SetLayerManager(Manager);
    AddRaster("Rain", {0, 20, 20, 0});
    AddPoint(5, 15, "Here");
    Table->SetCursorMapPt({5, 15}, LatLon);
    EXPECT_EQ(Texts(0), (QStringList{"Cursor", "11.000"}));
    Table->SetCursorMapPt({15, 5}, LatLon);
    EXPECT_EQ(Texts(0), (QStringList{"Cursor", "22.000"}));
    Table->SetCursorMapPt({150, 5}, LatLon);
    EXPECT_EQ(Texts(0), (QStringList{"Cursor", "-"}));
}

TEST_F(InfoQueryList, ACursorBehindAPointDoesNotFollow) {
    Table->SetLayerManager(Manager);
    AddRaster("Rain", {0, 20, 20, 0});
    AddPoint(5, 15, "Here");
    Table->AddCursorInfoQueryPoint();
    Table->SetCursorMapPt({15, 5}, LatLon);
    EXPECT_EQ(Texts(1), (QStringList{"15.000, 5.000", "-"})) << "its place is told, its values are not read";
    Table->RebuildData();
    EXPECT_EQ(Texts(1), (QStringList{"15.000, 5.000", "22.000"}));
}

TEST_F(InfoQueryList, TheSamePlaceIsNotReadAgain) {
    Table->AddCursorInfoQueryPoint();
    Table->SetLayerManager(Manager);
    AddRaster("Rain", {0, 20, 20, 0});
    int asked = 0;
    Table->SetCursorMapPt({5, 15}, LatLon);
    Calculator->Asked = [&asked] { ++asked; };
    Table->SetCursorMapPt({5, 15}, LatLon);
    EXPECT_EQ(asked, 0);
    Table->SetCursorMapPt({5, 15}, TWorldSystemFactory::GetObject("latlonAntimerdian"));
    EXPECT_EQ(asked, 1);
}

TEST_F(InfoQueryList, OnlyTheRowOfTheCursorIsPaintedForTheMouse) {
    Table->AddCursorInfoQueryPoint();
    for (int i = 0; i < 5; ++i)
        AddPoint(i, 5);
    std::vector<std::pair<int, int>> changed;
    QObject::connect(
        Table->GetList()->model(), &QAbstractItemModel::dataChanged, Table.get(),
        [&](const QModelIndex& first, const QModelIndex& last) { changed.emplace_back(first.row(), last.row()); });
    Table->SetCursorMapPt({5, 15}, LatLon);
    EXPECT_EQ(changed, (std::vector<std::pair<int, int>>{{0, 0}}));
}

TEST_F(InfoQueryList, PointsThatGoTakeTheirRows) {
    TInfoQueryPoint* first = AddPoint(1, 1, "a");
    AddPoint(2, 2, "b");
    Points->GetPoints().Remove(first);
    EXPECT_EQ(Table->GetRowCount(), 1);
    EXPECT_EQ(Text(0, 0), "b");
    Points.reset();
    EXPECT_EQ(Table->GetRowCount(), 0);
    EXPECT_EQ(Table->GetIQPLayer(), nullptr);
}

TEST_F(InfoQueryList, TakesWhatIsThereAndDropsWhatItLeaves) {
    Table->AddCursorInfoQueryPoint();
    AddPoint(1, 1, "old");
    TInfoQueryPointLayer other(Manager);
    other.GetPoints().Add(std::make_unique<TInfoQueryPoint>(&other, TMapPoint(5, 15), 1));
    AddRaster("Rain", {0, 20, 20, 0});
    Table->SetLayerManager(Manager);
    NameSystem();
    Table->SetIQPLayer(&other);
    ASSERT_EQ(Table->GetRowCount(), 2) << "the cursor and the point of the other layer";
    EXPECT_EQ(Texts(1), (QStringList{"5.000, 15.000", "11.000"}));
    Table->SetLayerManager(TLayerManagerFactory::GetObject());
    EXPECT_EQ(Texts(1), QStringList{"5.000, 15.000"});
    Table->SetIQPLayer(nullptr);
    EXPECT_EQ(Table->GetRowCount(), 1);
    AddPoint(7, 7);
    EXPECT_EQ(Table->GetRowCount(), 1) << "no longer told";
}

TEST_F(InfoQueryList, CopiesTheSelectedRowsOrAllButTheCursor) {
    Table->AddCursorInfoQueryPoint();
    Table->SetLayerManager(Manager);
    AddRaster("Rain", {0, 20, 20, 0});
    AddRaster("The \"Heat\"", {100, 20, 120, 0});
    NameSystem();
    AddPoint(5, 15, "say \"here\"");
    AddPoint(15, 5);
    const QString end = LineBreak();
    const QString heading = "Location\t\"Rain\"\t\"The \"Heat\"\"" + end;
    const QString first = "\"say \"here\"\"\t11.000\t-" + end;
    const QString second = "\"15.000, 5.000\"\t22.000\t-" + end;
    EXPECT_EQ(Copied(), heading + first + second);
    Select({2});
    EXPECT_EQ(Copied(), heading + second);
    Select({0});
    EXPECT_EQ(Copied(), heading) << "the cursor never";
    Select({0, 1, 2});
    EXPECT_EQ(Copied(), heading + first + second);
}

TEST_F(InfoQueryList, TheCopyKeyCopies) {
    AddPoint(5, 15, "Here");
    tests::ShowActive(*Table);
    Table->GetList()->setFocus();
    tests::TScriptedClipboard clipboard;
    QTest::keySequence(Table->GetList(), QKeySequence(QKeySequence::Copy));
    EXPECT_EQ(clipboard->Text, "Location" + LineBreak() + "\"Here\"" + LineBreak());
}

TEST_F(InfoQueryList, DeletesTheSelectedPointsWithoutAQuestion) {
    Table->AddCursorInfoQueryPoint();
    AddPoint(1, 1, "a");
    AddPoint(2, 2, "b");
    AddPoint(3, 3, "c");
    tests::ShowActive(*Table);
    EXPECT_FALSE(Table->GetDeleteButton()->isEnabled());
    Select({0});
    EXPECT_FALSE(Table->GetDeleteButton()->isEnabled()) << "the cursor stays";
    Select({0, 1, 3});
    QTest::keyClick(Table->GetList(), Qt::Key_Delete);
    ASSERT_EQ(Table->GetRowCount(), 2);
    EXPECT_EQ(Text(0, 0), "Cursor");
    EXPECT_EQ(Text(1, 0), "b");
    EXPECT_EQ(Points->GetPoints().Count(), 1);
}

TEST_F(InfoQueryList, AddsToItsLayer) {
    Table->AddNewPoint({3, 4}, 0xFF00FF00, "new");
    ASSERT_EQ(Points->GetPoints().Count(), 1);
    EXPECT_EQ(Points->GetPoints()[0]->GetPointLabel(), "new");
    EXPECT_EQ(Points->GetPoints()[0]->GetColor(), 0xFF00FF00U);
    EXPECT_EQ(Points->GetPoints()[0]->GetLayer(), Points.get());
    EXPECT_EQ(Table->GetRowCount(), 1);
    Table->SetIQPLayer(nullptr);
    Table->AddNewPoint({3, 4}, 0, {});
    EXPECT_EQ(Points->GetPoints().Count(), 1);
}

TEST_F(InfoQueryList, TheAddButtonOpensItsMenuBelow) {
    tests::ShowActive(*Table);
    Table->GetAddButton()->click();
    ASSERT_TRUE(Table->GetAddMenu()->isVisible());
    EXPECT_EQ(Table->GetAddMenu()->pos(),
              Table->GetAddButton()->mapToGlobal(Table->GetAddButton()->rect().bottomLeft()));
    Table->GetAddMenu()->close();
}

TEST_F(InfoQueryList, ShowsTheColorOfAValueAndOfItsPoint) {
    Table->SetLayerManager(Manager);
    AddRaster("Rain", {0, 20, 20, 0});
    NameSystem();
    AddPoint(5, 15, "Here");
    Table->resize(480, 120);
    tests::ShowActive(*Table);
    QWidget& viewport = *Table->GetList()->viewport();
    const QImage picture = PictureOf(viewport);
    const double ratio = viewport.devicePixelRatioF();
    const QRect row = Table->GetList()->RowRect(0);
    const auto pixel = [&](double x, double y) {
        return picture.pixel(static_cast<int>(x * ratio), static_cast<int>(y * ratio));
    };
    const int swatch = row.height() - 4;
    EXPECT_EQ(pixel(200 + swatch / 2.0, row.top() + 2 + swatch / 2.0), 0xFF00000BU) << "opaque, alpha left out";
    EXPECT_EQ(pixel(200 + swatch / 2.0, row.top() + 0.5), Color32(clWindow));
    EXPECT_EQ(pixel(1 + (row.height() - 2) / 2.0, row.top() + row.height() / 2.0), 0xFFFF0000U) << "the point's marker";
}

// A calculator of a host's may do anything while the table asks it.
TEST_F(InfoQueryList, SurvivesCalculatorsThatChangeWhatItLists) {
    Table->AddCursorInfoQueryPoint();
    Table->SetLayerManager(Manager);
    TIdrisiMapLayer* raster = AddRaster("Rain", {0, 20, 20, 0});
    AddRaster("Heat", {0, 20, 20, 0});
    Table->SetCursorMapPt({5, 15}, LatLon);
    AddPoint(5, 15, "a");
    Calculator->Asked = [&] {
        Calculator->Asked = nullptr;
        Points->GetPoints().Clear();
    };
    Table->RebuildData();
    EXPECT_EQ(Table->GetRowCount(), 1);
    Calculator->Asked = [&] {
        Calculator->Asked = nullptr;
        Manager->GetLayers().Remove(raster);
    };
    Table->SetCursorMapPt({6, 15}, LatLon);
    EXPECT_EQ(Table->GetList()->model()->columnCount(), 2);
    const QPointer<QWidget> table = Table.get();
    Calculator->Asked = [&] {
        Calculator->Asked = nullptr;
        Table.reset();
    };
    Table->SetCursorMapPt({7, 15}, LatLon);
    EXPECT_EQ(table, nullptr);
}

// ---- What goes meanwhile

TEST_F(InfoQueryList, WhoHearsThatASelectionEndsWithAColumnMayEndTheTable) {
    const auto ending = [this](auto change) {
        AddPoint(1, 1);
        AddRaster("a", {0, 2, 2, 0});
        AddRaster("b", {0, 2, 2, 0});
        Table = std::make_unique<TMapViewInfoQueryListControl>();
        Table->SetIQPLayer(Points.get());
        Table->SetLayerManager(Manager);
        Select({0});
        int told = 0;
        const auto subscription = Table->GetList()->GetOnSelectionChanged().Add([&](TDrawnListView*) {
            ++told;
            Table.reset();
        });
        change();
        EXPECT_EQ(told, 1);
        EXPECT_EQ(Table, nullptr);
        Manager->GetLayers().Clear();
    };
    ending([this] { Manager->GetLayers().Remove(Manager->GetLayers()[0]); });
    ending([this] { Table->SetLayerManager(nullptr); });
}

TEST_F(InfoQueryList, WhoHearsThatASelectionEndsMaySetAnotherManager) {
    AddPoint(1, 1);
    AddRaster("a", {0, 2, 2, 0});
    AddRaster("b", {0, 2, 2, 0});
    Table->SetLayerManager(Manager);
    Select({0});
    const auto other = TLayerManagerFactory::GetObject();
    const auto subscription =
        Table->GetList()->GetOnSelectionChanged().Add([&](TDrawnListView*) { Table->SetLayerManager(other); });
    Table->SetLayerManager(nullptr);
    EXPECT_EQ(Table->GetLayerManager(), other);
    EXPECT_EQ(Table->GetColumnLayer(0), nullptr);
    EXPECT_EQ(Table->GetList()->model()->columnCount(), 1);
}

TEST_F(InfoQueryList, SaysNothingOfAPointThatWentWithItsLayerBeforeItWasTold) {
    TInfoQueryPointLayer& layer = *Points;
    Table->SetIQPLayer(nullptr);
    const auto subscription = layer.GetOnRemoved().Add([this](auto*, auto*) { Points.reset(); });
    Table->SetIQPLayer(&layer);
    TInfoQueryPoint* point = AddPoint(1, 1, "a");
    layer.GetPoints().Remove(point);
    for (int row = 0; row < Table->GetRowCount(); ++row) {
        EXPECT_EQ(Table->GetRowPoint(row), nullptr);
        EXPECT_EQ(Text(row, 0), "");
    }
    Select({0});
    EXPECT_FALSE(Table->GetDeleteButton()->isEnabled());
    Table->Edit_Click();
    EXPECT_EQ(Copied(), "Location" + LineBreak());
    tests::ShowActive(*Table);
    PictureOf(*Table);
    Points = std::make_unique<TInfoQueryPointLayer>(Manager);
    Table->SetIQPLayer(Points.get());
    EXPECT_EQ(Table->GetRowCount(), 0);
}

} // namespace
} // namespace lmx
