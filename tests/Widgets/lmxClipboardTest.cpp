#include <lmx/Widgets/lmxClipboard.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace lmx {
namespace {

TEST(Clipboard, OfTheDesktopKeepsTabsAndLineBreaks) {
    const QString text = QStringLiteral("Location\t\"Rain\"\r\nWörgl\t1,5\r\n");
    TClipboard::SetAsText(text);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), text);
    EXPECT_EQ(TClipboard::GetAsText(), text);
}

TEST(Clipboard, WithoutTextGivesAnEmptyOne) {
    auto* data = new QMimeData;
    data->setData(QStringLiteral("application/x-other"), "x");
    QGuiApplication::clipboard()->setMimeData(data);
    EXPECT_EQ(TClipboard::GetAsText(), QString());
}

TEST(Clipboard, IsReplacedForAScope) {
    TClipboard::SetAsText(QStringLiteral("outside"));
    {
        const tests::TScriptedClipboard clipboard;
        TClipboard::SetAsText(QStringLiteral("inside"));
        EXPECT_EQ(clipboard->Text, "inside");
        EXPECT_EQ(TClipboard::GetAsText(), "inside");
    }
    EXPECT_EQ(TClipboard::GetAsText(), "outside");
}

} // namespace
} // namespace lmx
