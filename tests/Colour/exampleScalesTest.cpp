#include <lmx/Colour/lmxColorPalette.h>
#include <lmx/Colour/lmxGradientData.h>
#include <lmx/Graphics/lmxGradient.h>
#include <tests/Support/Printers.h>

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

// The colour scales that come with the examples: each is a gradient and a palette of the same colours.

namespace lmx {
namespace {

QDir ScaleFolder(const char* name) {
    return QDir(QStringLiteral(LMX_SOURCE_DIR "/examples/data/") + QString::fromUtf8(name));
}

QStringList NamesIn(const char* folder) {
    QStringList names;
    for (const QFileInfo& file : ScaleFolder(folder).entryInfoList(QDir::Files, QDir::Name))
        names += file.completeBaseName();
    return names;
}

TEST(ExampleScales, ComeInBothForms) {
    EXPECT_EQ(NamesIn("gradients"), (QStringList{"blue_red", "cividis", "inferno", "viridis"}));
    EXPECT_EQ(NamesIn("palettes"), NamesIn("gradients"));
}

struct TScaleRow {
    const char* Name;
    std::size_t Count;
    TColor32 First;
    TColor32 Middle; ///< at the middle of the range
    TColor32 Last;
};

class ExampleScale : public testing::TestWithParam<TScaleRow> {
protected:
    QString Path(const char* folder, const char* suffix) const {
        return ScaleFolder(folder).filePath(QString::fromUtf8(GetParam().Name) + QString::fromUtf8(suffix));
    }
};

TEST_P(ExampleScale, IsAGradientOverTheRangeOfTheData) {
    const auto data = TGradientDataFactory::GetObject();
    data->LoadFromFile(Path("gradients", ".xml"));
    ASSERT_EQ(data->GetGroups().Count(), 1);
    EXPECT_EQ(data->GetGroups()[0]->GetColors().size(), GetParam().Count);
    const auto gradient = data->CreateGradient(-1.5, 30);
    EXPECT_EQ(gradient->GetColor(0), GetParam().First);
    EXPECT_EQ(gradient->GetColor(0.5), GetParam().Middle);
    EXPECT_EQ(gradient->GetColor(1), GetParam().Last);
}

TEST_P(ExampleScale, HasTheSameColorsAsAPalette) {
    const auto data = TGradientDataFactory::GetObject();
    data->LoadFromFile(Path("gradients", ".xml"));
    TColorPalette palette;
    palette.Load(Path("palettes", ".pal"));
    EXPECT_EQ(static_cast<std::vector<TColor32>&>(palette), data->GetGroups()[0]->GetColors());
}

INSTANTIATE_TEST_SUITE_P(Scales, ExampleScale,
                         testing::Values(TScaleRow{"viridis", 16, 0xFF440154U, 0xFF21908DU, 0xFFFDE725U},
                                         TScaleRow{"inferno", 16, 0xFF000004U, 0xFFBB3754U, 0xFFFCFFA4U},
                                         TScaleRow{"cividis", 16, 0xFF00224EU, 0xFF7D7C77U, 0xFFFEE838U},
                                         TScaleRow{"blue_red", 11, 0xFF053061U, 0xFFF7F7F7U, 0xFF67001FU}),
                         [](const auto& row) { return row.param.Name; });

} // namespace
} // namespace lmx
