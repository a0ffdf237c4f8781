#pragma once

#include <lmx/Dialogs/lmxObjectDialog.h>
#include <lmx/Graphics/lmxAlignment.h>
#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Graphics/lmxFontStyles.h>
#include <lmx/Runtime/lmxExport.h>

#include <QString>

#include <memory>
#include <optional>

QT_BEGIN_NAMESPACE
class QComboBox;
class QFont;
class QLayout;
QT_END_NAMESPACE

namespace lmx {

class TColorShape;
class TScreenFonts;
class TTextMemo;
class TTextStyleButton;

/// Asks for a text and its look, and shows the text as it will look, but in the colours of the form. It holds no item:
/// the caller fills it, shows it and reads it. At first: no text, the form's font at 14 points, black, to the left.
///
/// Setters touch their own control only; the text takes on what they say when the dialog comes up or the user changes
/// anything. OK wants a font that there is and a size that is a whole number, says so, and stays.
class LMX_EXPORT TTextObjectDialog : public TObjectDialog {
public:
    explicit TTextObjectDialog(QWidget* parent = nullptr);
    ~TTextObjectDialog() override;

    /// What was set, character by character, as long as the user has not edited it; an edited text has LF for its ends
    /// of lines.
    QString GetText() const;
    void SetText(const QString& text);

    QString GetFontName() const; ///< the form's own if the one typed does not exist
    void SetFontName(const QString& name);

    /// Points, at least 6.
    /// @throws Exception "Invalid value for font size" if the text is no whole number.
    int GetFontSize() const;
    void SetFontSize(int size);

    TFontStyles GetFontStyles() const; ///< of bold, italic and underline
    void SetFontStyles(TFontStyles styles);

    TColor GetFontColor() const;
    void SetFontColor(TColor color);

    TAlignment GetTextAlign() const; ///< the one in which the text is shown
    void SetTextAlign(TAlignment align);

protected:
    void OkClick() override;
    void showEvent(QShowEvent* event) override;

private:
    QLayout* LayOutFont();
    QLayout* LayOutStyles();
    void FillFonts();
    void FillSizes();
    std::optional<int> TypedSize() const;

    void FontChange();
    void FontSizeChange();
    void UpdateFont();
    void TakeName(QFont& font) const;
    void TakeSize(QFont& font) const;
    void TakeStyles(QFont& font) const;
    void TakeAlignment();
    void Refuse(const QString& message, const QString& title, QComboBox* box);

    std::unique_ptr<TScreenFonts> FScreenFonts;
    QComboBox* FFont;
    QComboBox* FFontSize;
    TTextStyleButton* FBold;
    TTextStyleButton* FItalic;
    TTextStyleButton* FUnderline;
    TTextStyleButton* FLeft;
    TTextStyleButton* FCenter;
    TTextStyleButton* FRight;
    TColorShape* FColor;
    TTextMemo* FText;
    QString FGivenText; ///< as it was set
};

} // namespace lmx
