#pragma once

#include <lmx/Colour/lmxValueRange.h>
#include <lmx/Dialogs/Private/lmxColorListPage.h>
#include <lmx/Runtime/lmxObjectList.h>

#include <memory>

QT_BEGIN_NAMESPACE
class QLabel;
QT_END_NAMESPACE

namespace lmx {

class IMultipartGradientColorCalculator;
class TMPGradItem;

/// The editor of several gradients, each over a part of the range. It works on items of its own.
class TMultipartGradientPage final : public TListPage {
public:
    explicit TMultipartGradientPage(QWidget* parent = nullptr);
    ~TMultipartGradientPage() override;

    void SetValueRange(const TValueRange& range);
    void SetMultipartGradient(const IMultipartGradientColorCalculator& calculator); ///< adds its gradients
    std::shared_ptr<IMultipartGradientColorCalculator> CreateColorCalc() const;

private:
    class TRows;

    void btnMPAddClick();
    void btnMPEditClick();
    void btnMPDeleteClick();
    void UpdateMPGradientList();

    TValueRange FValueRange;
    TObjectList<TMPGradItem> FMPGradItems;
    std::shared_ptr<TRows> FRows;
    QLabel* FFullRange;
};

} // namespace lmx
