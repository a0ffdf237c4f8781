// The chaos of the library's own controls, with the layers and controls of climate files among them: see
// tests/Controls/chaosTest.cpp for the environment variables.

#include <tests/Controls/ChaosRun.h>
#include <tests/DataSources/TilesChaos.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using namespace tests;

std::vector<TDeed> AllDeeds() {
    std::vector<TDeed> deeds = ChaosDeeds();
    const std::vector<TDeed> ours = TilesDeeds();
    deeds.insert(deeds.end(), ours.begin(), ours.end());
    return deeds;
}

// At the places of tiles and players. The other deeds come by random.
std::vector<TDeed> NearDeeds() {
    std::vector<TDeed> deeds = TilesDeeds();
    for (const TDeed& deed : ChaosDeeds())
        for (const char* const name :
             {"nothing", "raise", "remove every layer", "another manager", "no manager", "let the manager go",
              "delete the view", "delete everything", "another world", "repaint at once", "handle events",
              "read a document", "save a document", "paint a picture", "unsubscribe"})
            if (QString::fromLatin1(deed.Name) == QString::fromLatin1(name))
                deeds.push_back(deed);
    return deeds;
}

class ChaosOfTiles : public testing::TestWithParam<std::size_t> {};

TEST_P(ChaosOfTiles, MayComeAtAnyPlace) {
    static const std::vector<TPlace> places = TilesPlaces();
    static const std::vector<TDeed> deeds = NearDeeds();
    MeetEveryDeed<TTilesScene>(places[GetParam()], deeds);
}

INSTANTIATE_TEST_SUITE_P(Places, ChaosOfTiles, testing::Range<std::size_t>(0, TilesPlaces().size()));

TEST(ChaosOfTilesAndAll, MayComeInAnyOrder) {
    std::vector<TPlace> places = ChaosPlaces();
    const std::vector<TPlace> ours = TilesPlaces();
    places.insert(places.end(), ours.begin(), ours.end());
    MeetAtRandom<TTilesScene>(places, AllDeeds());
}

} // namespace
} // namespace lmx
