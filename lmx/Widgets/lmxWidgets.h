#pragma once

/// Everything that a host may use of this room: the paint box, buttons, lists and the replaceable services.

#include <lmx/Widgets/lmxAnchorEditor.h>
#include <lmx/Widgets/lmxBaseToggleButton.h>
#include <lmx/Widgets/lmxClipboard.h>
#include <lmx/Widgets/lmxClipboardEnvelope.h>
#include <lmx/Widgets/lmxColor32Button.h>
#include <lmx/Widgets/lmxColorChooser.h>
#include <lmx/Widgets/lmxColorShape.h>
#include <lmx/Widgets/lmxCursor.h>
#include <lmx/Widgets/lmxDrawnListView.h>
#include <lmx/Widgets/lmxEventGuard.h>
#include <lmx/Widgets/lmxExternalResources.h>
#include <lmx/Widgets/lmxFileDialog.h>
#include <lmx/Widgets/lmxFlatButton.h>
#include <lmx/Widgets/lmxGlyphPainter.h>
#include <lmx/Widgets/lmxGradientEditor.h>
#include <lmx/Widgets/lmxGradientStops.h>
#include <lmx/Widgets/lmxImageList.h>
#include <lmx/Widgets/lmxInputBox.h>
#include <lmx/Widgets/lmxListKeys.h>
#include <lmx/Widgets/lmxListPanel.h>
#include <lmx/Widgets/lmxListRows.h>
#include <lmx/Widgets/lmxModalDialog.h>
#include <lmx/Widgets/lmxMsgBox.h>
#include <lmx/Widgets/lmxOwnedDialog.h>
#include <lmx/Widgets/lmxPaintBox32.h>
#include <lmx/Widgets/lmxPngButton.h>
#include <lmx/Widgets/lmxResBrowser.h>
#include <lmx/Widgets/lmxServiceSlot.h>
#include <lmx/Widgets/lmxToggleButtonBar.h>
