#pragma once

#include <lmx/Colour/lmxColorClassList.h>
#include <lmx/Colour/lmxValueRange.h>
#include <lmx/Dialogs/Private/lmxColorListPage.h>

#include <QList>

#include <memory>
#include <vector>

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
    bool IsEmpty() const { return FColorClasses.isEmpty(); }
    /// With copies of the classes, and the policy that is a new calculator's.
    std::shared_ptr<IColorClassCalculator> CreateColorCalc() const;

private:
    class TRows;

    /// A class, and what it is known by for as long as it is in the list.
    struct TEntry {
        int Serial;
        TColorClass Class;
    };
    using TEntries = QList<TEntry>; // shared with the rows until one of the two changes

    static std::vector<const TColorClass*> ClassesOf(const TEntries& entries);
    void Append(const TColorClass& colorClass);
    qsizetype IndexOf(int serial) const; ///< -1 once the class is gone

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
    TEntries FColorClasses;
    int FLastSerial = 0;
    std::shared_ptr<TRows> FRows;
};

} // namespace lmx
