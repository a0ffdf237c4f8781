#include <lmx/Colour/lmxColorPack.h>

#include <lmx/Colour/lmxColorPalette.h>
#include <lmx/Colour/lmxGradientData.h>
#include <lmx/Graphics/lmxColorText.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/Printers.h>

#include <QDir>
#include <QFile>
#include <QSet>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <set>

namespace lmx {
namespace {

using TChannels = std::array<double, 3>;
using TMatrix = std::array<TChannels, 3>;

TChannels Times(const TMatrix& matrix, const TChannels& v) {
    TChannels product{};
    for (std::size_t row = 0; row < 3; ++row)
        for (std::size_t i = 0; i < 3; ++i)
            product[row] += matrix[row][i] * v[i];
    return product;
}

/// Light of an sRGB colour, red, green and blue from 0 to 1.
TChannels LightOf(TColor32 color) {
    const auto light = [color](int shift) {
        const double level = static_cast<double>(color >> shift & 255) / 255;
        return level <= 0.04045 ? level / 12.92 : std::pow((level + 0.055) / 1.055, 2.4);
    };
    return {light(16), light(8), light(0)};
}

/// CIELAB under D65: L, a, b.
TChannels LabOf(const TChannels& light) {
    constexpr TMatrix toXyz = {
        {{0.4124564, 0.3575761, 0.1804375}, {0.2126729, 0.7151522, 0.0721750}, {0.0193339, 0.1191920, 0.9503041}}};
    constexpr TChannels white = {0.95047, 1, 1.08883};
    TChannels f = Times(toXyz, light);
    for (std::size_t i = 0; i < 3; ++i) {
        const double t = f[i] / white[i];
        f[i] = t > 216.0 / 24389 ? std::cbrt(t) : (24389.0 / 27 * t + 16) / 116;
    }
    return {116 * f[1] - 16, 500 * (f[0] - f[1]), 200 * (f[1] - f[2])};
}

double LightnessOf(TColor32 color) {
    return LabOf(LightOf(color))[0];
}

double Distance(const TChannels& a, const TChannels& b) {
    return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

/// Who sees: everybody, and those whose cones for red, green or blue light are missing (Machado, Oliveira and Fernandes
/// 2009, severity 1).
const std::vector<TMatrix>& Readers() {
    static const std::vector<TMatrix> readers = {
        {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}},
        {{{0.152286, 1.052583, -0.204868}, {0.114503, 0.786281, 0.099216}, {-0.003882, -0.048116, 1.051998}}},
        {{{0.367322, 0.860646, -0.227968}, {0.280085, 0.672501, 0.047413}, {-0.011820, 0.042940, 0.968881}}},
        {{{1.255528, -0.076749, -0.178779}, {-0.078411, 0.930809, 0.147602}, {0.004733, 0.691367, 0.303900}}}};
    return readers;
}

/// What a reader sees of a colour, in CIELAB.
TChannels SeenBy(const TMatrix& reader, TColor32 color) {
    TChannels light = Times(reader, LightOf(color));
    for (double& channel : light)
        channel = std::clamp(channel, 0.0, 1.0);
    return LabOf(light);
}

/// The least distance, to any reader, of two colours of which neither follows the other.
double LeastDistance(const std::vector<TColor32>& colors) {
    double least = 1000;
    for (const TMatrix& reader : Readers())
        for (std::size_t i = 0; i < colors.size(); ++i)
            for (std::size_t j = i + 1; j < colors.size(); ++j)
                least = std::min(least, Distance(SeenBy(reader, colors[i]), SeenBy(reader, colors[j])));
    return least;
}

/// The least step of lightness in the direction from the first colour to the last.
double LeastStep(std::span<const TColor32> colors) {
    const double direction = LightnessOf(colors.back()) > LightnessOf(colors.front()) ? 1 : -1;
    double least = 1000;
    for (std::size_t i = 1; i < colors.size(); ++i)
        least = std::min(least, direction * (LightnessOf(colors[i]) - LightnessOf(colors[i - 1])));
    return least;
}

std::string NameOf(const TColorScale& scale) {
    return scale.GetFileTitle().toStdString();
}

TEST(ColorPack, HasScalesForEveryUse) {
    QStringList names;
    for (const TColorScale& scale : TColorPack::GetScales())
        names += scale.Group + u'/' + scale.Name;
    EXPECT_EQ(names, (QStringList{"Sequential/Viridis", "Sequential/Inferno", "Sequential/Cividis",
                                  "Sequential/Cubehelix", "Sequential/Blues", "Sequential/Oranges", "Sequential/Grey",
                                  "Diverging/Blue to red", "Diverging/Purple to green", "Cyclic/Phase", "Cyclic/Season",
                                  "Categorical/Bright", "Categorical/Muted", "Climate/Temperature", "Climate/Rain",
                                  "Climate/Anomaly", "Climate/Rain anomaly", "Climate/Relief", "Climate/Sea ice"}));
    EXPECT_EQ(TColorPack::Find("Sea ice"), &TColorPack::GetScales().back());
    EXPECT_EQ(TColorPack::Find("sea ice"), nullptr);
    EXPECT_EQ(TColorPack::Find("Sea ice")->GetFileTitle(), "sea_ice");
}

class ColorPackScale : public testing::TestWithParam<TColorScale> {
protected:
    const TColorScale& Scale = GetParam();
    const std::vector<TColor32>& Colors = Scale.Colors;
};

TEST_P(ColorPackScale, SaysWhereItIsFrom) {
    EXPECT_FALSE(Scale.Source.isEmpty());
    EXPECT_TRUE(QStringList({"CC0-1.0", "Apache-2.0", "BSD-3-Clause"}).contains(Scale.Licence));
    QFile page(QStringLiteral(LMX_SOURCE_DIR "/docs/colours.md"));
    ASSERT_TRUE(page.open(QIODevice::ReadOnly));
    const QStringList lines = QString::fromUtf8(page.readAll()).split(u'\n');
    EXPECT_TRUE(std::any_of(lines.begin(), lines.end(), [this](const QString& line) {
        return line.contains(u'|' + QString(u' ') + Scale.Name + QStringLiteral(" |")) && line.contains(Scale.Licence);
    })) << "docs/colours.md";
}

TEST_P(ColorPackScale, IsOpaque) {
    ASSERT_GE(Colors.size(), 2U);
    for (const TColor32 color : Colors)
        EXPECT_EQ(color >> 24, 255U);
}

TEST_P(ColorPackScale, IsReadByEveryReader) {
    switch (Scale.Kind) {
    case TColorScaleKind::cskSequential: // by the lightness alone, which all of them see
        EXPECT_GT(LeastStep(Colors), 3);
        EXPECT_GT(std::abs(LightnessOf(Colors.back()) - LightnessOf(Colors.front())), 70);
        break;
    case TColorScaleKind::cskDiverging:
        EXPECT_GT(LeastDistance({Colors.front(), Colors[Colors.size() / 2], Colors.back()}), 35);
        break;
    case TColorScaleKind::cskCyclic:
        EXPECT_GT(LeastDistance({Colors.begin(), Colors.end() - 1}), 6);
        break;
    case TColorScaleKind::cskCategorical:
        EXPECT_GT(LeastDistance(Colors), 12);
        break;
    case TColorScaleKind::cskRelief:
        EXPECT_GT(LeastDistance(Colors), 5);
        break;
    }
}

TEST_P(ColorPackScale, HasTheLightnessOfItsKind) {
    const std::size_t count = Colors.size();
    const std::span<const TColor32> all = Colors;
    if (Scale.Kind == TColorScaleKind::cskRelief) {
        ASSERT_EQ(count % 2, 0U);
        EXPECT_GT(LeastStep(all.first(count / 2)), 0);
        EXPECT_GT(LeastStep(all.subspan(count / 2)), 0);
        EXPECT_LT(LightnessOf(Colors[0]), LightnessOf(Colors[count / 2 - 1]));
        EXPECT_LT(LightnessOf(Colors[count / 2]), LightnessOf(Colors.back()));
    }
    if (Scale.Kind == TColorScaleKind::cskDiverging) {
        ASSERT_EQ(count % 2, 1U);
        EXPECT_GT(LeastStep(all.first(count / 2 + 1)), 0);
        EXPECT_GT(LeastStep(all.subspan(count / 2)), 0);
    }
    if (Scale.Kind == TColorScaleKind::cskDiverging || Scale.Kind == TColorScaleKind::cskCyclic) {
        for (std::size_t i = 0; i < count; ++i)
            EXPECT_NEAR(LightnessOf(Colors[i]), LightnessOf(Colors[count - 1 - i]), 5) << i;
    }
    if (Scale.Kind == TColorScaleKind::cskCyclic) {
        EXPECT_EQ(Colors.front(), Colors.back());
    }
}

TEST_P(ColorPackScale, BecomesAGradient) {
    const auto gradient = Scale.CreateGradient();
    EXPECT_EQ(gradient->GetColor(0), Colors.front());
    EXPECT_EQ(gradient->GetColor(1), Colors.back());
    const auto& stops = gradient->GetColorStops();
    const std::size_t count = Colors.size();
    if (Scale.Kind == TColorScaleKind::cskCategorical) {
        ASSERT_EQ(stops.size(), 2 * count);
        for (std::size_t i = 0; i < count; ++i)
            EXPECT_EQ(gradient->GetColor((static_cast<double>(i) + 0.5) / static_cast<double>(count)), Colors[i]);
        return;
    }
    ASSERT_EQ(stops.size(), count);
    if (Scale.Kind == TColorScaleKind::cskRelief) {
        EXPECT_EQ(gradient->GetColor(0.5), Colors[count / 2]) << "the coast is land";
        EXPECT_EQ(stops[count / 2 - 1], (TColorStop{0.5, Colors[count / 2 - 1]}));
        return;
    }
    for (std::size_t i = 0; i < count; ++i)
        EXPECT_EQ(stops[i], (TColorStop{static_cast<double>(i) / static_cast<double>(count - 1), Colors[i]}));
}

INSTANTIATE_TEST_SUITE_P(Scales, ColorPackScale, testing::ValuesIn(TColorPack::GetScales()),
                         [](const auto& row) { return NameOf(row.param); });

TEST(ColorPack, HasNoScaleTwice) {
    QSet<QString> titles;
    std::set<std::vector<TColor32>> colors;
    for (const TColorScale& scale : TColorPack::GetScales()) {
        titles.insert(scale.GetFileTitle());
        colors.insert(scale.Colors);
    }
    EXPECT_EQ(static_cast<std::size_t>(titles.size()), TColorPack::GetScales().size());
    EXPECT_EQ(colors.size(), TColorPack::GetScales().size());
}

// C. Brewer's licence and those of the others want their names to go with what is copied.
TEST(ColorPack, NamesThoseWhoWantToBeNamed) {
    QFile page(QStringLiteral(LMX_SOURCE_DIR "/docs/colours.md"));
    ASSERT_TRUE(page.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(page.readAll());
    EXPECT_TRUE(
        text.contains("Copyright (c) 2002 Cynthia Brewer, Mark Harrower and The Pennsylvania State University"));
    EXPECT_TRUE(text.contains("Copyright (c) 2022, Paul Tol"));
}

// The examples hold the published tables, every 17th colour of 256, as palettes and as gradients.
TEST(ColorPack, AgreesWithThePublishedTables) {
    const QString folder = QStringLiteral(LMX_SOURCE_DIR "/examples/data/");
    for (const char* name : {"Viridis", "Inferno", "Cividis", "Blue to red"}) {
        const TColorScale* scale = TColorPack::Find(QString::fromLatin1(name));
        ASSERT_NE(scale, nullptr) << name;
        const QString title = scale->GetFileTitle().remove(QStringLiteral("to_"));
        TColorPalette palette;
        palette.Load(folder + QStringLiteral("palettes/") + title + QStringLiteral(".pal"));
        EXPECT_EQ(static_cast<const std::vector<TColor32>&>(palette), scale->Colors) << name;
        const auto data = TGradientDataFactory::GetObject();
        data->LoadFromFile(folder + QStringLiteral("gradients/") + title + QStringLiteral(".xml"));
        const auto gradient = data->CreateGradient(0, 1);
        ASSERT_EQ(gradient->GetColorStops().size(), scale->Colors.size()) << name;
        for (std::size_t i = 0; i < scale->Colors.size(); ++i)
            EXPECT_EQ(gradient->GetColorStops()[i].Color, scale->Colors[i]) << name << ' ' << i;
    }
}

// "Bright" and "muted" of P. Tol: Colour Schemes, in their order.
TEST(ColorPack, AgreesWithTheSchemesOfTol) {
    const auto colorsOf = [](const char* name) {
        QStringList colors;
        for (const TColor32 color : TColorPack::Find(QString::fromLatin1(name))->Colors)
            colors += Color32ToString(color).sliced(3);
        return colors.join(u' ');
    };
    EXPECT_EQ(colorsOf("Bright"), "4477AA 66CCEE 228833 CCBB44 EE6677 AA3377 BBBBBB");
    EXPECT_EQ(colorsOf("Muted"), "332288 88CCEE 44AA99 117733 999933 DDCC77 CC6677 882255 AA4499");
}

// The colours of D. A. Green's formula at both ends, in the middle and at a third.
TEST(ColorPack, FollowsTheFormulaOfCubehelix) {
    const auto at = [](double light) {
        const double angle = 2 * M_PI * (0.5 / 3 - 1.5 * light);
        const double width = light * (1 - light) / 2;
        const auto level = [&](double cosine, double sine) {
            const double share = light + width * (cosine * std::cos(angle) + sine * std::sin(angle));
            return static_cast<TColor32>(std::floor(255 * std::clamp(share, 0.0, 1.0) + 0.5));
        };
        return 0xFF000000U | level(-0.14861, 1.78277) << 16 | level(-0.29227, -0.90649) << 8 | level(1.97294, 0);
    };
    const TColorScale* scale = TColorPack::Find("Cubehelix");
    ASSERT_EQ(scale->Colors.size(), 16U);
    for (std::size_t i = 0; i < 16; ++i)
        EXPECT_EQ(scale->Colors[i], at(static_cast<double>(i) / 15)) << i;
}

TEST(ColorPack, IsWrittenAsPalettes) {
    const QTemporaryDir folder;
    TColorPack::SavePalettes(folder.path());
    for (const TColorScale& scale : TColorPack::GetScales()) {
        TColorPalette palette;
        palette.Load(TColorPack::FileNameIn(folder.path(), scale));
        EXPECT_EQ(static_cast<const std::vector<TColor32>&>(palette), scale.Colors) << NameOf(scale);
    }
    EXPECT_EQ(TColorPack::FileNameIn("/pack", *TColorPack::Find("Sea ice")), "/pack/climate/sea_ice.pal");
}

TEST(ColorPack, LeavesFilesAloneThatAreThere) {
    const QTemporaryDir folder;
    const QString fileName = TColorPack::FileNameIn(folder.path(), *TColorPack::Find("Rain"));
    ASSERT_TRUE(QDir(folder.path()).mkdir("climate"));
    TColorPalette own;
    own.push_back(0xFF123456U);
    own.Save(fileName);
    TColorPack::SavePalettes(folder.path());
    TColorPalette palette;
    palette.Load(fileName);
    EXPECT_EQ(palette.size(), 1U);
}

TEST(ColorPack, TellsOfAFolderThatCannotBeMade) {
    const QTemporaryDir folder;
    QFile file(folder.filePath("file"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    try {
        TColorPack::SavePalettes(file.fileName());
        ADD_FAILURE() << "nothing was raised";
    } catch (const EFileException& failure) {
        EXPECT_EQ(failure.Message(), file.fileName() + "/sequential: the folder cannot be made");
    }
}

} // namespace
} // namespace lmx
