#include "ClimateFiles.h"

#include <lmx/Runtime/lmxExceptions.h>

#include <QObject>

#include "TiledRasters.h"

// The viewer without lmx::datasources.

class TClimateFiles::TImpl {};

TClimateFiles::TClimateFiles(QWidget*, TAddLayer) {}

TClimateFiles::~TClimateFiles() = default;

bool TClimateFiles::CanOpen() {
    return false;
}

lmx::TBaseMapLayer* TClimateFiles::Open(const std::shared_ptr<lmx::ILayerManager>&, const QString& fileName) {
    throw lmx::EFileException(fileName, QObject::tr("this viewer was built without what reads climate files"));
}

void TClimateFiles::SetChoice(const TClimateChoice&) {}

QWidget* TClimateFiles::GetTimeStrip() const {
    return nullptr;
}

void TClimateFiles::SetOnHasTimes(std::function<void(bool)>) {}

QString TClimateFiles::GetTimeCaption() const {
    return {};
}

bool TClimateFiles::IsReading() const {
    return false;
}

void RegisterClimateFiles(const std::shared_ptr<lmx::ILayerFactory>&,
                          const std::shared_ptr<lmx::IMapDocLayerPersistFactory>&) {}

TTiledStatistics TiledStatisticsOf(const lmx::TBaseMapLayer&, const TStatisticsRegion&) {
    return {};
}

std::optional<float> TiledValueAt(const lmx::TBaseMapLayer&, const lmx::TMapPoint&) {
    return std::nullopt;
}
