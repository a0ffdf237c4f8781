#include <lmx/Layers/lmxLayerFactory.h>

#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxShapeFileLayer.h>
#include <lmx/Layers/lmxVectorFileLayer.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxText.h>

#include <algorithm>
#include <vector>

namespace lmx {

namespace {

class TLayerFactoryImpl final : public ILayerFactory {
public:
    using ILayerFactory::Register;

    std::unique_ptr<TBaseMapLayer> CreateLayer(const QString& layerType,
                                               const std::shared_ptr<ILayerManager>& manager) const override {
        // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): a handler may register others meanwhile
        const std::vector<std::shared_ptr<ILayerFactoryHandler>> handlers = FHandlers;
        const auto known = std::find_if(handlers.begin(), handlers.end(),
                                        [&](const auto& handler) { return handler->CanCreate(layerType); });
        return known == handlers.end() ? nullptr : (*known)->CreateLayer(manager);
    }
    void Register(const std::shared_ptr<ILayerFactoryHandler>& handler) override {
        if (!handler)
            throw EArgumentNilException(QStringLiteral("Item"));
        FHandlers.push_back(handler);
    }
    void Register(const QString& layerType, TCreateLayerFunc func) override {
        Register(std::make_shared<TCreateLayerFuncHandler>(layerType, func));
    }
    void Register(const QString& layerType, TCreateLayerAnonFunc func) override {
        Register(std::make_shared<TCreateLayerAnonFuncHandler>(layerType, std::move(func)));
    }

private:
    std::vector<std::shared_ptr<ILayerFactoryHandler>> FHandlers;
};

template<class Layer>
void RegisterType(ILayerFactory& factory, const QString& layerType) {
    factory.Register(layerType, [](const std::shared_ptr<ILayerManager>& manager) -> std::unique_ptr<TBaseMapLayer> {
        return std::make_unique<Layer>(manager);
    });
}

} // namespace

TCreateLayerFuncHandler::TCreateLayerFuncHandler(const QString& layerType, TCreateLayerFunc func)
    : FLayerType(layerType),
      FFunc(func) {
    if (!func)
        throw EArgumentNilException(QStringLiteral("Func"));
}

std::unique_ptr<TBaseMapLayer>
TCreateLayerFuncHandler::CreateLayer(const std::shared_ptr<ILayerManager>& manager) const {
    return FFunc(manager);
}

bool TCreateLayerFuncHandler::CanCreate(const QString& layerType) const {
    return SameText(layerType, FLayerType);
}

TCreateLayerAnonFuncHandler::TCreateLayerAnonFuncHandler(const QString& layerType, TCreateLayerAnonFunc func)
    : FLayerType(layerType),
      FFunc(std::move(func)) {
    if (!FFunc)
        throw EArgumentNilException(QStringLiteral("AnonFunc"));
}

std::unique_ptr<TBaseMapLayer>
TCreateLayerAnonFuncHandler::CreateLayer(const std::shared_ptr<ILayerManager>& manager) const {
    return FFunc(manager);
}

bool TCreateLayerAnonFuncHandler::CanCreate(const QString& layerType) const {
    return SameText(layerType, FLayerType);
}

std::shared_ptr<ILayerFactory> TLayerFactory::GetObject() {
    return std::make_shared<TLayerFactoryImpl>();
}

const std::shared_ptr<ILayerFactory>& TLayerFactory::GetSingleton() {
    static const std::shared_ptr<ILayerFactory> factory = GetObject();
    return factory;
}

void TLayerFactory::PopulateDefault(const std::shared_ptr<ILayerFactory>& factory) {
    if (!factory)
        throw EExArgumentNilException(QStringLiteral("TLayerFactory.PopulateDefault"), QStringLiteral("Factory"));
    RegisterType<TVectorFileLayer>(*factory, QStringLiteral("VectorFileLayer"));
    RegisterType<TShapeFileLayer>(*factory, QStringLiteral("ShapeFileLayer"));
    RegisterType<TIdrisiMapLayer>(*factory, QStringLiteral("IdrisiMapLayer"));
}

} // namespace lmx
