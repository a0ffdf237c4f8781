#pragma once

/// Everything that a host may use of this room: map documents, which keep a whole map in one file.

#include <lmx/MapDoc/lmxBaseRasterMapLayerPersist.h>
#include <lmx/MapDoc/lmxColorCalcPersist.h>
#include <lmx/MapDoc/lmxIdrisiMapLayerPersist.h>
#include <lmx/MapDoc/lmxInfoQueryPointLayerPersist.h>
#include <lmx/MapDoc/lmxMapDocInspector.h>
#include <lmx/MapDoc/lmxMapDocLayerPersist.h>
#include <lmx/MapDoc/lmxMapDocLoadReport.h>
#include <lmx/MapDoc/lmxMapDocReader.h>
#include <lmx/MapDoc/lmxMapDocRelinker.h>
#include <lmx/MapDoc/lmxMapDocResourcePersist.h>
#include <lmx/MapDoc/lmxMapDocWriter.h>
#include <lmx/MapDoc/lmxObjectLayerTypeItemPersist.h>
#include <lmx/MapDoc/lmxObjectMapLayerPersist.h>
#include <lmx/MapDoc/lmxRulerMapLayerPersist.h>
#include <lmx/MapDoc/lmxShapeFileLayerPersist.h>
#include <lmx/MapDoc/lmxVectorFileLayerPersist.h>
#include <lmx/MapDoc/lmxVerifiedMapDocWriter.h>
