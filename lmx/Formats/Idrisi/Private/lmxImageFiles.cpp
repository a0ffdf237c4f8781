#include <lmx/Formats/Idrisi/Private/lmxImageFiles.h>

#include <lmx/Formats/Idrisi/Private/lmxDocumentationEntries.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxText.h>

#include <QFileInfo>

#include <array>
#include <initializer_list>

namespace lmx {

namespace {

struct TGeneration {
    QString DataSuffix;
    QString DocumentationSuffix;
    TDocumentationForm Form;
};

const std::array<TGeneration, 2>& Generations() {
    static const std::array<TGeneration, 2> generations = {
        TGeneration{QStringLiteral("rst"), QStringLiteral("rdc"), TDocumentationForm::dfWindows},
        TGeneration{QStringLiteral("img"), QStringLiteral("doc"), TDocumentationForm::dfDos}};
    return generations;
}

struct TRole {
    std::size_t Generation;
    bool IsData;
};

TRole RoleOf(const QString& fileName) {
    const QString suffix = QFileInfo(fileName).suffix();
    for (std::size_t i = 0; i < Generations().size(); ++i) {
        if (SameText(suffix, Generations()[i].DataSuffix))
            return {i, true};
        if (SameText(suffix, Generations()[i].DocumentationSuffix))
            return {i, false};
    }
    throw EFileException(fileName, QStringLiteral("an Idrisi image is an .rst or .img file"));
}

QString FindSister(const QString& fileName, const TRole& role) {
    for (const std::size_t generation : {role.Generation, 1 - role.Generation}) {
        const TGeneration& names = Generations()[generation];
        QString found = FindSisterFile(fileName, role.IsData ? names.DocumentationSuffix : names.DataSuffix);
        if (!found.isEmpty())
            return found;
    }
    return {};
}

// Upper case stays with upper case: SOILS.IMG gets SOILS.DOC.
QString WithSuffix(const QString& fileName, const QString& suffix) {
    const QString present = QFileInfo(fileName).suffix();
    const bool isUpper = present == present.toUpper();
    return fileName.chopped(present.size()) + (isUpper ? suffix.toUpper() : suffix);
}

} // namespace

TImageFiles FindImageFiles(const QString& fileName) {
    const TRole role = RoleOf(fileName);
    const QString sister = FindSister(fileName, role);
    if (role.IsData && sister.isEmpty())
        throw EFileException(fileName, QStringLiteral("the documentation file (.rdc or .doc) is missing"));
    const TDocumentationForm form = Generations()[role.Generation].Form;
    return role.IsData ? TImageFiles{fileName, sister, form} : TImageFiles{sister, fileName, form};
}

TImageFiles ImageFilesFor(const QString& fileName) {
    const TRole role = RoleOf(fileName);
    const TGeneration& names = Generations()[role.Generation];
    if (role.IsData)
        return {fileName, WithSuffix(fileName, names.DocumentationSuffix), names.Form};
    return {WithSuffix(fileName, names.DataSuffix), fileName, names.Form};
}

TImageFileReader::TImageFileReader(const QString& fileName)
    : FFiles(FindImageFiles(fileName)),
      FData(FFiles.Data),
      FDocumentation(
          ParseImageDocumentation(ReadFile(FFiles.Documentation, MostDocumentationBytes), FFiles.Documentation)) {
    SettleDataType(FDocumentation, static_cast<std::uint64_t>(FData.size()), FFiles.Documentation);
}

QIODevice& TImageFileReader::GetData() {
    if (FFiles.Data.isEmpty())
        throw EFileException(FFiles.Documentation, QStringLiteral("the data file (.rst or .img) is missing"));
    if (!FData.isOpen() && !FData.open(QIODevice::ReadOnly))
        throw EFileException(FFiles.Data, QStringLiteral("cannot be opened: ") + FData.errorString());
    return FData;
}

} // namespace lmx
