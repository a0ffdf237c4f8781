// Tables: a million records of 51 bytes, opened for a first screen and read whole, against reading the bytes of the
// file.

#include <benchmarks/Measuring.h>
#include <lmx/Formats/Shapes/lmxDBFReader.h>
#include <tests/Support/TableBytes.h>

#include <QFile>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>

namespace {

using namespace lmx::bench;

constexpr int Repetitions = 15;
constexpr std::uint32_t Records = 1'000'000;
constexpr int RowsOfScreen = 50;

qint64 WriteTable(const QString& fileName) {
    const QByteArray record = QByteArray("some text of a row").leftJustified(40) + "       123";
    lmx::tests::TTableBytes table;
    table.Field("NAME", 'C', 40).Field("N", 'N', 10);
    for (std::uint32_t i = 0; i < Records; ++i)
        table.Record(record);
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        std::abort();
    return file.write(table.File());
}

} // namespace

int main() {
    const QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("large.dbf"));
    const auto size = static_cast<double>(WriteTable(name));
    TBestTime read;
    TBestTime screen;
    TBestTime whole;
    double memory = 0;
    for (int i = 0; i < Repetitions; ++i) {
        read.Measure([&] {
            QFile file(name);
            if (!file.open(QIODevice::ReadOnly) || file.readAll().isEmpty())
                std::abort();
        });
        screen.Measure([&] {
            lmx::TDBFReader table(name);
            for (int row = 0; row < RowsOfScreen; ++row)
                if (const auto record = table.ReadRecord())
                    for (std::size_t field = 0; field < record->GetCount(); ++field)
                        (*record)[field].GetText();
            memory = static_cast<double>(table.GetMemorySize());
        });
        whole.Measure([&] {
            lmx::TDBFReader table(name);
            while (const auto record = table.ReadRecord())
                (*record)[0].GetText();
        });
    }
    std::printf(
        "a million records      first screen %.1f ms = %.2f x reading the bytes, in %.2f x their memory; a column "
        "of all %.1f x\n",
        screen.GetMilliseconds(), screen / read, memory / size, whole / read);
    return 0;
}
