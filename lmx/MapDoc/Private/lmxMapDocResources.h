#pragma once

#include <lmx/MapDoc/lmxMapDocLayerPersist.h>

#include <QBuffer>
#include <QByteArray>
#include <QString>

// How layers keep the data of files: the element `resource` says "linked", with the path in `filename`, or "embedded",
// with entries in the folder of the layer's id.

namespace lmx {

inline const QString Resource = QStringLiteral("resource");
inline const QString Linked = QStringLiteral("linked");
inline const QString Embedded = QStringLiteral("embedded");
inline const QString FileName = QStringLiteral("filename");

/// Whether data that came from `fileName` are embedded: always if there is no such file.
bool IsEmbedded(TMapDocExternalResourcePolicy policy, const QString& fileName);

void AddLink(TXmlNode data, const QString& fileName); ///< `resource` and `filename`

/// Folder of a layer's entries.
QString FolderOf(const TBaseMapLayer& layer);

/// @throws EInvalidOperation `Layer "name" has no <what>`.
[[noreturn]] void RefuseEmptyLayer(const TBaseMapLayer& layer, const QString& what);

/// What an object that saves itself to a stream writes.
template<class Saved>
QByteArray BytesOf(const Saved& saved) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    saved.SaveToStream(buffer);
    return bytes;
}

/// Has an object load itself from bytes, which it may hold while it loads.
template<class Loaded>
void LoadFromBytes(Loaded& loaded, QByteArray bytes) {
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    loaded.LoadFromStream(buffer);
}

} // namespace lmx
