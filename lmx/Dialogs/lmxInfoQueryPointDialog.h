#pragma once

#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxExtended.h>
#include <lmx/Widgets/lmxModalDialog.h>

QT_BEGIN_NAMESPACE
class QLineEdit;
QT_END_NAMESPACE

namespace lmx {

class TColorShape;

/// Asks for the place, the label and the colour of a query point. It holds no point: the caller fills it, shows it and
/// reads it. At first the texts are empty and the colour is white.
///
/// OK wants numbers: "Please enter a number for X" and "Please enter a number for Y" under the title "Value", and the
/// dialog stays.
class LMX_EXPORT TInfoQueryPointDialog : public TModalDialog {
public:
    explicit TInfoQueryPointDialog(QWidget* parent = nullptr);

    /// Map units, from the texts as they stand.
    /// @throws EConvertError "'...' is not a valid floating point value".
    extended GetPointX() const;
    extended GetPointY() const;
    void SetPointX(extended x); ///< shows five decimals, and those are what comes back; so below
    void SetPointY(extended y);

    QString GetPointLabel() const; ///< may be empty
    void SetPointLabel(const QString& label);

    TColor32 GetPointColor() const; ///< always opaque
    void SetPointColor(TColor32 color);

protected:
    void OkClick() override;

private:
    bool RequireNumber(QLineEdit& edit, const QString& message);

    QLineEdit* FPointX;
    QLineEdit* FPointY;
    QLineEdit* FPointLabel;
    TColorShape* FColor;
};

} // namespace lmx
