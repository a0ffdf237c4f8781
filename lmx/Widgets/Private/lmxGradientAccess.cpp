#include <lmx/Widgets/Private/lmxGradientAccess.h>

#include <lmx/Graphics/lmxColorText.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Widgets/Private/lmxGradientPicture.h>
#include <lmx/Widgets/lmxGradientEditor.h>

#include <QAccessibleWidget>

#include <algorithm>
#include <cmath>
#include <map>

namespace lmx {

namespace {

int IndexOf(const TGradientEditor& editor, TGradientStops::TId id) {
    const auto& order = editor.GetStops().GetOrder();
    const auto found = std::find(order.begin(), order.end(), id);
    return found == order.end() ? -1 : static_cast<int>(found - order.begin());
}

/// A stop.
class TStopAccess final : public QAccessibleInterface, public QAccessibleValueInterface {
public:
    TStopAccess(TGradientEditor* editor, TGradientStops::TId id) : FEditor(editor), FStop(editor, id) {}

    TGradientStops::TId GetId() const { return FStop.GetId(); }

    bool isValid() const override { return FStop.IsValid(); }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return FEditor ? FEditor->window()->windowHandle() : nullptr; }
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(FEditor.Get()); }
    QAccessibleInterface* child(int) const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::Slider; }
    void setText(QAccessible::Text, const QString&) override {}

    QString text(QAccessible::Text kind) const override {
        if (!isValid())
            return {};
        if (kind == QAccessible::Value)
            return AxisText(FStop.GetLocation() * 100, 0, 100) + QStringLiteral(" %, ") +
                   AxisText(FStop.GetValue(), FEditor->GetLowValue(), FEditor->GetHighValue());
        if (kind != QAccessible::Name)
            return {};
        return QStringLiteral("Color stop ") + IntToStr(IndexOf(*FEditor.Get(), GetId()) + 1) + QStringLiteral(" of ") +
               IntToStr(static_cast<std::int64_t>(FEditor->GetStops().GetOrder().size())) + QStringLiteral(", ") +
               Color32ToString(FStop.GetColor());
    }
    QRect rect() const override {
        const QRect place = isValid() ? FEditor->GrabberRect(FStop) : QRect();
        return place.isEmpty() ? place : QRect(FEditor->mapToGlobal(place.topLeft()), place.size());
    }
    QAccessible::State state() const override {
        QAccessible::State state;
        state.focusable = state.selectable = isValid();
        state.selected = isValid() && FEditor->GetSelected() == FStop;
        state.focused = state.selected && FEditor->hasFocus();
        state.invalid = !isValid();
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface*>(this) : nullptr;
    }
    QVariant currentValue() const override { return FStop.GetValue(); }
    void setCurrentValue(const QVariant& value) override { FStop.SetValue(qvariant_cast<double>(value)); }
    QVariant minimumValue() const override { return Ends().first; }
    QVariant maximumValue() const override { return Ends().second; }
    QVariant minimumStepSize() const override { return std::abs(Ends().second - Ends().first) / 1000; }

private:
    std::pair<double, double> Ends() const {
        return FEditor ? std::minmax({FEditor->GetLowValue(), FEditor->GetHighValue()}) : std::pair(0.0, 0.0);
    }

    TBorrowed<TGradientEditor> FEditor;
    mutable TGrabber FStop;
};

/// An editor, whose children are its stops by place.
// NOLINTNEXTLINE(cppcoreguidelines-virtual-class-destructor): Qt alone frees such objects
class TEditorAccess final : public QAccessibleWidget {
public:
    explicit TEditorAccess(TGradientEditor* editor)
        : QAccessibleWidget(editor, QAccessible::Grouping),
          FEditor(*editor) {}

    int childCount() const override { return static_cast<int>(FEditor.GetStops().GetOrder().size()); }
    QAccessibleInterface* child(int index) const override {
        return index < 0 || index >= childCount()
                   ? nullptr
                   : Access(FEditor.GetStops().GetOrder()[static_cast<std::size_t>(index)]);
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        const auto* stop = dynamic_cast<const TStopAccess*>(child);
        return stop ? IndexOf(FEditor, stop->GetId()) : -1;
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        for (int i = childCount() - 1; i >= 0; --i)
            if (child(i)->rect().contains(x, y))
                return child(i);
        return nullptr;
    }
    QAccessibleInterface* focusChild() const override {
        return FEditor.hasFocus() && FEditor.GetSelected().IsValid() ? Access(FEditor.GetSelected().GetId()) : nullptr;
    }

protected:
    ~TEditorAccess() override {
        for (const auto& [stop, access] : FAccess)
            QAccessible::deleteAccessibleInterface(access);
    }

private:
    QAccessibleInterface* Access(TGradientStops::TId id) const {
        const auto known = FAccess.find(id);
        if (known != FAccess.end())
            return QAccessible::accessibleInterface(known->second);
        auto* access = new TStopAccess(&FEditor, id);
        FAccess.emplace(id, QAccessible::registerAccessibleInterface(access));
        return access;
    }

    TGradientEditor& FEditor;
    mutable std::map<TGradientStops::TId, QAccessible::Id> FAccess;
};

QAccessibleInterface* MakeAccess(const QString&, QObject* object) {
    auto* editor = dynamic_cast<TGradientEditor*>(object);
    return editor ? new TEditorAccess(editor) : nullptr;
}

} // namespace

void InstallGradientAccess() {
    [[maybe_unused]] static const bool isInstalled = [] {
        QAccessible::installFactory(MakeAccess);
        return true;
    }();
}

void TellSelectedStop(TGradientEditor& editor) {
    const int index = IndexOf(editor, editor.GetSelected().GetId());
    if (!QAccessible::isActive() || index < 0 || !editor.hasFocus())
        return;
    QAccessibleEvent event(&editor, QAccessible::Focus);
    event.setChild(index);
    QAccessible::updateAccessibility(&event);
}

void TellChangedStop(TGradientEditor& editor, TGradientStops::TId id) {
    const int index = QAccessible::isActive() ? IndexOf(editor, id) : -1;
    if (index < 0)
        return;
    QAccessibleValueChangeEvent event(&editor, TGrabber(&editor, id).GetValue());
    event.setChild(index);
    QAccessible::updateAccessibility(&event);
}

} // namespace lmx
