#include <lmx/MapDoc/Private/lmxReplacedDocument.h>

#include <lmx/Runtime/lmxExceptions.h>

#include <QFileInfo>

#include <filesystem>
#include <system_error>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace lmx {

namespace {

QString TargetOf(const QString& fileName) {
    const QFileInfo info(fileName);
    return info.exists() ? info.canonicalFilePath() : info.absoluteFilePath();
}

bool SyncToDisk(int handle) {
#ifdef Q_OS_UNIX
    return fsync(handle) == 0;
#else
    Q_UNUSED(handle);
    return true;
#endif
}

// The name in the folder is on the disk only when the folder is. Some file systems cannot be asked.
void SyncFolderOf(const QString& target) {
#ifdef Q_OS_UNIX
    const QByteArray folder = QFile::encodeName(QFileInfo(target).absolutePath());
    const int handle = open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle < 0)
        return;
    SyncToDisk(handle);
    close(handle);
#else
    Q_UNUSED(target);
#endif
}

// Those of the old file, or what any new file gets; a temporary file is its owner's alone.
QFile::Permissions PermissionsFor(const QString& target) {
    if (QFileInfo::exists(target))
        return QFile::permissions(target);
#ifdef Q_OS_UNIX
    const mode_t mask = umask(0);
    umask(mask);
    const mode_t mode = 0666 & ~mask;
    QFile::Permissions permissions = QFile::ReadOwner | QFile::WriteOwner;
    permissions.setFlag(QFile::ReadGroup, (mode & S_IRGRP) != 0);
    permissions.setFlag(QFile::WriteGroup, (mode & S_IWGRP) != 0);
    permissions.setFlag(QFile::ReadOther, (mode & S_IROTH) != 0);
    permissions.setFlag(QFile::WriteOther, (mode & S_IWOTH) != 0);
    return permissions;
#else
    return QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther;
#endif
}

} // namespace

TReplacedDocument::TReplacedDocument(const QString& fileName)
    : FFileName(fileName),
      FTarget(TargetOf(fileName)),
      FFile(FTarget + QStringLiteral(".XXXXXX")) {
    const QFileInfo present(FTarget);
    Check(!present.exists() || present.isFile(), QStringLiteral("no regular file"));
    const bool isOpen = FFile.open();
    Check(isOpen, FFile.errorString());
}

void TReplacedDocument::Sync() {
    const bool isFlushed = FFile.flush();
    Check(isFlushed, FFile.errorString());
    Check(SyncToDisk(FFile.handle()), QStringLiteral("the disk does not take it"));
}

void TReplacedDocument::Commit() {
    const bool hasPermissions = FFile.setPermissions(PermissionsFor(FTarget));
    Check(hasPermissions, FFile.errorString());
    std::error_code error;
    std::filesystem::rename(FFile.fileName().toStdU16String(), FTarget.toStdU16String(), error);
    Check(!error, QString::fromStdString(error.message()));
    FFile.setAutoRemove(false);
    SyncFolderOf(FTarget);
}

void TReplacedDocument::Check(bool succeeded, const QString& problem) const {
    if (!succeeded)
        throw EFileException(FFileName, QStringLiteral("cannot be written: ") + problem);
}

} // namespace lmx
