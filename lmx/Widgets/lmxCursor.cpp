
#include <lmx/Widgets/lmxCursor.h>

namespace lmx {

QCursor ToQCursor(TCursor cursor) {
    switch (cursor) {
    case TCursor::crCross:
        return Qt::CrossCursor;
    case TCursor::crHourGlass:
        return Qt::WaitCursor;
    case TCursor::crHSplit:
        return Qt::SplitHCursor;
    case TCursor::crVSplit:
        return Qt::SplitVCursor;
    case TCursor::crHandPoint:
        return Qt::PointingHandCursor;
    case TCursor::crSize:
        return Qt::SizeAllCursor;
    case TCursor::crDefault:
        break;
    }
    return Qt::ArrowCursor;
}

} // namespace lmx
