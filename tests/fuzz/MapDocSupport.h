#pragma once

#include <lmx/Layers/lmxInfoQueryPointLayer.h>
#include <lmx/Layers/lmxLayerFactory.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxObjectMapLayer.h>
#include <lmx/Layers/lmxRulerMapLayer.h>
#include <lmx/MapDoc/lmxMapDocLayerPersist.h>

#include <QApplication>

#include <memory>

// What documents are read into, and by.

namespace lmx::fuzz {

/// Annotations draw letters, which takes an application.
inline void NeedApplication() {
    static int count = 1;
    static char name[] = "fuzz";
    static char* arguments[] = {name, nullptr};
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    static const auto* const application = new QApplication(count, arguments); // the target has no end
    Q_UNUSED(application);
}

inline std::shared_ptr<ILayerManager> ManagerWithSpecialLayers() {
    auto manager = TLayerManagerFactory::GetObject();
    manager->GetSpecialLayers().Add(std::make_unique<TRulerMapLayer>(manager));
    manager->GetSpecialLayers().Add(std::make_unique<TInfoQueryPointLayer>(manager));
    manager->GetSpecialLayers().Add(std::make_unique<TObjectMapLayer>(manager, false));
    return manager;
}

inline std::shared_ptr<ILayerFactory> LayerFactory() {
    auto factory = TLayerFactory::GetObject();
    TLayerFactory::PopulateDefault(factory);
    return factory;
}

inline std::shared_ptr<IMapDocLayerPersistFactory> PersistFactory() {
    auto factory = TMapDocLayerPersistFactory::GetObject();
    TMapDocLayerPersistFactory::PopulateDefault(factory);
    return factory;
}

} // namespace lmx::fuzz
