#include <lmx/Widgets/lmxClipboard.h>
#include <lmx/Widgets/lmxClipboardEnvelope.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace lmx {
namespace {

const QString Tag = QStringLiteral("COLORKEY");

TEST(ClipboardEnvelope, KeepsATextUnderItsTag) {
    const QString text = QStringLiteral("(\"Wörgl\t1\":#FF00FF00)\r\n");
    TClipboardEnvelope::SetText(Tag, text);
    EXPECT_TRUE(TClipboardEnvelope::Contains(Tag));
    EXPECT_EQ(TClipboardEnvelope::GetText(Tag), text);
    EXPECT_EQ(QGuiApplication::clipboard()->mimeData()->formats(), QStringList{"application/x-lmx-colorkey"});
    EXPECT_EQ(QGuiApplication::clipboard()->mimeData()->data("application/x-lmx-colorkey"), text.toUtf8());
}

TEST(ClipboardEnvelope, HoldsAnEmptyText) {
    TClipboardEnvelope::SetText(Tag, QString());
    EXPECT_TRUE(TClipboardEnvelope::Contains(Tag));
    EXPECT_EQ(TClipboardEnvelope::GetText(Tag), "");
}

TEST(ClipboardEnvelope, IsOfOneTag) {
    TClipboardEnvelope::SetText(Tag, QStringLiteral("key"));
    EXPECT_FALSE(TClipboardEnvelope::Contains(QStringLiteral("GRADIENT")));
    EXPECT_EQ(TClipboardEnvelope::GetText(QStringLiteral("GRADIENT")), "");
    EXPECT_EQ(TClipboard::GetAsText(), "") << "nothing for other programs";
    TClipboardEnvelope::SetText(QStringLiteral("GRADIENT"), QStringLiteral("gradient"));
    EXPECT_FALSE(TClipboardEnvelope::Contains(Tag));
    TClipboard::SetAsText(QStringLiteral("key"));
    EXPECT_FALSE(TClipboardEnvelope::Contains(QStringLiteral("GRADIENT")));
}

TEST(ClipboardEnvelope, GoesThroughTheService) {
    TClipboardEnvelope::SetText(Tag, QStringLiteral("outside"));
    {
        const tests::TScriptedClipboard clipboard;
        EXPECT_FALSE(TClipboardEnvelope::Contains(Tag));
        TClipboardEnvelope::SetText(Tag, QStringLiteral("inside"));
        EXPECT_EQ(clipboard->Data.at("application/x-lmx-colorkey"), "inside");
    }
    EXPECT_EQ(TClipboardEnvelope::GetText(Tag), "outside");
}

TEST(ClipboardEnvelope, IsEmptyWithAServiceOfTextsAlone) {
    struct TTexts : IClipboardService {
        QString GetAsText() const override { return QStringLiteral("text"); }
        void SetAsText(const QString&) override {}
    };
    const TServiceScope<TClipboard> scope{std::make_shared<TTexts>()};
    TClipboardEnvelope::SetText(Tag, QStringLiteral("key"));
    EXPECT_FALSE(TClipboardEnvelope::Contains(Tag));
}

} // namespace
} // namespace lmx
