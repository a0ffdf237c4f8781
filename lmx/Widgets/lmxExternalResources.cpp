#include <lmx/Widgets/lmxExternalResources.h>

#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Widgets/Private/lmxDefaultImages.h>
#include <lmx/Widgets/lmxServiceSlot.h>

namespace lmx {

namespace {

class TDefaultResourcesService final : public IExternalResourcesService {
public:
    QImage GetImage(const QString& name, double ratio, const QColor& ink) override {
        return DefaultImage(name, ratio, ink);
    }
};

TServiceSlot<IExternalResourcesService, TDefaultResourcesService>& Slot() {
    static TServiceSlot<IExternalResourcesService, TDefaultResourcesService> slot;
    return slot;
}

} // namespace

QImage TExternalResources::GetImage(const QString& name, double ratio, const QColor& ink) {
    QImage image = Slot().Get()->GetImage(name, ratio, ink);
    if (image.isNull())
        image = DefaultImage(name, ratio, ink);
    if (image.isNull())
        throw EArgumentException(QStringLiteral("There is no image \"%1\"").arg(name));
    return image;
}

QSize TExternalResources::GetImageSize(const QString& name) {
    return GetImage(name, 1, Qt::black).deviceIndependentSize().toSize();
}

std::shared_ptr<IExternalResourcesService>
TExternalResources::SetService(std::shared_ptr<IExternalResourcesService> service) {
    return Slot().Replace(std::move(service));
}

} // namespace lmx
