
#include <lmx/Widgets/lmxToggleButtonBar.h>

#include <QHBoxLayout>

namespace lmx {

TToggleButtonBar::TToggleButtonBar(QWidget* parent) : QWidget(parent), FLayout(new QHBoxLayout(this)) {
    FLayout->setContentsMargins(2, 2, 2, 2);
    FLayout->setSpacing(2);
    FLayout->addStretch();
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void TToggleButtonBar::AddButton(QAbstractButton* button) {
    FLayout->insertWidget(FLayout->count() - 1, button); // before the stretch
}

} // namespace lmx
