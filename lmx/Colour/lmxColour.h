#pragma once

/// Everything that a host may use of this room: calculators, keys, classes, gradients and the renderer.

#include <lmx/Colour/Legend/lmxGradientLegendPainter.h>
#include <lmx/Colour/Legend/lmxLegendTypes.h>
#include <lmx/Colour/Legend/lmxPaletteLegendPainter.h>
#include <lmx/Colour/lmxBaseColorCalculator.h>
#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>
#include <lmx/Colour/lmxBitmap32RasterRenderer.h>
#include <lmx/Colour/lmxColorClassCalculator.h>
#include <lmx/Colour/lmxColorClassList.h>
#include <lmx/Colour/lmxColorKey.h>
#include <lmx/Colour/lmxColorPack.h>
#include <lmx/Colour/lmxColorPalette.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Colour/lmxGradientData.h>
#include <lmx/Colour/lmxIdrisiImageMapData.h>
#include <lmx/Colour/lmxMapData.h>
#include <lmx/Colour/lmxMultipartGradient.h>
#include <lmx/Colour/lmxRasterRenderer.h>
#include <lmx/Colour/lmxRasterRows.h>
#include <lmx/Colour/lmxValueRange.h>
