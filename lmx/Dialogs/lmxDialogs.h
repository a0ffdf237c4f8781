#pragma once

/// Everything that a host may use of this room: the forms that edit what is on a map.

#include <lmx/Dialogs/lmxRulerDialog.h>
