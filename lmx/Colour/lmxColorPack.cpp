#include <lmx/Colour/lmxColorPack.h>

#include <lmx/Colour/Private/lmxColorPackTable.h>
#include <lmx/Colour/lmxColorPalette.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <QDir>
#include <QFile>

#include <span>

namespace lmx {

namespace {

/// Adds colours that run evenly from one location to another.
void AddRun(std::vector<TColorStop>& stops, std::span<const TColor32> colors, double from, double to) {
    const double last = static_cast<double>(colors.size() - 1);
    for (std::size_t i = 0; i < colors.size(); ++i)
        stops.push_back({from + (to - from) * (static_cast<double>(i) / last), colors[i]});
}

/// Adds colours that stand side by side from 0 to 1.
void AddBands(std::vector<TColorStop>& stops, std::span<const TColor32> colors) {
    const double count = static_cast<double>(colors.size());
    for (std::size_t i = 0; i < colors.size(); ++i) {
        stops.push_back({static_cast<double>(i) / count, colors[i]});
        stops.push_back({static_cast<double>(i + 1) / count, colors[i]});
    }
}

} // namespace

QString TColorScale::GetFileTitle() const {
    return Name.toLower().replace(u' ', u'_');
}

std::shared_ptr<IGradient> TColorScale::CreateGradient() const {
    std::vector<TColorStop> stops;
    const std::span<const TColor32> colors = Colors;
    switch (Kind) {
    case TColorScaleKind::cskCategorical:
        AddBands(stops, colors);
        break;
    case TColorScaleKind::cskRelief:
        AddRun(stops, colors.first(colors.size() / 2), 0, 0.5);
        AddRun(stops, colors.subspan(colors.size() / 2), 0.5, 1);
        break;
    case TColorScaleKind::cskSequential:
    case TColorScaleKind::cskDiverging:
    case TColorScaleKind::cskCyclic:
        AddRun(stops, colors, 0, 1);
        break;
    }
    return TGradientFactory::GetObject(std::span<const TColorStop>(stops));
}

const std::vector<TColorScale>& TColorPack::GetScales() {
    static const std::vector<TColorScale> scales = ColorPackTable();
    return scales;
}

const TColorScale* TColorPack::Find(const QString& name) {
    for (const TColorScale& scale : GetScales())
        if (scale.Name == name)
            return &scale;
    return nullptr;
}

QString TColorPack::FileNameIn(const QString& folder, const TColorScale& scale) {
    return folder + u'/' + scale.Group.toLower() + u'/' + scale.GetFileTitle() + QStringLiteral(".pal");
}

void TColorPack::SavePalettes(const QString& folder) {
    for (const TColorScale& scale : GetScales()) {
        const QString fileName = FileNameIn(folder, scale);
        if (QFile::exists(fileName))
            continue;
        const QString group = folder + u'/' + scale.Group.toLower();
        if (!QDir().mkpath(group))
            throw EFileException(group, QStringLiteral("the folder cannot be made"));
        TColorPalette palette;
        palette.assign(scale.Colors.begin(), scale.Colors.end());
        palette.Save(fileName);
    }
}

} // namespace lmx
