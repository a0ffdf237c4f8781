
#include <lmx/Layers/Render/Private/lmxRenderThreadPool.h>

#include <QCoreApplication>

namespace lmx {

namespace {

constexpr int RenderThreadCount = 10;

void CancelRendersWithApplication() {
    qAddPostRoutine([] { RenderThreadPool().CancelOperations(); });
}
Q_COREAPP_STARTUP_FUNCTION(CancelRendersWithApplication)

} // namespace

TThreadPool& RenderThreadPool() {
    static auto* const pool = new TThreadPool(TThreadPriority::tpNormal, RenderThreadCount);
    return *pool;
}

} // namespace lmx
