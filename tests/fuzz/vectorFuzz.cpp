// A vector file of either generation. What is read must come back from its stored form, and survive a render.

#include <lmx/Formats/Idrisi/Private/lmxVectorBytes.h>
#include <lmx/Layers/Render/Private/lmxRenderThreadPool.h>
#include <lmx/Layers/Render/Private/lmxVectorFileRender.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace lmx;

namespace {

void Check(TVectorData read) {
    const QByteArray stored = FormatVectorBytes(read);
    if (FormatVectorBytes(ParseVectorBytes(stored, QStringLiteral("stored"))) != stored)
        std::abort();
    TWorld world(TLatLonAntimeridianWorldSystemFactory::GetObject());
    const TVectorFileLayerRenderThreadHandler render({64, 32}, {}, TWorldViewportLocal(&world, 1, {-150, -60}),
                                                     std::make_shared<const TVectorData>(std::move(read)), 0xFF000000);
    render.Render(*RenderThreadPool().GetThread());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const QByteArray input(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size));
    for (const bool isOld : {false, true}) {
        try {
            Check(isOld ? ParseOldVectorBytes(input, TVectorObjectType::vtNone, QStringLiteral("input"))
                        : ParseVectorBytes(input, QStringLiteral("input")));
        } catch (const EFileFormatException& refusal) { // a refusal is a correct answer
            if (refusal.FileName() == QStringLiteral("stored"))
                std::abort();
        }
    }
    return 0;
}
