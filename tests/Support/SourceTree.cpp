#include <lmx/Runtime/lmxText.h>
#include <tests/Support/SourceTree.h>

#include <QDir>
#include <QDirIterator>
#include <QRegularExpression>

#include <algorithm>

namespace lmx::tests {

std::vector<TSourceFile> LibrarySources() {
    const QDir root(QStringLiteral(LMX_SOURCE_DIR));
    std::vector<TSourceFile> sources;
    QDirIterator files(root.filePath(QStringLiteral("lmx")), {"*.h", "*.cpp"}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        sources.push_back({root.relativeFilePath(path), QString::fromUtf8(ReadFile(path))});
    }
    std::sort(sources.begin(), sources.end(),
              [](const TSourceFile& a, const TSourceFile& b) { return a.Path < b.Path; });
    return sources;
}

QStringList IncludesOf(const QString& source) {
    static const QRegularExpression pattern(QStringLiteral("^\\s*#\\s*include\\s*[<\"]([^>\"]+)[>\"]"),
                                            QRegularExpression::MultilineOption);
    QStringList includes;
    for (auto matches = pattern.globalMatch(source); matches.hasNext();)
        includes += matches.next().captured(1);
    return includes;
}

QString CodeOnly(const QString& source) {
    static const QRegularExpression pattern(
        QStringLiteral(R"re(//[^\n]*)re"                               // comments
                       R"re(|/\*.*?\*/)re"                             //
                       R"re(|R"([^(\s"]*)\(.*?\)\1")re"                // texts, raw ones first
                       R"re(|"(?:[^"\\\n]|\\.)*")re"                   //
                       R"re(|(?<![0-9A-Za-z])'(?:[^'\\\n]|\\.)+')re"), // characters, not digit separators
        QRegularExpression::DotMatchesEverythingOption);
    QString code = source;
    for (auto matches = pattern.globalMatch(source); matches.hasNext();) {
        const auto match = matches.next();
        for (qsizetype i = match.capturedStart(); i < match.capturedEnd(); ++i)
            if (code[i] != u'\n')
                code[i] = u' ';
    }
    return code;
}

} // namespace lmx::tests
