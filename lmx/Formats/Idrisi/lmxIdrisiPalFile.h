#pragma once

#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Runtime/lmxExport.h>

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <vector>

namespace lmx {

/// The colours of an Idrisi palette file, by index.
///
/// Two forms are read, told apart by content. Text (.pal): lines "index red green blue", indexes 0 to 255 in any order;
/// an index that no line gives is black. Components count to 63, the levels of the display hardware of their time, and
/// are scaled to 255; a file with any component above 63 counts to 255 and is taken as it is. Binary (.smp): the mark
/// "[Idrisi]", the header's length at offset 11, then up to 256 triplets red, green, blue.
class LMX_EXPORT TIdrisiPalFile {
public:
    /// @throws EFileException if the file cannot be read, EFileFormatException if it is neither form or holds more than
    /// 1 MiB. The colours are unchanged then.
    void LoadFromFile(const QString& fileName);

    /// Takes the content of a palette file; `fileName` is for the messages.
    /// @throws EFileFormatException as LoadFromFile.
    void LoadFromBytes(const QByteArray& content, const QString& fileName);

    std::size_t GetCount() const { return FColors.size(); }

    /// @throws EArgumentException "Color index is out of range".
    TColor GetColor(std::size_t index) const;

private:
    std::vector<TColor> FColors;
};

} // namespace lmx
