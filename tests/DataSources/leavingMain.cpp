#include <lmx/DataSources/lmxClimateFrames.h>
#include <lmx/DataSources/lmxFramePlayer.h>
#include <lmx/DataSources/lmxGeoTiffTiles.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <QCoreApplication>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

// A host that leaves main in one of the ways that hosts have, with a climate file open:
// lmxLeavingMain WAY FILE

namespace {

using namespace lmx;

std::shared_ptr<TClimateDataset> Open(const char* fileName) {
    return std::make_shared<TClimateDataset>(QString::fromUtf8(fileName));
}

/// Opened before main, and so destroyed after everything that was made in it.
std::shared_ptr<TClimateDataset> OpenBeforeMain() {
    const char* const fileName = std::getenv("LMX_OPEN_BEFORE_MAIN");
    return fileName ? Open(fileName) : nullptr;
}

/// Reads a corner of the raster.
void ReadTile(const TGeoTiffTiles& tiles) {
    std::vector<float> cells(16);
    tiles.ReadCells(0, {0, 0, 4, 4}, cells, [] { return false; });
}

/// Reads when the last objects go.
struct TLateReader {
    std::shared_ptr<TClimateDataset> Dataset;
    std::shared_ptr<TGeoTiffTiles> Tiles;

    ~TLateReader() {
        if (Tiles)
            ReadLateTiles();
        if (!Dataset)
            return;
        try {
            Dataset->Read({});
            std::puts("read");
        } catch (const EClimateFile& failure) {
            std::puts(failure.Problem().toUtf8().constData());
        }
        std::printf("%d variables\n", static_cast<int>(Dataset->GetVariables().size()));
        try {
            TClimateDataset again(Dataset->GetFileName());
            std::puts("opened");
        } catch (const EClimateFile& failure) {
            std::puts(failure.Problem().toUtf8().constData());
        }
    }

    void ReadLateTiles() const {
        try {
            ReadTile(*Tiles);
            std::puts("read");
        } catch (const EClimateFile& failure) {
            std::puts(failure.Problem().toUtf8().constData());
        }
        std::printf("%d columns\n", Tiles->GetLevels().front().Width);
        try {
            const TGeoTiffTiles again(Tiles->GetFileName());
            std::puts("opened");
        } catch (const EClimateFile& failure) {
            std::puts(failure.Problem().toUtf8().constData());
        }
    }
};

TLateReader LateReader;
std::shared_ptr<TClimateDataset> BeforeMain = OpenBeforeMain();
std::shared_ptr<TClimateDataset> StaticDataset;
std::shared_ptr<TGeoTiffTiles> StaticTiles;
TGeoTiffTiles* LeakedTiles = nullptr;
std::unique_ptr<TFramePlayer> StaticPlayer;
TFramePlayer* LeakedPlayer = nullptr;

std::unique_ptr<TFramePlayer> Playing(const std::shared_ptr<TClimateDataset>& dataset) {
    auto player = std::make_unique<TFramePlayer>();
    player->SetLoop(true);
    player->SetReadAhead(TFramePlayer::MaxReadAhead);
    player->SetFramesPerSecond(60);
    player->SetSource(std::make_shared<TClimateFrames>(dataset, TClimateSelection{}));
    player->Play();
    return player;
}

/// Reads on and on, until it is refused.
void ReadWithoutEnd(const std::shared_ptr<TClimateDataset>& dataset) {
    try {
        for (;;)
            dataset->Read({});
    } catch (const EClimateFile&) {
    }
}

void ReadTilesWithoutEnd(const std::shared_ptr<TGeoTiffTiles>& tiles) {
    try {
        for (;;)
            ReadTile(*tiles);
    } catch (const EClimateFile&) {
    }
}

/// On a thread of its own, so that the main thread opens nothing.
std::shared_ptr<TGeoTiffTiles> TilesOfAnotherThread(const QString& fileName) {
    std::shared_ptr<TGeoTiffTiles> tiles;
    std::thread([&] { tiles = std::make_shared<TGeoTiffTiles>(fileName); }).join();
    return tiles;
}

bool LeaveTiles(const char* way, const char* fileName) {
    const auto is = [way](const char* name) { return std::strcmp(way, name) == 0; };
    const QString name = QString::fromUtf8(fileName);
    if (is("staticTiles")) {
        StaticTiles = std::make_shared<TGeoTiffTiles>(name);
        ReadTile(*StaticTiles);
    } else if (is("leakedTiles")) {
        LeakedTiles = new TGeoTiffTiles(name);
        ReadTile(*LeakedTiles);
    } else if (is("readingTiles") || is("readingTilesAlone")) {
        StaticTiles = is("readingTiles") ? std::make_shared<TGeoTiffTiles>(name) : TilesOfAnotherThread(name);
        for (int i = 0; i < 3; ++i)
            std::thread(ReadTilesWithoutEnd, StaticTiles).detach();
    } else if (is("lateTiles") || is("lateTilesAlone")) {
        LateReader.Tiles = is("lateTiles") ? std::make_shared<TGeoTiffTiles>(name) : TilesOfAnotherThread(name);
    } else {
        return false;
    }
    return true;
}

bool Leave(const char* way, const char* fileName) {
    const auto is = [way](const char* name) { return std::strcmp(way, name) == 0; };
    if (is("inOrder")) {
        const auto player = Playing(Open(fileName));
    } else if (is("staticDataset")) {
        StaticDataset = Open(fileName);
    } else if (is("staticPlayer")) {
        StaticPlayer = Playing(Open(fileName));
    } else if (is("leakedPlayer")) {
        LeakedPlayer = Playing(Open(fileName)).release();
    } else if (is("datasetFirst")) {
        StaticDataset = Open(fileName);
        StaticPlayer = Playing(StaticDataset);
        StaticDataset.reset();
    } else if (is("readingThreads")) {
        StaticDataset = Open(fileName);
        for (int i = 0; i < 3; ++i)
            std::thread(ReadWithoutEnd, StaticDataset).detach();
    } else if (is("lateReader")) {
        LateReader.Dataset = Open(fileName);
    } else if (is("exit")) {
        StaticPlayer = Playing(Open(fileName));
        const TSubscription frames = StaticPlayer->GetOnFrame().Add([](TFramePlayer* player) {
            if (player->GetFrame())
                std::exit(0);
        });
        QCoreApplication::exec();
    } else if (!is("nothing")) {
        return LeaveTiles(way, fileName);
    }
    return true;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    return argc == 3 && Leave(argv[1], argv[2]) ? 0 : 2;
}
