#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Widgets/lmxListPanel.h>
#include <lmx/Widgets/lmxPngButton.h>
#include <lmx/Widgets/lmxToggleButtonBar.h>
#include <tests/Support/DialogChecks.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/WidgetPictures.h>

#include <QCheckBox>
#include <QMouseEvent>
#include <QPushButton>
#include <QVBoxLayout>

namespace lmx {
namespace {

const QString Delete = QStringLiteral("MapWindowFactory.DeleteLayer");
const QString Edit = QStringLiteral("MapWindowFactory.Edit");

class TNumberedRows final : public IListRows {
public:
    int GetCount() const override { return 3; }
    QString GetText(int row, int) const override { return QStringLiteral("row %1").arg(row); }
};

TDrawnListView* NewList() {
    auto* list = new TDrawnListView;
    list->SetColumns({{"Name", 100}});
    list->SetRows(std::make_shared<TNumberedRows>());
    return list;
}

struct ListPanel : testing::Test {
    ListPanel() {
        const auto isOne = [this] { return Panel->GetList()->GetSelectedRow() >= 0; };
        DelButton = Panel->AddCommand({Delete, "Delete thing", {Qt::Key_Delete}, [this] { ++Deletions; }, isOne});
        EditButton = Panel->AddCommand({Edit, "Edit thing", {Qt::Key_F2}, [this] { Change(); }, nullptr});
        Panel->SetDoubleClickButton(EditButton);
        tests::ShowActive(*Panel);
    }
    void Change() {
        ++Edits;
        if (EditRaises)
            throw Exception(QStringLiteral("not this one"));
    }

    tests::TScriptedMsgBox Messages;
    std::unique_ptr<TListPanel> Panel = std::make_unique<TListPanel>(NewList(), QStringLiteral("Things"));
    TPngButton* DelButton = nullptr;
    TPngButton* EditButton = nullptr;
    int Deletions = 0;
    int Edits = 0;
    bool EditRaises = false;
};

TEST_F(ListPanel, StandsItsButtonsAboveItsList) {
    EXPECT_EQ(Panel->GetButtonBar()->geometry(), QRect(0, 0, Panel->width(), 28));
    EXPECT_EQ(Panel->GetList()->geometry(), QRect(0, 28, Panel->width(), Panel->height() - 28));
    EXPECT_LT(DelButton->x(), EditButton->x());
    EXPECT_EQ(DelButton->toolTip(), "Delete thing");
    EXPECT_EQ(DelButton->GetImageName(), Delete);
    EXPECT_EQ(Panel->GetList()->accessibleName(), "Things");
}

TEST_F(ListPanel, EnablesItsButtonsByTheSelection) {
    EXPECT_FALSE(DelButton->isEnabled());
    EXPECT_TRUE(EditButton->isEnabled()) << "always";
    Panel->GetList()->SelectRow(1);
    EXPECT_TRUE(DelButton->isEnabled());
    Panel->GetList()->clearSelection();
    EXPECT_FALSE(DelButton->isEnabled());
}

TEST_F(ListPanel, IsOperatedByKeysAndDoubleClicks) {
    TDrawnListView& list = *Panel->GetList();
    QTest::keyClick(&list, Qt::Key_Delete);
    EXPECT_EQ(Deletions, 0);
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.RowRect(2).center());
    QTest::keyClick(&list, Qt::Key_Delete);
    QTest::keyClick(&list, Qt::Key_F2);
    EXPECT_EQ(Deletions, 1);
    EXPECT_EQ(Edits, 1);
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, list.RowRect(2).center());
    EXPECT_EQ(Edits, 2);
    EditButton->setEnabled(false);
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, list.RowRect(2).center());
    EXPECT_EQ(Edits, 2);
}

TEST_F(ListPanel, ShowsWhatACommandRaises) {
    EditRaises = true;
    QTest::mouseClick(EditButton, Qt::LeftButton);
    QCoreApplication::processEvents();
    ASSERT_EQ(Messages->Shown.size(), 1U);
    EXPECT_EQ(Messages->Shown[0].Text, "not this one");
}

TEST_F(ListPanel, HasRoomBesideItsList) {
    auto* side = new QCheckBox(QStringLiteral("More"));
    Panel->AddSide(side);
    QCoreApplication::processEvents();
    EXPECT_GT(side->x(), Panel->GetList()->geometry().right());
    EXPECT_EQ(Panel->GetButtonBar()->width(), Panel->width());
}

TEST_F(ListPanel, RefusesAnUnknownImage) {
    EXPECT_EQ(tests::MessageOf<EArgumentException>([this] {
                  Panel->AddCommand({"Nothing", "x", {}, [] {}, nullptr});
              }),
              "There is no image \"Nothing\"");
}

TEST_F(ListPanel, MayBeDestroyedByADoubleClick) {
    const auto destroy = [this] { Panel.reset(); };
    TDrawnListView& list = *Panel->GetList();
    Panel->SetDoubleClickButton(Panel->AddCommand({Edit, "End", {}, destroy, nullptr}));
    list.SelectRow(1);
    const QPoint place = list.RowRect(1).center();
    QMouseEvent second(QEvent::MouseButtonDblClick, place, list.viewport()->mapToGlobal(place), Qt::LeftButton,
                       Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(list.viewport(), &second);
    EXPECT_EQ(Panel, nullptr);
}

TEST(ListPanelForm, IsReadAndOperatedAtEveryFontSize) {
    tests::CheckForm([] {
        auto panel = std::make_unique<TListPanel>(NewList(), QStringLiteral("Things"));
        for (const QString& name : {Delete, Edit})
            panel->AddCommand({name, name, {}, [] {}, nullptr});
        panel->AddSide(new QCheckBox(QStringLiteral("&More")));
        return panel;
    });
}

// The list is there before its buttons, and other controls stand above and below the panel.
TEST(ListPanelForm, LeadsTheTabKeyThroughADialog) {
    QWidget form;
    auto* column = new QVBoxLayout(&form);
    auto* panel = new TListPanel(NewList(), QStringLiteral("Things"), &form);
    auto* add = panel->AddCommand({Edit, "Add", {}, [] {}, nullptr});
    auto* edit = panel->AddCommand({Edit, "Edit", {}, [] {}, nullptr});
    auto* ok = new QPushButton(QStringLiteral("OK"), &form);
    column->addWidget(panel);
    column->addWidget(ok);
    tests::ShowActive(form);
    add->setFocus();
    for (QWidget* next : {static_cast<QWidget*>(edit), static_cast<QWidget*>(panel->GetList()),
                          static_cast<QWidget*>(ok), static_cast<QWidget*>(add)}) {
        QTest::keyClick(form.focusWidget(), Qt::Key_Tab);
        EXPECT_TRUE(next->hasFocus()) << next->accessibleName().toStdString();
    }
    EXPECT_EQ(tests::FaultsOf(form), QStringList());
}

} // namespace
} // namespace lmx
