#include <lmx/Formats/Idrisi/lmxIdrisiImageExporter.h>

#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/Formats/Idrisi/lmxAbstractImage.h>
#include <lmx/Formats/Text/Private/lmxAsciiNumber.h>
#include <lmx/Runtime/Private/lmxMemory.h>
#include <lmx/Runtime/Private/lmxReplacementFile.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxExtended.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Runtime/lmxText.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace lmx {

namespace {

constexpr float ExportedNoData = -9999.0F; // the number that other programs take for missing data without being told

QByteArray NumberText(extended number) {
    return FloatToStr(number, TFormatSettings::Invariant()).toLatin1();
}

// The decimal number that a single stands for: 166.4 rather than 166.399993896484375.
extended AsDecimal(float number) {
    return StrToFloat(AsciiNumber(number), TFormatSettings::Invariant());
}

/// The grid lines of an image, in decimal arithmetic, so that positions have no trace of the single precision of
/// bounds.
struct TGridLines {
    TGridLines(const TImageHeader& header, const QString& fileName)
        : Columns(header.GetWidth()),
          Rows(header.GetHeight()) {
        const bool isInOrder = header.GetMinX() < header.GetMaxX() && header.GetMinY() < header.GetMaxY();
        const bool isFinite =
            std::isfinite(header.GetMaxX() - header.GetMinX()) && std::isfinite(header.GetMaxY() - header.GetMinY());
        if (Columns < 1 || Rows < 1 || !isInOrder || !isFinite)
            throw EFileException(fileName, QStringLiteral("the image has no bounds to write a grid with"));
        West = AsDecimal(header.GetMinX());
        South = AsDecimal(header.GetMinY());
        North = AsDecimal(header.GetMaxY());
        CellWidth = (AsDecimal(header.GetMaxX()) - West) / Columns;
        CellHeight = (North - South) / Rows;
        const auto uncertainty = [](float a, float b, std::int32_t count) {
            return std::max(std::abs(a), std::abs(b)) * extended(std::numeric_limits<float>::epsilon()) / count;
        };
        IsSquare = std::abs(CellWidth - CellHeight) <= uncertainty(header.GetMinX(), header.GetMaxX(), Columns) +
                                                           uncertainty(header.GetMinY(), header.GetMaxY(), Rows);
    }

    std::int32_t Columns;
    std::int32_t Rows;
    extended West;
    extended South;
    extended North;
    extended CellWidth;
    extended CellHeight;
    bool IsSquare;
};

// A text file that appears whole, when it is committed.
class TTextFile {
public:
    explicit TTextFile(const QString& fileName) : FFile(fileName), FLineBreak(LineBreak().toLatin1()) {}

    /// Where text is appended.
    QByteArray& Text() { return FText; }

    void EndLine() {
        FText += FLineBreak;
        if (FText.size() >= BlockSize)
            WriteText();
    }

    void Commit() {
        WriteText();
        FFile.Commit();
    }

private:
    static constexpr qsizetype BlockSize = 256 * 1024;

    void WriteText() {
        FFile.Write(FText);
        FText.resize(0);
    }

    TReplacementFile FFile;
    QByteArray FText;
    QByteArray FLineBreak;
};

void AppendCell(QByteArray& text, float number) {
    AppendAsciiNumber(text, TSpatialConst::IsValue(number) ? number : ExportedNoData);
}

void WriteHeadingLine(TTextFile& file, const QByteArray& key, const QByteArray& value) {
    file.Text() += key.leftJustified(14) + value;
    file.EndLine();
}

void WriteGridHeading(TTextFile& file, const TGridLines& grid) {
    WriteHeadingLine(file, "ncols", NumberText(grid.Columns));
    WriteHeadingLine(file, "nrows", NumberText(grid.Rows));
    WriteHeadingLine(file, "xllcorner", NumberText(grid.West));
    WriteHeadingLine(file, "yllcorner", NumberText(grid.South));
    if (grid.IsSquare) {
        WriteHeadingLine(file, "cellsize", NumberText(grid.CellWidth));
    } else {
        WriteHeadingLine(file, "dx", NumberText(grid.CellWidth));
        WriteHeadingLine(file, "dy", NumberText(grid.CellHeight));
    }
    WriteHeadingLine(file, "NODATA_value", NumberText(ExportedNoData));
}

void WriteGrid(const TAbstractImage& image, const QString& fileName) {
    const TGridLines grid(*image.getHeader(), fileName);
    TTextFile file(fileName);
    WriteGridHeading(file, grid);
    std::vector<float> numbers(static_cast<std::size_t>(grid.Columns));
    for (std::int32_t row = 1; row <= grid.Rows; ++row) {
        image.ReadRow(row, numbers);
        for (std::size_t column = 0; column < numbers.size(); ++column) {
            if (column > 0)
                file.Text() += ' ';
            AppendCell(file.Text(), numbers[column]);
        }
        file.EndLine();
    }
    file.Commit();
}

void WriteXYZ(const TAbstractImage& image, const QString& fileName) {
    const TGridLines grid(*image.getHeader(), fileName);
    TTextFile file(fileName);
    std::vector<QByteArray> xTexts;
    for (std::int32_t column = 0; column < grid.Columns; ++column)
        xTexts.push_back(NumberText(grid.West + (column + 0.5L) * grid.CellWidth) + ' ');
    std::vector<float> numbers(xTexts.size());
    for (std::int32_t row = 1; row <= grid.Rows; ++row) {
        image.ReadRow(row, numbers);
        const QByteArray yText = NumberText(grid.North - (row - 0.5L) * grid.CellHeight) + ' ';
        for (std::size_t column = 0; column < numbers.size(); ++column) {
            file.Text() += xTexts[column];
            file.Text() += yText;
            AppendCell(file.Text(), numbers[column]);
            file.EndLine();
        }
    }
    file.Commit();
}

} // namespace

void TIdrisiImageSaveCopyExporter::Export(const TAbstractImage& image, const QString& fileName) {
    image.SaveToFile(fileName);
}

void TArcInfoGridASCIIExporter::Export(const TAbstractImage& image, const QString& fileName) {
    WithinMemory([&] { WriteGrid(image, fileName); });
}

void TXYZAsciiExporter::Export(const TAbstractImage& image, const QString& fileName) {
    WithinMemory([&] { WriteXYZ(image, fileName); });
}

} // namespace lmx
