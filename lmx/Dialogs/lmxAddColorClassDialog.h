#pragma once

#include <lmx/Colour/lmxValueRange.h>
#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Widgets/lmxModalDialog.h>

QT_BEGIN_NAMESPACE
class QLabel;
class QLineEdit;
QT_END_NAMESPACE

namespace lmx {

class TColor32Button;

/// Asks for the range, the label and the colour of a colour class. At first the texts are empty and the colour is
/// white.
///
/// OK wants two numbers: "Please enter the min and max range for the color class." under the title "Range", and the
/// dialog stays. The least value may be above the greatest.
class LMX_EXPORT TAddColorClassDialog : public TModalDialog {
public:
    explicit TAddColorClassDialog(QWidget* parent = nullptr);

    void SetValueRange(const TValueRange& range); ///< of the data, shown for orientation

    /// From the texts as they stand.
    /// @throws EConvertError "'...' is not a valid floating point value".
    float GetMin() const;
    float GetMax() const;
    void SetMin(float min); ///< shows three decimals, and those are what comes back; so below
    void SetMax(float max);

    QString GetClassLabel() const; ///< may be empty, for one that the range gives
    void SetClassLabel(const QString& label);
    TColor32 GetClassColor() const;
    void SetClassColor(TColor32 color);

protected:
    void OkClick() override;

private:
    QLabel* FFullRange;
    QLineEdit* FMin;
    QLineEdit* FMax;
    QLineEdit* FClassLabel;
    TColor32Button* FColor;
};

} // namespace lmx
