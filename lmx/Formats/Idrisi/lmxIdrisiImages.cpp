#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>

#include <lmx/Climate/lmxFoundRange.h>
#include <lmx/Formats/Idrisi/Private/lmxCellFlag.h>
#include <lmx/Formats/Idrisi/Private/lmxImageCells.h>
#include <lmx/Formats/Idrisi/Private/lmxImageFiles.h>
#include <lmx/Formats/Text/Private/lmxAsciiNumber.h>
#include <lmx/Runtime/Private/lmxMemory.h>
#include <lmx/Runtime/Private/lmxReplacementFile.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxExtended.h>

#include <QFile>
#include <QIODevice>

#include <algorithm>
#include <type_traits>
#include <utility>

namespace lmx {

namespace {

QString StreamName() {
    return QStringLiteral("Image data");
}

[[noreturn]] void RefuseWriting(const QIODevice& device) {
    throw EFileException(StreamName(), QStringLiteral("cannot be written: ") + device.errorString());
}

bool IsText(const TImageHeader& header) {
    return header.GetFileType() == TImageFileType::ftAscii;
}

void AdoptNumbers(TImageHeader& header, TImageDataType type) {
    header.SetDataType(type);
    if (IsText(header))
        header.SetFileType(TImageFileType::ftBinary);
}

} // namespace

template<class Image, class Cell>
TTypedImage<Image, Cell>::TTypedImage(const QString& filePath, const TImageHeader& header)
    : TAbstractImage(filePath, header),
      FColumns(header.GetWidth()),
      FRows(header.GetHeight()) {
    if (FColumns < 0 || FRows < 0)
        throw EArgumentException(QStringLiteral("Image size is negative"));
    Image::Adopt(*getHeader());
}

template<class Image, class Cell>
TTypedImage<Image, Cell>::TTypedImage(const QString& filePath, bool load) : TAbstractImage(filePath, TImageHeader()) {
    TImageFileReader reader(filePath);
    *getHeader() = reader.GetHeader();
    if (!Image::Accepts(*getHeader()))
        throw EFileFormatException(filePath, QStringLiteral("the file is not one of a ") + GetClassName());
    FColumns = getHeader()->GetWidth();
    FRows = getHeader()->GetHeight();
    if (!load)
        return;
    TTypedImage::LoadData(reader.GetData(), reader.GetDataName());
    if (!reader.HasValueRange())
        UpdateValueRange();
}

template<class Image, class Cell>
void TTypedImage<Image, Cell>::CheckRow(std::int32_t row) const {
    if (row < 1 || row > FRows)
        throw EArgumentException(QStringLiteral("Row index is out of range"));
}

template<class Image, class Cell>
std::size_t TTypedImage<Image, Cell>::RowStart(std::int32_t row) const {
    return static_cast<std::size_t>(row - 1) * static_cast<std::size_t>(FColumns);
}

template<class Image, class Cell>
std::size_t TTypedImage<Image, Cell>::CheckedIndex(std::int32_t column, std::int32_t row) const {
    CheckRow(row);
    if (column < 1 || column > FColumns)
        throw EArgumentException(QStringLiteral("Col index is out of range"));
    return RowStart(row) + static_cast<std::size_t>(column - 1);
}

template<class Image, class Cell>
std::uint64_t TTypedImage<Image, Cell>::CellCount() const {
    return static_cast<std::uint64_t>(FColumns) * static_cast<std::uint64_t>(FRows);
}

template<class Image, class Cell>
void TTypedImage<Image, Cell>::NeedCells() {
    if (!FCells.empty())
        return;
    NeedMemoryFor<Cell>(CellCount());
    WithinMemory([this] { FCells.resize(CellCount()); });
}

template<class Image, class Cell>
float TTypedImage<Image, Cell>::GetCell(std::int32_t column, std::int32_t row) const {
    const std::size_t index = CheckedIndex(column, row);
    return TCellFlag<Cell>(*getHeader()).ToNumber(FCells.empty() ? Cell{} : FCells[index]);
}

template<class Image, class Cell>
void TTypedImage<Image, Cell>::SetCell(std::int32_t column, std::int32_t row, float number) {
    const std::size_t index = CheckedIndex(column, row);
    const TCellFlag<Cell> flag(*getHeader());
    Cell cell{};
    if (number == TSpatialConst::NoData && flag.IsDeclared())
        cell = flag.GetFlag();
    else if (!TCellFlag<Cell>::FitsCell(number))
        throw EArgumentException(QStringLiteral("Value does not fit into the image's cells"));
    else if constexpr (std::is_integral_v<Cell>)
        cell = static_cast<Cell>(Round(number));
    else
        cell = number;
    NeedCells();
    FCells[index] = cell;
}

template<class Image, class Cell>
void TTypedImage<Image, Cell>::ReadRow(std::int32_t row, std::span<float> numbers) const {
    CheckRow(row);
    if (numbers.size() != static_cast<std::size_t>(FColumns))
        throw EArgumentException(QStringLiteral("Length of the row does not match"));
    if (FCells.empty())
        std::fill(numbers.begin(), numbers.end(), TCellFlag<Cell>(*getHeader()).ToNumber(Cell{}));
    else
        NumbersOf(std::span(FCells).subspan(RowStart(row), numbers.size()), numbers);
}

template<class Image, class Cell>
void TTypedImage<Image, Cell>::NumbersOf(std::span<const Cell> cells, std::span<float> numbers) const {
    const TCellFlag<Cell> flag(*getHeader());
    if (flag.IsPlain())
        std::copy(cells.begin(), cells.end(), numbers.begin());
    else
        std::transform(cells.begin(), cells.end(), numbers.begin(), [&flag](Cell cell) { return flag.ToNumber(cell); });
}

template<class Image, class Cell>
std::span<Cell> TTypedImage<Image, Cell>::GetRow(std::int32_t row) {
    CheckRow(row);
    NeedCells();
    return std::span<Cell>(FCells).subspan(RowStart(row), static_cast<std::size_t>(FColumns));
}

template<class Image, class Cell>
void TTypedImage<Image, Cell>::AddTo(TFoundRange& range, std::span<const Cell> cells, std::span<float> room) const {
    if constexpr (std::is_same_v<Cell, float>) {
        if (TCellFlag<Cell>(*getHeader()).IsPlain()) {
            range.Add(cells);
            return;
        }
    }
    NumbersOf(cells, room);
    range.Add(room);
}

template<class Image, class Cell>
void TTypedImage<Image, Cell>::FillRows(const std::function<void(std::int32_t row, std::span<Cell> cells)>& fill) {
    NeedMemoryFor<Cell>(CellCount());
    const auto columns = static_cast<std::size_t>(FColumns);
    std::vector<Cell> cells;
    std::vector<Cell> rowCells;
    std::vector<float> numbers;
    WithinMemory([&] {
        cells.reserve(CellCount());
        rowCells.resize(columns);
        numbers.resize(columns);
    });
    PreferLargePages(cells.data(), CellCount() * sizeof(Cell));
    TFoundRange range;
    for (std::int32_t row = 1; row <= FRows; ++row) {
        fill(row, rowCells);
        AddTo(range, rowCells, numbers);
        cells.insert(cells.end(), rowCells.begin(), rowCells.end());
    }
    FCells = std::move(cells);
    StoreValueRange(range);
}

template<class Image, class Cell>
void TTypedImage<Image, Cell>::LoadData(QIODevice& data, const QString& fileName) {
    FCells = ReadCells<Cell>(data, getHeader()->GetFileType(), CellCount(), fileName);
}

template<class Image, class Cell>
void TTypedImage<Image, Cell>::LoadFromStream(QIODevice& stream) {
    FCells = ReadCells<Cell>(stream, TImageFileType::ftBinary, CellCount(), StreamName());
}

template<class Image, class Cell>
void TTypedImage<Image, Cell>::SaveToStream(QIODevice& stream) const {
    if (!WriteCells<Cell>(stream, FCells, CellCount()))
        RefuseWriting(stream);
}

template<class Image, class Cell>
std::unique_ptr<TAbstractImage> TTypedImage<Image, Cell>::Clone() const {
    return WithinMemory([this] { return std::make_unique<Image>(static_cast<const Image&>(*this)); });
}

template class TTypedImage<TByteImage, std::uint8_t>;
template class TTypedImage<TIntegerImage, std::int16_t>;
template class TTypedImage<TRealImage, float>;
template class TTypedImage<TAsciiImage, float>;

bool TByteImage::Accepts(const TImageHeader& header) {
    const TImageDataType type = header.GetDataType();
    return !IsText(header) && (type == TImageDataType::dtByte || type == TImageDataType::dtRgb8);
}

void TByteImage::Adopt(TImageHeader& header) {
    AdoptNumbers(header,
                 header.GetDataType() == TImageDataType::dtRgb8 ? TImageDataType::dtRgb8 : TImageDataType::dtByte);
}

bool TIntegerImage::Accepts(const TImageHeader& header) {
    return !IsText(header) && header.GetDataType() == TImageDataType::dtInteger;
}

void TIntegerImage::Adopt(TImageHeader& header) {
    AdoptNumbers(header, TImageDataType::dtInteger);
}

bool TRealImage::Accepts(const TImageHeader& header) {
    return !IsText(header) && header.GetDataType() == TImageDataType::dtReal;
}

void TRealImage::Adopt(TImageHeader& header) {
    AdoptNumbers(header, TImageDataType::dtReal);
}

bool TAsciiImage::Accepts(const TImageHeader& header) {
    return IsText(header) && header.GetDataType() != TImageDataType::dtRgb24;
}

void TAsciiImage::Adopt(TImageHeader& header) {
    header.SetFileType(TImageFileType::ftAscii);
    if (header.GetDataType() == TImageDataType::dtRgb24)
        header.SetDataType(TImageDataType::dtReal);
}

void TAsciiImage::SaveData(QIODevice& data) const {
    QByteArray lines;
    for (std::uint64_t i = 0; i < CellCount(); ++i) {
        AppendAsciiNumber(lines, Cells().empty() ? 0.0F : Cells()[i]);
        lines += "\r\n";
        if (lines.size() < 64 * 1024 && i + 1 < CellCount())
            continue;
        if (!WriteAll(data, lines))
            RefuseWriting(data);
        lines.resize(0);
    }
}

} // namespace lmx
