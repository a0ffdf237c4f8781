#include <lmx/Widgets/lmxBaseToggleButton.h>

#include <lmx/Runtime/lmxExtended.h>

namespace lmx {

TBaseToggleButton::TBaseToggleButton(QWidget* parent) : TFlatButton(parent) {
    setCheckable(true);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

TPoint TBaseToggleButton::GetRenderPoint(TSize pictureSize) const {
    const auto middle = [](int room, int size) {
        return static_cast<std::int32_t>(Floor((static_cast<extended>(room) - size) / 2));
    };
    return {middle(width(), pictureSize.cx), middle(height(), pictureSize.cy)};
}

} // namespace lmx
