#pragma once

#include <lmx/Colour/lmxColorClassList.h>
#include <lmx/Colour/lmxValueRange.h>
#include <lmx/Dialogs/Private/lmxColorListPage.h>
#include <lmx/Runtime/lmxObjectList.h>

#include <memory>

namespace lmx {

class IColorClassCalculator;
class ILayerManagerConfig;

/// The editor of colour classes. It works on classes of its own.
class TColorClassesPage final : public TListPage {
public:
    explicit TColorClassesPage(QWidget* parent = nullptr);

    void SetValueRange(const TValueRange& range) { FValueRange = range; }
    void SetConfig(const std::shared_ptr<ILayerManagerConfig>& config) { FConfig = config; }
    void SetColorClasses(const IColorClassCalculator& calculator); ///< adds copies of its classes
    bool IsEmpty() const { return FColorClasses.IsEmpty(); }
    /// With copies of the classes, and the policy that is a new calculator's.
    std::shared_ptr<IColorClassCalculator> CreateColorCalc() const;

private:
    class TRows;

    void BuildCommands();
    void btnAddColorClassClick();
    void btnEditColorClassClick();
    void btnDeleteColorClassClick();
    void LoadClick();
    void btnClassifiedCopyClick();
    void PasteClick();
    void UpdateColorClassList();

    TValueRange FValueRange;
    std::shared_ptr<ILayerManagerConfig> FConfig;
    TObjectList<TColorClass> FColorClasses;
    std::shared_ptr<TRows> FRows;
};

} // namespace lmx
