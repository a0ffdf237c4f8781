#include <lmx/Raster/lmxLinearRasterFrame.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/CoordinatePrinters.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>
#include <vector>

namespace lmx {
namespace {

using tests::MessageOf;
using enum TDataKind;

constexpr double Nan = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr TDataKind BufferKinds[] = {dkByte, dkInt, dkFloat, dkDouble};

/// 3 x 2 cells: 1 2 3 in row 0, 4 5 6 in row 1.
struct TCountingFrame : TLinearRasterFrame {
    explicit TCountingFrame(TDataKind kind) : TLinearRasterFrame({0, 2, 3, 0}, 3, 2, kind) {
        for (std::int32_t i = 0; i < 6; ++i)
            WriteCell(i / 3, i % 3, i + 1);
    }
};

/// A frame of any form, also one whose cells were never created.
class TOpenFrame final : public TBaseLinearRasterFrame {
public:
    using TBaseLinearRasterFrame::GetIndex;
    using TBaseLinearRasterFrame::Init;
    using TBaseLinearRasterFrame::SetGeometry;
};

// Places

struct TPlaceRow {
    const char* Name;
    TMapArea Area;
    double Col;
    double X;
    double Row;
    double Y;
};

class Places : public testing::TestWithParam<TPlaceRow> {};

TEST_P(Places, GoBothWays) {
    const auto& [name, area, col, x, row, y] = GetParam();
    const TLinearRasterFrame frame(area, 4, 2, dkByte);
    EXPECT_EQ(frame.ColToX(col), x);
    EXPECT_EQ(frame.RowToY(row), y);
    EXPECT_EQ(frame.XToCol(x), col);
    EXPECT_EQ(frame.YToRow(y), row);
    double first = 0;
    double second = 0;
    frame.RowColToXY(row, col, first, second);
    EXPECT_EQ(first, x);
    EXPECT_EQ(second, y);
    frame.XYToRowCol(x, y, first, second);
    EXPECT_EQ(first, row);
    EXPECT_EQ(second, col);
}

INSTANTIATE_TEST_SUITE_P(Rows, Places,
                         testing::Values(TPlaceRow{"TopLeftOfANorthUpFrame", {10, 50, 30, 40}, 0, 10, 0, 50},
                                         TPlaceRow{"BottomRightIsTheOuterEdge", {10, 50, 30, 40}, 4, 30, 2, 40},
                                         TPlaceRow{"InsideNothingIsRounded", {10, 50, 30, 40}, 1.25, 16.25, 0.5, 47.5},
                                         TPlaceRow{"OutsideNothingIsClipped", {10, 50, 30, 40}, -1, 5, 3, 35},
                                         TPlaceRow{"ColumnZeroAtTheLargerX", {30, 50, 10, 40}, 1, 25, 0, 50},
                                         TPlaceRow{"RowZeroAtTheSmallestY", {10, 40, 30, 50}, 0, 10, 1, 45},
                                         TPlaceRow{"BothTurned", {30, 40, 10, 50}, 4, 10, 2, 50}),
                         [](const auto& row) { return row.param.Name; });

struct TOrderRow {
    const char* Name;
    TMapArea Area;
    TOrder XOrder;
    TOrder YOrder;
};

class Orders : public testing::TestWithParam<TOrderRow> {};

TEST_P(Orders, FollowTheArea) {
    const TLinearRasterFrame frame(GetParam().Area, 2, 2, dkByte);
    EXPECT_EQ(frame.GetXOrder(), GetParam().XOrder);
    EXPECT_EQ(frame.GetYOrder(), GetParam().YOrder);
}

INSTANTIATE_TEST_SUITE_P(Rows, Orders,
                         testing::Values(TOrderRow{"NorthUp", {0, 1, 1, 0}, TOrder::doAsc, TOrder::doDesc},
                                         TOrderRow{"SouthUp", {0, 0, 1, 1}, TOrder::doAsc, TOrder::doAsc},
                                         TOrderRow{"EastFirst", {1, 1, 0, 0}, TOrder::doDesc, TOrder::doDesc},
                                         TOrderRow{"NoExtent", {1, 1, 1, 1}, TOrder::doDesc, TOrder::doDesc}),
                         [](const auto& row) { return row.param.Name; });

TEST(BaseLinearRasterFrame, TakesItsResolutionFromTheWidthAlone) {
    EXPECT_EQ(TLinearRasterFrame({0, 100, 10, 0}, 4, 2, dkByte).GetResolution(), 2.5);
    EXPECT_EQ(TLinearRasterFrame({10, 0, 0, 1}, 4, 2, dkByte).GetResolution(), 2.5);
    EXPECT_EQ(TLinearRasterFrame({0, 1, 0, 0}, 4, 2, dkByte).GetResolution(), 0);
    EXPECT_TRUE(TLinearRasterFrame({0, 1, 1, 0}, 1, 1, dkByte).GetIsLinear());
}

TEST(BaseLinearRasterFrame, ComputesPlacesInExtendedAndRoundsThemOnce) {
    const TMapArea area(-180, 90, 180, -90);
    const TLinearRasterFrame frame(area, 4321, 2161, dkByte);
    int differing = 0;
    for (std::int32_t col = 0; col <= 4321; ++col) {
        const double x = static_cast<double>(-180 + static_cast<extended>(col) / 4321 * 360);
        ASSERT_EQ(frame.ColToX(col), x);
        ASSERT_EQ(frame.XToCol(x), static_cast<double>((static_cast<extended>(x) + 180) / 360 * 4321));
        differing += x != -180 + static_cast<double>(col) / 4321 * 360;
    }
    EXPECT_GT(differing, 0) << "doubles would do as well, so this tests nothing";
    EXPECT_EQ(frame.ColToX(4321), 180);
    EXPECT_EQ(frame.RowToY(2161), -90);
}

TEST(BaseLinearRasterFrame, GivesInfinitiesAndNanWithoutExtentOrCells) {
    const TLinearRasterFrame noColumns({0, 3, 4, 0}, 0, 3, dkFloat);
    EXPECT_EQ(noColumns.GetResolution(), Infinity);
    EXPECT_EQ(noColumns.ColToX(1), Infinity);
    EXPECT_TRUE(std::isnan(noColumns.ColToX(0)));
    EXPECT_EQ(noColumns.XToCol(2), 0);
    const TLinearRasterFrame noExtent({1, 1, 1, 1}, 4, 3, dkFloat);
    EXPECT_EQ(noExtent.XToCol(0), Infinity);
    EXPECT_TRUE(std::isnan(noExtent.YToRow(1)));
    EXPECT_EQ(noExtent.ColToX(2), 1);
    EXPECT_TRUE(std::isnan(TLinearRasterFrame({1, 1, 1, 1}, 0, 0, dkFloat).GetResolution()));
}

// Cells

struct TWriteRow {
    const char* Name;
    TDataKind Kind;
    double Value;
    double Stored;
};

class WrittenCell : public testing::TestWithParam<TWriteRow> {};

TEST_P(WrittenCell, ReadsBackAs) {
    const auto& [name, kind, value, stored] = GetParam();
    TLinearRasterFrame frame({0, 1, 1, 0}, 1, 1, kind);
    frame.WriteCell(0, 0, value);
    EXPECT_EQ(frame.ReadCell(0, 0), stored);
}

TEST_P(WrittenCell, IsWhatFillStores) {
    const auto& [name, kind, value, stored] = GetParam();
    TLinearRasterFrame frame({0, 1, 1, 0}, 2, 2, kind);
    frame.Fill(value);
    for (std::int32_t i = 0; i < 4; ++i)
        EXPECT_EQ(frame.ReadCell(i / 2, i % 2), kind == dkDouble ? 0 : stored);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, WrittenCell,
    testing::Values(TWriteRow{"ByteKeepsItsLowBits", dkByte, 300, 44}, TWriteRow{"ByteIsUnsigned", dkByte, -1, 255},
                    TWriteRow{"ByteFarAway", dkByte, 1e10, 0}, TWriteRow{"ByteTieToEvenBelow", dkByte, 2.5, 2},
                    TWriteRow{"ByteTieToEvenAbove", dkByte, 3.5, 4}, TWriteRow{"IntTieToEven", dkInt, -2.5, -2},
                    TWriteRow{"IntLargest", dkInt, 2147483647, 2147483647},
                    TWriteRow{"IntKeepsItsLowBits", dkInt, 4294967295.0, -1},
                    TWriteRow{"IntWrapsAround", dkInt, 2147483648.0, -2147483648.0},
                    TWriteRow{"IndexedRounds", dkIndexed, 6.7, 7}, TWriteRow{"FloatIsNarrowed", dkFloat, 0.1, 0.1F},
                    TWriteRow{"FloatOverflows", dkFloat, 1e300, Infinity}, TWriteRow{"DoubleStays", dkDouble, 0.1, 0.1},
                    TWriteRow{"DoubleInfinity", dkDouble, -Infinity, -Infinity}),
    [](const auto& row) { return row.param.Name; });

TEST(BaseLinearRasterFrame, KeepsColoursBitByBit) {
    TLinearRasterFrame frame({0, 1, 1, 0}, 1, 1, dkColor32);
    frame.WriteCell(0, 0, 0xFF102030U);
    EXPECT_EQ(std::get<std::span<std::int32_t>>(frame.ScanLine(0))[0], static_cast<std::int32_t>(0xFF102030U));
}

TEST(BaseLinearRasterFrame, RefusesAnIntegerThatIsNoNumberAndChangesNothing) {
    for (const TDataKind kind : {dkByte, dkInt, dkRanged}) {
        TCountingFrame frame(kind);
        for (const double value : {Nan, Infinity, -Infinity, 1e19, -1e19}) {
            EXPECT_EQ(MessageOf<EInvalidOp>([&] { frame.WriteCell(1, 1, value); }), "Invalid floating point operation");
            EXPECT_EQ(MessageOf<EInvalidOp>([&] { frame.Fill(value); }), "Invalid floating point operation");
        }
        EXPECT_EQ(frame.ReadCol(1), (std::vector<double>{2, 5}));
    }
}

struct TIndexRow {
    const char* Name;
    std::int32_t Row;
    std::int32_t Col;
    const char* Axis;
};

class CellBeyondTheFrame : public testing::TestWithParam<TIndexRow> {};

TEST_P(CellBeyondTheFrame, IsRefused) {
    const auto& [name, row, col, axis] = GetParam();
    const QString message = QString::fromLatin1(axis) + QStringLiteral(" index is out of range");
    for (const TDataKind kind : BufferKinds) {
        TCountingFrame frame(kind);
        EXPECT_EQ(MessageOf<EArgumentException>([&] { frame.ReadCell(GetParam().Row, GetParam().Col); }), message);
        EXPECT_EQ(MessageOf<EArgumentException>([&] { frame.WriteCell(GetParam().Row, GetParam().Col, Nan); }), message)
            << "the place is tested before the value";
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, CellBeyondTheFrame,
                         testing::Values(TIndexRow{"RowAbove", -1, 0, "Row"}, TIndexRow{"RowBelow", 2, 0, "Row"},
                                         TIndexRow{"ColumnBefore", 0, -1, "Col"}, TIndexRow{"ColumnAfter", 0, 3, "Col"},
                                         TIndexRow{"RowFirst", 2, 3, "Row"},
                                         TIndexRow{"Largest", 2147483647, 2147483647, "Row"}),
                         [](const auto& row) { return row.param.Name; });

TEST(BaseLinearRasterFrame, CountsCellsRowAfterRow) {
    TOpenFrame frame;
    frame.Init({0, 2, 3, 0}, 3, 2, dkByte);
    EXPECT_EQ(frame.GetIndex(0, 0), 0U);
    EXPECT_EQ(frame.GetIndex(1, 2), 5U);
    EXPECT_EQ(MessageOf<EArgumentException>([&] { frame.GetIndex(2, 3); }), "Row index is out of range");
    EXPECT_EQ(MessageOf<EArgumentException>([&] { frame.GetIndex(1, 3); }), "Col index is out of range");
}

// Rows and columns

class RowsOfEachKind : public testing::TestWithParam<TDataKind> {};

TEST_P(RowsOfEachKind, LackTheirLastColumn) {
    const TCountingFrame frame(GetParam());
    EXPECT_EQ(frame.ReadRow(0), (std::vector<double>{1, 2}));
    EXPECT_EQ(frame.ReadRow(1), (std::vector<double>{4, 5}));
    EXPECT_EQ(frame.ReadCol(2), (std::vector<double>{3, 6}));
    EXPECT_TRUE(TLinearRasterFrame({0, 1, 1, 0}, 1, 1, GetParam()).ReadRow(0).empty());
}

TEST_P(RowsOfEachKind, AreWalkedWhereTheyStand) {
    TCountingFrame frame(GetParam());
    EXPECT_EQ(frame.ScanLine(0).index(), static_cast<std::size_t>(frame.GetBufferKind()));
    std::visit(
        [](const auto& line) {
            ASSERT_EQ(line.size(), 3U);
            line[2] = 9;
        },
        frame.ScanLine(1));
    EXPECT_EQ(frame.ReadCell(1, 2), 9);
    const IRasterFrame& constant = frame;
    std::vector<double> seen;
    std::visit([&seen](const auto& line) { seen.assign(line.begin(), line.end()); }, constant.ScanLine(1));
    EXPECT_EQ(seen, (std::vector<double>{4, 5, 9}));
}

TEST_P(RowsOfEachKind, AreRefusedBeyondTheFrame) {
    TCountingFrame frame(GetParam());
    for (const std::int32_t row : {-1, 2}) {
        EXPECT_EQ(MessageOf<EArgumentException>([&] { frame.ScanLine(row); }), "Row index is out of range");
        EXPECT_EQ(MessageOf<EArgumentException>([&] { std::as_const(frame).ScanLine(row); }),
                  "Row index is out of range");
        EXPECT_EQ(MessageOf<EArgumentException>([&] { frame.ReadRow(row); }), "Row index is out of range");
    }
    EXPECT_EQ(MessageOf<EArgumentException>([&] { frame.ReadCol(3); }), "Col index is out of range");
    TLinearRasterFrame noColumns({0, 1, 1, 0}, 0, 1, GetParam());
    EXPECT_EQ(MessageOf<EArgumentException>([&] { noColumns.ScanLine(0); }), "Col index is out of range");
    EXPECT_EQ(MessageOf<EArgumentException>([&] { noColumns.ReadRow(0); }), "Col index is out of range");
    EXPECT_TRUE(TLinearRasterFrame({0, 1, 1, 0}, 1, 0, GetParam()).ReadCol(7).empty());
}

INSTANTIATE_TEST_SUITE_P(Kinds, RowsOfEachKind, testing::ValuesIn(BufferKinds));

TEST(BaseLinearRasterFrame, WidensSinglesAndTakesBytesAsUnsigned) {
    TLinearRasterFrame singles({0, 1, 1, 0}, 2, 1, dkFloat);
    singles.WriteCell(0, 0, 0.1);
    EXPECT_EQ(singles.ReadRow(0), std::vector<double>{0.1F});
    TLinearRasterFrame bytes({0, 1, 1, 0}, 2, 1, dkByte);
    bytes.WriteCell(0, 0, 200);
    EXPECT_EQ(bytes.ReadRow(0), std::vector<double>{200});
}

TEST(BaseLinearRasterFrame, LeavesAFrameOfDoublesUnfilled) {
    TCountingFrame frame(dkDouble);
    frame.Fill(7);
    EXPECT_EQ(frame.ReadCol(0), (std::vector<double>{1, 4}));
    frame.Fill(Nan);
    EXPECT_EQ(frame.ReadCol(2), (std::vector<double>{3, 6}));
}

TEST(BaseLinearRasterFrame, FillsNothingWithoutCells) {
    TLinearRasterFrame frame({0, 1, 1, 0}, 0, 5, dkFloat);
    frame.Fill(7);
    EXPECT_EQ(frame.GetHeight(), 5);
}

// Sizes and kinds

TEST(BaseLinearRasterFrame, RefusesNegativeAndImpossibleSizes) {
    EXPECT_EQ(MessageOf<EArgumentException>([] {
                  TLinearRasterFrame({0, 1, 1, 0}, -1, 1, dkByte);
              }),
              "Frame size is negative");
    EXPECT_EQ(MessageOf<EArgumentException>([] {
                  TLinearRasterFrame({0, 1, 1, 0}, 1, -1, dkByte);
              }),
              "Frame size is negative");
    constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max();
    for (const TDataKind kind : {dkByte, dkInt, dkFloat, dkDouble, dkColor32})
        EXPECT_EQ(MessageOf<EOutOfMemory>([kind] {
                      TLinearRasterFrame({0, 1, 1, 0}, largest, largest, kind);
                  }),
                  "Out of memory");
}

TEST(BaseLinearRasterFrame, StaysAsItWasWhenThereIsNoRoomForAnother) {
    constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max();
    TOpenFrame frame;
    frame.Init({0, 2, 3, 0}, 3, 1, std::vector<float>{1, 2, 3});
    const auto refusesToBecome = [&](std::int32_t width, std::int32_t height, TDataKind kind) {
        EXPECT_ANY_THROW(frame.Init({5, 6, 7, 4}, width, height, kind));
        EXPECT_EQ(frame.GetBounds(), TMapArea(0, 2, 3, 0));
        EXPECT_EQ(frame.GetWidth(), 3);
        EXPECT_EQ(frame.GetKind(), dkFloat);
        EXPECT_EQ(frame.ReadCell(0, 2), 3);
    };
    refusesToBecome(largest, largest, dkInt);
    refusesToBecome(-1, 1, dkInt);
    refusesToBecome(1, 1, static_cast<TDataKind>(7));
}

TEST(BaseLinearRasterFrame, HasNoBufferForAKindOutsideTheEnumeration) {
    EXPECT_EQ(MessageOf<EInvalidOperation>([] {
                  TLinearRasterFrame({0, 1, 1, 0}, 1, 1, static_cast<TDataKind>(7));
              }),
              "Cannot create buffer. Unsupported BufferKind");
}

TEST(BaseLinearRasterFrame, SaysSoWhereverItsCellsWereNeverCreated) {
    TOpenFrame frame;
    frame.SetGeometry({0, 2, 3, 0}, 3, 2, dkFloat);
    const QString create = QStringLiteral("Cannot create buffer. Unsupported BufferKind");
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { frame.ReadCell(0, 0); }), create);
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { frame.WriteCell(0, 0, 1); }), create);
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { frame.ReadRow(0); }), create);
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { frame.ScanLine(0); }), create);
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { frame.Fill(1); }), "Cannot fill buffer. Unsupported BufferKind");
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { TLinearRasterFrame copy(&frame); }),
              "Cannot clone buffer. Unsupported BufferKind");
    EXPECT_EQ(MessageOf<EArgumentException>([&] { frame.ReadCell(2, 0); }), "Row index is out of range");
}

TEST(BaseLinearRasterFrame, LosesItsCellsWithANewGeometry) {
    TOpenFrame frame;
    frame.Init({0, 2, 3, 0}, 3, 2, dkFloat);
    frame.SetGeometry({0, 1, 1, 0}, 1, 1, dkInt);
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { frame.ReadCell(0, 0); }),
              "Cannot create buffer. Unsupported BufferKind");
}

TEST(BaseLinearRasterFrame, BeginsWithoutCells) {
    const TOpenFrame frame;
    EXPECT_EQ(frame.GetWidth(), 0);
    EXPECT_EQ(frame.GetHeight(), 0);
    EXPECT_EQ(MessageOf<EArgumentException>([&] { frame.ReadCell(0, 0); }), "Row index is out of range");
    const TLinearRasterFrame copy(&frame); // of no cells, so their storage does not matter
    EXPECT_EQ(copy.GetBufferKind(), dkByte);
    EXPECT_EQ(copy.GetWidth(), 0);
}

TEST(BaseLinearRasterFrame, TakesOverCellsThatAreThereAlready) {
    TOpenFrame floats;
    floats.Init({0, 2, 3, 0}, 3, 2, std::vector<float>{1, 2, 3, 4, 5, 6});
    EXPECT_EQ(floats.GetKind(), dkFloat);
    EXPECT_EQ(floats.ReadCol(2), (std::vector<double>{3, 6}));
    EXPECT_EQ(floats.GetResolution(), 1);
    TOpenFrame integers;
    integers.Init({0, 2, 3, 0}, 1, 2, std::vector<std::int32_t>{-1, 7});
    EXPECT_EQ(integers.GetBufferKind(), dkInt);
    EXPECT_EQ(integers.ReadCol(0), (std::vector<double>{-1, 7}));
    EXPECT_EQ(MessageOf<EArgumentException>([&] {
                  integers.Init({0, 2, 3, 0}, 2, 2, std::vector<float>(3));
              }),
              "Number of cells does not match");
}

TEST(BaseLinearRasterFrame, CannotBeClonedUnlessItsClassSaysHow) {
    TOpenFrame frame;
    frame.Init({0, 2, 3, 0}, 3, 2, dkByte);
    EXPECT_EQ(MessageOf<ENotSupportedException>([&] { frame.Clone(); }), "TOpenFrame.Clone");
}

} // namespace
} // namespace lmx
