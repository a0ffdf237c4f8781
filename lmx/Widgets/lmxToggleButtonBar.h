#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <QAbstractButton>
#include <QWidget>

QT_BEGIN_NAMESPACE
class QHBoxLayout;
QT_END_NAMESPACE

namespace lmx {

/// A bar that stands its buttons side by side from the left, in the order in which they were added, which is also the
/// order of the tab key. It is as high as its highest button.
class LMX_EXPORT TToggleButtonBar : public QWidget {
public:
    explicit TToggleButtonBar(QWidget* parent = nullptr);

    /// Takes the button in; the bar owns it from now on.
    void AddButton(QAbstractButton* button);

private:
    QHBoxLayout* FLayout;
};

} // namespace lmx
