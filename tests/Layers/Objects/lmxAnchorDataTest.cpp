#include <lmx/Layers/Objects/lmxAnchorData.h>
#include <tests/Support/GeometryPrinters.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace lmx {
namespace {

using enum TAnchorKind;

constexpr std::int32_t Least = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t Most = std::numeric_limits<std::int32_t>::max();

TEST(AnchorData, HasATextAndComesBackFromIt) {
    const TAnchorData data(1, -2, 300, Least);
    EXPECT_EQ(data.ToString(), QStringLiteral("1,-2,300,-2147483648"));
    EXPECT_EQ(TAnchorData(data.ToString()), data);
}

TEST(AnchorData, AnythingElseIsZero) {
    for (const char* text :
         {"", "1", "1,2,3", "1,2,3,4,5", "1,2,3,x", "1,2,,4", "1,2,3,2147483648", "1;2;3;4", "1.5,2,3,4"})
        EXPECT_EQ(TAnchorData(QString::fromLatin1(text)), TAnchorData()) << text;
    EXPECT_EQ(TAnchorData(7), TAnchorData());
    EXPECT_EQ(TAnchorData(), TAnchorData(0, 0, 0, 0));
}

TEST(AnchorData, MeasuresTheDistancesFromAllEdges) {
    EXPECT_EQ(MeasureAnchors({10, 20, 110, 60}, {400, 300}), TAnchorData(10, 20, 290, 240));
    EXPECT_EQ(MeasureAnchors({10, 20, 110, 60}, {}), TAnchorData(10, 20, -110, -60)) << "before there is a view";
    EXPECT_EQ(MeasureAnchors({0, 0, Least, Most}, {Most, Least}), TAnchorData(0, 0, Most, Least));
}

struct TAxisRow {
    TAnchors Anchors;
    std::int32_t Start;
    std::int32_t End;
};

// A span from 10 to 110 in 400 pixels, which become 300.
TEST(AnchoredRect, FollowsTheAnchorsOfEachAxis) {
    const TRect rect(10, 10, 110, 110);
    const TAnchorData data = MeasureAnchors(rect, {400, 400});
    const std::vector<TAxisRow> horizontal = {
        {{}, 10, 110}, {{akLeft}, 10, 110}, {{akRight}, -90, 10}, {{akLeft, akRight}, 10, 10}};
    const std::vector<TAxisRow> vertical = {
        {{}, 10, 110}, {{akTop}, 10, 110}, {{akBottom}, -90, 10}, {{akTop, akBottom}, 10, 10}};
    for (const TAxisRow& x : horizontal)
        for (const TAxisRow& y : vertical)
            EXPECT_EQ(AnchoredRect(rect, x.Anchors + y.Anchors, data, {300, 300}),
                      TRect(x.Start, y.Start, x.End, y.End))
                << AnchorsToString(x.Anchors + y.Anchors).toStdString();
}

TEST(AnchoredRect, StretchesAndDoesNotDrift) {
    const TAnchors all = {akLeft, akTop, akRight, akBottom};
    const TRect rect(10, 20, 110, 60);
    const TAnchorData data = MeasureAnchors(rect, {400, 300});
    TRect moved = AnchoredRect(rect, all, data, {1000, 1000});
    EXPECT_EQ(moved, TRect(10, 20, 710, 760));
    moved = AnchoredRect(moved, all, data, {5, 5});
    EXPECT_EQ(moved, TRect(10, 20, -285, -235)) << "inverted, and still anchored";
    EXPECT_EQ(AnchoredRect(moved, all, data, {400, 300}), rect);
}

TEST(AnchoredRect, Saturates) {
    const TAnchors far = {akRight, akBottom};
    EXPECT_EQ(AnchoredRect({0, 0, Most, Most}, far, {0, 0, Most, Most}, {-10, -10}), TRect(Least, Least, Least, Least));
    EXPECT_EQ(AnchoredRect({0, 0, 10, 10}, far, {0, 0, Least, Least}, {10, 10}),
              TRect(Most - 10, Most - 10, Most, Most));
}

} // namespace
} // namespace lmx
