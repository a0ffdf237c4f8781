#include <lmx/Runtime/lmxText.h>
#include <tests/Support/SourceTree.h>

#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>

// The pages for hosts against the tree: their snippets are code that compiles (hostGuide.cpp), and the headers that
// they name are there.

namespace lmx {
namespace {

QString TextOf(const char* path) {
    return QString::fromUtf8(ReadFile(QStringLiteral(LMX_SOURCE_DIR "/") + QString::fromLatin1(path)));
}

// Lines without their indentation, joined; empty ones do not count.
QString Plain(const QString& code) {
    QString plain = QStringLiteral("\n");
    for (const QString& line : code.split(u'\n'))
        if (!Trim(line).isEmpty())
            plain += Trim(line) + u'\n';
    return plain;
}

QStringList SnippetsOf(const QString& page) {
    static const QRegularExpression pattern(QStringLiteral("```cpp\n(.*?)```"),
                                            QRegularExpression::DotMatchesEverythingOption);
    QStringList snippets;
    for (auto matches = pattern.globalMatch(page); matches.hasNext();)
        snippets += matches.next().captured(1);
    return snippets;
}

class Guide : public testing::TestWithParam<const char*> {};

TEST_P(Guide, SnippetsCompile) {
    const QString compiled = Plain(TextOf("tests/Docs/hostGuide.cpp"));
    const QStringList snippets = SnippetsOf(TextOf(GetParam()));
    ASSERT_FALSE(snippets.isEmpty());
    for (const QString& snippet : snippets)
        EXPECT_TRUE(compiled.contains(Plain(snippet))) << snippet.toStdString();
}

TEST_P(Guide, NamesHeadersThatHostsHave) {
    static const QRegularExpression header(QStringLiteral("(?:`|lmx/)([A-Z]\\w+(?:/\\w+)*/(?:lmx|wsk)\\w+\\.h)"));
    const QString page = TextOf(GetParam());
    for (auto matches = header.globalMatch(page); matches.hasNext();) {
        const QString path = QStringLiteral("lmx/") + matches.next().captured(1);
        EXPECT_FALSE(path.contains(QStringLiteral("/Private/"))) << path.toStdString();
        EXPECT_TRUE(QFile::exists(QStringLiteral(LMX_SOURCE_DIR "/") + path)) << path.toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(Pages, Guide, testing::Values("docs/host-guide.md", "README.md"));

} // namespace
} // namespace lmx
