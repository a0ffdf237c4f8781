#pragma once

#include <lmx/Layers/lmxBaseMapLayer.h>
#include <lmx/Runtime/lmxExport.h>

#include <QString>

#include <concepts>
#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

namespace lmx {

class ILayerManager;

/// Makes a layer on a manager, not yet in the manager's list.
using TCreateLayerFunc = std::unique_ptr<TBaseMapLayer> (*)(const std::shared_ptr<ILayerManager>& manager);
using TCreateLayerAnonFunc = std::function<std::unique_ptr<TBaseMapLayer>(const std::shared_ptr<ILayerManager>&)>;

/// Makes layers of the types that it knows.
class LMX_EXPORT ILayerFactoryHandler {
public:
    virtual ~ILayerFactoryHandler() = default;

    virtual std::unique_ptr<TBaseMapLayer> CreateLayer(const std::shared_ptr<ILayerManager>& manager) const = 0;
    virtual bool CanCreate(const QString& layerType) const = 0;
};

/// Makes layers of one type by a function; the case of the type's letters does not matter.
class LMX_EXPORT TCreateLayerFuncHandler final : public ILayerFactoryHandler {
public:
    /// @throws EArgumentNilException "Func" if it is nil.
    TCreateLayerFuncHandler(const QString& layerType, TCreateLayerFunc func);

    std::unique_ptr<TBaseMapLayer> CreateLayer(const std::shared_ptr<ILayerManager>& manager) const override;
    bool CanCreate(const QString& layerType) const override;

private:
    QString FLayerType;
    TCreateLayerFunc FFunc;
};

/// The same by a closure.
class LMX_EXPORT TCreateLayerAnonFuncHandler final : public ILayerFactoryHandler {
public:
    /// @throws EArgumentNilException "AnonFunc" if it is empty.
    TCreateLayerAnonFuncHandler(const QString& layerType, TCreateLayerAnonFunc func);

    std::unique_ptr<TBaseMapLayer> CreateLayer(const std::shared_ptr<ILayerManager>& manager) const override;
    bool CanCreate(const QString& layerType) const override;

private:
    QString FLayerType;
    TCreateLayerAnonFunc FFunc;
};

/// Makes layers by the names of their types (TBaseMapLayer::GetLayerClassName), as documents hold them. Main thread
/// only.
class LMX_EXPORT ILayerFactory {
public:
    virtual ~ILayerFactory() = default;

    /// A layer from the first handler that knows the type, in the order in which they were registered: a type that is
    /// registered twice is made by the older one. Nil if none knows it. The caller adds the layer to the manager's
    /// list.
    virtual std::unique_ptr<TBaseMapLayer> CreateLayer(const QString& layerType,
                                                       const std::shared_ptr<ILayerManager>& manager) const = 0;
    /// @throws EArgumentNilException "Item" if the handler is nil.
    virtual void Register(const std::shared_ptr<ILayerFactoryHandler>& handler) = 0;
    /// @throws EArgumentNilException as TCreateLayerFuncHandler.
    virtual void Register(const QString& layerType, TCreateLayerFunc func) = 0;
    /// @throws EArgumentNilException as TCreateLayerAnonFuncHandler.
    virtual void Register(const QString& layerType, TCreateLayerAnonFunc func) = 0;

    /// Takes a lambda as a closure, whether or not it captures anything.
    template<class Closure>
    requires std::is_class_v<std::remove_cvref_t<Closure>> &&
        (!std::same_as<std::remove_cvref_t<Closure>, TCreateLayerAnonFunc>)void Register(const QString& layerType,
                                                                                         Closure&& closure) {
        Register(layerType, TCreateLayerAnonFunc(std::forward<Closure>(closure)));
    }
};

class LMX_EXPORT TLayerFactory {
public:
    static std::shared_ptr<ILayerFactory> GetObject();           ///< a new, empty one at each call
    static const std::shared_ptr<ILayerFactory>& GetSingleton(); ///< the shared one; empty until someone fills it

    /// Registers "VectorFileLayer", "ShapeFileLayer" and "IdrisiMapLayer", in this order. The host calls it when it
    /// sets a factory up, and adds its own types beside them.
    /// @throws EExArgumentNilException naming "TLayerFactory.PopulateDefault" and "Factory" if `factory` is nil.
    static void PopulateDefault(const std::shared_ptr<ILayerFactory>& factory);
};

} // namespace lmx
