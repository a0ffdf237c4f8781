#include <tests/Support/DialogChecks.h>

#include <lmx/Widgets/lmxModalDialog.h>
#include <tests/Support/WidgetPictures.h>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QAccessible>
#include <QApplication>
#include <QButtonGroup>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QMap>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabWidget>

#include <algorithm>

namespace lmx::tests {

namespace {

using TWidgets = std::vector<QWidget*>;

QString TextOf(const QWidget& widget) {
    if (const auto* label = qobject_cast<const QLabel*>(&widget))
        return label->text();
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget))
        return button->text();
    if (const auto* box = qobject_cast<const QGroupBox*>(&widget))
        return box->title();
    return {};
}

void SetTextOf(QWidget& widget, const QString& text) {
    if (auto* label = qobject_cast<QLabel*>(&widget))
        label->setText(text);
    else if (auto* button = qobject_cast<QAbstractButton*>(&widget))
        button->setText(text);
    else if (auto* box = qobject_cast<QGroupBox*>(&widget))
        box->setTitle(text);
}

QString NameOf(const QWidget& widget) {
    const QString name = widget.objectName().isEmpty() ? TextOf(widget) : widget.objectName();
    return name.isEmpty() ? QString::fromLatin1(widget.metaObject()->className()) : name;
}

/// Whether a widget is an inner part of a control of Qt's.
bool IsPart(const QWidget& widget) {
    for (const QWidget* above = widget.parentWidget(); above; above = above->parentWidget())
        if ((qobject_cast<const QAbstractScrollArea*>(above) && !qobject_cast<const QScrollArea*>(above)) ||
            qobject_cast<const QAbstractSpinBox*>(above) || qobject_cast<const QComboBox*>(above))
            return true;
    if (qobject_cast<const QScrollBar*>(&widget))
        return true;
    return widget.objectName().startsWith(QStringLiteral("qt_")) && !qobject_cast<const QTabBar*>(&widget);
}

TWidgets VisibleWidgets(const QWidget& form) {
    TWidgets widgets;
    for (QWidget* widget : form.findChildren<QWidget*>())
        if (widget->isVisible() && !widget->isWindow() && !IsPart(*widget))
            widgets.push_back(widget);
    return widgets;
}

/// A widget that the keyboard is meant to reach.
bool IsControl(const QWidget& widget) {
    return (widget.focusPolicy() & Qt::TabFocus) != 0 && !widget.focusProxy() && widget.isEnabled();
}

TWidgets Controls(const QWidget& form) {
    TWidgets controls;
    for (QWidget* widget : VisibleWidgets(form))
        if (IsControl(*widget))
            controls.push_back(widget);
    return controls;
}

/// What a widget has to lie in: the form, or what is scrolled in it.
const QWidget& GroundOf(const QWidget& form, const QWidget& widget) {
    for (const QWidget* above = widget.parentWidget(); above && above != &form; above = above->parentWidget())
        if (const auto* area = qobject_cast<const QScrollArea*>(above); area && area->widget()->isAncestorOf(&widget))
            return *area->widget();
    return form;
}

QRect PlaceIn(const QWidget& form, const QWidget& widget) {
    return {widget.mapTo(&form, QPoint(0, 0)), widget.size()};
}

// ---- Sizes

QSize LeastSize(const QWidget& widget) {
    const auto* label = qobject_cast<const QLabel*>(&widget);
    if (label && label->wordWrap())
        return {0, label->heightForWidth(label->width())};
    if (const auto* tabs = qobject_cast<const QTabBar*>(&widget)) // which may be scrolled, but need not
        return {tabs->tabRect(tabs->count() - 1).right() + 1, 0};
    return widget.minimumSizeHint();
}

QStringList NarrowTitles(const QAbstractItemView& list) {
    QStringList faults;
    const auto* header = list.findChild<QHeaderView*>();
    for (int column = 0; header && header->isVisible() && column < header->count(); ++column)
        if (header->sectionSize(column) < header->sectionSizeHint(column))
            faults.append(QStringLiteral("%1: the title of column %2 is cut off").arg(NameOf(list)).arg(column));
    return faults;
}

QStringList SizeFaults(const QWidget& form) {
    QStringList faults;
    const TWidgets widgets = VisibleWidgets(form);
    for (const QWidget* widget : widgets) {
        const QSize least = LeastSize(*widget);
        if (widget->width() < least.width() || widget->height() < least.height())
            faults.append(QStringLiteral("%1 is cut off").arg(NameOf(*widget)));
        const QWidget& ground = GroundOf(form, *widget);
        if (!ground.rect().contains(PlaceIn(ground, *widget)))
            faults.append(QStringLiteral("%1 lies outside").arg(NameOf(*widget)));
        if (const auto* list = qobject_cast<const QAbstractItemView*>(widget))
            faults += NarrowTitles(*list);
    }
    for (auto one = widgets.begin(); one != widgets.end(); ++one)
        for (auto other = one + 1; other != widgets.end(); ++other)
            if ((*one)->parentWidget() == (*other)->parentWidget() &&
                (*one)->geometry().intersects((*other)->geometry()))
                faults.append(QStringLiteral("%1 and %2 overlap").arg(NameOf(**one), NameOf(**other)));
    return faults;
}

// ---- Names

QStringList NameFaults(const QWidget& form) {
    QStringList faults;
    for (QWidget* control : Controls(form)) {
        QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(control);
        if (!accessible || accessible->text(QAccessible::Name).isEmpty())
            faults.append(QStringLiteral("%1 has no name for screen readers").arg(NameOf(*control)));
    }
    return faults;
}

// ---- The tab key

void FocusFirst(QWidget& form) {
    for (QWidget* next = form.nextInFocusChain(); next != &form; next = next->nextInFocusChain())
        if (next->isVisible() && IsControl(*next) && !IsPart(*next))
            return next->setFocus(Qt::TabFocusReason);
}

/// The control that a widget with the keyboard belongs to: a field in which a list is edited is the list's.
QWidget* ControlOf(QWidget* focused) {
    for (QWidget* above = focused; above && !above->isWindow(); above = above->parentWidget())
        if (qobject_cast<QAbstractItemView*>(above))
            return above;
    return focused;
}

/// The controls in the order in which the tab key comes to them. It may stop several times in a list.
TWidgets TabStops(QWidget& form) {
    constexpr int mostKeysInControl = 50;
    TWidgets stops;
    FocusFirst(form);
    for (int keys = 0; form.focusWidget() && keys < mostKeysInControl; ++keys) {
        QWidget* const stop = ControlOf(form.focusWidget());
        if (stops.empty() || stop != stops.back()) {
            if (std::find(stops.begin(), stops.end(), stop) != stops.end())
                break;
            stops.push_back(stop);
            keys = 0;
        }
        QTest::keyClick(form.focusWidget(), Qt::Key_Tab);
    }
    return stops;
}

bool ExcludeEachOther(const QWidget* one, const QWidget* other) {
    const auto* first = qobject_cast<const QAbstractButton*>(one);
    const auto* second = qobject_cast<const QAbstractButton*>(other);
    if (!first || !second || first->group() != second->group())
        return false;
    if (first->group())
        return first->group()->exclusive();
    return first->autoExclusive() && second->autoExclusive() && first->parentWidget() == second->parentWidget();
}

/// Whether `next` stands before `stop` for somebody who reads lines from left to right, or columns from top to bottom.
bool LeadsBack(const QRect& stop, const QRect& next) {
    const bool isAbove = next.bottom() < stop.top();
    const bool isBelow = next.top() > stop.bottom();
    const bool isLeft = next.right() < stop.left();
    return isAbove ? next.left() <= stop.right() : !isBelow && isLeft;
}

QStringList TabFaults(QWidget& form) {
    QStringList faults;
    const TWidgets stops = TabStops(form);
    for (const QWidget* control : Controls(form)) {
        const bool isReached = std::any_of(stops.begin(), stops.end(), [&](const QWidget* stop) {
            return stop == control || ExcludeEachOther(stop, control);
        });
        if (!isReached)
            faults.append(QStringLiteral("the tab key does not reach %1").arg(NameOf(*control)));
    }
    for (std::size_t i = 1; i < stops.size(); ++i)
        if (LeadsBack(PlaceIn(form, *stops[i - 1]), PlaceIn(form, *stops[i])))
            faults.append(
                QStringLiteral("the tab key leads back from %1 to %2").arg(NameOf(*stops[i - 1]), NameOf(*stops[i])));
    return faults;
}

// ---- Access keys

QStringList AccessKeyFaults(const QWidget& form) {
    QStringList faults;
    QMap<QString, QString> owners;
    const auto add = [&](const QString& text) {
        const QString key = QKeySequence::mnemonic(text).toString();
        if (key.isEmpty())
            return;
        if (owners.contains(key))
            faults.append(QStringLiteral("%1 is the key of \"%2\" and \"%3\"").arg(key, owners[key], text));
        owners.insert(key, text);
    };
    for (const QWidget* widget : VisibleWidgets(form)) {
        add(TextOf(*widget));
        if (const auto* tabs = qobject_cast<const QTabBar*>(widget))
            for (int i = 0; i < tabs->count(); ++i)
                add(tabs->tabText(i));
        const auto* label = qobject_cast<const QLabel*>(widget);
        if (label && !label->buddy() && !QKeySequence::mnemonic(label->text()).isEmpty())
            faults.append(QStringLiteral("\"%1\" leads nowhere").arg(label->text()));
    }
    return faults;
}

// ---- All of it

QStringList FaultsOfPage(QWidget& form) {
    for (int i = 0; i < 6; ++i) // the layout follows texts and pages by posted events, from the inside to the outside
        QCoreApplication::processEvents();
    return SizeFaults(form) + NameFaults(form) + AccessKeyFaults(form) + TabFaults(form);
}

void DoubleTexts(const QWidget& form) {
    for (QWidget* widget : form.findChildren<QWidget*>())
        if (const QString text = TextOf(*widget); !text.isEmpty())
            SetTextOf(*widget, text + QStringLiteral(" ") + QString(text).remove(u'&'));
}

/// The application's font at another size until the end of the scope.
class TFontSize {
public:
    explicit TFontSize(int points) {
        QFont font = FPrevious;
        font.setPointSize(points);
        QApplication::setFont(font);
    }
    ~TFontSize() { QApplication::setFont(FPrevious); }
    TFontSize(const TFontSize&) = delete;
    TFontSize& operator=(const TFontSize&) = delete;

private:
    QFont FPrevious = QApplication::font();
};

void ExpectEscapeToCancel(QWidget& form) {
    auto* dialog = dynamic_cast<TModalDialog*>(&form);
    if (!dialog)
        return;
    QTest::keyClick(dialog->focusWidget(), Qt::Key_Escape);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->GetModalResult(), TModalResult::mrCancel);
}

} // namespace

QStringList FaultsOf(QWidget& form) {
    ShowActive(form);
    QStringList faults = FaultsOfPage(form);
    for (auto* tabs : form.findChildren<QTabWidget*>())
        for (int page = 0; page < tabs->count(); ++page) {
            if (page == tabs->currentIndex())
                continue;
            tabs->setCurrentIndex(page);
            faults += FaultsOfPage(form);
        }
    faults.removeDuplicates();
    return faults;
}

void CheckForm(const std::function<std::unique_ptr<QWidget>()>& make, const QStringList& sharedKeys) {
    const auto faultsOf = [&sharedKeys](QWidget& form) {
        QStringList faults = FaultsOf(form);
        for (const QString& key : sharedKeys)
            faults.removeIf(
                [&key](const QString& fault) { return fault.startsWith(key + QStringLiteral(" is the ")); });
        return faults.join(u'\n').toStdString();
    };
    for (const int points : {9, 10, 11, 12, 13, 14}) {
        SCOPED_TRACE(points);
        const TFontSize size(points);
        const auto form = make();
        EXPECT_EQ(faultsOf(*form), "");
        ExpectEscapeToCancel(*form);
        const auto wordy = make();
        DoubleTexts(*wordy);
        EXPECT_EQ(faultsOf(*wordy), "") << "with texts twice as long";
    }
}

} // namespace lmx::tests
