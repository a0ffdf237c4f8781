#pragma once

#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Runtime/lmxExport.h>

#include <QWidget>

#include <memory>

QT_BEGIN_NAMESPACE
class QAbstractButton;
class QLineEdit;
class QPushButton;
QT_END_NAMESPACE

namespace lmx {

class IColorChooser;
class TColor32Button;
class TGrabber;
class TGradientEditor;

/// A gradient editor with fields for the colour, the place and the value of its selected stop, and with commands that
/// walk through the stops, delete them, and exchange gradients by the clipboard.
/// A menu has the scales of TColorPack (lmx/Colour/lmxColorPack.h) and turns the gradient round.
///
/// What is typed moves the stop at once; what is no number does nothing, and a field is never rewritten while somebody
/// types in it.
class LMX_EXPORT TGradientEditorFrame : public QWidget {
public:
    explicit TGradientEditorFrame(QWidget* parent = nullptr);

    TGradientEditor* GetGradEdit() const { return FGradEdit; }
    void SetValueRange(double low, double high); ///< of the editor; the value of the selected stop follows

protected:
    void changeEvent(QEvent* event) override;

private:
    class TChanging;

    QLineEdit* AddEdit(const char16_t* objectName, const char16_t* accessibleName);
    QAbstractButton* AddButton(const QString& text, const char16_t* objectName, void (TGradientEditorFrame::*click)());
    void BuildPresets();
    void LayOut();
    void LimitEditor();
    void Listen();
    void GradEditSelectionChanged();
    void UpdateGrabberValues(const TGrabber& grabber);
    void edLocChange();
    void edValChange();
    void shpColorChange();
    void QueryGrabberColor(TColor32& color);
    void btnPrevClick();
    void btnNextClick();
    void btnDelClick();
    void btnClearClick();
    void btnCopyClick();
    void btnPasteClick();
    void Reverse();

    TGradientEditor* FGradEdit;
    TColor32Button* FColor;
    QLineEdit* FLocation;
    QLineEdit* FValue;
    QPushButton* FPresets;
    QAbstractButton* FPrevious;
    QAbstractButton* FNext;
    QAbstractButton* FDelete;
    QAbstractButton* FClear;
    QAbstractButton* FCopy;
    QAbstractButton* FPaste;
    std::shared_ptr<IColorChooser> FColorDialog;
    QWidget* FChangingSource = nullptr; ///< the field in which a change began that goes on
    bool FIsChanging = false;
};

} // namespace lmx
