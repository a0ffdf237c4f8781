#pragma once

/// Everything that a host may use of this room: Idrisi images, palettes and vectors, shape files, delimited text.

#include <lmx/Formats/Idrisi/lmxAbstractImage.h>
#include <lmx/Formats/Idrisi/lmxGeoPoint.h>
#include <lmx/Formats/Idrisi/lmxIdrisiImageExporter.h>
#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>
#include <lmx/Formats/Idrisi/lmxIdrisiPalFile.h>
#include <lmx/Formats/Idrisi/lmxImageFactory.h>
#include <lmx/Formats/Idrisi/lmxImageHeader.h>
#include <lmx/Formats/Idrisi/lmxVector.h>
#include <lmx/Formats/Idrisi/lmxVectorData.h>
#include <lmx/Formats/Idrisi/lmxVectorHeader.h>
#include <lmx/Formats/Shapes/lmxDBFReader.h>
#include <lmx/Formats/Shapes/lmxRecordNumbers.h>
#include <lmx/Formats/Shapes/lmxShapeKind.h>
#include <lmx/Formats/Shapes/lmxShapePointConverter.h>
#include <lmx/Formats/Shapes/lmxShpFile.h>
#include <lmx/Formats/Shapes/lmxShpOutlines.h>
#include <lmx/Formats/Shapes/lmxShpPoint.h>
#include <lmx/Formats/Text/lmxCSVReader.h>
#include <lmx/Formats/lmxVertexBlock.h>
