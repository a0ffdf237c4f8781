#pragma once

#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Runtime/lmxExport.h>

#include <QString>

#include <vector>

namespace lmx {

/// A list of colours that lives in a palette file: the line "QUORVAN45PAL", then a line "red green blue alpha" for
/// each colour, in decimal.
class LMX_EXPORT TColorPalette : public std::vector<TColor32> {
public:
    using std::vector<TColor32>::vector;

    /// Replaces the colours by those of a file; a file whose first line is another goes to LoadIdrisiPal. Lines that do
    /// not split into four pieces at single blanks are skipped. After a failure the palette is empty or holds the
    /// colours before it.
    /// @throws Exception "Invalid palette file" for a file without lines.
    /// @throws EConvertError for a piece that is no integer or lies outside 0 to 255.
    /// @throws EFileException if the file cannot be read, EFileFormatException if it holds more than 16 MiB.
    void Load(const QString& fileName);

    /// Replaces the colours by those of an Idrisi palette file, all opaque. After a failure the palette is empty.
    /// @throws EFileException if the file cannot be read, EFileFormatException if it is no Idrisi palette.
    void LoadIdrisiPal(const QString& fileName);

    /// Replaces the file in one step.
    /// @throws EFileException if it cannot be written.
    void Save(const QString& fileName) const;
};

} // namespace lmx
