#include <lmx/Raster/lmxField.h>

#include <lmx/Formats/Idrisi/lmxAbstractImage.h>
#include <lmx/Raster/Private/lmxNewValues.h>
#include <lmx/Raster/lmxRasterFrame.h>

#include <algorithm>
#include <cstddef>
#include <variant>
#include <vector>

namespace lmx {

TField TField::Of(const TAbstractImage& image) {
    const TImageHeader& header = *image.getHeader();
    TField field;
    field.Bounds = TMapArea(header.GetMinX(), header.GetMaxY(), header.GetMaxX(), header.GetMinY());
    field.Width = header.GetWidth();
    field.Height = header.GetHeight();
    field.IsGeographic = header.IsGeographic();
    auto row = NewValues<float>(static_cast<std::uint64_t>(std::max(0, field.Width)));
    field.ReadRow = [&image, row = std::move(row)](std::int32_t number, std::span<double> numbers) mutable {
        image.ReadRow(number + 1, row);
        std::copy(row.begin(), row.end(), numbers.begin());
    };
    return field;
}

TField TField::Of(const IRasterFrame& frame, bool isGeographic) {
    TField field;
    field.Bounds = frame.GetBounds();
    field.Width = frame.GetWidth();
    field.Height = frame.GetHeight();
    field.IsGeographic = isGeographic;
    field.ReadRow = [&frame](std::int32_t row, std::span<double> numbers) {
        std::visit([numbers](auto cells) { std::copy(cells.begin(), cells.end(), numbers.begin()); },
                   frame.ScanLine(row));
    };
    return field;
}

} // namespace lmx
