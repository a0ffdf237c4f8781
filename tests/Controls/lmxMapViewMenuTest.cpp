#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <lmx/Runtime/lmxText.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/ShownView.h>

#include <QAction>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using tests::TShownView;

TEST(MapViewMenu, BeginsWithTwoEntries) {
    const TMapViewControl view(nullptr, {});
    const QList<QAction*> entries = view.GetPopupMenu()->actions();
    ASSERT_EQ(entries.size(), 2);
    EXPECT_EQ(entries[0]->text(), QStringLiteral("Change &background color..."));
    EXPECT_EQ(entries[1]->text(), QStringLiteral("Toggle Checkerboard"));
}

TEST(MapViewMenu, AHostMayAddEntries) {
    TMapViewControl view(nullptr, {});
    int clicks = 0;
    QAction* entry = view.AddPopupMenuItem(QStringLiteral("Copy data"), [&clicks] { ++clicks; });
    EXPECT_EQ(view.GetPopupMenu()->actions().last(), entry);
    EXPECT_EQ(entry->text(), QStringLiteral("Copy data"));
    entry->trigger();
    EXPECT_EQ(clicks, 1);
    view.AddPopupMenuItem(QStringLiteral("Nothing"), {})->trigger();
    EXPECT_EQ(clicks, 1);
}

TEST(MapViewMenu, ADashIsASeparator) {
    TMapViewControl view(nullptr, {});
    const QAction* line = view.AddPopupMenuItem(QStringLiteral("-"), {});
    EXPECT_TRUE(line->isSeparator());
    EXPECT_TRUE(line->text().isEmpty()); // nothing to write beside it
    EXPECT_FALSE(view.AddPopupMenuItem(QStringLiteral("a - b"), {})->isSeparator());
}

TEST(MapViewMenu, AFailureOfAnEntryIsShownAndGoesNoFurther) {
    tests::TScriptedMsgBox boxes;
    TMapViewControl view(nullptr, {});
    view.AddPopupMenuItem(QStringLiteral("Fail"), [] { throw EInvalidOperation(QStringLiteral("Nothing to copy")); })
        ->trigger();
    TShownView::Settle();
    ASSERT_EQ(boxes->Shown.size(), 1U);
    EXPECT_EQ(boxes->Shown[0].Text, QStringLiteral("Nothing to copy"));
}

TEST(MapViewMenu, WhatIsChosenMayEndTheView) {
    auto view = std::make_unique<TMapViewControl>(nullptr, TSpecialLayerAccess());
    QMenu* const menu = view->GetPopupMenu();
    view->AddPopupMenuItem(QStringLiteral("Close"), [&view] { view.reset(); });
    view->show();
    menu->popup({10, 10});
    QTest::keyClick(menu, Qt::Key_Up); // to the last one
    QTest::keyClick(menu, Qt::Key_Return);
    EXPECT_EQ(view, nullptr);
    TShownView::Settle();
}

TEST(MapViewMenu, OpensWithTheReleaseOfTheRightButton) {
    TShownView shown;
    QTest::mousePress(&shown.View, Qt::RightButton, {}, {20, 20});
    EXPECT_FALSE(shown.View.GetPopupMenu()->isVisible());
    QTest::mouseRelease(&shown.View, Qt::RightButton, {}, {20, 20});
    EXPECT_TRUE(shown.View.GetPopupMenu()->isVisible());
    shown.View.GetPopupMenu()->close();
}

TEST(MapViewMenu, OpensAtTheMenuKey) {
    TShownView shown;
    QTest::keyClick(&shown.View, Qt::Key_Menu);
    EXPECT_TRUE(shown.View.GetPopupMenu()->isVisible());
    shown.View.GetPopupMenu()->close();
}

TEST(MapViewMenu, OpensAtShiftAndF10) {
    TShownView shown;
    QTest::keyClick(&shown.View, Qt::Key_F10);
    QTest::keyClick(&shown.View, Qt::Key_F10, Qt::ControlModifier);
    EXPECT_FALSE(shown.View.GetPopupMenu()->isVisible());
    QTest::keyClick(&shown.View, Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_TRUE(shown.View.GetPopupMenu()->isVisible());
    shown.View.GetPopupMenu()->close();
}

TEST(MapViewMenu, TogglesTheCheckerboard) {
    TMapViewControl view(nullptr, {});
    view.GetPopupMenu()->actions().at(1)->trigger();
    EXPECT_TRUE(view.GetShowCheckerboard());
    view.GetPopupMenu()->actions().at(1)->trigger();
    EXPECT_FALSE(view.GetShowCheckerboard());
}

TEST(MapViewMenu, AChosenColorBecomesTheBackgroundAndIsOpaque) {
    tests::TScriptedColorChooser choosers;
    choosers->Answers = {Color32(0x10, 0x20, 0x30, 0x40)};
    TMapViewControl view(nullptr, {});
    view.SetBackgroundColor(0x80ABCDEF);
    view.GetPopupMenu()->actions().at(0)->trigger();
    EXPECT_EQ(choosers->Shown, std::vector<TColor32>{0xFFABCDEFU});
    EXPECT_EQ(view.GetBackgroundColor(), 0xFF102030U);
}

TEST(MapViewMenu, ACancelledChoiceLeavesTheBackground) {
    tests::TScriptedColorChooser choosers;
    choosers->Answers = {std::nullopt};
    TMapViewControl view(nullptr, {});
    view.SetBackgroundColor(0x80ABCDEF);
    view.PopupMenu_ChangeBackgroundColor_Click();
    EXPECT_EQ(view.GetBackgroundColor(), 0x80ABCDEFU);
}

TEST(MapViewMenu, CopiesItsStateAsText) {
    const TFormatSettingsScope point({u'.'});
    tests::TScriptedClipboard clipboard;
    TShownView shown;
    shown.AddReadyLayer();
    TWorldViewport& viewport = *shown.View.GetViewport();
    viewport.SetTranslation({0, 0});
    viewport.SetScale(2);
    viewport.SetTranslation({10, -20});
    shown.View.PopupMenu_DbgCopyData();
    // Pixel (100, 50) is (100 - 10) / 2 - 180 = -135 and 90 - (50 + 20) / 2 = 55.
    const QStringList lines = SplitLines(clipboard->Text);
    EXPECT_EQ(lines, (QStringList{
                         QStringLiteral("Scale:\t2.00"),
                         QStringLiteral("Translation:\t10, -20"),
                         QStringLiteral("View size:\t200, 100"),
                         QStringLiteral("Center:\t-135.000, 55.000"),
                         QStringLiteral("Visible area:\t-185.000000,80.000000,-85.500000,30.500000"),
                         QString(),
                         QStringLiteral("WorldSystem:\tLat/lon"),
                         QStringLiteral("Area:\t-180.000000,90.000000,180.000000,-90.000000"),
                         QStringLiteral("Width:\t360.00"),
                         QStringLiteral("Height\t180.00"),
                     }));
}

TEST(MapViewMenu, AsksForATranslation) {
    tests::TScriptedInputBox boxes;
    TShownView shown;
    shown.AddReadyLayer();
    shown.View.GetViewport()->SetTranslation({3, -4});
    boxes->Answers = {QStringLiteral("12, -7")};
    shown.View.PopupMenu_DbgTranslation();
    EXPECT_EQ(boxes->Asked,
              (std::vector<tests::TAskedInput>{
                  {QStringLiteral("Translation"), QStringLiteral("Translation:"), QStringLiteral("3,-4")}}));
    EXPECT_EQ(shown.View.GetViewport()->GetTranslation(), TPoint(12, -7));
}

class BadTranslation : public testing::TestWithParam<const char*> {};

TEST_P(BadTranslation, IsRefusedAndChangesNothing) {
    tests::TScriptedInputBox boxes;
    TShownView shown;
    shown.AddReadyLayer();
    shown.View.GetViewport()->SetTranslation({3, -4});
    boxes->Answers = {QString::fromLatin1(GetParam())};
    EXPECT_THROW(shown.View.PopupMenu_DbgTranslation(), EConvertError);
    EXPECT_EQ(shown.View.GetViewport()->GetTranslation(), TPoint(3, -4));
}

INSTANTIATE_TEST_SUITE_P(Rows, BadTranslation, testing::Values("", "5", "a,b", "1 ,2", "1.5,2"));

TEST(MapViewMenu, AsksForAScale) {
    const TFormatSettingsScope point({u'.'});
    tests::TScriptedInputBox boxes;
    TShownView shown;
    shown.AddReadyLayer();
    boxes->Answers = {QStringLiteral("2.5")};
    shown.View.PopupMenu_DbgZoomScale();
    EXPECT_EQ(boxes->Asked, (std::vector<tests::TAskedInput>{
                                {QStringLiteral("Zoom Scale"), QStringLiteral("Zoom scale:"), QStringLiteral("1")}}));
    EXPECT_EQ(shown.View.GetViewport()->GetScale(), 2.5L);
}

TEST(MapViewMenu, ACancelledBoxChangesNothing) {
    tests::TScriptedInputBox boxes;
    boxes->Answers = {std::nullopt, std::nullopt};
    TShownView shown;
    shown.AddReadyLayer();
    shown.View.GetViewport()->SetScale(1.0L / 3);
    shown.View.PopupMenu_DbgZoomScale();
    EXPECT_EQ(shown.View.GetViewport()->GetScale(), 1.0L / 3);
    shown.View.PopupMenu_DbgTranslation();
    EXPECT_EQ(shown.View.GetViewport()->GetScale(), 1.0L / 3);
}

TEST(MapViewMenu, ABadScaleIsRefused) {
    tests::TScriptedInputBox boxes;
    TShownView shown;
    shown.AddReadyLayer();
    boxes->Answers = {QStringLiteral("wide")};
    EXPECT_EQ(tests::MessageOf<EConvertError>([&] { shown.View.PopupMenu_DbgZoomScale(); }),
              QStringLiteral("'wide' is not a valid floating point value"));
    EXPECT_EQ(shown.View.GetViewport()->GetScale(), 1);
}

TEST(MapViewMenu, TheDebugHandlersNeedAWorld) {
    TMapViewControl view(nullptr, {});
    const QString message = QStringLiteral("World not created");
    EXPECT_EQ(tests::MessageOf<EInvalidOperation>([&] { view.PopupMenu_DbgCopyData(); }), message);
    EXPECT_EQ(tests::MessageOf<EInvalidOperation>([&] { view.PopupMenu_DbgTranslation(); }), message);
    EXPECT_EQ(tests::MessageOf<EInvalidOperation>([&] { view.PopupMenu_DbgZoomScale(); }), message);
}

} // namespace
} // namespace lmx
