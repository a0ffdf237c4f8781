#include <lmx/Formats/Idrisi/Private/lmxVectorBytes.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ShapeBytes.h>

#include <gtest/gtest.h>

#include <cmath>

namespace lmx::tests {

namespace {

using enum TVectorObjectType;
using TVertices = std::vector<TGeoPoint>;

TVectorData Parse(const QByteArray& bytes, TVectorObjectType type = vtLine) {
    return ParseOldVectorBytes(bytes, type, QStringLiteral("x.vec"));
}

QString FaultOf(const QByteArray& bytes, TVectorObjectType type = vtLine) {
    return MessageOf<EFileFormatException>([&] { Parse(bytes, type); });
}

TVertices FeatureOf(const TVectorData& data, std::size_t index) {
    const auto feature = data.GetFeature(index);
    return {feature.begin(), feature.end()};
}

template<class Id, class Count>
QByteArray Binary(bool hasEnd = true) {
    QByteArray file;
    for (const int count : {2, 1}) {
        AppendLittle(file, static_cast<Id>(70 + count));
        AppendLittle(file, static_cast<Count>(count));
        for (int i = 0; i < 2 * count; ++i)
            AppendLittle(file, static_cast<float>(i) + 0.5F);
    }
    if (hasEnd) {
        AppendLittle(file, Id{0});
        AppendLittle(file, Count{0});
    }
    return file;
}

} // namespace

TEST(OldVectorData, ReadsText) {
    for (const QByteArray& text :
         {QByteArray("1 2\n 10.5  -20\n30 4e1\n-2.5 1\n1 1\n0 0\n"),
          QByteArray("1 2\r\n10.5\t-20\r\n30 40\r\n-2.5 1\r\n1 1\r\n0 0"),
          QByteArray("  1 2 10.5 -20 30 40 -2.5 1 1 1 0 0 what follows does not count"),
          QByteArray("1 2\n10.5 -20\n30 40\n-2.5 1\n1 1\n"), QByteArray("1 2\n10.5 -20\n30 40\n-2.5 1\n1 1\n\x1A")}) {
        const TVectorData data = Parse(text);
        EXPECT_EQ(data.Type, vtLine);
        EXPECT_EQ(data.Ids, (std::vector<double>{1, -2.5}));
        EXPECT_EQ(FeatureOf(data, 0), (TVertices{{10.5F, -20}, {30, 40}}));
        EXPECT_EQ(FeatureOf(data, 1), (TVertices{{1, 1}}));
    }
    EXPECT_TRUE(Parse("").Ids.empty());
    EXPECT_TRUE(Parse("0 0").Ids.empty());
}

TEST(OldVectorData, AnIdOf0WithVerticesIsNoEnd) {
    const TVectorData data = Parse("0 1\n5 6\n7 0\n0 0\n");
    EXPECT_EQ(data.Ids, (std::vector<double>{0, 7}));
    EXPECT_EQ(FeatureOf(data, 1), TVertices());
}

TEST(OldVectorData, TheDocumentationSaysWhatTheFeaturesAre) {
    EXPECT_EQ(Parse("1 1 5 6 0 0", vtPoint).Type, vtPoint);
    EXPECT_EQ(Parse("1 1 5 6 0 0", vtPolygon).Type, vtPolygon);
    EXPECT_EQ(Parse("1 1 5 6 0 0", vtText).Type, vtPoint) << "the labels of texts stand elsewhere";
    EXPECT_EQ(FaultOf("1 2 5 6 7 8 0 0", vtPoint), "x.vec: a point has no place or several");
}

TEST(OldVectorData, WithoutItTheFeaturesTell) {
    EXPECT_EQ(Parse("1 1 5 6 2 1 7 8 0 0", vtNone).Type, vtPoint);
    EXPECT_EQ(Parse("1 4 1 1 2 1 2 2 1 1 0 0", vtNone).Type, vtPolygon);
    EXPECT_EQ(Parse("1 4 1 1 2 1 2 2 1 1 2 2 1 1 3 3 0 0", vtNone).Type, vtLine);
}

TEST(OldVectorData, RefusesDamagedText) {
    EXPECT_EQ(FaultOf("1"), "x.vec: the file is cut short");
    EXPECT_EQ(FaultOf("1 1\n5"), "x.vec: the file is cut short");
    EXPECT_EQ(FaultOf("1 2\n5 6\n"), "x.vec: the file is cut short");
    EXPECT_EQ(FaultOf("1 1000000000000 5 6"), "x.vec: the file is cut short");
    EXPECT_EQ(FaultOf("1 1\nfive 6\n"), "x.vec: line 2: feature 1 holds no number");
    EXPECT_EQ(FaultOf("1 1\n5,5 6\n"), "x.vec: line 2: feature 1 holds no number");
    EXPECT_EQ(FaultOf("1 -1\n"), "x.vec: line 1: feature 1 has an impossible count");
    EXPECT_EQ(FaultOf("1 1.5\n5 6\n"), "x.vec: line 1: feature 1 has an impossible count");
    EXPECT_EQ(FaultOf("1 nan\n5 6\n"), "x.vec: line 1: feature 1 has an impossible count");
    EXPECT_EQ(FaultOf("1 1\n5 inf\n"), "x.vec: line 2: feature 1 has a coordinate that is no finite number");
    EXPECT_EQ(FaultOf("1 1\n5 1e39\n"), "x.vec: line 2: feature 1 has a coordinate that is no finite number");
    for (const QByteArray& end : {QByteArray("\n"), QByteArray("\r"), QByteArray("\r\n"), QByteArray(" \n\t")})
        EXPECT_EQ(FaultOf("1 1" + end + "5 6" + end + end + "2 1" + end + "7 x"),
                  "x.vec: line 5: feature 2 holds no number");
}

TEST(OldVectorData, ReadsBinaryInEachLayout) {
    for (const QByteArray& file :
         {Binary<float, float>(), Binary<std::int16_t, std::int16_t>(), Binary<float, std::int16_t>()}) {
        const TVectorData data = Parse(file);
        EXPECT_EQ(data.Ids, (std::vector<double>{72, 71}));
        EXPECT_EQ(FeatureOf(data, 0), (TVertices{{0.5F, 1.5F}, {2.5F, 3.5F}}));
        EXPECT_EQ(FeatureOf(data, 1), (TVertices{{0.5F, 1.5F}}));
    }
}

TEST(OldVectorData, RefusesBinaryThatNoLayoutFits) {
    const QByteArray file = Binary<float, float>();
    const QString message = QStringLiteral("x.vec: no layout of binary vectors fits");
    EXPECT_EQ((FaultOf(Binary<float, float>(false))), message) << "without an end";
    EXPECT_EQ(FaultOf(file + '\0'), message);
    for (qsizetype size = 5; size < file.size(); ++size)
        EXPECT_EQ(FaultOf(file.first(size)), message) << size;
    QByteArray infinite = file;
    qToLittleEndian(static_cast<float>(INFINITY), infinite.data() + 8);
    EXPECT_EQ(FaultOf(infinite), message);
    QByteArray negative = file;
    qToLittleEndian(-2.0F, negative.data() + 4);
    EXPECT_EQ(FaultOf(negative), message);
}

} // namespace lmx::tests
