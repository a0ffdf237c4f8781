#include <lmx/Dialogs/lmxOptionFrame.h>

namespace lmx {

TOptionFrame::~TOptionFrame() {
    delete FOwnedFrame;
}

} // namespace lmx
