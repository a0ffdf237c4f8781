#include <lmx/Widgets/lmxColor32Button.h>

#include <lmx/Graphics/lmxColorText.h>
#include <lmx/Widgets/Private/lmxColorField.h>
#include <lmx/Widgets/Private/lmxDeviceGrid.h>
#include <lmx/Widgets/lmxColorChooser.h>
#include <lmx/Widgets/lmxEventGuard.h>

#include <QPainter>
#include <QPointer>
#include <QStyle>
#include <QStyleOptionButton>

#include <utility>

namespace lmx {

namespace {

constexpr int EdgeRoom = 6; // between the button's edges and the field

} // namespace

TColor32Button::TColor32Button(QWidget* parent) : QAbstractButton(parent) {
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAccessibleDescription(Color32ToString(FColor));
    GuardClick(this, [this] { SelectColor(); });
}

void TColor32Button::SetColor(TColor32 color) {
    if (color == FColor)
        return;
    FColor = color;
    setAccessibleDescription(Color32ToString(color));
    update();
}

void TColor32Button::SetColorChooser(std::shared_ptr<IColorChooser> chooser) {
    FChooser = std::move(chooser);
}

void TColor32Button::SelectColor() {
    const QPointer<TColor32Button> self(this); // it may go while the user chooses
    const auto chooser = FChooser ? FChooser : TColorChooserFactory::GetObject({TColorChooserDialogOption::coColor32});
    chooser->SetColor32(FColor);
    if (!chooser->Execute(window()) || !self)
        return;
    SetColor(chooser->GetColor32());
    FOnColorChanged(this);
}

QSize TColor32Button::sizeHint() const {
    const int height = fontMetrics().height() + 2 * EdgeRoom;
    return {height * 5 / 2, height};
}

void TColor32Button::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QStyleOptionButton face;
    face.initFrom(this);
    face.state |= isDown() ? QStyle::State_Sunken : QStyle::State_Raised;
    style()->drawControl(QStyle::CE_PushButton, &face, &painter, this);
    painter.setOpacity(isEnabled() ? 1 : 0.4);
    const QRect field = rect().adjusted(EdgeRoom, EdgeRoom, -EdgeRoom, -EdgeRoom);
    DrawImageOnGrid(painter, field.topLeft(),
                    RenderColorField(field.size(), devicePixelRatioF(), FColor,
                                     palette().color(QPalette::Active, QPalette::ButtonText)));
}

} // namespace lmx
