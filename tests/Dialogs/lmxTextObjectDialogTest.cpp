#include <lmx/Dialogs/Private/lmxScreenFonts.h>
#include <lmx/Dialogs/Private/lmxTextStyleButton.h>
#include <lmx/Dialogs/lmxTextObjectDialog.h>
#include <lmx/Graphics/lmxFont32.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Widgets/lmxColorShape.h>
#include <tests/Dialogs/FormControls.h>
#include <tests/Support/DialogChecks.h>
#include <tests/Support/Printers.h>

#include <QAccessible>
#include <QComboBox>
#include <QLineEdit>
#include <QListView>
#include <QPlainTextEdit>
#include <QTextDocument>
#include <QTextOption>

#include <memory>

namespace lmx {
namespace {

using enum TAlignment;
using enum TFontStyle;
using tests::Find;
using tests::MessageOf;
using tests::TShownMessage;

using TAnswer = tests::TModalAnswer<TTextObjectDialog>;

const QString NoSuchFont = QStringLiteral("No Such Font");
const QString FontRefusal = QStringLiteral("Please specify a font that is available in the drop down list.");
const QString SizeRefusal = QStringLiteral("The specified font size is invalid.");

struct TextObjectDialog : testing::Test {
    QComboBox& Box(const char* name) { return Find<QComboBox>(*Dialog, name); }
    QPlainTextEdit& Memo() { return Find<QPlainTextEdit>(*Dialog, "moText"); }
    TTextStyleButton& Button(const char* name) { return Find<TTextStyleButton>(*Dialog, name); }
    void Click(const char* button) { tests::ClickOn(*Dialog, button); }
    /// Types over the text of an editable box.
    void TypeOver(const char* box, const QString& text) {
        QLineEdit* edit = Box(box).lineEdit();
        edit->selectAll();
        QTest::keyClick(edit, Qt::Key_Delete);
        QTest::keyClicks(edit, text);
    }
    QString ShownFont() { return Memo().font().family(); }
    int ShownPixels() { return Memo().document()->defaultFont().pixelSize(); }
    QString FormFont() { return TScreenFonts().NameOf(Dialog->font()); }
    QString OtherFont() {
        QStringList names = TScreenFonts().GetNames();
        names.removeAll(FormFont());
        return names.isEmpty() ? FormFont() : names.last();
    }

    tests::TScriptedMsgBox Messages;
    tests::TScriptedColorChooser Chooser;
    std::unique_ptr<TTextObjectDialog> Dialog = std::make_unique<TTextObjectDialog>();
};

// ---- How it comes up

TEST_F(TextObjectDialog, SaysWhatItIsAbout) {
    EXPECT_EQ(Dialog->windowTitle(), "Text object");
    EXPECT_EQ(tests::HeadingOf(*Dialog), "Text object");
}

TEST_F(TextObjectDialog, BeginsWithTheFontOfTheFormAt14Points) {
    EXPECT_EQ(Dialog->GetText(), "");
    EXPECT_EQ(Box("cbFont").currentText(), FormFont());
    EXPECT_EQ(Box("cbFontSize").currentText(), "14");
    EXPECT_EQ(Dialog->GetFontName(), FormFont());
    EXPECT_EQ(Dialog->GetFontSize(), 14);
    EXPECT_EQ(Dialog->GetFontStyles(), TFontStyles());
    EXPECT_EQ(Dialog->GetFontColor(), clBlack);
    EXPECT_EQ(Dialog->GetTextAlign(), taLeftJustify);
    EXPECT_TRUE(Button("tbLeft").GetSelected());
    EXPECT_EQ(ShownFont(), FormFont());
    EXPECT_EQ(ShownPixels(), FontPixels(14));
}

TEST_F(TextObjectDialog, OffersTheFontsOfTheScreenAndTwelveSizes) {
    QStringList fonts;
    for (int i = 0; i < Box("cbFont").count(); ++i)
        fonts.append(Box("cbFont").itemText(i));
    EXPECT_EQ(fonts, TScreenFonts().GetNames());
    QStringList sizes;
    for (int i = 0; i < Box("cbFontSize").count(); ++i)
        sizes.append(Box("cbFontSize").itemText(i));
    EXPECT_EQ(sizes, (QStringList{"8", "10", "12", "14", "16", "18", "22", "26", "32", "40", "46", "52"}));
}

TEST_F(TextObjectDialog, OpensItsListsAtWhatTheySay) {
    EXPECT_EQ(Box("cbFont").itemText(Box("cbFont").currentIndex()), FormFont());
    EXPECT_EQ(Box("cbFontSize").currentIndex(), 3);
    Dialog->SetFontName(TScreenFonts().GetNames().last());
    Dialog->SetFontSize(26);
    EXPECT_EQ(Box("cbFont").currentIndex(), Box("cbFont").count() - 1);
    EXPECT_EQ(Box("cbFontSize").currentIndex(), 7);
    Dialog->SetFontName(NoSuchFont);
    Dialog->SetFontSize(27);
    EXPECT_EQ(Box("cbFont").currentIndex(), -1);
    EXPECT_EQ(Box("cbFont").currentText(), NoSuchFont);
    EXPECT_EQ(Box("cbFontSize").currentText(), "27");
}

// With a thousand fonts on the screen: no row is measured or drawn in letters of its own.
TEST_F(TextObjectDialog, ShowsFontNamesInTheLettersOfTheForm) {
    QComboBox& box = Box("cbFont");
    EXPECT_EQ(box.sizeAdjustPolicy(), QComboBox::AdjustToMinimumContentsLengthWithIcon);
    EXPECT_TRUE(qobject_cast<QListView*>(box.view())->uniformItemSizes());
    for (int i = 0; i < box.count(); ++i)
        EXPECT_FALSE(box.itemData(i, Qt::FontRole).isValid());
}

TEST_F(TextObjectDialog, IsReadAndOperatedAtEveryFontSize) {
    tests::CheckForm([] { return std::make_unique<TTextObjectDialog>(); });
}

TEST_F(TextObjectDialog, GivesTheKeyboardToTheText) {
    tests::ShowActive(*Dialog);
    EXPECT_TRUE(Memo().hasFocus());
    QTest::keyClicks(Dialog->focusWidget(), "Mean rain");
    tests::PressKey(*Dialog, Qt::Key_Return);
    QTest::keyClicks(Dialog->focusWidget(), "1991");
    EXPECT_EQ(Dialog->GetText(), "Mean rain\n1991") << "Enter begins a line";
    EXPECT_TRUE(Dialog->isVisible());
}

TEST_F(TextObjectDialog, LeadsTheTabKeyInTheOrderOfReading) {
    EXPECT_EQ(tests::TabOrderOf(*Dialog),
              (QStringList{"cbFont", "cbFontSize", "tbBold", "tbItalic", "tbUnderline", "tbLeft", "shpColor", "moText",
                           "Button3", "btnOK", "btnCancel"}));
}

TEST_F(TextObjectDialog, NamesItsButtons) {
    const std::pair<const char*, QString> names[] = {{"tbBold", "Bold"},           {"tbItalic", "Italic"},
                                                     {"tbUnderline", "Underline"}, {"tbLeft", "Align left"},
                                                     {"tbCenter", "Center"},       {"tbRight", "Align right"}};
    for (const auto& [button, name] : names) {
        EXPECT_EQ(QAccessible::queryAccessibleInterface(&Button(button))->text(QAccessible::Name), name);
        EXPECT_EQ(Button(button).toolTip(), name);
    }
}

TEST_F(TextObjectDialog, GrowsWithItsWindow) {
    tests::ShowActive(*Dialog);
    const QSize before = Memo().size();
    Dialog->resize(Dialog->size() + QSize(100, 80));
    QCoreApplication::processEvents();
    EXPECT_EQ(Memo().size(), before + QSize(100, 80));
}

// ---- The text

TEST_F(TextObjectDialog, GivesBackTheTextThatItWasGiven) {
    const QString texts[] = {QString(),
                             QStringLiteral("two\r\nlines\rof\nsorts"),
                             QStringLiteral("a\u00A0b\u2028c\u2029d"),
                             QString(QChar(0)) + u'x',
                             QStringLiteral("\u05E9\u05DC\u05D5\u05DD \u0645\u0631\u062D\u0628\u0627 e\u0301"),
                             QStringLiteral("<b>plain</b> &amp; && simple")};
    tests::ShowActive(*Dialog);
    for (const QString& text : texts) {
        Dialog->SetText(text);
        EXPECT_EQ(Dialog->GetText(), text);
    }
}

TEST_F(TextObjectDialog, EndsTheLinesOfAnEditedTextWithLf) {
    Dialog->SetText(QStringLiteral("a\u00A0b\r\nc"));
    tests::ShowActive(*Dialog);
    QTest::keyClick(&Memo(), Qt::Key_End, Qt::ControlModifier);
    QTest::keyClicks(&Memo(), "!");
    EXPECT_EQ(Dialog->GetText(), QStringLiteral("a\u00A0b\nc!")) << "blanks that do not break stay";
    QTest::keyClick(&Memo(), Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_EQ(Dialog->GetText(), QStringLiteral("a\u00A0b\nc!\n"));
}

TEST_F(TextObjectDialog, SurvivesATextOfAMegabyte) {
    QString words;
    while (words.size() < 100'000) // a line that takes its time to lay out
        words += QStringLiteral("precipitation \u05D2\u05E9\u05DD ");
    while (words.size() < 1'000'000)
        words += QStringLiteral("\nsnow and e\u0301");
    Dialog->SetText(words);
    tests::ShowActive(*Dialog);
    QCoreApplication::processEvents();
    QTest::keyClicks(&Memo(), "!");
    EXPECT_EQ(Dialog->GetText(), u'!' + words);
    tests::ClickOk(*Dialog);
    EXPECT_EQ(Dialog->GetModalResult(), TModalResult::mrOk);
}

TEST_F(TextObjectDialog, EditsALineOfAMegabyte) {
    const QString text = QString(1'000'000, u'W');
    Dialog->SetText(text);
    EXPECT_EQ(Dialog->GetText(), text);
    tests::ShowActive(*Dialog);
    QTest::keyClicks(&Memo(), "<");
    QTest::keyClick(&Memo(), Qt::Key_End, Qt::ControlModifier);
    QTest::keyClicks(&Memo(), ">");
    EXPECT_EQ(Dialog->GetText(), u'<' + text + u'>');
    Click("tbCenter");
    TypeOver("cbFontSize", "32");
    EXPECT_EQ(ShownPixels(), FontPixels(32)) << "shown as it will look all the time";
    EXPECT_EQ(Dialog->GetText(), u'<' + text + u'>');
    Memo().undo();
    Memo().undo();
    EXPECT_EQ(Dialog->GetText(), text);
}

// ---- The font

TEST_F(TextObjectDialog, ShowsTheTextInTheFontThatIsChosen) {
    tests::ShowActive(*Dialog);
    TypeOver("cbFont", OtherFont());
    EXPECT_EQ(Dialog->GetFontName(), OtherFont());
    EXPECT_EQ(ShownFont(), OtherFont());
    Box("cbFont").setFocus();
    QTest::keyClick(&Box("cbFont"), Qt::Key_Home, Qt::ControlModifier);
    Box("cbFont").setCurrentIndex(0);
    EXPECT_EQ(ShownFont(), TScreenFonts().GetNames().first());
}

TEST_F(TextObjectDialog, FallsBackToTheFontOfTheForm) {
    tests::ShowActive(*Dialog);
    TypeOver("cbFont", OtherFont());
    TypeOver("cbFont", NoSuchFont);
    EXPECT_EQ(Box("cbFont").currentText(), NoSuchFont);
    EXPECT_EQ(Dialog->GetFontName(), FormFont());
    EXPECT_EQ(ShownFont(), FormFont());
    EXPECT_TRUE(Messages->Shown.empty());
}

TEST_F(TextObjectDialog, RefusesAFontThatTheScreenDoesNotHave) {
    const TAnswer answer([&](TTextObjectDialog& dialog) {
        TypeOver("cbFont", NoSuchFont);
        TypeOver("cbFontSize", "x");
        tests::ClickOk(dialog);
        EXPECT_EQ(Messages->Shown, (std::vector<TShownMessage>{{"Info", FontRefusal, "Font", &dialog}}))
            << "one message at a time, the font's first";
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_TRUE(Box("cbFont").hasFocus());
        EXPECT_EQ(Box("cbFont").lineEdit()->selectedText(), NoSuchFont);
        TypeOver("cbFont", FormFont());
        TypeOver("cbFontSize", "20");
        tests::ClickOk(dialog);
    });
    EXPECT_EQ(Dialog->ShowModal(), TModalResult::mrOk);
    EXPECT_EQ(Messages->Shown.size(), 1U);
    EXPECT_EQ(Dialog->GetFontSize(), 20);
}

TEST_F(TextObjectDialog, RefusesTheFontOfAnItemThatTheScreenDoesNotHave) {
    Dialog->SetFontName(NoSuchFont);
    const TAnswer answer([&](TTextObjectDialog& dialog) {
        tests::ClickOk(dialog);
        EXPECT_EQ(Messages->Shown, (std::vector<TShownMessage>{{"Info", FontRefusal, "Font", &dialog}}));
        tests::PressKey(dialog, Qt::Key_Escape);
    });
    EXPECT_EQ(Dialog->ShowModal(), TModalResult::mrCancel);
}

TEST_F(TextObjectDialog, TakesAFontInAnyCase) {
    TypeOver("cbFont", FormFont().toUpper());
    tests::ShowActive(*Dialog);
    tests::ClickOk(*Dialog);
    EXPECT_EQ(Dialog->GetModalResult(), TModalResult::mrOk);
    EXPECT_TRUE(Messages->Shown.empty());
}

// ---- The size

TEST_F(TextObjectDialog, GivesASizeOfAtLeast6) {
    const std::pair<QString, int> sizes[] = {{"3", 6},   {"6", 6},    {"7", 7},
                                             {"-50", 6}, {" 20", 20}, {"2147483647", 2147483647}};
    for (const auto& [text, size] : sizes) {
        TTextObjectDialog dialog;
        Find<QComboBox>(dialog, "cbFontSize").setEditText(text);
        tests::ShowActive(dialog);
        tests::ClickOk(dialog);
        EXPECT_EQ(dialog.GetModalResult(), TModalResult::mrOk) << text.toStdString();
        EXPECT_EQ(dialog.GetFontSize(), size);
    }
    EXPECT_TRUE(Messages->Shown.empty());
}

TEST_F(TextObjectDialog, RaisesForASizeThatIsNoWholeNumber) {
    for (const QString& text : {QString(), QStringLiteral("x"), QStringLiteral("12.5"), QStringLiteral("12,5"),
                                QStringLiteral("12 "), QStringLiteral("2147483648")}) {
        Box("cbFontSize").setEditText(text);
        EXPECT_EQ(MessageOf<Exception>([&] { Dialog->GetFontSize(); }), "Invalid value for font size");
    }
}

TEST_F(TextObjectDialog, SaysNothingWhileASizeIsTyped) {
    tests::ShowActive(*Dialog);
    TypeOver("cbFontSize", "32");
    EXPECT_EQ(ShownPixels(), FontPixels(32));
    TypeOver("cbFontSize", "abc");
    EXPECT_EQ(ShownPixels(), FontPixels(32)) << "the text keeps its size";
    TypeOver("cbFontSize", "1");
    EXPECT_EQ(Box("cbFontSize").currentText(), "1") << "nothing is completed";
    EXPECT_EQ(ShownPixels(), FontPixels(6));
    EXPECT_TRUE(Messages->Shown.empty());
}

TEST_F(TextObjectDialog, RefusesAnEmptySizeAtOkAlone) {
    const TAnswer answer([&](TTextObjectDialog& dialog) {
        TypeOver("cbFontSize", {});
        EXPECT_TRUE(Messages->Shown.empty());
        tests::ClickOk(dialog);
        EXPECT_EQ(Messages->Shown, (std::vector<TShownMessage>{{"Info", SizeRefusal, "Font size", &dialog}}));
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_EQ(dialog.focusWidget(), &Box("cbFontSize")); // whether or not the window is the active one
        dialog.close();
    });
    EXPECT_EQ(Dialog->ShowModal(), TModalResult::mrCancel);
    QCoreApplication::processEvents();
    EXPECT_EQ(Messages->Shown.size(), 1U);
}

TEST_F(TextObjectDialog, ConfirmsByTheEnterKeyInItsBoxes) {
    const TAnswer answer([&](TTextObjectDialog& dialog) {
        TypeOver("cbFontSize", "18");
        Box("cbFontSize").setFocus();
        tests::PressKey(dialog, Qt::Key_Return);
    });
    EXPECT_EQ(Dialog->ShowModal(), TModalResult::mrOk);
    EXPECT_EQ(Dialog->GetFontSize(), 18);
    EXPECT_EQ(Box("cbFontSize").count(), 12) << "what is typed does not join the list";
}

// ---- Styles, alignment and colour

TEST_F(TextObjectDialog, ShowsTheStylesThatArePressed) {
    tests::ShowActive(*Dialog);
    TFontStyles styles;
    const std::pair<const char*, TFontStyle> buttons[] = {
        {"tbBold", fsBold}, {"tbItalic", fsItalic}, {"tbUnderline", fsUnderline}};
    for (const auto& [button, style] : buttons) {
        Click(button);
        styles.Include(style);
        EXPECT_EQ(Dialog->GetFontStyles(), styles);
        const QFont shown = Memo().document()->defaultFont();
        EXPECT_EQ(shown.bold(), styles.Contains(fsBold));
        EXPECT_EQ(shown.italic(), styles.Contains(fsItalic));
        EXPECT_EQ(shown.underline(), styles.Contains(fsUnderline));
    }
    Click("tbItalic");
    EXPECT_EQ(Dialog->GetFontStyles(), (TFontStyles{fsBold, fsUnderline}));
    EXPECT_FALSE(Memo().document()->defaultFont().italic());
    EXPECT_EQ(ShownFont(), FormFont()) << "the rest of the look stays";
    EXPECT_EQ(ShownPixels(), FontPixels(14));
}

TEST_F(TextObjectDialog, NeitherReadsNorSetsStrikeOut) {
    Dialog->SetFontStyles({fsItalic, fsStrikeOut});
    EXPECT_EQ(Dialog->GetFontStyles(), TFontStyles{fsItalic});
    tests::ShowActive(*Dialog);
    EXPECT_FALSE(Memo().font().strikeOut());
}

TEST_F(TextObjectDialog, HasKeysForTheStyles) {
    tests::ShowActive(*Dialog);
    tests::PressKey(*Dialog, Qt::Key_B, Qt::ControlModifier);
    EXPECT_TRUE(QTest::qWaitFor([this] { return Dialog->GetFontStyles() == TFontStyles{fsBold}; }));
    EXPECT_TRUE(Memo().document()->defaultFont().bold());
}

TEST_F(TextObjectDialog, AlignsTheTextAsOneOfThreeButtonsSays) {
    tests::ShowActive(*Dialog);
    const std::pair<const char*, TAlignment> buttons[] = {
        {"tbRight", taRightJustify}, {"tbCenter", taCenter}, {"tbLeft", taLeftJustify}};
    for (const auto& [button, align] : buttons) {
        Click(button);
        EXPECT_EQ(Dialog->GetTextAlign(), align);
        for (const auto& [other, otherAlign] : buttons)
            EXPECT_EQ(Button(other).GetSelected(), align == otherAlign);
    }
    EXPECT_EQ(Memo().document()->defaultTextOption().alignment(), Qt::AlignLeft | Qt::AlignAbsolute)
        << "left is left for texts from right to left too";
}

TEST_F(TextObjectDialog, PressesTheButtonOfAnAlignment) {
    const std::pair<TAlignment, const char*> alignments[] = {{taRightJustify, "tbRight"},
                                                             {taCenter, "tbCenter"},
                                                             {static_cast<TAlignment>(9), "tbLeft"},
                                                             {taLeftJustify, "tbLeft"}};
    for (const auto& [align, button] : alignments) {
        Dialog->SetTextAlign(align);
        EXPECT_TRUE(Button(button).GetSelected());
    }
}

// The text follows when a change handler runs next, or when the dialog comes up.
TEST_F(TextObjectDialog, SettersTouchTheirOwnControlOnly) {
    Dialog->SetFontName(OtherFont());
    Dialog->SetFontSize(40);
    Dialog->SetFontStyles({fsBold});
    Dialog->SetTextAlign(taCenter);
    EXPECT_EQ(Box("cbFont").currentText(), OtherFont());
    EXPECT_EQ(Box("cbFontSize").currentText(), "40");
    EXPECT_EQ(Dialog->GetFontName(), OtherFont());
    EXPECT_EQ(Dialog->GetFontSize(), 40);
    EXPECT_EQ(ShownFont(), FormFont());
    EXPECT_EQ(ShownPixels(), FontPixels(14));
    EXPECT_FALSE(Memo().font().bold());
    EXPECT_EQ(Dialog->GetTextAlign(), taLeftJustify) << "the one in which the text is shown";
    Button("tbItalic").click();
    EXPECT_TRUE(Memo().font().bold());
    EXPECT_EQ(Dialog->GetTextAlign(), taCenter);
    EXPECT_EQ(ShownPixels(), FontPixels(14)) << "that handler is the size's own";
    tests::ShowActive(*Dialog);
    EXPECT_EQ(ShownFont(), OtherFont());
    EXPECT_EQ(ShownPixels(), FontPixels(40));
}

TEST_F(TextObjectDialog, KeepsWhatItWasGivenWhenItIsConfirmedAtOnce) {
    Dialog->SetText("title");
    Dialog->SetFontSize(26);
    Dialog->SetFontStyles({fsUnderline});
    Dialog->SetTextAlign(taRightJustify);
    Dialog->SetFontColor(TColor{0x00332211});
    const TAnswer answer([](TTextObjectDialog& dialog) { tests::ClickOk(dialog); });
    EXPECT_EQ(Dialog->ShowModal(), TModalResult::mrOk);
    EXPECT_EQ(Dialog->GetText(), "title");
    EXPECT_EQ(Dialog->GetFontSize(), 26);
    EXPECT_EQ(Dialog->GetFontStyles(), TFontStyles{fsUnderline});
    EXPECT_EQ(Dialog->GetTextAlign(), taRightJustify);
    EXPECT_EQ(Dialog->GetFontColor(), TColor{0x00332211});
}

TEST_F(TextObjectDialog, LetsTheUserChooseAColourAtAPress) {
    Dialog->SetFontColor(TColor{0x00332211});
    tests::ShowActive(*Dialog);
    Chooser->Answers = {std::nullopt, 0x80AABBCCU};
    QTest::mousePress(&Find<TColorShape>(*Dialog, "shpColor"), Qt::LeftButton);
    EXPECT_EQ(Dialog->GetFontColor(), TColor{0x00332211}) << "cancelled";
    QTest::mousePress(&Find<TColorShape>(*Dialog, "shpColor"), Qt::LeftButton);
    EXPECT_EQ(Dialog->GetFontColor(), TColor{0x00CCBBAA});
    EXPECT_EQ(Chooser->Shown, (std::vector<TColor32>{0xFF112233U, 0xFF112233U}));
    EXPECT_EQ(Chooser->Made, (std::vector<TColorChooserDialogOptions>{{}, {}}));
}

// ---- A dialog that goes

/// A box behind which everything goes.
class TEndingMsgBox final : public IMsgBoxService {
public:
    explicit TEndingMsgBox(std::function<void()> end) : FEnd(std::move(end)) {}
    void Error(const QString&, const QString&, QWidget*) override {}
    void Info(const QString&, const QString&, QWidget*) override { FEnd(); }
    bool YesNo(const QString&, const QString&, QWidget*) override { return false; }
    void ShowMessage(const QString&) override {}

private:
    std::function<void()> FEnd;
};

TEST_F(TextObjectDialog, MayGoWhileItRefuses) {
    const TServiceScope<TMsgBox> scope(std::make_shared<TEndingMsgBox>([this] { Dialog.reset(); }));
    Dialog->SetFontName(NoSuchFont);
    tests::ShowActive(*Dialog);
    Find<QPushButton>(*Dialog, "btnOK").click();
    EXPECT_EQ(Dialog, nullptr);
}

} // namespace
} // namespace lmx
