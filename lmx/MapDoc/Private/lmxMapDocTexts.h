#pragma once

#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxXml.h>

#include <QString>
#include <QUuid>

#include <cstdint>
#include <memory>

// What the persist objects share: the text forms of values in a document, and required elements.

namespace lmx {

class IWorldSystem;

QString GuidToText(const QUuid& id); ///< 38 characters with braces, in capitals
/// @throws EConvertError "'...' is not a valid GUID value" for anything but the 38 characters, of either case.
QUuid TextToGuid(const QString& text);

QString WorldSystemToText(const std::shared_ptr<IWorldSystem>& system); ///< its identifier; "null" for nil

QString Color32ToDecimal(TColor32 color); ///< unsigned
/// The low 32 bits of a 64-bit integer.
/// @throws EConvertError "'...' is not a valid integer value".
std::uint32_t DecimalToLow32(const QString& text);

/// The ordinal of an enumeration of `count` values.
/// @throws EConvertError "'...' is not a valid integer value", also for an ordinal without a value.
int TextToOrdinal(const QString& text, int count);

/// Whether a linked path leads to something that can be read: a folder or a device counts as missing.
bool IsRegularFile(const QString& fileName);
/// @throws EFileException "...: cannot be read: no regular file".
void CheckRegularFile(const QString& fileName);

void AddText(TXmlNode parent, const QString& name, const QString& text); ///< a child that holds the text
/// The text of a child.
/// @throws Exception `message` if it is absent.
QString RequiredText(TXmlNode parent, const QString& name, const QString& message);

/// The layer as one of a class.
/// @throws EArgumentException "Layer" if it is of another one, or nil.
template<class Layer, class Given>
Layer& LayerAs(Given* layer) {
    auto* const wanted = dynamic_cast<Layer*>(layer);
    if (!wanted)
        throw EArgumentException(QStringLiteral("Layer"));
    return *wanted;
}

} // namespace lmx
