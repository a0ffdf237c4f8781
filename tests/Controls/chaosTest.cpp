// Whatever the library tells a host of, the host may answer by anything: here every place where the library calls a
// host meets every deed, in a fresh scene, which is used once more afterwards; and several meet at random. The
// environment says more of it: LMX_CHAOS_SEED and LMX_CHAOS_ROUNDS, the seed and the length of the random part;
// LMX_CHAOS_DEEDS, a text that the names of the deeds must have; LMX_CHAOS_TRACE, that each step is written out before
// it is done.

#include <tests/Controls/ChaosRun.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using namespace tests;

class Chaos : public testing::TestWithParam<std::size_t> {};

TEST_P(Chaos, MayComeOverTheLibraryAtAnyPlace) {
    MeetEveryDeed(ChaosPlaces()[GetParam()], ChaosDeeds());
}

INSTANTIATE_TEST_SUITE_P(Places, Chaos, testing::Range<std::size_t>(0, ChaosPlaces().size()));

TEST(ChaosOfSeveral, MayComeInAnyOrder) {
    MeetAtRandom(ChaosPlaces(), ChaosDeeds());
}

} // namespace
} // namespace lmx
