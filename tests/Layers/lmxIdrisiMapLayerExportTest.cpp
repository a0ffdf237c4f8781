#include <lmx/Formats/Idrisi/lmxIdrisiImageExporter.h>
#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Layers/IdrisiMapLayerFixture.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>

#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace lmx {
namespace {

using namespace tests;

class IdrisiMapLayerExport : public TIdrisiMapLayerTest {};

TEST_F(IdrisiMapLayerExport, TheMenuOffersTheExports) {
    Layer.TakeImage(NumberedImage(2, 2, {0, 10, 10, 0}));
    std::vector<TLayerMenuItem> items;
    Layer.GetContextMenuItems(&items);
    ASSERT_EQ(items.size(), 5U);
    EXPECT_EQ(items[0].FText, QStringLiteral("&Goto Extent"));
    EXPECT_EQ(items[1].FText, QStringLiteral("-"));
    EXPECT_TRUE(items[1].FEnabled);
    EXPECT_FALSE(items[1].FEvent);
    EXPECT_EQ(items[2].FText, QStringLiteral("Export IdrisiImage..."));
    EXPECT_EQ(items[3].FText, QStringLiteral("Export ArcInfo Grid ASCII..."));
    EXPECT_EQ(items[4].FText, QStringLiteral("Export XYZ ASCII..."));
    for (std::size_t i = 2; i < 5; ++i)
        EXPECT_TRUE(items[i].FEnabled);
}

struct TExportRow {
    std::size_t MenuItem;
    const char* Filter;
    const char* Extension;
};

class Export : public testing::TestWithParam<TExportRow> {};

TEST_P(Export, AsksForAFileAndWritesTheWholeImage) {
    const QTemporaryDir folder;
    const QString extension = QString::fromLatin1(GetParam().Extension);
    const QString fileName = folder.filePath(QStringLiteral("out.") + extension);
    tests::TScriptedFileDialog dialogs;
    dialogs->Answers = {fileName};
    const auto manager = TLayerManagerFactory::GetObject();
    TIdrisiMapLayer layer(manager);
    layer.TakeImage(NumberedImage(2, 2, {0, 10, 10, 0}));
    std::vector<TLayerMenuItem> items;
    layer.GetContextMenuItems(&items);
    items.at(GetParam().MenuItem).FEvent();
    ASSERT_EQ(dialogs->Saved.size(), 1U);
    EXPECT_EQ(dialogs->Saved[0].Filter, QString::fromLatin1(GetParam().Filter));
    EXPECT_EQ(dialogs->Saved[0].DefaultExtension, extension);
    EXPECT_TRUE(dialogs->Saved[0].OverwritePrompt);
    EXPECT_GT(QFileInfo(fileName).size(), 0);
}

INSTANTIATE_TEST_SUITE_P(Rows, Export,
                         testing::Values(TExportRow{2, "Idrisi Image|*.img", "img"},
                                         TExportRow{3, "ArcInfo Grid Ascii|*.asc", "asc"},
                                         TExportRow{4, "XYZ Ascii|*.xyz", "xyz"}));

TEST_F(IdrisiMapLayerExport, ACancelledExportIsNoFailure) {
    tests::TScriptedFileDialog dialogs;
    dialogs->Answers = {std::nullopt};
    Layer.TakeImage(NumberedImage(2, 2, {0, 10, 10, 0}));
    TXYZAsciiExporter exporter;
    Layer.DoExport(QStringLiteral("XYZ Ascii"), QStringLiteral("xyz"), exporter);
    EXPECT_EQ(dialogs->Saved.size(), 1U);
}

TEST_F(IdrisiMapLayerExport, AFailedExportReachesTheCaller) {
    tests::TScriptedFileDialog dialogs;
    dialogs->Answers = {QStringLiteral("no-such-folder/out.xyz")};
    Layer.TakeImage(NumberedImage(2, 2, {0, 10, 10, 0}));
    TXYZAsciiExporter exporter;
    EXPECT_THROW(Layer.DoExport(QStringLiteral("XYZ Ascii"), QStringLiteral("xyz"), exporter), EFileException);
}

TEST_F(IdrisiMapLayerExport, ALayerThatGoesWhileTheDialogIsOpenExportsNothing) {
    const QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("out.xyz"));
    auto layer = std::make_unique<TIdrisiMapLayer>(Manager);
    layer->TakeImage(NumberedImage(2, 2, {0, 10, 10, 0}));
    std::vector<TLayerMenuItem> items;
    layer->GetContextMenuItems(&items);
    tests::TScriptedFileDialog dialogs;
    dialogs->Answers = {fileName};
    dialogs->WhileOpen = [&layer] { layer.reset(); };
    items.at(4).FEvent();
    EXPECT_EQ(dialogs->Saved.size(), 1U);
    EXPECT_FALSE(QFileInfo::exists(fileName));
}

/// Writes nothing, and has the image replaced while it does so.
class TReplacingExporter final : public IIdrisiImageExporter {
public:
    explicit TReplacingExporter(TIdrisiMapLayer& layer) : FLayer(layer) {}
    void Export(const TAbstractImage& image, const QString&) override {
        FLayer.TakeImage(NumberedImage(3, 3, {0, 10, 10, 0}));
        Seen = image.GetCell(2, 2);
    }
    float Seen = 0;

private:
    TIdrisiMapLayer& FLayer;
};

TEST_F(IdrisiMapLayerExport, AnImageThatIsReplacedWhileItIsWrittenStaysUntilItIs) {
    tests::TScriptedFileDialog dialogs;
    dialogs->Answers = {QStringLiteral("nowhere")};
    Layer.TakeImage(NumberedImage(2, 2, {0, 10, 10, 0}));
    TReplacingExporter exporter(Layer);
    Layer.DoExport(QStringLiteral("XYZ Ascii"), QStringLiteral("xyz"), exporter);
    EXPECT_EQ(exporter.Seen, 22.0F);
}

} // namespace
} // namespace lmx
