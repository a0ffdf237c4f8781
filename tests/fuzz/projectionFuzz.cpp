// A projection file: its text must give a converter or none.

#include <lmx/Formats/Shapes/lmxShapePointConverter.h>

#include <QFile>
#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>

using namespace lmx;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static const QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("input.prj"));
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly))
        return 0;
    file.write(reinterpret_cast<const char*>(bytes), static_cast<qint64>(size));
    file.close();
    if (const auto converter = TSHapePointConverterFactory::GetObject(GetDatum(name))) {
        TShpPoint points[] = {{174, -41}, {2510000, 6023150}, {1e300, -1e300}};
        converter->Convert(points);
    }
    return 0;
}
