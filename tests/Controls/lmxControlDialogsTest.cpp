#include <lmx/Controls/Legend/lmxObjectLayerLegendControl.h>
#include <lmx/Dialogs/lmxCompassRoseObjectDialog.h>
#include <lmx/Dialogs/lmxGeneralOptionsObjectDialog.h>
#include <lmx/Dialogs/lmxLegendObjectDialog.h>
#include <lmx/Dialogs/lmxTextObjectDialog.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxVectorDoc.h>
#include <lmx/Layers/Objects/lmxCompassRoseObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxLegendObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxRectangleObjectTypeItem.h>
#include <lmx/Layers/Objects/lmxTextBoxObjectLayerItem.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxObjectMapLayer.h>
#include <lmx/Layers/lmxShapeFileLayer.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Widgets/lmxDrawnListView.h>
#include <tests/Support/ModalAnswer.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>

#include <QAction>
#include <QCheckBox>
#include <QMenu>
#include <QTest>

#include <memory>

// What the dialogs do to annotations, opened by the legend control of their layer.

namespace lmx {
namespace {

using enum TAlignment;
using enum TFontStyle;
using tests::TModalAnswer;

struct ControlDialogs : testing::Test {
    ControlDialogs() { Control->show(); }
    ~ControlDialogs() override { QCoreApplication::processEvents(); }

    template<class Item, class... Args>
    Item* Add(Args&&... args) {
        return Layer->GetObjects().Add(std::make_unique<Item>(Layer.get(), std::forward<Args>(args)...));
    }
    TIdrisiMapLayer* AddRaster(const QString& name) {
        auto raster = std::make_unique<TIdrisiMapLayer>(Manager);
        raster->SetLayerName(name);
        return Manager->GetLayers().Add(std::move(raster));
    }
    TTextBoxObjectLayerItem* AddTextBox() {
        const QString font = TTextObjectDialog().GetFontName(); // one that there is
        return Add<TTextBoxObjectLayerItem>(QStringLiteral("Mean rain"), font, 26, TColor{0x00332211},
                                            TFontStyles{fsItalic, fsStrikeOut}, taRightJustify);
    }
    void Choose(const char* kind) {
        for (QAction* action : Control->GetAddMenu()->actions())
            if (action->text() == QLatin1String(kind))
                return action->trigger(); // which may take the menu away
    }
    static void Click(QWidget& dialog, const char* name) {
        dialog.findChild<QAbstractButton*>(QString::fromLatin1(name))->click();
    }
    static void Confirm(QWidget& dialog) { Click(dialog, "btnOK"); }
    /// Switches the border on in the options behind "More options...".
    static void ShowBorder(QWidget& dialog) {
        const TModalAnswer<TGeneralOptionsObjectDialog> more([](TGeneralOptionsObjectDialog& options) {
            Click(options, "cbShowBorder");
            Confirm(options);
        });
        Click(dialog, "Button3");
    }
    template<class Item>
    Item* Only() {
        EXPECT_EQ(Layer->GetObjects().Count(), 1);
        return Layer->GetObjects().IsEmpty() ? nullptr : dynamic_cast<Item*>(Layer->GetObjects()[0]);
    }

    tests::TScriptedMsgBox Messages;
    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    std::unique_ptr<TObjectMapLayer> Layer = std::make_unique<TObjectMapLayer>(Manager, false);
    std::unique_ptr<TObjectLayerLegendControl> Control{TObjectLayerLegendControl::CreateComp(nullptr, Layer.get())};
    int Changes = 0;
    TSubscription Subscription =
        Layer->GetOnObjectChanged().Add([this](TObjectMapLayer*, TBaseObjectLayerItem*) { ++Changes; });
};

// ---- Text boxes

TEST_F(ControlDialogs, AddTheTextBoxThatTheUserDescribes) {
    QString font;
    const TModalAnswer<TTextObjectDialog> answer([&](TTextObjectDialog& dialog) {
        EXPECT_EQ(dialog.parentWidget(), Control.get());
        EXPECT_EQ(dialog.GetGeneralOptions().GetBgColor(), 0xC8FFFFFFU);
        dialog.SetText("Mean rain");
        dialog.SetFontSize(22);
        dialog.SetFontColor(TColor{0x00112233});
        Click(dialog, "tbBold");
        Click(dialog, "tbCenter");
        font = dialog.GetFontName();
        ShowBorder(dialog);
        Confirm(dialog);
    });
    Choose("Text box");
    const auto* item = Only<TTextBoxObjectLayerItem>();
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->GetText(), "Mean rain");
    EXPECT_EQ(item->GetFont(), font);
    EXPECT_EQ(item->GetFontSize(), 22);
    EXPECT_EQ(item->GetColor(), TColor{0x00112233});
    EXPECT_EQ(item->GetFontStyles(), TFontStyles{fsBold});
    EXPECT_EQ(item->GetTextAlign(), taCenter);
    EXPECT_TRUE(item->GetShowBackground());
    EXPECT_EQ(item->GetBackgroundColor(), 0xC8FFFFFFU);
    EXPECT_TRUE(item->GetShowBorder());
    EXPECT_EQ(item->GetBorderColor(), 0xC8000000U) << "the carrier's";
}

TEST_F(ControlDialogs, AddNothingWhenTheyAreCancelled) {
    {
        const TModalAnswer<TTextObjectDialog> answer([](TTextObjectDialog& dialog) {
            ShowBorder(dialog);
            Click(dialog, "btnCancel");
        });
        Choose("Text box");
    }
    AddRaster("Rain");
    {
        const TModalAnswer<TLegendObjectDialog> answer([](TLegendObjectDialog& dialog) { dialog.close(); });
        Choose("Legend");
    }
    EXPECT_EQ(Layer->GetObjects().Count(), 0);
    EXPECT_EQ(Changes, 0);
}

TEST_F(ControlDialogs, FillTheDialogOfATextBox) {
    TTextBoxObjectLayerItem* item = AddTextBox();
    item->SetBackgroundColor(0x80445566U);
    const TModalAnswer<TTextObjectDialog> answer([&](TTextObjectDialog& dialog) {
        EXPECT_EQ(dialog.GetText(), "Mean rain");
        EXPECT_EQ(dialog.GetFontName(), item->GetFont());
        EXPECT_EQ(dialog.GetFontSize(), 26);
        EXPECT_EQ(dialog.GetFontStyles(), TFontStyles{fsItalic});
        EXPECT_EQ(dialog.GetFontColor(), TColor{0x00332211});
        EXPECT_EQ(dialog.GetTextAlign(), taRightJustify);
        EXPECT_FALSE(dialog.GetGeneralOptions().GetShowBg());
        EXPECT_EQ(dialog.GetGeneralOptions().GetBgColor(), 0x80445566U);
        Click(dialog, "btnCancel");
    });
    Changes = 0;
    Control->EditItem(item);
    EXPECT_EQ(item->GetFontStyles(), (TFontStyles{fsItalic, fsStrikeOut})) << "cancelled";
    EXPECT_EQ(Changes, 0);
}

TEST_F(ControlDialogs, ChangeATextBoxAtOnce) {
    TTextBoxObjectLayerItem* item = AddTextBox();
    const TModalAnswer<TTextObjectDialog> answer([](TTextObjectDialog& dialog) {
        dialog.SetText("Mean\nrain");
        dialog.SetFontSize(3);
        dialog.SetFontColor(TColor{0x00010203});
        Click(dialog, "tbUnderline");
        Click(dialog, "tbLeft");
        ShowBorder(dialog);
        Confirm(dialog);
    });
    Changes = 0;
    Control->EditItem(item);
    EXPECT_EQ(Changes, 1);
    EXPECT_EQ(item->GetText(), "Mean\nrain");
    EXPECT_EQ(item->GetFontSize(), 6);
    EXPECT_EQ(item->GetColor(), TColor{0x00010203});
    EXPECT_EQ(item->GetFontStyles(), (TFontStyles{fsItalic, fsUnderline})) << "strike-out is lost";
    EXPECT_EQ(item->GetTextAlign(), taLeftJustify);
    EXPECT_TRUE(item->GetShowBorder());
}

TEST_F(ControlDialogs, RefuseTheFontOfATextBoxThatTheScreenDoesNotHave) {
    auto* item = Add<TTextBoxObjectLayerItem>();
    item->SetFont("No Such Font");
    const TModalAnswer<TTextObjectDialog> answer([&](TTextObjectDialog& dialog) {
        Confirm(dialog);
        EXPECT_TRUE(dialog.isVisible());
        dialog.close();
    });
    Control->EditItem(item);
    EXPECT_EQ(Messages->Shown.size(), 1U);
    EXPECT_EQ(item->GetFont(), "No Such Font");
}

// ---- Legends

TEST_F(ControlDialogs, AddTheLegendOfALayer) {
    TIdrisiMapLayer* rain = AddRaster("Rain");
    Manager->GetLayers().Add(std::make_unique<TShapeFileLayer>(Manager));
    const TModalAnswer<TLegendObjectDialog> answer([&](TLegendObjectDialog& dialog) {
        EXPECT_EQ(dialog.findChild<TDrawnListView*>("lvLayers")->GetRowCount(), 1);
        EXPECT_TRUE(dialog.GetGeneralOptions().GetShowBg());
        dialog.SetSelectedLayer(rain);
        ShowBorder(dialog);
        Confirm(dialog);
    });
    Choose("Legend");
    const auto* item = Only<TLegendObjectLayerItem>();
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->GetLegendLayer(), rain);
    EXPECT_EQ(item->GetOrientation(), TLegendOrientation::loVertical);
    EXPECT_EQ(item->GetRect(), TRect(0, 0, 150, 500));
    EXPECT_TRUE(item->GetShowBackground());
    EXPECT_TRUE(item->GetShowBorder());
    EXPECT_EQ(item->GetObjectType(), "Legend: Rain");
}

TEST_F(ControlDialogs, ChangeALegendAtOnce) {
    TIdrisiMapLayer* rain = AddRaster("Rain");
    TIdrisiMapLayer* heat = AddRaster("Heat");
    auto* item = Add<TLegendObjectLayerItem>(rain, TLegendOrientation::loHorizontal);
    const TModalAnswer<TLegendObjectDialog> answer([&](TLegendObjectDialog& dialog) {
        EXPECT_EQ(dialog.GetSelectedLayer(), rain);
        EXPECT_EQ(dialog.GetLOrientation(), TLegendOrientation::loHorizontal);
        EXPECT_FALSE(dialog.GetGeneralOptions().GetShowBg());
        dialog.SetSelectedLayer(heat);
        dialog.SetLOrientation(TLegendOrientation::loVertical);
        ShowBorder(dialog);
        Confirm(dialog);
    });
    Changes = 0;
    Control->EditItem(item);
    EXPECT_EQ(Changes, 1);
    EXPECT_EQ(item->GetLegendLayer(), heat);
    EXPECT_EQ(item->GetOrientation(), TLegendOrientation::loVertical);
    EXPECT_TRUE(item->GetShowBorder());
}

TEST_F(ControlDialogs, SelectNoLayerForALegendOfAnotherKind) {
    AddRaster("Rain");
    auto* shape = Manager->GetLayers().Add(std::make_unique<TShapeFileLayer>(Manager));
    auto* item = Add<TLegendObjectLayerItem>(shape, TLegendOrientation::loVertical);
    const TModalAnswer<TLegendObjectDialog> answer([&](TLegendObjectDialog& dialog) {
        EXPECT_EQ(dialog.GetSelectedLayer(), nullptr);
        Confirm(dialog);
        EXPECT_TRUE(dialog.isVisible());
        dialog.close();
    });
    Control->EditItem(item);
    EXPECT_EQ(item->GetLegendLayer(), shape);
    EXPECT_EQ(Messages->Shown.size(), 1U);
}

// ---- Compass roses and rectangles

TEST_F(ControlDialogs, DrawARoseAnewInItsColours) {
    auto* item = Add<TCompassRoseObjectLayerItem>();
    item->SetDarkColor(0x80102030U);
    const TBitmap32 before = *item->GetBuff();
    int invalidations = 0;
    const TSubscription subscription = Layer->GetOnInvalidated().Add([&](TBaseMapLayer*) { ++invalidations; });
    const TModalAnswer<TCompassRoseObjectDialog> answer([](TCompassRoseObjectDialog& dialog) {
        EXPECT_EQ(dialog.GetDarkColor(), 0xFF102030U);
        EXPECT_EQ(dialog.GetLightColor(), 0xFFA9A9A9U);
        EXPECT_EQ(dialog.GetFontColor(), clBlack32);
        EXPECT_EQ(dialog.GetLineColor(), clBlack32);
        dialog.SetLightColor(0xFFFF0000U);
        dialog.SetFontColor(0xFF00FF00U);
        dialog.SetLineColor(0xFF0000FFU);
        Confirm(dialog);
    });
    Control->EditItem(item);
    EXPECT_EQ(item->GetDarkColor(), 0xFF102030U) << "the alpha is lost, also if nobody touched the colour";
    EXPECT_EQ(item->GetLightColor(), 0xFFFF0000U);
    EXPECT_EQ(item->GetFontColor(), 0xFF00FF00U);
    EXPECT_EQ(item->GetLineColor(), 0xFF0000FFU);
    EXPECT_EQ(item->GetBuff()->ScanLine(100)[140], 0xFFFF0000U) << "in the light half of the northern ray";
    EXPECT_NE(before.ScanLine(100)[140], 0xFFFF0000U);
    EXPECT_EQ(invalidations, 1);
}

TEST_F(ControlDialogs, EditTheOptionsOfARectangle) {
    auto* item = Add<TRectangleObjectTypeItem>();
    item->SetLocked(true);
    const TModalAnswer<TGeneralOptionsObjectDialog> answer([](TGeneralOptionsObjectDialog& dialog) {
        EXPECT_TRUE(dialog.findChild<QCheckBox*>("cbShowBg")->isChecked());
        EXPECT_TRUE(dialog.findChild<QCheckBox*>("cbLock")->isChecked());
        Click(dialog, "cbShowBg");
        Click(dialog, "cbLock");
        Click(dialog, "cbIsVisible");
        Confirm(dialog);
    });
    Changes = 0;
    Control->EditItem(item);
    EXPECT_FALSE(item->GetShowBackground());
    EXPECT_FALSE(item->GetLocked());
    EXPECT_FALSE(item->GetIsVisible());
    EXPECT_TRUE(item->GetShowBorder());
    EXPECT_EQ(item->GetBackgroundColor(), 0xFF808080U);
    EXPECT_EQ(Changes, 2) << "of background and visibility, each by itself";
}

TEST_F(ControlDialogs, LeaveARectangleThatIsCancelled) {
    auto* item = Add<TRectangleObjectTypeItem>();
    const TModalAnswer<TGeneralOptionsObjectDialog> answer([](TGeneralOptionsObjectDialog& dialog) {
        Click(dialog, "cbShowBg");
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    Changes = 0;
    Control->EditItem(item);
    EXPECT_TRUE(item->GetShowBackground());
    EXPECT_EQ(Changes, 0);
}

// ---- What is not there

template<class Item>
struct EditedKind : ControlDialogs {};
using TEditedKinds = testing::Types<TTextBoxObjectLayerItem, TLegendObjectLayerItem, TCompassRoseObjectLayerItem,
                                    TRectangleObjectTypeItem>;
TYPED_TEST_SUITE(EditedKind, TEditedKinds);

TYPED_TEST(EditedKind, RefusesNil) {
    try {
        this->Control->EditItem(static_cast<TypeParam*>(nullptr));
        FAIL() << "no exception";
    } catch (const EExArgumentNilException& failure) {
        EXPECT_EQ(failure.Argument(), "Item");
        EXPECT_EQ(failure.Routine(), "TObjectLayerLegendControl.EditItem");
    }
}

/// Confirms whatever dialog an annotation has, if it is still there after `first`.
template<class Use>
void EditWhile(TObjectLayerLegendControl& control, Use use, const std::function<void()>& first) {
    const TModalAnswer<TModalDialog> answer([&](TModalDialog& dialog) {
        const QPointer<TModalDialog> living(&dialog);
        if (auto* text = dynamic_cast<TTextObjectDialog*>(&dialog)) {
            text->SetText("other");
            text->SetFontName(text->GetFontName()); // one that there is
        }
        if (auto* layers = dialog.findChild<TDrawnListView*>("lvLayers"))
            layers->SelectRow(0);
        if (auto* background = dialog.findChild<QCheckBox*>("cbShowBg"))
            background->click();
        first();
        if (!living)
            return;
        dialog.findChild<QAbstractButton*>("btnOK")->click();
        if (living)
            dialog.close(); // a legend whose layers have gone
    });
    use(control);
}

TYPED_TEST(EditedKind, MayGoWhileItIsEdited) {
    TypeParam* item = this->template Add<TypeParam>();
    EditWhile(
        *this->Control, [&](auto& control) { control.EditItem(item); },
        [&] { this->Layer->GetObjects().Remove(item); });
    EXPECT_EQ(this->Layer->GetObjects().Count(), 0);
}

TYPED_TEST(EditedKind, MayLoseItsLayerWhileItIsEdited) {
    TypeParam* item = this->template Add<TypeParam>();
    EditWhile(
        *this->Control, [&](auto& control) { control.EditItem(item); }, [&] { this->Layer.reset(); });
    EXPECT_EQ(this->Control->GetLayer(), nullptr);
}

TYPED_TEST(EditedKind, MayLoseTheManagerWhileItIsEdited) {
    TypeParam* item = this->template Add<TypeParam>();
    EditWhile(
        *this->Control, [&](auto& control) { control.EditItem(item); }, [&] { this->Manager.reset(); });
    EXPECT_EQ(this->Layer->GetObjects().Count(), 1);
}

TYPED_TEST(EditedKind, IsLeftAloneWhenTheControlGoes) {
    TypeParam* item = this->template Add<TypeParam>();
    this->Changes = 0;
    EditWhile(
        *this->Control, [&](auto& control) { control.EditItem(item); }, [&] { this->Control.reset(); });
    EXPECT_EQ(this->Control, nullptr);
    EXPECT_EQ(this->Changes, 0);
}

TYPED_TEST(EditedKind, MayGoWhenItTellsOfItsChange) {
    this->AddRaster("Rain");
    TypeParam* item = this->template Add<TypeParam>();
    const TSubscription subscription = this->Layer->GetOnInvalidated().Add([&](TBaseMapLayer*) {
        if (this->Layer->GetObjects().Contains(item))
            this->Layer->GetObjects().Remove(item);
    });
    EditWhile(
        *this->Control, [&](auto& control) { control.EditItem(item); }, [] {});
    EXPECT_EQ(this->Layer->GetObjects().Count(), 0);
}

TEST_F(ControlDialogs, AddNothingToALayerThatHasGone) {
    for (const char* kind : {"Text box", "Legend"}) {
        Layer = std::make_unique<TObjectMapLayer>(Manager, false);
        Control->SetLayer(Layer.get());
        TIdrisiMapLayer* rain = AddRaster("Rain");
        EditWhile(
            *Control, [&](auto&) { Choose(kind); },
            [&] {
                if (auto* legend = dynamic_cast<TLegendObjectDialog*>(QApplication::activeModalWidget()))
                    legend->SetSelectedLayer(rain);
                Layer.reset();
            });
        EXPECT_EQ(Control->GetLayer(), nullptr);
    }
}

TEST_F(ControlDialogs, AddNothingForAControlThatHasGone) {
    EditWhile(
        *Control, [&](auto&) { Choose("Text box"); }, [&] { Control.reset(); });
    EXPECT_EQ(Layer->GetObjects().Count(), 0);
}

TEST_F(ControlDialogs, AddNothingForAControlThatGoesBehindItsMenu) {
    Control->AddButton_OnClick();
    QMenu* menu = Control->GetAddMenu();
    ASSERT_TRUE(menu->isVisible());
    EditWhile(
        *Control,
        [&](auto&) {
            const QRect text = menu->actionGeometry(menu->actions()[1]);
            QTest::mouseMove(menu, text.center());
            QTest::mouseClick(menu, Qt::LeftButton, {}, text.center());
        },
        [&] { Control.reset(); });
    EXPECT_EQ(Control, nullptr);
    EXPECT_EQ(Layer->GetObjects().Count(), 0);
}

TEST_F(ControlDialogs, MayLoseEverythingWhenAnAdditionIsTold) {
    const TSubscription subscription = Layer->GetOnObjectAdded().Add([&](TObjectMapLayer*, TBaseObjectLayerItem*) {
        Control.reset();
        Layer.reset();
    });
    EditWhile(
        *Control, [&](auto&) { Choose("Text box"); }, [] {});
    EXPECT_EQ(Control, nullptr);
    EXPECT_EQ(Layer, nullptr);
}

TEST_F(ControlDialogs, OfferNoLegendLayerThatHasGone) {
    TIdrisiMapLayer* rain = AddRaster("Rain");
    auto* item = Add<TLegendObjectLayerItem>(rain, TLegendOrientation::loVertical);
    const TModalAnswer<TLegendObjectDialog> answer([&](TLegendObjectDialog& dialog) {
        Manager->GetLayers().Remove(rain);
        Confirm(dialog);
        EXPECT_TRUE(dialog.isVisible());
        dialog.close();
    });
    Control->EditItem(item);
    EXPECT_EQ(item->GetLegendLayer(), nullptr);
    EXPECT_EQ(Messages->Shown.size(), 1U);
}

} // namespace
} // namespace lmx
