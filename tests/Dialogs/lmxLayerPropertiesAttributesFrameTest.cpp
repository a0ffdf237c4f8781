#include <lmx/Dialogs/lmxLayerAttributeDialog.h>
#include <lmx/Dialogs/lmxLayerPropertiesAttributesFrame.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Dialogs/PropertiesDialogFixture.h>
#include <tests/Support/ModalAnswer.h>
#include <tests/Support/TestLayer.h>

#include <QComboBox>
#include <QLineEdit>

#include <optional>

namespace lmx {
namespace {

using tests::Click;
using tests::Find;
using tests::TModalAnswer;
using tests::TShownMessage;

const TShownMessage NameIsTaken{"Info", "Please specify an attribute name that does not already exist.", "Attribute",
                                nullptr};

struct LayerPropertiesAttributesFrame : testing::Test {
    using TAnswer = TModalAnswer<TLayerAttributeDialog>;

    LayerPropertiesAttributesFrame() {
        Frame.SetWorking({{"Depth", {TAttributeDataType::adtInteger, "7"}},
                          {"Bias", {TAttributeDataType::adtFloat, "0"}},
                          {"Source", {TAttributeDataType::adtString, "gauge"}}});
        tests::ShowActive(Frame);
    }

    static QString NameIn(const TLayerAttributeDialog& dialog) { return Find<QLineEdit>(dialog, "edName").text(); }
    static QString ValueIn(const TLayerAttributeDialog& dialog) { return Find<QLineEdit>(dialog, "edVal").text(); }
    /// Types over the name, and confirms.
    static void TypeName(TLayerAttributeDialog& dialog, const QString& name) {
        EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
        QTest::keyClicks(dialog.focusWidget(), name);
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
    }
    void ExpectNameIsTaken() {
        ASSERT_EQ(Messages->Shown.size(), 1U);
        EXPECT_EQ(Messages->Shown[0].Parent, &Frame);
        Messages->Shown[0].Parent = nullptr;
        EXPECT_EQ(Messages->Shown[0], NameIsTaken);
    }

    tests::TScriptedMsgBox Messages;
    TLayerPropertiesAttributesFrame Frame;
    TDrawnListView& List = Find<TDrawnListView>(Frame, "lvAttrListView");
};

TEST_F(LayerPropertiesAttributesFrame, ListsAttributesInTheOrderOfTheDictionary) {
    EXPECT_EQ(tests::TitlesOf(List), (QStringList{"Property", "Type", "Value"}));
    EXPECT_EQ(List.columnWidth(0), 150);
    EXPECT_EQ(List.columnWidth(1), 100);
    Frame.resize(600, 300);
    EXPECT_EQ(List.columnWidth(2), List.viewport()->width() - 250) << "what the others leave";
    EXPECT_EQ(tests::TextsOf(List), (QStringList{"Bias|Float|0", "Depth|Integer|7", "Source|String|gauge"}));
}

TEST_F(LayerPropertiesAttributesFrame, AddsAnAttribute) {
    {
        const TAnswer answer([](auto& dialog) {
            EXPECT_EQ(NameIn(dialog), "Name");
            EXPECT_EQ(ValueIn(dialog), "Value");
            EXPECT_EQ(Find<QComboBox>(dialog, "cbDataType").currentIndex(), 0);
            TypeName(dialog, QStringLiteral("Alpha"));
        });
        Click(Frame, "btnAdd");
    }
    EXPECT_EQ(tests::TextsOf(List),
              (QStringList{"Alpha|String|Value", "Bias|Float|0", "Depth|Integer|7", "Source|String|gauge"}));
    EXPECT_EQ(List.GetSelectedRow(), 0);
    EXPECT_TRUE(Messages->Shown.empty());
}

TEST_F(LayerPropertiesAttributesFrame, AsksAgainForANameThatIsThere) {
    std::optional<TAnswer> second;
    {
        const TAnswer first([&second](auto& dialog) {
            Find<QLineEdit>(dialog, "edVal").setText(QStringLiteral("typed"));
            TypeName(dialog, QStringLiteral("Depth"));
            second.emplace([](auto& again) {
                EXPECT_EQ(NameIn(again), "Depth");
                EXPECT_EQ(ValueIn(again), "typed");
                TypeName(again, QStringLiteral("Depth 2"));
            });
        });
        Click(Frame, "btnAdd");
    }
    ExpectNameIsTaken();
    EXPECT_EQ(Frame.GetWorking().at("Depth 2"), TAttributeData(TAttributeDataType::adtString, "typed"));
    EXPECT_EQ(Frame.GetWorking().size(), 4U);
}

TEST_F(LayerPropertiesAttributesFrame, AddsNothingWhenTheSecondQuestionIsCancelled) {
    const TAttributes before = Frame.GetWorking();
    std::optional<TAnswer> second;
    {
        const TAnswer first([&second](auto& dialog) {
            TypeName(dialog, QStringLiteral("Depth"));
            second.emplace([](auto& again) { QTest::keyClick(again.focusWidget(), Qt::Key_Escape); });
        });
        Click(Frame, "btnAdd");
    }
    ExpectNameIsTaken();
    EXPECT_EQ(Frame.GetWorking(), before);
}

TEST_F(LayerPropertiesAttributesFrame, TellsNamesApartByCase) {
    const TAnswer answer([](auto& dialog) { TypeName(dialog, QStringLiteral("depth")); });
    Click(Frame, "btnAdd");
    EXPECT_TRUE(Messages->Shown.empty());
    EXPECT_EQ(tests::TextsOf(List).last(), "depth|String|Value");
}

TEST_F(LayerPropertiesAttributesFrame, WorksOnAnEmptyNameAsOnAnyOther) {
    {
        const TAnswer answer([](auto& dialog) {
            Find<QLineEdit>(dialog, "edName").clear();
            Click(dialog, "Button1");
        });
        Click(Frame, "btnAdd");
    }
    EXPECT_EQ(tests::TextsOf(List)[0], "|String|Value");
    {
        const TAnswer answer([](auto& dialog) {
            EXPECT_EQ(NameIn(dialog), "");
            TypeName(dialog, QStringLiteral("Zeal"));
        });
        tests::DoubleClickRow(List, 0);
    }
    EXPECT_EQ(tests::TextsOf(List),
              (QStringList{"Bias|Float|0", "Depth|Integer|7", "Source|String|gauge", "Zeal|String|Value"}));
}

TEST_F(LayerPropertiesAttributesFrame, LeavesEverythingAfterACancel) {
    const TAttributes before = Frame.GetWorking();
    {
        const TAnswer answer([](auto& dialog) { dialog.reject(); });
        Click(Frame, "btnAdd");
    }
    tests::ClickRow(List, 1);
    {
        const TAnswer answer([](auto& dialog) {
            Find<QLineEdit>(dialog, "edName").setText(QStringLiteral("Other"));
            dialog.reject();
        });
        Click(Frame, "btnEdit");
    }
    EXPECT_EQ(Frame.GetWorking(), before);
    EXPECT_EQ(List.GetSelectedRow(), 1);
}

TEST_F(LayerPropertiesAttributesFrame, RenamesAnAttribute) {
    tests::ClickRow(List, 0);
    {
        const TAnswer answer([](auto& dialog) {
            EXPECT_EQ(NameIn(dialog), "Bias");
            EXPECT_EQ(ValueIn(dialog), "0");
            EXPECT_EQ(Find<QComboBox>(dialog, "cbDataType").currentText(), "Float");
            TypeName(dialog, QStringLiteral("Zeal"));
        });
        Click(Frame, "btnEdit");
    }
    EXPECT_EQ(tests::TextsOf(List), (QStringList{"Depth|Integer|7", "Source|String|gauge", "Zeal|Float|0"}));
    EXPECT_EQ(List.GetSelectedRow(), 2);
}

TEST_F(LayerPropertiesAttributesFrame, KeepsItsOwnNameWithoutAWord) {
    tests::ClickRow(List, 1);
    {
        const TAnswer answer([](auto& dialog) {
            Find<QLineEdit>(dialog, "edVal").setText(QStringLiteral("8"));
            Click(dialog, "Button1");
        });
        Click(Frame, "btnEdit");
    }
    EXPECT_TRUE(Messages->Shown.empty());
    EXPECT_EQ(tests::TextsOf(List)[1], "Depth|Integer|8");
}

TEST_F(LayerPropertiesAttributesFrame, AsksAgainWhenARenameMeetsAnotherName) {
    tests::ClickRow(List, 0);
    std::optional<TAnswer> second;
    {
        const TAnswer first([&second](auto& dialog) {
            TypeName(dialog, QStringLiteral("Source"));
            second.emplace([](auto& again) {
                EXPECT_EQ(NameIn(again), "Source");
                again.reject();
            });
        });
        Click(Frame, "btnEdit");
    }
    ExpectNameIsTaken();
    EXPECT_EQ(tests::TextsOf(List)[0], "Bias|Float|0");
}

TEST_F(LayerPropertiesAttributesFrame, GoesBackToItsOwnNameAfterAnother) {
    tests::ClickRow(List, 0);
    std::optional<TAnswer> second;
    {
        const TAnswer first([&second](auto& dialog) {
            Find<QLineEdit>(dialog, "edVal").setText(QStringLiteral("12"));
            TypeName(dialog, QStringLiteral("Source"));
            second.emplace([](auto& again) { TypeName(again, QStringLiteral("Bias")); });
        });
        Click(Frame, "btnEdit");
    }
    ExpectNameIsTaken();
    EXPECT_EQ(tests::TextsOf(List), (QStringList{"Bias|Float|12", "Depth|Integer|7", "Source|String|gauge"}));
}

TEST_F(LayerPropertiesAttributesFrame, AsksBeforeItDeletes) {
    Messages->Answers = {false, true};
    tests::ClickRow(List, 1);
    Click(Frame, "btnDelete");
    EXPECT_EQ(Messages->Shown, (std::vector<TShownMessage>{{"YesNo", "Delete attribute?", "Delete", &Frame}}));
    EXPECT_EQ(List.GetRowCount(), 3);
    QTest::keyClick(&List, Qt::Key_Delete);
    EXPECT_EQ(tests::TextsOf(List), (QStringList{"Bias|Float|0", "Source|String|gauge"}));
}

TEST_F(LayerPropertiesAttributesFrame, EditsTheRowOfADoubleClick) {
    const TAnswer answer([](auto& dialog) {
        EXPECT_EQ(NameIn(dialog), "Source");
        dialog.reject();
    });
    tests::DoubleClickRow(List, 2);
}

TEST_F(LayerPropertiesAttributesFrame, OffersWhatCanBeDone) {
    EXPECT_TRUE(Find<QPushButton>(Frame, "btnAdd").isEnabled());
    EXPECT_FALSE(Find<QPushButton>(Frame, "btnEdit").isEnabled());
    EXPECT_FALSE(Find<QPushButton>(Frame, "btnDelete").isEnabled());
    tests::ClickRow(List, 0);
    EXPECT_TRUE(Find<QPushButton>(Frame, "btnEdit").isEnabled());
    EXPECT_TRUE(Find<QPushButton>(Frame, "btnDelete").isEnabled());
}

TEST_F(LayerPropertiesAttributesFrame, MayGoWhileItAsks) {
    auto window = std::make_unique<QWidget>();
    auto* frame = new TLayerPropertiesAttributesFrame(window.get());
    window->show();
    const TAnswer answer([&window](auto&) { window.reset(); });
    Find<QPushButton>(*frame, "btnAdd").click();
    EXPECT_FALSE(window);
}

struct LayerPropertiesAttributesOptionFrame : testing::Test {
    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    std::unique_ptr<tests::TTestLayer> Layer = std::make_unique<tests::TTestLayer>(Manager);
    TLayerPropertiesDialog Dialog;
    tests::TScriptedMsgBox Messages;
};

TEST_F(LayerPropertiesAttributesOptionFrame, WantsAttributes) {
    EXPECT_EQ(tests::MessageOf<EExArgumentNilException>([] { TLayerPropertiesAttributesOptionFrame page(nullptr); }),
              "TLayerPropertiesAttributesOptionFrame.Create: argument Source is nil");
}

TEST_F(LayerPropertiesAttributesOptionFrame, ReplacesTheAttributesOfTheLayer) {
    Layer->GetAttributes() = {{"Old", {TAttributeDataType::adtString, "1"}}};
    int told = 0;
    const auto subscription = Layer->GetOnInvalidated().Add([&told](auto&&...) { ++told; });
    Layer->InitPropertiesDialog(&Dialog);
    auto& frame = dynamic_cast<TLayerPropertiesAttributesFrame&>(tests::FrameOf(Dialog, "Layer attributes"));
    frame.SetWorking({{"New", {TAttributeDataType::adtInteger, "2"}}});
    EXPECT_EQ(Layer->GetAttributes().count("Old"), 1U) << "it works on a copy";
    EXPECT_TRUE(Dialog.ApplyChanges());
    EXPECT_EQ(Layer->GetAttributes(), (TAttributes{{"New", {TAttributeDataType::adtInteger, "2"}}}));
    EXPECT_EQ(told, 0);
}

TEST_F(LayerPropertiesAttributesOptionFrame, LosesNothingByACancel) {
    const TAttributes before{{"Old", {TAttributeDataType::adtString, "1"}}};
    Layer->GetAttributes() = before;
    Layer->InitPropertiesDialog(&Dialog);
    tests::ShowActive(Dialog);
    tests::ClickRow(tests::PagesOf(Dialog), 1);
    const QWidget& frame = tests::FrameOf(Dialog, "Layer attributes");
    tests::ClickRow(Find<TDrawnListView>(frame, "lvAttrListView"), 0);
    Messages->Answers = {true};
    Click(frame, "btnDelete");
    EXPECT_EQ(Find<TDrawnListView>(frame, "lvAttrListView").GetRowCount(), 0);
    Click(Find<QWidget>(Dialog, "pnMainActions"), "Button2");
    EXPECT_EQ(Layer->GetAttributes(), before);
}

TEST_F(LayerPropertiesAttributesOptionFrame, AppliesNothingOnceTheLayerHasGone) {
    Layer->InitPropertiesDialog(&Dialog);
    Layer.reset();
    EXPECT_TRUE(Dialog.ApplyChanges());
    EXPECT_TRUE(Messages->Shown.empty());
}

TEST_F(LayerPropertiesAttributesOptionFrame, TakesAttributesOfNoLayer) {
    TAttributes attributes{{"One", {}}};
    TLayerPropertiesAttributesOptionFrame page(&attributes);
    EXPECT_EQ(page.GetName(), "Layer attributes");
    dynamic_cast<TLayerPropertiesAttributesFrame&>(*page.GetFrame()).SetWorking({});
    page.Apply();
    EXPECT_TRUE(attributes.empty());
}

} // namespace
} // namespace lmx
