#pragma once

#include <lmx/Controls/lmxMapViewTypes.h>

#include <QIcon>

/// The icon of a mode, drawn when it is shown: sharp at every device ratio, and in the colour of the theme's text.
QIcon ModeIcon(lmx::TMapMode mode);
