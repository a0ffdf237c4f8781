#pragma once

#include <QString>
#include <QTemporaryFile>

namespace lmx {

/// A new file beside an old one whose place it takes with Commit. Without a Commit it goes, and the old one stays. It
/// can be read back before. Every failure is an EFileException "...: cannot be written: ...".
class TReplacedDocument {
public:
    /// Only regular files can be replaced; a link stays, and what it leads to is replaced.
    explicit TReplacedDocument(const QString& fileName);

    QIODevice& GetDevice() { return FFile; } ///< open for writing and reading
    /// Hands all that was written to the disk.
    void Sync();
    /// Puts the new file in the place of the old one, in one step.
    void Commit();

private:
    void Check(bool succeeded, const QString& problem) const;

    const QString FFileName;
    const QString FTarget; ///< the same without links
    QTemporaryFile FFile;
};

} // namespace lmx
