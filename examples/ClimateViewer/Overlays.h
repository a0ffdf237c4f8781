#pragma once

#include <lmx/Graphics/lmxColor32.h>

#include <QLabel>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <functional>
#include <memory>

namespace lmx {
class ILayerManager;
class TBaseShapeLayer;
class TMapViewControl;
class TThread;
} // namespace lmx

// Lines over the rasters: shape files and Idrisi vectors, drawn in the background.

/// Whether a file is one of those, by its suffix.
bool IsOverlayName(const QString& fileName);

/// Adds a layer with a shape file (.shp), converted as its projection file says, or a vector file (.vct, .vec), named
/// after the file, on top of the stack. A shape file is folded at the seam of the world.
/// @throws lmx::Exception with a message that names what is wrong.
lmx::TBaseShapeLayer* AddOverlay(const std::shared_ptr<lmx::ILayerManager>& manager, const QString& fileName,
                                 lmx::TColor32 color);

/// A file has become a layer; `remarks` are sentences on what of it is not as it should be.
using TOverlayAdded = std::function<void(lmx::TBaseShapeLayer* layer, const QStringList& remarks)>;

/// The same in two steps, and whatever damaged shape files hold that is whole: the file is read on a thread of its own,
/// however large it is, and then the main thread adds the layer and calls `added`, or `failed` with what is wrong. If
/// the owner is gone by then nothing happens. Gives the thread, which has to end before the program does.
std::shared_ptr<lmx::TThread> OpenOverlay(const std::shared_ptr<lmx::ILayerManager>& manager, const QString& fileName,
                                          lmx::TColor32 color, QObject* owner, const TOverlayAdded& added,
                                          const std::function<void(const QString& problem)>& failed);

/// Adds the rivers and the coasts of the world.
/// @throws lmx::EFileException if a file of `folder` is missing or damaged.
void AddSampleOverlays(const std::shared_ptr<lmx::ILayerManager>& manager, const QString& folder);
/// Adds the coasts alone. @throws as AddSampleOverlays.
void AddSampleCoasts(const std::shared_ptr<lmx::ILayerManager>& manager, const QString& folder);

/// Whether any layer is being drawn in the background.
bool IsDrawing(lmx::ILayerManager& manager);

/// Says of the layers of a view in a status bar.
class TDrawingIndicator : public QLabel {
public:
    TDrawingIndicator(lmx::TMapViewControl* view, QWidget* parent);

private:
    QTimer FTimer;
};
