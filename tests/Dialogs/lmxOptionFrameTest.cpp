#include <lmx/Dialogs/lmxLayerPropertiesAttributesFrame.h>
#include <lmx/Dialogs/lmxLayerPropertiesDialog.h>
#include <lmx/Dialogs/lmxLayerPropertiesImageHeaderFrame.h>
#include <lmx/Dialogs/lmxOptionFrame.h>
#include <lmx/Formats/Idrisi/lmxImageHeader.h>
#include <tests/Dialogs/PropertiesDialogFixture.h>

#include <QPointer>

#include <memory>

namespace lmx {
namespace {

using tests::Find;

class TLatePage final : public TLateOptionFrame {
public:
    TLatePage(const QString& name, int& made) : TLateOptionFrame(name), FMade(made) {}

protected:
    std::unique_ptr<QWidget> MakeFrame() const override {
        ++FMade;
        return std::make_unique<QWidget>();
    }

private:
    int& FMade;
};

TEST(LateOptionFrame, MakesItsFrameOnceWhenItIsAskedFor) {
    int made = 0;
    QPointer<QWidget> frame;
    {
        const TLatePage page(QStringLiteral("Late"), made);
        EXPECT_EQ(made, 0);
        frame = page.GetFrame();
        EXPECT_TRUE(frame);
        EXPECT_EQ(page.GetFrame(), frame);
        EXPECT_EQ(made, 1);
    }
    EXPECT_FALSE(frame) << "it goes with the page";
}

TEST(LateOptionFrame, DoesNotMakeAgainWhatWasFreed) {
    int made = 0;
    const TLatePage page(QStringLiteral("Late"), made);
    delete page.GetFrame();
    EXPECT_EQ(page.GetFrame(), nullptr);
    EXPECT_EQ(made, 1);
}

TEST(LateOptionFrame, IsMadeByTheDialogWhenItIsSelected) {
    int one = 0;
    int two = 0;
    TLayerPropertiesDialog dialog;
    dialog.AddOptionFrame(std::make_unique<TLatePage>(QStringLiteral("One"), one));
    dialog.AddOptionFrame(std::make_unique<TLatePage>(QStringLiteral("Two"), two));
    tests::ShowActive(dialog);
    EXPECT_EQ(one, 1) << "the first page is the one that a dialog comes up with";
    EXPECT_EQ(two, 0);
    EXPECT_TRUE(dialog.SelectPage(QStringLiteral("Two")));
    EXPECT_EQ(two, 1);
    EXPECT_TRUE(dialog.SelectPage(QStringLiteral("One")));
    EXPECT_TRUE(dialog.SelectPage(QStringLiteral("Two")));
    EXPECT_EQ(one + two, 2);
    EXPECT_TRUE(dialog.ApplyChanges());
}

TEST(LateOptionFrame, OfAttributesAppliesThoseThatThereWereUntilItIsSeen) {
    TAttributes attributes;
    attributes[QStringLiteral("Source")] = {TAttributeDataType::adtString, QStringLiteral("gauge")};
    TLayerPropertiesAttributesOptionFrame page(&attributes);
    attributes.clear();
    page.Apply();
    ASSERT_EQ(attributes.size(), 1U);
    EXPECT_EQ(attributes[QStringLiteral("Source")].Value, "gauge");

    attributes.clear();
    auto& frame = dynamic_cast<TLayerPropertiesAttributesFrame&>(*page.GetFrame());
    EXPECT_EQ(frame.GetWorking().size(), 1U) << "as there were when the page was made";
    frame.SetWorking({});
    attributes[QStringLiteral("Other")] = {TAttributeDataType::adtString, QStringLiteral("x")};
    page.Apply();
    EXPECT_TRUE(attributes.empty());
}

TEST(LateOptionFrame, OfAttributesAppliesNothingOnceItsFrameIsGone) {
    TAttributes attributes;
    TLayerPropertiesAttributesOptionFrame page(&attributes);
    delete page.GetFrame();
    attributes[QStringLiteral("Source")] = {TAttributeDataType::adtString, QStringLiteral("gauge")};
    page.Apply();
    EXPECT_EQ(attributes.size(), 1U);
}

TEST(LateOptionFrame, OfAnImageHeaderShowsTheHeaderThatThereWas) {
    TImageHeader header;
    header.SetWidth(7);
    const TLayerPropertiesImageHeaderOptionFrame page(header);
    header.SetWidth(8);
    const auto texts = tests::TextsOf(Find<TDrawnListView>(*page.GetFrame(), "lvValueList"));
    EXPECT_TRUE(texts.contains(QStringLiteral("Width|7")));
}

/// Counts what asks a widget for a new layout once its window has been painted.
class TLayoutsAfterPaint final : public QObject {
public:
    explicit TLayoutsAfterPaint(QWidget& widget) : FWidget(widget) {
        widget.installEventFilter(this);
        widget.window()->installEventFilter(this);
    }
    int GetCount() const { return FCount; }
    bool IsPainted() const { return FIsPainted; }

private:
    bool eventFilter(QObject* watched, QEvent* event) override {
        FIsPainted |= event->type() == QEvent::Paint;
        FCount += watched == &FWidget && event->type() == QEvent::LayoutRequest && FIsPainted ? 1 : 0;
        return false;
    }

    QWidget& FWidget;
    bool FIsPainted = false;
    int FCount = 0;
};

TEST(PropertiesDialog, LaysItsButtonsOutBeforeItsFirstPaintAlone) {
    TLayerPropertiesDialog dialog;
    const TLayoutsAfterPaint layouts(Find<QWidget>(dialog, "pnMainActions"));
    dialog.show();
    for (int i = 0; i < 6; ++i)
        QCoreApplication::processEvents();
    EXPECT_TRUE(layouts.IsPainted());
    EXPECT_EQ(layouts.GetCount(), 0);
}

} // namespace
} // namespace lmx
