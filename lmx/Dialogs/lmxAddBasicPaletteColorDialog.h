#pragma once

#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Widgets/lmxModalDialog.h>

QT_BEGIN_NAMESPACE
class QLineEdit;
QT_END_NAMESPACE

namespace lmx {

class TColor32Button;

/// Asks for the label and the colour of a palette's entry. At first the label is empty and the colour is white. OK
/// looks at nothing.
class LMX_EXPORT TAddBasicPaletteColorDialog : public TModalDialog {
public:
    explicit TAddBasicPaletteColorDialog(QWidget* parent = nullptr);

    QString GetPalLabel() const; ///< may be empty, for one that the range gives
    void SetPalLabel(const QString& label);
    TColor32 GetPalColor() const;
    void SetPalColor(TColor32 color);

private:
    QLineEdit* FLabel;
    TColor32Button* FColor;
};

} // namespace lmx
