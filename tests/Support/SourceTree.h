#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace lmx::tests {

/// A source file of the library.
struct TSourceFile {
    QString Path; ///< from the root: "lmx/Runtime/lmxText.h"
    QString Text;

    QString Folder() const { return Path.section(u'/', 1, -2); } ///< "Runtime", "Controls/Legend"
    bool IsHeader() const { return Path.endsWith(QStringLiteral(".h")); }
};

/// Every .h and .cpp file below lmx/, in order of the paths.
std::vector<TSourceFile> LibrarySources();

/// Paths of the headers that a source includes, as they are written.
QStringList IncludesOf(const QString& source);

/// The source with comments and the contents of literals replaced by blanks; lines stay lines.
QString CodeOnly(const QString& source);

} // namespace lmx::tests
