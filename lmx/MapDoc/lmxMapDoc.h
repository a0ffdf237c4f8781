#pragma once

/// Everything that a host may use of this room: map documents, which keep a whole map in one file.

#include <lmx/MapDoc/lmxMapDocResourcePersist.h>
