#pragma once

#include <lmx/Dialogs/lmxLayerPropertiesDialog.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <lmx/Widgets/lmxDrawnListView.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/WidgetPictures.h>

#include <QApplication>
#include <QPushButton>

#include <functional>
#include <memory>

// What tests of property pages have in common.

namespace lmx::tests {

/// The point of numbers as the present settings write it.
inline QString Local(QString text) {
    return text.replace(u'.', TFormatSettings::Current().DecimalSeparator);
}

template<class Widget>
Widget& Find(const QWidget& in, const char* name) {
    auto* found = in.findChild<Widget*>(QString::fromLatin1(name));
    if (!found)
        throw Exception(QStringLiteral("no widget ") + QString::fromLatin1(name));
    return *found;
}

inline void Click(const QWidget& in, const char* button) {
    QTest::mouseClick(&Find<QAbstractButton>(in, button), Qt::LeftButton);
}

/// What a list says, a line for each row, with bars between the columns.
inline QStringList TextsOf(const TDrawnListView& list) {
    QStringList rows;
    const QAbstractItemModel& model = *list.model();
    for (int row = 0; row < model.rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < model.columnCount(); ++column)
            cells.append(model.index(row, column).data().toString());
        rows.append(cells.join(u'|'));
    }
    return rows;
}

inline QStringList TitlesOf(const TDrawnListView& list) {
    QStringList titles;
    for (int column = 0; column < list.model()->columnCount(); ++column)
        titles.append(list.model()->headerData(column, Qt::Horizontal).toString());
    return titles;
}

/// Clicks on a row with the mouse, which must be in sight.
inline void ClickRow(TDrawnListView& list, int row, Qt::KeyboardModifiers keys = {}) {
    QTest::mouseClick(list.viewport(), Qt::LeftButton, keys, {10, list.RowRect(row).center().y()});
}

inline void DoubleClickRow(TDrawnListView& list, int row) {
    ClickRow(list, row);
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, {10, list.RowRect(row).center().y()});
}

inline TDrawnListView& PagesOf(const TLayerPropertiesDialog& dialog) {
    return Find<TDrawnListView>(dialog, "lvPages");
}

inline QStringList PageNamesOf(const TLayerPropertiesDialog& dialog) {
    return TextsOf(PagesOf(dialog));
}

/// The frame of the page of that name, whether it has been seen or not.
inline QWidget& FrameOf(const TLayerPropertiesDialog& dialog, const QString& page) {
    for (const TOptionFrame* frame : dialog.GetOptionFrames())
        if (frame->GetName() == page)
            return *frame->GetFrame();
    throw Exception(QStringLiteral("no page ") + page);
}

/// A page that does what it is told.
class TTestPage final : public TOptionFrame {
public:
    explicit TTestPage(const QString& name, std::function<void()> apply = {})
        : TOptionFrame(name),
          FFrame(new QWidget),
          FApply(std::move(apply)) {
        TakeFrame(FFrame);
        FFrame->setObjectName(name);
    }
    QWidget* GetFrame() const override { return FFrame; }
    void Apply() override {
        if (FApply)
            FApply();
    }

private:
    QPointer<QWidget> FFrame;
    std::function<void()> FApply;
};

} // namespace lmx::tests
