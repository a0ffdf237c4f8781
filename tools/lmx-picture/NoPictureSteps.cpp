#include "PictureSteps.h"

#include <lmx/Runtime/lmxExceptions.h>

// The program without lmx::datasources.

void RegisterClimateLayers(const std::shared_ptr<lmx::ILayerFactory>&,
                           const std::shared_ptr<lmx::IMapDocLayerPersistFactory>&) {}

void SaveSteps(const lmx::TMapPicture&, const TPictureArguments&, const std::function<void(const QString&)>&) {
    throw lmx::Exception(QStringLiteral("this lmx-picture was built without what reads climate files"));
}
