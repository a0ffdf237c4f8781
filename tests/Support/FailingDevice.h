#pragma once

#include <QBuffer>
#include <QString>

#include <limits>

namespace lmx::tests {

/// Memory whose n-th write fails, and every one after it: a disk that is full.
class TFailingDevice : public QBuffer {
public:
    explicit TFailingDevice(int writesBefore = std::numeric_limits<int>::max()) : FWritesLeft(writesBefore) {
        open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    }

    int GetWrites() const { return FWrites; }

protected:
    qint64 writeData(const char* data, qint64 size) override {
        if (FWrites >= FWritesLeft) {
            setErrorString(QStringLiteral("No space left on device"));
            return -1;
        }
        ++FWrites;
        return QBuffer::writeData(data, size);
    }

private:
    int FWritesLeft;
    int FWrites = 0;
};

} // namespace lmx::tests
