// An Idrisi image: the documentation, a byte 0, the data. An image that is read must survive a walk over its cells.

#include <lmx/Formats/Idrisi/lmxImageFactory.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <QBuffer>

#include <algorithm>
#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const QByteArray input(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size));
    const qsizetype split = std::max<qsizetype>(0, input.indexOf('\0'));
    QBuffer documentation;
    documentation.setData(input.first(split));
    QBuffer data;
    data.setData(input.mid(split + 1));
    documentation.open(QIODevice::ReadOnly);
    data.open(QIODevice::ReadOnly);
    try {
        const auto image = lmx::TImageFactory::Load(documentation, data, QStringLiteral("input"));
        image->UpdateValueRange();
        const lmx::TImageHeader& header = *image->getHeader();
        image->GetValue(header.GetMaxX(), header.GetMinY());
    } catch (const lmx::EFileFormatException&) { // a refusal is a correct answer
    }
    return 0;
}
