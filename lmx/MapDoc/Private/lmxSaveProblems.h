#pragma once

#include <lmx/MapDoc/lmxMapDocLayerPersist.h>

#include <QStringList>

namespace lmx {

/// What of a layer would end a save, get lost in it or be left out of it.
QStringList ProblemsOfSavingLayer(const TBaseMapLayer& layer, const IMapDocLayerPersistFactory& factory,
                                  TMapDocExternalResourcePolicy policy);

} // namespace lmx
