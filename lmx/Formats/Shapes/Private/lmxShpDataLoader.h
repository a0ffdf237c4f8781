#pragma once

#include <lmx/Formats/Shapes/Private/lmxShapeFileReader.h>
#include <lmx/Formats/Shapes/lmxShapePointConverter.h>
#include <lmx/Formats/Shapes/lmxShpFile.h>

namespace lmx {

/// Reads the geometry of a shape file. It goes through the file twice: first it counts, so that memory is taken once
/// and never more than is needed.
class TShpDataLoader {
public:
    /// As TShpFile::LoadFromStream; `converter` may be nil.
    TShpDataLoader(QIODevice& stream, const QString& fileName, IShapePointConverter* converter,
                   const TShpLoadOptions& options)
        : FReader(stream, fileName),
          FFileName(fileName),
          FConverter(converter),
          FOptions(options) {}

    TShpData Load();

private:
    struct TCounts {
        std::size_t Shapes = 0;
        std::size_t Parts = 0;
        std::size_t Points = 0;
    };

    bool Next();
    void Reserve();
    void Reserve(TShpOutlines& outlines, const TCounts& counts) const;
    std::size_t Checked(std::size_t count) const;
    void TakeDamaged();
    void ReadShape();
    void ReadLines(TShpOutlines& outlines);
    void ReadPlaces();
    void KeepPlaces(std::vector<TShpPoint>& vertices, std::size_t first, std::span<std::uint32_t> partStarts) const;
    static void Finish(TShpOutlines& outlines);
    static void OrderParts(TShpOutlines& outlines);
    void OrderPoints();

    TShapeFileReader FReader;
    QString FFileName;
    IShapePointConverter* FConverter;
    TShpLoadOptions FOptions;
    TShpData FData;
};

} // namespace lmx
