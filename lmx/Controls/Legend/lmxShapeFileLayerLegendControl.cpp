#include <lmx/Controls/Legend/lmxShapeFileLayerLegendControl.h>

#include <lmx/Formats/Shapes/lmxShpFile.h>
#include <lmx/Runtime/lmxText.h>
#include <lmx/Widgets/lmxEventGuard.h>
#include <lmx/Widgets/lmxMsgBox.h>
#include <lmx/Widgets/lmxPngButton.h>

namespace lmx {

namespace {

constexpr int Gap = 4;

// The name with its extension, if it has one, changed to that of tables.
QString TableNameOf(const QString& shpFileName) {
    const qsizetype name = shpFileName.lastIndexOf(u'/') + 1;
    const qsizetype dot = shpFileName.lastIndexOf(u'.');
    return shpFileName.left(dot > name ? dot : shpFileName.size()) + QStringLiteral(".dbf");
}

} // namespace

TShapeFileLayerLegendControl::TShapeFileLayerLegendControl(QWidget* parent)
    : TColorLegendControl(parent, QStringLiteral("TShapeFileLayerLegendControl")),
      FExploreButton(
          new TPngButton(this, QStringLiteral("MapWindowFactory.ExploreShape"), QStringLiteral("Explore shape file"))) {
    GuardClick(FExploreButton, [this] { ExplorerButton_Click(); });
    TShapeFileLayerLegendControl::Layout();
}

TShapeFileLayerLegendControl* TShapeFileLayerLegendControl::CreateComp(QWidget* owner, TShpFile* shpFile,
                                                                       TColor color) {
    auto* control = new TShapeFileLayerLegendControl(owner);
    control->SetShpFile(shpFile);
    control->SetShapeColor(color);
    return control;
}

void TShapeFileLayerLegendControl::SetShpFile(TShpFile* shpFile) {
    if (shpFile == GetShpFile())
        return;
    FShpFile = shpFile;
    update();
}

void TShapeFileLayerLegendControl::ExplorerButton_Click() {
    const TShpFile* file = GetShpFile();
    if (!file)
        return;
    const QString table = FindSisterFile(file->GetFileName(), QStringLiteral("dbf"));
    if (!table.isEmpty())
        FOnExploreShapeFile.Send(this, table);
    else
        TMsgBox::Error(QStringLiteral("Unable to find file: ") + TableNameOf(file->GetFileName()),
                       QStringLiteral("File not found"), window());
}

QSize TShapeFileLayerLegendControl::sizeHint() const {
    return {FExploreButton->geometry().right() + Gap, GetSuggestedHeight()};
}

void TShapeFileLayerLegendControl::Layout() {
    TColorLegendControl::Layout();
    const TRect swatch = GetColorRect();
    const QSize size = FExploreButton->sizeHint();
    FExploreButton->setGeometry(swatch.Right + Gap, swatch.Top + swatch.GetHeight() / 2 - size.height() / 2,
                                size.width(), size.height());
}

} // namespace lmx
