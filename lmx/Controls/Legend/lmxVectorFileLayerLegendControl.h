#pragma once

#include <lmx/Controls/Legend/lmxColorLegendControl.h>
#include <lmx/Runtime/lmxExport.h>

namespace lmx {

/// The legend of a vector file: its colour.
class LMX_EXPORT TVectorFileLayerLegendControl final : public TColorLegendControl {
public:
    explicit TVectorFileLayerLegendControl(QWidget* parent = nullptr);

    static TVectorFileLayerLegendControl* CreateComp(QWidget* owner, TColor color);
};

} // namespace lmx
