#include <lmx/Dialogs/Private/lmxBoundsPanel.h>

#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Runtime/lmxFormat.h>

#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFrame>
#include <QVBoxLayout>

#include <algorithm>

namespace lmx {

namespace {

/// An edge of the area: what it is called above its value.
QWidget* EdgeField(const QString& name, const QString& objectName, extended value, QWidget* parent) {
    auto* field = new QWidget(parent);
    field->setAutoFillBackground(true); // the lines of the cross end here
    auto* edit = new TReadOnlyEdit(Format(u"%.3f", {value}), field);
    edit->setObjectName(objectName);
    edit->setAccessibleName(name);
    auto* column = new QVBoxLayout(field);
    column->setContentsMargins(6, 6, 6, 6);
    column->addWidget(new QLabel(name, field));
    column->addWidget(edit);
    return field;
}

} // namespace

TReadOnlyEdit::TReadOnlyEdit(const QString& text, QWidget* parent) : QLineEdit(text, parent) {
    setReadOnly(true);
    setCursorPosition(0);
}

QSize TReadOnlyEdit::sizeHint() const {
    constexpr int leastDigits = 12;
    constexpr int room = 12; // between the text and the frame, and for the cursor
    const QFontMetrics metrics = fontMetrics();
    const int text =
        std::max(metrics.horizontalAdvance(this->text()), leastDigits * metrics.horizontalAdvance(QLatin1Char('0')));
    QStyleOptionFrame option;
    initStyleOption(&option);
    return style()
        ->sizeFromContents(QStyle::CT_LineEdit, &option, {text + room, QLineEdit::sizeHint().height()}, this)
        .boundedTo({QWIDGETSIZE_MAX, QLineEdit::sizeHint().height()});
}

// In the order of the tab key, which is that of reading.
TBoundsPanel::TBoundsPanel(const TMapArea& area, QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("pnBoundsPanel"));
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->addWidget(EdgeField(QStringLiteral("Top"), QStringLiteral("edTop"), area.Top, this), 0, 1);
    grid->addWidget(EdgeField(QStringLiteral("Left"), QStringLiteral("edLeft"), area.Left, this), 1, 0);
    grid->addWidget(EdgeField(QStringLiteral("Right"), QStringLiteral("edRight"), area.Right, this), 1, 2);
    grid->addWidget(EdgeField(QStringLiteral("Bottom"), QStringLiteral("edBottom"), area.Bottom, this), 2, 1);
}

void TBoundsPanel::paintEvent(QPaintEvent*) {
    QPainter canvas(this);
    const QColor line = QColor::fromRgb(Color32(clBtnShadow));
    canvas.fillRect(0, height() / 2, width(), 1, line);
    canvas.fillRect(width() / 2, 0, 1, height(), line);
}

TBoundsContainerPanel::TBoundsContainerPanel(const TMapArea& area, QWidget* parent)
    : QWidget(parent),
      FPanel(new TBoundsPanel(area, this)) {
    setObjectName(QStringLiteral("pnBoundsContainerPanel"));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

bool TBoundsContainerPanel::event(QEvent* event) {
    if (event->type() == QEvent::LayoutRequest) { // the panel needs another size
        updateGeometry();
        PlacePanel();
    }
    return QWidget::event(event);
}

void TBoundsContainerPanel::resizeEvent(QResizeEvent*) {
    PlacePanel();
}

void TBoundsContainerPanel::PlacePanel() {
    const QSize size = FPanel->sizeHint();
    FPanel->setGeometry(width() / 2 - size.width() / 2, 0, size.width(), size.height());
}

} // namespace lmx
