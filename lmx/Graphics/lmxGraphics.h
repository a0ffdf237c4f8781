#pragma once

/// Everything that a host may use of this room: colours, bitmaps, gradients, polygons and fonts.

#include <lmx/Graphics/lmxAlignment.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxBitmap32VecDocRenderer.h>
#include <lmx/Graphics/lmxCheckerboard.h>
#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Graphics/lmxColorText.h>
#include <lmx/Graphics/lmxFloatPoint.h>
#include <lmx/Graphics/lmxFloatRect.h>
#include <lmx/Graphics/lmxFont32.h>
#include <lmx/Graphics/lmxFontStyles.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Graphics/lmxGradientSource.h>
#include <lmx/Graphics/lmxPixelMemory.h>
#include <lmx/Graphics/lmxPolygons.h>
#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Graphics/lmxVectorDoc.h>
#include <lmx/Graphics/lmxWideRect.h>
