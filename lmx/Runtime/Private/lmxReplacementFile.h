#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QFileDevice>
#include <QString>

#include <memory>

namespace lmx {

/// Writes all of it. A device that takes a part only is asked again, so that its errorString tells why it ends there.
bool WriteAll(QIODevice& device, QByteArrayView content);

/// The new content of a file: written beside the old one, it takes its place whole, with Commit. Without a Commit, and
/// after any failure before it, the old content is still there.
///
/// Only a regular file can be replaced, and only where its folder takes a new one. A pipe, a device, and a file whose
/// folder refuses are written into instead: the content waits in a temporary file for Commit, which writes it out, and
/// a failure of that may leave a part of it.
///
/// Every failure is an EFileException "... cannot be written: ..." that names the file.
class TReplacementFile {
public:
    explicit TReplacementFile(const QString& fileName);

    QIODevice& GetDevice() { return *FFile; } ///< for writers that check what it takes
    void Write(const QByteArray& content);

    /// Hands all that was written to the system: a full disk is noticed here at the latest. Files that belong together
    /// are flushed before the first of them is committed.
    void Flush();
    /// Flushes, and puts the new content in the place of the old.
    void Commit();

private:
    void OpenBeside();
    void OpenElsewhere();
    void WriteInto();
    void Check(const QFileDevice& file, bool succeeded) const;

    const QString FFileName;
    std::unique_ptr<QFileDevice> FFile; ///< beside the old one, or elsewhere
    bool FIsBeside = true;
};

} // namespace lmx
