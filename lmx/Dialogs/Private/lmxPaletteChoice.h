#pragma once

#include <QString>

#include <memory>
#include <optional>

class QWidget;

namespace lmx {

class ILayerManagerConfig;

/// A resource that the user has chosen.
struct TPaletteChoice {
    QString TypeName;
    QString FileName;

    bool IsPalette() const; ///< of the one type that can be loaded
};

/// Lets the user browse what the host's palette sources offer; nothing if nothing is chosen. The parent may be gone
/// then.
std::optional<TPaletteChoice> ChoosePalette(const std::shared_ptr<ILayerManagerConfig>& config, QWidget* parent);

} // namespace lmx
