#include <lmx/Dialogs/lmxTextObjectDialog.h>

#include <lmx/Dialogs/Private/lmxScreenFonts.h>
#include <lmx/Dialogs/Private/lmxTextMemo.h>
#include <lmx/Dialogs/Private/lmxTextStyleButton.h>
#include <lmx/Graphics/lmxFont32.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Widgets/lmxColorShape.h>
#include <lmx/Widgets/lmxMsgBox.h>

#include <QButtonGroup>
#include <QComboBox>
#include <QHBoxLayout>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPointer>
#include <QPushButton>
#include <QTextDocument>
#include <QTextOption>
#include <QVBoxLayout>

#include <algorithm>

namespace lmx {

namespace {

using TFace = TTextStyleButton::TFace;

constexpr int LeastFontSize = 6;
constexpr int OfferedSizes[] = {8, 10, 12, 14, 16, 18, 22, 26, 32, 40, 46, 52};

QComboBox* MakeBox(const char* name, int letters, QWidget* parent) {
    auto* box = new QComboBox(parent);
    box->setObjectName(QString::fromLatin1(name));
    box->setEditable(true);
    box->setInsertPolicy(QComboBox::NoInsert);
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon); // measures no item
    box->setMinimumContentsLength(letters);
    return box;
}

/// Tells nobody. The list opens at the text, if it is in there.
void SetBoxText(QComboBox& box, const QString& text) {
    const QSignalBlocker silence(box);
    box.setCurrentIndex(box.findText(text, Qt::MatchFixedString));
    box.setEditText(text);
}

QLabel* MakeLabel(const QString& text, QWidget* target, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setBuddy(target);
    return label;
}

// Left is left, also for a text that runs from right to left: so it will stand on the map.
Qt::Alignment ToQt(TAlignment align) {
    const Qt::AlignmentFlag side = align == TAlignment::taRightJustify ? Qt::AlignRight
                                   : align == TAlignment::taCenter     ? Qt::AlignHCenter
                                                                       : Qt::AlignLeft;
    return side | Qt::AlignAbsolute;
}

} // namespace

TTextObjectDialog::TTextObjectDialog(QWidget* parent)
    : TObjectDialog(QStringLiteral("Text object"), QStringLiteral("Text object"), parent),
      FScreenFonts(std::make_unique<TScreenFonts>()),
      FFont(MakeBox("cbFont", 18, this)),
      FFontSize(MakeBox("cbFontSize", 5, this)),
      FBold(new TTextStyleButton(TFace::tfBold, "tbBold", QStringLiteral("Bold"), this)),
      FItalic(new TTextStyleButton(TFace::tfItalic, "tbItalic", QStringLiteral("Italic"), this)),
      FUnderline(new TTextStyleButton(TFace::tfUnderline, "tbUnderline", QStringLiteral("Underline"), this)),
      FLeft(new TTextStyleButton(TFace::tfLeft, "tbLeft", QStringLiteral("Align left"), this)),
      FCenter(new TTextStyleButton(TFace::tfCenter, "tbCenter", QStringLiteral("Center"), this)),
      FRight(new TTextStyleButton(TFace::tfRight, "tbRight", QStringLiteral("Align right"), this)),
      FColor(new TColorShape(this)),
      FText(new TTextMemo(this)) {
    FColor->setObjectName(QStringLiteral("shpColor"));
    FColor->SetColor(clBlack);
    FText->setObjectName(QStringLiteral("moText"));
    FText->setAccessibleName(QStringLiteral("Text"));
    FText->setTabChangesFocus(true);
    FillFonts();
    FillSizes();

    auto* more = new QHBoxLayout;
    more->addWidget(CreateMoreOptionsButton());
    more->addStretch();
    GetContent()->addLayout(LayOutFont());
    GetContent()->addLayout(LayOutStyles());
    GetContent()->addWidget(FText, 1);
    GetContent()->addLayout(more);
    AddButtons();
    FText->setFocus();

    FontChange();
    FontSizeChange();
    connect(FFont, &QComboBox::editTextChanged, this, [this] { FontChange(); });
    connect(FFontSize, &QComboBox::editTextChanged, this, [this] { FontSizeChange(); });
}

TTextObjectDialog::~TTextObjectDialog() = default;

QLayout* TTextObjectDialog::LayOutFont() {
    auto* row = new QHBoxLayout;
    row->addWidget(MakeLabel(QStringLiteral("&Font:"), FFont, this));
    row->addWidget(FFont, 1);
    row->addWidget(MakeLabel(QStringLiteral("&Size:"), FFontSize, this));
    row->addWidget(FFontSize);
    return row;
}

QLayout* TTextObjectDialog::LayOutStyles() {
    constexpr int GroupGap = 12;
    FBold->setShortcut(QKeySequence::Bold);
    FItalic->setShortcut(QKeySequence::Italic);
    FUnderline->setShortcut(QKeySequence::Underline);
    auto* alignments = new QButtonGroup(this);
    for (TTextStyleButton* button : {FLeft, FCenter, FRight})
        alignments->addButton(button);
    FLeft->setChecked(true);

    auto* row = new QHBoxLayout;
    row->setSpacing(2);
    for (TTextStyleButton* button : {FBold, FItalic, FUnderline, FLeft, FCenter, FRight}) {
        if (button == FLeft)
            row->addSpacing(GroupGap);
        row->addWidget(button);
        connect(button, &QAbstractButton::clicked, this, [this] { UpdateFont(); });
    }
    row->addStretch();
    row->addSpacing(GroupGap);
    row->addWidget(MakeLabel(QStringLiteral("Co&lor:"), FColor, this));
    row->addSpacing(GroupGap / 2);
    row->addWidget(FColor);
    return row;
}

// Each name in the letters of the list: to show it in its own would load every font.
void TTextObjectDialog::FillFonts() {
    FFont->addItems(FScreenFonts->GetNames());
    FFont->setMaxVisibleItems(16);
    if (auto* list = qobject_cast<QListView*>(FFont->view()))
        list->setUniformItemSizes(true);
    SetBoxText(*FFont, FScreenFonts->NameOf(font()));
}

// Without completion: who types 1 does not mean 10.
void TTextObjectDialog::FillSizes() {
    for (const int size : OfferedSizes)
        FFontSize->addItem(IntToStr(size));
    FFontSize->setMaxVisibleItems(static_cast<int>(std::size(OfferedSizes)));
    FFontSize->setCompleter(nullptr);
    SetBoxText(*FFontSize, QStringLiteral("14"));
}

QString TTextObjectDialog::GetText() const {
    return FText->document()->isModified() ? FText->GetText() : FGivenText;
}

void TTextObjectDialog::SetText(const QString& text) {
    FGivenText = text;
    FText->SetText(text);
}

QString TTextObjectDialog::GetFontName() const {
    const QString name = FFont->currentText();
    return FScreenFonts->Contains(name) ? name : FScreenFonts->NameOf(font());
}

void TTextObjectDialog::SetFontName(const QString& name) {
    SetBoxText(*FFont, name);
}

std::optional<int> TTextObjectDialog::TypedSize() const {
    std::int32_t size = 0;
    if (!TryStrToInt(FFontSize->currentText(), size))
        return std::nullopt;
    return std::max<int>(size, LeastFontSize);
}

int TTextObjectDialog::GetFontSize() const {
    if (const auto size = TypedSize())
        return *size;
    throw Exception(QStringLiteral("Invalid value for font size"));
}

void TTextObjectDialog::SetFontSize(int size) {
    SetBoxText(*FFontSize, IntToStr(size));
}

TFontStyles TTextObjectDialog::GetFontStyles() const {
    TFontStyles styles;
    if (FBold->GetSelected())
        styles.Include(TFontStyle::fsBold);
    if (FItalic->GetSelected())
        styles.Include(TFontStyle::fsItalic);
    if (FUnderline->GetSelected())
        styles.Include(TFontStyle::fsUnderline);
    return styles;
}

void TTextObjectDialog::SetFontStyles(TFontStyles styles) {
    FBold->SetSelected(styles.Contains(TFontStyle::fsBold));
    FItalic->SetSelected(styles.Contains(TFontStyle::fsItalic));
    FUnderline->SetSelected(styles.Contains(TFontStyle::fsUnderline));
}

TColor TTextObjectDialog::GetFontColor() const {
    return FColor->GetColor();
}

void TTextObjectDialog::SetFontColor(TColor color) {
    FColor->SetColor(color);
}

TAlignment TTextObjectDialog::GetTextAlign() const {
    const Qt::Alignment side = FText->document()->defaultTextOption().alignment();
    if (side.testFlag(Qt::AlignRight))
        return TAlignment::taRightJustify;
    return side.testFlag(Qt::AlignHCenter) ? TAlignment::taCenter : TAlignment::taLeftJustify;
}

void TTextObjectDialog::SetTextAlign(TAlignment align) {
    TTextStyleButton* button = align == TAlignment::taRightJustify ? FRight
                               : align == TAlignment::taCenter     ? FCenter
                                                                   : FLeft;
    button->SetSelected(true);
}

void TTextObjectDialog::FontChange() {
    QFont shown = FText->font();
    TakeName(shown);
    FText->setFont(shown);
}

void TTextObjectDialog::FontSizeChange() {
    QFont shown = FText->font();
    TakeSize(shown);
    FText->setFont(shown);
}

void TTextObjectDialog::UpdateFont() {
    QFont shown = FText->font();
    TakeStyles(shown);
    FText->setFont(shown);
    TakeAlignment();
}

void TTextObjectDialog::TakeName(QFont& font) const {
    TFont32 chosen;
    chosen.Name = GetFontName();
    font.setFamilies(MakeFont(chosen, TFontSmoothing::fsGrey).families());
}

// While it is typed a size may be no number; then the text keeps the one it has.
void TTextObjectDialog::TakeSize(QFont& font) const {
    if (const auto size = TypedSize())
        font.setPixelSize(FontPixels(*size));
}

void TTextObjectDialog::TakeStyles(QFont& font) const {
    const TFontStyles styles = GetFontStyles();
    font.setBold(styles.Contains(TFontStyle::fsBold));
    font.setItalic(styles.Contains(TFontStyle::fsItalic));
    font.setUnderline(styles.Contains(TFontStyle::fsUnderline));
}

void TTextObjectDialog::TakeAlignment() {
    const TAlignment align = FRight->GetSelected()    ? TAlignment::taRightJustify
                             : FCenter->GetSelected() ? TAlignment::taCenter
                                                      : TAlignment::taLeftJustify;
    QTextOption option = FText->document()->defaultTextOption();
    if (option.alignment() == ToQt(align))
        return;
    option.setAlignment(ToQt(align));
    FText->document()->setDefaultTextOption(option);
}

// One change of the font, since each lays a long text out anew.
void TTextObjectDialog::showEvent(QShowEvent* event) {
    QFont shown = FText->font();
    TakeName(shown);
    TakeSize(shown);
    TakeStyles(shown);
    FText->setFont(shown);
    TakeAlignment();
    TObjectDialog::showEvent(event);
}

void TTextObjectDialog::OkClick() {
    if (!FScreenFonts->Contains(FFont->currentText()))
        Refuse(QStringLiteral("Please specify a font that is available in the drop down list."), QStringLiteral("Font"),
               FFont);
    else if (!TypedSize())
        Refuse(QStringLiteral("The specified font size is invalid."), QStringLiteral("Font size"), FFontSize);
    else
        accept();
}

void TTextObjectDialog::Refuse(const QString& message, const QString& title, QComboBox* box) {
    const QPointer<QComboBox> field(box); // the dialog may go while the message is shown
    TMsgBox::Info(message, title, this);
    if (!field)
        return;
    field->setFocus();
    field->lineEdit()->selectAll();
}

} // namespace lmx
