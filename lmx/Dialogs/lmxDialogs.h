#pragma once

/// Everything that a host may use of this room: the forms that edit what is on a map.

#include <lmx/Dialogs/lmxAddBasicPaletteColorDialog.h>
#include <lmx/Dialogs/lmxAddColorClassDialog.h>
#include <lmx/Dialogs/lmxAddMPGradientDialog.h>
#include <lmx/Dialogs/lmxAddMultipleInfoQueryPointDialog.h>
#include <lmx/Dialogs/lmxAddMultipleInfoQueryPointPasteDialog.h>
#include <lmx/Dialogs/lmxCompassRoseObjectDialog.h>
#include <lmx/Dialogs/lmxGeneralOptionsObjectDialog.h>
#include <lmx/Dialogs/lmxGradientEditorFrame.h>
#include <lmx/Dialogs/lmxInfoQueryPointDialog.h>
#include <lmx/Dialogs/lmxLayerAttributeDialog.h>
#include <lmx/Dialogs/lmxLayerPropertiesAttributesFrame.h>
#include <lmx/Dialogs/lmxLayerPropertiesBoundsFrame.h>
#include <lmx/Dialogs/lmxLayerPropertiesDialog.h>
#include <lmx/Dialogs/lmxLayerPropertiesDisplayFrame.h>
#include <lmx/Dialogs/lmxLayerPropertiesImageHeaderFrame.h>
#include <lmx/Dialogs/lmxLegendObjectDialog.h>
#include <lmx/Dialogs/lmxObjectDialog.h>
#include <lmx/Dialogs/lmxOptionFrame.h>
#include <lmx/Dialogs/lmxPaletteSources.h>
#include <lmx/Dialogs/lmxRulerDialog.h>
#include <lmx/Dialogs/lmxTextObjectDialog.h>
