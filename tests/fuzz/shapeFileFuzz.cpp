// A shape file. What is read must survive a walk over its shapes and a render.

#include <lmx/Formats/Shapes/lmxShpFile.h>
#include <lmx/Layers/Render/Private/lmxRenderThreadPool.h>
#include <lmx/Layers/Render/Private/lmxShapeFileRender.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <QBuffer>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace lmx;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    QByteArray input(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size));
    QBuffer stream(&input);
    stream.open(QIODevice::ReadOnly);
    try {
        const auto file = TShpFile::LoadFromStream(stream, QStringLiteral("input"), nullptr);
        std::size_t vertices = file->GetPointCount();
        for (std::size_t i = 0; i < file->GetPolygonCount(); ++i)
            for (std::size_t part = 0; part < file->GetPolygon(i).GetPartCount(); ++part)
                vertices += file->GetPolygon(i).GetPart(part).size();
        for (std::size_t i = 0; i < file->GetPolyLineCount(); ++i)
            for (std::size_t part = 0; part < file->GetPolyLine(i).GetPartCount(); ++part)
                vertices += file->GetPolyLine(i).GetPart(part).size();
        if (vertices > file->GetVertexCount() || file->GetVertexCount() * 16 > size)
            std::abort();
        TWorld world(TLatLonWorldSystemFactory::GetObject());
        const TShapeFileLayerRenderThreadHandler render({64, 32}, {}, TWorldViewportLocal(&world, 1, {-150, -60}),
                                                        file->GetData(), nullptr, 0xFF000000);
        render.Render(*RenderThreadPool().GetThread());
    } catch (const EFileFormatException&) { // a refusal is a correct answer
    }
    return 0;
}
