#pragma once

#include <lmx/Formats/Text/lmxCSVReader.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Widgets/lmxModalDialog.h>

QT_BEGIN_NAMESPACE
class QCheckBox;
class QComboBox;
class QTableView;
QT_END_NAMESPACE

namespace lmx {

class TCSVPreview;

/// Asks which columns of a delimited text are the coordinates and the label of query points, over a preview of it. The
/// top row is treated as the header at first, whatever stands in it.
///
/// OK wants both coordinates: "Please select a column for X." under the title "X", then "Please select a column for Y."
/// under the title "Y", and the dialog stays. The label may be left out.
class LMX_EXPORT TAddMultipleInfoQueryPointPasteDialog : public TModalDialog {
public:
    explicit TAddMultipleInfoQueryPointPasteDialog(QWidget* parent = nullptr);

    /// Shows a text, whose delimiter is found (GetCSVDelim). Nothing is chosen.
    /// @throws EFileFormatException as TCSVReader::FromText; nothing has changed then.
    void LoadFromText(const QString& text);
    void LoadFromReader(const TCSVReader& reader); ///< as above, for what has been read

    /// Rows that there are without the header, if there is one; none for a text without rows.
    int GetItemCount() const;
    /// What a row has in the chosen columns, an empty text where it has none. `label` stays as it is if no column is
    /// chosen for it.
    /// @throws EArgumentException "Row index is out of range".
    void GetItem(int index, QString& x, QString& y, QString& label) const;

    int GetXColIndex() const; ///< -1 if none is chosen; so below
    int GetYColIndex() const;
    int GetLabelColIndex() const;

protected:
    void OkClick() override;

private:
    QComboBox* AddChoice(const char16_t* objectName, const char16_t* accessibleName);
    void SetOptions(const QStringList& names);
    void UpdateHeader();
    bool RequireChoice(QComboBox& choice, const QString& message, const QString& title);

    TCSVReader FReader;
    QComboBox* FX;
    QComboBox* FY;
    QComboBox* FLabel;
    QTableView* FView;
    TCSVPreview* FPreview;
    QCheckBox* FTopRowHeader;
};

} // namespace lmx
