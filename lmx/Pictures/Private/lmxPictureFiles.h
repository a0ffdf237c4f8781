#pragma once

#include <lmx/Pictures/Private/lmxPicturePainting.h>

#include <QByteArray>
#include <QString>

namespace lmx {

enum class TPictureFormat { pfPng, pfPdf };

/// By the suffix of a name.
/// @throws EFileException "pictures are written as .png or .pdf" for another one.
TPictureFormat PictureFormatOf(const QString& fileName);

/// The bytes of a file that holds the picture and its description.
/// @throws EFileException "the picture cannot be encoded"; EOutOfMemory.
QByteArray EncodePicture(TPaintedPicture& picture, TPictureFormat format, const QString& fileName);

} // namespace lmx
