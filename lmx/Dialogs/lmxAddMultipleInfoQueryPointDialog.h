#pragma once

#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Widgets/lmxModalDialog.h>

#include <QString>

#include <vector>

namespace lmx {

class TIQPAItemsControl;

/// A point as it stands in the table in which several are entered: texts as they were typed or pasted.
struct TIQPAItem {
    QString X;
    QString Y;
    QString Label; ///< may be empty
    TColor Color;  ///< opaque

    friend bool operator==(const TIQPAItem&, const TIQPAItem&) = default;
};

/// Asks for any number of query points in a table, which begins with one empty row. Rows are added by a button and by
/// pasting delimited text (TAddMultipleInfoQueryPointPasteDialog) behind those that there are; a new row has a random
/// colour. Only rows that are seen cost anything, so a hundred thousand are no burden.
///
/// OK looks at nothing: whoever reads the rows passes over those whose coordinates are no numbers.
class LMX_EXPORT TAddMultipleInfoQueryPointDialog : public TModalDialog {
public:
    explicit TAddMultipleInfoQueryPointDialog(QWidget* parent = nullptr);

    /// The rows from the first to the last. Valid until one is added or removed.
    const std::vector<TIQPAItem>& GetItems() const;
    void AddItem(); ///< an empty row at the end

    /// Lets the user paste the text of the clipboard.
    /// @throws EFileFormatException as TCSVReader::FromText; nothing has changed then.
    void Paste();

private:
    void AddClick();

    TIQPAItemsControl* FItemsControl = nullptr;
};

} // namespace lmx
