#pragma once

#include <lmx/Coordinates/wskMappingTypes.h>
#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>

#include <QString>

#include <memory>

namespace lmx::tests {

/// An image of `columns` x `rows` whose cell at (column, row) holds 10 * row + column.
inline std::unique_ptr<TRealImage> NumberedImage(int columns, int rows, const TMapArea& area) {
    TImageHeader header;
    header.SetWidth(columns);
    header.SetHeight(rows);
    header.SetMinX(static_cast<float>(area.Left));
    header.SetMaxX(static_cast<float>(area.Right));
    header.SetMinY(static_cast<float>(area.Bottom));
    header.SetMaxY(static_cast<float>(area.Top));
    header.SetRefSystem(QStringLiteral("latlong"));
    header.SetMinValue(1);
    header.SetMaxValue(99);
    auto image = std::make_unique<TRealImage>(QString(), header);
    for (int row = 1; row <= rows; ++row)
        for (int column = 1; column <= columns; ++column)
            image->SetCell(column, row, static_cast<float>(10 * row + column));
    return image;
}

} // namespace lmx::tests
