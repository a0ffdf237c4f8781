#pragma once

/// Everything that a host may use of this room: maps as pictures in files, without a window.

#include <lmx/Pictures/lmxMapPicture.h>
#include <lmx/Pictures/lmxMapPictureDescription.h>
