#pragma once

#include <lmx/Formats/Idrisi/lmxImageHeader.h>
#include <lmx/Runtime/lmxExport.h>

#include <QString>

#include <cstdint>
#include <memory>
#include <span>
#include <utility>

class QIODevice;

namespace lmx {

class TFoundRange;

/// A raster of numbers with its header: root of the Idrisi image classes.
///
/// Columns and rows count from 1; row 1 is the northern one, column 1 the western. Missing data has one form, whatever
/// the file has: a cell that equals the flag value that the header declares reads -9990 (TSpatialConst::NoData), and
/// -9990 is stored as the flag. The number of cells is fixed when the image is made; changing the header's width or
/// height later does not change it.
class LMX_EXPORT TAbstractImage {
public:
    virtual ~TAbstractImage() = default;
    TAbstractImage& operator=(const TAbstractImage&) = delete;

    TImageHeader* getHeader() { return &FHeader; }
    const TImageHeader* getHeader() const { return &FHeader; }

    /// Name of the class, as TImageFactory::GetImageClass accepts it.
    virtual QString GetClassName() const { return QStringLiteral("TAbstractImage"); }

    /// Path of the file that the image was made for, as it was given; empty for an image in memory only.
    const QString& GetFilePath() const { return FFilePath; }

    /// Number at a column and row.
    /// @throws EArgumentException "Col index is out of range", "Row index is out of range".
    virtual float GetCell(std::int32_t column, std::int32_t row) const = 0;

    /// Stores a number. Classes of integer cells round to the nearest, ties to even.
    /// @throws EArgumentException as GetCell, or "Value does not fit into the image's cells", NaN included;
    /// EOutOfMemory if it is the first of an image that there is no room for.
    virtual void SetCell(std::int32_t column, std::int32_t row, float number);

    /// The numbers of a row, as GetCell gives them. `numbers` has the image's width.
    /// @throws EArgumentException "Row index is out of range", or "Length of the row does not match".
    virtual void ReadRow(std::int32_t row, std::span<float> numbers) const;

    /// Number of the cell at a map coordinate; -9990 outside the image. A cell owns its western and northern edge; the
    /// image's eastern and southern edge belong to the last column and row.
    float GetValue(float x, float y) const;

    /// Sets the header's minimum and maximum value, and those of the display, to the range of the cells that are values
    /// (TSpatialConst::IsValue). Without any the range becomes 0 to 0 and the result is false.
    /// @throws EOutOfMemory if there is no room for a row.
    bool UpdateValueRange();

    /// Cells alone, little-endian in the class's own type, row by row from the north. Reading needs as many bytes as
    /// the image has, in a device that knows how many it has; it begins and ends at the device's position.
    /// @throws EFileFormatException if there are fewer, EFileException "Image data: does not fit into memory"; the
    /// image is unchanged then.
    virtual void LoadFromStream(QIODevice& stream);
    /// @throws EFileException if the device does not take it all.
    virtual void SaveToStream(QIODevice& stream) const;

    /// Replaces an image on disk, data and documentation, both or neither: .rst with .rdc, or .img with .doc, by the
    /// name of either. The header is written as it stands. The image keeps its own path.
    /// @throws EFileException if the suffix is another or the files cannot be written.
    void SaveToFile(const QString& fileName) const;

    /// A full copy, path included. For TImageFactory.
    /// @throws EOutOfMemory.
    virtual std::unique_ptr<TAbstractImage> Clone() const;

protected:
    TAbstractImage() = default;
    explicit TAbstractImage(TImageHeader header) : FHeader(std::move(header)) {}
    TAbstractImage(QString filePath, TImageHeader header)
        : FHeader(std::move(header)),
          FFilePath(std::move(filePath)) {}
    TAbstractImage(const TAbstractImage&) = default;

    /// Reads the data file that belongs to the header, in the form that the header names.
    /// @throws EFileFormatException with `fileName`; the image is unchanged then.
    virtual void LoadData(QIODevice& data, const QString& fileName);

    /// Writes the data file in the form that HeaderForFile names.
    /// @throws EFileException if the device does not take it all.
    virtual void SaveData(QIODevice& data) const { SaveToStream(data); }

    /// Sets the header's range, and that of the display; 0 to 0 if there are no values.
    void StoreValueRange(const TFoundRange& range);

    /// The header as it is written beside the data. Packed images are written as binary ones.
    TImageHeader HeaderForFile() const;

private:
    friend class TImageFactory;

    TImageHeader FHeader;
    QString FFilePath;
};

} // namespace lmx
