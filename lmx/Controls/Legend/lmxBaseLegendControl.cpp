#include <lmx/Controls/Legend/lmxBaseLegendControl.h>

#include <lmx/Runtime/lmxNumberText.h>

#include <cstdint>

namespace lmx {

TBaseLegendControl::TBaseLegendControl(QWidget* parent, const QString& className) : QWidget(parent) {
    setObjectName(className + u'_' + IntToStr(static_cast<std::int64_t>(reinterpret_cast<std::intptr_t>(this))));
}

int TBaseLegendControl::GetSuggestedHeight() const {
    return 0;
}

} // namespace lmx
