#include <lmx/Graphics/lmxVectorDoc.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <limits>

namespace lmx {
namespace {

using tests::MessageOf;

TEST(VectorDoc, AlignmentsHaveTheirOrder) {
    EXPECT_EQ(static_cast<int>(THAlign::haLeft), 0);
    EXPECT_EQ(static_cast<int>(THAlign::haCenter), 1);
    EXPECT_EQ(static_cast<int>(THAlign::haRight), 2);
    EXPECT_EQ(static_cast<int>(TVAlign::vaTop), 0);
    EXPECT_EQ(static_cast<int>(TVAlign::vaMiddle), 1);
    EXPECT_EQ(static_cast<int>(TVAlign::vaBottom), 2);
}

TEST(VectorDoc, ComparesByItsContent) {
    const TVectorDoc document{512, 512, {TClearItem{1}, TPolygonItem{{{1, 2}}, 3, 4, 5}}};
    TVectorDoc other = document;
    EXPECT_EQ(document, other);
    std::get<TPolygonItem>(other.Items[1]).Points[0].X = 9;
    EXPECT_FALSE(document == other);
}

TEST(VectorDoc, PointsAreReadFromTheirText) {
    EXPECT_EQ(StringToFloatPoints(QStringLiteral("256,53 256.5,-256 2e2,.5")),
              (TFloatPoints{{256, 53}, {256.5, -256}, {200, 0.5}}));
    EXPECT_EQ(StringToFloatPoints(QStringLiteral("  1,2   3,4 ")), (TFloatPoints{{1, 2}, {3, 4}}));
    EXPECT_EQ(StringToFloatPoints(QString()), TFloatPoints());
}

TEST(VectorDoc, PointsAreWrittenInTheSameForm) {
    const TFloatPoints points = {{256, 53}, {-0.5, 1e20}};
    EXPECT_EQ(FloatPointsToString(points), QStringLiteral("256,53 -0.5,1E20"));
    EXPECT_EQ(FloatPointsToString({}), QString());
}

TEST(VectorDoc, TheTextOfPointsIsExactInEveryLocale) {
    const TFloatPoints points = {{1.0 / 3, 0.1}, {std::numeric_limits<double>::max(), 4.9e-324}, {-0.0, 1e15 + 0.125}};
    for (const QChar separator : {u'.', u','}) {
        const TFormatSettingsScope scope({separator});
        EXPECT_EQ(StringToFloatPoints(FloatPointsToString(points)), points);
    }
}

class InvalidPoints : public testing::TestWithParam<const char*> {};

TEST_P(InvalidPoints, AreRefused) {
    const QString text = QString::fromLatin1(GetParam());
    EXPECT_EQ(MessageOf<EConvertError>([&] { StringToFloatPoints(text); }), QStringLiteral("Invalid points text"));
}

INSTANTIATE_TEST_SUITE_P(Texts, InvalidPoints,
                         testing::Values("1", "1,", ",1", ",", "1,2 3", "1,2,3", "1;2", "a,b", "1, 2", "1,2\n3,4"));

} // namespace
} // namespace lmx
