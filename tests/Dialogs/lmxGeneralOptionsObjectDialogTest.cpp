#include <lmx/Dialogs/lmxGeneralOptionsObjectDialog.h>
#include <lmx/Widgets/lmxColor32Button.h>
#include <tests/Dialogs/FormControls.h>
#include <tests/Support/DialogChecks.h>
#include <tests/Support/Printers.h>

#include <QCheckBox>

#include <memory>
#include <tuple>

namespace lmx {
namespace {

using tests::ClickOk;
using tests::ClickOn;
using tests::Find;

using TAnswer = tests::TModalAnswer<TGeneralOptionsObjectDialog>;

auto ValuesOf(const TGeneralOptions& options) {
    return std::tuple(options.GetShowBg(), options.GetLockObject(), options.GetBgColor(), options.GetBorderColor(),
                      options.GetShowBorder(), options.GetIsVisible());
}

struct GeneralOptionsObjectDialog : testing::Test {
    bool IsChecked(const char* name) const { return Find<QCheckBox>(*Dialog, name).isChecked(); }
    TColor32 ColorOf(const char* name) const { return Find<TColor32Button>(*Dialog, name).GetColor(); }
    auto Shown() const {
        return std::tuple(IsChecked("cbShowBg"), IsChecked("cbLock"), ColorOf("bgColorBtn"), ColorOf("borderColorBtn"),
                          IsChecked("cbShowBorder"), IsChecked("cbIsVisible"));
    }
    static TGeneralOptions Unusual() {
        TGeneralOptions options;
        options.SetShowBg(false);
        options.SetLockObject(true);
        options.SetBgColor(0x80123456U);
        options.SetBorderColor(0x40654321U);
        options.SetShowBorder(true);
        options.SetIsVisible(false);
        return options;
    }

    tests::TScriptedColorChooser Chooser;
    tests::TScriptedMsgBox Messages;
    std::unique_ptr<TGeneralOptionsObjectDialog> Dialog = std::make_unique<TGeneralOptionsObjectDialog>();
    TGeneralOptions Options = Unusual();
};

TEST_F(GeneralOptionsObjectDialog, SaysWhatItIsAbout) {
    EXPECT_EQ(Dialog->windowTitle(), "Object options");
    EXPECT_EQ(tests::HeadingOf(*Dialog), "Object options");
    const std::pair<const char*, QString> texts[] = {{"cbShowBg", "Show background"},
                                                     {"cbShowBorder", "Show border"},
                                                     {"cbLock", "Lock object"},
                                                     {"cbIsVisible", "Is Visible"}};
    for (const auto& [name, text] : texts)
        EXPECT_EQ(Find<QCheckBox>(*Dialog, name).text().remove(u'&'), text);
    EXPECT_EQ(Find<QPushButton>(*Dialog, "btnOK").text(), "&OK");
    EXPECT_EQ(Find<QPushButton>(*Dialog, "btnCancel").text(), "&Cancel");
}

TEST_F(GeneralOptionsObjectDialog, IsReadAndOperatedAtEveryFontSize) {
    tests::CheckForm([] { return std::make_unique<TGeneralOptionsObjectDialog>(); });
}

TEST_F(GeneralOptionsObjectDialog, LeadsTheTabKeyFromEachBoxToItsColour) {
    EXPECT_EQ(tests::TabOrderOf(*Dialog), (QStringList{"cbShowBg", "bgColorBtn", "cbShowBorder", "borderColorBtn",
                                                       "cbLock", "cbIsVisible", "btnOK", "btnCancel"}));
}

TEST_F(GeneralOptionsObjectDialog, ShowsTheOptionsThatItIsGiven) {
    Dialog->SetOptions(&Options);
    EXPECT_EQ(Shown(), ValuesOf(Options)) << "a colour that is set switches nothing on";
}

TEST_F(GeneralOptionsObjectDialog, DoesNothingForTheOptionsThatItHas) {
    Dialog->SetOptions(&Options);
    const auto shown = Shown();
    Options = TGeneralOptions();
    Dialog->SetOptions(&Options);
    EXPECT_EQ(Shown(), shown);
}

TEST_F(GeneralOptionsObjectDialog, ChangesTheOptionsInPlaceWithOk) {
    Dialog->SetOptions(&Options);
    tests::ShowActive(*Dialog);
    Chooser->Answers = {0x11223344U};
    ClickOn(*Dialog, "bgColorBtn");
    Find<QCheckBox>(*Dialog, "cbIsVisible").click();
    Find<QCheckBox>(*Dialog, "cbLock").click();
    Find<QCheckBox>(*Dialog, "cbShowBorder").click();
    EXPECT_EQ(ValuesOf(Options), ValuesOf(Unusual())) << "before OK";
    ClickOk(*Dialog);
    EXPECT_EQ(ValuesOf(Options), std::tuple(true, false, 0x11223344U, 0x40654321U, false, true));
    EXPECT_EQ(Dialog->GetModalResult(), TModalResult::mrOk);
    EXPECT_FALSE(Dialog->isVisible());
}

TEST_F(GeneralOptionsObjectDialog, ChangesNothingWhenItIsCancelled) {
    const std::function<void(TGeneralOptionsObjectDialog&)> ways[] = {
        [](TGeneralOptionsObjectDialog& dialog) { tests::ClickCancel(dialog); },
        [](TGeneralOptionsObjectDialog& dialog) { tests::PressKey(dialog, Qt::Key_Escape); },
        [](TGeneralOptionsObjectDialog& dialog) { dialog.close(); },
    };
    for (const auto& cancel : ways) {
        TGeneralOptionsObjectDialog dialog;
        dialog.SetOptions(&Options);
        const TAnswer answer([&](TGeneralOptionsObjectDialog& shown) {
            Find<QCheckBox>(shown, "cbShowBg").click();
            cancel(shown);
        });
        EXPECT_EQ(dialog.ShowModal(), TModalResult::mrCancel);
        EXPECT_EQ(ValuesOf(Options), ValuesOf(Unusual()));
    }
}

TEST_F(GeneralOptionsObjectDialog, SwitchesOnWhatAChosenColourColours) {
    Options.SetShowBorder(false);
    Dialog->SetOptions(&Options);
    tests::ShowActive(*Dialog);
    Chooser->Answers = {std::nullopt, 0x80123456U, std::nullopt, 0x01020304U};
    ClickOn(*Dialog, "bgColorBtn");
    EXPECT_FALSE(IsChecked("cbShowBg")) << "cancelled";
    ClickOn(*Dialog, "bgColorBtn");
    EXPECT_TRUE(IsChecked("cbShowBg")) << "also by the colour that there was";
    EXPECT_FALSE(IsChecked("cbShowBorder"));
    ClickOn(*Dialog, "borderColorBtn");
    EXPECT_FALSE(IsChecked("cbShowBorder"));
    EXPECT_EQ(ColorOf("borderColorBtn"), 0x40654321U);
    ClickOn(*Dialog, "borderColorBtn");
    EXPECT_TRUE(IsChecked("cbShowBorder"));
    EXPECT_EQ(ColorOf("borderColorBtn"), 0x01020304U) << "alpha included";
    EXPECT_EQ(Chooser->Shown, (std::vector<TColor32>{0x80123456U, 0x80123456U, 0x40654321U, 0x40654321U}));
}

TEST_F(GeneralOptionsObjectDialog, MakesOneChooserOf32BitColours) {
    EXPECT_EQ(Chooser->Made, (std::vector<TColorChooserDialogOptions>{{TColorChooserDialogOption::coColor32}}));
}

TEST_F(GeneralOptionsObjectDialog, StaysOpenWithoutOptions) {
    const TAnswer answer([](TGeneralOptionsObjectDialog& dialog) {
        ClickOk(dialog);
        EXPECT_TRUE(dialog.isVisible());
        tests::PressKey(dialog, Qt::Key_Return);
        EXPECT_TRUE(dialog.isVisible());
        tests::ClickCancel(dialog);
    });
    EXPECT_EQ(Dialog->ShowModal(), TModalResult::mrCancel);
    EXPECT_TRUE(Messages->Shown.empty());
}

TEST_F(GeneralOptionsObjectDialog, LetsItsOptionsGoForNil) {
    Dialog->SetOptions(&Options);
    const auto shown = Shown();
    Dialog->SetOptions(nullptr);
    EXPECT_EQ(Shown(), shown) << "the controls stay";
    tests::ShowActive(*Dialog);
    Find<QCheckBox>(*Dialog, "cbShowBg").click();
    ClickOk(*Dialog);
    EXPECT_TRUE(Dialog->isVisible());
    EXPECT_EQ(ValuesOf(Options), ValuesOf(Unusual()));
}

TEST_F(GeneralOptionsObjectDialog, OutlivesItsOptions) {
    auto options = std::make_unique<TGeneralOptions>();
    Dialog->SetOptions(options.get());
    tests::ShowActive(*Dialog);
    options.reset();
    ClickOk(*Dialog);
    EXPECT_TRUE(Dialog->isVisible());
}

TEST_F(GeneralOptionsObjectDialog, MayGoWhileAColourIsChosen) {
    Dialog->SetOptions(&Options);
    tests::ShowActive(*Dialog);
    Chooser->Answers = {0x11223344U};
    Chooser->WhileOpen = [this] { Dialog.reset(); };
    Find<TColor32Button>(*Dialog, "bgColorBtn").SelectColor();
    EXPECT_EQ(Dialog, nullptr);
    EXPECT_EQ(ValuesOf(Options), ValuesOf(Unusual()));
}

TEST_F(GeneralOptionsObjectDialog, IsCancelledWhenItGoes) {
    auto* dialog = new TGeneralOptionsObjectDialog;
    const TAnswer answer([](TGeneralOptionsObjectDialog& shown) { delete &shown; });
    EXPECT_EQ(dialog->ShowModal(), TModalResult::mrCancel);
}

} // namespace
} // namespace lmx
