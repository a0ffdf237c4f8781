#pragma once

#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Widgets/Private/lmxWidgetMenu.h>

#include <functional>
#include <memory>

namespace lmx {

/// The scales of TColorPack in a menu for each group, as swatches with names; what is chosen is handed over as a
/// gradient. They come before what else is in the menu, when it is first shown.
class TGradientMenu final : public TWidgetMenu {
public:
    using TChosen = std::function<void(const std::shared_ptr<IGradient>&)>;

    TGradientMenu(TChosen chosen, QWidget* parent);

private:
    void ListScales();

    TChosen FChosen;
};

} // namespace lmx
