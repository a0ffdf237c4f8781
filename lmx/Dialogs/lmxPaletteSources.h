#pragma once

#include <lmx/Runtime/lmxExport.h>
#include <lmx/Widgets/lmxResBrowser.h>

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

namespace lmx {

class ILayerManagerConfig;

/// The palettes in a folder and in the folders below it: the files "*.pal" and "*.smp" that TColorPalette::Load reads.
/// What cannot be read is left out, with a note. Links to folders are not followed.
class LMX_EXPORT TPaletteFolderSource final : public IResBrowserSource {
public:
    static constexpr int MostFiles = 10'000; ///< further ones are left out, with a note

    TPaletteFolderSource(const QString& name, const QString& folder);

    QString GetName() const override { return FName; }
    /// Reads the folder anew. Sorted by folder, then by name; names are those of the files, without what follows the
    /// last point, and with blanks for "_".
    std::vector<TResource> GetResources() override;
    std::vector<TColor32> GetColors(const TResource& resource) override;
    QStringList GetNotes() const override { return FNotes; }

private:
    QString FName;
    QString FFolder;
    QStringList FNotes;
};

/// Lets users load the palettes of TColorPack. They lie as files in a folder of their own, which goes with the config.
/// A second call does nothing.
LMX_EXPORT void AddColorPack(ILayerManagerConfig& config);

/// Lets users load the palettes of a folder, which is looked at each time they ask.
LMX_EXPORT void AddPaletteFolder(ILayerManagerConfig& config, const QString& name, const QString& folder);

} // namespace lmx
