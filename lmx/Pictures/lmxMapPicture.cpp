#include <lmx/Pictures/lmxMapPicture.h>

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Coordinates/wskWorldSystem.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/MapDoc/lmxMapDocInspector.h>
#include <lmx/MapDoc/lmxMapDocReader.h>
#include <lmx/Pictures/Private/lmxPictureFiles.h>
#include <lmx/Pictures/Private/lmxPicturePainting.h>
#include <lmx/Runtime/Private/lmxReplacementFile.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <QFileInfo>

#include <algorithm>
#include <set>
#include <utility>

namespace lmx {

namespace {

constexpr qsizetype LeastDigits = 3;

// The file is opened first: what cannot be written is known before the painting.
void SavePicture(const TPictureOrder& order, const QString& fileName) {
    const TPictureFormat format = PictureFormatOf(fileName);
    TReplacementFile file(fileName);
    TPaintedPicture picture = PaintPicture(order);
    file.Write(EncodePicture(picture, format, fileName));
    file.Commit();
}

QString NumberName(int number, int count) {
    const qsizetype digits = std::max(LeastDigits, IntToStr(count).size());
    return IntToStr(number).rightJustified(digits, u'0');
}

/// "folder/map.png" becomes "folder/map-007.png".
QStringList FrameFileNames(const QString& fileName, const IMapPictureFrames& frames) {
    const QString suffix = u'.' + QFileInfo(fileName).suffix();
    QStringList names;
    const int count = frames.GetFrameCount();
    for (int frame = 0; frame < count; ++frame) {
        const QString own = frames.GetFrameName(frame);
        names += fileName.chopped(suffix.size()) + u'-' + (own.isEmpty() ? NumberName(frame + 1, count) : own) + suffix;
    }
    std::set<QString> all;
    for (const QString& name : names)
        if (!all.insert(name).second)
            throw EArgumentException(QStringLiteral("Two frames have the name ") + name);
    return names;
}

} // namespace

QString IMapPictureFrames::GetFrameName(int) const {
    return {};
}

void IMapPictureFrames::FrameSaved(int, const QString&) {}

TMapPicture::TMapPicture(std::shared_ptr<ILayerManager> layerManager, std::shared_ptr<IWorldSystem> worldSystem,
                         TMapPictureOptions options)
    : FLayerManager(std::move(layerManager)),
      FWorldSystem(std::move(worldSystem)),
      FOptions(std::move(options)) {
    if (!FLayerManager)
        throw EArgumentNilException(QStringLiteral("LayerManager"));
    if (!FWorldSystem)
        throw EArgumentNilException(QStringLiteral("WorldSystem"));
}

// A view that nobody sees takes the map in; its layers, marks and annotations stay with the manager when it goes.
TMapPicture TMapPicture::OfDocument(const QString& fileName, const std::shared_ptr<ILayerFactory>& layerFactory,
                                    const std::shared_ptr<IMapDocLayerPersistFactory>& layerPersistFactory,
                                    const std::shared_ptr<TMapDocLoadReport>& report) {
    const TMapDocInfo info = TMapDocInspector(layerPersistFactory).Inspect(fileName);
    TMapDocReader reader(info.DocTypeID, layerFactory, layerPersistFactory);
    reader.SetReport(report);
    auto manager = TLayerManagerFactory::GetObject();
    TMapViewControl view;
    view.SetLayerManager(manager);
    reader.Read(fileName, &view);
    return {std::move(manager), view.GetWorldSystem()};
}

TBitmap32 TMapPicture::Paint() const {
    return std::move(PaintPicture({FLayerManager, FWorldSystem, FOptions}).Bitmap);
}

TMapPictureDescription TMapPicture::Describe() const {
    return DescribePicture({FLayerManager, FWorldSystem, FOptions});
}

void TMapPicture::Save(const QString& fileName) const {
    SavePicture({FLayerManager, FWorldSystem, FOptions}, fileName);
}

QStringList TMapPicture::SaveFrames(const QString& fileName, IMapPictureFrames& frames) const {
    PictureFormatOf(fileName);
    TPictureOrder order{FLayerManager, FWorldSystem, FOptions};
    QStringList names = FrameFileNames(fileName, frames);
    for (int frame = 0; frame < names.size(); ++frame) {
        order.Options.Time = frames.ShowFrame(frame);
        SavePicture(order, names.at(frame));
        frames.FrameSaved(frame, names.at(frame));
    }
    return names;
}

} // namespace lmx
