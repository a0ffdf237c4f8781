#include <lmx/Layers/lmxLayerData.h>

namespace lmx {

ILayerWithData::~ILayerWithData() = default;

} // namespace lmx
