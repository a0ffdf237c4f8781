#include <lmx/Dialogs/Private/lmxPaletteChoice.h>

#include <lmx/Layers/lmxLayerManagerConfig.h>
#include <lmx/Widgets/lmxResBrowser.h>

namespace lmx {

bool TPaletteChoice::IsPalette() const {
    return TypeName == QStringView(u"IdrisiPalFileName");
}

std::optional<TPaletteChoice> ChoosePalette(const std::shared_ptr<ILayerManagerConfig>& config, QWidget* parent) {
    const auto browser = TResBrowserFactory::GetObject();
    const auto providers =
        config ? config->PaletteSources() : std::vector<std::shared_ptr<IResBrowserSourceProvider>>();
    for (const auto& provider : providers)
        if (provider)
            browser->AddSource(provider->GetSource());
    if (!browser->Execute(parent))
        return std::nullopt;
    const TResource chosen = browser->GetResource();
    return TPaletteChoice{chosen.TypeName, chosen.FileName};
}

} // namespace lmx
