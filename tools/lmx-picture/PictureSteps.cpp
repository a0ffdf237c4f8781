#include "PictureSteps.h"

#include <lmx/DataSources/lmxClimateMapSteps.h>
#include <lmx/DataSources/lmxTiledRasterMapLayerPersist.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <QFileInfo>

#include <algorithm>
#include <vector>

namespace {

using TTell = std::function<void(const QString& progress)>;

constexpr qsizetype LeastDigits = 3;

class TStepFrames final : public lmx::IMapPictureFrames {
public:
    TStepFrames(lmx::TClimateMapSteps& steps, const TPictureSteps& wanted, const TTell& tell)
        : FSteps(steps),
          FFirst(wanted.First),
          FCount(std::min(wanted.Last, static_cast<int>(steps.GetCount())) - wanted.First + 1),
          FTell(tell) {
        if (!wanted.NamesByDate)
            return;
        FNames = steps.GetDateNames();
        if (FNames.empty())
            throw lmx::Exception(QStringLiteral("the steps cannot be told apart by date; --names number numbers them"));
    }

    int GetFrameCount() const override { return FCount; }
    QString ShowFrame(int index) override {
        FSteps.Show(StepOf(index));
        return FSteps.GetCaption(StepOf(index));
    }
    QString GetFrameName(int index) const override {
        if (!FNames.empty())
            return FNames[StepOf(index)];
        const qsizetype digits =
            std::max(LeastDigits, lmx::IntToStr(static_cast<std::int64_t>(FSteps.GetCount())).size());
        return lmx::IntToStr(FFirst + index).rightJustified(digits, u'0');
    }
    void FrameSaved(int index, const QString& fileName) override {
        FTell(QStringLiteral("%1 of %2: %3, %4")
                  .arg(lmx::IntToStr(index + 1), lmx::IntToStr(FCount), fileName, FSteps.GetCaption(StepOf(index))));
    }

private:
    std::size_t StepOf(int index) const { return static_cast<std::size_t>(FFirst - 1 + index); }

    lmx::TClimateMapSteps& FSteps;
    int FFirst; // counted from 1
    int FCount;
    const TTell& FTell;
    std::vector<QString> FNames; // of all steps by date; empty to number them
};

} // namespace

void RegisterClimateLayers(const std::shared_ptr<lmx::ILayerFactory>& makers,
                           const std::shared_ptr<lmx::IMapDocLayerPersistFactory>& keepers) {
    lmx::RegisterDataSourceLayers(makers, keepers);
}

void SaveSteps(const lmx::TMapPicture& picture, const TPictureArguments& arguments, const TTell& tell) {
    const TPictureSteps& wanted = *arguments.Steps;
    lmx::TClimateMapSteps steps(picture.GetLayerManager(), QFileInfo(arguments.Document).absolutePath());
    const auto count = static_cast<std::int64_t>(steps.GetCount());
    if (count == 0)
        throw lmx::Exception(arguments.Document + QStringLiteral(": no visible layer shows a climate file with times"));
    if (wanted.First > count || (wanted.Last > count && wanted.Last != TPictureSteps::ToTheEnd))
        throw lmx::Exception(arguments.Document + QStringLiteral(": has steps 1 to ") + lmx::IntToStr(count));
    TStepFrames frames(steps, wanted, tell);
    if (wanted.Range)
        steps.SetColorRange(*wanted.Range);
    else if (wanted.FitsRange)
        steps.FitColors();
    picture.SaveFrames(arguments.Picture, frames);
}
