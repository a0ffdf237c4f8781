// Playing the times of a file: 1440 x 720 packed shorts, 30 frames a second, reading ahead. A step, as fast as they go,
// beside GDAL's bare read of the time in its own type and colouring an image that is at hand; then the frames that come
// late by the clock, and what a frame costs on the main thread and on the worker.

#include <benchmarks/ClimateFile.h>
#include <benchmarks/Measuring.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/DataSources/lmxClimateFrames.h>
#include <lmx/DataSources/lmxFramePlayer.h>
#include <lmx/Formats/Idrisi/lmxImageFactory.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>

#include <QApplication>
#include <QTemporaryDir>

#include <iomanip>
#include <iostream>
#include <memory>
#include <vector>

namespace {

using namespace lmx;
using namespace lmx::bench;

constexpr int Columns = Sized(1440);
constexpr int Rows = Sized(720);
constexpr int Times = IsTiny ? 5 : 120;
constexpr double FramesPerSecond = 30;

/// Shows the frames of a player in a layer, as a host does, and takes the times.
class TShowing {
public:
    explicit TShowing(const std::shared_ptr<const TClimateDataset>& dataset)
        : FLayer(TLayerManagerFactory::GetObject()) {
        FLayer.SetColorCalc(TGradientColorCalculatorFactory::GetObject(
            -100, 100, TGradientFactory::GetObject(std::vector<TColorStop>{{0.0, 0xFF30123BU}, {1.0, 0xFF7A0403U}})));
        FFrames = FPlayer.GetOnFrame().Add([this](TFramePlayer* player) { Show(player->GetFrame()); });
        FPlayer.SetReadAhead(8);
        FPlayer.SetSource(std::make_shared<TClimateFrames>(dataset, TClimateSelection{}));
        while (FPlayer.IsWaiting())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    TIdrisiMapLayer& GetLayer() { return FLayer; }
    double GetShowMilliseconds() const { return FShown == 0 ? 0 : FShowMilliseconds / FShown; }

    /// Milliseconds of a step, each as soon as the frame before is shown.
    double PlayAsFastAsItGoes() {
        const TClock::time_point start = TClock::now();
        for (int i = 1; i < Times; ++i) {
            FPlayer.Next();
            while (FPlayer.IsWaiting())
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        return MillisecondsSince(start) / (Times - 1);
    }

    /// Frames that came more than half a frame later after the one before than the clock has it.
    int PlayByTheClock() {
        FPlayer.First();
        while (FPlayer.IsWaiting())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        FPlayer.SetFramesPerSecond(FramesPerSecond);
        FLate = 0;
        FShowMilliseconds = 0;
        FShown = 0;
        FLast = TClock::now();
        FPlayer.Play();
        while (FPlayer.IsPlaying())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return FLate;
    }

private:
    void Show(const std::shared_ptr<const TFrame>& frame) {
        if (!frame)
            return;
        FLate += MillisecondsSince(FLast) > 1.5 * 1000 / FramesPerSecond;
        FLast = TClock::now();
        FLayer.TakeImage(TImageFactory::Copy(*frame->Image));
        FLayer.Render();
        FShowMilliseconds += MillisecondsSince(FLast);
        ++FShown;
    }

    TIdrisiMapLayer FLayer;
    TFramePlayer FPlayer;
    TSubscription FFrames;
    TClock::time_point FLast = TClock::now();
    double FShowMilliseconds = 0;
    int FShown = 0;
    int FLate = 0;
};

/// Milliseconds of GDAL's read of a time, the mean of all.
double ReadByGdal(const QString& path) {
    double milliseconds = 0;
    RunOnReader([&] {
        const TQuietGdal quiet;
        const auto file = OpenByGdal(path);
        const auto array = file->GetRootGroup()->OpenMDArray("tas0");
        std::vector<std::int16_t> cells(std::size_t(Columns) * Rows);
        const std::size_t counts[] = {1, std::size_t(Rows), std::size_t(Columns)};
        milliseconds = MillisecondsOf([&] {
            for (GUInt64 time = 0; time < GUInt64(Times); ++time) {
                const GUInt64 starts[] = {time, 0, 0};
                Check(array->Read(starts, counts, nullptr, nullptr, array->GetDataType(), cells.data()));
            }
        });
    });
    return milliseconds / Times;
}

void Report(const QTemporaryDir& folder, const char* name, bool isNetCdf4, const std::string& blocks) {
    const QString path = folder.filePath(QString::fromLatin1(name) + QStringLiteral(".nc"));
    RunOnReader([&] { MakeFile(path, {1, Columns, Rows, isNetCdf4, true, Times, blocks}); });
    const auto dataset = std::make_shared<const TClimateDataset>(path);
    TShowing showing(dataset);
    TBestTime read;
    TBestTime colour;
    TBestTime step;
    TBestTime worker;
    for (int i = 0; i < (IsTiny ? 1 : 3); ++i) {
        read.Take(ReadByGdal(path));
        colour.Measure([&] { showing.GetLayer().Render(); });
        TShowing fast(dataset);
        step.Take(fast.PlayAsFastAsItGoes());
        TClimateFrames frames(dataset, {});
        worker.Take(MillisecondsOf([&] {
                        for (int time = 0; time < Times; ++time)
                            frames.ReadFrame(std::size_t(time), [] { return false; });
                    }) /
                    Times);
    }
    const int late = showing.PlayByTheClock();
    const double yardstick = read.GetMilliseconds() + colour.GetMilliseconds();
    std::cout << name << ": a step " << step.GetMilliseconds() / yardstick << " of GDAL's read ("
              << read.GetMilliseconds() << " ms) and colouring (" << colour.GetMilliseconds() << " ms); at "
              << FramesPerSecond << " a second " << late << " of " << Times - 1
              << " frames late; a frame takes the worker " << worker.GetMilliseconds() << " ms, the main thread "
              << showing.GetShowMilliseconds() << " ms of " << 1000 / FramesPerSecond << '\n';
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    const QTemporaryDir folder;
    std::cout << std::fixed << std::setprecision(2);
    const std::string slice = ',' + std::to_string(Rows) + ',' + std::to_string(Columns);
    Report(folder, "plain", false, {});
    Report(folder, "deflated", true, '1' + slice);
    const std::string times = IsTiny ? "2" : "12";
    Report(folder, "blocks of 12", true, times + slice);
    Report(folder, "64 blocks of 12", true, times + ',' + std::to_string(Rows / 8) + ',' + std::to_string(Columns / 8));
    return 0;
}
