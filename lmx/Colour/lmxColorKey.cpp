#include <lmx/Colour/lmxColorKey.h>

#include <lmx/Graphics/lmxColorText.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxText.h>
#include <lmx/Runtime/lmxTextForms.h>

#include <QStringList>

namespace lmx {

namespace {

constexpr qsizetype ColorTextLength = 9;

// Positions in the text forms count from 1.
bool IsAt(const QString& text, qsizetype position, QChar wanted) {
    return position <= text.size() && text[position - 1] == wanted;
}

void Expect(const QString& text, qsizetype position, QChar wanted) {
    if (!IsAt(text, position, wanted))
        throw Exception(QStringLiteral("Expected: ") + wanted);
}

/// Length of the item that begins at `position`; 0 if what stands there does not have the shape of one.
qsizetype ScanItem(const QString& text, qsizetype position) {
    if (!IsAt(text, position, u'(') || !IsAt(text, position + 1, u'"'))
        return 0;
    const qsizetype nameLength = CStyleEscapedGetLength(text, position + 1);
    if (nameLength == 0)
        return 0;
    const qsizetype colon = position + 1 + nameLength;
    const qsizetype end = colon + 1 + ColorTextLength;
    if (!IsAt(text, colon, u':') || !IsAt(text, colon + 1, u'#') || !IsAt(text, end, u')'))
        return 0;
    return end + 1 - position;
}

class TColorKey final : public IColorKey {
public:
    TColorKey() = default;
    explicit TColorKey(std::span<const TColorKeyItem> items) : FColors(items.begin(), items.end()) {}

    std::vector<TColorKeyItem>& GetColors() override { return FColors; }
    const std::vector<TColorKeyItem>& GetColors() const override { return FColors; }

    QString Serialize() const override {
        QStringList texts;
        for (const TColorKeyItem& item : FColors)
            texts += item.Serialize();
        return texts.join(u',');
    }

    void DeSerialize(const QString& text) override;

private:
    std::vector<TColorKeyItem> FColors;
};

void TColorKey::DeSerialize(const QString& untrimmed) {
    FColors.clear();
    const QString text = Trim(untrimmed);
    qsizetype position = 1;
    while (text.size() > position) {
        const qsizetype length = ScanItem(text, position);
        if (length == 0)
            break;
        TColorKeyItem item;
        item.DeSerialize(text.sliced(position - 1, length));
        FColors.push_back(item);
        position += length;
        if (text.size() <= position || !IsAt(text, position, u','))
            break;
        ++position;
    }
}

} // namespace

QString TColorKeyItem::Serialize() const {
    return QStringLiteral("(\"") + CStyleEscape(Name) + QStringLiteral("\":") + Color32ToString(Color) + u')';
}

void TColorKeyItem::DeSerialize(const QString& text) {
    if (text.isEmpty())
        throw EArgumentException(QStringLiteral("Str"));
    Expect(text, 1, u'(');
    Expect(text, 2, u'"');
    const qsizetype nameLength = CStyleEscapedGetLength(text, 2);
    const qsizetype colon = 2 + nameLength; // without a closing quote, the opening one: no colon either
    Expect(text, colon, u':');
    Expect(text, colon + 1, u'#');
    Expect(text, colon + 1 + ColorTextLength, u')');
    const QString name = CStyleUnescape(text.sliced(2, nameLength - 2));
    const TColor32 color = StringToColor32(text.sliced(colon, ColorTextLength));
    Name = name;
    Color = color;
}

std::shared_ptr<IColorKey> TColorKeyFactory::GetObject() {
    return std::make_shared<TColorKey>();
}

std::shared_ptr<IColorKey> TColorKeyFactory::GetObject(const std::shared_ptr<IColorKey>& source) {
    if (!source)
        throw EExArgumentNilException(QStringLiteral("TColorKeyFactory.GetObject"), QStringLiteral("source"));
    return GetObject(source->GetColors());
}

std::shared_ptr<IColorKey> TColorKeyFactory::GetObject(std::span<const TColorKeyItem> items) {
    return std::make_shared<TColorKey>(items);
}

std::shared_ptr<IColorKey> TColorKeyFactory::GetObject(std::initializer_list<TColorKeyItem> items) {
    return GetObject(std::span<const TColorKeyItem>(items));
}

std::shared_ptr<IColorKey> TColorKeyFactory::GetObject(const QString& text) {
    auto key = std::make_shared<TColorKey>();
    key->DeSerialize(text);
    return key;
}

} // namespace lmx
