#pragma once

#include <lmx/Layers/Objects/lmxGeneralOptions.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Widgets/lmxModalDialog.h>

QT_BEGIN_NAMESPACE
class QCheckBox;
class QGridLayout;
QT_END_NAMESPACE

namespace lmx {

class TColor32Button;

/// Edits the options that all annotations have in common. The options are borrowed and changed in place by OK; Cancel
/// leaves them as they are. Choosing a colour switches on what it colours.
class LMX_EXPORT TGeneralOptionsObjectDialog : public TModalDialog {
public:
    explicit TGeneralOptionsObjectDialog(QWidget* parent = nullptr);

    /// Shows these options, and OK changes them. The ones that are there already, and nil, change no control; after nil
    /// OK does nothing, nor does it once the options are gone.
    void SetOptions(TGeneralOptions* options);

protected:
    void OkClick() override;

private:
    TColor32Button* AddColorRow(QGridLayout& rows, QCheckBox* box, const QString& colorName);

    QCheckBox* FShowBg;
    QCheckBox* FShowBorder;
    QCheckBox* FLock;
    QCheckBox* FIsVisible;
    TColor32Button* FBgColor = nullptr;
    TColor32Button* FBorderColor = nullptr;
    TBorrowed<TGeneralOptions> FOptions;
};

} // namespace lmx
