#include <lmx/Formats/Idrisi/Private/lmxDocumentationEntries.h>

#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Runtime/lmxText.h>

namespace lmx {

namespace {

QString BareKey(const QString& key) {
    QString bare;
    for (const QChar c : key.toLower())
        if ((c >= u'a' && c <= u'z') || (c >= u'0' && c <= u'9'))
            bare += c;
    return bare;
}

// "code 5" or "category 5"; a code may be negative.
bool TryCode(const QString& key, std::int32_t& code) {
    for (const QString& word : {QStringLiteral("code"), QStringLiteral("category")})
        if (key.startsWith(word, Qt::CaseInsensitive) && TryStrToInt(Trim(key.sliced(word.size())), code))
            return true;
    return false;
}

} // namespace

TDocumentationEntries::TDocumentationEntries(const QString& text) {
    std::int64_t number = 0;
    for (const QString& line : SplitLines(text)) {
        ++number;
        const qsizetype colon = line.indexOf(u':');
        if (colon > 0)
            Add(line.first(colon), Trim(line.sliced(colon + 1)), number);
    }
}

QString TDocumentationEntries::LineOf(const QString& key) const {
    const auto line = FLines.constFind(key);
    return line == FLines.cend() ? QString() : QStringLiteral("line ") + IntToStr(*line) + QStringLiteral(": ");
}

bool TDocumentationEntries::TryNumber(const QString& key, float& value) const {
    return TryStrToFloat(First(key), value, TFormatSettings::Invariant());
}

void TDocumentationEntries::Add(const QString& key, const QString& text, std::int64_t line) {
    std::int32_t code = 0;
    if (TryCode(Trim(key), code)) {
        FCategories.try_emplace(code, text);
        return;
    }
    const QString bareKey = BareKey(key);
    FTexts[bareKey] += text;
    if (!FLines.contains(bareKey))
        FLines.insert(bareKey, line);
}

} // namespace lmx
