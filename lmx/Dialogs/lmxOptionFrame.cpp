#include <lmx/Dialogs/lmxOptionFrame.h>

namespace lmx {

TOptionFrame::~TOptionFrame() {
    delete FOwnedFrame;
}

TLateOptionFrame::~TLateOptionFrame() {
    delete FFrame;
}

QWidget* TLateOptionFrame::GetFrame() const {
    if (!FIsMade) {
        FFrame = MakeFrame().release();
        FIsMade = true;
    }
    return FFrame;
}

} // namespace lmx
