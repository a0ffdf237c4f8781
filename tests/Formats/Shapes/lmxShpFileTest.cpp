#include <lmx/Formats/Shapes/lmxShpFile.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Formats/ImageFiles.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ShapeBytes.h>

#include <QBuffer>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

namespace lmx::tests {

namespace {

std::unique_ptr<TShpFile> Load(QByteArray bytes, const std::shared_ptr<IShapePointConverter>& converter = nullptr,
                               const TShpLoadOptions& options = {}) {
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    return TShpFile::LoadFromStream(buffer, QStringLiteral("x.shp"), converter, options);
}

std::unique_ptr<TShpFile> LoadSound(const QByteArray& bytes) {
    TShpLoadOptions options;
    options.SkipDamagedRecords = true;
    return Load(bytes, nullptr, options);
}

QString ShapeFile(const QString& name) {
    return QStringLiteral(LMX_SOURCE_DIR "/tests/data/shp/") + name;
}

struct TSampleRow {
    const char* Name;
    std::size_t Points, Polygons, PolyLines, Vertices;
    double XMin, YMin, XMax, YMax;
};

void PrintTo(const TSampleRow& row, std::ostream* stream) {
    *stream << row.Name;
}

class ShpFileSamples : public testing::TestWithParam<TSampleRow> {};

/// Moves to the east; a longitude beyond 100 cannot be converted.
class TShiftingConverter : public IShapePointConverter {
public:
    void Convert(std::span<TShpPoint> points) override {
        for (TShpPoint& point : points)
            point.X = point.X > 100 ? NAN : point.X + 10;
    }
};

std::vector<TShpPoint> Copy(TShpPointArr part) {
    return {part.begin(), part.end()};
}

} // namespace

TEST_P(ShpFileSamples, AreRead) {
    const TSampleRow& row = GetParam();
    const auto file = TShpFile::LoadFromFile(ShapeFile(row.Name + QStringLiteral(".shp")), nullptr);
    EXPECT_EQ(file->GetPointCount(), row.Points);
    EXPECT_EQ(file->GetPolygonCount(), row.Polygons);
    EXPECT_EQ(file->GetPolyLineCount(), row.PolyLines);
    EXPECT_EQ(file->GetVertexCount(), row.Vertices);
    EXPECT_NEAR(file->GetXMin(), row.XMin, 1e-4);
    EXPECT_NEAR(file->GetYMin(), row.YMin, 1e-4);
    EXPECT_NEAR(file->GetXMax(), row.XMax, 1e-4);
    EXPECT_NEAR(file->GetYMax(), row.YMax, 1e-4);
}
INSTANTIATE_TEST_SUITE_P(
    Files, ShpFileSamples,
    testing::Values(
        TSampleRow{"gdal_arcm_with_m", 0, 0, 2, 6, 0, 0, 3, 3},
        TSampleRow{"gdal_buggypoint", 1, 0, 0, 1, 500000, 4000000, 500000, 4000000},
        TSampleRow{"gdal_emptymultipoint", 0, 0, 0, 0, 0, 0, 0, 0},
        TSampleRow{"gdal_extentnan", 0, 0, 0, 0, 0, 0, 0, 0},
        TSampleRow{"gdal_mixed_shape_type_non_conformant", 3, 2, 2, 21, -1, -1, 11, 7},
        TSampleRow{"gdal_multipatch", 0, 1, 0, 33, 0, 0, 10, 8},
        TSampleRow{"gdal_multipointz_without_m", 2, 0, 0, 2, 0, 1, 3, 4},
        TSampleRow{"gdal_pointz_without_m", 1, 0, 0, 1, 1, 2, 1, 2},
        TSampleRow{"gdal_pointzm_with_one_valid_m", 2, 0, 0, 2, 1, 2, 4, 5},
        TSampleRow{"gdal_polygonm_without_m", 0, 2, 0, 12, 0, 0, 1, 1}, TSampleRow{"mb_null", 5, 0, 0, 5, 1, 2, 17, 18},
        TSampleRow{"mb_multipointm", 3, 0, 0, 3, 0, 5, 10, 10}, TSampleRow{"mb_polylinem", 0, 0, 2, 6, 0, 0, 25, 25},
        TSampleRow{"pyshp_corrupt_too_long", 0, 0, 10, 30, 1, 1, 2, 2},
        TSampleRow{"rs_file_cp936", 0, 0, 1, 7, 1, 1, 5, 6},
        TSampleRow{"shapelib_3dpoints", 22, 0, 0, 22, -3.163473, -0.6037036, 11.92569, 10.54257},
        TSampleRow{"shapelib_pline", 0, 0, 460, 3618, 1296367.5, 228199.390625, 1302699.0, 237185.03125},
        TSampleRow{"ne_110m_coastline", 0, 0, 134, 5128, -180, -85.60904, 180, 83.64513},
        TSampleRow{"ne_110m_populated_places_simple", 243, 0, 0, 243, -175.22056, -41.29997, 179.21665, 64.15002},
        TSampleRow{"nz_ne_50m_land", 0, 7, 0, 687, 166.4776, -47.26368, 178.5362, -34.42906}),
    [](const auto& row) { return std::string(row.param.Name); });

TEST(ShpFile, RefusesDamagedSamples) {
    for (const char* name : {"gdal_buggymultiline.shp", "gdal_buggymultipoint.shp", "gdal_buggymultipoly.shp"}) {
        const QString path = ShapeFile(name);
        EXPECT_EQ(MessageOf<EFileFormatException>([&] { TShpFile::LoadFromFile(path, nullptr); }),
                  path + ": record 1 is too short for its counts");
    }
}

TEST(ShpFile, SaysWhenThereIsNoFile) {
    EXPECT_EQ(MessageOf<EFileException>([] { TShpFile::LoadFromFile(QStringLiteral("/nowhere/x.shp"), nullptr); }),
              "/nowhere/x.shp: cannot be opened: No such file or directory");
}

TEST(ShpFile, KnowsItsFullName) {
    const QString path = ShapeFile("mb_null.shp");
    const QString relative = QDir::current().relativeFilePath(path);
    EXPECT_EQ(TShpFile::LoadFromFile(relative, nullptr)->GetFileName(), path);
}

TEST(ShpFile, KeepsShapesAndPartsInTheOrderOfTheFile) {
    const auto file = Load(TShapeBytes()
                               .Lines(5, {{{1, 1}, {2, 2}}, {{3, 3}}})
                               .MultiPoint(8, {{50, 60}, {70, 80}})
                               .Lines(3, {{{9, 9}}})
                               .Lines(5, {})
                               .Lines(5, {{}, {{4, 4}, {5, 5}}})
                               .Point(1, {-1, -2})
                               .File(5));
    ASSERT_EQ(file->GetPolygonCount(), 3U);
    ASSERT_EQ(file->GetPolygon(0).GetPartCount(), 2U);
    EXPECT_EQ(Copy(file->GetPolygon(0).GetPart(0)), (std::vector<TShpPoint>{{1, 1}, {2, 2}}));
    EXPECT_EQ(Copy(file->GetPolygon(0).GetPart(1)), (std::vector<TShpPoint>{{3, 3}}));
    EXPECT_EQ(file->GetPolygon(1).GetPartCount(), 0U);
    ASSERT_EQ(file->GetPolygon(2).GetPartCount(), 2U);
    EXPECT_TRUE(file->GetPolygon(2).GetPart(0).empty());
    EXPECT_EQ(Copy(file->GetPolygon(2).GetPart(1)), (std::vector<TShpPoint>{{4, 4}, {5, 5}}));
    ASSERT_EQ(file->GetPolyLineCount(), 1U);
    EXPECT_EQ(Copy(file->GetPolyLine(0).GetPart(0)), (std::vector<TShpPoint>{{9, 9}}));
    ASSERT_EQ(file->GetPointCount(), 3U);
    EXPECT_EQ(file->GetPoint(1).X, 70);
    EXPECT_EQ(file->GetPoint(1).Y, 80);
    EXPECT_EQ(file->GetPoint(2).X, -1);
    EXPECT_EQ(file->GetXMin(), -1);
    EXPECT_EQ(file->GetYMin(), -2);
    EXPECT_EQ(file->GetXMax(), 70);
    EXPECT_EQ(file->GetYMax(), 80);
}

TEST(ShpFile, VerticesOfNoPartAreLeftOut) {
    const auto file = Load(TShapeBytes().Record(TShapeBytes::LinesContent(3, {}, {{1, 1}}, 0, 1)).File(3));
    EXPECT_EQ(file->GetPolyLineCount(), 1U);
    EXPECT_EQ(file->GetVertexCount(), 0U);
    EXPECT_EQ(file->GetXMax(), 0);
}

TEST(ShpFile, ConvertsEveryVertexAndLeavesOutWhatHasNoPlace) {
    const auto file = Load(TShapeBytes()
                               .Lines(3, {{{1, 0}, {200, 0}, {2, 0}}, {{300, 0}}, {{3, 0}, {400, 0}}})
                               .Lines(3, {{{500, 0}}, {{4, 0}, {5, 0}}})
                               .MultiPoint(8, {{600, 0}, {6, 0}})
                               .File(3),
                           std::make_shared<TShiftingConverter>());
    EXPECT_EQ(Copy(file->GetPolyLine(0).GetPart(0)), (std::vector<TShpPoint>{{11, 0}, {12, 0}}));
    EXPECT_TRUE(file->GetPolyLine(0).GetPart(1).empty());
    EXPECT_EQ(Copy(file->GetPolyLine(0).GetPart(2)), (std::vector<TShpPoint>{{13, 0}}));
    EXPECT_TRUE(file->GetPolyLine(1).GetPart(0).empty());
    EXPECT_EQ(Copy(file->GetPolyLine(1).GetPart(1)), (std::vector<TShpPoint>{{14, 0}, {15, 0}}));
    ASSERT_EQ(file->GetPointCount(), 1U);
    EXPECT_EQ(file->GetPoint(0).X, 16);
    EXPECT_EQ(file->GetXMin(), 11);
    EXPECT_EQ(file->GetXMax(), 16);
}

TEST(ShpFile, LeavesOutVerticesWithoutAPlace) {
    constexpr double Lowest = -1.7976931348623157e308;
    for (const double bad :
         std::initializer_list<double>{Lowest, -Lowest, 1.1e300, -1.1e300, NAN, INFINITY, -INFINITY}) {
        const auto file = Load(TShapeBytes()
                                   .Point(1, {bad, bad})
                                   .Point(1, {3, 4})
                                   .Lines(3, {{{bad, 0}, {1, 0}}, {{0, bad}}, {{1, 5}, {2, bad}, {3, 5}}, {}})
                                   .MultiPoint(8, {{7, bad}, {7, 8}})
                                   .File(3));
        ASSERT_EQ(file->GetPointCount(), 2U) << bad;
        EXPECT_EQ(file->GetPoint(0).X, 3);
        EXPECT_EQ(file->GetPoint(1).X, 7);
        EXPECT_EQ(file->GetPointRecord(0), 1U);
        EXPECT_EQ(file->GetPointRecord(1), 3U);
        const auto line = file->GetPolyLine(0);
        ASSERT_EQ(line.GetPartCount(), 4U);
        EXPECT_EQ(Copy(line.GetPart(0)), (std::vector<TShpPoint>{{1, 0}}));
        EXPECT_TRUE(line.GetPart(1).empty());
        EXPECT_EQ(Copy(line.GetPart(2)), (std::vector<TShpPoint>{{1, 5}, {3, 5}}));
        EXPECT_TRUE(line.GetPart(3).empty());
        EXPECT_EQ(file->GetXMin(), 1);
        EXPECT_EQ(file->GetXMax(), 7);
        EXPECT_EQ(file->GetYMin(), 0);
        EXPECT_EQ(file->GetYMax(), 8);
    }
    EXPECT_EQ(Load(TShapeBytes().Point(1, {1e300, -1e300}).File(1))->GetPointCount(), 1U) << "far, but a place";
}

TEST(ShpFile, AConverterIsGivenOnlyWhatHasAPlace) {
    struct TPickyConverter : IShapePointConverter {
        void Convert(std::span<TShpPoint> points) override {
            for (TShpPoint& point : points) {
                EXPECT_TRUE(std::isfinite(point.X));
                point.X = point.X < 0 ? 1e305 : point.X;
            }
        }
    };
    const auto file =
        Load(TShapeBytes().Lines(3, {{{NAN, 0}, {-1, 0}, {2, 0}}}).File(3), std::make_shared<TPickyConverter>());
    EXPECT_EQ(Copy(file->GetPolyLine(0).GetPart(0)), (std::vector<TShpPoint>{{2, 0}}));
}

TEST(ShpFile, ShapesKnowTheirRecords) {
    const auto file = Load(TShapeBytes()
                               .Null()
                               .Lines(5, {{{1, 1}}, {{2, 2}}})
                               .MultiPoint(8, {{1, 1}, {2, 2}, {3, 3}})
                               .Null()
                               .Lines(3, {})
                               .Point(1, {4, 4})
                               .Lines(5, {{{5, 5}}})
                               .MultiPoint(8, {})
                               .Point(1, {6, 6})
                               .File(5));
    EXPECT_EQ(file->GetPolygon(0).GetRecord(), 1U);
    EXPECT_EQ(file->GetPolygon(1).GetRecord(), 6U);
    EXPECT_EQ(file->GetPolyLine(0).GetRecord(), 4U);
    std::vector<std::uint32_t> records;
    for (std::size_t i = 0; i < file->GetPointCount(); ++i)
        records.push_back(file->GetPointRecord(i));
    EXPECT_EQ(records, (std::vector<std::uint32_t>{2, 2, 2, 5, 8}));
    const auto withNulls = TShpFile::LoadFromFile(ShapeFile(QStringLiteral("mb_null.shp")), nullptr);
    records.clear();
    for (std::size_t i = 0; i < withNulls->GetPointCount(); ++i)
        records.push_back(withNulls->GetPointRecord(i));
    EXPECT_EQ(records, (std::vector<std::uint32_t>{0, 2, 5, 6, 8}));
}

TEST(ShpFile, ChecksItsIndexes) {
    const auto file = Load(TShapeBytes().Point(1, {1, 1}).Lines(5, {{{1, 1}}}).Lines(3, {{}, {}}).File(5));
    for (const std::size_t beyond : {std::size_t{1}, std::numeric_limits<std::size_t>::max()}) {
        const auto fault = [](auto&& action) { return MessageOf<EArgumentException>(action); };
        EXPECT_EQ(fault([&] { file->GetPoint(beyond); }), "Point index is out of range");
        EXPECT_EQ(fault([&] { file->GetPointRecord(beyond); }), "Point index is out of range");
        EXPECT_EQ(fault([&] { file->GetPolygon(beyond); }), "Polygon index is out of range");
        EXPECT_EQ(fault([&] { file->GetPolyLine(beyond); }), "Polyline index is out of range");
        EXPECT_EQ(fault([&] { file->GetPolygon(0).GetPart(beyond); }), "Part index is out of range");
        EXPECT_EQ(fault([&] { file->GetPolyLine(0).GetPart(beyond + 1 == 0 ? beyond : 2); }),
                  "Part index is out of range");
    }
    EXPECT_EQ(MessageOf<EArgumentException>([] { Load(TShapeBytes().File(0))->GetPolygon(0); }),
              "Polygon index is out of range");
}

TEST(ShpFile, SkipsAndCountsDamagedRecordsIfItIsAsked) {
    const QByteArray bytes = TShapeBytes()
                                 .Point(1, {1, 2})
                                 .Point(2, {1, 1})
                                 .Record(TShapeBytes::LinesContent(5, {0, 3, 1}, {{1, 2}, {3, 4}, {5, 6}}, 3, 3))
                                 .Record(TShapeBytes::LinesContent(3, {0}, {{1, 2}}, 1, 9))
                                 .Lines(5, {{{7, 8}}})
                                 .File(1);
    const auto file = LoadSound(bytes);
    EXPECT_EQ(file->GetDamagedRecordCount(), 3U);
    EXPECT_EQ(file->GetPointCount(), 1U);
    EXPECT_EQ(file->GetPolyLineCount(), 0U);
    ASSERT_EQ(file->GetPolygonCount(), 1U);
    EXPECT_EQ(Copy(file->GetPolygon(0).GetPart(0)), (std::vector<TShpPoint>{{7, 8}}));
    EXPECT_EQ(file->GetPolygon(0).GetRecord(), 4U) << "the table has a row for the damaged ones, too";
    EXPECT_EQ(MessageOf<EFileFormatException>([&] { Load(bytes); }), "x.shp: record 2 is of an unknown type");
    const auto cut = LoadSound(bytes.first(bytes.size() - 1));
    EXPECT_EQ(cut->GetDamagedRecordCount(), 4U);
    EXPECT_EQ(cut->GetPolygonCount(), 0U);
    EXPECT_EQ(Load(TShapeBytes().Point(1, {1, 2}).File(1))->GetDamagedRecordCount(), 0U);
    EXPECT_EQ(MessageOf<EFileFormatException>([] { LoadSound("no shapes"); }), "x.shp: the header is cut short");
    TShpLoadOptions options;
    options.SkipDamagedRecords = true;
    const auto sample = TShpFile::LoadFromFile(ShapeFile(QStringLiteral("gdal_buggymultiline.shp")), nullptr, options);
    EXPECT_EQ(sample->GetDamagedRecordCount(), 1U);
    EXPECT_EQ(sample->GetVertexCount(), 0U);
}

TEST(ShpFile, PartsInNoOrderAreKeptByPlaceAndFoundByIndex) {
    std::mt19937_64 random(4);
    const auto below = [&](std::uint32_t limit) { return static_cast<std::uint32_t>(random() % limit); };
    TShapeBytes shapes;
    std::vector<TShpParts> lines;
    std::vector<TShpPoint> points;
    for (int i = 0; i < 3000; ++i) {
        TShpParts parts(1 + below(3));
        for (auto& part : parts) {
            const double x = below(360);
            const double y = below(180);
            const std::uint32_t count = below(20) == 0 ? 100 : below(9);
            for (std::uint32_t j = 0; j < count; ++j)
                part.push_back({x + j * 0.001, y + static_cast<double>(j % 2) * 0.001});
        }
        points.push_back({static_cast<double>(below(360)), static_cast<double>(below(180))});
        shapes.Lines(5, parts).Point(1, points.back());
        lines.push_back(std::move(parts));
    }
    const auto file = Load(shapes.File(5));
    ASSERT_EQ(file->GetPolygonCount(), lines.size());
    ASSERT_EQ(file->GetPointCount(), points.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        ASSERT_EQ(file->GetPolygon(i).GetPartCount(), lines[i].size());
        ASSERT_EQ(file->GetPolygon(i).GetRecord(), 2 * i);
        for (std::size_t part = 0; part < lines[i].size(); ++part)
            ASSERT_EQ(Copy(file->GetPolygon(i).GetPart(part)), lines[i][part]) << i << ' ' << part;
        ASSERT_EQ((TShpPoint{file->GetPoint(i).X, file->GetPoint(i).Y}), points[i]) << i;
        ASSERT_EQ(file->GetPointRecord(i), 2 * i + 1);
    }
    const auto isWide = [](const TVertexBlock& block) { return block.XMax - block.XMin > 150; };
    const auto wideRuns = [&](std::span<const TVertexBlock> runs) { return std::ranges::count_if(runs, isWide); };
    const auto data = file->GetData();
    EXPECT_LT(wideRuns(data->PointBlocks), 8) << "of 47";
    EXPECT_LT(wideRuns(data->Polygons.GetBlocks()), 8) << "of a thousand";
    EXPECT_TRUE(std::ranges::is_sorted(data->Polygons.GetPartStarts()));
}

TEST(ShpFile, HoldsNoMoreThan20BytesAVertex) {
    TShapeBytes segments;
    for (int i = 0; i < 5000; ++i)
        segments.Lines(3, {{{0, 0}, {1, 1}, {2, 2}, {3, 3}}});
    const auto lines = Load(segments.File(3));
    EXPECT_LE(lines->GetMemorySize(), 20 * lines->GetVertexCount()) << "short parts";
    TShapeBytes places;
    for (int i = 0; i < 5000; ++i)
        places.Point(11, {1, 2}, 2);
    const auto points = Load(places.File(11));
    EXPECT_LE(points->GetMemorySize(), 17 * points->GetVertexCount());
}

TEST(ShpFile, ItsGeometryOutlivesIt) {
    auto file = Load(TShapeBytes().Point(1, {1, 2}).File(1));
    const auto data = file->GetData();
    const auto lifetime = file->GetLifetime().Watch();
    EXPECT_FALSE(lifetime.IsOver());
    file = nullptr;
    EXPECT_TRUE(lifetime.IsOver());
    EXPECT_EQ(data->Points, (std::vector<TShpPoint>{{1, 2}}));
}

TEST(ShpFile, AClaimTakesNoMemory) {
    QByteArray file = TShapeBytes().Lines(3, {{{0, 0}, {1, 1}}}).File(3);
    file[108 + 40 + 3] = '\x7F'; // 2,130,706,434 vertices, in a record of 60 bytes
    EXPECT_EQ(MessageOf<EFileFormatException>([&] { Load(file); }), "x.shp: record 1 is too short for its counts");
}

} // namespace lmx::tests
