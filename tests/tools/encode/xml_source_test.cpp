// What the XML reader refuses, and where it says that it stands.

#include "tests/tools/encode/encoding.h"

namespace {

using testing::ElementsAre;

std::vector<std::string> refusal(const std::string& text) {
    const dabspi::xml_source source(text);
    EXPECT_FALSE(source.root());
    return texts_of(source.errors());
}

TEST(XmlSource, ReadsUtf8WithAndWithoutAByteOrderMark) {
    EXPECT_STREQ(dabspi::xml_source("<a/>").root().name(), "a");
    EXPECT_STREQ(dabspi::xml_source("\xEF\xBB\xBF<?xml version='1.0' encoding='Utf-8'?><a/>").root().name(),
                 "a");
}

TEST(XmlSource, RefusesOtherEncodings) {
    EXPECT_THAT(
        refusal("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a/>"),
        ElementsAre("a.xml:1:1: the document is in ISO-8859-1, and UTF-8 is needed; convert it: iconv -f "
                    "ISO-8859-1 -t UTF-8, and repair its XML declaration"));
    EXPECT_THAT(
        refusal("\xFF\xFE<"),
        ElementsAre(
            "a.xml:1:1: the document is in UTF-16, and UTF-8 is needed; convert it: iconv -f UTF-16 -t "
            "UTF-8, and repair its XML declaration"));
}

TEST(XmlSource, RefusesBytesThatAreNotUtf8) {
    EXPECT_THAT(
        refusal("<a>\n\xC3\xA9 \xE9</a>"),
        ElementsAre("a.xml:2:3: a byte that is not UTF-8; find out what encoding it is, and convert it"));
}

TEST(XmlSource, RefusesControlCharacters) {
    EXPECT_THAT(refusal("<a>\x01</a>"),
                ElementsAre("a.xml:1:4: the control character U+0001 is not allowed in XML; remove it"));
}

TEST(XmlSource, RefusesWhatIsNotWellFormed) {
    EXPECT_THAT(refusal("<a>\n<b></a>"),
                ElementsAre("a.xml:2:6: not well-formed XML: Start-end tags mismatch"));
    EXPECT_THAT(refusal(""), ElementsAre("a.xml:1:1: not well-formed XML: No document element found"));
}

TEST(XmlSource, RefusesASecondTopElement) {
    EXPECT_THAT(refusal("<a/>\n<b/>"),
                ElementsAre("a.xml:2:1: b: a second top element; one document has one; split the file"));
}

TEST(XmlSource, RefusesReferencesThatNobodyDefined) {
    EXPECT_THAT(
        refusal("<a b='x&eacute;'/>"),
        ElementsAre("a.xml:1:8: the reference &eacute; is not defined; write the character itself, or its "
                    "number (&#160; for a no-break space)"));
    EXPECT_THAT(refusal("<a>R & B</a>"),
                ElementsAre("a.xml:1:6: an \"&\" that begins no reference; write &amp;"));
    EXPECT_THAT(refusal("<a>R&B; &#x;</a>"), testing::SizeIs(1));
}

TEST(XmlSource, RefusesReferencesToNoCharacter) {
    EXPECT_THAT(refusal("<a>x&#0;y</a>"),
                ElementsAre("a.xml:1:5: there is no character of the number &#0;; remove it"));
    EXPECT_THAT(refusal("<a b='&#xD800;'/>"), testing::SizeIs(1)) << "a half of a pair";
    EXPECT_THAT(refusal("<a>&#x110000;</a>"), testing::SizeIs(1)) << "behind the last";
    EXPECT_THAT(refusal("<a>&#4294967361;</a>"), testing::SizeIs(1)) << "\"A\" in 32 bits";
    EXPECT_TRUE(dabspi::xml_source("<a>&#x10FFFF;&#xD7FF;&#xe000;</a>").root());
}

TEST(XmlSource, KnowsTheReferencesOfXml) {
    const dabspi::xml_source source(
        "<!-- &no; --><a b='&lt;&#233;'>&amp;&#xE9;<![CDATA[&not;]]><?x &nor;?></a>");
    EXPECT_TRUE(source.root()) << testing::PrintToString(texts_of(source.errors()));
}

TEST(XmlSource, RefusesAnAttributeGivenTwice) {
    EXPECT_THAT(refusal("<a>\n <b c='1' c='2'/></a>"),
                ElementsAre("a.xml:2:11: a/b/@c: the attribute is given twice; remove one"));
}

TEST(XmlSource, TellsTheColumnInCharactersBehindOthersThanAscii) {
    const dabspi::xml_source source("<a>\n\xC3\xA9\xE2\x82\xAC<b  c = '1'\n  d='>'/></a>");
    const pugi::xml_node b = source.root().child("b");
    EXPECT_EQ(note_text("f", source.at(b, "x")), "f:2:3: a/b: x");
    EXPECT_EQ(note_text("f", source.at(b, b.attribute("c"), "x")), "f:2:7: a/b/@c: x");
    EXPECT_EQ(note_text("f", source.at(b, b.attribute("d"), "x", "do y")), "f:3:3: a/b/@d: x; do y");
}

}  // namespace
