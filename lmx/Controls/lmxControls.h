#pragma once

/// Everything that a host may use of this room: the map view and the controls around it.

#include <lmx/Controls/Legend/lmxBaseLegendControl.h>
#include <lmx/Controls/Legend/lmxColorLegendControl.h>
#include <lmx/Controls/Legend/lmxDrawnLegendControl.h>
#include <lmx/Controls/Legend/lmxMapViewBasicPaletteLegendControl.h>
#include <lmx/Controls/Legend/lmxMapViewClassPaletteLegendControl.h>
#include <lmx/Controls/Legend/lmxMapViewGradientLegendControl.h>
#include <lmx/Controls/Legend/lmxMapViewMultipartGradientLegendControl.h>
#include <lmx/Controls/Legend/lmxMapViewPaletteValueControl.h>
#include <lmx/Controls/Legend/lmxMapViewShapeExplorerControl.h>
#include <lmx/Controls/Legend/lmxObjectLayerLegendControl.h>
#include <lmx/Controls/Legend/lmxPaletteLegendControl.h>
#include <lmx/Controls/Legend/lmxRasterLegendControl.h>
#include <lmx/Controls/Legend/lmxShapeFileLayerLegendControl.h>
#include <lmx/Controls/Legend/lmxVectorFileLayerLegendControl.h>
#include <lmx/Controls/lmxLayerToggleButtons.h>
#include <lmx/Controls/lmxMapControl.h>
#include <lmx/Controls/lmxMapViewAssets.h>
#include <lmx/Controls/lmxMapViewCompositor.h>
#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Controls/lmxMapViewInfoQueryListControl.h>
#include <lmx/Controls/lmxMapViewRuler.h>
#include <lmx/Controls/lmxMapViewRulersPanelControl.h>
#include <lmx/Controls/lmxMapViewTypes.h>
#include <lmx/Controls/lmxRulerListView.h>
