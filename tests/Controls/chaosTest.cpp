// Whatever the library tells a host of, the host may answer by anything: here every place where the library calls a
// host meets every deed, in a fresh scene, which is used once more afterwards; and several meet at random. The
// environment says more of it: LMX_CHAOS_SEED and LMX_CHAOS_ROUNDS, the seed and the length of the random part;
// LMX_CHAOS_DEEDS, a text that the names of the deeds must have; LMX_CHAOS_TRACE, that each step is written out before
// it is done.

#include <lmx/Widgets/lmxEventGuard.h>
#include <tests/Controls/ChaosTables.h>

#include <gtest/gtest.h>

#include <iostream>
#include <random>

namespace lmx {
namespace {

using namespace tests;

/// Does deeds at a place, one at a time and not inside each other, once the scene is set up.
class TCulprit {
public:
    explicit TCulprit(std::vector<const TDeed*> deeds) : FDeeds(std::move(deeds)) {}

    bool GetIsReached() const { return FIsReached; }
    TAction Action(TChaosScene& scene, const bool& isSetUp) {
        return [this, &scene, &isSetUp] {
            if (isSetUp)
                Act(scene);
        };
    }

private:
    void Act(TChaosScene& scene) {
        FIsReached = true;
        if (FNext == FDeeds.size() || FIsActing || (FDeeds[FNext]->EndsWidget && scene.PlatformCalls > 0))
            return;
        const TDeed& deed = *FDeeds[FNext++];
        if (qEnvironmentVariableIsSet("LMX_CHAOS_TRACE"))
            std::cerr << "  " << deed.Name << '\n';
        FIsActing = true;
        struct TEnd {
            bool& IsActing;
            ~TEnd() { IsActing = false; }
        } const end{FIsActing};
        deed.Do(scene);
    }

    std::vector<const TDeed*> FDeeds;
    std::size_t FNext = 0;
    bool FIsActing = false;
    bool FIsReached = false;
};

/// Arms places and keeps what they need for longer than the scene.
class TChaos {
public:
    void Add(const TPlace& place, std::vector<const TDeed*> deeds) {
        FParts.push_back({&place, std::make_unique<TCulprit>(std::move(deeds))});
    }

    void Run(const std::vector<const TPlace*>& triggered) {
        TChaosScene scene([this](TChaosScene& s) { Arm(s, true); });
        Arm(scene, false);
        FIsSetUp = true;
        for (const TPlace* place : triggered) {
            if (qEnvironmentVariableIsSet("LMX_CHAOS_TRACE"))
                std::cerr << " at " << place->Name << '\n';
            GuardEvent(nullptr, [&] { place->Trigger(scene); });
        }
        scene.Settle();
        GuardEvent(nullptr, [&] { scene.UseOnceMore(); });
    }

    bool IsEveryPlaceReached() const {
        for (const TPart& part : FParts)
            if (!part.Culprit->GetIsReached())
                return false;
        return true;
    }

private:
    struct TPart {
        const TPlace* Place;
        std::unique_ptr<TCulprit> Culprit;
    };

    void Arm(TChaosScene& scene, bool isBeforeViews) {
        for (const TPart& part : FParts)
            if (part.Place->IsBeforeViews == isBeforeViews)
                part.Place->Arm(scene, part.Culprit->Action(scene, FIsSetUp));
    }

    std::vector<TPart> FParts;
    bool FIsSetUp = false;
};

class Chaos : public testing::TestWithParam<std::size_t> {};

TEST_P(Chaos, MayComeOverTheLibraryAtAnyPlace) {
    const TPlace& place = ChaosPlaces()[GetParam()];
    const QString wanted = qEnvironmentVariable("LMX_CHAOS_DEEDS");
    for (const TDeed& deed : ChaosDeeds()) {
        if (!QString::fromLatin1(deed.Name).contains(wanted))
            continue;
        SCOPED_TRACE(testing::Message() << place.Name << ": " << deed.Name);
        if (qEnvironmentVariableIsSet("LMX_CHAOS_TRACE"))
            std::cerr << place.Name << ": " << deed.Name << '\n';
        TChaos chaos;
        chaos.Add(place, {&deed});
        chaos.Run({&place});
        EXPECT_TRUE(chaos.IsEveryPlaceReached());
    }
}

INSTANTIATE_TEST_SUITE_P(Places, Chaos, testing::Range<std::size_t>(0, ChaosPlaces().size()));

unsigned Setting(const char* name, unsigned otherwise) {
    bool isNumber = false;
    const unsigned value = qEnvironmentVariable(name).toUInt(&isNumber);
    return isNumber ? value : otherwise;
}

TEST(ChaosOfSeveral, MayComeInAnyOrder) {
    const unsigned first = Setting("LMX_CHAOS_SEED", 1);
    const unsigned rounds = Setting("LMX_CHAOS_ROUNDS", 100);
    for (unsigned seed = first; seed < first + rounds && !HasFailure(); ++seed) {
        SCOPED_TRACE(testing::Message() << "LMX_CHAOS_SEED=" << seed << " LMX_CHAOS_ROUNDS=1");
        if (qEnvironmentVariableIsSet("LMX_CHAOS_TRACE"))
            std::cerr << "seed " << seed << '\n';
        std::minstd_rand random(seed);
        const auto pick = [&random](const auto& table) { return &table[random() % table.size()]; };
        TChaos chaos;
        std::vector<const TPlace*> triggered;
        for (int i = 0; i < 4; ++i) {
            const TPlace* place = pick(ChaosPlaces());
            const std::vector<const TDeed*> deeds = {pick(ChaosDeeds()), pick(ChaosDeeds()), pick(ChaosDeeds())};
            chaos.Add(*place, deeds);
            triggered.push_back(place);
            triggered.push_back(pick(ChaosPlaces()));
            if (qEnvironmentVariableIsSet("LMX_CHAOS_TRACE"))
                std::cerr << place->Name << ": " << deeds[0]->Name << ", " << deeds[1]->Name << ", " << deeds[2]->Name
                          << "; then " << triggered.back()->Name << '\n';
        }
        chaos.Run(triggered);
    }
}

} // namespace
} // namespace lmx
