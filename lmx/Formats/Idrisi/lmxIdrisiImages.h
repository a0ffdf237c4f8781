#pragma once

#include <lmx/Formats/Idrisi/lmxAbstractImage.h>
#include <lmx/Runtime/lmxExport.h>

#include <QString>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <vector>

namespace lmx {

/// What the image classes share: cells of the type `Cell` in memory. `Image` is the class itself; it says which files
/// are its own (`Accepts`) and makes a header one of its own (`Adopt`).
///
/// Cells are kept as the file has them; GetCell, SetCell and ReadRow translate the flag. An image made from a header
/// holds zeros, and takes memory when a cell is stored or a row is asked for: a header's claim alone costs nothing.
template<class Image, class Cell>
class LMX_EXPORT TTypedImage : public TAbstractImage {
public:
    QString GetClassName() const override { return Image::ClassName(); }
    float GetCell(std::int32_t column, std::int32_t row) const override;
    void SetCell(std::int32_t column, std::int32_t row, float number) override;
    void ReadRow(std::int32_t row, std::span<float> numbers) const override;
    void LoadFromStream(QIODevice& stream) override;
    void SaveToStream(QIODevice& stream) const override;
    std::unique_ptr<TAbstractImage> Clone() const override;

    /// The cells of a row, to read and to write, flags as they stand.
    /// @throws EArgumentException "Row index is out of range"; EOutOfMemory if there is no room for all cells.
    std::span<Cell> GetRow(std::int32_t row);

    /// Stores all cells, row by row from the first one, and the range of their values as UpdateValueRange does, each
    /// row while it is at hand: the way to fill a large image. `fill` must write each cell of the row that it gets; if
    /// it raises, the image is as it was.
    /// @throws EOutOfMemory if there is no room for all cells.
    void FillRows(const std::function<void(std::int32_t row, std::span<Cell> cells)>& fill);

protected:
    /// Reads the header of the file and, if `load` is true, the cells; otherwise they are zeros.
    /// @throws EFileException if a file is missing or "does not fit into memory", EFileFormatException if it is damaged
    /// or of another class.
    TTypedImage(const QString& filePath, bool load);

    /// An image of zeros. The header's data and file type become those of the class.
    /// @throws EArgumentException "Image size is negative".
    TTypedImage(const QString& filePath, const TImageHeader& header);

    TTypedImage(const TTypedImage&) = default;

    void LoadData(QIODevice& data, const QString& fileName) override;
    const std::vector<Cell>& Cells() const { return FCells; }
    std::uint64_t CellCount() const;

private:
    void CheckRow(std::int32_t row) const;
    std::size_t CheckedIndex(std::int32_t column, std::int32_t row) const;
    std::size_t RowStart(std::int32_t row) const;
    void NeedCells();
    void NumbersOf(std::span<const Cell> cells, std::span<float> numbers) const;
    void AddTo(TFoundRange& range, std::span<const Cell> cells, std::span<float> room) const;

    std::int32_t FColumns = 0;
    std::int32_t FRows = 0;
    std::vector<Cell> FCells; ///< row by row; empty while all are zero
};

/// Cells 0 to 255: data types byte and RGB8, binary or packed.
class LMX_EXPORT TByteImage final : public TTypedImage<TByteImage, std::uint8_t> {
public:
    TByteImage(const QString& filePath, bool load) : TTypedImage(filePath, load) {}
    TByteImage(const QString& filePath, const TImageHeader& header) : TTypedImage(filePath, header) {}

    static QString ClassName() { return QStringLiteral("TByteImage"); }
    static bool Accepts(const TImageHeader& header);
    static void Adopt(TImageHeader& header);
};

/// Cells -32768 to 32767: data type integer, binary or packed.
class LMX_EXPORT TIntegerImage final : public TTypedImage<TIntegerImage, std::int16_t> {
public:
    TIntegerImage(const QString& filePath, bool load) : TTypedImage(filePath, load) {}
    TIntegerImage(const QString& filePath, const TImageHeader& header) : TTypedImage(filePath, header) {}

    static QString ClassName() { return QStringLiteral("TIntegerImage"); }
    static bool Accepts(const TImageHeader& header);
    static void Adopt(TImageHeader& header);
};

/// Cells of single precision: data type real, binary.
class LMX_EXPORT TRealImage final : public TTypedImage<TRealImage, float> {
public:
    TRealImage(const QString& filePath, bool load) : TTypedImage(filePath, load) {}
    TRealImage(const QString& filePath, const TImageHeader& header) : TTypedImage(filePath, header) {}

    static QString ClassName() { return QStringLiteral("TRealImage"); }
    static bool Accepts(const TImageHeader& header);
    static void Adopt(TImageHeader& header);
};

/// Cells of single precision whose data file is text, of any data type but RGB24. Streams hold them as floats.
class LMX_EXPORT TAsciiImage final : public TTypedImage<TAsciiImage, float> {
public:
    TAsciiImage(const QString& filePath, bool load) : TTypedImage(filePath, load) {}
    TAsciiImage(const QString& filePath, const TImageHeader& header) : TTypedImage(filePath, header) {}

    static QString ClassName() { return QStringLiteral("TAsciiImage"); }
    static bool Accepts(const TImageHeader& header);
    static void Adopt(TImageHeader& header);

protected:
    void SaveData(QIODevice& data) const override; ///< one number a line, in the shortest exact form
};

extern template class TTypedImage<TByteImage, std::uint8_t>;
extern template class TTypedImage<TIntegerImage, std::int16_t>;
extern template class TTypedImage<TRealImage, float>;
extern template class TTypedImage<TAsciiImage, float>;

} // namespace lmx
