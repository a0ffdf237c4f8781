#include <lmx/Dialogs/lmxLayerPropertiesDialog.h>
#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Widgets/Private/lmxFormHeading.h>
#include <lmx/Widgets/lmxOwnedDialog.h>
#include <tests/Dialogs/PropertiesDialogFixture.h>
#include <tests/Support/DialogChecks.h>
#include <tests/Support/ModalAnswer.h>
#include <tests/Support/TestLayer.h>

#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <QSplitter>
#include <QVBoxLayout>

namespace lmx {
namespace {

using tests::Click;
using tests::Find;
using tests::MessageOf;
using tests::PagesOf;
using tests::TModalAnswer;
using tests::TShownMessage;
using tests::TTestPage;

struct LayerPropertiesDialog : testing::Test {
    TTestPage& Add(const QString& name, std::function<void()> apply = {}) {
        auto page = std::make_unique<TTestPage>(name, std::move(apply));
        TTestPage& added = *page;
        Dialog->AddOptionFrame(std::move(page));
        return added;
    }
    /// A page that writes its name down when it is applied.
    TTestPage& AddWriter(const QString& name) {
        return Add(name, [this, name] { Applied.append(name); });
    }
    void AddRaiser(const QString& name, const QString& message) {
        Add(name, [message] { throw Exception(message); });
    }
    QLabel& Title() { return Find<QLabel>(*Dialog, "lbPageTitle"); }

    tests::TScriptedMsgBox Messages;
    QStringList Applied;
    std::unique_ptr<TLayerPropertiesDialog> Dialog = std::make_unique<TLayerPropertiesDialog>();
};

TEST_F(LayerPropertiesDialog, SaysWhatItIsAbout) {
    EXPECT_EQ(Dialog->windowTitle(), "Layer");
    EXPECT_EQ(Find<TFormHeading>(*Dialog, "FormHeading1").text(), "Layer properties and settings");
    EXPECT_EQ(Find<QPushButton>(*Dialog, "Button1").text(), "&OK");
    EXPECT_TRUE(Find<QPushButton>(*Dialog, "Button1").isDefault());
    EXPECT_EQ(Find<QPushButton>(*Dialog, "Button2").text(), "&Cancel");
    EXPECT_EQ(Find<QPushButton>(*Dialog, "Button3").text(), "&Apply");
    for (const char* name : {"pnMainContainer", "pnHost", "pnMainActions"})
        EXPECT_TRUE(Dialog->findChild<QWidget*>(QString::fromLatin1(name))) << name;
    EXPECT_EQ(Find<QWidget>(*Dialog, "pnMainContainer").layout()->contentsMargins(), QMargins(12, 0, 12, 12));
    EXPECT_EQ(Find<QSplitter>(*Dialog, "Splitter1").widget(0), &PagesOf(*Dialog));
    EXPECT_EQ(Dialog->size(), QSize(721, 702));
    EXPECT_TRUE(Title().isHidden()) << "as long as no page is selected";
}

TEST_F(LayerPropertiesDialog, HasAListForReading) {
    Add("One");
    Add("Two");
    TDrawnListView& list = PagesOf(*Dialog);
    EXPECT_EQ(tests::TitlesOf(list), QStringList{"Page"});
    EXPECT_TRUE(list.isHeaderHidden());
    EXPECT_EQ(list.editTriggers(), QAbstractItemView::NoEditTriggers);
    tests::ShowActive(*Dialog);
    tests::ClickRow(list, 1);
    tests::ClickRow(list, 0, Qt::ControlModifier);
    EXPECT_EQ(list.GetSelectedRow(), 0) << "one page at a time";
    Find<QPushButton>(*Dialog, "Button2").setFocus();
    const QPoint atTheEnd(list.viewport()->width() - 5, list.RowRect(0).center().y());
    EXPECT_EQ(tests::PictureOf(*list.viewport()).pixel(atTheEnd), Color32(clHighlight))
        << "the selection shows without the keyboard, over the whole row";
}

TEST_F(LayerPropertiesDialog, ComesUpInTheMiddleOfItsScreen) {
    QWidget host; // in a corner, where Qt would put it
    host.setGeometry(0, 0, 100, 100);
    host.show();
    Dialog = std::make_unique<TLayerPropertiesDialog>(&host);
    Add("One");
    tests::ShowActive(*Dialog);
    const QPoint off = Dialog->geometry().center() - Dialog->screen()->availableGeometry().center();
    EXPECT_LE(std::abs(off.x()), 1);
    EXPECT_LE(std::abs(off.y()), 1);
    EXPECT_EQ(PagesOf(*Dialog).width(), 161);
    EXPECT_TRUE(PagesOf(*Dialog).hasFocus());
    Dialog.reset(); // before its host
}

TEST_F(LayerPropertiesDialog, RefusesPagesThatAreNone) {
    EXPECT_EQ(MessageOf<EArgumentException>([&] { Dialog->AddOptionFrame(nullptr); }), "OptionFrame is null");
    EXPECT_EQ(MessageOf<EArgumentException>([&] { Add(""); }), "OptionFrame Name is empty");
    struct TFrameless : TOptionFrame {
        using TOptionFrame::TOptionFrame;
        QWidget* GetFrame() const override { return nullptr; }
    };
    const auto addFrameless = [&](const char* name) {
        Dialog->AddOptionFrame(std::make_unique<TFrameless>(QString::fromLatin1(name)));
    };
    EXPECT_EQ(MessageOf<EArgumentException>([&] { addFrameless("Frameless"); }), "OptionFrame.Frame is null");
    EXPECT_EQ(MessageOf<EArgumentException>([&] { addFrameless(""); }), "OptionFrame Name is empty");
    EXPECT_TRUE(tests::PageNamesOf(*Dialog).isEmpty());
    EXPECT_TRUE(Dialog->GetOptionFrames().IsEmpty());
}

TEST_F(LayerPropertiesDialog, ListsPagesInTheirOrder) {
    const TTestPage& last = Add("Zebra");
    Add("Ant");
    EXPECT_EQ(tests::PageNamesOf(*Dialog), (QStringList{"Zebra", "Ant"}));
    EXPECT_EQ(last.GetListItem().row(), 0);
    EXPECT_EQ(Dialog->GetOptionFrames()[1]->GetListItem().row(), 1);
}

TEST_F(LayerPropertiesDialog, ComesUpWithThePageOfAName) {
    Add("One");
    const TTestPage& two = Add("Two");
    Add("Two");
    EXPECT_FALSE(Dialog->SelectPage("two"));
    EXPECT_TRUE(Dialog->SelectPage("Two"));
    tests::ShowActive(*Dialog);
    EXPECT_EQ(PagesOf(*Dialog).GetSelectedRow(), 1);
    EXPECT_EQ(Title().text(), "Two");
    EXPECT_TRUE(two.GetFrame()->isVisible());
}

TEST_F(LayerPropertiesDialog, ShowsThePageThatIsSelected) {
    const TTestPage& one = Add("One");
    const TTestPage& two = Add("Two");
    EXPECT_FALSE(one.GetFrame()->parentWidget());
    tests::ShowActive(*Dialog);
    EXPECT_EQ(one.GetFrame()->parentWidget(), &Find<QWidget>(*Dialog, "pnHost"));
    EXPECT_TRUE(one.GetFrame()->isVisible());
    EXPECT_EQ(Title().text(), "One");
    EXPECT_TRUE(Title().isVisible());
    EXPECT_FALSE(two.GetFrame()->parentWidget()) << "before it is selected";

    tests::ClickRow(PagesOf(*Dialog), 1);
    EXPECT_FALSE(one.GetFrame()->isVisible());
    EXPECT_TRUE(two.GetFrame()->isVisible());
    EXPECT_EQ(Title().text(), "Two");
    EXPECT_TRUE(Title().isVisible());
    QCoreApplication::processEvents();
    EXPECT_EQ(two.GetFrame()->size(), Find<QWidget>(*Dialog, "pnHost").size());
    QTest::keyClick(&PagesOf(*Dialog), Qt::Key_Up);
    EXPECT_TRUE(one.GetFrame()->isVisible());
}

TEST_F(LayerPropertiesDialog, HidesPageAndTitleOfARowThatIsNotSelectedAnyMore) {
    const TTestPage& one = Add("One");
    tests::ShowActive(*Dialog);
    PagesOf(*Dialog).clearSelection();
    QCoreApplication::processEvents();
    EXPECT_FALSE(one.GetFrame()->isVisible());
    EXPECT_FALSE(Title().isVisible());
}

TEST_F(LayerPropertiesDialog, AppliesPagesThatNobodyHasSeen) {
    AddWriter("One");
    const TTestPage& two = AddWriter("Two");
    tests::ShowActive(*Dialog);
    Click(*Dialog, "Button1");
    EXPECT_EQ(Applied, (QStringList{"One", "Two"}));
    EXPECT_FALSE(two.GetFrame()->parentWidget());
    EXPECT_FALSE(Dialog->isVisible());
    EXPECT_EQ(Dialog->result(), 1);
    EXPECT_TRUE(Messages->Shown.empty());
}

TEST_F(LayerPropertiesDialog, StaysOpenWhenAPageFails) {
    AddWriter("One");
    AddRaiser("Two", QStringLiteral("no luck"));
    AddWriter("Three");
    AddRaiser("Four", QStringLiteral("unheard"));
    tests::ShowActive(*Dialog);
    Click(*Dialog, "Button1");
    EXPECT_TRUE(Dialog->isVisible());
    EXPECT_EQ(Applied, QStringList{"One"});
    EXPECT_EQ(Messages->Shown,
              (std::vector<TShownMessage>{{"Error", "Error applying changes: no luck", "Error", Dialog.get()}}));
    EXPECT_FALSE(Dialog->ApplyChanges());
}

TEST_F(LayerPropertiesDialog, StaysOpenWhenAPageFailsToBeAppliedOnly) {
    AddWriter("One");
    AddRaiser("Two", QStringLiteral("no luck"));
    AddWriter("Three");
    tests::ShowActive(*Dialog);
    Click(*Dialog, "Button3");
    EXPECT_TRUE(Dialog->isVisible());
    EXPECT_EQ(Applied, QStringList{"One"});
    EXPECT_EQ(Messages->Shown,
              (std::vector<TShownMessage>{{"Error", "Error applying changes: no luck", "Error", Dialog.get()}}));
    Click(*Dialog, "Button2");
    EXPECT_EQ(Dialog->result(), 2);
    EXPECT_EQ(Messages->Shown.size(), 1U);
}

TEST_F(LayerPropertiesDialog, TellsOfFailuresThatAreNotTheLibrarys) {
    Add("One", [] { throw std::runtime_error("outer"); });
    EXPECT_FALSE(Dialog->ApplyChanges());
    ASSERT_EQ(Messages->Shown.size(), 1U);
    EXPECT_EQ(Messages->Shown[0].Text, "Error applying changes: outer");
}

TEST_F(LayerPropertiesDialog, KeepsWhatWasAppliedAfterACancel) {
    AddWriter("One");
    tests::ShowActive(*Dialog);
    Click(*Dialog, "Button3");
    EXPECT_TRUE(Dialog->isVisible());
    EXPECT_EQ(Applied, QStringList{"One"});
    Click(*Dialog, "Button2");
    EXPECT_FALSE(Dialog->isVisible());
    EXPECT_EQ(Dialog->GetModalResult(), TModalResult::mrCancel);
    EXPECT_EQ(Applied, QStringList{"One"});
}

TEST_F(LayerPropertiesDialog, AppliesNothingWhenItIsCancelled) {
    AddWriter("One");
    {
        const TModalAnswer<TLayerPropertiesDialog> answer(
            [](auto& dialog) { QTest::keyClick(dialog.focusWidget(), Qt::Key_Escape); });
        EXPECT_EQ(Dialog->ShowModal(), TModalResult::mrCancel);
    }
    EXPECT_TRUE(Applied.isEmpty());
}

TEST_F(LayerPropertiesDialog, IsCancelledByItsCloseButton) {
    AddWriter("One");
    const TModalAnswer<TLayerPropertiesDialog> answer([](auto& dialog) { dialog.close(); });
    EXPECT_EQ(Dialog->ShowModal(), TModalResult::mrCancel);
    EXPECT_TRUE(Applied.isEmpty());
}

TEST_F(LayerPropertiesDialog, IsConfirmedByTheEnterKeyInItsList) {
    AddWriter("One");
    const TModalAnswer<TLayerPropertiesDialog> answer([](auto& dialog) {
        EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
    });
    EXPECT_EQ(Dialog->ShowModal(), TModalResult::mrOk);
    EXPECT_EQ(Applied, QStringList{"One"});
}

TEST_F(LayerPropertiesDialog, FreesItsPagesAndTheirFrames) {
    const QPointer<QWidget> seen = Add("One").GetFrame();
    const QPointer<QWidget> unseen = Add("Two").GetFrame();
    tests::ShowActive(*Dialog);
    Dialog.reset();
    EXPECT_FALSE(seen);
    EXPECT_FALSE(unseen);
    const QPointer<QWidget> alone = TTestPage(QStringLiteral("Alone")).GetFrame();
    EXPECT_FALSE(alone);
}

TEST_F(LayerPropertiesDialog, SurvivesAFrameThatGoesFirst) {
    const TTestPage& one = Add("One");
    tests::ShowActive(*Dialog);
    delete one.GetFrame();
    PagesOf(*Dialog).clearSelection();
    QCoreApplication::processEvents();
    tests::ClickRow(PagesOf(*Dialog), 0);
    EXPECT_EQ(Title().text(), "One");
}

TEST_F(LayerPropertiesDialog, MayGoWhileAPageIsApplied) {
    Add("One", [this] { Dialog.reset(); });
    AddWriter("Two");
    TLayerPropertiesDialog* const dialog = Dialog.get();
    EXPECT_FALSE(dialog->ApplyChanges());
    EXPECT_TRUE(Applied.isEmpty());
    EXPECT_TRUE(Messages->Shown.empty());
}

TEST_F(LayerPropertiesDialog, TellsOfAFailureThatEndedIt) {
    Add("One", [this] {
        Dialog.reset();
        throw Exception(QStringLiteral("the end"));
    });
    TLayerPropertiesDialog* const dialog = Dialog.get();
    EXPECT_FALSE(dialog->ApplyChanges());
    EXPECT_EQ(Messages->Shown,
              (std::vector<TShownMessage>{{"Error", "Error applying changes: the end", "Error", nullptr}}));
}

TEST_F(LayerPropertiesDialog, CountsAsCancelledWhenItsOwnerGoes) {
    auto owner = std::make_unique<QWidget>();
    TOwnedDialog<TLayerPropertiesDialog> dialog(owner.get());
    dialog->AddOptionFrame(std::make_unique<TTestPage>(QStringLiteral("One"), [this] { Applied.append("One"); }));
    const TModalAnswer<TLayerPropertiesDialog> answer([&owner](auto&) { owner.reset(); });
    EXPECT_EQ(dialog.Execute(), static_cast<int>(QDialog::Rejected));
    EXPECT_FALSE(dialog.Get());
    EXPECT_TRUE(Applied.isEmpty());
}

TEST_F(LayerPropertiesDialog, MakesRoomForLongNames) {
    const QString name = QStringLiteral("The name of a page that a host has brought");
    Add(name);
    tests::ShowActive(*Dialog);
    EXPECT_GT(PagesOf(*Dialog).viewport()->width(), PagesOf(*Dialog).fontMetrics().horizontalAdvance(name));
}

TEST_F(LayerPropertiesDialog, GrowsWithItsPageAndStaysOnTheScreen) {
    TTestPage& page = Add("Wide");
    tests::ShowActive(*Dialog);
    const QRect room = Dialog->screen()->availableGeometry();
    Dialog->resize(400, 400);
    Dialog->move(room.topRight() - QPoint(Dialog->frameGeometry().width(), 0));
    const int before = Dialog->width();
    page.GetFrame()->setMinimumWidth(room.width() * 2 / 3);
    EXPECT_TRUE(QTest::qWaitFor([&] { return Dialog->width() > before; })); // posted events, one inside the other
    EXPECT_GE(Find<QWidget>(*Dialog, "pnHost").parentWidget()->width(), page.GetFrame()->width()) << "nothing is cut";
    EXPECT_TRUE(room.contains(Dialog->frameGeometry()));
}

TEST_F(LayerPropertiesDialog, ScrollsAPageThatIsTooLargeForTheScreen) {
    TTestPage& page = Add("Huge");
    auto* column = new QVBoxLayout(page.GetFrame());
    std::vector<QLineEdit*> edits;
    for (int i = 0; i < 60; ++i)
        column->addWidget(edits.emplace_back(new QLineEdit));
    tests::ShowActive(*Dialog);
    const QRect room = Dialog->screen()->availableGeometry();
    EXPECT_TRUE(room.contains(Dialog->frameGeometry()));
    const QWidget& host = Find<QWidget>(*Dialog, "pnHost");
    EXPECT_GT(host.height(), host.parentWidget()->height());
    EXPECT_EQ(page.GetFrame()->height(), host.height());
    EXPECT_TRUE(edits.back()->visibleRegion().isEmpty());
    edits[58]->setFocus();
    QTest::keyClick(edits[58], Qt::Key_Tab);
    EXPECT_TRUE(edits[59]->hasFocus());
    EXPECT_EQ(edits[59]->visibleRegion().boundingRect(), edits[59]->rect()) << "the keyboard brings it into sight";
}

TEST_F(LayerPropertiesDialog, HasThePagesOfALayer) {
    const auto manager = TLayerManagerFactory::GetObject();
    tests::TTestLayer layer(manager);
    layer.InitPropertiesDialog(Dialog.get());
    EXPECT_EQ(tests::PageNamesOf(*Dialog), (QStringList{"Extent", "Layer attributes"}));
    EXPECT_EQ(MessageOf<EExArgumentNilException>([&] { layer.InitPropertiesDialog(nullptr); }),
              "TBaseMapLayer.InitPropertiesDialog: argument Dialog is nil");
}

TEST_F(LayerPropertiesDialog, IsReadAndOperatedOnEachPage) {
    for (const int page : {0, 1, 2})
        tests::CheckForm([page] {
            const auto manager = TLayerManagerFactory::GetObject();
            tests::TTestLayer layer(manager);
            layer.SetLayerArea(tests::LatLonArea({-180, 90, 180, -90}));
            layer.GetAttributes()["Source"] = {TAttributeDataType::adtString, QStringLiteral("gauge")};
            auto dialog = std::make_unique<TLayerPropertiesDialog>();
            layer.InitPropertiesDialog(dialog.get());
            dialog->AddOptionFrame(std::make_unique<TTestPage>(QStringLiteral("Host")));
            PagesOf(*dialog).SelectRow(page);
            return dialog;
        });
}

} // namespace
} // namespace lmx
