#pragma once

/// Everything that a host may use of this room: map coordinates, world systems, worlds and viewports.

#include <lmx/Coordinates/wskMappingTypes.h>
#include <lmx/Coordinates/wskWorld.h>
#include <lmx/Coordinates/wskWorldSystem.h>
