#include <lmx/Dialogs/Private/lmxTextMemo.h>
#include <tests/Support/WidgetPictures.h>

#include <QFontMetricsF>
#include <QMimeData>
#include <QTest>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

namespace lmx {
namespace {

constexpr QChar SeamSign(0xFFF8);
constexpr int Megabyte = 1'000'000;

/// Opens what the clipboard would use.
class TOpenMemo final : public TTextMemo {
public:
    using TTextMemo::createMimeDataFromSelection;
    using TTextMemo::insertFromMimeData;
};

struct TextMemo : testing::Test {
    TextMemo() { Memo.resize(300, 200); }

    void Type(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(&Memo, key, modifiers); }
    void GoTo(int place) {
        QTextCursor cursor = Memo.textCursor();
        cursor.setPosition(place);
        Memo.setTextCursor(cursor);
    }
    int Place() const { return Memo.textCursor().position(); }
    /// Where the first segment ends: behind its sign comes the end of its line.
    int FirstSign() const { return static_cast<int>(Memo.document()->toRawText().indexOf(SeamSign)); }
    int LongestBlock() const {
        int longest = 0;
        for (QTextBlock block = Memo.document()->begin(); block.isValid(); block = block.next())
            longest = std::max(longest, block.length());
        return longest;
    }
    QString Copied() const { return std::unique_ptr<QMimeData>(Memo.createMimeDataFromSelection())->text(); }
    void Paste(const QString& text) {
        QMimeData data;
        data.setText(text);
        Memo.insertFromMimeData(&data);
    }

    TOpenMemo Memo;
    QString Words = QStringLiteral("rain \u05D2\u05E9\u05DD e\u0301 \U0001F327 ").repeated(Megabyte / 16);
    QString Word = QStringLiteral("e\u0301\U0001F327").repeated(Megabyte / 4);
};

TEST_F(TextMemo, GivesBackLongLinesAsTheyAre) {
    const QString texts[] = {Words,
                             Word,
                             Words + u'\n' + Word + QStringLiteral("\n\nsnow"),
                             QString(8192, u'W'),
                             QString(8193, u'W'),
                             QString(Megabyte, QChar(0x0301)),
                             QStringLiteral("a\u00A0b\n").repeated(5000)};
    for (const QString& text : texts) {
        Memo.SetText(text);
        EXPECT_EQ(Memo.GetText(), text) << text.left(5).toStdString();
        EXPECT_FALSE(Memo.document()->isModified());
    }
}

// What a key costs is the layout of its block.
TEST_F(TextMemo, NoBlockIsLongerThan8192Letters) {
    for (const QString& text : {Words, Word, QString(Megabyte, u'W')}) {
        Memo.SetText(text);
        EXPECT_LE(LongestBlock(), 8192 + 2);
        EXPECT_LT(Memo.blockCount(), text.size() / 3000);
    }
    Memo.SetText(QString(8192, u'W'));
    EXPECT_EQ(Memo.blockCount(), 1);
}

TEST_F(TextMemo, SegmentsEndBetweenWordsOrElseLetters) {
    Memo.SetText(Words);
    EXPECT_EQ(Memo.document()->characterAt(FirstSign() - 1), u' ');
    Memo.SetText(Word);
    for (QTextBlock block = Memo.document()->begin(); block.next().isValid(); block = block.next()) {
        const QChar first = block.next().text().at(0);
        EXPECT_FALSE(first.isLowSurrogate() || first.isMark());
    }
}

TEST_F(TextMemo, TheSignOfASeamTakesNoRoom) {
    const QFontMetricsF metrics(Memo.font());
    EXPECT_EQ(metrics.horizontalAdvance(QStringLiteral("ab") + SeamSign),
              metrics.horizontalAdvance(QStringLiteral("ab")));
}

TEST_F(TextMemo, TypesAtTheBeginningAndAtTheEndOfAMegabyte) {
    Memo.SetText(Words);
    tests::ShowActive(Memo);
    QTest::keyClicks(&Memo, "Mean ");
    Type(Qt::Key_End, Qt::ControlModifier);
    QTest::keyClicks(&Memo, "(mm)");
    EXPECT_EQ(Memo.GetText(), QStringLiteral("Mean ") + Words + QStringLiteral("(mm)"));
    for (int i = 0; i < 10 && Memo.document()->isUndoAvailable(); ++i)
        Type(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(Memo.GetText(), Words);
    EXPECT_FALSE(Memo.document()->isModified());
}

// Only rows that are seen are laid out, and again those of the block that is typed in.
TEST_F(TextMemo, LaysOutNextToNothingAtAKey) {
    Memo.SetText(Words);
    tests::ShowActive(Memo);
    const auto lettersLaidOut = [this] {
        int letters = 0;
        for (QTextBlock block = Memo.document()->begin(); block.isValid(); block = block.next())
            letters += block.layout()->lineCount() > 0 ? block.length() : 0;
        return letters;
    };
    EXPECT_LT(lettersLaidOut(), 20'000);
    QTest::keyClicks(&Memo, "Mean ");
    QCoreApplication::processEvents();
    EXPECT_LT(lettersLaidOut(), 20'000);
}

TEST_F(TextMemo, DeletesLettersAcrossASeam) {
    const QString text(Megabyte, u'W');
    Memo.SetText(text);
    tests::ShowActive(Memo);
    const int sign = FirstSign();
    GoTo(sign + 2);
    Type(Qt::Key_Backspace);
    EXPECT_EQ(Memo.GetText().size(), Megabyte - 1);
    EXPECT_EQ(Place(), sign - 1);
    Type(Qt::Key_Delete);
    EXPECT_EQ(Memo.GetText().size(), Megabyte - 2);
    EXPECT_EQ(Place(), sign + 1) << "behind the seam";
    Type(Qt::Key_Z, Qt::ControlModifier);
    Type(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(Memo.GetText(), text);
}

TEST_F(TextMemo, AnEndOfLineTakesThePlaceOfASeam) {
    Memo.SetText(QString(Megabyte, u'W'));
    tests::ShowActive(Memo);
    const int sign = FirstSign();
    const int blocks = Memo.blockCount();
    for (const int place : {sign, sign + 2}) {
        GoTo(place);
        Type(Qt::Key_Return);
        EXPECT_EQ(Memo.GetText(), QString(sign, u'W') + u'\n' + QString(Megabyte - sign, u'W'));
        EXPECT_EQ(Memo.blockCount(), blocks) << "no empty row";
        Type(Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(Memo.GetText().size(), Megabyte);
    }
}

TEST_F(TextMemo, NobodyStaysInASeam) {
    Memo.SetText(QString(Megabyte, u'W'));
    tests::ShowActive(Memo);
    const int sign = FirstSign();
    GoTo(sign + 1);
    EXPECT_EQ(Place(), sign);
    Type(Qt::Key_Right);
    EXPECT_EQ(Place(), sign + 2);
    Type(Qt::Key_Left);
    EXPECT_EQ(Place(), sign);
    Type(Qt::Key_End);
    EXPECT_EQ(Place(), sign);
    QTest::keyClicks(&Memo, "!");
    Type(Qt::Key_Right);
    Type(Qt::Key_Right, Qt::ShiftModifier);
    QTest::keyClicks(&Memo, "?");
    EXPECT_EQ(Memo.GetText(), QString(sign, u'W') + QStringLiteral("!?") + QString(Megabyte - sign - 1, u'W'));
}

TEST_F(TextMemo, CopiesAndPastesWithoutSeams) {
    Memo.SetText(Words);
    Memo.selectAll();
    EXPECT_EQ(Copied(), Words);
    Memo.SetText(QStringLiteral("<>"));
    GoTo(1);
    Paste(Word);
    EXPECT_EQ(Memo.GetText(), u'<' + Word + u'>');
    EXPECT_LE(LongestBlock(), 8192 + 3);
    Memo.undo();
    EXPECT_EQ(Memo.GetText(), QStringLiteral("<>"));
    Memo.setReadOnly(true);
    Paste(Word);
    EXPECT_EQ(Memo.GetText(), QStringLiteral("<>"));
}

TEST_F(TextMemo, TheSignOfASeamGetsLostInATextOfOnesOwn) {
    Memo.SetText(QStringLiteral("a") + SeamSign + QStringLiteral("\nb"));
    EXPECT_EQ(Memo.GetText(), QStringLiteral("a\nb"));
}

} // namespace
} // namespace lmx
