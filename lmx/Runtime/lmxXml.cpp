#include <lmx/Runtime/lmxXml.h>

#include <lmx/Runtime/lmxNumberText.h>

#include <QStringConverter>

#include <algorithm>
#include <pugixml.hpp>

namespace lmx {

namespace {

[[noreturn]] void Refuse(const QByteArray& bytes, qsizetype offset, const QString& reason) {
    const auto end = bytes.begin() + std::clamp<qsizetype>(offset, 0, bytes.size());
    throw EXmlException(QStringLiteral("Invalid XML in line ") + IntToStr(std::count(bytes.begin(), end, '\n') + 1) +
                        QStringLiteral(": ") + reason);
}

qsizetype FirstVisible(const QByteArray& bytes, qsizetype offset) {
    while (offset < bytes.size() && static_cast<unsigned char>(bytes[offset]) <= ' ')
        ++offset;
    return offset;
}

/// The parser itself takes any number of root elements, and text beside them.
void CheckRoot(const pugi::xml_document& document, const QByteArray& bytes) {
    bool hasRoot = false;
    for (const pugi::xml_node node : document.children()) {
        if (node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata)
            Refuse(bytes, FirstVisible(bytes, node.offset_debug()), QStringLiteral("text outside the root element"));
        if (node.type() != pugi::node_element)
            continue;
        if (hasRoot)
            Refuse(bytes, node.offset_debug(), QStringLiteral("more than one root element"));
        hasRoot = true;
    }
    if (!hasRoot)
        Refuse(bytes, bytes.size(), QStringLiteral("no root element"));
}

void Parse(const QByteArray& bytes, pugi::xml_document& document) {
    if (const auto zero = bytes.indexOf('\0'); zero >= 0) // the parser would take it for the end
        Refuse(bytes, zero, QStringLiteral("invalid character"));
    // As a fragment, so that text outside the root element is there to be seen.
    constexpr unsigned Options = pugi::parse_default | pugi::parse_ws_pcdata_single | pugi::parse_fragment;
    const pugi::xml_parse_result result =
        document.load_buffer(bytes.data(), static_cast<std::size_t>(bytes.size()), Options, pugi::encoding_utf8);
    if (!result)
        Refuse(bytes, result.offset, QString::fromLatin1(result.description()));
    CheckRoot(document, bytes);
}

QByteArray WritableText(const QString& text) {
    QString writable = text;
    writable.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    writable.replace(u'\r', u'\n');
    writable.removeIf([](QChar c) { return c < u' ' && c != u'\t' && c != u'\n'; });
    return writable.toUtf8();
}

pugi::xml_node_struct* ElementFrom(pugi::xml_node node) {
    while (node && node.type() != pugi::node_element)
        node = node.next_sibling();
    return node.internal_object();
}

} // namespace

void TXmlNode::CheckNotEmpty() const {
    if (!FNode)
        throw EInvalidOperation(QStringLiteral("XML node is empty"));
}

QString TXmlNode::GetName() const {
    return QString::fromUtf8(pugi::xml_node(FNode).name());
}

QString TXmlNode::GetText() const {
    QByteArray text;
    for (const pugi::xml_node child : pugi::xml_node(FNode).children())
        if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata)
            text += child.value();
    return QString::fromUtf8(text);
}

void TXmlNode::SetText(const QString& text) {
    CheckNotEmpty();
    pugi::xml_node node(FNode);
    for (pugi::xml_node child = node.first_child(); child;) {
        const pugi::xml_node next = child.next_sibling();
        if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata)
            node.remove_child(child);
        child = next;
    }
    node.append_child(pugi::node_pcdata).set_value(WritableText(text).constData());
}

bool TXmlNode::HasAttribute(const QString& name) const {
    return !pugi::xml_node(FNode).attribute(name.toUtf8().constData()).empty();
}

QString TXmlNode::GetAttribute(const QString& name, const QString& absent) const {
    const pugi::xml_attribute attribute = pugi::xml_node(FNode).attribute(name.toUtf8().constData());
    return attribute ? QString::fromUtf8(attribute.value()) : absent;
}

void TXmlNode::SetAttribute(const QString& name, const QString& value) {
    CheckNotEmpty();
    const QByteArray bytes = name.toUtf8();
    pugi::xml_node node(FNode);
    pugi::xml_attribute attribute = node.attribute(bytes.constData());
    if (!attribute)
        attribute = node.append_attribute(bytes.constData());
    attribute.set_value(WritableText(value).constData());
}

TXmlNode TXmlNode::Child(const QString& name) const {
    return TXmlNode(pugi::xml_node(FNode).child(name.toUtf8().constData()).internal_object());
}

TXmlChildren TXmlNode::GetChildren() const {
    return TXmlChildren(FNode);
}

TXmlNode TXmlNode::AddChild(const QString& name) {
    CheckNotEmpty();
    return TXmlNode(pugi::xml_node(FNode).append_child(name.toUtf8().constData()).internal_object());
}

TXmlChildren::TIterator& TXmlChildren::TIterator::operator++() {
    FNode = ElementFrom(pugi::xml_node(FNode).next_sibling());
    return *this;
}

TXmlChildren::TIterator TXmlChildren::begin() const {
    return TIterator(ElementFrom(pugi::xml_node(FParent).first_child()));
}

TXmlDocument::TXmlDocument() : FDocument(std::make_unique<pugi::xml_document>()) {}

TXmlDocument::TXmlDocument(const QString& rootName) : TXmlDocument() {
    FDocument->append_child(rootName.toUtf8().constData());
}

TXmlDocument::TXmlDocument(TXmlDocument&& other) noexcept = default;
TXmlDocument& TXmlDocument::operator=(TXmlDocument&& other) noexcept = default;
TXmlDocument::~TXmlDocument() = default;

TXmlDocument TXmlDocument::FromText(const QString& text) {
    TXmlDocument document;
    Parse(text.toUtf8(), *document.FDocument);
    return document;
}

TXmlDocument TXmlDocument::FromBytes(const QByteArray& bytes) {
    QStringDecoder decoder(QStringConverter::encodingForData(bytes, u'<').value_or(QStringConverter::Utf8));
    const QString text = decoder(bytes);
    if (decoder.hasError())
        throw EXmlException(QStringLiteral("Invalid XML: not a text in UTF-8, UTF-16 or UTF-32"));
    return FromText(text);
}

TXmlNode TXmlDocument::GetRoot() const {
    return TXmlNode(FDocument->document_element().internal_object());
}

QString TXmlDocument::ToText() const {
    return QString::fromUtf8(ToBytes());
}

QByteArray TXmlDocument::ToBytes() const {
    struct TWriter : pugi::xml_writer {
        QByteArray Bytes;
        void write(const void* data, std::size_t size) override {
            Bytes.append(static_cast<const char*>(data), static_cast<qsizetype>(size));
        }
    } writer;
    FDocument->save(writer, "", pugi::format_raw, pugi::encoding_utf8);
    return writer.Bytes;
}

} // namespace lmx
