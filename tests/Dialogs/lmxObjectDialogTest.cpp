#include <lmx/Dialogs/lmxCompassRoseObjectDialog.h>
#include <lmx/Dialogs/lmxGeneralOptionsObjectDialog.h>
#include <lmx/Dialogs/lmxLegendObjectDialog.h>
#include <lmx/Dialogs/lmxRulerDialog.h>
#include <lmx/Dialogs/lmxTextObjectDialog.h>
#include <lmx/Widgets/lmxColor32Button.h>
#include <tests/Dialogs/FormControls.h>
#include <tests/Support/Printers.h>

#include <QCheckBox>

#include <memory>

namespace lmx {
namespace {

using tests::Find;

using TOptionsAnswer = tests::TModalAnswer<TGeneralOptionsObjectDialog>;

template<class Dialog>
struct ObjectDialog : testing::Test {
    tests::TScriptedMsgBox Messages;
    std::unique_ptr<Dialog> Form = std::make_unique<Dialog>();
};

using TDialogs = testing::Types<TTextObjectDialog, TLegendObjectDialog>;
TYPED_TEST_SUITE(ObjectDialog, TDialogs);

TYPED_TEST(ObjectDialog, BeginsWithTheOptionsOfACarrier) {
    EXPECT_EQ(Find<QPushButton>(*this->Form, "Button3").text().remove(u'&'), "More options...");
    const TGeneralOptions& options = this->Form->GetGeneralOptions();
    EXPECT_TRUE(options.GetShowBg());
    EXPECT_FALSE(options.GetLockObject());
    EXPECT_EQ(options.GetBgColor(), 0xC8FFFFFFU);
    EXPECT_EQ(options.GetBorderColor(), 0xC8000000U);
    EXPECT_FALSE(options.GetShowBorder());
    EXPECT_TRUE(options.GetIsVisible());
}

TYPED_TEST(ObjectDialog, ChangesItsOptionsInPlaceWhateverItIsAnswered) {
    const tests::TModalAnswer<TypeParam> outer([](TypeParam& form) {
        {
            const TOptionsAnswer more([&](TGeneralOptionsObjectDialog& dialog) {
                EXPECT_EQ(dialog.parentWidget(), &form);
                Find<QCheckBox>(dialog, "cbLock").click();
                Find<QCheckBox>(dialog, "cbShowBorder").click();
                tests::ClickOk(dialog);
            });
            tests::ClickOn(form, "Button3");
        }
        EXPECT_TRUE(form.isVisible());
        tests::ClickCancel(form);
    });
    EXPECT_EQ(this->Form->ShowModal(), TModalResult::mrCancel);
    EXPECT_TRUE(this->Form->GetGeneralOptions().GetLockObject());
    EXPECT_TRUE(this->Form->GetGeneralOptions().GetShowBorder());
}

TYPED_TEST(ObjectDialog, KeepsItsOptionsWhenMoreOptionsAreCancelled) {
    this->Form->GetGeneralOptions().SetBgColor(0x11223344U);
    tests::ShowActive(*this->Form);
    const TOptionsAnswer more([](TGeneralOptionsObjectDialog& dialog) {
        EXPECT_EQ(Find<TColor32Button>(dialog, "bgColorBtn").GetColor(), 0x11223344U);
        Find<QCheckBox>(dialog, "cbLock").click();
        tests::PressKey(dialog, Qt::Key_Escape);
    });
    tests::ClickOn(*this->Form, "Button3");
    EXPECT_FALSE(this->Form->GetGeneralOptions().GetLockObject());
    EXPECT_TRUE(this->Form->isVisible()) << "Escape closes the inner dialog only";
    EXPECT_EQ(this->Form->template findChild<TGeneralOptionsObjectDialog*>(), nullptr) << "freed";
}

TYPED_TEST(ObjectDialog, OpensMoreOptionsByItsAccessKey) {
    tests::ShowActive(*this->Form);
    bool opened = false;
    const TOptionsAnswer more([&](TGeneralOptionsObjectDialog& dialog) {
        opened = true;
        dialog.close();
    });
    QTest::keyClick(this->Form->focusWidget(), Qt::Key_M, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return opened; }));
}

// The owner of both goes while the inner dialog is open: both are cancelled.
TYPED_TEST(ObjectDialog, GoesWithItsOwnerAndItsOptions) {
    auto owner = std::make_unique<QWidget>();
    owner->show();
    auto* form = new TypeParam(owner.get());
    const tests::TModalAnswer<TypeParam> outer([&](TypeParam& shown) {
        const TOptionsAnswer more([&](TGeneralOptionsObjectDialog&) { owner.reset(); });
        tests::Find<QPushButton>(shown, "Button3").click();
    });
    EXPECT_EQ(form->ShowModal(), TModalResult::mrCancel);
    EXPECT_EQ(owner, nullptr);
}

// ---- Owners that go

template<class Dialog>
struct OwnedObjectDialog : testing::Test {
    tests::TScriptedMsgBox Messages;
    std::unique_ptr<QWidget> Owner = std::make_unique<QWidget>();
};

using TOwnedDialogs = testing::Types<TGeneralOptionsObjectDialog, TTextObjectDialog, TLegendObjectDialog,
                                     TCompassRoseObjectDialog, TRulerDialog>;
TYPED_TEST_SUITE(OwnedObjectDialog, TOwnedDialogs);

TYPED_TEST(OwnedObjectDialog, IsCancelledWhenItsOwnerGoes) {
    auto* dialog = new TypeParam(this->Owner.get());
    const tests::TModalAnswer<TypeParam> answer([this](TypeParam&) { this->Owner.reset(); });
    EXPECT_EQ(dialog->ShowModal(), TModalResult::mrCancel);
    EXPECT_TRUE(this->Messages->Shown.empty());
}

using TOutermostDialogs = testing::Types<TTextObjectDialog, TLegendObjectDialog>;
template<class Dialog>
struct OutermostObjectDialog : OwnedObjectDialog<Dialog> {};
TYPED_TEST_SUITE(OutermostObjectDialog, TOutermostDialogs);

TYPED_TEST(OutermostObjectDialog, IsCancelledWhenItsOwnerGoesBehindMoreOptions) {
    auto* dialog = new TypeParam(this->Owner.get());
    const tests::TModalAnswer<TypeParam> outer([this](TypeParam& form) {
        const TOptionsAnswer more([this](TGeneralOptionsObjectDialog&) { this->Owner.reset(); });
        Find<QPushButton>(form, "Button3").click();
    });
    EXPECT_EQ(dialog->ShowModal(), TModalResult::mrCancel);
}

} // namespace
} // namespace lmx
