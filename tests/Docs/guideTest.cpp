#include <lmx/Runtime/lmxText.h>
#include <tests/Support/SourceTree.h>

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QMultiMap>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <algorithm>

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

QStringList Matches(const QString& text, const char* pattern) {
    const QRegularExpression expression(QString::fromLatin1(pattern), QRegularExpression::MultilineOption);
    QStringList found;
    for (auto matches = expression.globalMatch(text); matches.hasNext();)
        found += matches.next().captured(1);
    return found;
}

/// The headers of hosts by the names that they define.
QMultiMap<QString, QString> HeadersByName() {
    QMultiMap<QString, QString> headers;
    QDirIterator files(QStringLiteral(LMX_SOURCE_DIR "/lmx"), {QStringLiteral("*.h")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        if (path.contains(QStringLiteral("/Private/")))
            continue;
        const QString code = QString::fromUtf8(ReadFile(path));
        for (const char* definition :
             {"^ *(?:class|struct|enum class) +(?:LMX_\\w+ +)?([TIE][A-Z]\\w+)(?: final)?[ \\n]*(?::[^;{]*)?\\{",
              "^ *using +([TIE][A-Z]\\w+) ="})
            for (const QString& name : Matches(code, definition))
                headers.insert(name, QFileInfo(path).fileName());
    }
    return headers;
}

// A reader finds the header of each class in the section that speaks of it. Classes of the host's own, which the
// snippets define, have none.
TEST(GuideOfClasses, EachStandsInASectionWithItsHeader) {
    const auto headers = HeadersByName();
    ASSERT_TRUE(headers.contains(QStringLiteral("TMapViewControl"), QStringLiteral("lmxMapViewControl.h")));
    const QStringList own = Matches(TextOf("tests/Docs/hostGuide.cpp"), "\\b(?:struct|class) +([TIE][A-Z]\\w+)");
    int found = 0;
    for (const QString& section : TextOf("docs/host-guide.md").split(QStringLiteral("\n## "))) {
        const QString title = section.section(u'\n', 0, 0);
        const QStringList named = Matches(section, "\\b((?:lmx|wsk)\\w+\\.h)\\b");
        QStringList classes = Matches(section, "\\b([TIE][A-Z][a-z]\\w+|[TI][A-Z]{2,}\\w+)\\b");
        classes.removeDuplicates();
        for (const QString& name : classes) {
            if (own.contains(name))
                continue;
            const QStringList its = headers.values(name);
            const bool isNamed =
                std::ranges::any_of(its, [&named](const QString& header) { return named.contains(header); });
            EXPECT_TRUE(isNamed) << title.toStdString() << ": " << name.toStdString() << " of "
                                 << (its.isEmpty() ? std::string("no public header") : its.join(u' ').toStdString());
            found += isNamed ? 1 : 0;
        }
    }
    EXPECT_GT(found, 100);
}

INSTANTIATE_TEST_SUITE_P(Pages, Guide, testing::Values("docs/host-guide.md", "README.md"));

} // namespace
} // namespace lmx
