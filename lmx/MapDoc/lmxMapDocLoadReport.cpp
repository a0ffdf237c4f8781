#include <lmx/MapDoc/lmxMapDocLoadReport.h>

namespace lmx {

QString TMapDocLoadReport::ToText() const {
    QString text;
    for (const TLostLayer& lost : FLostLayers)
        text += QStringLiteral("Layer \"") + lost.Name + QStringLiteral("\" (") + lost.Type + QStringLiteral("): ") +
                lost.Reason + u'\n';
    return text;
}

} // namespace lmx
