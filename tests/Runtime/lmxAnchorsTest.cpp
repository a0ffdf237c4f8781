#include <lmx/Runtime/lmxAnchors.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using tests::MessageOf;

TEST(Anchors, AreTheirNamesInOrder) {
    const TAnchors anchors{TAnchorKind::akBottom, TAnchorKind::akLeft};
    EXPECT_EQ(AnchorsToString(anchors), "akLeft,akBottom");
    EXPECT_EQ(StringToAnchors("akBottom,akLeft,akLeft"), anchors);
    EXPECT_EQ(AnchorsToString({}), "");
    EXPECT_EQ(StringToAnchors(""), TAnchors());
}

TEST(Anchors, AreReadLetterByLetter) {
    EXPECT_EQ(MessageOf<EConvertError>([] { StringToAnchors("akLeft, akTop"); }), "Invalid anchors text");
    EXPECT_EQ(MessageOf<EConvertError>([] { StringToAnchors("akleft"); }), "Invalid anchors text");
}

} // namespace
} // namespace lmx
