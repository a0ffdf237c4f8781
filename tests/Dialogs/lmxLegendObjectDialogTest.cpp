#include <lmx/Dialogs/lmxLegendObjectDialog.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxShapeFileLayer.h>
#include <lmx/Layers/lmxVectorFileLayer.h>
#include <lmx/Widgets/lmxDrawnListView.h>
#include <tests/Dialogs/FormControls.h>
#include <tests/Support/DialogChecks.h>
#include <tests/Support/Printers.h>
#include <tests/Support/TestLayer.h>

#include <QAbstractItemModel>
#include <QHeaderView>
#include <QRadioButton>

#include <memory>

namespace lmx {
namespace {

using tests::Find;
using tests::TShownMessage;

using TAnswer = tests::TModalAnswer<TLegendObjectDialog>;

struct LegendObjectDialog : testing::Test {
    template<class Layer>
    Layer* Add(const QString& name) {
        auto layer = std::make_unique<Layer>(Manager);
        layer->SetLayerName(name);
        return Manager->GetLayers().Add(std::move(layer));
    }
    std::vector<TBaseMapLayer*> Layers() const { return {Manager->GetLayers().begin(), Manager->GetLayers().end()}; }
    TDrawnListView& List() { return Find<TDrawnListView>(Dialog, "lvLayers"); }
    QStringList Rows() {
        QStringList rows;
        for (int row = 0; row < List().GetRowCount(); ++row)
            rows.append(List().model()->index(row, 0).data().toString());
        return rows;
    }
    void Fill() {
        Rain = Add<TIdrisiMapLayer>("Rain");
        Add<TShapeFileLayer>("Coast");
        Add<tests::TTestLayer>("Host's own");
        Add<TVectorFileLayer>("Rivers");
        Heat = Add<TIdrisiMapLayer>("Heat");
        Dialog.SetLayers(Layers());
    }

    tests::TScriptedMsgBox Messages;
    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    TIdrisiMapLayer* Rain = nullptr;
    TIdrisiMapLayer* Heat = nullptr;
    TLegendObjectDialog Dialog;
};

TEST_F(LegendObjectDialog, SaysWhatItIsAbout) {
    EXPECT_EQ(Dialog.windowTitle(), "LegendObjectDialog");
    EXPECT_EQ(tests::HeadingOf(Dialog), "Legend object");
    EXPECT_EQ(Find<QRadioButton>(Dialog, "rbOVert").text(), "&Vertical");
    EXPECT_EQ(Find<QRadioButton>(Dialog, "rbOHoriz").text(), "&Horizontal");
    EXPECT_EQ(List().model()->columnCount(), 1);
    EXPECT_EQ(List().model()->headerData(0, Qt::Horizontal).toString(), "Layer");
    EXPECT_EQ(List().columnWidth(0), 300);
    tests::ShowActive(Dialog);
    EXPECT_EQ(List().columnWidth(0), 300);
    EXPECT_GE(List().viewport()->width(), 300);
}

TEST_F(LegendObjectDialog, IsReadAndOperatedAtEveryFontSize) {
    tests::CheckForm([this] {
        auto dialog = std::make_unique<TLegendObjectDialog>();
        dialog->SetLayers(Layers());
        return dialog;
    });
}

TEST_F(LegendObjectDialog, BeginsVerticalWithoutALayer) {
    EXPECT_EQ(Dialog.GetLOrientation(), TLegendOrientation::loVertical);
    EXPECT_TRUE(Find<QRadioButton>(Dialog, "rbOVert").isChecked());
    EXPECT_EQ(Dialog.GetSelectedLayer(), nullptr);
}

TEST_F(LegendObjectDialog, ListsTheRastersOnly) {
    Fill();
    EXPECT_EQ(Rows(), (QStringList{"Rain", "Heat"}));
    EXPECT_EQ(Dialog.GetSelectedLayer(), nullptr);
    Dialog.SetLayers({Heat, nullptr});
    EXPECT_EQ(Rows(), QStringList{"Heat"});
    Dialog.SetLayers({});
    EXPECT_EQ(Rows(), QStringList());
}

TEST_F(LegendObjectDialog, SelectsALayerThatIsListed) {
    Fill();
    Dialog.SetSelectedLayer(Heat);
    EXPECT_EQ(Dialog.GetSelectedLayer(), Heat);
    EXPECT_EQ(List().GetSelectedRow(), 1);
    for (TBaseMapLayer* other :
         {Manager->GetLayers()[1], Manager->GetLayers()[3], static_cast<TBaseMapLayer*>(nullptr)}) {
        Dialog.SetSelectedLayer(other);
        EXPECT_EQ(Dialog.GetSelectedLayer(), Heat) << "no such row, no change";
    }
    Dialog.SetSelectedLayer(Rain);
    EXPECT_EQ(Dialog.GetSelectedLayer(), Rain);
}

TEST_F(LegendObjectDialog, TakesTheLayerThatIsClicked) {
    Fill();
    tests::ShowActive(Dialog);
    QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, List().RowRect(1).center());
    EXPECT_EQ(Dialog.GetSelectedLayer(), Heat);
    QTest::keyClick(&List(), Qt::Key_Up);
    EXPECT_EQ(Dialog.GetSelectedLayer(), Rain);
}

TEST_F(LegendObjectDialog, TakesAnOrientation) {
    Dialog.SetLOrientation(TLegendOrientation::loHorizontal);
    EXPECT_TRUE(Find<QRadioButton>(Dialog, "rbOHoriz").isChecked());
    EXPECT_EQ(Dialog.GetLOrientation(), TLegendOrientation::loHorizontal);
    Dialog.SetLOrientation(TLegendOrientation::loVertical);
    EXPECT_EQ(Dialog.GetLOrientation(), TLegendOrientation::loVertical);
    Dialog.SetLOrientation(static_cast<TLegendOrientation>(7));
    EXPECT_EQ(Dialog.GetLOrientation(), TLegendOrientation::loHorizontal) << "any other value";
}

TEST_F(LegendObjectDialog, WantsALayer) {
    Fill();
    const TAnswer answer([&](TLegendObjectDialog& dialog) {
        tests::ClickOk(dialog);
        EXPECT_EQ(Messages->Shown, (std::vector<TShownMessage>{{"Info", "Please select a layer.", "Layer", &dialog}}));
        EXPECT_TRUE(dialog.isVisible());
        dialog.SetSelectedLayer(Rain);
        tests::ClickOk(dialog);
    });
    EXPECT_EQ(Dialog.ShowModal(), TModalResult::mrOk);
    EXPECT_EQ(Messages->Shown.size(), 1U);
}

TEST_F(LegendObjectDialog, IsOperatedByTheKeyboardAlone) {
    Fill();
    const TAnswer answer([&](TLegendObjectDialog& dialog) {
        tests::PressKey(dialog, Qt::Key_End);
        EXPECT_EQ(dialog.GetSelectedLayer(), Heat);
        tests::PressKey(dialog, Qt::Key_H, Qt::AltModifier);
        EXPECT_TRUE(QTest::qWaitFor([&] { return dialog.GetLOrientation() == TLegendOrientation::loHorizontal; }));
        tests::PressKey(dialog, Qt::Key_Return);
    });
    EXPECT_EQ(Dialog.ShowModal(), TModalResult::mrOk);
    EXPECT_EQ(Dialog.GetSelectedLayer(), Heat);
}

TEST_F(LegendObjectDialog, LeadsTheTabKeyInTheOrderOfReading) {
    EXPECT_EQ(tests::TabOrderOf(Dialog), (QStringList{"lvLayers", "rbOVert", "Button3", "btnOK", "btnCancel"}));
}

// A layer that goes while the dialog is open is no choice any more.
TEST_F(LegendObjectDialog, DoesNotTakeALayerThatHasGone) {
    Fill();
    Dialog.SetSelectedLayer(Heat);
    const TAnswer answer([&](TLegendObjectDialog& dialog) {
        Manager->GetLayers().Remove(Heat);
        EXPECT_EQ(dialog.GetSelectedLayer(), nullptr);
        tests::ClickOk(dialog);
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_EQ(Rows(), QStringList{"Rain"});
        dialog.close();
    });
    EXPECT_EQ(Dialog.ShowModal(), TModalResult::mrCancel);
    EXPECT_EQ(Messages->Shown.size(), 1U);
}

TEST_F(LegendObjectDialog, IsCancelledByEscape) {
    Fill();
    Dialog.SetSelectedLayer(Rain);
    const TAnswer answer([](TLegendObjectDialog& dialog) { tests::PressKey(dialog, Qt::Key_Escape); });
    EXPECT_EQ(Dialog.ShowModal(), TModalResult::mrCancel);
}

TEST_F(LegendObjectDialog, GrowsWithItsWindow) {
    Fill();
    tests::ShowActive(Dialog);
    const QSize before = List().size();
    Dialog.resize(Dialog.size() + QSize(100, 80));
    QCoreApplication::processEvents();
    EXPECT_EQ(List().size(), before + QSize(100, 80));
}

} // namespace
} // namespace lmx
