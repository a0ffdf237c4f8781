#pragma once

#include <lmx/MapDoc/lmxMapDocResourcePersist.h>

#include <QBuffer>
#include <QByteArray>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace lmx::tests {

/// A folder of its own that goes with the test.
class TDocumentFolder {
public:
    QString Path(const char* name = "map.lmx") const { return FFolder.filePath(QString::fromLatin1(name)); }

    QString Write(const char* name, const QByteArray& content) const {
        QFile file(Path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(file.write(content), content.size());
        return Path(name);
    }

    QByteArray Read(const char* name = "map.lmx") const {
        QFile file(Path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no such file");
    }

private:
    QTemporaryDir FFolder;
};

/// Bytes of an archive in memory, open for reading.
struct TArchiveInMemory {
    explicit TArchiveInMemory(const QByteArray& content) : Bytes(content) {
        Buffer.setBuffer(&Bytes);
        Buffer.open(QIODevice::ReadOnly);
    }

    QByteArray Bytes;
    QBuffer Buffer;
};

} // namespace lmx::tests
