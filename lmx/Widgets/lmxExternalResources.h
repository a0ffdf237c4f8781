#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <QColor>
#include <QImage>
#include <QSize>
#include <QString>

#include <memory>

namespace lmx {

/// Images by name, for the buttons and lists of the library's controls.
class LMX_EXPORT IExternalResourcesService {
public:
    virtual ~IExternalResourcesService() = default;

    /// The image of that name with `ratio` device pixels for each logical one; the image carries its own ratio, and its
    /// logical size is the same for every `ratio`. `ink` is the colour of the text around it, for images that follow
    /// the theme. A null image stands for the library's own one.
    virtual QImage GetImage(const QString& name, double ratio, const QColor& ink) = 0;
};

/// The library's own images, drawn in `ink`:
///
///     MapWindowFactory.AddLayer, .DeleteLayer, .Edit, .Copy, .ExploreShape    24 x 24, for buttons
///     MapWindowFactory.Tools.None                                             16 x 16, a mouse pointer
class LMX_EXPORT TExternalResources {
public:
    /// @throws EArgumentException "There is no image "..."" if neither the service nor the library has it.
    static QImage GetImage(const QString& name, double ratio, const QColor& ink);
    /// Its size in logical pixels.
    /// @throws as GetImage.
    static QSize GetImageSize(const QString& name);

    /// Replaces the service and gives the previous one back; nil stands for the library's own images. Controls ask when
    /// they are made and when their colours or their screen change, so a host brings its service first.
    static std::shared_ptr<IExternalResourcesService> SetService(std::shared_ptr<IExternalResourcesService> service);
};

} // namespace lmx
