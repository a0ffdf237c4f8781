// A table. What is read must give a text for each of its values.

#include <lmx/Formats/Shapes/lmxDBFReader.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <QFile>
#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace lmx;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static const QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("input.dbf"));
    // The same bytes serve as memo file, whose blocks any value may name.
    for (const char* suffix : {"dbf", "dbt", "fpt"}) {
        QFile file(folder.filePath(QStringLiteral("input.") + QLatin1String(suffix)));
        if (!file.open(QIODevice::WriteOnly))
            std::abort();
        file.write(reinterpret_cast<const char*>(bytes), static_cast<qint64>(size));
    }
    try {
        TDBFReader reader(name);
        if (reader.GetMemorySize() > size + 64)
            std::abort();
        while (const auto record = reader.ReadRecord())
            for (std::size_t field = 0; field < record->GetCount(); ++field)
                (*record)[field].GetText();
    } catch (const EFileFormatException&) { // a refusal is a correct answer
    }
    return 0;
}
