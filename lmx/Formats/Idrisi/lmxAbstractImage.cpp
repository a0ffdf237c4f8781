#include <lmx/Formats/Idrisi/lmxAbstractImage.h>

#include <lmx/Climate/lmxFoundRange.h>
#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/Formats/Idrisi/Private/lmxImageFiles.h>
#include <lmx/Runtime/Private/lmxMemory.h>
#include <lmx/Runtime/Private/lmxReplacementFile.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <QFile>

#include <algorithm>
#include <vector>

namespace lmx {

namespace {

[[noreturn]] void RefuseOperation(const TAbstractImage& image, const QString& operation) {
    throw ENotSupportedException(image.GetClassName() + u'.' + operation);
}

// 1-based index of the cell that holds a position `offset` from the first edge of an axis of `count` cells; 0 outside.
// Offset and extent have the same sign, whichever way the bounds are ordered.
std::int32_t CellAt(double offset, double extent, std::int32_t count) {
    const double position = offset * count / extent;
    if (!(position >= 0 && position <= count))
        return 0;
    return std::min(static_cast<std::int32_t>(position), count - 1) + 1;
}

} // namespace

void TAbstractImage::SetCell(std::int32_t, std::int32_t, float) {
    RefuseOperation(*this, QStringLiteral("SetCell"));
}

void TAbstractImage::ReadRow(std::int32_t row, std::span<float> numbers) const {
    if (numbers.size() != static_cast<std::size_t>(std::max(0, FHeader.GetWidth())))
        throw EArgumentException(QStringLiteral("Length of the row does not match"));
    std::int32_t column = 0;
    for (float& number : numbers)
        number = GetCell(++column, row);
}

float TAbstractImage::GetValue(float x, float y) const {
    const double west = FHeader.GetMinX();
    const double north = FHeader.GetMaxY();
    const std::int32_t column = CellAt(x - west, FHeader.GetMaxX() - west, FHeader.GetWidth());
    const std::int32_t row = CellAt(north - y, north - FHeader.GetMinY(), FHeader.GetHeight());
    return column > 0 && row > 0 ? GetCell(column, row) : TSpatialConst::NoData;
}

bool TAbstractImage::UpdateValueRange() {
    const auto width = static_cast<std::size_t>(std::max(0, FHeader.GetWidth()));
    NeedMemoryFor<float>(width);
    std::vector<float> row = WithinMemory([width] { return std::vector<float>(width); });
    TFoundRange range;
    for (std::int32_t y = 1; y <= FHeader.GetHeight(); ++y) {
        ReadRow(y, row);
        range.Add(row);
    }
    StoreValueRange(range);
    return range.HasValues();
}

void TAbstractImage::StoreValueRange(const TFoundRange& range) {
    FHeader.SetMinValue(range.HasValues() ? range.GetLeast() : 0);
    FHeader.SetMaxValue(range.HasValues() ? range.GetGreatest() : 0);
    FHeader.SetDisplayMin(FHeader.GetMinValue());
    FHeader.SetDisplayMax(FHeader.GetMaxValue());
}

void TAbstractImage::LoadFromStream(QIODevice&) {
    RefuseOperation(*this, QStringLiteral("LoadFromStream"));
}

void TAbstractImage::SaveToStream(QIODevice&) const {
    RefuseOperation(*this, QStringLiteral("SaveToStream"));
}

std::unique_ptr<TAbstractImage> TAbstractImage::Clone() const {
    RefuseOperation(*this, QStringLiteral("Clone"));
}

void TAbstractImage::LoadData(QIODevice&, const QString&) {
    RefuseOperation(*this, QStringLiteral("LoadData"));
}

TImageHeader TAbstractImage::HeaderForFile() const {
    TImageHeader header = FHeader;
    if (header.GetFileType() == TImageFileType::ftPacked)
        header.SetFileType(TImageFileType::ftBinary);
    return header;
}

void TAbstractImage::SaveToFile(const QString& fileName) const {
    const TImageFiles files = ImageFilesFor(fileName);
    const bool isNew = !QFile::exists(files.Data);
    TReplacementFile data(files.Data);
    TReplacementFile documentation(files.Documentation);
    try {
        SaveData(data.GetDevice());
    } catch (const EFileException& failure) {
        throw EFileException(files.Data, failure.Problem()); // the device has no name
    }
    documentation.Write(FormatImageDocumentation(HeaderForFile(), files.Form));
    data.Flush();
    documentation.Flush();
    data.Commit();
    try {
        documentation.Commit();
    } catch (const EFileException&) {
        if (isNew)
            QFile::remove(files.Data); // data that nothing documents are of no use
        throw;
    }
}

} // namespace lmx
