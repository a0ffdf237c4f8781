#pragma once

#include <lmx/Widgets/lmxEventGuard.h>
#include <tests/Controls/ChaosTables.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <memory>
#include <numeric>
#include <random>
#include <string_view>
#include <utility>
#include <vector>

// How deeds are done at places: in a fresh scene, which is used once more afterwards.

namespace lmx::tests {

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
    // The view in the map control cannot count its calls, but Qt says that it is being painted.
    static bool IsPlatformAtWork(const TChaosScene& scene) {
        const QWidget* const inner = scene.Map ? scene.Map->GetMapView() : nullptr;
        return scene.PlatformCalls > 0 || (inner && inner->testAttribute(Qt::WA_WState_InPaintEvent));
    }
    void Act(TChaosScene& scene) {
        FIsReached = true;
        if (FNext == FDeeds.size() || FIsActing || (FDeeds[FNext]->EndsWidget && IsPlatformAtWork(scene)))
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
template<class Scene = TChaosScene>
class TChaos {
public:
    void Add(const TPlace& place, std::vector<const TDeed*> deeds) {
        FParts.push_back({&place, std::make_unique<TCulprit>(std::move(deeds))});
    }

    void Run(const std::vector<const TPlace*>& triggered) {
        Scene scene([this](TChaosScene& s) { Arm(s, true); });
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

inline unsigned ChaosSetting(const char* name, unsigned otherwise) {
    bool isNumber = false;
    const unsigned value = qEnvironmentVariable(name).toUInt(&isNumber);
    return isNumber ? value : otherwise;
}

/// Whether a deed is done at a place when only each LMX_CHAOS_SHARE-th one is. The places' names shift the shares, so
/// that every deed is done somewhere.
inline bool IsInShare(const TPlace& place, std::size_t deed) {
    const std::size_t share = std::max(ChaosSetting("LMX_CHAOS_SHARE", 1), 1U);
    const std::string_view name(place.Name);
    return std::accumulate(name.begin(), name.end(), deed) % share == 0;
}

/// Every deed at one place. The environment variable LMX_CHAOS_DEEDS holds a text that the names of the deeds must
/// have; LMX_CHAOS_SHARE says that each deed is done at one of so many places only.
template<class Scene = TChaosScene>
void MeetEveryDeed(const TPlace& place, const std::vector<TDeed>& deeds) {
    const QString wanted = qEnvironmentVariable("LMX_CHAOS_DEEDS");
    for (std::size_t i = 0; i < deeds.size(); ++i) {
        const TDeed& deed = deeds[i];
        if (!QString::fromLatin1(deed.Name).contains(wanted) || !IsInShare(place, i))
            continue;
        SCOPED_TRACE(testing::Message() << place.Name << ": " << deed.Name);
        if (qEnvironmentVariableIsSet("LMX_CHAOS_TRACE"))
            std::cerr << place.Name << ": " << deed.Name << '\n';
        TChaos<Scene> chaos;
        chaos.Add(place, {&deed});
        chaos.Run({&place});
        EXPECT_TRUE(chaos.IsEveryPlaceReached());
    }
}

/// Several deeds at several places, by random numbers: LMX_CHAOS_SEED is the first seed and LMX_CHAOS_ROUNDS how many
/// of them there are.
template<class Scene = TChaosScene>
void MeetAtRandom(const std::vector<TPlace>& places, const std::vector<TDeed>& deeds) {
    const unsigned first = ChaosSetting("LMX_CHAOS_SEED", 1);
    const unsigned rounds = ChaosSetting("LMX_CHAOS_ROUNDS", 100);
    for (unsigned seed = first; seed < first + rounds && !testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE(testing::Message() << "LMX_CHAOS_SEED=" << seed << " LMX_CHAOS_ROUNDS=1");
        if (qEnvironmentVariableIsSet("LMX_CHAOS_TRACE"))
            std::cerr << "seed " << seed << '\n';
        std::minstd_rand random(seed);
        const auto pick = [&random](const auto& table) { return &table[random() % table.size()]; };
        TChaos<Scene> chaos;
        std::vector<const TPlace*> triggered;
        for (int i = 0; i < 4; ++i) {
            const TPlace* place = pick(places);
            const std::vector<const TDeed*> done = {pick(deeds), pick(deeds), pick(deeds)};
            chaos.Add(*place, done);
            triggered.push_back(place);
            triggered.push_back(pick(places));
            if (qEnvironmentVariableIsSet("LMX_CHAOS_TRACE"))
                std::cerr << place->Name << ": " << done[0]->Name << ", " << done[1]->Name << ", " << done[2]->Name
                          << "; then " << triggered.back()->Name << '\n';
        }
        chaos.Run(triggered);
    }
}

} // namespace lmx::tests
