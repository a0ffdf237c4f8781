#include <tests/DataSources/TilesChaos.h>

#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/DataSources/lmxClimateFrames.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Widgets/lmxEventGuard.h>
#include <tests/DataSources/ClimateSamples.h>
#include <tests/Support/Threads.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QSlider>
#include <QSpinBox>
#include <QThread>

#include <initializer_list>
#include <utility>

namespace lmx::tests {

namespace {

std::shared_ptr<TTestFrames> ChaosFrames(std::size_t damaged = 99) {
    auto frames = std::make_shared<TTestFrames>(std::vector<TClimateDate>{{2001, 1, 16}, {2001, 2, 16}, {2002, 1, 16}});
    frames->Fails = damaged;
    return frames;
}

/// Frames of a host, all of whose operations on the main thread call "Frames.GetCount" and so on.
class THookedFrames final : public IFrameSource {
public:
    explicit THookedFrames(TSharedHooks hooks) : FHooks(std::move(hooks)) {}
    ~THookedFrames() override {
        GuardEvent(nullptr, [this] { Call("gone"); }); // destructors do not raise
    }

    std::size_t GetCount() const override {
        Call("GetCount");
        return FFrames->GetCount();
    }
    std::optional<TClimateDate> GetDate(std::size_t index) const override {
        Call("GetDate");
        return FFrames->GetDate(index);
    }
    TClimateCalendar GetCalendar() const override {
        Call("GetCalendar");
        return FFrames->GetCalendar();
    }
    QString GetCaption(std::size_t index) const override {
        Call("GetCaption");
        return FFrames->GetCaption(index);
    }
    std::shared_ptr<TRealImage> ReadFrame(std::size_t index, const TFrameWithdrawn& isWithdrawn) override {
        return FFrames->ReadFrame(index, isWithdrawn);
    }

private:
    // The last share may go on the worker.
    void Call(const char* operation) const {
        if (QThread::currentThread() == QCoreApplication::instance()->thread())
            FHooks->Call(QStringLiteral("Frames.") + QString::fromLatin1(operation));
    }

    TSharedHooks FHooks;
    std::shared_ptr<TTestFrames> FFrames = ChaosFrames();
};

std::shared_ptr<IBaseColorCalculator> ChaosGradient() {
    return TGradientColorCalculatorFactory::GetObject(0, 99,
                                                      TGradientFactory::GetObject({{0, 0xFF0000FF}, {1, 0xFFFF0000}}));
}

using TTilesUse = std::function<void(TTilesScene&)>;

// A player whose first frame cannot be read goes on wanting it.
bool IsStuck(const TFramePlayer& player) {
    const auto* const frames = dynamic_cast<const TTestFrames*>(player.GetSource().get());
    return frames && player.GetWanted() && frames->Fails == *player.GetWanted();
}

TTilesScene& TilesOf(TChaosScene& s) {
    return static_cast<TTilesScene&>(s);
}

TUse Using(TTilesUse use) {
    return [use = std::move(use)](TChaosScene& s) { use(TilesOf(s)); };
}

TUse Tiles(std::function<void(TTiledRasterMapLayer&)> use) {
    return [use = std::move(use)](TChaosScene& s) {
        if (TilesOf(s).Tiled)
            use(*TilesOf(s).Tiled.Get());
    };
}

TUse Telling(std::function<void(TFramePlayer&)> use) {
    return [use = std::move(use)](TChaosScene& s) {
        if (TilesOf(s).Player)
            use(*TilesOf(s).Player);
    };
}

// Not for handlers: the player may have to return from them before it shows a frame.
TUse Player(std::function<void(TFramePlayer&)> use) {
    return [tell = Telling(std::move(use))](TChaosScene& s) {
        tell(s);
        TilesOf(s).Await();
    };
}

/// What a user does with a part of the strip; Qt stands in the middle of it.
template<class Part>
TUse OnStrip(const char* name, std::function<void(Part&)> use, bool awaits = true) {
    return [name, use = std::move(use), awaits](TChaosScene& s) {
        auto* const part = TilesOf(s).Strip ? TilesOf(s).Strip->findChild<Part*>(QString::fromLatin1(name)) : nullptr;
        if (!part)
            return;
        ++s.PlatformCalls;
        use(*part);
        --s.PlatformCalls;
        if (awaits)
            TilesOf(s).Await();
    };
}

TUse Clicking(const char* name, bool awaits = true) {
    return OnStrip<QAbstractButton>(
        name, [](QAbstractButton& button) { button.click(); }, awaits);
}

TUse Pressing(Qt::Key key) {
    return Using([key](TTilesScene& s) {
        if (!s.Strip)
            return;
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QCoreApplication::sendEvent(s.Strip.get(), &event);
        s.Await();
    });
}

TArm Hook(const char* name) {
    return [name](TChaosScene& s, TAction action) { s.Hooks->Set(QString::fromLatin1(name), std::move(action)); };
}

template<class List>
TArm OnTiles(List& (TBaseMapLayer::*event)()) {
    return [event](TChaosScene& s, const TAction& action) {
        if (TBaseMapLayer* const layer = TilesOf(s).Tiled.Get())
            s.Subscriptions.push_back((layer->*event)().Add([action](auto&&...) { action(); }));
    };
}

template<class List>
TArm OnPlayer(List& (TFramePlayer::*event)()) {
    return [event](TChaosScene& s, const TAction& action) {
        if (TilesOf(s).Player)
            s.Subscriptions.push_back((TilesOf(s).Player.get()->*event)().Add([action](auto&&...) { action(); }));
    };
}

// Whatever is told on the way from nothing to the sharp picture.
void ShowTiles(TTilesScene& s) {
    if (s.Tiled)
        s.Tiled->Invalidate(true);
    for (int round = 0; round < 2; ++round) {
        if (s.View)
            s.View->RepaintMap();
        EXPECT_TRUE(PumpUntilRendersEnd());
    }
}

void ShowDamagedTiles(TTilesScene& s) {
    if (s.Tiled)
        s.Tiled->SetSource(DamagedTiles());
    ShowTiles(s);
}

void PlayToTheEnd(TTilesScene& s) {
    if (s.Player)
        s.Player->Play();
    for (int step = 0; step < 4; ++step) {
        s.Await();
        if (s.Player)
            s.Player->Advance();
    }
}

void StopPlaying(TTilesScene& s) {
    if (s.Player)
        s.Player->Play();
    if (s.Player)
        s.Player->Stop();
}

void MeetDamagedFrame(TTilesScene& s) {
    if (s.Player)
        s.Player->SetSource(ChaosFrames(1));
    s.Await();
    if (s.Player && s.Player->GetCount() > 1)
        s.Player->GoTo(1);
    s.Await();
}

// The player has the only share of the frames.
void ShowHookedFrames(TTilesScene& s) {
    if (s.Player)
        s.Player->SetSource(std::make_shared<THookedFrames>(s.Hooks));
}

/// What a player does with dates, whose frames are a host's.
TUse ByMonths(std::function<void(TFramePlayer&)> use) {
    return Using([use = std::move(use)](TTilesScene& s) {
        ShowHookedFrames(s);
        if (s.Player)
            s.Player->SetStep(TFrameStep::fsMonth);
        if (s.Player)
            use(*s.Player);
        s.Await();
    });
}

void ForgetHookedFrames(TTilesScene& s) {
    ShowHookedFrames(s);
    s.Await();
    if (s.Player)
        s.Player->SetSource(nullptr);
}

// The player has the only share of the file.
void ShowFile(TTilesScene& s) {
    if (!s.Player)
        return;
    auto dataset = std::make_shared<const TClimateDataset>(ClimateSample(QStringLiteral("time_noleap.nc")));
    auto frames = std::make_shared<TClimateFrames>(dataset, TClimateSelection());
    dataset.reset();
    s.Player->SetSource(std::move(frames));
}

void DuplicateTiles(TTilesScene& s) {
    if (s.Tiled && s.Manager)
        s.Tiled->Duplicate(s.Manager);
}

} // namespace

std::shared_ptr<TNumberedTiles> ChaosTiles() {
    return std::make_shared<TNumberedTiles>(std::vector<TTileLevel>{{800, 400}, {100, 50}},
                                            TMapArea(-180, 90, 180, -90));
}

std::shared_ptr<TNumberedTiles> DamagedTiles() {
    auto tiles = std::make_shared<TNumberedTiles>(std::vector<TTileLevel>{{100, 50}}, TMapArea(-180, 90, 180, -90));
    tiles->DamagedLevel = 0;
    return tiles;
}

TTilesScene::TTilesScene(const std::function<void(TChaosScene&)>& beforeViews)
    : TChaosScene(beforeViews),
      Player(std::make_unique<TFramePlayer>()),
      Strip(std::make_unique<TTimeStrip>()) {
    Tiled = Manager->GetLayers().Add(std::make_unique<TTiledRasterMapLayer>(Manager, Cache));
    Tiled->SetColorCalc(Calculator);
    Tiled->SetSource(ChaosTiles());
    Tiled->SetIsReadyToDraw(true);
    Tiled->SetOnReadFailed([hooks = Hooks](TTiledRasterMapLayer*, const QString&) {
        const TSharedHooks kept = hooks; // what is called may free this closure
        kept->Call(QStringLiteral("Tiled.OnReadFailed"));
    });
    Player->SetSource(ChaosFrames());
    Strip->SetPlayer(Player.get());
    Strip->show();
    Await();
}

TTilesScene::~TTilesScene() {
    Hooks->Clear();
    Subscriptions.clear();
}

void TTilesScene::Await() {
    EXPECT_TRUE(PumpUntil([this] { return !Player || !Player->IsWaiting() || IsStuck(*Player); }));
    EXPECT_TRUE(PumpUntilRendersEnd());
}

void TTilesScene::UseOnceMore() {
    TChaosScene::UseOnceMore();
    ShowTiles(*this);
    if (Tiled)
        Tiled->SetOpacity(100);
    for (const char* const name : {"first", "next", "play", "previous", "last", "loop"})
        Clicking(name, false)(*this);
    Pressing(Qt::Key_Left)(*this);
    if (Player)
        Player->Stop();
    Await();
}

std::vector<TPlace> TilesPlaces() {
    using L = TBaseMapLayer;
    using P = TFramePlayer;
    const TUse showTiles = Using(ShowTiles);
    const TUse otherTiles = Tiles([](auto& l) { l.SetSource(ChaosTiles()); });
    const TUse gradient = Tiles([](auto& l) { l.SetColorCalc(ChaosGradient()); });
    const TUse next = Player([](auto& p) { p.Next(); });
    const TUse frames = Player([](auto& p) { p.SetSource(ChaosFrames()); });
    const TUse noFrames = Player([](auto& p) { p.SetSource(nullptr); });
    return {
        {"Tiles.OnInvalidated by pictures", OnTiles(&L::GetOnInvalidated), showTiles},
        {"Tiles.OnReadyToDrawChanged by pictures", OnTiles(&L::GetOnReadyToDrawChanged), showTiles},
        {"Tiles.OnReadFailed", Hook("Tiled.OnReadFailed"), Using(ShowDamagedTiles)},
        {"Tiles.OnLayerAreaChanged by a source", OnTiles(&L::GetOnLayerAreaChanged), Tiles([](auto& l) {
             l.SetSource(std::make_shared<TNumberedTiles>(std::vector<TTileLevel>{{4, 2}}, TMapArea(0, 2, 4, 0)));
         })},
        {"Tiles.OnInvalidated by a source", OnTiles(&L::GetOnInvalidated), otherTiles},
        {"Tiles.OnReadyToDrawChanged by a source", OnTiles(&L::GetOnReadyToDrawChanged), otherTiles},
        {"Tiles.OnLegendComponentChanged by a source", OnTiles(&L::GetOnLegendComponentChanged),
         [=](TChaosScene& s) {
             gradient(s);
             otherTiles(s);
         }},
        {"Tiles.OnLegendComponentChanged by colours", OnTiles(&L::GetOnLegendComponentChanged), gradient},
        {"Tiles.OnInvalidated by colours", OnTiles(&L::GetOnInvalidated), gradient},
        {"Tiles.OnInvalidated by opacity", OnTiles(&L::GetOnInvalidated), Tiles([](auto& l) { l.SetOpacity(7); })},
        {"Calculator.Clone for tiles", Hook("Calculator.Clone"), showTiles},
        {"Calculator.Clone for a duplicate of tiles", Hook("Calculator.Clone"), Using(DuplicateTiles)},
        {"Layer.Paint among tiles", Hook("Layer.Paint"), PaintPicture},

        {"Player.OnFrame", OnPlayer(&P::GetOnFrame), next},
        {"Player.OnFrame by a source", OnPlayer(&P::GetOnFrame), frames},
        {"Player.OnFrame by no source", OnPlayer(&P::GetOnFrame), noFrames},
        {"Player.OnFrame by a range", OnPlayer(&P::GetOnFrame), Player([](auto& p) {
             p.SetFixedRange({1, 2});
         })},
        {"Player.OnFrame by a kind of range", OnPlayer(&P::GetOnFrame),
         Player([](auto& p) { p.SetRangeKind(TFrameRange::frEach); })},
        {"Player.OnFrame by playing", OnPlayer(&P::GetOnFrame), Using(PlayToTheEnd)},
        {"Player.OnFrame of a file", OnPlayer(&P::GetOnFrame), Using([](TTilesScene& s) {
             ShowFile(s);
             s.Await();
         })},
        {"Player.OnChanged", OnPlayer(&P::GetOnChanged), next},
        {"Player.OnChanged by a source", OnPlayer(&P::GetOnChanged), frames},
        {"Player.OnChanged by no source", OnPlayer(&P::GetOnChanged), noFrames},
        {"Player.OnChanged by playing", OnPlayer(&P::GetOnChanged), Using(PlayToTheEnd)},
        {"Player.OnChanged by stopping", OnPlayer(&P::GetOnChanged), Using(StopPlaying)},
        {"Player.OnChanged by a frame", OnPlayer(&P::GetOnChanged), Player([](auto& p) { p.GoTo(2); })},
        {"Player.OnChanged by its step", OnPlayer(&P::GetOnChanged),
         Player([](auto& p) { p.SetStep(TFrameStep::fsYear); })},
        {"Player.OnChanged by its loop", OnPlayer(&P::GetOnChanged), Player([](auto& p) { p.SetLoop(true); })},
        {"Player.OnChanged by its pace", OnPlayer(&P::GetOnChanged), Player([](auto& p) { p.SetFramesPerSecond(9); })},
        {"Player.OnChanged by a failure", OnPlayer(&P::GetOnChanged), Using(MeetDamagedFrame)},
        {"Player.OnFailure", OnPlayer(&P::GetOnFailure), Using(MeetDamagedFrame)},

        {"Frames.GetCount", Hook("Frames.GetCount"), Using(ShowHookedFrames)},
        {"Frames.GetDate", Hook("Frames.GetDate"), ByMonths([](auto& p) { p.Next(); })},
        {"Frames.GetDate by playing", Hook("Frames.GetDate"), ByMonths([](auto& p) { p.Play(); })},
        {"Frames.GetCalendar", Hook("Frames.GetCalendar"), ByMonths([](auto& p) { p.Last(); })},
        {"Frames.GetCaption", Hook("Frames.GetCaption"), ByMonths([](auto& p) { p.GetCaption(); })},
        {"Frames.GetCaption by a strip", Hook("Frames.GetCaption"), Using([](TTilesScene& s) {
             ShowHookedFrames(s);
             if (s.Strip)
                 s.Strip->SetPlayer(s.Player.get());
         })},
        {"Frames: gone", Hook("Frames.gone"), Using(ForgetHookedFrames)},
        {"Frames: gone with the player", Hook("Frames.gone"), Using([](TTilesScene& s) {
             ShowHookedFrames(s);
             s.Await();
             s.Player.reset();
         })},

        {"Strip: first", OnPlayer(&P::GetOnChanged), Clicking("first")},
        {"Strip: previous", OnPlayer(&P::GetOnChanged),
         [](TChaosScene& s) {
             Clicking("last")(s);
             Clicking("previous")(s);
         }},
        {"Strip: play", OnPlayer(&P::GetOnChanged), Clicking("play")},
        {"Strip: next", OnPlayer(&P::GetOnFrame), Clicking("next")},
        {"Strip: last", OnPlayer(&P::GetOnFrame), Clicking("last")},
        {"Strip: repeat", OnPlayer(&P::GetOnChanged), Clicking("loop")},
        {"Strip: slider", OnPlayer(&P::GetOnChanged),
         OnStrip<QSlider>("slider", [](QSlider& slider) { slider.setValue(2); })},
        {"Strip: step", OnPlayer(&P::GetOnChanged),
         OnStrip<QComboBox>("step", [](QComboBox& step) { step.setCurrentIndex(1); })},
        {"Strip: pace", OnPlayer(&P::GetOnChanged),
         OnStrip<QSpinBox>("pace", [](QSpinBox& pace) { pace.setValue(9); })},
        {"Strip: a key", OnPlayer(&P::GetOnChanged), Pressing(Qt::Key_Right)},
        {"Strip: the space bar", OnPlayer(&P::GetOnChanged), Pressing(Qt::Key_Space)},
    };
}

std::vector<TDeed> TilesDeeds() {
    return {
        {"remove the tiles", Using([](TTilesScene& s) {
             if (s.Manager && s.Tiled)
                 s.Manager->GetLayers().Remove(s.Tiled.Get());
         })},
        {"no tiles", Tiles([](auto& l) { l.SetSource(nullptr); })},
        {"other tiles", Tiles([](auto& l) { l.SetSource(ChaosTiles()); })},
        {"damaged tiles", Tiles([](auto& l) { l.SetSource(DamagedTiles()); })},
        {"no colours of the tiles", Tiles([](auto& l) { l.SetColorCalc(nullptr); })},
        {"other colours of the tiles", Tiles([](auto& l) { l.SetColorCalc(ChaosGradient()); })},
        {"opacity of the tiles", Tiles([](auto& l) { l.SetOpacity(33); })},
        {"no picture of the tiles", Tiles([](auto& l) { l.Invalidate(true); })},
        {"nobody hears of damaged tiles", Tiles([](auto& l) { l.SetOnReadFailed({}); })},
        {"a duplicate of the tiles", Using(DuplicateTiles)},
        {"no room for tiles", Using([](TTilesScene& s) { s.Cache->SetCapacity(0); })},
        {"show the tiles", Using(ShowTiles)},

        {"delete the player", Using([](TTilesScene& s) { s.Player.reset(); })},
        {"play", Telling([](auto& p) { p.Play(); })},
        {"stop playing", Using([](TTilesScene& s) {
             if (s.Player)
                 s.Player->Stop();
         })},
        {"the last frame", Telling([](auto& p) { p.Last(); })},
        {"other frames", Telling([](auto& p) { p.SetSource(ChaosFrames()); })},
        {"damaged frames", Telling([](auto& p) { p.SetSource(ChaosFrames(0)); })},
        {"frames of a file that nobody else has", Using(ShowFile)},
        {"no frames", Telling([](auto& p) { p.SetSource(nullptr); })},
        {"no reading ahead", Telling([](auto& p) { p.SetReadAhead(0); })},
        {"a range of each frame", Telling([](auto& p) { p.SetRangeKind(TFrameRange::frEach); })},
        {"a strip of no player", Using([](TTilesScene& s) {
             if (s.Strip)
                 s.Strip->SetPlayer(nullptr);
         })},
        {"delete the strip", Using([](TTilesScene& s) { s.Strip.reset(); }), true},
        {"repaint the strip", Using([](TTilesScene& s) {
             if (s.Strip)
                 s.Strip->grab();
         })},
    };
}

} // namespace lmx::tests
