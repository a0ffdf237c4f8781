#pragma once

#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Runtime/lmxExport.h>

#include <QString>

#include <memory>
#include <vector>

namespace lmx {

class IGradient;

/// What a scale is for.
enum class TColorScaleKind {
    cskSequential,  ///< from little to much: its lightness goes one way
    cskDiverging,   ///< on both sides of its middle, which means something: equally light at equal distances from it
    cskCyclic,      ///< for what comes back to where it began, such as a direction: both ends have the same colour
    cskCategorical, ///< for what has no order: colours that differ from each other
    cskRelief,      ///< two scales that meet in the middle, at the coast: each grows lighter upwards
};

/// Opaque colours in an order, which readers who see fewer colours can read.
struct LMX_EXPORT TColorScale {
    QString Name;   ///< what a user reads: "Sea ice"
    QString Group;  ///< what it is listed with: "Sequential", "Climate"
    QString Source; ///< who has published it
    QString Licence;
    TColorScaleKind Kind = TColorScaleKind::cskSequential;
    std::vector<TColor32> Colors; ///< evenly spaced, at least two

    /// The name as part of a file name: "sea_ice".
    QString GetFileTitle() const;
    /// A new gradient with the colours from 0 to 1: evenly spaced, those of categories side by side with hard edges,
    /// and those of a relief with one hard edge, in the middle.
    std::shared_ptr<IGradient> CreateGradient() const;
};

/// Ready scales that come with the library: what is perceived as even, and what climate maps are used to.
class LMX_EXPORT TColorPack {
public:
    /// All of them, group by group.
    static const std::vector<TColorScale>& GetScales();
    /// Nil if there is none of that name.
    static const TColorScale* Find(const QString& name);

    /// Writes a palette file (TColorPalette) for each scale, at FileNameIn; files that are there are left alone.
    /// @throws EFileException if one cannot be written.
    static void SavePalettes(const QString& folder);
    /// The palette file of a scale below a folder: the folder of its group, and its name.
    static QString FileNameIn(const QString& folder, const TColorScale& scale);
};

} // namespace lmx
