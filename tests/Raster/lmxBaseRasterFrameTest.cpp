#include <lmx/Raster/lmxLinearRasterFrame.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/CoordinatePrinters.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>

namespace lmx {
namespace {

using tests::MessageOf;
using enum TInterpolationOption;

constexpr double Nan = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinity = std::numeric_limits<double>::infinity();

/// 4 x 3 cells of 1 x 1, X 0 to 4, Y 3 (row 0) down to 0; the cell at row r and column c holds 10 r + c.
struct TCountingFrame : TLinearRasterFrame {
    TCountingFrame() : TLinearRasterFrame({0, 3, 4, 0}, 4, 3, TDataKind::dkFloat) {
        for (std::int32_t row = 0; row < 3; ++row)
            for (std::int32_t col = 0; col < 4; ++col)
                WriteCell(row, col, 10 * row + col);
    }
};

struct TReadRow {
    const char* Name;
    TInterpolationOption Option;
    double X;
    double Y;
    double Value;
};

class ReadAtAPoint : public testing::TestWithParam<TReadRow> {};

TEST_P(ReadAtAPoint, Gives) {
    const auto& [name, option, x, y, value] = GetParam();
    const TCountingFrame frame;
    EXPECT_EQ(frame.Read(x, y, option), value);
}

INSTANTIATE_TEST_SUITE_P(Nearest, ReadAtAPoint,
                         testing::Values(TReadRow{"TopLeftCorner", ioNearestNeighbor, 0, 3, 0},
                                         TReadRow{"TheCornerOfACell", ioNearestNeighbor, 2, 1, 22},
                                         TReadRow{"TheFirstHalfOfACell", ioNearestNeighbor, 1.49, 3, 1},
                                         TReadRow{"TheSecondHalfOfACell", ioNearestNeighbor, 1.51, 3, 2},
                                         TReadRow{"ATieToTheEvenColumnBelow", ioNearestNeighbor, 0.5, 3, 0},
                                         TReadRow{"ATieToTheEvenColumnAbove", ioNearestNeighbor, 1.5, 3, 2},
                                         TReadRow{"ATieToTheEvenRow", ioNearestNeighbor, 0, 2.5, 0},
                                         TReadRow{"ATieToTheEvenRowAbove", ioNearestNeighbor, 0, 1.5, 20},
                                         TReadRow{"HalfACellLeftOfTheFrame", ioNearestNeighbor, -0.5, 3, 0},
                                         TReadRow{"HalfACellAboveTheFrame", ioNearestNeighbor, 0, 3.5, 0},
                                         TReadRow{"JustBeforeTheHalfOfTheLastColumn", ioNearestNeighbor, 3.4999, 3, 3},
                                         TReadRow{"TheDefault", ioDefault, 1.51, 1.4, 22}),
                         [](const auto& row) { return row.param.Name; });

INSTANTIATE_TEST_SUITE_P(Bilinear, ReadAtAPoint,
                         testing::Values(TReadRow{"Corner", ioBilinear, 1, 2, 11},
                                         TReadRow{"BetweenColumns", ioBilinear, 1.25, 2, 11.25},
                                         TReadRow{"BetweenRows", ioBilinear, 1, 1.5, 16},
                                         TReadRow{"BetweenAllFour", ioBilinear, 0.5, 2.25, 8},
                                         TReadRow{"TheLastColumn", ioBilinear, 3.75, 3, 3},
                                         TReadRow{"TheLastColumnBetweenRows", ioBilinear, 3.75, 2.5, 8},
                                         TReadRow{"TheLastRow", ioBilinear, 0.5, 0.25, 20.5},
                                         TReadRow{"TheLastCell", ioBilinear, 3.99, 0.01, 23}),
                         [](const auto& row) { return row.param.Name; });

struct TRefusedRow {
    const char* Name;
    TInterpolationOption Option;
    double X;
    double Y;
    const char* Axis;
};

class ReadBeyondTheFrame : public testing::TestWithParam<TRefusedRow> {};

TEST_P(ReadBeyondTheFrame, Refuses) {
    const TRefusedRow& row = GetParam();
    const TCountingFrame frame;
    EXPECT_EQ(MessageOf<EArgumentException>([&] { frame.Read(row.X, row.Y, row.Option); }),
              QString::fromLatin1(row.Axis) + QStringLiteral(" index is out of range"));
}

INSTANTIATE_TEST_SUITE_P(Nearest, ReadBeyondTheFrame,
                         testing::Values(TRefusedRow{"RightHalfOfTheLastColumn", ioNearestNeighbor, 3.75, 3, "Col"},
                                         TRefusedRow{"TheTieOfTheLastColumn", ioNearestNeighbor, 3.5, 3, "Col"},
                                         TRefusedRow{"RightEdge", ioNearestNeighbor, 4, 3, "Col"},
                                         TRefusedRow{"LowerHalfOfTheLastRow", ioNearestNeighbor, 0, 0.25, "Row"},
                                         TRefusedRow{"BottomEdge", ioNearestNeighbor, 0, 0, "Row"},
                                         TRefusedRow{"LeftOfTheFirstHalfCell", ioNearestNeighbor, -0.51, 3, "Col"},
                                         TRefusedRow{"RowFirst", ioNearestNeighbor, 4, 0, "Row"},
                                         TRefusedRow{"FarAway", ioNearestNeighbor, 1e300, 3, "Col"},
                                         TRefusedRow{"FarBelow", ioDefault, 0, -1e300, "Row"},
                                         TRefusedRow{"BeyondTheIntegers", ioNearestNeighbor, 4294967296.0, 3, "Col"},
                                         TRefusedRow{"Infinity", ioNearestNeighbor, Infinity, 3, "Col"},
                                         TRefusedRow{"InfinityBelow", ioNearestNeighbor, 0, -Infinity, "Row"}),
                         [](const auto& row) { return row.param.Name; });

INSTANTIATE_TEST_SUITE_P(Bilinear, ReadBeyondTheFrame,
                         testing::Values(TRefusedRow{"RightEdge", ioBilinear, 4, 3, "Col"},
                                         TRefusedRow{"BottomEdge", ioBilinear, 0, 0, "Row"},
                                         TRefusedRow{"LeftOfTheFrame", ioBilinear, -0.01, 3, "Col"},
                                         TRefusedRow{"AboveTheFrame", ioBilinear, 0, 3.01, "Row"},
                                         TRefusedRow{"LargestIndex", ioBilinear, 2147483647.0, 3, "Col"},
                                         TRefusedRow{"FarAway", ioBilinear, 1e300, 3, "Col"},
                                         TRefusedRow{"Infinity", ioBilinear, -Infinity, 3, "Col"}),
                         [](const auto& row) { return row.param.Name; });

TEST(BaseRasterFrame, ReadsNothingAtAPlaceThatIsNone) {
    const TCountingFrame frame;
    for (const TInterpolationOption option : {ioDefault, ioNearestNeighbor, ioBilinear})
        for (const auto& place : {std::pair(Nan, 3.0), std::pair(0.0, Nan), std::pair(Nan, Nan), std::pair(9.0, Nan)})
            EXPECT_EQ(MessageOf<EInvalidOp>([&] { frame.Read(place.first, place.second, option); }),
                      "Invalid floating point operation")
                << place.first << ' ' << place.second;
}

TEST(BaseRasterFrame, ReadsTheNearestCellUnlessToldOtherwise) {
    const TCountingFrame frame;
    EXPECT_EQ(frame.Read(1.51, 1.4), 22);
    EXPECT_EQ(MessageOf<EArgumentException>([&] { frame.Read(4, 3); }), "Col index is out of range");
}

TEST(BaseRasterFrame, RefusesAnOptionOutsideTheEnumeration) {
    const TCountingFrame frame;
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { frame.Read(0, 3, static_cast<TInterpolationOption>(3)); }),
              "InptOpt not supported");
}

TEST(BaseRasterFrame, BlendsFlagsLikeAnyValue) {
    TCountingFrame frame;
    frame.WriteCell(0, 1, -9999);
    EXPECT_EQ(frame.Read(0.5, 3, ioBilinear), -4999.5);
}

TEST(BaseRasterFrame, ComputesABilinearValueInExtendedAndRoundsItOnce) {
    TLinearRasterFrame frame({0, 1, 2, 0}, 2, 1, TDataKind::dkDouble);
    frame.WriteCell(0, 0, 0.1);
    frame.WriteCell(0, 1, 0.7);
    int differing = 0;
    for (int i = 0; i < 97; ++i) {
        const double weight = i / 97.0;
        const double value = frame.Read(weight, 1, ioBilinear);
        ASSERT_EQ(value, static_cast<double>((0.7 - static_cast<extended>(0.1)) * weight + 0.1));
        differing += value != (0.7 - 0.1) * weight + 0.1;
    }
    EXPECT_GT(differing, 0) << "doubles would do as well, so this tests nothing";
}

TEST(BaseRasterFrame, ReadsAFrameOfOneCellEverywhereInside) {
    TLinearRasterFrame frame({0, 1, 1, 0}, 1, 1, TDataKind::dkInt);
    frame.WriteCell(0, 0, 7);
    EXPECT_EQ(frame.Read(0.999, 0.001, ioBilinear), 7);
    EXPECT_EQ(frame.Read(0.5, 0.5), 7);
    EXPECT_EQ(MessageOf<EArgumentException>([&] { frame.Read(0.75, 0.75); }), "Col index is out of range");
}

TEST(BaseRasterFrame, ReadsNothingFromAFrameWithoutCells) {
    const TLinearRasterFrame noColumns({0, 3, 4, 0}, 0, 3, TDataKind::dkFloat);
    const TLinearRasterFrame noRows({0, 3, 4, 0}, 4, 0, TDataKind::dkFloat);
    const TLinearRasterFrame noArea({0, 0, 0, 0}, 4, 3, TDataKind::dkFloat);
    for (const auto option : {ioNearestNeighbor, ioBilinear}) {
        EXPECT_EQ(MessageOf<EArgumentException>([&] { noColumns.Read(0, 3, option); }), "Col index is out of range");
        EXPECT_EQ(MessageOf<EArgumentException>([&] { noRows.Read(0, 3, option); }), "Row index is out of range");
        EXPECT_EQ(MessageOf<EInvalidOp>([&] { noArea.Read(0, 0, option); }), "Invalid floating point operation")
            << "0 / 0 is no place";
        EXPECT_EQ(MessageOf<EArgumentException>([&] { noArea.Read(1, 1, option); }), "Row index is out of range");
    }
}

TEST(BaseRasterFrame, MovesWithNewBoundsAndKeepsTheRest) {
    TCountingFrame frame;
    frame.SetBounds({100, 0, 108, 30});
    EXPECT_EQ(frame.GetBounds(), TMapArea(100, 0, 108, 30));
    EXPECT_EQ(frame.GetResolution(), 1);
    EXPECT_EQ(frame.GetYOrder(), TOrder::doDesc);
    EXPECT_EQ(frame.Read(102, -10), 11) << "rows still fall from the top, now 10 map units each";
}

TEST(BaseRasterFrame, HasNoWayToSaveOfItsOwn) {
    const TCountingFrame frame;
    EXPECT_EQ(MessageOf<ENotImplemented>([&] { frame.Save(QStringLiteral("grid.asc")); }),
              "No default Save implementation exists for RasterFrame");
}

TEST(BaseRasterFrame, BeginsWithEmptyTablesThatItOwns) {
    TCountingFrame frame;
    const IRasterFrame& constant = frame;
    EXPECT_EQ(constant.GetAttributes().Count() + constant.GetIndexTable().Count() + constant.GetRangeTable().Count(),
              0U);
    frame.GetAttributes().Add(QStringLiteral("units"), QStringLiteral("mm"));
    frame.GetIndexTable().Add(1, QStringLiteral("wet"));
    frame.GetRangeTable().Add({0, 1}, QStringLiteral("dry"));
    EXPECT_EQ(constant.GetAttributes().GetItem(QStringLiteral("units")), "mm");
    EXPECT_EQ(constant.GetIndexTable().GetItem(1), "wet");
    EXPECT_EQ(constant.GetRangeTable().GetItem({0, 1}), "dry");
}

struct TKindRow {
    const char* Name;
    TDataKind Kind;
    TDataKind BufferKind;
};

class KindOfAFrame : public testing::TestWithParam<TKindRow> {};

TEST_P(KindOfAFrame, DecidesHowItIsStored) {
    const TLinearRasterFrame frame({0, 1, 1, 0}, 1, 1, GetParam().Kind);
    EXPECT_EQ(frame.GetKind(), GetParam().Kind);
    EXPECT_EQ(frame.GetBufferKind(), GetParam().BufferKind);
    const auto clone = frame.Clone();
    EXPECT_EQ(clone->GetKind(), GetParam().Kind);
    EXPECT_EQ(clone->GetBufferKind(), GetParam().BufferKind);
}

INSTANTIATE_TEST_SUITE_P(Rows, KindOfAFrame,
                         testing::Values(TKindRow{"Byte", TDataKind::dkByte, TDataKind::dkByte},
                                         TKindRow{"Int", TDataKind::dkInt, TDataKind::dkInt},
                                         TKindRow{"Float", TDataKind::dkFloat, TDataKind::dkFloat},
                                         TKindRow{"Double", TDataKind::dkDouble, TDataKind::dkDouble},
                                         TKindRow{"Indexed", TDataKind::dkIndexed, TDataKind::dkInt},
                                         TKindRow{"Ranged", TDataKind::dkRanged, TDataKind::dkInt},
                                         TKindRow{"Color32", TDataKind::dkColor32, TDataKind::dkInt}),
                         [](const auto& row) { return row.param.Name; });

TEST(DataKind, KeepsItsOrdinals) {
    EXPECT_EQ(static_cast<int>(TDataKind::dkByte), 0);
    EXPECT_EQ(static_cast<int>(TDataKind::dkDouble), 3);
    EXPECT_EQ(static_cast<int>(TDataKind::dkColor32), 6);
    EXPECT_EQ(static_cast<int>(ioDefault), 0);
    EXPECT_EQ(static_cast<int>(ioNearestNeighbor), 2);
    EXPECT_EQ(static_cast<int>(TOrder::doAsc), 0);
}

} // namespace
} // namespace lmx
