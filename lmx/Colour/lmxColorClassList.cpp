#include <lmx/Colour/lmxColorClassList.h>

#include <lmx/Colour/Private/lmxColorClassIndex.h>
#include <lmx/Graphics/lmxColorText.h>
#include <lmx/Runtime/Private/lmxKeptResult.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxFormat.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Runtime/lmxText.h>
#include <lmx/Runtime/lmxTextForms.h>

#include <QStringList>

#include <atomic>
#include <utility>

namespace lmx {

namespace {

constexpr qsizetype ColorTextLength = 9;

// Positions in the text forms count from 1.
bool IsAt(const QString& text, qsizetype position, QChar wanted) {
    return position <= text.size() && text[position - 1] == wanted;
}

[[noreturn]] void RaiseExpected(QChar wanted) {
    throw Exception(QStringLiteral("Expected: ") + wanted);
}

void Expect(const QString& text, qsizetype position, QChar wanted) {
    if (!IsAt(text, position, wanted))
        RaiseExpected(wanted);
}

/// Position of the next colon from `position` on.
qsizetype ExpectColonAfter(const QString& text, qsizetype position) {
    const qsizetype index = text.indexOf(u':', position - 1);
    if (index < 0)
        RaiseExpected(u':');
    return index + 1;
}

/// Length of the class that begins at `position`; 0 if what stands there does not have the outline of one.
qsizetype ScanClass(const QString& text, qsizetype position) {
    if (!IsAt(text, position, u'('))
        return 0;
    const qsizetype nameLength = CStyleEscapedGetLength(text, position + 1);
    if (nameLength == 0 || !IsAt(text, position + 1 + nameLength, u':'))
        return 0;
    const qsizetype end = text.indexOf(u')', position + 1 + nameLength);
    return end < 0 ? 0 : end + 2 - position;
}

class TColorClasses final : public IColorClasses, public IIndexedColorClasses {
public:
    TObjectList<TColorClass>& GetClasses() override { return FColorClasses; }
    const TObjectList<TColorClass>& GetClasses() const override { return FColorClasses; }

    TColorClass* GetClass(TOutOfRangePolicy policy, float value) const override {
        return GetKeptIndex()->GetClass(policy, value);
    }
    std::shared_ptr<const TColorClassIndex> GetIndex() const override { return GetKeptIndex(); }

    QString Serialize() const override {
        const std::vector<const TColorClass*> classes(FColorClasses.begin(), FColorClasses.end());
        return SerializeColorClasses(classes);
    }

    void DeSerialize(const QString& text) override {
        FColorClasses.Clear();
        for (auto& item : DeSerializeColorClasses(text))
            FColorClasses.Add(std::move(item));
    }

private:
    using TIndex = std::shared_ptr<const TColorClassIndex>;

    const TIndex& GetKeptIndex() const;

    TObjectList<TColorClass> FColorClasses;
    mutable TKeptResult<TIndex> FIndex;
};

const TColorClasses::TIndex& TColorClasses::GetKeptIndex() const {
    const std::uint64_t changes = FColorClasses.GetChangeCount() + TColorClass::GetChangeCount();
    return FIndex.Get(
        changes, [&] { return std::make_shared<const TColorClassIndex>(FColorClasses); },
        [&](const TIndex& index) { return index->IsOf(FColorClasses); });
}

const TColorClass& NotNil(const TColorClass* source) {
    if (!source)
        throw EExArgumentNilException(QStringLiteral("TColorClass.Create"), QStringLiteral("source"));
    return *source;
}

} // namespace

TColorClass::TColorClass(const TColorClass* source) : TColorClass(NotNil(source)) {}

TColorClass& TColorClass::operator=(const TColorClass& other) {
    FName = other.FName;
    SetMinValue(other.FMinValue);
    SetMaxValue(other.FMaxValue);
    SetColor(other.FColor);
    return *this;
}

namespace {

std::atomic<std::uint64_t> ChangeCount = 0;

} // namespace

std::uint64_t TColorClass::GetChangeCount() {
    return ChangeCount.load(std::memory_order_relaxed);
}

void TColorClass::CountChange() {
    ChangeCount.fetch_add(1, std::memory_order_relaxed);
}

QString TColorClass::GetLabel() const {
    return Trim(FName).isEmpty() ? GetRange().ToString() : FName;
}

QString TColorClass::Serialize() const {
    return Format(u"(\"%s\":%.4f:%.4f:%s)", {CStyleEscape(FName), FMinValue, FMaxValue, Color32ToString(FColor)});
}

void TColorClass::DeSerialize(const QString& text) {
    if (text.isEmpty())
        throw EArgumentException(QStringLiteral("Str"));
    Expect(text, 1, u'(');
    Expect(text, 2, u'"');
    const qsizetype nameLength = CStyleEscapedGetLength(text, 2);
    const qsizetype first = 2 + nameLength; // without a closing quote, the opening one: no colon either
    Expect(text, first, u':');
    const qsizetype second = ExpectColonAfter(text, first + 1);
    const qsizetype third = ExpectColonAfter(text, second + 1);
    Expect(text, third + 1 + ColorTextLength, u')');
    FName = text.sliced(2, nameLength - 2);
    SetMinValue(StrToSingle(text.sliced(first, second - first - 1)));
    SetMaxValue(StrToSingle(text.sliced(second, third - second - 1)));
    SetColor(StringToColor32(text.sliced(third, ColorTextLength)));
}

QString SerializeColorClasses(std::span<const TColorClass* const> classes) {
    QStringList texts;
    for (const TColorClass* item : classes)
        texts += item->Serialize();
    return texts.join(u',');
}

std::vector<std::unique_ptr<TColorClass>> DeSerializeColorClasses(const QString& text) {
    std::vector<std::unique_ptr<TColorClass>> classes;
    qsizetype position = 1;
    while (text.size() > position) {
        const qsizetype length = ScanClass(text, position);
        if (length == 0)
            break;
        auto item = std::make_unique<TColorClass>();
        item->DeSerialize(text.sliced(position - 1, length));
        classes.push_back(std::move(item));
        position += length;
        if (text.size() <= position || !IsAt(text, position, u','))
            break;
        ++position;
    }
    return classes;
}

std::shared_ptr<IColorClasses> TColorClassesFactory::GetObject() {
    return std::make_shared<TColorClasses>();
}

std::shared_ptr<IColorClasses> TColorClassesFactory::GetObject(const std::shared_ptr<IColorClasses>& source) {
    if (!source)
        throw EExArgumentNilException(QStringLiteral("TColorClassesFactory.GetObject"), QStringLiteral("source"));
    const TObjectList<TColorClass>& classes = source->GetClasses();
    return GetObject(std::vector<const TColorClass*>(classes.begin(), classes.end()));
}

std::shared_ptr<IColorClasses> TColorClassesFactory::GetObject(std::initializer_list<TColorClass> classes) {
    auto list = std::make_shared<TColorClasses>();
    for (const TColorClass& item : classes)
        list->GetClasses().Add(std::make_unique<TColorClass>(item));
    return list;
}

std::shared_ptr<IColorClasses> TColorClassesFactory::GetObject(std::span<const TColorClass* const> classes) {
    auto copy = std::make_shared<TColorClasses>();
    for (const TColorClass* item : classes)
        copy->GetClasses().Add(std::make_unique<TColorClass>(item));
    return copy;
}

std::shared_ptr<IColorClasses> TColorClassesFactory::GetObject(const QString& text) {
    auto classes = std::make_shared<TColorClasses>();
    classes->DeSerialize(text);
    return classes;
}

bool TColorClassesFactory::IsMaker(const IColorClasses& classes) {
    return dynamic_cast<const TColorClasses*>(&classes) != nullptr;
}

} // namespace lmx
