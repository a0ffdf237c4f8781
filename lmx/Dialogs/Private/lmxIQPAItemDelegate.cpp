#include <lmx/Dialogs/Private/lmxIQPAItemDelegate.h>

#include <lmx/Dialogs/Private/lmxIQPAItems.h>
#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Widgets/Private/lmxColorField.h>
#include <lmx/Widgets/Private/lmxDeviceGrid.h>

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QStyleOptionButton>
#include <QStyleOptionFrame>

#include <algorithm>
#include <array>

namespace lmx {

namespace {

constexpr int LeastHeight = 24;
constexpr int FieldGap = 2; ///< between a field and the next column
constexpr std::array<const char16_t*, 3> FieldNames = {u"FXEdit", u"FYEdit", u"FLabelEdit"};

QRect FieldRect(const QRect& cell) {
    return cell.adjusted(0, 1, -FieldGap, 0);
}

/// What options of every kind have in common.
void TakeCommon(QStyleOption& target, const QStyleOption& source) {
    target = source;
}

void DrawField(QPainter& painter, const QStyleOptionViewItem& option, const QString& text) {
    QStyleOptionFrame frame;
    TakeCommon(frame, option);
    frame.rect = FieldRect(option.rect);
    frame.state = QStyle::State_Enabled | QStyle::State_Sunken;
    const QStyle& style = *option.widget->style();
    frame.lineWidth = style.pixelMetric(QStyle::PM_DefaultFrameWidth, &frame, option.widget);
    style.drawPrimitive(QStyle::PE_PanelLineEdit, &frame, &painter, option.widget);
    const int margin = frame.lineWidth + 2; // as an edit has it
    const QRect room = frame.rect.adjusted(margin, 0, -margin, 0);
    painter.setClipRect(room);
    painter.setPen(option.palette.color(QPalette::Active, QPalette::Text));
    painter.drawText(room, Qt::TextSingleLine | Qt::AlignVCenter, text);
}

QRect ColorRect(const QRect& cell) {
    const int side = std::min(cell.height() - 4, cell.width() - 2);
    QRect square(0, 0, side, side);
    square.moveCenter(cell.center());
    return square;
}

void DrawFocusMark(QPainter& painter, const QStyleOptionViewItem& option, const QRect& rect) {
    QStyleOptionFocusRect mark;
    TakeCommon(mark, option);
    mark.rect = rect;
    mark.backgroundColor = option.palette.color(QPalette::Window);
    option.widget->style()->drawPrimitive(QStyle::PE_FrameFocusRect, &mark, &painter, option.widget);
}

void DrawButton(QPainter& painter, const QStyleOptionViewItem& option, const QString& text, bool isPressed) {
    QStyleOptionButton button;
    TakeCommon(button, option);
    button.rect = option.rect.adjusted(0, 0, -1, -1);
    button.text = text;
    button.state = QStyle::State_Enabled | (isPressed ? QStyle::State_Sunken : QStyle::State_Raised) |
                   (option.state & QStyle::State_HasFocus);
    option.widget->style()->drawControl(QStyle::CE_PushButton, &button, &painter, option.widget);
}

} // namespace

int TIQPAItemDelegate::RowHeight(const QWidget& table) {
    QLineEdit edit;
    edit.setFont(table.font());
    return std::max(LeastHeight, edit.sizeHint().height() + 2);
}

int TIQPAItemDelegate::RemoveWidth(const QWidget& table) {
    QPushButton button(QStringLiteral("Remove"));
    button.setFont(table.font());
    return button.sizeHint().width() + 1;
}

void TIQPAItemDelegate::paint(QPainter* painter, const QStyleOptionViewItem& given, const QModelIndex& index) const {
    QStyleOptionViewItem option = given;
    const auto* view = static_cast<const QAbstractItemView*>(given.widget);
    option.state.setFlag(QStyle::State_HasFocus, view->hasFocus() && view->currentIndex() == index);
    const QString text = index.data(Qt::DisplayRole).toString();
    painter->save();
    if (index.column() == TIQPAItems::clRemove) {
        DrawButton(*painter, option, text, FPressed == index);
    } else if (index.column() == TIQPAItems::clColor) {
        const QRect square = ColorRect(option.rect);
        const TColor32 color = Color32(
            static_cast<const TIQPAItems*>(index.model())->GetItems()[static_cast<std::size_t>(index.row())].Color);
        DrawImageOnGrid(*painter, square.topLeft(),
                        RenderColorField(square.size(), painter->device()->devicePixelRatioF(), color,
                                         option.palette.color(QPalette::WindowText)));
        if (option.state.testFlag(QStyle::State_HasFocus))
            DrawFocusMark(*painter, option, option.rect.adjusted(1, 1, -1, -1));
    } else {
        DrawField(*painter, option, text);
    }
    painter->restore();
}

QWidget* TIQPAItemDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&, const QModelIndex& index) const {
    auto* edit = new QLineEdit(parent);
    edit->setObjectName(QString::fromUtf16(FieldNames[static_cast<std::size_t>(index.column())]));
    edit->setAccessibleName(index.model()->headerData(index.column(), Qt::Horizontal, Qt::DisplayRole).toString());
    auto* self = const_cast<TIQPAItemDelegate*>(this); // Qt asks a constant delegate for an editor that signals by it
    connect(edit, &QLineEdit::textEdited, self, [self, edit] { Q_EMIT self->commitData(edit); });
    return edit;
}

// A text that the field has already would move its cursor to the end.
void TIQPAItemDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
    auto* edit = static_cast<QLineEdit*>(editor);
    const QString text = index.data(Qt::EditRole).toString();
    if (edit->text() != text)
        edit->setText(text);
}

void TIQPAItemDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                             const QModelIndex&) const {
    editor->setGeometry(FieldRect(option.rect));
}

bool TIQPAItemDelegate::eventFilter(QObject* editor, QEvent* event) {
    if (event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride) {
        const int key = static_cast<const QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Escape)
            return false;
        const auto* view = static_cast<const QAbstractItemView*>(parent());
        if (key == Qt::Key_Backtab && view->currentIndex() == view->model()->index(0, 0))
            return false;
    }
    return QStyledItemDelegate::eventFilter(editor, event);
}

} // namespace lmx
