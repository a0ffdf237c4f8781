#include <lmx/Widgets/lmxPngButton.h>
#include <lmx/Widgets/lmxToggleButtonBar.h>
#include <tests/Support/WidgetPictures.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

TPngButton* AddButton(TToggleButtonBar& bar) {
    auto* button = new TPngButton(nullptr, QStringLiteral("MapWindowFactory.Edit"), {});
    bar.AddButton(button);
    return button;
}

TEST(ToggleButtonBar, StandsItsButtonsSideBySide) {
    TToggleButtonBar bar;
    const TPngButton* first = AddButton(bar);
    const TPngButton* second = AddButton(bar);
    EXPECT_EQ(first->parentWidget(), &bar);
    bar.resize(200, bar.sizeHint().height());
    tests::ShowActive(bar);
    EXPECT_EQ(first->geometry(), QRect(2, 2, 24, 24));
    EXPECT_EQ(second->geometry(), QRect(28, 2, 24, 24));
    EXPECT_EQ(bar.sizeHint().height(), 28);
}

TEST(ToggleButtonBar, LeadsTheTabKeyFromLeftToRight) {
    TToggleButtonBar bar;
    TPngButton* first = AddButton(bar);
    TPngButton* second = AddButton(bar);
    tests::ShowActive(bar);
    first->setFocus();
    QTest::keyClick(first, Qt::Key_Tab);
    EXPECT_TRUE(second->hasFocus());
    QTest::keyClick(second, Qt::Key_Left);
    EXPECT_TRUE(first->hasFocus());
}

} // namespace
} // namespace lmx
