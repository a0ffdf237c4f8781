// The entries of the view's context menu, and the debug handlers that a host may add to it.

#include <lmx/Controls/lmxMapViewControl.h>

#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxFormat.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Runtime/lmxText.h>
#include <lmx/Widgets/Private/lmxWidgetMenu.h>
#include <lmx/Widgets/lmxClipboard.h>
#include <lmx/Widgets/lmxColorChooser.h>
#include <lmx/Widgets/lmxInputBox.h>

#include <QAction>

namespace lmx {

QAction* TMapViewControl::AddPopupMenuItem(const QString& caption, std::function<void()> click) {
    const bool isSeparator = caption == u'-';
    auto* item = new QAction(isSeparator ? QString() : caption, FPopupMenu); // a style may write it beside the line
    item->setSeparator(isSeparator);
    if (click)
        static_cast<TWidgetMenu*>(FPopupMenu)->SetWork(item, std::move(click)); // it was made as one
    FPopupMenu->addAction(item);
    return item;
}

void TMapViewControl::PopupMenu_ChangeBackgroundColor_Click() {
    const auto chooser = TColorChooserFactory::GetObject();
    chooser->SetColor(WinColor(FBackgroundColor));
    const TBorrowed self(this); // the view may be closed while somebody chooses
    if (!chooser->Execute(this) || !self)
        return;
    FBackgroundColor = Color32(chooser->GetColor());
    RepaintMap();
}

void TMapViewControl::PopupMenu_ToggleCheckerboard_Click() {
    SetShowCheckerboard(!FShowCheckerboard);
}

void TMapViewControl::PopupMenu_DbgCopyData() {
    const TWorldViewport& viewport = RequireViewport();
    const TPoint translation = viewport.GetTranslation();
    const TSize size = viewport.GetViewSize();
    const IWorldSystem& system = *FWorld->GetWorldSystem();
    const QStringList lines = {
        Format(QStringLiteral("Scale:\t%f"), {viewport.GetScale()}),
        Format(QStringLiteral("Translation:\t%d, %d"), {translation.X, translation.Y}),
        Format(QStringLiteral("View size:\t%d, %d"), {size.cx, size.cy}),
        Format(QStringLiteral("Center:\t%s"), {viewport.GetCenter().ToString()}),
        Format(QStringLiteral("Visible area:\t%s"), {viewport.GetVisibleMapArea().ToString()}),
        QString(),
        Format(QStringLiteral("WorldSystem:\t%s"), {system.Name()}),
        Format(QStringLiteral("Area:\t%s"), {system.Area().ToString()}),
        Format(QStringLiteral("Width:\t%f"), {system.Area().GetWidth()}),
        Format(QStringLiteral("Height\t%f"), {system.Area().GetHeight()}),
    };
    QString text;
    for (const QString& line : lines)
        text += line + LineBreak();
    TClipboard::SetAsText(text);
}

void TMapViewControl::PopupMenu_DbgTranslation() {
    const TPoint translation = RequireViewport().GetTranslation();
    const QString present = Format(QStringLiteral("%d,%d"), {translation.X, translation.Y});
    const TBorrowed self(this); // the view may be closed while somebody types
    const QString text = InputBox(QStringLiteral("Translation"), QStringLiteral("Translation:"), present);
    if (!self || text == present)
        return;
    const QStringList pieces = Split(text, u',');
    const TPoint wanted(StrToInt(pieces.value(0)), StrToInt(pieces.value(1))); // an absent piece is no number either
    RequireViewport().SetTranslation(wanted);
}

void TMapViewControl::PopupMenu_DbgZoomScale() {
    const QString present = FloatToStr(RequireViewport().GetScale()); // an unchanged text keeps the scale's last digits
    const TBorrowed self(this);
    const QString text = InputBox(QStringLiteral("Zoom Scale"), QStringLiteral("Zoom scale:"), present);
    if (self && text != present)
        RequireViewport().SetScale(StrToFloat(text));
}

} // namespace lmx
