#include <lmx/Raster/lmxArcInfoAsciiGridRasterFrame.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <lmx/Runtime/lmxText.h>
#include <tests/Support/CoordinatePrinters.h>
#include <tests/Support/FileSizeLimit.h>
#include <tests/Support/Printers.h>

#include <QBuffer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <map>
#include <vector>

namespace lmx {
namespace {

using tests::MessageOf;
using enum TDataKind;

QString DataFile(const char* name) {
    return QStringLiteral(LMX_SOURCE_DIR "/tests/data/aaigrid/") + QString::fromLatin1(name);
}

QByteArray Heading(const QByteArray& columns = "3", const QByteArray& rows = "2") {
    return "ncols " + columns + "\nnrows " + rows + "\nxllcorner 10\nyllcorner 20\ncellsize 2.5\nNODATA_value -9999\n";
}

/// Opens what is protected.
class TOpenGrid final : public TArcInfoAsciiGridRasterFrame {
public:
    using TArcInfoAsciiGridRasterFrame::GetRowString;
    using TArcInfoAsciiGridRasterFrame::Load;
    using TArcInfoAsciiGridRasterFrame::TArcInfoAsciiGridRasterFrame;
};

struct ArcInfoAsciiGridRasterFrame : testing::Test {
    TFormatSettingsScope Settings{{u'.'}};
    QTemporaryDir Folder;
    QBuffer Stream;

    QIODevice& Text(const QByteArray& text) {
        Stream.close();
        Stream.setData(text);
        Stream.open(QIODevice::ReadOnly);
        return Stream;
    }
    QString Path(const char* name) const { return Folder.filePath(QString::fromLatin1(name)); }
    static QByteArray TextOf(const TArcInfoAsciiGridRasterFrame& frame) {
        QBuffer stream;
        stream.open(QIODevice::WriteOnly);
        frame.Save(stream);
        return QByteArray(stream.data()).replace(LineBreak().toUtf8(), "\n");
    }
};

std::vector<double> CellsOf(const IRasterFrame& frame) {
    std::vector<double> cells;
    for (std::int32_t row = 0; row < frame.GetHeight(); ++row)
        for (std::int32_t col = 0; col < frame.GetWidth(); ++col)
            cells.push_back(frame.ReadCell(row, col));
    return cells;
}

// Reading

TEST_F(ArcInfoAsciiGridRasterFrame, PutsTheFirstLineAtTheTop) {
    const TArcInfoAsciiGridRasterFrame frame(Text(Heading() + "1 2 3\n4 -9999 0.1\n"), dkFloat);
    EXPECT_EQ(CellsOf(frame), (std::vector<double>{1, 2, 3, 4, -9999, 0.1F}));
    EXPECT_EQ(frame.GetBounds(), TMapArea(10, 25, 17.5, 20));
    EXPECT_EQ(frame.GetResolution(), 2.5);
    EXPECT_EQ(frame.GetXOrder(), TOrder::doAsc);
    EXPECT_EQ(frame.GetYOrder(), TOrder::doDesc);
    EXPECT_EQ(frame.Read(12.5, 22.5), -9999) << "nothing translates the value of cells without data";
    EXPECT_EQ(frame.GetHeading()->GetNODATAValue(), -9999);
}

TEST_F(ArcInfoAsciiGridRasterFrame, HoldsSinglesWhateverWasAskedFor) {
    const QByteArray text = Heading() + "1 2 3\n4 5 6.5\n";
    WriteFile(Path("grid.asc"), text);
    for (const TDataKind kind : {dkByte, dkInt, dkFloat, dkDouble, dkColor32}) {
        const TArcInfoAsciiGridRasterFrame fromStream(Text(text), kind);
        EXPECT_EQ(fromStream.GetKind(), dkFloat);
        const TArcInfoAsciiGridRasterFrame fromFile(Path("grid.asc"), kind);
        EXPECT_EQ(fromFile.GetKind(), dkFloat);
        EXPECT_EQ(fromFile.GetBufferKind(), dkFloat);
        EXPECT_EQ(fromFile.ReadCell(1, 2), 6.5);
    }
}

TEST_F(ArcInfoAsciiGridRasterFrame, ComputesItsBoundsInExtended) {
    const TArcInfoAsciiGridRasterFrame frame(
        Text("ncols 2\nnrows 1\nxllcorner 0.1\nyllcorner 0.2\ncellsize 0.1\nNODATA_value 0\n1 2"), dkFloat);
    const TMapArea bounds = frame.GetBounds();
    EXPECT_EQ(bounds.Right, static_cast<extended>(0.1) + 2 * static_cast<extended>(0.1));
    EXPECT_EQ(bounds.Top, static_cast<extended>(0.2) + static_cast<extended>(0.1));
    EXPECT_NE(bounds.Right, static_cast<extended>(0.1 + 2 * 0.1));
}

TEST_F(ArcInfoAsciiGridRasterFrame, LeavesAStreamBehindItsLastRow) {
    const TArcInfoAsciiGridRasterFrame frame(Text(Heading() + "1 2 3\r\n4 5 6\r\nnext"), dkFloat);
    EXPECT_EQ(Stream.readAll(), "next");
}

TEST_F(ArcInfoAsciiGridRasterFrame, FollowsTheDecimalSeparator) {
    const TFormatSettingsScope comma({u','});
    const QByteArray text = Heading().replace('.', ',');
    const TArcInfoAsciiGridRasterFrame frame(Text(text + "1,5 2 3\n4 5 -6,25\n"), dkFloat);
    EXPECT_EQ(CellsOf(frame), (std::vector<double>{1.5, 2, 3, 4, 5, -6.25}));
    EXPECT_EQ(frame.GetResolution(), 2.5);
    EXPECT_EQ(MessageOf<EConvertError>([&] { TArcInfoAsciiGridRasterFrame(Text(text + "1.5 2 3\n"), dkFloat); }),
              "'1.5' is not a valid floating point value");
}

TEST_F(ArcInfoAsciiGridRasterFrame, FollowsTheSettingsThatItIsGiven) {
    constexpr TFormatSettings comma{u','};
    const QByteArray text = Heading().replace('.', ',') + "1,5 2 3\n4 5 -6,25\n";
    WriteFile(Path("comma.asc"), text);
    EXPECT_EQ(CellsOf(TArcInfoAsciiGridRasterFrame(Text(text), dkFloat, comma)),
              (std::vector<double>{1.5, 2, 3, 4, 5, -6.25}));
    const TOpenGrid grid(Path("comma.asc"), dkFloat, comma);
    EXPECT_EQ(grid.ReadCell(1, 2), -6.25);
    EXPECT_EQ(grid.GetRowString(1, comma), "4 5 -6,25");
    EXPECT_EQ(grid.GetRowString(1), "4 5 -6.25");
    grid.Save(Path("saved.asc"), comma);
    EXPECT_TRUE(ReadFile(Path("saved.asc")).endsWith("4 5 -6,25" + LineBreak().toUtf8()));
    EXPECT_TRUE(ReadFile(Path("saved.asc")).contains("cellsize      2,5"));
    QBuffer stream;
    stream.open(QIODevice::WriteOnly);
    grid.Save(stream, comma);
    EXPECT_EQ(stream.data(), ReadFile(Path("saved.asc")));
    TOpenGrid loaded(TMapArea(0, 1, 1, 0), 1, 1, dkByte);
    loaded.Load(Text(Heading().replace('.', ',') + "1 2 3\n4 5 6\n"), dkInt, comma);
    EXPECT_EQ(loaded.GetResolution(), 2.5);
}

TEST_F(ArcInfoAsciiGridRasterFrame, TellsFileAndLineOfAFailure) {
    const auto descriptionOf = [this](const QByteArray& text) {
        WriteFile(Path("grid.asc"), text);
        try {
            TArcInfoAsciiGridRasterFrame(Path("grid.asc"), dkFloat);
        } catch (const Exception& failure) {
            return failure.Description();
        }
        return QString();
    };
    const QString line = Path("grid.asc") + QStringLiteral(", line ");
    EXPECT_EQ(descriptionOf("lat,lon\n"), line + "1: Line does not start with expected line ID");
    EXPECT_EQ(descriptionOf(Heading("3", "-2")), line + "2: Value for \"nrows\" is invalid");
    EXPECT_EQ(descriptionOf(Heading() + "1 2 3\n4 5\n"), line + "8: Row 1 contains 2 values, 3 were expected");
    EXPECT_EQ(descriptionOf(Heading() + "1 x 3\n"), line + "7: 'x' is not a valid floating point value");
    EXPECT_EQ(descriptionOf(QByteArray(17'000'000, ' ')),
              Path("grid.asc") + QStringLiteral(": line 1 is longer than 16777216 bytes"));
}

TEST_F(ArcInfoAsciiGridRasterFrame, MayHaveNoRowsOrNoCellsAtAll) {
    const TArcInfoAsciiGridRasterFrame noRows(Text(Heading("3", "0") + "rest"), dkFloat);
    EXPECT_EQ(noRows.GetWidth(), 3);
    EXPECT_EQ(noRows.GetHeight(), 0);
    const TArcInfoAsciiGridRasterFrame nothing(Text(Heading("0", "0")), dkFloat);
    EXPECT_EQ(nothing.GetWidth(), 0);
    EXPECT_EQ(MessageOf<EArgumentException>([&] { TArcInfoAsciiGridRasterFrame(Text(Heading("0", "2")), dkFloat); }),
              "Col index is out of range");
}

TEST_F(ArcInfoAsciiGridRasterFrame, TakesTheFormOfItsCellSize) {
    const QByteArray negative = Heading("2", "1").replace("2.5", "-1");
    const TArcInfoAsciiGridRasterFrame turned(Text(negative + "1 2\n"), dkFloat);
    EXPECT_EQ(turned.GetBounds(), TMapArea(10, 19, 8, 20));
    EXPECT_EQ(turned.GetXOrder(), TOrder::doDesc);
    EXPECT_EQ(turned.GetYOrder(), TOrder::doAsc);
    const TArcInfoAsciiGridRasterFrame flat(Text(Heading("2", "1").replace("2.5", "0") + "1 2\n"), dkFloat);
    EXPECT_EQ(flat.GetResolution(), 0);
}

TEST_F(ArcInfoAsciiGridRasterFrame, RefusesADamagedHeadingAndDamagedRows) {
    const auto messageOf = [this]<class Failure>(Failure*, const QByteArray& text) {
        return MessageOf<Failure>([&] { TArcInfoAsciiGridRasterFrame(Text(text), dkFloat); });
    };
    EArgumentException* const argument = nullptr;
    EConvertError* const convert = nullptr;
    Exception* const count = nullptr;
    EXPECT_EQ(messageOf(argument, QByteArray()), "Line does not start with expected line ID");
    EXPECT_EQ(messageOf(argument, "\n" + Heading() + "1 2 3\n4 5 6\n"), "Line does not start with expected line ID");
    EXPECT_EQ(messageOf(argument, Heading().replace("xllcorner", "xllcenter") + "1 2 3\n4 5 6\n"),
              "Line does not start with expected line ID");
    EXPECT_EQ(messageOf(argument, Heading("-3") + "1 2 3\n4 5 6\n"), "Value for \"ncols\" is invalid");
    EXPECT_EQ(messageOf(count, Heading() + "1 2 3\n4 5 6 7\n"), "Row 1 contains 4 values, 3 were expected");
    EXPECT_EQ(messageOf(count, Heading() + "1 2 3\n"), "Row 1 contains 0 values, 3 were expected");
    EXPECT_EQ(messageOf(convert, Heading() + "1 2 3\n4  6\n"), "'' is not a valid floating point value");
    EXPECT_EQ(messageOf(count, Heading("2147483647", "2147483647") + "1 2 3\n"),
              "Row 0 contains 3 values, 2147483647 were expected");
}

TEST_F(ArcInfoAsciiGridRasterFrame, NamesAFileThatCannotBeRead) {
    EXPECT_EQ(MessageOf<EFileException>([&] { TArcInfoAsciiGridRasterFrame(Path("missing.asc"), dkFloat); }),
              Path("missing.asc") + QStringLiteral(": cannot be read: No such file or directory"));
    QBuffer closed;
    EXPECT_EQ(MessageOf<EFileException>([&] { TArcInfoAsciiGridRasterFrame(closed, dkFloat); }),
              "stream: cannot be read: not open");
}

TEST_F(ArcInfoAsciiGridRasterFrame, LoadsIntegersWhereAClassAsksForThem) {
    TOpenGrid grid(TMapArea(0, 1, 1, 0), 1, 1, dkByte);
    grid.Load(Text(Heading() + "1 2 3\n-4 5 2147483647\n"), dkInt);
    EXPECT_EQ(grid.GetKind(), dkInt);
    EXPECT_EQ(CellsOf(grid), (std::vector<double>{1, 2, 3, -4, 5, 2147483647}));
    EXPECT_EQ(grid.GetHeading()->GetNCols(), 3);
}

TEST_F(ArcInfoAsciiGridRasterFrame, StaysAsItWasWhenLoadingFails) {
    TOpenGrid grid(TMapArea(0, 1, 1, 0), 1, 1, dkFloat);
    grid.WriteCell(0, 0, 7);
    EXPECT_EQ(MessageOf<EConvertError>([&] { grid.Load(Text(Heading() + "1 2 3\n4 5 6.5\n"), dkInt); }),
              "'6.5' is not a valid integer value");
    for (const TDataKind kind : {dkByte, dkDouble, dkIndexed, dkRanged, dkColor32})
        EXPECT_EQ(MessageOf<EInvalidOperation>([&] { grid.Load(Text(Heading() + "1 2 3\n4 5 6\n"), kind); }),
                  "Unsupported data kind");
    EXPECT_EQ(CellsOf(grid), std::vector<double>{7});
    EXPECT_EQ(grid.GetBounds(), TMapArea(0, 1, 1, 0));
    EXPECT_EQ(grid.GetHeading()->GetNCols(), 1);
}

TEST_F(ArcInfoAsciiGridRasterFrame, CannotBeCloned) {
    const TArcInfoAsciiGridRasterFrame grid(TMapArea(0, 1, 1, 0), 1, 1, dkFloat);
    EXPECT_EQ(MessageOf<ENotSupportedException>([&] { grid.Clone(); }), "TArcInfoAsciiGridRasterFrame.Clone");
}

// Made from an area, and writing

TEST_F(ArcInfoAsciiGridRasterFrame, TakesItsCellSizeFromTheWidthOfAnArea) {
    const TArcInfoAsciiGridRasterFrame frame(TMapArea(100, 50, 110, 20), 4, 2, dkInt);
    EXPECT_EQ(frame.GetHeading()->GetCellSize(), 2.5);
    EXPECT_EQ(frame.GetHeading()->GetXCorner(), 100);
    EXPECT_EQ(frame.GetHeading()->GetYCorner(), 20);
    EXPECT_EQ(frame.GetHeading()->GetNCols(), 4);
    EXPECT_EQ(frame.GetHeading()->GetNRows(), 2);
    EXPECT_EQ(frame.GetHeading()->GetNODATAValue(), -9999);
    EXPECT_EQ(frame.GetKind(), dkInt);
    EXPECT_EQ(TArcInfoAsciiGridRasterFrame(TMapArea(0, 1, 1, 0), 3, 1, dkInt).GetHeading()->GetCellSize(), 1.0 / 3);
    EXPECT_EQ(CellsOf(frame), std::vector<double>(8, 0));
    EXPECT_EQ(MessageOf<EArgumentException>([] { TArcInfoAsciiGridRasterFrame(TMapArea(), 1, -1, dkInt); }),
              "Frame size is negative");
}

TEST_F(ArcInfoAsciiGridRasterFrame, IsSavedWithAnEmptyLineBeforeItsRows) {
    TArcInfoAsciiGridRasterFrame frame(TMapArea(100, 50, 110, 20), 4, 2, dkFloat);
    for (std::int32_t i = 0; i < 8; ++i)
        frame.WriteCell(i / 4, i % 4, i / 10.0);
    frame.WriteCell(1, 3, -9999);
    EXPECT_EQ(TextOf(frame), "ncols         4\n"
                             "nrows         2\n"
                             "xllcorner     100\n"
                             "yllcorner     20\n"
                             "cellsize      2.5\n"
                             "NODATA_value  -9999\n"
                             "\n"
                             "0 0.1 0.2 0.3\n"
                             "0.4 0.5 0.6 -9999\n");
}

TEST_F(ArcInfoAsciiGridRasterFrame, IsSavedUnderADecimalComma) {
    TArcInfoAsciiGridRasterFrame frame(TMapArea(0, 1, 1, 0), 2, 1, dkFloat);
    frame.WriteCell(0, 1, -0.25);
    const TFormatSettingsScope comma({u','});
    EXPECT_EQ(TextOf(frame), "ncols         2\nnrows         1\nxllcorner     0\nyllcorner     0\n"
                             "cellsize      0,5\nNODATA_value  -9999\n\n0 -0,25\n");
}

TEST_F(ArcInfoAsciiGridRasterFrame, DoesNotReadWhatItWrites) {
    TArcInfoAsciiGridRasterFrame frame(TMapArea(0, 2, 2, 0), 2, 2, dkFloat);
    frame.Save(Path("grid.asc"));
    EXPECT_EQ(MessageOf<Exception>([&] { TArcInfoAsciiGridRasterFrame(Path("grid.asc"), dkFloat); }),
              "Row 0 contains 0 values, 2 were expected");
}

TEST_F(ArcInfoAsciiGridRasterFrame, ReadsWhatItWritesWithoutThatLine) {
    TArcInfoAsciiGridRasterFrame frame(TMapArea(-180, 90, 180, -90), 36, 18, dkFloat);
    for (std::int32_t row = 0; row < 18; ++row)
        for (std::int32_t col = 0; col < 36; ++col)
            frame.WriteCell(row, col, (row * 36 + col) / 7.0);
    const TArcInfoAsciiGridRasterFrame copy(Text(TextOf(frame).replace("\n\n", "\n")), dkFloat);
    EXPECT_EQ(CellsOf(copy), CellsOf(frame));
    EXPECT_EQ(copy.GetBounds(), frame.GetBounds());
}

TEST_F(ArcInfoAsciiGridRasterFrame, KeepsTheHeadingThatItWasMadeWith) {
    TArcInfoAsciiGridRasterFrame frame(Text(Heading("1", "1") + "5\n"), dkFloat);
    const QByteArray before = TextOf(frame);
    frame.SetBounds({0, 1, 1, 0});
    frame.WriteCell(0, 0, 6);
    EXPECT_EQ(TextOf(frame), QByteArray(before).replace("\n5\n", "\n6\n"));
}

TEST_F(ArcInfoAsciiGridRasterFrame, HasRowsOfIntegersAndSinglesOnly) {
    for (const TDataKind kind : {dkInt, dkIndexed, dkRanged, dkColor32, dkFloat}) {
        TOpenGrid grid(TMapArea(0, 1, 1, 0), 3, 1, kind);
        grid.WriteCell(0, 1, -7);
        EXPECT_EQ(grid.GetRowString(0), "0 -7 0");
    }
    for (const TDataKind kind : {dkByte, dkDouble}) {
        const TOpenGrid grid(TMapArea(0, 1, 1, 0), 3, 1, kind);
        EXPECT_EQ(MessageOf<EInvalidOperation>([&] { grid.GetRowString(0); }), "Unsupported buffer kind");
        EXPECT_EQ(MessageOf<EArgumentException>([&] { grid.GetRowString(1); }), "Row index is out of range");
    }
    const TOpenGrid noColumns(TMapArea(0, 1, 1, 0), 0, 1, dkFloat);
    EXPECT_EQ(MessageOf<EArgumentException>([&] { noColumns.GetRowString(-1); }), "Row index is out of range");
    EXPECT_EQ(MessageOf<EArgumentException>([&] { noColumns.GetRowString(0); }), "Col index is out of range");
}

TEST_F(ArcInfoAsciiGridRasterFrame, ReplacesAFileOnlyWhenAllIsWritten) {
    WriteFile(Path("grid.asc"), "old");
    const TArcInfoAsciiGridRasterFrame bytes(TMapArea(0, 1, 1, 0), 1, 1, dkByte);
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { bytes.Save(Path("grid.asc")); }), "Unsupported buffer kind");
    EXPECT_EQ(ReadFile(Path("grid.asc")), "old");
    const TArcInfoAsciiGridRasterFrame singles(TMapArea(0, 1, 1, 0), 1, 1, dkFloat);
    const IRasterFrame& anyFrame = singles;
    anyFrame.Save(Path("grid.asc"));
    EXPECT_EQ(ReadFile(Path("grid.asc")).replace(LineBreak().toUtf8(), "\n"), TextOf(singles));
}

TEST_F(ArcInfoAsciiGridRasterFrame, LeavesTheOldFileWhenTheDiskIsFull) {
    WriteFile(Path("grid.asc"), "old");
    for (const std::int32_t side : {1, 300}) {
        const TArcInfoAsciiGridRasterFrame frame(TMapArea(0, 1, 1, 0), side, side, dkFloat);
        const tests::TFileSizeLimit limit(50);
        EXPECT_EQ(MessageOf<EFileException>([&] { frame.Save(Path("grid.asc")); }),
                  Path("grid.asc") + QStringLiteral(": cannot be written: File too large"));
    }
    EXPECT_EQ(ReadFile(Path("grid.asc")), "old");
}

TEST_F(ArcInfoAsciiGridRasterFrame, NamesWhatCannotBeWritten) {
    const TArcInfoAsciiGridRasterFrame frame(TMapArea(0, 1, 1, 0), 1, 1, dkFloat);
    EXPECT_TRUE(MessageOf<EFileException>([&] {
                    frame.Save(Path("no-folder/grid.asc"));
                }).startsWith(Path("no-folder/grid.asc") + QStringLiteral(": cannot be written: ")));
    EXPECT_EQ(MessageOf<EFileException>([&] { frame.Save(Text("read only")); }), "stream: cannot be written: not open");
}

TEST_F(ArcInfoAsciiGridRasterFrame, SaysSoWhenTheLastBytesAreNotTaken) {
    class TFullStream final : public QIODevice {
    public:
        TFullStream() { open(QIODevice::WriteOnly | QIODevice::Unbuffered); }

    protected:
        qint64 readData(char*, qint64) override { return -1; }
        qint64 writeData(const char*, qint64) override {
            setErrorString(QStringLiteral("No space left"));
            return -1;
        }
    };
    TFullStream stream;
    const TArcInfoAsciiGridRasterFrame frame(TMapArea(0, 1, 1, 0), 1, 1, dkFloat);
    EXPECT_EQ(MessageOf<EFileException>([&] { frame.Save(stream); }), "stream: cannot be written: No space left");
}

// Files of other programs

TEST_F(ArcInfoAsciiGridRasterFrame, ReadsTheWorldOfAnotherProgram) {
    const TArcInfoAsciiGridRasterFrame frame(DataFile("wise_ph1.dat"), dkFloat);
    EXPECT_EQ(frame.GetWidth(), 720);
    EXPECT_EQ(frame.GetHeight(), 360);
    EXPECT_EQ(frame.GetBounds(), TMapArea(-180, 90, 180, -90));
    std::map<double, int> classes;
    for (const double cell : CellsOf(frame))
        ++classes[cell];
    EXPECT_EQ(classes, (std::map<double, int>{
                           {1, 15235}, {2, 13665}, {3, 13414}, {4, 16}, {5, 15499}, {6, 26880}, {7, 174491}}));
    EXPECT_EQ(frame.ReadCell(0, 0), 7);
    EXPECT_EQ(frame.ReadCell(359, 719), 6);
}

TEST_F(ArcInfoAsciiGridRasterFrame, EqualsItsNoDataValueInSinglePrecision) {
    const TArcInfoAsciiGridRasterFrame frame(DataFile("float64.asc"), dkFloat);
    EXPECT_EQ(frame.GetHeading()->GetNODATAValue(), -1.234567890123);
    EXPECT_EQ(frame.GetBounds(), TMapArea(440720, 3750420, 441020, 3750120));
    std::vector<double> expected(25, static_cast<float>(-1.234567890123));
    expected.back() = static_cast<float>(1.234567890123);
    EXPECT_EQ(CellsOf(frame), expected);
}

template<class Failure>
QString MessageFor(const char* name) {
    return MessageOf<Failure>([name] { TArcInfoAsciiGridRasterFrame(DataFile(name), dkFloat); });
}

TEST_F(ArcInfoAsciiGridRasterFrame, RefusesFilesOfALooserForm) {
    EXPECT_EQ(MessageFor<EArgumentException>("byte.tif.grd"), "Line does not start with expected line ID");
    EXPECT_EQ(MessageFor<EArgumentException>("grassascii.txt"), "Line does not start with expected line ID");
    EXPECT_EQ(MessageFor<Exception>("case_sensitive.ASC"), "Row 0 contains 1 values, 15 were expected");
    EXPECT_EQ(MessageFor<EConvertError>("nodata_float.asc"), "'' is not a valid floating point value");
    EXPECT_EQ(MessageFor<EConvertError>("circ_cellmap5x5.asc"),
              "'1\t1\t-9999\t1\t1' is not a valid floating point value");
    EXPECT_EQ(MessageFor<EArgumentException>("pixel_per_line_comma.asc"), "Value for \"xllcorner\" is invalid");
    const TFormatSettingsScope comma({u','});
    EXPECT_EQ(MessageFor<Exception>("pixel_per_line_comma.asc"), "Row 0 contains 1 values, 15 were expected");
}

} // namespace
} // namespace lmx
