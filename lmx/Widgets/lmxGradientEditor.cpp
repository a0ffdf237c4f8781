#include <lmx/Widgets/lmxGradientEditor.h>

#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Widgets/Private/lmxGradientAccess.h>
#include <lmx/Widgets/Private/lmxGradientEditorPicture.h>
#include <lmx/Widgets/lmxColorChooser.h>
#include <lmx/Widgets/lmxEventGuard.h>

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleHints>

#include <cmath>

namespace lmx {

namespace {

constexpr double KeyStep = 0.01;
constexpr double SmallKeyStep = 0.001;
constexpr double KeyGrid = 1e9;     ///< moves by keys stay on decimal fractions
constexpr double AwayDistance = 30; ///< from the editor, in logical pixels, where a dragged stop is deleted
constexpr QSize LeastSize{120, 0};
constexpr QSize GoodSize{360, 24}; ///< wide, and more than the least height

} // namespace

TGrabber::TGrabber(TGradientEditor* editor, TGradientStops::TId id) : FEditor(editor), FId(id) {}

bool TGrabber::IsValid() const {
    return FEditor && FEditor->FStops.Has(FId);
}

double TGrabber::GetLocation() const {
    return FEditor ? FEditor->FStops.Get(FId).Location : 0;
}

void TGrabber::SetLocation(double location) {
    if (TGradientEditor* const editor = FEditor.Get())
        editor->Change(FId, [&] { editor->FStops.SetLocation(FId, location); });
}

double TGrabber::GetValue() const {
    return IsValid() ? FEditor->ValueAt(GetLocation()) : 0;
}

void TGrabber::SetValue(double value) {
    if (FEditor && FEditor->GetHighValue() != FEditor->GetLowValue())
        SetLocation((value - FEditor->GetLowValue()) / (FEditor->GetHighValue() - FEditor->GetLowValue()));
}

TColor32 TGrabber::GetColor() const {
    return FEditor ? FEditor->FStops.Get(FId).Color : 0;
}

void TGrabber::SetColor(TColor32 color) {
    if (TGradientEditor* const editor = FEditor.Get())
        editor->Change(FId, [&] { editor->FStops.SetColor(FId, color); });
}

TGradientEditor::TGradientEditor(QWidget* parent)
    : QWidget(parent),
      FPicture(std::make_unique<TGradientEditorPicture>(*this)) {
    InstallGradientAccess();
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    setAccessibleName(QStringLiteral("Gradient"));
}

TGradientEditor::~TGradientEditor() = default;

// Tells of what has become different, the selection first. `id` is looked at when the work is done.
template<class Work>
void TGradientEditor::Change(const TGradientStops::TId& id, Work&& work) {
    const std::uint64_t change = FStops.GetChangeCount();
    const TGradientStops::TId selected = FStops.GetSelected();
    work();
    const TGradientStops::TId changed = id;
    update();
    const TBorrowed self(this);
    if (FStops.GetSelected() != selected) {
        TellSelectedStop(*this);
        FOnSelectionChanged(this);
    }
    if (!self || FStops.GetChangeCount() == change)
        return;
    TellChangedStop(*this, changed);
    FOnChanged(this, TGrabber(this, changed));
}

// ---- The gradient

std::shared_ptr<IGradient> TGradientEditor::GetGradient() const {
    return TGradientFactory::GetObject(std::span<const TColorStop>(FStops.GetStops()));
}

void TGradientEditor::SetGradient(const std::shared_ptr<IGradient>& gradient) {
    if (!gradient)
        throw EExArgumentNilException(QStringLiteral("TGradientEditor.SetGradient"), QStringLiteral("gradient"));
    const std::vector<TColorStop> stops = gradient->GetColorStops();
    Change(TGradientStops::None, [&] { FStops.SetStops(stops); });
}

void TGradientEditor::SetValueRange(double low, double high) {
    FLow = low;
    FHigh = high;
    update();
}

double TGradientEditor::ValueAt(double location) const {
    return location == 1 ? FHigh : FLow + location * (FHigh - FLow);
}

TGrabber TGradientEditor::Add(TColor32 color, double location) {
    const TBorrowed self(this);
    TGradientStops::TId id = TGradientStops::None;
    Change(id, [&] { id = FStops.Add({location, color}); });
    return {self.Get(), id};
}

void TGradientEditor::Clear() {
    Change(TGradientStops::None, [this] { FStops.Clear(); });
}

// ---- Selection

TGrabber TGradientEditor::GetSelected() const {
    return {const_cast<TGradientEditor*>(this), FStops.GetSelected()};
}

void TGradientEditor::Select(const TGrabber& grabber) {
    Change(TGradientStops::None, [&] { FStops.Select(grabber.GetId()); });
}

void TGradientEditor::SelectPrevGrabber() {
    Change(TGradientStops::None, [this] {
        const TGradientStops::TId selected = FStops.GetSelected();
        const TGradientStops::TId to = FStops.Has(selected) ? FStops.GetPrevious(selected) : FStops.GetFirst();
        if (to != TGradientStops::None)
            FStops.Select(to);
    });
}

void TGradientEditor::SelectNextGrabber() {
    Change(TGradientStops::None, [this] {
        const TGradientStops::TId selected = FStops.GetSelected();
        const TGradientStops::TId to = FStops.Has(selected) ? FStops.GetNext(selected) : FStops.GetFirst();
        if (to != TGradientStops::None)
            FStops.Select(to);
    });
}

void TGradientEditor::DeleteSelected() {
    Change(TGradientStops::None, [this] { FStops.Remove(FStops.GetSelected()); });
}

void TGradientEditor::Undo() {
    Change(TGradientStops::None, [this] { FStops.Undo(); });
}

void TGradientEditor::Redo() {
    Change(TGradientStops::None, [this] { FStops.Redo(); });
}

void TGradientEditor::ForgetChanges() {
    FStops.ForgetChanges();
}

void TGradientEditor::SetOptions(const TGradientEditorOptions& options) {
    FOptions = options;
    updateGeometry();
    update();
}

// ---- What the user does

void TGradientEditor::Move(double by) {
    const TGradientStops::TId id = FStops.GetSelected();
    if (!FStops.Has(id))
        return SelectNextGrabber();
    const double to = std::nearbyint((FStops.Get(id).Location + by) * KeyGrid) / KeyGrid;
    Change(id, [&] { FStops.SetLocation(id, to); });
}

// The handler may be a host's form that asks its user, and end this editor.
void TGradientEditor::AddAt(double location) {
    const double place = std::clamp(location, 0.0, 1.0);
    TColor32 color = FStops.GetOrder().empty() ? clWhite32 : GetGradient()->GetColor(place);
    const TBorrowed self(this);
    FOnQueryColor(this, color);
    if (!self)
        return;
    TGradientStops::TId id = TGradientStops::None;
    Change(id, [&] {
        id = FStops.Add({place, color});
        FStops.Select(id);
    });
}

// Halfway to the next stop, or to the end of the bar.
void TGradientEditor::AddBesideSelected() {
    const TGradientStops::TId id = FStops.GetSelected();
    if (!FStops.Has(id))
        return AddAt(0.5);
    const TGradientStops::TId next = FStops.GetNext(id);
    AddAt((FStops.Get(id).Location + (next == TGradientStops::None ? 1 : FStops.Get(next).Location)) / 2);
}

void TGradientEditor::AskForColor() {
    TGrabber selected = GetSelected();
    if (!selected.IsValid())
        return;
    TColor32 color = selected.GetColor();
    const TBorrowed self(this);
    if (FOnQueryGrabberColor) {
        FOnQueryGrabberColor(this, color);
    } else {
        const auto chooser = TColorChooserFactory::GetObject({TColorChooserDialogOption::coColor32});
        chooser->SetColor32(color);
        if (chooser->Execute(window()))
            color = chooser->GetColor32();
    }
    if (self)
        selected.SetColor(color);
}

QRect TGradientEditor::BarRect() const {
    return FPicture->BarRect();
}

QRect TGradientEditor::GrabberRect(const TGrabber& grabber) const {
    if (!FStops.Has(grabber.GetId()) || !std::isfinite(grabber.GetLocation()))
        return {};
    return FPicture->GrabberRect(grabber.GetLocation()).toAlignedRect();
}

// The selected stop stands before all others, and of the rest the nearest one, the last of those at one place.
TGradientStops::TId TGradientEditor::StopAt(QPointF place) const {
    if (!FOptions.Contains(TGradientEditorOption::geoShowGrabbers))
        return TGradientStops::None;
    const QRectF any = FPicture->GrabberRect(0);
    if (place.y() < any.top() || place.y() > any.bottom())
        return TGradientStops::None;
    double best = any.width() / 2;
    TGradientStops::TId found = TGradientStops::None;
    const double left = FPicture->XAt(0);
    const double span = FPicture->XAt(1) - left;
    for (const TGradientStops::TId id : FStops.GetOrder()) {
        const double x = left + std::clamp(FStops.Get(id).Location, 0.0, 1.0) * span;
        const double distance = std::abs(x - place.x());
        if (id == FStops.GetSelected() && distance <= any.width() / 2)
            return id;
        if (distance > best)
            continue;
        best = distance;
        found = id;
    }
    return found;
}

void TGradientEditor::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || FDrag)
        return;
    const QPointF place = event->position();
    const TGradientStops::TId id = StopAt(place);
    if (id == TGradientStops::None)
        return;
    FDrag = TDrag{id, place.x() - FPicture->XAt(FStops.Get(id).Location), place};
    GuardEvent(this, [&] {
        const TBorrowed self(this);
        Select(TGrabber(this, id));
        if (self && FDrag)
            FStops.BeginChange();
    });
}

void TGradientEditor::mouseMoveEvent(QMouseEvent* event) {
    const QPointF place = event->position();
    if (FDrag && !event->buttons().testFlag(Qt::LeftButton))
        EndDrag(true); // the button was let go where nobody could tell
    if (!FDrag) {
        setCursor(StopAt(place) == TGradientStops::None ? Qt::ArrowCursor : Qt::SizeHorCursor);
        return;
    }
    if (!FDrag->IsMoving &&
        2 * (place - FDrag->Start).manhattanLength() < QGuiApplication::styleHints()->startDragDistance())
        return; // a hand that trembles moves nothing
    FDrag->IsMoving = true;
    GuardEvent(this, [&] { DragTo(place); });
}

void TGradientEditor::DragTo(QPointF place) {
    const TDrag drag = *FDrag;
    const bool isAway = place.y() < -AwayDistance || place.y() > height() + AwayDistance;
    setCursor(isAway ? Qt::ForbiddenCursor : Qt::SizeHorCursor);
    FDrag->IsAway = isAway;
    Change(drag.Id, [&] {
        if (isAway && !drag.IsAway) {
            FStops.Remove(drag.Id);
            FStops.Select(TGradientStops::None);
        } else if (!isAway) {
            if (drag.IsAway)
                FStops.RestartChange();
            FStops.SetLocation(drag.Id, FPicture->LocationAt(place.x() - drag.Offset));
        }
    });
}

void TGradientEditor::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && FDrag)
        GuardEvent(this, [this] { EndDrag(true); });
}

void TGradientEditor::EndDrag(bool keep) {
    FDrag.reset();
    setCursor(Qt::ArrowCursor);
    if (keep)
        return FStops.EndChange();
    Change(TGradientStops::None, [this] { FStops.CancelChange(); });
}

void TGradientEditor::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    const QPointF place = event->position();
    const TGradientStops::TId id = StopAt(place);
    GuardEvent(this, [&] {
        if (id != TGradientStops::None)
            AskForColor();
        else if (FOptions.Contains(TGradientEditorOption::geoAddOnDblClick))
            AddAt(FPicture->LocationAt(place.x()));
    });
}

bool TGradientEditor::HandleKey(const QKeyEvent& event) {
    if (event.matches(QKeySequence::Undo))
        return Undo(), true;
    if (event.matches(QKeySequence::Redo))
        return Redo(), true;
    if ((event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) != 0)
        return false;
    const double step = event.modifiers().testFlag(Qt::ShiftModifier) ? SmallKeyStep : KeyStep;
    switch (event.key()) {
    case Qt::Key_Left:
    case Qt::Key_Down:
        return Move(-step), true;
    case Qt::Key_Right:
    case Qt::Key_Up:
        return Move(step), true;
    case Qt::Key_Home:
        return GetSelected().SetLocation(0), true;
    case Qt::Key_End:
        return GetSelected().SetLocation(1), true;
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
        return DeleteSelected(), true;
    case Qt::Key_Insert:
        return AddBesideSelected(), true;
    case Qt::Key_Space:
        return AskForColor(), true;
    case Qt::Key_Escape:
        return FDrag && (EndDrag(false), true);
    default:
        return false;
    }
}

// While a stop is dragged only Escape counts: the change that goes on is the mouse's.
void TGradientEditor::keyPressEvent(QKeyEvent* event) {
    bool isHandled = FDrag && event->key() != Qt::Key_Escape;
    if (!isHandled)
        GuardEvent(this, [&] {
            isHandled = true; // also if it raises
            isHandled = HandleKey(*event);
        });
    event->setAccepted(isHandled);
}

bool TGradientEditor::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        const auto& key = *static_cast<QKeyEvent*>(event);
        if (key.matches(QKeySequence::Undo) || key.matches(QKeySequence::Redo) || key.key() == Qt::Key_Delete ||
            (key.key() == Qt::Key_Escape && FDrag)) {
            event->accept(); // not a shortcut of the window's
            return true;
        }
    }
    return QWidget::event(event);
}

void TGradientEditor::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    GuardEvent(this, [&] {
        Change(TGradientStops::None, [&] {
            if (event->reason() == Qt::TabFocusReason)
                FStops.Select(FStops.GetFirst());
            else if (event->reason() == Qt::BacktabFocusReason)
                FStops.Select(FStops.GetLast());
        });
    });
}

void TGradientEditor::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    update();
}

bool TGradientEditor::focusNextPrevChild(bool next) {
    const TGradientStops::TId selected = FStops.GetSelected();
    const bool isEntered = FStops.Has(selected);
    const TGradientStops::TId to = !isEntered ? (next ? FStops.GetFirst() : TGradientStops::None)
                                   : next     ? FStops.GetNext(selected)
                                              : FStops.GetPrevious(selected);
    if (to == TGradientStops::None)
        return QWidget::focusNextPrevChild(next);
    GuardEvent(this, [&] { Select(TGrabber(this, to)); });
    return true;
}

// ---- What it looks like

QSize TGradientEditor::sizeHint() const {
    return {GoodSize.width(), FPicture->LeastHeight() + GoodSize.height()};
}

QSize TGradientEditor::minimumSizeHint() const {
    return {LeastSize.width(), FPicture->LeastHeight()};
}

void TGradientEditor::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    FPicture->Paint(painter);
}

void TGradientEditor::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        updateGeometry();
}

} // namespace lmx
