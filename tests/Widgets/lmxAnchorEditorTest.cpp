#include <lmx/Widgets/lmxAnchorEditor.h>
#include <tests/Support/DialogChecks.h>
#include <tests/Support/Printers.h>
#include <tests/Support/WidgetPictures.h>

#include <QAccessible>

#include <memory>

namespace lmx {
namespace {

using enum TAnchorKind;

struct AnchorEditor : testing::Test {
    AnchorEditor() {
        Editor->SetOnChanged([this](TAnchorEditor* sender) {
            EXPECT_EQ(sender, Editor.get());
            Told.append(AnchorsToString(sender->GetAnchors()));
        });
        Editor->resize(Editor->sizeHint());
        tests::ShowActive(*Editor);
    }
    void ClickAt(QPoint place) {
        QWidget* target = Editor->childAt(place);
        ASSERT_NE(target, nullptr);
        QTest::mouseClick(target, Qt::LeftButton, {}, target->mapFromParent(place));
    }
    void Press(Qt::Key key) { QTest::keyClick(Editor->window()->focusWidget(), key); }

    std::unique_ptr<TAnchorEditor> Editor = std::make_unique<TAnchorEditor>();
    QStringList Told;
};

TEST_F(AnchorEditor, BeginsAtTheLeftAndTheTop) {
    EXPECT_EQ(Editor->GetAnchors(), (TAnchors{akLeft, akTop}));
    EXPECT_EQ(Editor->sizeHint(), QSize(100, 100));
}

TEST_F(AnchorEditor, TakesAnchorsFromCodeWithoutAWord) {
    for (std::uint32_t bits = 0; bits < 16; ++bits) {
        Editor->SetAnchors(TAnchors::FromBits(bits));
        EXPECT_EQ(Editor->GetAnchors().Bits(), bits);
    }
    EXPECT_TRUE(Told.isEmpty());
}

TEST_F(AnchorEditor, TurnsAnEdgeOverAtAClickNearIt) {
    ClickAt({10, 50});
    EXPECT_EQ(Editor->GetAnchors(), TAnchors{akTop});
    ClickAt({90, 50});
    EXPECT_EQ(Editor->GetAnchors(), (TAnchors{akTop, akRight}));
    ClickAt({50, 5});
    EXPECT_EQ(Editor->GetAnchors(), TAnchors{akRight});
    ClickAt({50, 95});
    EXPECT_EQ(Editor->GetAnchors(), (TAnchors{akRight, akBottom}));
    EXPECT_EQ(Told, (QStringList{"akTop", "akTop,akRight", "akRight", "akRight,akBottom"}));
    EXPECT_EQ(Editor->childAt(50, 50), nullptr) << "the thing itself is no button";
    EXPECT_EQ(Editor->childAt(5, 5), nullptr);
}

TEST_F(AnchorEditor, IsOperatedByTheKeyboardAlone) {
    Editor->setFocus();
    EXPECT_TRUE(Editor->GetEdge(akLeft)->hasFocus());
    const std::pair<Qt::Key, TAnchorKind> edges[] = {
        {Qt::Key_Down, akBottom}, {Qt::Key_Right, akRight}, {Qt::Key_Up, akTop}, {Qt::Key_Left, akLeft}};
    for (const auto& [key, edge] : edges) {
        Press(key);
        EXPECT_TRUE(Editor->GetEdge(edge)->hasFocus());
        const bool before = Editor->GetAnchors().Contains(edge);
        Press(Qt::Key_Space);
        EXPECT_EQ(Editor->GetAnchors().Contains(edge), !before);
    }
    EXPECT_EQ(Editor->GetAnchors(), (TAnchors{akRight, akBottom}));
    EXPECT_EQ(Told.size(), 4);
}

TEST_F(AnchorEditor, LeadsTheTabKeyThroughItsEdges) {
    Editor->setFocus();
    for (const TAnchorKind edge : {akTop, akRight, akBottom}) {
        Press(Qt::Key_Tab);
        EXPECT_TRUE(Editor->GetEdge(edge)->hasFocus());
    }
}

TEST_F(AnchorEditor, TellsScreenReadersOfItsEdges) {
    EXPECT_EQ(Editor->accessibleName(), "Anchors");
    const std::pair<TAnchorKind, QString> names[] = {
        {akLeft, "Left edge"}, {akTop, "Top edge"}, {akRight, "Right edge"}, {akBottom, "Bottom edge"}};
    for (const auto& [edge, name] : names) {
        QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(Editor->GetEdge(edge));
        ASSERT_NE(accessible, nullptr);
        EXPECT_EQ(accessible->text(QAccessible::Name), name);
        EXPECT_EQ(accessible->role(), QAccessible::CheckBox);
        EXPECT_EQ(accessible->state().checked, edge == akLeft || edge == akTop);
        EXPECT_EQ(Editor->GetEdge(edge)->toolTip(), name);
    }
}

TEST_F(AnchorEditor, MayBeDestroyedByWhomItTells) {
    Editor->SetOnChanged([this](TAnchorEditor*) { Editor.reset(); });
    Editor->GetEdge(akRight)->click();
    EXPECT_EQ(Editor, nullptr);
}

// What is tied shows in the picture, at any size and in any colours, and not by the colour alone.
TEST_F(AnchorEditor, ShowsWhatIsTied) {
    const auto inked = [this](const QRect& room, const QColor& ground) {
        const QImage picture = tests::PictureOf(*Editor);
        int pixels = 0;
        for (int y = room.top(); y <= room.bottom(); ++y)
            for (int x = room.left(); x <= room.right(); ++x)
                pixels += picture.pixel(tests::DevicePixel(*Editor, {x, y})) != ground.rgb();
        return pixels;
    };
    QPalette dark;
    dark.setColor(QPalette::Base, QColor(30, 30, 30));
    dark.setColor(QPalette::Text, QColor(230, 230, 230));
    Editor->setFocusProxy(nullptr);
    Editor->setFocusPolicy(Qt::StrongFocus);
    Editor->setFocus(); // so that no edge has the mark of the keyboard
    for (const QPalette& palette : {QPalette(), dark}) {
        Editor->setPalette(palette);
        for (const QSize size : {QSize(40, 40), QSize(100, 100), QSize(300, 120)}) {
            Editor->resize(size);
            const QColor ground = palette.color(QPalette::Base);
            for (const TAnchorKind edge : {akLeft, akTop, akRight, akBottom}) {
                Editor->SetAnchors({});
                const QRect room = Editor->GetEdge(edge)->geometry();
                const int untied = inked(room, ground);
                Editor->SetAnchors({edge});
                const int tied = inked(room, ground);
                EXPECT_GT(untied, 0);
                EXPECT_GT(tied, 4 * untied) << size.width() << " edge " << static_cast<int>(edge);
            }
        }
    }
}

TEST_F(AnchorEditor, IsReadAndOperatedAtEveryFontSize) {
    tests::CheckForm([] {
        auto form = std::make_unique<QWidget>();
        auto* editor = new TAnchorEditor(form.get());
        editor->resize(100, 100);
        form->resize(100, 100);
        return form;
    });
}

} // namespace
} // namespace lmx
