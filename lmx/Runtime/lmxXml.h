#pragma once

#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxExport.h>

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <iterator>
#include <memory>

namespace pugi {
class xml_document;
struct xml_node_struct;
} // namespace pugi

namespace lmx {

/// A text that is no XML document. The message says in which line and why.
class LMX_EXPORT EXmlException : public Exception {
public:
    using Exception::Exception;
};

class TXmlChildren;

/// One element of a document, a light handle that is valid as long as the document lives. A node may be empty: asking
/// for an absent child gives an empty node, which has no name, no text, no attributes and no children, so that a path
/// can be followed without a test at each step. Writing to an empty node raises EInvalidOperation "XML node is empty".
///
/// Texts and values are written without what XML cannot hold: control characters other than tab and line feed are
/// left out, and line breaks become line feeds.
class LMX_EXPORT TXmlNode {
public:
    TXmlNode() = default;
    explicit TXmlNode(pugi::xml_node_struct* node) : FNode(node) {}

    bool IsEmpty() const { return !FNode; }
    QString GetName() const;

    /// The text directly inside, CDATA included; what stands inside of children is not part of it.
    QString GetText() const;
    void SetText(const QString& text);

    /// Names are compared exactly. Of two attributes of one name the first counts.
    bool HasAttribute(const QString& name) const;
    QString GetAttribute(const QString& name, const QString& absent = {}) const;
    /// Replaces the value, or adds the attribute after the others.
    void SetAttribute(const QString& name, const QString& value);

    bool HasChild(const QString& name) const { return !Child(name).IsEmpty(); }
    /// The first child of that name.
    TXmlNode Child(const QString& name) const;
    /// The elements directly inside, in order; for range loops.
    TXmlChildren GetChildren() const;
    /// Adds an element after the others.
    TXmlNode AddChild(const QString& name);

    friend bool operator==(const TXmlNode&, const TXmlNode&) = default;

private:
    void CheckNotEmpty() const;

    pugi::xml_node_struct* FNode = nullptr;
};

/// The elements inside of one, in order.
class LMX_EXPORT TXmlChildren {
public:
    class TIterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = TXmlNode;
        using difference_type = std::ptrdiff_t;
        using pointer = const TXmlNode*;
        using reference = TXmlNode;

        TIterator() = default;
        explicit TIterator(pugi::xml_node_struct* node) : FNode(node) {}
        TXmlNode operator*() const { return TXmlNode(FNode); }
        TIterator& operator++();
        friend bool operator==(const TIterator&, const TIterator&) = default;

    private:
        pugi::xml_node_struct* FNode = nullptr;
    };

    explicit TXmlChildren(pugi::xml_node_struct* parent) : FParent(parent) {}
    TIterator begin() const;
    TIterator end() const { return {}; }

private:
    pugi::xml_node_struct* FParent;
};

/// An XML document of version 1.0. It has exactly one root element.
///
/// Reading never expands entities beyond the five of XML and numbered characters; others stay as they stand, and a
/// document type is skipped. Comments and processing instructions are skipped. Blank text between elements is dropped,
/// and kept where it is an element's only content.
class LMX_EXPORT TXmlDocument {
public:
    /// A new document with an empty root element.
    explicit TXmlDocument(const QString& rootName);
    TXmlDocument(TXmlDocument&& other) noexcept;
    TXmlDocument& operator=(TXmlDocument&& other) noexcept;
    ~TXmlDocument();

    /// @throws EXmlException
    static TXmlDocument FromText(const QString& text);

    /// A document from UTF-8, or UTF-16 and UTF-32, which are told by their byte order mark or first character.
    /// @throws EXmlException
    static TXmlDocument FromBytes(const QByteArray& bytes);

    TXmlNode GetRoot() const;

    /// The document on one line, its declaration without an encoding, attributes in the order they were added.
    QString ToText() const;
    QByteArray ToBytes() const; ///< the same in UTF-8, without a byte order mark

private:
    TXmlDocument();

    std::unique_ptr<pugi::xml_document> FDocument;
};

} // namespace lmx
