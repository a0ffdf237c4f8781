#include <lmx/Controls/lmxMapViewCompositor.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

TEST(MapViewCompositor, EachCallGivesANewOne) {
    const auto first = TBitmap32MapViewCompositorFactory::GetObject();
    EXPECT_NE(first, nullptr);
    EXPECT_NE(first, TBitmap32MapViewCompositorFactory::GetObject());
}

} // namespace
} // namespace lmx
