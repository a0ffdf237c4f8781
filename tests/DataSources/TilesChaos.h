#pragma once

#include <lmx/DataSources/lmxFramePlayer.h>
#include <lmx/DataSources/lmxTiledRasterMapLayer.h>
#include <lmx/DataSources/lmxTimeStrip.h>
#include <tests/Controls/ChaosTables.h>
#include <tests/DataSources/NumberedTiles.h>
#include <tests/DataSources/TestFrames.h>

#include <memory>
#include <vector>

// The host with everything on its screen has tiles, a player and a strip for it as well.

namespace lmx::tests {

struct TTilesScene : TChaosScene {
    explicit TTilesScene(const std::function<void(TChaosScene&)>& beforeViews = {});
    ~TTilesScene();

    /// Lets renders and reads of frames end, with all that they tell.
    void Await();
    void UseOnceMore();

    std::shared_ptr<TTileCache> Cache = std::make_shared<TTileCache>();
    TBorrowed<TTiledRasterMapLayer> Tiled;
    std::unique_ptr<TFramePlayer> Player;
    std::unique_ptr<TTimeStrip> Strip;
};

std::shared_ptr<TNumberedTiles> ChaosTiles();
std::shared_ptr<TNumberedTiles> DamagedTiles();

std::vector<TPlace> TilesPlaces();
std::vector<TDeed> TilesDeeds();

} // namespace lmx::tests
