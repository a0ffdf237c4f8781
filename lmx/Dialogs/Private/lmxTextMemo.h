#pragma once

#include <QPlainTextEdit>
#include <QString>

namespace lmx {

/// An editor of plain texts of any length. Qt lays a line out whole at each key, so a line of a megabyte is edited in
/// segments, at most 8192 letters long at first: a segment ends in a sign that takes no room and in an end of line,
/// which are no part of the text. What is copied or deleted lacks them; all that is seen of them is that the last row
/// of a segment ends early, as rows do between words.
class TTextMemo : public QPlainTextEdit {
public:
    explicit TTextMemo(QWidget* parent = nullptr);

    /// The text as it is shown, with LF for its ends of lines. Letters U+FFF8, by which segments end, get lost.
    QString GetText() const;
    /// Forgets what could be undone, and is not modified.
    void SetText(const QString& text);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    QMimeData* createMimeDataFromSelection() const override;
    void insertFromMimeData(const QMimeData* source) override;

private:
    void PassSeam(const QKeyEvent& event);
    void SelectSeam(int begin);
    void LeaveSeam(bool forwards);

    bool FIsAtKey = false;
};

} // namespace lmx
