#pragma once

#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxSet.h>

#include <QtGlobal>

#include <memory>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace lmx {

/// What a colour chooser offers.
enum class TColorChooserDialogOption {
    coColor32, ///< the alpha of the colour can be chosen, too
};
using TColorChooserDialogOptions = TSet<TColorChooserDialogOption>;

/// Asks the user for a colour. A colour given as TColor is opaque, and a colour taken as TColor loses its alpha.
class LMX_EXPORT IColorChooser {
public:
    virtual ~IColorChooser() = default;

    virtual TColor GetColor() const = 0;
    virtual void SetColor(TColor color) = 0;
    virtual TColor32 GetColor32() const = 0;
    virtual void SetColor32(TColor32 color) = 0;

    /// Shows the present colour and waits. True if the user confirmed a colour, which is then the present one; without
    /// coColor32 it is opaque. After a cancel nothing has changed.
    virtual bool Execute(QWidget* parent = nullptr) = 0;
};

/// Makes the choosers that TColorChooserFactory hands out.
class LMX_EXPORT IColorChooserService {
public:
    virtual ~IColorChooserService() = default;
    virtual std::shared_ptr<IColorChooser> CreateColorChooser(TColorChooserDialogOptions options) = 0;
};

class LMX_EXPORT TColorChooserFactory {
public:
    /// A new chooser; its colour is opaque black.
    static std::shared_ptr<IColorChooser> GetObject(TColorChooserDialogOptions options = {});

    /// Replaces the service and gives the previous one back; nil stands for Qt's dialog.
    static std::shared_ptr<IColorChooserService> SetService(std::shared_ptr<IColorChooserService> service);
};

} // namespace lmx
