#pragma once

#include <lmx/Controls/Legend/lmxColorLegendControl.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxEventList.h>
#include <lmx/Runtime/lmxExport.h>

namespace lmx {

class TPngButton;
class TShapeFileLayerLegendControl;
class TShpFile;

/// The control and the name of a table of attributes.
using TExploreShapeFileEventList = TEventList<TShapeFileLayerLegendControl*, const QString&>;

/// The legend of a shape file: its colour, and a button that asks the host to show the table beside the file. The file
/// is borrowed.
class LMX_EXPORT TShapeFileLayerLegendControl : public TColorLegendControl {
public:
    explicit TShapeFileLayerLegendControl(QWidget* parent = nullptr);

    static TShapeFileLayerLegendControl* CreateComp(QWidget* owner, TShpFile* shpFile, TColor color);

    TShpFile* GetShpFile() const { return FShpFile.Get(); } ///< nil if none is set, or none any more
    void SetShpFile(TShpFile* shpFile);
    TPngButton* GetExploreButton() const { return FExploreButton; }

    /// The user asks for the table of attributes, which is there; the host shows it.
    TExploreShapeFileEventList& GetOnExploreShapeFile() { return FOnExploreShapeFile; }
    /// Looks for the table beside the shape file, by the same name with ".dbf" in any case. Without a file nothing
    /// happens; without a table the user is told "Unable to find file: ..." under "File not found".
    void ExplorerButton_Click();

    QSize sizeHint() const override;

protected:
    void Layout() override;

private:
    TBorrowed<TShpFile> FShpFile;
    TPngButton* FExploreButton;
    TExploreShapeFileEventList FOnExploreShapeFile;
};

} // namespace lmx
