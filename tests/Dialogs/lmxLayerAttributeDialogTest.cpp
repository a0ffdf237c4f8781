#include <lmx/Dialogs/lmxLayerAttributeDialog.h>
#include <lmx/Widgets/Private/lmxFormHeading.h>
#include <tests/Dialogs/PropertiesDialogFixture.h>
#include <tests/Support/DialogChecks.h>
#include <tests/Support/ModalAnswer.h>

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>

#include <cstdlib>

namespace lmx {
namespace {

using tests::Click;
using tests::Find;
using tests::TShownMessage;

struct LayerAttributeDialog : testing::Test {
    /// Types a value of a type and presses OK; whether the dialog closes.
    bool Accepts(TAttributeDataType type, const QString& value) {
        TLayerAttributeDialog dialog;
        dialog.SetAttribute(QStringLiteral("Name"), {type, QString()});
        tests::ShowActive(dialog);
        Find<QLineEdit>(dialog, "edVal").setFocus();
        QTest::keyClicks(dialog.focusWidget(), value);
        Click(dialog, "Button1");
        EXPECT_EQ(dialog.GetModalResult() == TModalResult::mrOk, !dialog.isVisible());
        return !dialog.isVisible();
    }

    tests::TScriptedMsgBox Messages;
};

TEST_F(LayerAttributeDialog, SaysWhatItAsksFor) {
    const TLayerAttributeDialog dialog;
    EXPECT_EQ(dialog.windowTitle(), "Attribute");
    EXPECT_EQ(dialog.findChild<TFormHeading*>()->text(), "Layer attribute");
    QStringList labels;
    for (const QLabel* label : dialog.findChildren<QLabel*>())
        if (label->buddy())
            labels.append(label->text() + label->buddy()->objectName());
    EXPECT_EQ(labels, (QStringList{"Name: edName", "Data type:cbDataType", "Value:edVal"}));
    const auto& types = Find<QComboBox>(dialog, "cbDataType");
    EXPECT_FALSE(types.isEditable());
    EXPECT_EQ(types.count(), 3);
    EXPECT_EQ(types.itemText(0), "String");
    EXPECT_EQ(types.itemText(1), "Float");
    EXPECT_EQ(types.itemText(2), "Integer");
    EXPECT_EQ(Find<QPushButton>(dialog, "Button1").text(), "&OK");
    EXPECT_EQ(Find<QPushButton>(dialog, "Button2").text(), "&Cancel");
}

TEST_F(LayerAttributeDialog, GivesBackWhatItWasGiven) {
    TLayerAttributeDialog dialog;
    for (const auto type :
         {TAttributeDataType::adtInteger, TAttributeDataType::adtFloat, TAttributeDataType::adtString}) {
        dialog.SetAttribute(QStringLiteral(" Depth "), {type, QStringLiteral(" 7 ")});
        QString name;
        TAttributeData data;
        dialog.GetAttribute(name, data);
        EXPECT_EQ(name, " Depth ");
        EXPECT_EQ(data, TAttributeData(type, QStringLiteral(" 7 ")));
    }
}

TEST_F(LayerAttributeDialog, WantsAValueOfTheType) {
    EXPECT_TRUE(Accepts(TAttributeDataType::adtString, QStringLiteral("letters")));
    EXPECT_TRUE(Accepts(TAttributeDataType::adtString, QString()));
    EXPECT_TRUE(Accepts(TAttributeDataType::adtFloat, tests::Local("-1.5")));
    EXPECT_TRUE(Accepts(TAttributeDataType::adtFloat, QStringLiteral(" 7 ")));
    EXPECT_TRUE(Accepts(TAttributeDataType::adtInteger, QStringLiteral("-2147483648")));
    EXPECT_TRUE(Accepts(TAttributeDataType::adtInteger, QStringLiteral(" $FF")));
    EXPECT_TRUE(Messages->Shown.empty());
    for (const char* text : {"letters", "", "  ", "1e400", "1e39", "NaN", "INF", "1 2"})
        EXPECT_FALSE(Accepts(TAttributeDataType::adtFloat, QString::fromLatin1(text))) << text;
    const bool hasPoint = TFormatSettings::Current().DecimalSeparator == u'.';
    EXPECT_FALSE(Accepts(TAttributeDataType::adtFloat, hasPoint ? "1,5" : "1.5")) << "another decimal separator";
    for (const char* text : {"letters", "", "  ", "1.5", "1,5", "2147483648", "7 ", "1e2"})
        EXPECT_FALSE(Accepts(TAttributeDataType::adtInteger, QString::fromLatin1(text))) << text;
    ASSERT_EQ(Messages->Shown.size(), 17U);
    for (const TShownMessage& shown : Messages->Shown) {
        EXPECT_EQ(shown.Kind, "Error");
        EXPECT_EQ(shown.Text, "The specified value is not compatible with the specified data type.");
        EXPECT_EQ(shown.Title, "Data type");
    }
}

TEST_F(LayerAttributeDialog, StaysWithWhatWasTyped) {
    TLayerAttributeDialog dialog;
    dialog.SetAttribute(QStringLiteral("Depth"), {TAttributeDataType::adtInteger, QString()});
    tests::ShowActive(dialog);
    auto& value = Find<QLineEdit>(dialog, "edVal");
    const QString digits(100'000, u'9'); // of which the field takes what it can hold
    value.setFocus();
    value.insert(digits);
    ASSERT_GT(value.text().size(), 30'000);
    Click(dialog, "Button1");
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_TRUE(digits.startsWith(value.text()));
    QTest::mouseClick(&Find<QPushButton>(dialog, "Button1"), Qt::LeftButton);
    ASSERT_EQ(Messages->Shown.size(), 2U) << "each time";
    EXPECT_EQ(Messages->Shown[0].Parent, &dialog);
    value.setFocus();
    value.selectAll();
    QTest::keyClicks(&value, QStringLiteral("12"));
    QTest::keyClick(&value, Qt::Key_Return);
    EXPECT_EQ(dialog.result(), 1);
    QString name;
    TAttributeData data;
    dialog.GetAttribute(name, data);
    EXPECT_EQ(name, "Depth");
    EXPECT_EQ(data, TAttributeData(TAttributeDataType::adtInteger, QStringLiteral("12")));
}

TEST_F(LayerAttributeDialog, GoesByTheTypeThatIsChosen) {
    TLayerAttributeDialog dialog;
    dialog.SetAttribute(QStringLiteral("Depth"), {TAttributeDataType::adtFloat, QStringLiteral("deep")});
    tests::ShowActive(dialog);
    Click(dialog, "Button1");
    EXPECT_EQ(Messages->Shown.size(), 1U);
    auto& types = Find<QComboBox>(dialog, "cbDataType");
    types.setFocus();
    QTest::keyClick(&types, Qt::Key_Up);
    EXPECT_EQ(types.currentText(), "String");
    Click(dialog, "Button1");
    EXPECT_EQ(dialog.result(), 1);
    EXPECT_EQ(Messages->Shown.size(), 1U);
}

TEST_F(LayerAttributeDialog, TakesAnEmptyName) {
    TLayerAttributeDialog dialog;
    dialog.SetAttribute(QString(), TAttributeData::Empty());
    tests::ShowActive(dialog);
    Click(dialog, "Button1");
    EXPECT_EQ(dialog.GetModalResult(), TModalResult::mrOk);
}

TEST_F(LayerAttributeDialog, BeginsWithTheNameToBeTypedOver) {
    TLayerAttributeDialog dialog;
    dialog.SetAttribute(QStringLiteral("Name"), TAttributeData::Empty());
    tests::ShowActive(dialog);
    auto& name = Find<QLineEdit>(dialog, "edName");
    EXPECT_TRUE(name.hasFocus());
    EXPECT_EQ(name.selectedText(), "Name");
    QTest::keyClick(&name, Qt::Key_Escape);
    EXPECT_EQ(dialog.result(), 2);
}

TEST_F(LayerAttributeDialog, ComesUpInTheMiddleOfItsScreen) {
    QWidget host; // in a corner, where Qt would put it
    host.setGeometry(0, 0, 100, 100);
    host.show();
    TLayerAttributeDialog dialog(&host);
    EXPECT_TRUE(Find<QPushButton>(dialog, "Button1").isDefault());
    tests::ShowActive(dialog);
    const QPoint off = dialog.frameGeometry().center() - dialog.screen()->availableGeometry().center();
    EXPECT_LE(std::abs(off.x()), 1);
    EXPECT_LE(std::abs(off.y()), 1);
    Click(dialog, "Button2");
    EXPECT_EQ(dialog.result(), 2);
}

TEST_F(LayerAttributeDialog, HasOneSize) {
    TLayerAttributeDialog dialog;
    tests::ShowActive(dialog);
    EXPECT_EQ(dialog.minimumSize(), dialog.maximumSize());
}

TEST_F(LayerAttributeDialog, IsReadAndOperatedAtEveryFontSize) {
    tests::CheckForm([] { return std::make_unique<TLayerAttributeDialog>(); });
}

} // namespace
} // namespace lmx
