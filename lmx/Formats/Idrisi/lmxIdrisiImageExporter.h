#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <QString>

namespace lmx {

class TAbstractImage;

/// Writes an image to a file of some format.
class LMX_EXPORT IIdrisiImageExporter {
public:
    virtual ~IIdrisiImageExporter() = default;

    /// Replaces `fileName` by the whole image. After a failure the old content is still there.
    /// @throws EFileException if the file cannot be written or its format cannot hold the image.
    virtual void Export(const TAbstractImage& image, const QString& fileName) = 0;
};

/// A copy in the image's own format: .img with .doc beside it, or .rst with .rdc.
class LMX_EXPORT TIdrisiImageSaveCopyExporter final : public IIdrisiImageExporter {
public:
    void Export(const TAbstractImage& image, const QString& fileName) override;
};

/// ArcInfo ASCII grid: the heading, then a line for each row from the north. Cells that are no values
/// (TSpatialConst::IsFlag) become the grid's no-data number, -9999; the others have the shortest exact text.
///
/// Cells of unequal sides have no place in the original heading. Instead of a "cellsize" that would be wrong on one
/// axis, the heading has the lines "dx" and "dy" then, the form that other geographic systems write and read. Sides
/// count as equal if they differ by no more than the single precision of the bounds explains.
/// @throws EFileException "... has no bounds to write a grid with" if the image has no cells or its bounds are not in
/// order.
class LMX_EXPORT TArcInfoGridASCIIExporter final : public IIdrisiImageExporter {
public:
    void Export(const TAbstractImage& image, const QString& fileName) override;
};

/// A line "x y z" for each cell: cell centre and number, separated by blanks, without a heading. The northern row comes
/// first, columns ascend. Cells that are no values are written as -9999, so that the lines always form the full grid.
/// @throws EFileException as TArcInfoGridASCIIExporter.
class LMX_EXPORT TXYZAsciiExporter final : public IIdrisiImageExporter {
public:
    void Export(const TAbstractImage& image, const QString& fileName) override;
};

} // namespace lmx
