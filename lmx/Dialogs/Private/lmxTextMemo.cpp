#include <lmx/Dialogs/Private/lmxTextMemo.h>

#include <QKeyEvent>
#include <QMimeData>
#include <QPointer>
#include <QTextBlock>
#include <QTextBoundaryFinder>
#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>
#include <memory>

namespace lmx {

namespace {

constexpr qsizetype SegmentLength = 4096;
constexpr qsizetype LongestLine = 2 * SegmentLength; // that stays whole
constexpr qsizetype NearBlank = 256;                 // so far before the end of a segment is one looked for
constexpr QChar SeamSign(0xFFF8);                    // of Unicode's ignorable ones, to which no letter is assigned

bool IsEndOfLine(QChar letter) {
    return letter == u'\n' || letter == u'\r' || letter == QChar::ParagraphSeparator || letter == QChar::LineSeparator;
}

/// Behind a blank, or between two letters with all of their marks.
qsizetype EndOfSegment(QStringView line) {
    const qsizetype blank = line.first(SegmentLength).lastIndexOf(u' ');
    if (blank >= SegmentLength - NearBlank)
        return blank + 1;
    const QStringView around = line.sliced(SegmentLength - NearBlank, 2 * NearBlank);
    QTextBoundaryFinder letters(QTextBoundaryFinder::Grapheme, around.data(), around.size());
    letters.setPosition(NearBlank);
    const qsizetype end = letters.isAtBoundary() ? NearBlank : letters.toPreviousBoundary();
    return SegmentLength - NearBlank + (end > 0 ? end : NearBlank);
}

QString WithSeams(QString text) {
    text.remove(SeamSign);
    QString result;
    result.reserve(text.size() + text.size() / 1024);
    for (qsizetype begin = 0; begin < text.size();) {
        const auto lineEnd = std::find_if(text.cbegin() + begin, text.cend(), IsEndOfLine);
        QStringView line = QStringView(text).sliced(begin, lineEnd - text.cbegin() - begin);
        begin += line.size();
        while (line.size() > LongestLine) {
            const qsizetype end = EndOfSegment(line);
            result += line.first(end);
            result += SeamSign;
            result += u'\n';
            line = line.sliced(end);
        }
        result += line;
        if (begin < text.size())
            result += text[begin++];
    }
    return result;
}

QString WithoutSeams(QString text) {
    text.replace(QChar::ParagraphSeparator, u'\n').replace(QChar::LineSeparator, u'\n');
    return text.remove(QString(SeamSign) + u'\n').remove(SeamSign);
}

/// Whether a place, which is none of the text, lies between a sign and the end of line behind it.
bool IsInSeam(const QTextDocument& document, int place) {
    return place > 0 && document.characterAt(place - 1) == SeamSign &&
           document.characterAt(place) == QChar::ParagraphSeparator;
}

/// Whether a segment begins there.
bool IsBehindSeam(const QTextDocument& document, int place) {
    return place > 1 && document.characterAt(place - 1) == QChar::ParagraphSeparator && IsInSeam(document, place - 1);
}

void MoveTo(QPlainTextEdit& edit, int place) {
    QTextCursor cursor = edit.textCursor();
    cursor.setPosition(place, cursor.hasSelection() ? QTextCursor::KeepAnchor : QTextCursor::MoveAnchor);
    edit.setTextCursor(cursor);
}

} // namespace

TTextMemo::TTextMemo(QWidget* parent) : QPlainTextEdit(parent) {
    connect(this, &QPlainTextEdit::cursorPositionChanged, this, [this] {
        if (!FIsAtKey)
            LeaveSeam(false);
    });
}

// toPlainText would make plain blanks of those that do not break.
QString TTextMemo::GetText() const {
    return WithoutSeams(document()->toRawText());
}

void TTextMemo::SetText(const QString& text) {
    setPlainText(WithSeams(text));
    document()->setModified(false);
}

void TTextMemo::keyPressEvent(QKeyEvent* event) {
    const bool staysInRow =
        event->matches(QKeySequence::MoveToEndOfLine) || event->matches(QKeySequence::SelectEndOfLine) ||
        event->matches(QKeySequence::MoveToEndOfBlock) || event->matches(QKeySequence::SelectEndOfBlock);
    FIsAtKey = true;
    PassSeam(*event);
    const int before = textCursor().position();
    const QPointer<TTextMemo> self(this); // whoever hears of the change may do anything
    QPlainTextEdit::keyPressEvent(event);
    if (!self)
        return;
    FIsAtKey = false;
    LeaveSeam(!staysInRow && textCursor().position() == before + 1);
}

/// Keys that delete backwards from the beginning of a segment, or forwards from its end, find letters there. An end of
/// line that is typed takes the place of the seam.
void TTextMemo::PassSeam(const QKeyEvent& event) {
    const int place = textCursor().position();
    const bool isBehind = IsBehindSeam(*document(), place);
    const bool isBefore = document()->characterAt(place) == SeamSign && IsInSeam(*document(), place + 1);
    if (textCursor().hasSelection() || isReadOnly() || !(isBehind || isBefore))
        return;
    if (isBehind && event.key() == Qt::Key_Backspace)
        MoveTo(*this, place - 2);
    else if (isBefore && event.key() == Qt::Key_Delete)
        MoveTo(*this, place + 2);
    else if (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter)
        SelectSeam(isBefore ? place : place - 2);
}

void TTextMemo::SelectSeam(int begin) {
    QTextCursor cursor = textCursor();
    cursor.setPosition(begin);
    cursor.setPosition(begin + 2, QTextCursor::KeepAnchor);
    setTextCursor(cursor);
}

/// Nobody stays in a seam: what was typed there would tear it.
void TTextMemo::LeaveSeam(bool forwards) {
    const int place = textCursor().position();
    if (IsInSeam(*document(), place))
        MoveTo(*this, forwards ? place + 1 : place - 1);
}

QMimeData* TTextMemo::createMimeDataFromSelection() const {
    std::unique_ptr<QMimeData> copied(QPlainTextEdit::createMimeDataFromSelection());
    const QString text = copied->text();
    if (text.contains(SeamSign)) {
        copied = std::make_unique<QMimeData>();
        copied->setText(WithoutSeams(text));
    }
    return copied.release();
}

void TTextMemo::insertFromMimeData(const QMimeData* source) {
    const QString text = source->text();
    if (text.size() <= LongestLine)
        return QPlainTextEdit::insertFromMimeData(source);
    if (isReadOnly())
        return;
    textCursor().insertText(WithSeams(text));
    ensureCursorVisible();
}

} // namespace lmx
