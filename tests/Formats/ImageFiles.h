#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <gtest/gtest.h>

// Sample files, and small image files made on the spot.

namespace lmx::tests {

inline QString DataFile(const char* name) {
    return QStringLiteral(LMX_SOURCE_DIR "/tests/data/idrisi/") + QString::fromLatin1(name);
}

/// A folder of its own that goes with the test.
class TImageFolder {
public:
    QString Path(const char* name) const { return FFolder.filePath(QString::fromLatin1(name)); }

    void Write(const char* name, const QByteArray& content) const {
        QFile file(Path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(content), content.size());
    }

    QByteArray Read(const char* name) const {
        QFile file(Path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no such file");
    }

private:
    QTemporaryDir FFolder;
};

/// Documentation of an image on the square 0..10; an empty data type leaves that line out.
inline QByteArray Documentation(const QByteArray& dataType, const QByteArray& fileType, int columns, int rows,
                                const QByteArray& more = QByteArray()) {
    return (dataType.isEmpty() ? QByteArray() : "data type   : " + dataType + "\r\n") + "file type   : " + fileType +
           "\r\ncolumns     : " + QByteArray::number(columns) + "\r\nrows        : " + QByteArray::number(rows) +
           "\r\nref. system : plane\r\nref. units  : m\r\nmin. X      : 0\r\nmax. X      : 10\r\n" +
           "min. Y      : 0\r\nmax. Y      : 10\r\nmin. value  : 0\r\nmax. value  : 9\r\n" + more;
}

} // namespace lmx::tests
