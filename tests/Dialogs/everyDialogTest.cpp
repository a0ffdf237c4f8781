// Every dialog of the library, each page of the properties included: nothing is cut off, everything has a name for
// screen readers and is reached by the tab key, at fonts of 9 to 14 points and with texts twice as long.

#include <lmx/Colour/lmxColorClassCalculator.h>
#include <lmx/Colour/lmxColorPack.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Colour/lmxMultipartGradient.h>
#include <lmx/Dialogs/lmxDialogs.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Widgets/Private/lmxResBrowserDialog.h>
#include <tests/Dialogs/DisplayPageFixture.h>
#include <tests/Layers/IdrisiMapLayerFixture.h>
#include <tests/Support/DialogChecks.h>
#include <tests/Support/NumberedImage.h>
#include <tests/Support/SourceTree.h>

#include <QRegularExpression>
#include <QSet>

#include <functional>

namespace lmx {
namespace {

using TForm = std::unique_ptr<QWidget>;

struct TDialogRow {
    std::string Name; ///< the class, and what it shows
    std::function<TForm()> Make;
    QStringList SharedKeys = {};
};

std::shared_ptr<IGradient> Rain() {
    return TColorPack::Find(QStringLiteral("Rain"))->CreateGradient();
}

std::shared_ptr<IBaseColorCalculator> Gradient() {
    return TGradientColorCalculatorFactory::GetObject(0.0F, 99.0F, Rain());
}

std::shared_ptr<IBaseColorCalculator> TwoGradients() {
    const std::vector parts = {TGradientColorCalculatorFactory::GetObject(0.0F, 50.0F, Rain()),
                               TGradientColorCalculatorFactory::GetObject(50.0F, 99.0F, Rain())};
    return TMultipartGradientColorCalculatorFactory::GetObject(0, 99, parts);
}

std::shared_ptr<IBaseColorCalculator> Classes() {
    return TColorClassCalculatorFactory::GetObject({{"low", 0, 50, 0xFF102030U}, {"high", 50, 99, 0xFF405060U}});
}

std::shared_ptr<IBaseColorCalculator> Palette() {
    return TBasicPaletteColorCalculatorFactory::GetObject({0, 99}, {{"one", 0xFF00FF00U}, {"", 0xFF0000FFU}}, true);
}

TForm Properties(const QString& page, const std::shared_ptr<IBaseColorCalculator>& calculator) {
    const auto manager = TLayerManagerFactory::GetObject();
    AddColorPack(*manager->GetConfig());
    TIdrisiMapLayer layer(manager);
    layer.TakeImage(tests::NumberedImage(4, 2, {0, 2, 4, 0}));
    layer.SetColorCalc(calculator);
    layer.GetAttributes()[QStringLiteral("Source")] = {TAttributeDataType::adtString, QStringLiteral("gauge")};
    auto dialog = std::make_unique<TLayerPropertiesDialog>();
    layer.InitPropertiesDialog(dialog.get());
    EXPECT_TRUE(dialog->SelectPage(page));
    return dialog;
}

TForm Legend() {
    static const auto manager = TLayerManagerFactory::GetObject();
    if (manager->GetLayers().IsEmpty())
        manager->GetLayers().Add(std::make_unique<TIdrisiMapLayer>(manager))->SetLayerName(QStringLiteral("Rain"));
    auto dialog = std::make_unique<TLegendObjectDialog>();
    dialog->SetLayers({manager->GetLayers()[0]});
    return dialog;
}

TForm Browser() {
    const auto config = TLayerManagerConfigFactory::GetObject();
    AddColorPack(*config);
    AddPaletteFolder(*config, QStringLiteral("Mine"), QStringLiteral("/no/such/folder"));
    auto dialog = std::make_unique<TResBrowserDialog>();
    dialog->SetSources({config->PaletteSources()[0]->GetSource(), config->PaletteSources()[1]->GetSource()});
    return dialog;
}

TForm Paste() {
    auto dialog = std::make_unique<TAddMultipleInfoQueryPointPasteDialog>();
    dialog->LoadFromText(QStringLiteral("longitude,latitude,name of the place\n1,2,Here\n3,4,There\n"));
    return dialog;
}

template<class Dialog>
TForm Make() {
    return std::make_unique<Dialog>();
}

const std::vector<TDialogRow>& Rows() {
    const QString display = QStringLiteral("Raster display");
    const QStringList keysOfDisplay = {"Alt+A", "Alt+C", "Alt+D", "Alt+L", "Alt+E", "Alt+P"};
    static const std::vector<TDialogRow> rows = {
        {"TAddBasicPaletteColorDialog", Make<TAddBasicPaletteColorDialog>},
        {"TAddColorClassDialog", Make<TAddColorClassDialog>},
        {"TAddMPGradientDialog", Make<TAddMPGradientDialog>, {"Alt+C"}},
        {"TAddMultipleInfoQueryPointDialog", Make<TAddMultipleInfoQueryPointDialog>},
        {"TAddMultipleInfoQueryPointPasteDialog", Paste},
        {"TCompassRoseObjectDialog", Make<TCompassRoseObjectDialog>},
        {"TGeneralOptionsObjectDialog", Make<TGeneralOptionsObjectDialog>},
        {"TInfoQueryPointDialog", Make<TInfoQueryPointDialog>},
        {"TLayerAttributeDialog", Make<TLayerAttributeDialog>},
        {"TLayerPropertiesDialog_Extent", [] { return Properties("Extent", Gradient()); }},
        {"TLayerPropertiesDialog_Gradient", [=] { return Properties(display, Gradient()); }, keysOfDisplay},
        {"TLayerPropertiesDialog_Multipart", [=] { return Properties(display, TwoGradients()); }, keysOfDisplay},
        {"TLayerPropertiesDialog_Classified", [=] { return Properties(display, Classes()); }, keysOfDisplay},
        {"TLayerPropertiesDialog_Palette", [=] { return Properties(display, Palette()); }, keysOfDisplay},
        {"TLayerPropertiesDialog_Header", [] { return Properties("Image header", Gradient()); }},
        {"TLayerPropertiesDialog_Attributes", [] { return Properties("Layer attributes", Gradient()); }},
        {"TLegendObjectDialog", Legend},
        {"TResBrowserDialog", Browser},
        {"TRulerDialog", Make<TRulerDialog>},
        {"TTextObjectDialog", Make<TTextObjectDialog>},
    };
    return rows;
}

TEST(EveryDialogOfTheLibrary, IsLookedAt) {
    static const QRegularExpression pattern(
        QStringLiteral("class (?:LMX_EXPORT )?(T\\w+)(?: final)? : public (?:QDialog|TModalDialog|TObjectDialog)\\b"));
    QSet<QString> missing;
    for (const tests::TSourceFile& file : tests::LibrarySources())
        for (auto matches = pattern.globalMatch(file.Text); matches.hasNext();)
            missing.insert(matches.next().captured(1));
    EXPECT_GE(missing.size(), 16);
    missing -= {"TModalDialog", "TObjectDialog"}; // which others are made from
    for (const TDialogRow& row : Rows())
        missing.remove(QString::fromStdString(row.Name).section(u'_', 0, 0));
    for (const QString& name : missing)
        ADD_FAILURE() << name.toStdString() << " is not looked at";
}

class EveryDialog : public testing::TestWithParam<TDialogRow> {};

TEST_P(EveryDialog, IsReadAndOperated) {
    tests::CheckForm(GetParam().Make, GetParam().SharedKeys);
}

// The page is laid out in what the list leaves, so that nothing jumps when the user goes from page to page.
TEST(PropertiesDialog, KeepsTheWidthOfItsListOnEveryPage) {
    const auto form = Properties(QStringLiteral("Extent"), Classes());
    auto& dialog = static_cast<TLayerPropertiesDialog&>(*form);
    tests::ShowActive(dialog);
    const QSize size = dialog.size();
    const auto expectSame = [&](const QString& place) {
        for (int i = 0; i < 6; ++i)
            QCoreApplication::processEvents();
        EXPECT_EQ(tests::PagesOf(dialog).width(), 161) << place.toStdString();
        EXPECT_EQ(dialog.size(), size) << place.toStdString();
    };
    for (const char* page : {"Extent", "Raster display", "Image header", "Layer attributes"}) {
        EXPECT_TRUE(dialog.SelectPage(QString::fromLatin1(page)));
        expectSame(QString::fromLatin1(page));
    }
    dialog.SelectPage(QStringLiteral("Raster display"));
    auto* tabs = dialog.findChild<QTabWidget*>(QStringLiteral("Pages"));
    for (int tab = 0; tab < tabs->count(); ++tab) {
        tabs->setCurrentIndex(tab);
        expectSame(tabs->tabText(tab));
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, EveryDialog, testing::ValuesIn(Rows()), [](const auto& row) { return row.param.Name; });

} // namespace
} // namespace lmx
