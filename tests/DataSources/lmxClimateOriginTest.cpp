#include <lmx/DataSources/lmxClimateOrigin.h>

#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

TEST(ClimateOrigin, ComesBackFromALineage) {
    const TClimateOrigin full{"/data/t.nc", "future/ta", "January 1990", "850 hPa"};
    EXPECT_EQ(full.ToLineage(), "/data/t.nc\nfuture/ta\nJanuary 1990\n850 hPa");
    for (const TClimateOrigin& origin :
         {full, TClimateOrigin{"/data/t.nc", "ta", "January 1990", ""}, TClimateOrigin{"/t.nc", "ta", "", ""},
          TClimateOrigin{"/t.nc", "ta", "", "850 hPa"}, TClimateOrigin{"HTTPS://host/t.tif", "band 1", "", ""}}) {
        const auto back = TClimateOrigin::FromLineage(origin.ToLineage());
        ASSERT_TRUE(back.has_value()) << origin.ToLineage().toStdString();
        EXPECT_EQ(*back, origin);
    }
}

TEST(ClimateOrigin, AnotherLineageIsNone) {
    for (const char* const lineage : {"", "/t.nc", "/t.nc\nta", "t.nc\nta\nJanuary", "/t.nc\n\nJanuary",
                                      "Digitised\nby hand\nin 1987", "/t.nc\nta\nJanuary\n850 hPa\nand more"})
        EXPECT_FALSE(TClimateOrigin::FromLineage(QString::fromLatin1(lineage)).has_value()) << lineage;
}

} // namespace
} // namespace lmx
