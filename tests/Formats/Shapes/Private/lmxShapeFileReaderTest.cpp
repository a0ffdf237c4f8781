#include <lmx/Formats/Shapes/Private/lmxShapeFileReader.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ShapeBytes.h>

#include <QBuffer>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace lmx::tests {

namespace {

/// What a file holds, a line for each record: the kind, where parts begin, the vertices.
QString Walk(QByteArray bytes) {
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    TShapeFileReader reader(buffer, QStringLiteral("x.shp"));
    QStringList lines;
    const QStringList kinds{"null", "point", "multipoint", "polyline", "polygon"};
    for (auto state = reader.Next(); state != TShapeRecordState::rsNone; state = reader.Next()) {
        std::vector<std::uint32_t> starts;
        std::vector<TShpPoint> points;
        if (state == TShapeRecordState::rsDamaged || !reader.ReadPartStarts(0, starts))
            reader.Refuse();
        if (reader.GetKind() != TShapeKind::skNull)
            reader.ReadPoints(points);
        QString line = kinds[static_cast<int>(reader.GetKind())];
        for (const std::uint32_t start : starts)
            line += QStringLiteral(" @%1").arg(start);
        for (const TShpPoint& point : points)
            line += QStringLiteral(" %1,%2").arg(point.X).arg(point.Y);
        lines += line;
    }
    return lines.join(u'|');
}

QString FaultOf(const QByteArray& bytes) {
    return MessageOf<EFileFormatException>([&] { Walk(bytes); });
}

const TShpParts TwoParts{{{1, 2}, {3, 4}}, {{5, 6}, {7, 8}, {9, 10}}};
const QString TwoPartsText = QStringLiteral("@0 @2 1,2 3,4 5,6 7,8 9,10");

struct TFormRow {
    const char* Name;
    std::int32_t Type;
    int More; ///< doubles behind the vertices
};

void PrintTo(const TFormRow& row, std::ostream* stream) {
    *stream << row.Name;
}

auto RowName = [](const auto& row) { return std::string(row.param.Name); };

class ShapeFormsOfLines : public testing::TestWithParam<TFormRow> {};
class ShapeFormsOfPoints : public testing::TestWithParam<TFormRow> {};
class ShapeFormsOfMultiPoints : public testing::TestWithParam<TFormRow> {};

} // namespace

TEST_P(ShapeFormsOfLines, AreRead) {
    const auto [name, type, more] = GetParam();
    const QByteArray file = TShapeBytes().Lines(type, TwoParts, more).Null().Lines(type, TwoParts, more).File(type);
    const QString shape = (type % 10 == 3 ? "polyline " : "polygon ") + TwoPartsText;
    EXPECT_EQ(Walk(file), shape + "|null|" + shape);
}
INSTANTIATE_TEST_SUITE_P(Types, ShapeFormsOfLines,
                         testing::Values(TFormRow{"PolyLine", 3, 0}, TFormRow{"Polygon", 5, 0},
                                         TFormRow{"PolyLineZ", 13, 14}, TFormRow{"PolyLineZWithoutM", 13, 7},
                                         TFormRow{"PolygonZ", 15, 14}, TFormRow{"PolygonZWithoutM", 15, 7},
                                         TFormRow{"PolyLineM", 23, 7}, TFormRow{"PolyLineMWithoutM", 23, 0},
                                         TFormRow{"PolygonM", 25, 7}, TFormRow{"PolygonMWithoutM", 25, 0},
                                         TFormRow{"MultiPatch", 31, 14}),
                         RowName);

TEST_P(ShapeFormsOfPoints, AreRead) {
    const auto [name, type, more] = GetParam();
    EXPECT_EQ(Walk(TShapeBytes().Point(type, {-1.5, 2}, more).Point(type, {3, 4}, more).File(type)),
              "point -1.5,2|point 3,4");
}
INSTANTIATE_TEST_SUITE_P(Types, ShapeFormsOfPoints,
                         testing::Values(TFormRow{"Point", 1, 0}, TFormRow{"PointZ", 11, 2},
                                         TFormRow{"PointZWithoutM", 11, 1}, TFormRow{"PointM", 21, 1},
                                         TFormRow{"PointMWithoutM", 21, 0}),
                         RowName);

TEST_P(ShapeFormsOfMultiPoints, AreRead) {
    const auto [name, type, more] = GetParam();
    EXPECT_EQ(Walk(TShapeBytes().MultiPoint(type, {{1, 2}, {3, 4}}, more).MultiPoint(type, {}).File(type)),
              "multipoint 1,2 3,4|multipoint");
}
INSTANTIATE_TEST_SUITE_P(Types, ShapeFormsOfMultiPoints,
                         testing::Values(TFormRow{"MultiPoint", 8, 0}, TFormRow{"MultiPointZ", 18, 8},
                                         TFormRow{"MultiPointZWithoutM", 18, 4}, TFormRow{"MultiPointM", 28, 4},
                                         TFormRow{"MultiPointMWithoutM", 28, 0}),
                         RowName);

TEST(ShapeFileReader, ReadsNullShapesAndMixedTypes) {
    const QByteArray file =
        TShapeBytes().Null().Point(1, {1, 1}).Null().Lines(3, {{{0, 0}, {1, 0}}}).Lines(5, {}).Null().File(3);
    EXPECT_EQ(Walk(file), "null|point 1,1|null|polyline @0 0,0 1,0|polygon|null");
    EXPECT_EQ(Walk(TShapeBytes().File(0)), "");
}

TEST(ShapeFileReader, TakesEmptyPartsAndVerticesWithoutAPart) {
    EXPECT_EQ(Walk(TShapeBytes().Lines(3, {{}, {{1, 1}}, {}}).File(3)), "polyline @0 @0 @1 1,1");
    EXPECT_EQ(Walk(TShapeBytes().Record(TShapeBytes::LinesContent(3, {}, {{1, 1}}, 0, 1)).File(3)), "polyline 1,1");
}

TEST(ShapeFileReader, TheHeaderMayBeWrongAboutEverythingButTheCode) {
    QByteArray file = TShapeBytes().Point(1, {1, 2}).File(5);
    for (int i = 4; i < 100; ++i)
        file[i] = '\xFF';
    EXPECT_EQ(Walk(file), "point 1,2");
    file[108 - 8 + 3] = 77; // the record's number
    EXPECT_EQ(Walk(file), "point 1,2");
}

TEST(ShapeFileReader, RefusesWhatIsNoShapeFile) {
    const QByteArray file = TShapeBytes().Point(1, {1, 2}).File(1);
    EXPECT_EQ(FaultOf({}), "x.shp: the header is cut short");
    EXPECT_EQ(FaultOf(file.first(99)), "x.shp: the header is cut short");
    QByteArray blanks = file; // as a transfer of text makes it
    blanks.replace('\0', ' ');
    EXPECT_EQ(FaultOf(blanks), "x.shp: not a shape file");
}

TEST(ShapeFileReader, RefusesRecordsThatAreCutShort) {
    const QByteArray file = TShapeBytes().Point(1, {1, 2}).Lines(3, TwoParts).File(3);
    for (qsizetype size = 128 + 8; size < file.size(); ++size)
        EXPECT_EQ(FaultOf(file.first(size)), "x.shp: record 2 is cut short") << size;
    EXPECT_EQ(FaultOf(file.first(110)), "x.shp: record 1 is cut short");
    EXPECT_EQ(Walk(file.first(128)), "point 1,2") << "nothing tells that there was more";
    EXPECT_EQ(Walk(file + QByteArray(5, 'x')), Walk(file)) << "too few bytes for a record";
}

TEST(ShapeFileReader, RefusesLengthsThatLie) {
    const QByteArray lines = TShapeBytes::LinesContent(3, TwoParts);
    const QByteArray point = TShapeBytes().Point(1, {1, 2}).File(1).sliced(108);
    const auto words = static_cast<std::int32_t>(lines.size() / 2);
    EXPECT_EQ(FaultOf(TShapeBytes().Record(lines, words + 1).File(3)), "x.shp: record 1 is cut short");
    EXPECT_EQ(FaultOf(TShapeBytes().Record(lines, words - 1).Null().File(3)),
              "x.shp: record 1 is too short for its counts");
    EXPECT_EQ(FaultOf(TShapeBytes().Record(lines, -words).File(3)), "x.shp: record 1 has an impossible length");
    EXPECT_EQ(FaultOf(TShapeBytes().Record(lines, 1).File(3)), "x.shp: record 1 has an impossible length");
    EXPECT_EQ(FaultOf(TShapeBytes().Record(lines, 10).File(3)), "x.shp: record 1 is too short for its counts");
    EXPECT_EQ(FaultOf(TShapeBytes().Record(point, 9).Null().File(1)), "x.shp: record 1 is too short for its counts");
    EXPECT_EQ(FaultOf(TShapeBytes().Record(lines, 0x7FFFFFFF).File(3)), "x.shp: record 1 is cut short");
    // The record swallows the heading of the next one, where the walk then ends in the middle of coordinates.
    EXPECT_EQ(FaultOf(TShapeBytes().Record(point, 16).Lines(3, {{{-1.7, -2.6}, {-3.1, -4.2}}}).File(1)).first(14),
              "x.shp: record ");
}

TEST(ShapeFileReader, RefusesCountsThatLie) {
    const std::vector<TShpPoint> places{{1, 2}, {3, 4}};
    const auto fault = [&](std::int32_t parts, std::int32_t points) {
        return FaultOf(TShapeBytes().Record(TShapeBytes::LinesContent(5, {0}, places, parts, points)).File(5));
    };
    EXPECT_EQ(fault(-1, 2), "x.shp: record 1 has a negative count");
    EXPECT_EQ(fault(1, -2), "x.shp: record 1 has a negative count");
    EXPECT_EQ(fault(1, 3), "x.shp: record 1 is too short for its counts");
    EXPECT_EQ(fault(2, 2), "x.shp: record 1 is too short for its counts");
    EXPECT_EQ(fault(0x7FFFFFFF, 0x7FFFFFFF), "x.shp: record 1 is too short for its counts");
    QByteArray multiPoint = TShapeBytes().MultiPoint(8, places).File(8);
    multiPoint[108 + 36 + 3] = '\x40';
    EXPECT_EQ(FaultOf(multiPoint), "x.shp: record 1 is too short for its counts");
}

TEST(ShapeFileReader, RefusesPartsThatAreOutOfOrder) {
    const std::vector<TShpPoint> places{{1, 2}, {3, 4}, {5, 6}};
    const auto fault = [&](const std::vector<std::int32_t>& starts) {
        const auto count = static_cast<std::int32_t>(starts.size());
        return FaultOf(TShapeBytes().Record(TShapeBytes::LinesContent(3, starts, places, count, 3)).File(3));
    };
    for (const auto& starts : std::vector<std::vector<std::int32_t>>{
             {1}, {-1}, {0, 2, 1}, {0, 4}, {0, -1}, {0, std::numeric_limits<std::int32_t>::max()}})
        EXPECT_EQ(fault(starts), "x.shp: record 1 has parts that are out of order");
}

TEST(ShapeFileReader, GivesCoordinatesAsTheyStand) {
    EXPECT_EQ(Walk(TShapeBytes().Point(1, {NAN, INFINITY}).Lines(3, {{{-INFINITY, 1e305}}}).File(1)),
              "point nan,inf|polyline @0 -inf,1e+305");
    EXPECT_EQ(Walk(TShapeBytes().Point(1, {-1.7976931348623157e308, 1e15}).File(1)), "point -1.79769e+308,1e+15");
}

TEST(ShapeFileReader, GoesOnBehindADamagedRecord) {
    QByteArray bytes = TShapeBytes()
                           .Null()
                           .Point(2, {1, 1})
                           .Record(TShapeBytes::LinesContent(3, {1}, {{1, 2}}, 1, 1))
                           .Record(TShapeBytes::LinesContent(3, {0}, {{1, 2}}, 1, 9))
                           .Point(1, {7, 8})
                           .Record(QByteArray(4, '\0'), -1)
                           .Point(1, {9, 9})
                           .File(1);
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    TShapeFileReader reader(buffer, QStringLiteral("x.shp"));
    std::vector<std::uint32_t> starts;
    std::vector<TShpPoint> points;
    EXPECT_EQ(reader.Next(), TShapeRecordState::rsGood);
    EXPECT_EQ(reader.GetRecord(), 0U);
    EXPECT_EQ(reader.Next(), TShapeRecordState::rsDamaged) << "an unknown type";
    EXPECT_EQ(reader.Next(), TShapeRecordState::rsGood);
    EXPECT_FALSE(reader.ReadPartStarts(0, starts));
    EXPECT_EQ(reader.Next(), TShapeRecordState::rsDamaged) << "counts that lie";
    ASSERT_EQ(reader.Next(), TShapeRecordState::rsGood);
    EXPECT_EQ(reader.GetRecord(), 4U);
    reader.ReadPoints(points);
    EXPECT_EQ(points, (std::vector<TShpPoint>{{7, 8}}));
    EXPECT_EQ(reader.Next(), TShapeRecordState::rsDamaged) << "an impossible length";
    EXPECT_EQ(reader.Next(), TShapeRecordState::rsNone) << "the next one may be anywhere";
}

TEST(ShapeFileReader, RefusesUnknownTypes) {
    for (const std::int32_t type : {2, 4, 6, 10, 12, 20, 30, 33, 41, -5})
        EXPECT_EQ(FaultOf(TShapeBytes().Point(1, {1, 1}).Point(type, {1, 1}, 20).File(1)),
                  "x.shp: record 2 is of an unknown type");
}

TEST(ShapeFileReader, EndsAtBytesThatAreNoRecord) {
    const QByteArray file = TShapeBytes().Point(1, {1, 2}).File(1);
    EXPECT_EQ(Walk(file + QByteArray(80, '\xC2')), "point 1,2");
    // After a record that is longer than its content the length is to blame.
    const QByteArray odd = TShapeBytes().Point(1, {1, 2}, 1).File(1);
    EXPECT_EQ(FaultOf(odd + QByteArray(80, '\xC2')), "x.shp: record 2 has an impossible length");
    EXPECT_EQ(Walk(odd), "point 1,2") << "which does no harm alone";
}

TEST(ShapeFileReader, ReadsRecordsLargerThanItsBlock) {
    std::vector<TShpPoint> places;
    for (int i = 0; i < 40'000; ++i)
        places.push_back({static_cast<double>(i), -static_cast<double>(i)});
    QByteArray bytes = TShapeBytes().Point(1, {7, 7}).Lines(3, {places}).Point(1, {8, 8}).File(3);
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    TShapeFileReader reader(buffer, QStringLiteral("x.shp"));
    ASSERT_EQ(reader.Next(), TShapeRecordState::rsGood);
    ASSERT_EQ(reader.Next(), TShapeRecordState::rsGood) << "over a record that was not read";
    std::vector<std::uint32_t> starts;
    std::vector<TShpPoint> points;
    reader.ReadPartStarts(100, starts);
    EXPECT_EQ(starts, std::vector<std::uint32_t>{100});
    reader.ReadPoints(points);
    EXPECT_EQ(points, places);
    ASSERT_EQ(reader.Next(), TShapeRecordState::rsGood);
    points.clear();
    reader.ReadPoints(points);
    EXPECT_EQ(points, (std::vector<TShpPoint>{{8, 8}}));
    EXPECT_EQ(reader.Next(), TShapeRecordState::rsNone);
    reader.Restart();
    ASSERT_EQ(reader.Next(), TShapeRecordState::rsGood);
    EXPECT_EQ(reader.GetKind(), TShapeKind::skPoint);
}

} // namespace lmx::tests
