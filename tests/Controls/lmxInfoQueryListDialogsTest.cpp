#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Controls/lmxMapViewInfoQueryListControl.h>
#include <lmx/Coordinates/wskWorldSystem.h>
#include <lmx/Dialogs/lmxAddMultipleInfoQueryPointDialog.h>
#include <lmx/Dialogs/lmxAddMultipleInfoQueryPointPasteDialog.h>
#include <lmx/Dialogs/lmxInfoQueryPointDialog.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxInfoQueryPointLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <lmx/Widgets/lmxPngButton.h>
#include <tests/Support/ModalAnswer.h>
#include <tests/Support/NumberedImage.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/WidgetPictures.h>

#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>

namespace lmx {
namespace {

using tests::TModalAnswer;
using TOne = TInfoQueryPointDialog;
using TMany = TAddMultipleInfoQueryPointDialog;
using TPaste = TAddMultipleInfoQueryPointPasteDialog;

/// The table of a layer's points, whose dialogs are answered.
struct InfoQueryListDialogs : testing::Test {
    InfoQueryListDialogs() {
        Table->SetIQPLayer(Points.get());
        tests::ShowActive(*Table);
    }
    TInfoQueryPoint* AddPoint(extended x, extended y, const QString& label) {
        auto point = std::make_unique<TInfoQueryPoint>(Points.get(), TMapPoint(x, y), 0x80FF0000);
        point->SetPointLabel(label);
        return Points->GetPoints().Add(std::move(point));
    }
    static void Press(QDialog& dialog, const char* button) {
        QTest::mouseClick(dialog.findChild<QPushButton*>(QString::fromLatin1(button)), Qt::LeftButton);
    }
    static void Fill(TOne& dialog, const char* x, const char* y, const char* label) {
        dialog.findChild<QLineEdit*>("edPointX")->setText(x);
        dialog.findChild<QLineEdit*>("edPointY")->setText(y);
        dialog.findChild<QLineEdit*>("edPointLabel")->setText(label);
    }
    /// Pastes a text of points into the dialog for many.
    void AddMany(const char* text) {
        const tests::TScriptedClipboard clipboard;
        clipboard->Text = QString::fromLatin1(text);
        const TModalAnswer<TMany> answer([&](TMany& dialog) {
            const TModalAnswer<TPaste> paste([](TPaste& inner) {
                inner.findChild<QComboBox*>("cbX")->setCurrentIndex(1);
                inner.findChild<QComboBox*>("cbY")->setCurrentIndex(2);
                Press(inner, "btnOK");
            });
            Press(dialog, "Button4");
            Press(dialog, "btnOK");
        });
        Table->AddMultiple_Click();
    }
    void Edit(int row) {
        Table->GetList()->SelectRow(row);
        Table->GetEditButton()->click();
    }
    QString Told(int row) const {
        const TInfoQueryPoint& point = *Table->GetRowPoint(row);
        return point.GetPoint().ToString() + '|' + point.GetPointLabel();
    }

    const TFormatSettingsScope Point{TFormatSettings{u'.'}};
    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    std::unique_ptr<TInfoQueryPointLayer> Points = std::make_unique<TInfoQueryPointLayer>(Manager);
    std::unique_ptr<TMapViewInfoQueryListControl> Table = std::make_unique<TMapViewInfoQueryListControl>();
};

TEST_F(InfoQueryListDialogs, AddsAPoint) {
    const TModalAnswer<TOne> answer([](TOne& dialog) {
        Fill(dialog, "5.5", "-15", "Here");
        dialog.SetPointColor(0xFF00FF00);
        Press(dialog, "btnOK");
    });
    Table->GetAddMenu()->actions()[0]->trigger();
    ASSERT_EQ(Table->GetRowCount(), 1);
    EXPECT_EQ(Told(0), "5.500, -15.000|Here");
    EXPECT_EQ(Table->GetRowPoint(0)->GetColor(), 0xFF00FF00U);
    EXPECT_EQ(Table->GetRowPoint(0)->GetLayer(), Points.get());
    EXPECT_FALSE(Table->findChild<TOne*>()) << "the dialog is gone";
}

TEST_F(InfoQueryListDialogs, AddsNothingIfThatIsCancelled) {
    const TModalAnswer<TOne> answer([](TOne& dialog) {
        Fill(dialog, "5", "5", "");
        Press(dialog, "btnCancel");
    });
    Table->GetAddMenu()->actions()[0]->trigger();
    EXPECT_EQ(Table->GetRowCount(), 0);
}

TEST_F(InfoQueryListDialogs, EditsTheFirstSelectedPoint) {
    AddPoint(1.234567L, 2, "old");
    const TModalAnswer<TOne> answer([](TOne& dialog) {
        EXPECT_EQ(dialog.findChild<QLineEdit*>("edPointX")->text(), "1.23457");
        EXPECT_EQ(dialog.findChild<QLineEdit*>("edPointY")->text(), "2.00000");
        EXPECT_EQ(dialog.GetPointLabel(), "old");
        EXPECT_EQ(dialog.GetPointColor(), 0xFFFF0000U);
        dialog.SetPointLabel("new");
        Press(dialog, "btnOK");
    });
    Edit(0);
    EXPECT_EQ(Told(0), "1.235, 2.000|new");
    EXPECT_EQ(Table->GetRowPoint(0)->GetPoint().X, 1.23457L) << "what was shown";
    EXPECT_EQ(Table->GetRowPoint(0)->GetColor(), 0xFFFF0000U) << "opaque";
}

TEST_F(InfoQueryListDialogs, EditsTheFirstOfSeveralAndNeverTheCursor) {
    AddPoint(1, 1, "a");
    AddPoint(2, 2, "b");
    Table->AddCursorInfoQueryPoint();
    Table->GetList()->selectAll();
    const TModalAnswer<TOne> answer([](TOne& dialog) {
        EXPECT_EQ(dialog.GetPointLabel(), "a");
        Press(dialog, "btnOK");
    });
    Table->GetEditButton()->click();
    Table->GetList()->SelectRow(2);
    EXPECT_FALSE(Table->GetEditButton()->isEnabled());
    Table->Edit_Click(); // brings up no dialog
    Table->SetIQPLayer(nullptr);
    Table->SetIQPLayer(Points.get()); // the cursor comes first now
    Table->GetList()->selectAll();
    Table->Edit_Click();
    EXPECT_EQ(Table->GetRowCount(), 3);
}

TEST_F(InfoQueryListDialogs, ChangesPlaceColorAndLabelInThisOrderAndReadsAnew) {
    auto raster = std::make_unique<TIdrisiMapLayer>(Manager);
    raster->TakeImage(tests::NumberedImage(2, 2, {0, 20, 20, 0}));
    raster->SetColorCalc(TGradientColorCalculatorFactory::GetObject(0, 99, TGradientFactory::GetObject()));
    Manager->GetLayers().Add(std::move(raster));
    Table->SetLayerManager(Manager);
    Table->SetCursorMapPt({1, 1}, TWorldSystemFactory::GetObject("latlon"));
    TInfoQueryPoint* point = AddPoint(5, 15, "old");
    QStringList told;
    const TSubscription listening = Points->GetOnInvalidated().Add(
        [&](auto*) { told += Told(0) + (point->GetColor() == 0xFF00FF00U ? " green" : ""); });
    const TModalAnswer<TOne> answer([](TOne& dialog) {
        Fill(dialog, "15", "5", "new");
        dialog.SetPointColor(0xFF00FF00);
        Press(dialog, "btnOK");
    });
    EXPECT_EQ(Table->GetRowValue(0, 0)->Value, 11);
    Edit(0);
    EXPECT_EQ(told, (QStringList{"15.000, 5.000|old", "15.000, 5.000|old green", "15.000, 5.000|new green"}));
    EXPECT_EQ(Table->GetRowValue(0, 0)->Value, 22);
}

TEST_F(InfoQueryListDialogs, LabelsAPointBeforeItIsAdded) {
    QString told;
    const TSubscription listening =
        Points->GetOnAdded().Add([&](auto*, TInfoQueryPoint* point) { told = point->GetPointLabel(); });
    const TModalAnswer<TOne> answer([](TOne& dialog) {
        Fill(dialog, "1e400", "-1e400", "Far"); // further than a double can tell
        Press(dialog, "btnOK");
    });
    Table->AddSingle_Click();
    EXPECT_EQ(told, "Far");
    EXPECT_EQ(Told(0), "1E400, -1E400|Far");
    tests::PictureOf(*Table);
    const TModalAnswer<TOne> again([](TOne& dialog) {
        EXPECT_EQ(dialog.findChild<QLineEdit*>("edPointX")->text(), "1E400");
        Press(dialog, "btnOK");
    });
    Edit(0);
    EXPECT_EQ(Told(0), "1E400, -1E400|Far");
}

TEST_F(InfoQueryListDialogs, FollowsTheDecimalSeparator) {
    const TFormatSettingsScope comma{TFormatSettings{u','}};
    AddMany("x;y\n1,5;-2,25\n1.5;2\n3;4\n");
    ASSERT_EQ(Table->GetRowCount(), 2) << "a number with a point is none";
    EXPECT_EQ(Told(0), "1,500, -2,250|");
    EXPECT_EQ(Told(1), "3,000, 4,000|");
    const TModalAnswer<TOne> answer([](TOne& dialog) {
        EXPECT_EQ(dialog.findChild<QLineEdit*>("edPointX")->text(), "1,50000");
        Fill(dialog, "9,75", "1", "");
        Press(dialog, "btnOK");
    });
    Edit(0);
    EXPECT_EQ(Told(0), "9,750, 1,000|");
}

// Memory that is given back is often given out again at once.
TEST_F(InfoQueryListDialogs, DeletesNoPointThatCameInThePlaceOfASelectedOne) {
    AddPoint(1, 1, "a");
    TInfoQueryPoint* second = AddPoint(2, 2, "b");
    Table->GetList()->selectAll();
    int added = 0;
    const TSubscription replacing = Points->GetOnRemoved().Add([&](auto*, TInfoQueryPoint* point) {
        if (point->GetPointLabel() != "a")
            return;
        Points->GetPoints().Remove(second);
        for (bool isInItsPlace = false; !isInItsPlace && added < 100; ++added)
            isInItsPlace = AddPoint(3, 3, "new") == second;
    });
    Table->GetDeleteButton()->click();
    EXPECT_EQ(Points->GetPoints().Count(), added);
    EXPECT_EQ(Table->GetRowCount(), added);
}

TEST_F(InfoQueryListDialogs, LeavesAPointAsItIsIfThatIsCancelled) {
    AddPoint(1.234567L, 2, "old");
    const TModalAnswer<TOne> answer([](TOne& dialog) {
        Fill(dialog, "9", "9", "new");
        Press(dialog, "btnCancel");
    });
    Edit(0);
    EXPECT_EQ(Told(0), "1.235, 2.000|old");
    EXPECT_EQ(Table->GetRowPoint(0)->GetColor(), 0x80FF0000U);
}

TEST_F(InfoQueryListDialogs, SurvivesPointsLayersAndTablesThatGoMeanwhile) {
    TInfoQueryPoint* point = AddPoint(1, 2, "a");
    AddPoint(3, 4, "b");
    {
        const TModalAnswer<TOne> answer([&](TOne& dialog) {
            Fill(dialog, "9", "9", "new");
            Points->GetPoints().Remove(point);
            Press(dialog, "btnOK");
        });
        Edit(0);
        ASSERT_EQ(Table->GetRowCount(), 1);
        EXPECT_EQ(Told(0), "3.000, 4.000|b");
    }
    {
        const TModalAnswer<TOne> answer([&](TOne& dialog) {
            Fill(dialog, "9", "9", "new");
            Points.reset();
            Press(dialog, "btnOK");
        });
        Table->AddSingle_Click();
        EXPECT_EQ(Table->GetRowCount(), 0);
    }
    const TModalAnswer<TOne> answer([&](TOne&) { Table.reset(); });
    Table->AddSingle_Click();
    EXPECT_EQ(Table, nullptr);
}

TEST_F(InfoQueryListDialogs, AddsTheRowsWhoseCoordinatesAreNumbers) {
    const tests::TScriptedClipboard clipboard;
    clipboard->Text = "x\ty\tname\n1\t2\tA\nabc\t2\tB\n3\t\tC\n1e5000\t1\tD\nnan\t1\tE\n -5 \t6.25\t\n";
    std::vector<TIQPAItem> items;
    const TModalAnswer<TMany> answer([&](TMany& dialog) {
        const TModalAnswer<TPaste> paste([](TPaste& inner) {
            inner.findChild<QComboBox*>("cbX")->setCurrentIndex(1);
            inner.findChild<QComboBox*>("cbY")->setCurrentIndex(2);
            inner.findChild<QComboBox*>("cbLabel")->setCurrentIndex(3);
            Press(inner, "btnOK");
        });
        Press(dialog, "Button4");
        items = dialog.GetItems();
        Press(dialog, "btnOK");
    });
    Table->GetAddMenu()->actions()[1]->trigger();
    ASSERT_EQ(items.size(), 7U) << "the empty row and those of the text";
    ASSERT_EQ(Table->GetRowCount(), 2);
    EXPECT_EQ(Told(0), "1.000, 2.000|A");
    EXPECT_EQ(Table->GetRowPoint(0)->GetColor(), Color32(items[1].Color));
    EXPECT_EQ(Told(1), "-5.000, 6.250|");
    EXPECT_EQ(Table->GetRowPoint(1)->GetColor(), Color32(items[6].Color));
}

TEST_F(InfoQueryListDialogs, AddsNoneOfManyIfThatIsCancelled) {
    const TModalAnswer<TMany> answer([](TMany& dialog) {
        QTest::keyClicks(dialog.focusWidget(), "1");
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
        QTest::keyClicks(dialog.focusWidget(), "2");
        Press(dialog, "btnCancel");
    });
    Table->AddMultiple_Click();
    EXPECT_EQ(Table->GetRowCount(), 0);
}

TEST_F(InfoQueryListDialogs, TellsTheListOfManyRowsAtOnce) {
    std::vector<std::pair<int, int>> told;
    const QObject* model = Table->GetList()->model();
    QObject::connect(static_cast<const QAbstractItemModel*>(model), &QAbstractItemModel::rowsInserted, model,
                     [&told](const QModelIndex&, int first, int last) { told.emplace_back(first, last); });
    AddPoint(0, 0, "before");
    AddMany("x,y\n1,2\n3,4\n5,6\n");
    EXPECT_EQ(told, (std::vector<std::pair<int, int>>{{0, 0}, {1, 3}}));
    EXPECT_EQ(Table->GetList()->GetRowCount(), 4);
    EXPECT_EQ(Told(3), "5.000, 6.000|");
}

TEST_F(InfoQueryListDialogs, FollowsPointsThatGoWhileManyCome) {
    AddPoint(0, 0, "before");
    const TSubscription removing = Points->GetOnAdded().Add([this](auto*, TInfoQueryPoint* point) {
        if (point->GetPoint().X == 3)
            Points->GetPoints().Remove(Points->GetPoints()[0]);
        if (point->GetPoint().X == 5)
            Points->GetPoints().Remove(point);
    });
    AddMany("x,y\n1,2\n3,4\n5,6\n7,8\n");
    ASSERT_EQ(Table->GetRowCount(), 3);
    EXPECT_EQ(Table->GetList()->GetRowCount(), 3);
    EXPECT_EQ(Told(0), "1.000, 2.000|");
    EXPECT_EQ(Told(1), "3.000, 4.000|");
    EXPECT_EQ(Told(2), "7.000, 8.000|");
}

TEST_F(InfoQueryListDialogs, StopsAddingWhenALayerOrTheTableGoes) {
    const auto addMany = [this] { AddMany("x,y\n1,2\n3,4\n"); };
    TSubscription removing = Points->GetOnAdded().Add([&](auto*, auto*) { Table->SetIQPLayer(nullptr); });
    addMany();
    EXPECT_EQ(Points->GetPoints().Count(), 1);
    removing = {};
    Table->SetIQPLayer(Points.get());
    removing = Points->GetOnAdded().Add([&](auto*, auto*) { Table.reset(); });
    addMany();
    EXPECT_EQ(Points->GetPoints().Count(), 2);
    EXPECT_EQ(Table, nullptr);
}

} // namespace
} // namespace lmx
