#pragma once

#include <lmx/Colour/lmxColorKey.h>
#include <lmx/Colour/lmxValueRange.h>
#include <lmx/Dialogs/Private/lmxColorListPage.h>

#include <memory>

QT_BEGIN_NAMESPACE
class QRadioButton;
QT_END_NAMESPACE

namespace lmx {

class IBasicPaletteColorCalculator;
class ILayerManagerConfig;

/// The editor of a basic palette: the colours of equal bands of the range. It works on a key of its own.
class TBasicPalettePage final : public TListPage {
public:
    explicit TBasicPalettePage(QWidget* parent = nullptr);

    void SetValueRange(const TValueRange& range) { FValueRange = range; }
    void SetConfig(const std::shared_ptr<ILayerManagerConfig>& config) { FConfig = config; }
    void SetBasicPalette(const IBasicPaletteColorCalculator& calculator); ///< adds the items of its key
    bool IsEmpty() const { return FColorKey->GetColors().empty(); }
    std::shared_ptr<IBasicPaletteColorCalculator> CreateColorCalc() const; ///< over the whole range

private:
    class TRows;

    void BuildCommands();
    void BuildNoData();
    void AddClick();
    void edBasicEditBtnClick();
    void DeleteClick();
    void btnBasicPalLoadClick();
    void btnBasicPalCopyClick();
    void btnBasicPalPasteClick();
    void UpdateBasicPaletteList();

    TValueRange FValueRange;
    std::shared_ptr<ILayerManagerConfig> FConfig;
    std::shared_ptr<IColorKey> FColorKey = TColorKeyFactory::GetObject();
    QRadioButton* FFirstColorNoData = nullptr;
    QRadioButton* FTransparentNoData = nullptr;
    std::shared_ptr<TRows> FRows;
};

} // namespace lmx
