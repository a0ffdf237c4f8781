#include <lmx/Formats/Idrisi/lmxImageFactory.h>

#include <lmx/Formats/Idrisi/Private/lmxDocumentationEntries.h>
#include <lmx/Formats/Idrisi/Private/lmxImageFiles.h>
#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <QIODevice>

#include <algorithm>
#include <array>

namespace lmx {

namespace {

template<class Image>
TImageClass ClassOf() {
    return {Image::ClassName(), &Image::Accepts,
            [](const QString& filePath, bool load) -> std::unique_ptr<TAbstractImage> {
                return std::make_unique<Image>(filePath, load);
            },
            [](const QString& filePath, const TImageHeader& header) -> std::unique_ptr<TAbstractImage> {
                return std::make_unique<Image>(filePath, header);
            }};
}

const std::array<TImageClass, 4>& ImageClasses() {
    static const std::array<TImageClass, 4> classes = {ClassOf<TByteImage>(), ClassOf<TIntegerImage>(),
                                                       ClassOf<TRealImage>(), ClassOf<TAsciiImage>()};
    return classes;
}

const TImageClass& ClassFor(const TImageHeader& header, const QString& fileName) {
    for (const TImageClass& imageClass : ImageClasses())
        if (imageClass.Accepts(header))
            return imageClass;
    throw EFileFormatException(fileName, QStringLiteral("an RGB24 image holds colours, not values"));
}

} // namespace

std::unique_ptr<TAbstractImage> TImageFactory::Load(const QString& filePath, const TImageHeader& header,
                                                    bool hasValueRange, QIODevice& data, const QString& dataName) {
    std::unique_ptr<TAbstractImage> image = ClassFor(header, dataName).Create(filePath, header);
    image->LoadData(data, dataName);
    if (!hasValueRange)
        image->UpdateValueRange();
    return image;
}

std::unique_ptr<TAbstractImage> TImageFactory::Load(const QString& fileName) {
    TImageFileReader reader(fileName);
    QIODevice& data = reader.GetData();
    return Load(fileName, reader.GetHeader(), reader.HasValueRange(), data, reader.GetDataName());
}

std::unique_ptr<TAbstractImage> TImageFactory::Load(QIODevice& documentation, QIODevice& data, const QString& name) {
    if (documentation.bytesAvailable() > MostDocumentationBytes)
        throw EFileFormatException(name, QStringLiteral("holds more than ") + IntToStr(MostDocumentationBytes) +
                                             QStringLiteral(" bytes of documentation"));
    TImageDocumentation parsed = ParseImageDocumentation(documentation.readAll(), name);
    SettleDataType(parsed, static_cast<std::uint64_t>(data.bytesAvailable()), name);
    return Load(QString(), parsed.Header, parsed.HasValueRange, data, name);
}

const TImageClass* TImageFactory::GetImageClass(const QString& name) {
    const auto& classes = ImageClasses();
    const auto found = std::find_if(classes.begin(), classes.end(),
                                    [&name](const TImageClass& imageClass) { return imageClass.Name == name; });
    return found == classes.end() ? nullptr : &*found;
}

} // namespace lmx
