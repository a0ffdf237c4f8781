#include <lmx/Runtime/lmxXml.h>
#include <tests/Support/Printers.h>

#include <QStringConverter>
#include <QStringList>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using tests::MessageOf;

TXmlDocument Read(const char* text) {
    return TXmlDocument::FromText(QString::fromUtf8(text));
}

QString TextOf(const char* text) {
    return Read(text).GetRoot().GetText();
}

QStringList NamesOf(const TXmlNode& node) {
    QStringList names;
    for (const TXmlNode& child : node.GetChildren())
        names += child.GetName();
    return names;
}

TEST(Xml, WritesOneLineWithAttributesInTheirOrder) {
    TXmlDocument document(QStringLiteral("map"));
    TXmlNode layer = document.GetRoot().AddChild(QStringLiteral("layer"));
    layer.SetAttribute(QStringLiteral("z"), QStringLiteral("1"));
    layer.SetAttribute(QStringLiteral("a"), QStringLiteral("2"));
    layer.SetAttribute(QStringLiteral("z"), QStringLiteral("3"));
    document.GetRoot().AddChild(QStringLiteral("name")).SetText(QStringLiteral("sea & <land>"));
    EXPECT_EQ(document.ToText(),
              "<?xml version=\"1.0\"?><map><layer z=\"3\" a=\"2\"/><name>sea &amp; &lt;land&gt;</name></map>");
    EXPECT_EQ(document.ToBytes(), document.ToText().toUtf8());
}

class XmlText : public testing::TestWithParam<const char*> {};

TEST_P(XmlText, ComesBackFromAnElementAndAnAttribute) {
    const QString text = QString::fromUtf8(GetParam());
    TXmlDocument document(QStringLiteral("r"));
    document.GetRoot().SetText(text);
    document.GetRoot().SetAttribute(QStringLiteral("a"), text);
    const TXmlDocument read = TXmlDocument::FromBytes(document.ToBytes());
    EXPECT_EQ(read.GetRoot().GetText(), text);
    EXPECT_EQ(read.GetRoot().GetAttribute(QStringLiteral("a")), text);
}

INSTANTIATE_TEST_SUITE_P(Texts, XmlText,
                         testing::Values("", "plain", " ", " blanks ", "a<b>&\"c\"'d'", "&amp;", "]]>", "two\nlines",
                                         "tab\there", "Größe 10 µm – 雨 😀"));

TEST(Xml, WritesOnlyWhatXmlCanHold) {
    TXmlDocument document(QStringLiteral("r"));
    document.GetRoot().SetText(QStringLiteral("a\r\nb\rc\nd\x01\x1F") + QChar(0) + u'e');
    EXPECT_EQ(document.GetRoot().GetText(), "a\nb\nc\nde");
    EXPECT_EQ(TXmlDocument::FromBytes(document.ToBytes()).GetRoot().GetText(), "a\nb\nc\nde");
}

TEST(Xml, ReplacesTheTextAndLeavesChildren) {
    const TXmlDocument document = Read("<r>a<b/>c<![CDATA[d]]></r>");
    TXmlNode root = document.GetRoot();
    EXPECT_EQ(root.GetText(), "acd");
    root.SetText(QStringLiteral("new"));
    EXPECT_EQ(document.ToText(), "<?xml version=\"1.0\"?><r><b/>new</r>");
}

TEST(Xml, ReadsElementsInOrderAndSkipsEverythingElse) {
    const TXmlDocument document =
        Read("<?xml version=\"1.0\"?><!-- c --><!DOCTYPE r><r>\n <a/>text<!-- c --><b x='1'/><?pi?><a y='2'/> </r>\n");
    EXPECT_EQ(NamesOf(document.GetRoot()), (QStringList{"a", "b", "a"}));
    EXPECT_EQ(document.GetRoot().Child(QStringLiteral("b")).GetAttribute(QStringLiteral("x")), "1");
    EXPECT_FALSE(document.GetRoot().Child(QStringLiteral("a")).HasAttribute(QStringLiteral("y"))); // the first
}

TEST(Xml, NamesAreComparedExactly) {
    const TXmlDocument document = Read("<r A='1'><B/></r>");
    EXPECT_TRUE(document.GetRoot().HasChild(QStringLiteral("B")));
    EXPECT_FALSE(document.GetRoot().HasChild(QStringLiteral("b")));
    EXPECT_TRUE(document.GetRoot().HasAttribute(QStringLiteral("A")));
    EXPECT_FALSE(document.GetRoot().HasAttribute(QStringLiteral("a")));
    EXPECT_EQ(document.GetRoot().GetAttribute(QStringLiteral("a"), QStringLiteral("absent")), "absent");
}

TEST(Xml, AnAbsentNodeIsEmptyAllTheWayDown) {
    const TXmlDocument document = Read("<r/>");
    TXmlNode node = document.GetRoot().Child(QStringLiteral("x")).Child(QStringLiteral("y"));
    EXPECT_TRUE(node.IsEmpty());
    EXPECT_EQ(node, TXmlNode());
    EXPECT_EQ(node.GetName(), "");
    EXPECT_EQ(node.GetText(), "");
    EXPECT_FALSE(node.HasAttribute(QStringLiteral("a")));
    EXPECT_EQ(NamesOf(node), QStringList());
    const char* const message = "XML node is empty";
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { node.SetText({}); }), message);
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { node.SetAttribute(QStringLiteral("a"), {}); }), message);
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { node.AddChild(QStringLiteral("a")); }), message);
}

TEST(Xml, KeepsBlankTextOnlyAsSoleContent) {
    EXPECT_EQ(TextOf("<r>  </r>"), "  ");
    EXPECT_EQ(TextOf("<r> <a/> </r>"), "");
    EXPECT_EQ(TextOf("<r>a\r\nb\rc</r>"), "a\nb\nc");
}

TEST(Xml, ExpandsNoEntitiesBeyondThoseOfXml) {
    EXPECT_EQ(TextOf("<r>&lt;&gt;&amp;&quot;&apos;&#65;&#x42;</r>"), "<>&\"'AB");
    EXPECT_EQ(TextOf("<!DOCTYPE r [<!ENTITY a \"aaaa\"><!ENTITY b \"&a;&a;\">]><r>&b;</r>"), "&b;");
    EXPECT_EQ(TextOf("<!DOCTYPE r [<!ENTITY x SYSTEM \"file:///etc/passwd\">]><r>&x;</r>"), "&x;");
}

struct TDamageRow {
    const char* Text;
    const char* Message;
};

class DamagedXml : public testing::TestWithParam<TDamageRow> {};

TEST_P(DamagedXml, IsRefusedWithLineAndReason) {
    EXPECT_EQ(MessageOf<EXmlException>([] { Read(GetParam().Text); }), QString::fromUtf8(GetParam().Message));
}

INSTANTIATE_TEST_SUITE_P(
    Texts, DamagedXml,
    testing::Values(TDamageRow{"", "Invalid XML in line 1: no root element"},
                    TDamageRow{" \n ", "Invalid XML in line 2: no root element"},
                    TDamageRow{"<?xml version=\"1.0\"?>\n<!-- c -->", "Invalid XML in line 2: no root element"},
                    TDamageRow{"hello", "Invalid XML in line 1: text outside the root element"},
                    TDamageRow{"<r/>\nhello", "Invalid XML in line 2: text outside the root element"},
                    TDamageRow{"<![CDATA[x]]><r/>", "Invalid XML in line 1: text outside the root element"},
                    TDamageRow{"<r/>\n<r/>", "Invalid XML in line 2: more than one root element"},
                    TDamageRow{"<r>\n<a></r>", "Invalid XML in line 2: Start-end tags mismatch"},
                    TDamageRow{"<r>\n\n", "Invalid XML in line 2: Start-end tags mismatch"},
                    TDamageRow{"</r>", "Invalid XML in line 1: Start-end tags mismatch"},
                    TDamageRow{"<r a=1/>", "Invalid XML in line 1: Error parsing element attribute"},
                    TDamageRow{"<r a='1/>", "Invalid XML in line 1: Error parsing element attribute"},
                    TDamageRow{"<r><", "Invalid XML in line 1: Could not determine tag type"},
                    TDamageRow{"<r", "Invalid XML in line 1: Error parsing start element tag"},
                    TDamageRow{"<r></r", "Invalid XML in line 1: Error parsing end element tag"},
                    TDamageRow{"<r><!-- c </r>", "Invalid XML in line 1: Error parsing comment"},
                    TDamageRow{"<r><![CDATA[ </r>", "Invalid XML in line 1: Error parsing CDATA section"},
                    TDamageRow{"<!DOCTYPE r [", "Invalid XML in line 1: Error parsing document type declaration"},
                    TDamageRow{"<?xml version=\"1.0\" <r/>",
                               "Invalid XML in line 1: Error parsing document declaration/processing instruction"}));

TEST(Xml, RefusesACharacterThatWouldHideTheRest) {
    EXPECT_EQ(MessageOf<EXmlException>([] { TXmlDocument::FromText(QStringLiteral("<r/>\n") + QChar(0) + u'x'); }),
              "Invalid XML in line 2: invalid character");
}

class XmlEncoding : public testing::TestWithParam<QStringConverter::Encoding> {};

TEST_P(XmlEncoding, IsToldByItsFirstBytes) {
    const QString text = QStringLiteral("<r>Größe – 雨</r>");
    for (const auto flag : {QStringConverter::Flag::Default, QStringConverter::Flag::WriteBom}) {
        QStringEncoder encoder(GetParam(), flag);
        const QByteArray bytes = encoder(text);
        EXPECT_EQ(TXmlDocument::FromBytes(bytes).GetRoot().GetText(), QStringLiteral("Größe – 雨"));
    }
}

INSTANTIATE_TEST_SUITE_P(Encodings, XmlEncoding,
                         testing::Values(QStringConverter::Utf8, QStringConverter::Utf16LE, QStringConverter::Utf16BE,
                                         QStringConverter::Utf32LE, QStringConverter::Utf32BE));

TEST(Xml, RefusesBytesOfAnotherEncoding) {
    EXPECT_EQ(MessageOf<EXmlException>([] {
                  TXmlDocument::FromBytes("<r>Gr\xF6\xDF"
                                          "e</r>");
              }),
              "Invalid XML: not a text in UTF-8, UTF-16 or UTF-32");
}

TEST(Xml, SkipsAByteOrderMarkInAText) {
    EXPECT_EQ(TXmlDocument::FromText(QChar(QChar::ByteOrderMark) + QStringLiteral("<r>x</r>")).GetRoot().GetText(),
              "x");
}

TEST(Xml, NestsAsDeepAsTheTextDoes) {
    constexpr int Depth = 500000;
    const QString text = QStringLiteral("<a>").repeated(Depth) + QStringLiteral("</a>").repeated(Depth);
    const TXmlDocument document = TXmlDocument::FromText(text);
    int depth = 0;
    for (TXmlNode node = document.GetRoot(); !node.IsEmpty(); node = node.Child(QStringLiteral("a")))
        ++depth;
    EXPECT_EQ(depth, Depth);
    EXPECT_GT(document.ToBytes().size(), Depth);
}

} // namespace
} // namespace lmx
