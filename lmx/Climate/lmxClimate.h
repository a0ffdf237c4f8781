#pragma once

/// Everything that a host may use of this room: what is a value, and climate variables.

#include <lmx/Climate/lmxClimateVariable.h>
#include <lmx/Climate/lmxSpatialConst.h>
