#pragma once

#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Widgets/lmxModalDialog.h>

QT_BEGIN_NAMESPACE
class QFormLayout;
QT_END_NAMESPACE

namespace lmx {

class TColorShape;

/// Asks for the four colours of a compass rose. It holds no item: the caller fills it, shows it and reads it. Colours
/// are opaque: the setters drop the alpha, and the getters give 255.
class LMX_EXPORT TCompassRoseObjectDialog : public TModalDialog {
public:
    explicit TCompassRoseObjectDialog(QWidget* parent = nullptr);

    TColor32 GetDarkColor() const;
    void SetDarkColor(TColor32 color);
    TColor32 GetLightColor() const;
    void SetLightColor(TColor32 color);
    TColor32 GetFontColor() const;
    void SetFontColor(TColor32 color);
    TColor32 GetLineColor() const;
    void SetLineColor(TColor32 color);

private:
    TColorShape* AddColor(QFormLayout& form, const char* name, const QString& label);

    TColorShape* FDark;
    TColorShape* FLight;
    TColorShape* FFont;
    TColorShape* FLine;
};

} // namespace lmx
