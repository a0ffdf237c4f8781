#include <lmx/Formats/Idrisi/lmxImageHeader.h>

#include <lmx/Formats/Idrisi/Private/lmxDocumentationEntries.h>
#include <lmx/Formats/Idrisi/Private/lmxImageDocumentation.h>
#include <lmx/Formats/Idrisi/Private/lmxImageFiles.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxText.h>

#include <algorithm>
#include <initializer_list>

namespace lmx {

namespace {

bool IsOneOf(const QString& text, std::initializer_list<QStringView> words) {
    const QString trimmed = Trim(text);
    return std::any_of(words.begin(), words.end(), [&](QStringView word) { return SameText(trimmed, word); });
}

} // namespace

bool TImageHeader::IsGeographic() const {
    return IsOneOf(FRefSystem, {u"latlong", u"lat/long", u"latlon"}) ||
           IsOneOf(FRefUnits, {u"deg", u"degree", u"degrees"});
}

void TImageHeader::LoadFromFile(const QString& fileName) {
    const QString documentation = FindImageFiles(fileName).Documentation;
    *this = ParseImageDocumentation(ReadFile(documentation, MostDocumentationBytes), documentation).Header;
}

void TImageHeader::SaveToFile(const QString& fileName) const {
    const TImageFiles files = ImageFilesFor(fileName);
    WriteFile(files.Documentation, FormatImageDocumentation(*this, files.Form));
}

} // namespace lmx
