#include <lmx/Formats/Idrisi/Private/lmxVectorBytes.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/Printers.h>
#include <tests/Support/VectorBytes.h>

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <random>

namespace lmx::tests {

namespace {

using enum TVectorObjectType;
using TVertices = std::vector<TGeoPoint>;

TVectorData Parse(const QByteArray& bytes) {
    return ParseVectorBytes(bytes, QStringLiteral("x.vct"));
}

QString FaultOf(const QByteArray& bytes) {
    return MessageOf<EFileFormatException>([&] { Parse(bytes); });
}

TVertices FeatureOf(const TVectorData& data, std::size_t index) {
    const auto feature = data.GetFeature(index);
    return {feature.begin(), feature.end()};
}

void ExpectSameBits(const TVectorData& a, const TVectorData& b) {
    EXPECT_EQ(a.Type, b.Type);
    EXPECT_EQ(a.FeatureStarts, b.FeatureStarts);
    EXPECT_EQ(a.TextBytes, b.TextBytes);
    ASSERT_EQ(a.Ids.size(), b.Ids.size());
    for (std::size_t i = 0; i < a.Ids.size(); ++i)
        EXPECT_EQ(std::bit_cast<std::uint64_t>(a.Ids[i]), std::bit_cast<std::uint64_t>(b.Ids[i]));
    ASSERT_EQ(a.Vertices.size(), b.Vertices.size());
    for (std::size_t i = 0; i < a.Vertices.size(); ++i)
        EXPECT_EQ(std::bit_cast<std::uint64_t>(a.Vertices[i]), std::bit_cast<std::uint64_t>(b.Vertices[i])) << i;
}

} // namespace

TEST(VectorData, ReadsPoints) {
    const TVectorData data = Parse(TVectorBytes(vtPoint).Point(1, {2, 3}).Point(-4.5, {-5, 6.25F}).File());
    EXPECT_EQ(data.Type, vtPoint);
    EXPECT_EQ(data.Ids, (std::vector<double>{1, -4.5}));
    EXPECT_EQ(FeatureOf(data, 0), (TVertices{{2, 3}}));
    EXPECT_EQ(FeatureOf(data, 1), (TVertices{{-5, 6.25F}}));
}

TEST(VectorData, ReadsLines) {
    const TVectorData data =
        Parse(TVectorBytes(vtLine).Line(10, {{1, 2}, {3, 4}}).Line(11, {}).Line(12, {{5, 6}}).File());
    EXPECT_EQ(data.Type, vtLine);
    EXPECT_EQ(data.Ids, (std::vector<double>{10, 11, 12}));
    EXPECT_EQ(FeatureOf(data, 0), (TVertices{{1, 2}, {3, 4}}));
    EXPECT_EQ(FeatureOf(data, 1), TVertices());
    EXPECT_EQ(FeatureOf(data, 2), (TVertices{{5, 6}}));
}

TEST(VectorData, PartsOfPolygonsAreParted) {
    const TVectorData data = Parse(TVectorBytes(vtPolygon)
                                       .Polygon(1, {{{1, 1}, {2, 1}, {1, 1}}})
                                       .Polygon(2, {{{3, 3}}, {{4, 4}, {5, 5}}, {}, {{6, 6}}})
                                       .Polygon(3, {})
                                       .File());
    EXPECT_EQ(FeatureOf(data, 0), (TVertices{{1, 1}, {2, 1}, {1, 1}}));
    EXPECT_EQ(FeatureOf(data, 1), (TVertices{{3, 3}, {0, 0}, {4, 4}, {5, 5}, {0, 0}, {0, 0}, {6, 6}}));
    EXPECT_EQ(FeatureOf(data, 2), TVertices());
}

TEST(VectorData, TextsKeepTheirBytes) {
    QByteArray file(400, '\5');
    file[0] = '\4';
    const TVectorData data = Parse(file);
    EXPECT_EQ(data.Type, vtText);
    EXPECT_TRUE(data.Ids.empty());
    EXPECT_EQ(FormatVectorBytes(data), file);
}

TEST(VectorData, WhatIsWrittenReadsBackExactly) {
    std::mt19937 random(3);
    const auto number = [&] { // any finite bits, the zeros often
        const auto bits = random() % 4 == 0 ? (random() % 2) << 31U : random();
        const auto value = std::bit_cast<float>(static_cast<std::uint32_t>(bits));
        return std::isfinite(value) ? value : 1.0F;
    };
    for (int round = 0; round < 2000; ++round) {
        TVectorData data;
        data.Type = static_cast<TVectorObjectType>(1 + round % 3);
        for (auto features = random() % 6; features > 0; --features) {
            data.Ids.push_back(std::bit_cast<double>(std::uint64_t{random()} << 32U | random()));
            data.FeatureStarts.push_back(static_cast<std::uint32_t>(data.Vertices.size()));
            for (auto count = data.Type == vtPoint ? 1 : random() % 9; count > 0; --count)
                data.Vertices.push_back({number(), number()});
        }
        ExpectSameBits(Parse(FormatVectorBytes(data)), data);
    }
    ExpectSameBits(Parse(FormatVectorBytes(TVectorData())), TVectorData());
}

TEST(VectorData, WritesTheLayoutOfOtherPrograms) {
    const QByteArray written =
        FormatVectorBytes(Parse(TVectorBytes(vtPolygon).Polygon(7, {{{1, -2}}, {{3, 4}}}).File()));
    QByteArray expected("\3\1\0\0\0", 5);
    expected += QByteArray(256, '\0');
    for (const double value : {7.0, 0.0, 3.0, -2.0, 4.0}) // the id and the box, with the mark between the parts in it
        AppendLittle(expected, value);
    for (const std::uint32_t count : {2U, 2U, 1U, 1U})
        AppendLittle(expected, count);
    for (const double value : {1.0, -2.0, 3.0, 4.0})
        AppendLittle(expected, value);
    EXPECT_EQ(written, expected);
}

TEST(VectorData, RefusesFilesThatAreCutShort) {
    for (const QByteArray& file :
         {TVectorBytes(vtPoint).Point(1, {2, 3}).File(), TVectorBytes(vtLine).Line(1, {{1, 2}, {3, 4}}).File(),
          TVectorBytes(vtPolygon).Polygon(1, {{{1, 2}}, {{3, 4}}}).File()}) {
        for (qsizetype size = 0; size < file.size(); ++size)
            EXPECT_EQ(FaultOf(file.first(size)), "x.vct: the file is cut short") << size;
        Parse(file + "more"); // bytes behind the last feature do no harm
    }
}

TEST(VectorData, RefusesCountsThatLie) {
    const TVectorBytes lines = TVectorBytes(vtLine).Line(1, {{1, 2}, {3, 4}});
    EXPECT_EQ(FaultOf(lines.File(2)), "x.vct: the file is cut short");
    EXPECT_EQ(FaultOf(lines.File(0xFFFFFFFF)), "x.vct: the file is cut short");
    QByteArray vertices = lines.File();
    vertices[261 + 40 + 3] = '\xFF';
    EXPECT_EQ(FaultOf(vertices), "x.vct: the file is cut short");
    const QByteArray polygon = TVectorBytes(vtPolygon).Polygon(1, {{{1, 2}}, {{3, 4}, {5, 6}}}).File();
    for (const int partCount : {48, 52}) {
        QByteArray parts = polygon;
        parts[261 + partCount] = '\0';
        EXPECT_EQ(FaultOf(parts), "x.vct: feature 1 has parts that do not add up");
        parts[261 + partCount] = '\3';
        EXPECT_EQ(FaultOf(parts), "x.vct: feature 1 has parts that do not add up");
    }
    QByteArray none = polygon;
    none[261 + 40] = '\0';
    EXPECT_EQ(FaultOf(none), "x.vct: feature 1 has parts that do not add up");
}

TEST(VectorData, RefusesUnknownTypes) {
    EXPECT_EQ(FaultOf("\5" + QByteArray(300, '\0')), "x.vct: its objects are of an unknown type");
    EXPECT_EQ(FaultOf(QByteArray("\0\1\0\0\0", 5) + QByteArray(300, '\0')),
              "x.vct: its objects are of an unknown type");
}

TEST(VectorData, RefusesCoordinatesBeyondSinglePrecision) {
    for (const double bad : {static_cast<double>(NAN), static_cast<double>(INFINITY), 1e39, -1e300}) {
        QByteArray file = TVectorBytes(vtPoint).Point(1, {2, 3}).Point(1, {2, 3}).File();
        qToLittleEndian(bad, file.data() + 261 + 24 + 8);
        EXPECT_EQ(FaultOf(file), "x.vct: feature 2 has a coordinate that is no finite number");
    }
}

} // namespace lmx::tests
