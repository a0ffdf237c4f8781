#pragma once

#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Layers/lmxRulerMapLayer.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Widgets/lmxModalDialog.h>

QT_BEGIN_NAMESPACE
class QLineEdit;
class QRadioButton;
QT_END_NAMESPACE

namespace lmx {

class TColorShape;

/// Asks for the location, the orientation and the colour of a ruler. It holds no ruler: the caller fills it, shows it
/// and reads it. At first: location 0, vertical, cyan.
///
/// OK does not look at the text of the location; whoever asks for the location gets the failure.
class LMX_EXPORT TRulerDialog : public TModalDialog {
public:
    explicit TRulerDialog(QWidget* parent = nullptr);

    /// Map units, from the text as it stands, in single precision.
    /// @throws EConvertError "'...' is not a valid floating point value".
    float GetRulerLocation() const;
    void SetRulerLocation(float location); ///< shows three decimals, and those are what comes back

    /// @throws Exception "Please select an orientation" if none is.
    TRulerOrientation GetRulerOrientation() const;
    void SetRulerOrientation(TRulerOrientation orientation);

    TColor32 GetRulerColor() const; ///< always opaque
    void SetRulerColor(TColor32 color);

private:
    QLineEdit* FLocation;
    QRadioButton* FHorizontal;
    QRadioButton* FVertical;
    TColorShape* FColor;
};

} // namespace lmx
