#pragma once

/// Everything that a host may use of this room: the map view and the controls around it.

#include <lmx/Controls/Legend/lmxBaseLegendControl.h>
#include <lmx/Controls/lmxLayerToggleButtons.h>
#include <lmx/Controls/lmxMapControl.h>
#include <lmx/Controls/lmxMapViewAssets.h>
#include <lmx/Controls/lmxMapViewCompositor.h>
#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Controls/lmxMapViewRuler.h>
#include <lmx/Controls/lmxMapViewRulersPanelControl.h>
#include <lmx/Controls/lmxMapViewTypes.h>
#include <lmx/Controls/lmxRulerListView.h>
