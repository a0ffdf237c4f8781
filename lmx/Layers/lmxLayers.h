#pragma once

/// Everything that a host may use of this room: the layer model, the layer manager and every kind of layer.

#include <lmx/Layers/Objects/lmxAnchorData.h>
#include <lmx/Layers/Objects/lmxBaseObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxCompassRoseObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxGeneralOptions.h>
#include <lmx/Layers/Objects/lmxImageObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxLegendObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxObjectGeometry.h>
#include <lmx/Layers/Objects/lmxRectangleObjectTypeItem.h>
#include <lmx/Layers/Objects/lmxShapeLegendObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxTextBoxObjectLayerItem.h>
#include <lmx/Layers/Render/lmxBufferedBitmap.h>
#include <lmx/Layers/Render/lmxRenderThreadHandler.h>
#include <lmx/Layers/Render/lmxShapeFileProjection.h>
#include <lmx/Layers/lmxAttributeData.h>
#include <lmx/Layers/lmxBaseLayerManagerLayer.h>
#include <lmx/Layers/lmxBaseMapLayer.h>
#include <lmx/Layers/lmxBaseShapeLayer.h>
#include <lmx/Layers/lmxBufferedMapLayer.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxInfoQueryPointLayer.h>
#include <lmx/Layers/lmxLayerDuplicator.h>
#include <lmx/Layers/lmxLayerFactory.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxLayerManagerConfig.h>
#include <lmx/Layers/lmxLayerStackPainter.h>
#include <lmx/Layers/lmxLayerTypes.h>
#include <lmx/Layers/lmxObjectMapLayer.h>
#include <lmx/Layers/lmxPinMapLayer.h>
#include <lmx/Layers/lmxRasterMapLayer.h>
#include <lmx/Layers/lmxRulerMapLayer.h>
#include <lmx/Layers/lmxSelectionMapLayer.h>
#include <lmx/Layers/lmxShapeFileLayer.h>
#include <lmx/Layers/lmxSyncLayers.h>
#include <lmx/Layers/lmxVectorFileLayer.h>
