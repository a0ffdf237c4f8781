#pragma once

/// Everything that a host may use of this room: what is a value, the range of values, and climate variables.

#include <lmx/Climate/lmxClimateVariable.h>
#include <lmx/Climate/lmxFoundRange.h>
#include <lmx/Climate/lmxSpatialConst.h>
