#include <lmx/MapDoc/Private/lmxZipDevice.h>

#include <lmx/Runtime/Private/lmxReplacementFile.h>

#include <QIODevice>

#include <algorithm>

namespace lmx {

namespace {

TZipDevice& DeviceOf(voidpf opaque) {
    return *static_cast<TZipDevice*>(opaque);
}

voidpf Open(voidpf opaque, const void*, int) {
    return opaque;
}

uLong Read(voidpf opaque, voidpf, void* bytes, uLong size) {
    return DeviceOf(opaque).Read(bytes, size);
}

uLong Write(voidpf opaque, voidpf, const void* bytes, uLong size) {
    return DeviceOf(opaque).Write(bytes, size);
}

ZPOS64_T Tell(voidpf opaque, voidpf) {
    return DeviceOf(opaque).GetPosition();
}

long Seek(voidpf opaque, voidpf, ZPOS64_T offset, int origin) {
    return DeviceOf(opaque).Seek(offset, origin) ? 0 : -1;
}

int Close(voidpf, voidpf) {
    return 0;
}

int TestError(voidpf opaque, voidpf) {
    return DeviceOf(opaque).HasFailed() ? 1 : 0;
}

} // namespace

zlib_filefunc64_def TZipDevice::GetFunctions() {
    return {Open, lmx::Read, lmx::Write, Tell, lmx::Seek, Close, TestError, this};
}

uLong TZipDevice::Read(void* bytes, uLong size) {
    const qint64 taken = FDevice.read(static_cast<char*>(bytes), static_cast<qint64>(size));
    FHasFailed = taken != static_cast<qint64>(size);
    return static_cast<uLong>(std::max<qint64>(taken, 0));
}

uLong TZipDevice::Write(const void* bytes, uLong size) {
    FHasFailed = !WriteAll(FDevice, QByteArrayView(static_cast<const char*>(bytes), static_cast<qsizetype>(size)));
    return FHasFailed ? 0 : size;
}

ZPOS64_T TZipDevice::GetPosition() const {
    return static_cast<ZPOS64_T>(FDevice.pos());
}

bool TZipDevice::Seek(ZPOS64_T offset, int origin) {
    ZPOS64_T position = offset;
    if (origin == ZLIB_FILEFUNC_SEEK_CUR)
        position += static_cast<ZPOS64_T>(FDevice.pos());
    else if (origin == ZLIB_FILEFUNC_SEEK_END)
        position += static_cast<ZPOS64_T>(FDevice.size());
    return position <= static_cast<ZPOS64_T>(FDevice.size()) && FDevice.seek(static_cast<qint64>(position));
}

} // namespace lmx
