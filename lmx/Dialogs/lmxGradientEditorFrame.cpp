#include <lmx/Dialogs/lmxGradientEditorFrame.h>

#include <lmx/Dialogs/Private/lmxGradientMenu.h>
#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Runtime/lmxFormat.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Widgets/lmxClipboardEnvelope.h>
#include <lmx/Widgets/lmxColor32Button.h>
#include <lmx/Widgets/lmxColorChooser.h>
#include <lmx/Widgets/lmxEventGuard.h>
#include <lmx/Widgets/lmxGradientEditor.h>

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace lmx {

namespace {

constexpr int CommandSpacing = 4; // as between the commands of the other editors

const QString ClipboardTag = QStringLiteral("GRADIENT");

} // namespace

/// Keeps the fields and the editor from answering each other. Of changes inside each other the first one counts.
class TGradientEditorFrame::TChanging {
public:
    TChanging(TGradientEditorFrame* frame, QWidget* source) : FFrame(frame), FIsFirst(!frame->FIsChanging) {
        if (!FIsFirst)
            return;
        frame->FIsChanging = true;
        frame->FChangingSource = source;
    }
    ~TChanging() {
        if (!FIsFirst || !FFrame)
            return;
        FFrame->FIsChanging = false;
        FFrame->FChangingSource = nullptr;
    }
    TChanging(const TChanging&) = delete;
    TChanging& operator=(const TChanging&) = delete;

private:
    QPointer<TGradientEditorFrame> FFrame; // whoever hears of a change may end it
    bool FIsFirst;
};

TGradientEditorFrame::TGradientEditorFrame(QWidget* parent)
    : QWidget(parent),
      FGradEdit(new TGradientEditor(this)),
      FColor(new TColor32Button(this)),
      FLocation(AddEdit(u"edLoc", u"Location in per cent")),
      FValue(AddEdit(u"edVal", u"Value")),
      FPresets(new QPushButton(QStringLiteral("Pre&sets"), this)),
      FPrevious(AddButton(QStringLiteral("<"), u"btnPrev", &TGradientEditorFrame::btnPrevClick)),
      FNext(AddButton(QStringLiteral(">"), u"btnNext", &TGradientEditorFrame::btnNextClick)),
      FDelete(AddButton(QStringLiteral("&Delete"), u"btnDel", &TGradientEditorFrame::btnDelClick)),
      FClear(AddButton(QStringLiteral("&Clear all"), u"btnClear", &TGradientEditorFrame::btnClearClick)),
      FCopy(AddButton(QStringLiteral("&Copy"), u"btnCopy", &TGradientEditorFrame::btnCopyClick)),
      FPaste(AddButton(QStringLiteral("&Paste"), u"btnPaste", &TGradientEditorFrame::btnPasteClick)),
      FColorDialog(TColorChooserFactory::GetObject({TColorChooserDialogOption::coColor32})) {
    FGradEdit->setObjectName(QStringLiteral("GradEdit"));
    FColor->setObjectName(QStringLiteral("shpColor"));
    FColor->setAccessibleName(QStringLiteral("Color"));
    FColor->SetColorChooser(FColorDialog);
    FPrevious->setToolTip(QStringLiteral("Previous color"));
    FPrevious->setAccessibleName(FPrevious->toolTip());
    FNext->setToolTip(QStringLiteral("Next color"));
    FNext->setAccessibleName(FNext->toolTip());
    BuildPresets();
    LayOut();
    Listen();
    GradEditSelectionChanged();
}

QLineEdit* TGradientEditorFrame::AddEdit(const char16_t* objectName, const char16_t* accessibleName) {
    auto* edit = new QLineEdit(this);
    edit->setObjectName(QString::fromUtf16(objectName));
    edit->setAccessibleName(QString::fromUtf16(accessibleName));
    return edit;
}

QAbstractButton* TGradientEditorFrame::AddButton(const QString& text, const char16_t* objectName,
                                                 void (TGradientEditorFrame::*click)()) {
    auto* button = new QPushButton(text, this);
    button->setObjectName(QString::fromUtf16(objectName));
    GuardClick(button, [this, click] { (this->*click)(); });
    return button;
}

void TGradientEditorFrame::BuildPresets() {
    FPresets->setObjectName(QStringLiteral("btnPresets"));
    auto* menu = new TGradientMenu([this](const auto& gradient) { FGradEdit->SetGradient(gradient); }, this);
    menu->addSeparator();
    QAction* reverse = menu->AddEntry(QStringLiteral("&Reverse"), [this] { Reverse(); });
    connect(menu, &QMenu::aboutToShow, reverse, [this, reverse] { reverse->setEnabled(FGradEdit->GetCount() > 0); });
    FPresets->setMenu(menu);
}

void TGradientEditorFrame::LayOut() {
    auto* fields = new QHBoxLayout;
    const auto addLabel = [&](const QString& text, QWidget* buddy) {
        auto* label = new QLabel(text, this);
        label->setBuddy(buddy);
        fields->addWidget(label);
    };
    addLabel(QStringLiteral("Colo&r:"), FColor);
    fields->addWidget(FColor);
    addLabel(QStringLiteral("Loc&ation:"), FLocation);
    fields->addWidget(FLocation, 1);
    addLabel(QStringLiteral("%"), nullptr);
    addLabel(QStringLiteral("&Value:"), FValue);
    fields->addWidget(FValue, 1);
    fields->addWidget(FPresets);
    auto* commands = new QHBoxLayout;
    commands->setSpacing(CommandSpacing);
    for (QAbstractButton* button : {FPrevious, FNext, FDelete, FClear, FCopy, FPaste})
        commands->addWidget(button);
    commands->addStretch();
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(FGradEdit, 1);
    column->addLayout(fields);
    column->addLayout(commands);
    column->addStretch();
    LimitEditor();
}

// A higher bar shows no more, and each step of a drag paints all of it.
void TGradientEditorFrame::LimitEditor() {
    FGradEdit->setMaximumHeight(2 * FGradEdit->sizeHint().height());
}

void TGradientEditorFrame::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        LimitEditor();
}

void TGradientEditorFrame::Listen() {
    FGradEdit->SetOnSelectionChanged([this](TGradientEditor*) { GradEditSelectionChanged(); });
    FGradEdit->SetOnChanged([this](TGradientEditor* editor, const TGrabber&) {
        const TChanging changing(this, editor);
        UpdateGrabberValues(editor->GetSelected());
    });
    FGradEdit->SetOnQueryColor([this](TGradientEditor*, TColor32& color) { color = FColor->GetColor(); });
    FGradEdit->SetOnQueryGrabberColor([this](TGradientEditor*, TColor32& color) { QueryGrabberColor(color); });
    FColor->SetOnColorChanged([this](TColor32Button*) { shpColorChange(); });
    connect(FLocation, &QLineEdit::textChanged, this, [this] { GuardEvent(this, [this] { edLocChange(); }); });
    connect(FValue, &QLineEdit::textChanged, this, [this] { GuardEvent(this, [this] { edValChange(); }); });
}

void TGradientEditorFrame::SetValueRange(double low, double high) {
    FGradEdit->SetValueRange(low, high);
    const TChanging changing(this, nullptr);
    UpdateGrabberValues(FGradEdit->GetSelected());
}

void TGradientEditorFrame::GradEditSelectionChanged() {
    const TChanging changing(this, FGradEdit);
    const TGrabber selected = FGradEdit->GetSelected();
    FLocation->setEnabled(selected.IsValid());
    FValue->setEnabled(selected.IsValid());
    UpdateGrabberValues(selected);
}

void TGradientEditorFrame::UpdateGrabberValues(const TGrabber& grabber) {
    if (!grabber.IsValid())
        return;
    if (FChangingSource != FColor)
        FColor->SetColor(grabber.GetColor());
    if (FChangingSource != FLocation)
        FLocation->setText(Format(u"%.2f", {grabber.GetLocation() * 100.0}));
    if (FChangingSource != FValue)
        FValue->setText(Format(u"%.4f", {grabber.GetValue()}));
}

void TGradientEditorFrame::edLocChange() {
    TGrabber selected = FGradEdit->GetSelected();
    double number = 0;
    if (FIsChanging || !selected.IsValid() || !TryStrToFloat(FLocation->text(), number))
        return;
    const TChanging changing(this, FLocation);
    selected.SetLocation(number / 100.0);
}

void TGradientEditorFrame::edValChange() {
    TGrabber selected = FGradEdit->GetSelected();
    double number = 0;
    if (FIsChanging || !selected.IsValid() || !TryStrToFloat(FValue->text(), number))
        return;
    const TChanging changing(this, FValue);
    selected.SetValue(number);
}

void TGradientEditorFrame::shpColorChange() {
    const TChanging changing(this, FColor);
    FGradEdit->GetSelected().SetColor(FColor->GetColor());
}

// The choice begins opaque, whatever the stop is.
void TGradientEditorFrame::QueryGrabberColor(TColor32& color) {
    const std::shared_ptr<IColorChooser> chooser = FColorDialog; // this may end meanwhile
    chooser->SetColor(WinColor(color));
    if (chooser->Execute(window()))
        color = chooser->GetColor32();
}

void TGradientEditorFrame::btnPrevClick() {
    FGradEdit->SelectPrevGrabber();
}

void TGradientEditorFrame::btnNextClick() {
    FGradEdit->SelectNextGrabber();
}

void TGradientEditorFrame::btnDelClick() {
    FGradEdit->DeleteSelected();
}

void TGradientEditorFrame::btnClearClick() {
    FGradEdit->Clear();
}

void TGradientEditorFrame::btnCopyClick() {
    TClipboardEnvelope::SetText(ClipboardTag, FGradEdit->GetGradient()->ToString());
}

// Of stops at one place the last becomes the first, so that hard edges stay where they are.
void TGradientEditorFrame::Reverse() {
    std::vector<TColorStop> stops = FGradEdit->GetGradient()->GetColorStops();
    std::reverse(stops.begin(), stops.end());
    for (TColorStop& stop : stops)
        stop.Location = 1 - stop.Location;
    FGradEdit->SetGradient(TGradientFactory::GetObject(std::span<const TColorStop>(stops)));
}

// A damaged text raises before anything has changed.
void TGradientEditorFrame::btnPasteClick() {
    if (!TClipboardEnvelope::Contains(ClipboardTag))
        return;
    const auto gradient = TGradientFactory::GetObject();
    gradient->FromString(TClipboardEnvelope::GetText(ClipboardTag));
    FGradEdit->SetGradient(gradient);
}

} // namespace lmx
