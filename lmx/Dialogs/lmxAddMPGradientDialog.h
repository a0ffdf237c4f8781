#pragma once

#include <lmx/Colour/lmxValueRange.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Widgets/lmxModalDialog.h>

#include <vector>

QT_BEGIN_NAMESPACE
class QLabel;
class QLineEdit;
QT_END_NAMESPACE

namespace lmx {

class TGradientEditorFrame;

/// One gradient over one part of the range of values.
class LMX_EXPORT TMPGradItem {
public:
    std::vector<TColorStop> Stops;
    float Max = 0;
    float Min = 0;
};

/// Asks for one gradient of several, and for its part of the range.
///
/// OK wants two numbers, "Please enter a min and max value." under the title "Value", and a stop, "Please add one or
/// more colors to the gradient." under "Colors"; the dialog stays. The least value may be above the greatest.
class LMX_EXPORT TAddMPGradientDialog : public TModalDialog {
public:
    explicit TAddMPGradientDialog(QWidget* parent = nullptr);

    void SetValueRange(const TValueRange& range); ///< of the data, shown for orientation
    /// Shows a gradient; its stops are added to those that there are.
    void SetData(const TMPGradItem& item);

    /// From the texts as they stand.
    /// @throws EConvertError "'...' is not a valid floating point value".
    float GetMin() const;
    float GetMax() const;
    std::vector<TColorStop> GetStops() const; ///< in the order of the list

    TGradientEditorFrame* GetGradEditFrame() const { return FFrame; }

protected:
    void OkClick() override;

private:
    void MinChange();
    void MaxChange();

    QLabel* FFullRange;
    QLineEdit* FMin;
    QLineEdit* FMax;
    TGradientEditorFrame* FFrame;
    TValueRange FValueRange;
};

} // namespace lmx
