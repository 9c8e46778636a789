#include "foundation/HVXMLDocument.h"

#include <gtest/gtest.h>

#include <string>

namespace
{
std::string U8(const HVString& s) { return s.ToUtf8(); }

// The element tree below `e` as text: "name(children)", "!" after a not-ended element.
std::string Tree(const HVXMLDocument& doc, HVXMLDocument::Elem e)
{
    std::string out;
    for (HVXMLDocument::Elem c = doc.GetFirstChild(e); c != 0; c = doc.GetNextSibling(c)) {
        if (!out.empty())
            out += ' ';
        out += U8(doc.GetElemTagName(c));
        if (doc.GetRecord(c)->IsNotEnded())
            out += '!';
        if (doc.GetFirstChild(c) != 0)
            out += "(" + Tree(doc, c) + ")";
    }
    return out;
}

// Every parent, sibling and first-child link agrees with every other, below `e`.
void ExpectLinksConsistent(const HVXMLDocument& doc, HVXMLDocument::Elem e)
{
    HVXMLDocument::Elem prev = 0;
    HVXMLDocument::Elem last = 0;
    for (HVXMLDocument::Elem c = doc.GetFirstChild(e); c != 0; c = doc.GetNextSibling(c)) {
        const HVXMLElementRecord* r = doc.GetRecord(c);
        EXPECT_EQ(r->parent, e) << "element " << U8(doc.GetElemTagName(c));
        EXPECT_EQ(r->IsFirstChild(), prev == 0);
        EXPECT_EQ(doc.GetPrevSibling(c), prev);
        EXPECT_LE(doc.GetStartTagLength(c), r->length);
        ExpectLinksConsistent(doc, c);
        prev = c;
        last = c;
    }
    if (const HVXMLDocument::Elem first = doc.GetFirstChild(e)) {
        EXPECT_EQ(doc.GetRecord(first)->prevSibling, last) << "first child must point to the last";
    }
}

// An empty error text means a well-formed document.
TEST(HVXMLDocumentTest, ErrorTextsAndOffsets)
{
    const std::pair<const char16_t*, const char*> cases[] = {
        {u"", "Empty document"}, {u"   \r\n", "No root element"}, {u"<a/><b/>", "Root element has sibling"},
        {u"<a><b></a>", "End tag 'a' at offset 7 does not match start tag 'b' at offset 3"},
        {u"<a><b><c></a>",
         "End tag 'a' at offset 10 does not match start tag 'c' at offset 6, "
         "End tag 'a' at offset 10 does not match start tag 'b' at offset 3"},
        {u"<a></b>", "No start tag for end tag 'b' at offset 4, Element 'a' at offset 0 not ended"},
        {u"<a></>", "No start tag for end tag '' at offset 4, Element 'a' at offset 0 not ended"},
        {u"<1a/>", "Incorrect tag name character at offset 0, No root element"},
        {u"<a>< b/></a>", "Incorrect tag name character at offset 3"},
        {u"<a><!-x--></a>", "Incorrect comment tag at offset 3"},
        {u"<a><![x]]></a>", "Incorrect tag at offset 3"},
        {u"<a><!x></a>", "Incorrect ! tag at offset 3"},
        {u"<!DOCTYPE a [<x>]><a/>", "Incorrect ! tag at offset 13"},
        {u"<!DOCTYPE a [<!-- c -->]><a/>", "Incorrect ! tag at offset 13"},
        {u"<a><!-- x", "Comment at offset 3 unterminated, Element 'a' at offset 0 not ended"},
        {u"<a><![CDATA[x]]", "CDATA Section at offset 3 unterminated, Element 'a' at offset 0 not ended"},
        {u"<a><?pi x?", "Processing instruction at offset 3 unterminated, Element 'a' at offset 0 not ended"},
        {u"<!DOCTYPE a [<!ENTITY x 'y'>", "Doctype at offset 0 unterminated, No root element"},
        {u"<a x='1>", "Element tag at offset 0 unterminated, No root element"},
        {u"<a></a", "Element end tag at offset 3 unterminated, Element 'a' at offset 0 not ended"},
        {u"<a/><", "tag at offset 4 unterminated"},
        {u"<?xml version=\"1.0\"?>\n<!DOCTYPE a [<!ELEMENT a ANY><!ATTLIST a x CDATA #IMPLIED>"
         u"<!ENTITY e 'v'><!NOTATION n SYSTEM 'n'>]>\n<!-- c --><a x='>'><![CDATA[<]]></a>\n", ""},
        {u"<a attr='x>y' b=\"it's\"/>", ""},
        {u"<a>text</a>trailing text", ""},
        {u"<a><!----><!-- - --></a>", ""},
        {u"<a><!---></a>", "Comment at offset 3 unterminated, Element 'a' at offset 0 not ended"},
    };
    for (const auto& [text, error] : cases) {
        HVXMLDocument doc;
        const bool wellFormed = *error == 0;
        EXPECT_EQ(doc.SetDoc(text), wellFormed) << U8(text);   // what IsWellFormed() says
        EXPECT_EQ(U8(doc.GetError()), error) << U8(text);
        EXPECT_EQ((doc.GetRecord(0)->flags & HVXMLElementRecord::kDocumentIllFormed) != 0, !wellFormed) << U8(text);
        ExpectLinksConsistent(doc, 0);
    }
}

TEST(HVXMLDocumentTest, NotEndedElementsHandTheirChildrenToTheirParent)
{
    const std::pair<const char16_t*, const char*> cases[] = {
        {u"<a><b>text</a>", "a(b!)"},     {u"<a><b><c/></a>", "a(b! c)"}, {u"<r><a><b><c/></b></r>", "r(a! b(c))"},
        {u"<r><x><y></z></r>", "r(x! y!)"}, {u"<a><b><c>", "a! b! c!"},  {u"<a><b/><c><d/>", "a! b c! d"},
        {u"<r><p><q><s/></q><t/></r><u/>", "r(p! q(s) t) u"},           {u"<r><a></b></a></r>", "r(a)"},
    };
    for (const auto& [text, tree] : cases) {
        HVXMLDocument doc;
        doc.SetDoc(text);
        EXPECT_EQ(Tree(doc, 0), tree) << U8(text);
        ExpectLinksConsistent(doc, 0);
    }
}

TEST(HVXMLDocumentTest, RecordsHoldOffsetsLengthsAndFlags)
{
    HVXMLDocument doc;
    ASSERT_TRUE(doc.SetDoc(u"<root a='1'><child>text</child ><e/></root>"));
    EXPECT_EQ(doc.GetRecord(0)->length, 43u);
    EXPECT_EQ(doc.GetElemCount(), 3u);
    const struct { const char16_t* path; int32_t start; uint32_t length, startTag, endTag, level; } rows[] = {
        {u"/root", 0, 43, 12, 7, 0}, {u"/root/child", 12, 20, 7, 9, 1}, {u"/root/e", 32, 4, 4, 0, 1}};
    for (const auto& row : rows) {
        const HVXMLDocument::Elem e = doc.Select(row.path);
        ASSERT_EQ(doc.GetRecord(e)->start, row.start) << U8(row.path);
        EXPECT_EQ(doc.GetRecord(e)->length, row.length) << U8(row.path);
        EXPECT_EQ(doc.GetStartTagLength(e), row.startTag) << U8(row.path);
        EXPECT_EQ(doc.GetEndTagLength(e), row.endTag) << U8(row.path);
        EXPECT_EQ(doc.GetRecord(e)->Level(), row.level) << U8(row.path);
    }
    ExpectLinksConsistent(doc, 0);
}

TEST(HVXMLDocumentTest, ErrorsFlagTheElementThatHoldsThem)
{
    HVXMLDocument doc;
    doc.SetDoc(u"<r><ok/><bad><!x></bad><lone></z></lone><open></r>");
    const HVXMLDocument::Elem r = doc.Select(u"/r");
    auto flags = [&](const char16_t* path) { return doc.GetRecord(doc.Select(path))->flags; };
    EXPECT_FALSE(flags(u"/r/ok") & HVXMLElementRecord::kContainsError);
    EXPECT_TRUE(flags(u"/r/bad") & HVXMLElementRecord::kContainsError);
    EXPECT_TRUE(flags(u"/r/lone") & HVXMLElementRecord::kContainsError);
    // The not-ended element's error moves up to its parent.
    EXPECT_TRUE(flags(u"/r/open") & HVXMLElementRecord::kNotEnded);
    EXPECT_FALSE(flags(u"/r/open") & HVXMLElementRecord::kContainsError);
    EXPECT_TRUE(doc.GetRecord(r)->flags & HVXMLElementRecord::kContainsError);
    EXPECT_EQ(doc.GetRecord(doc.Select(u"/r/open"))->length, 6u);
}

TEST(HVXMLDocumentTest, ContentRules)
{
    const struct { const char16_t* doc; const char16_t* path; const char16_t* data; } cases[] = {
        {u"<a>x &amp;&#65;&#x42;&bogus; y</a>", u"/a", u"x &AB&bogus; y"}, {u"<a><![CDATA[<x>]]></a>", u"/a", u"<x>"},
        {u"<a>\r\n  <![CDATA[in&amp;]]>\r\n</a>", u"/a", u"in&amp;"}, {u"<a>x<!--c-->y<?p d?>z</a>", u"/a", u"xyz"},
        {u"<a> x <![CDATA[ y ]]> z </a>", u"/a", u" x  y  z "}, {u"<a>  spaced \r\n</a>", u"/a", u"  spaced \r\n"},
        {u"<a>\n <!-- only a comment -->\n</a>", u"/a", u""}, {u"<a><b/>t</a>", u"/a", u""}, {u"<a/>", u"/a", u""},
        {u"<a><b>text</a>", u"/a", u""}, {u"<a><b>text</a>", u"/a/b", u""}, {u"<a>t</x>u</a>", u"/a", u"tu"},
    };
    for (const auto& c : cases) {
        HVXMLDocument doc;
        doc.SetDoc(c.doc);
        const HVXMLDocument::Elem e = doc.Select(c.path);
        ASSERT_NE(e, 0u) << U8(c.doc);
        EXPECT_EQ(U8(doc.GetElemData(e)), U8(c.data)) << U8(c.doc);
        ASSERT_TRUE(doc.SetElem(e));
        EXPECT_EQ(U8(doc.GetData()), U8(c.data)) << U8(c.doc);
    }
}

TEST(HVXMLDocumentTest, EntityDecoding)
{
    const std::pair<const char16_t*, std::u16string> cases[] = {
        {u"&lt;&amp;&gt;&apos;&quot;", u"<&>'\""}, {u"&#65;&#x42;&#x6a;&#x6A;", u"ABjj"}, {u"&#0;&#x0;", u"&#0;&#x0;"},
        {u"&#65", u"&#65"},          {u"&#;&#x;", u"&#;&#x;"},         {u"&#X41;", u"&#X41;"},  {u"&#6a;", u"&#6a;"},
        {u"&#1114111;", u"\U0010FFFF"}, {u"&#1114112;", u"&#1114112;"}, {u"&#x1F600;", u"\U0001F600"},
        {u"&#00000065;", u"&#00000065;"},   // eight digits: too many
        {u"&#0000065;", u"A"},              // seven are fine
        {u"&amp", u"&amp"},          {u"&unknown;", u"&unknown;"},     {u"a&", u"a&"},          {u"&&amp;", u"&&"},
        {u"&amp;amp;", u"&amp;"},    {u"&AMP;", u"&AMP;"},
    };
    for (const auto& [text, decoded] : cases) {
        EXPECT_EQ(HVXMLDocument::DecodeText(text).view(), decoded) << U8(text);
        const HVString s(text);
        EXPECT_EQ(HVXMLDocument::DecodeText(s.c_str(), s.GetLength()).view(), decoded) << U8(text);
    }
    EXPECT_TRUE(HVXMLDocument::DecodeText(nullptr).IsEmpty());
    EXPECT_EQ(HVXMLDocument::DecodeText(u"&amp;stop", 5), u"&");
    EXPECT_EQ(HVXMLDocument::DecodeText(u"&amp;stop", 4), u"&amp");   // the ";" lies past the end
}

TEST(HVXMLDocumentTest, AttributesAreReadOnDemand)
{
    const struct { const char16_t* doc; const char16_t* name; bool found; const char16_t* value; } cases[] = {
        {u"<a x=\"1\" y='2' z=3 w>", u"x", true, u"1"}, {u"<a x=\"1\" y='2' z=3 w>", u"z", true, u"3"},
        {u"<a x=\"1\" y='2' z=3 w>", u"w", true, u""}, {u"<a x=\"1\" y='2' z=3 w>", u"q", false, u""},
        {u"<a x=\"1\" y='2' z=3 w>", u"X", false, u""}, {u"<a\n\tx\t=\r\n\"a&amp;b\"/>", u"x", true, u"a&b"},
        {u"<a x=\"it's\" y='say \"hi\"'/>", u"y", true, u"say \"hi\""}, {u"<a x='a>b' y='c'/>", u"y", true, u"c"},
        {u"<a b=c/>", u"b", true, u"c/"}, {u"<a  b = 'v' / >", u"b", true, u"v"},
        {u"<a xx='1' x='2'/>", u"x", true, u"2"}, {u"<a x='' y='2'/>", u"x", true, u""},
        {u"<a x='&#65;&lt;'/>", u"x", true, u"A<"},
    };
    for (const auto& c : cases) {
        HVXMLDocument doc;
        doc.SetDoc(c.doc);
        ASSERT_TRUE(doc.FindElem(u"/a")) << U8(c.doc);
        HVString value;
        EXPECT_EQ(doc.GetElemAttrib(doc.GetElem(), c.name, value), c.found) << U8(c.doc) << " " << U8(c.name);
        EXPECT_EQ(U8(value), U8(c.value)) << U8(c.doc) << " " << U8(c.name);
        EXPECT_EQ(U8(doc.GetAttrib(c.name)), U8(c.value));
    }
}

TEST(HVXMLDocumentTest, AttributeNamesInTheOrderWritten)
{
    const std::pair<const char16_t*, const char*> cases[] = {
        {u"<a x=\"1\" y='2' z=3 w>", "x y z w "}, {u"<a>", ""}, {u"<a q='>' r=\"'\" / >", "q r "},
        {u"<a = b ? c/>", "b c "}, {u"<a\tk\r\n=\r\nv\n>", "k "},
    };
    for (const auto& [text, names] : cases) {
        HVXMLDocument doc;
        doc.SetDoc(text);
        ASSERT_TRUE(doc.FindElem()) << U8(text);
        std::string got;
        for (int32_t i = 0; !doc.GetAttribName(i).IsEmpty(); ++i)
            got += U8(doc.GetAttribName(i)) + " ";
        EXPECT_EQ(got, names) << U8(text);
    }
}

// Path queries over one catalogue: what each finds, as "tag#id" or "tag:data".
TEST(HVXMLDocumentTest, PathQueriesWithPredicates)
{
    HVXMLDocument doc;
    ASSERT_TRUE(doc.SetDoc(u"<cat>"
                           u"<Item id='1'><Name>A</Name></Item>"
                           u"<Item id='2' k='x&amp;y'/>"
                           u"<Other id='o'/>"
                           u"<Item id='3'><Name>C</Name><Sub><Name>deep</Name></Sub></Item>"
                           u"</cat>"));
    auto show = [&](HVXMLDocument::Elem e) -> std::string {
        if (e == 0)
            return "none";
        HVString id;
        if (doc.GetElemAttrib(e, u"id", id))
            return U8(doc.GetElemTagName(e)) + "#" + U8(id);
        return U8(doc.GetElemTagName(e)) + ":" + U8(doc.GetElemData(e));
    };
    const std::pair<const char16_t*, const char*> cases[] = {
        {u"/*/Item", "Item#1"},              {u"/*/Item[1]", "Item#1"},
        {u"/*/Item[2]", "Item#2"},           {u"/*/Item[4]", "none"},
        {u"/*/Item[0]", "none"},             {u"/*/Item[01]", "none"},
        {u"/*/Item[@k]", "Item#2"},          {u"/*/Item[@id=3]", "Item#3"},
        {u"/*/Item[ @id = '3' ]", "Item#3"}, {u"/*/Item[@k='x&y']", "Item#2"},
        {u"/*/Item[@k='x&amp;y']", "none"},  {u"/*/Item[@missing]", "none"},
        {u"/*/Item[Name]", "Item#1"},        {u"/*/Item[Sub]", "Item#3"},
        {u"/*/*", "Item#1"},                 {u"/*/*[3]", "Other#o"},
        {u"/*/Item/Name", "Name:A"},         {u"/cat/Item[3]/Sub/Name", "Name:deep"},
        {u"/*/Item/Sub", "none"},   // the first Item has no Sub: no backtracking
        {u"//Name", "Name:A"},
        {u"//Name[3]", "Name:deep"},
        {u"//Sub/Name", "Name:deep"},
        {u"//*[@k]", "Item#2"},
        {u"/*/", "Item#1"},                  {u"/", "cat:"},
        {u"/x", "none"},                     {u"/cat/Item[", "none"},
        {u"/cat/It", "none"},
    };
    for (const auto& [path, expected] : cases) {
        EXPECT_EQ(show(doc.Select(path)), expected) << U8(path);
        doc.ResetPos();
        const bool found = doc.FindElem(path);
        EXPECT_EQ(found, std::string(expected) != "none") << U8(path);
        if (found) {
            EXPECT_EQ(show(doc.GetElem()), expected) << U8(path);
        }
    }
    // Ignoring case applies to names in queries; values stay exact.
    doc.ResetPos();
    EXPECT_FALSE(doc.FindElem(u"/CAT/item"));
    EXPECT_TRUE(doc.FindElem(u"/cat/Item"));
    EXPECT_TRUE(doc.GetAttrib(u"ID").IsEmpty());
    doc.SetIgnoreCase(true);
    doc.ResetPos();
    EXPECT_TRUE(doc.FindElem(u"/CAT/item"));
    EXPECT_EQ(doc.GetAttrib(u"ID"), u"1");
    EXPECT_EQ(show(doc.Select(u"/CAT/ITEM[@K='x&y']")), "Item#2");
    EXPECT_EQ(doc.Select(u"/CAT/ITEM[@K='X&Y']"), 0u);
}

TEST(HVXMLDocumentTest, CursorMovesAmongSiblingsAndLevels)
{
    HVXMLDocument doc;
    ASSERT_TRUE(doc.SetDoc(u"<r><i n='1'><v>a</v></i><j/><i n='2'><v>b</v><w>c</w></i></r>"));
    EXPECT_TRUE(doc.FindElem());   // the root
    EXPECT_EQ(doc.GetTagName(), u"r");
    EXPECT_FALSE(doc.FindElem());   // no sibling: the cursor stays
    EXPECT_EQ(doc.GetTagName(), u"r");

    // Children of the current element, one after the other.
    EXPECT_TRUE(doc.FindChildElem(u"i"));
    EXPECT_EQ(doc.GetChildAttrib(u"n"), u"1");
    EXPECT_TRUE(doc.FindChildElem(u"i"));
    EXPECT_EQ(doc.GetChildAttrib(u"n"), u"2");
    EXPECT_FALSE(doc.FindChildElem(u"i"));
    EXPECT_EQ(doc.GetChildAttrib(u"n"), u"2");
    EXPECT_EQ(doc.GetChildTagName(), u"i");

    EXPECT_TRUE(doc.IntoElem());   // into the second i
    EXPECT_EQ(doc.GetTagName(), u"i");
    EXPECT_EQ(doc.GetAttrib(u"n"), u"2");
    EXPECT_EQ(doc.GetChildData(u"w"), u"c");
    EXPECT_EQ(doc.GetChildData(u"v"), u"b");   // the current child is reset before the search
    EXPECT_TRUE(doc.GetChildData(u"x").IsEmpty());
    EXPECT_TRUE(doc.OutOfElem());
    EXPECT_EQ(doc.GetTagName(), u"r");
    EXPECT_EQ(doc.GetChildAttrib(u"n"), u"2");   // where we were, as the child
    EXPECT_FALSE(doc.OutOfElem());

    // A fresh walk: FindChildElem with no current element first takes the next element.
    doc.ResetPos();
    EXPECT_TRUE(doc.FindChildElem(u"j"));
    EXPECT_EQ(doc.GetTagName(), u"r");
    EXPECT_EQ(doc.GetChildTagName(), u"j");
    EXPECT_TRUE(doc.FindChildElem());   // the next child of any name
    EXPECT_EQ(doc.GetChildAttrib(u"n"), u"2");
    doc.ResetChildPos();   // the child walk starts again at the first
    EXPECT_TRUE(doc.FindChildElem(u"i") && doc.GetChildAttrib(u"n") == u"1");

    // IntoElem with no current child leaves no current element; FindElem starts at the first.
    doc.ResetPos();
    ASSERT_TRUE(doc.FindElem(u"/r"));
    EXPECT_TRUE(doc.IntoElem());
    EXPECT_TRUE(doc.GetTagName().IsEmpty());
    EXPECT_TRUE(doc.FindElem(u"i[2]"));
    EXPECT_EQ(doc.GetAttrib(u"n"), u"2");
    EXPECT_FALSE(doc.FindElem(u"i"));   // nothing after it
    doc.ResetMainPos();
    EXPECT_TRUE(doc.FindElem(u"i/v"));   // a relative path of two steps
    EXPECT_EQ(doc.GetData(), u"a");
    EXPECT_EQ(doc.GetParentElem(), doc.Select(u"/r/i"));
    EXPECT_FALSE(doc.IntoElem() && doc.FindElem());
}

struct NodeStep { int kind; const char* name; const char* data; };

// FindNode from where the cursor stands meets these nodes, then no more.
void ExpectNodes(HVXMLDocument& doc, std::initializer_list<NodeStep> steps)
{
    for (const NodeStep& step : steps) {
        EXPECT_EQ(doc.FindNode(), step.kind);
        EXPECT_EQ(U8(doc.GetNodeName()), step.name);
        EXPECT_EQ(U8(doc.GetData()), step.data);
    }
    EXPECT_EQ(doc.FindNode(), 0);
}

TEST(HVXMLDocumentTest, NonElementNodesAreWalkedInOrder)
{
    HVXMLDocument doc;
    doc.SetDoc(u"<?xml version='1.0'?>\n<!DOCTYPE r [<!ELEMENT r ANY>]>\n"
               u"<r>t &amp; u<!--c--><![CDATA[d<]]><e>x</e> </x><?pi data?></r>\n");
    ExpectNodes(doc, {{HVXMLDocument::kNodeProcessingInstruction, "xml", "xml version='1.0'"},
                      {HVXMLDocument::kNodeWhitespace, "#text", "\n"},
                      {HVXMLDocument::kNodeDocumentType, "r", "<!DOCTYPE r [<!ELEMENT r ANY>]>"},
                      {HVXMLDocument::kNodeWhitespace, "#text", "\n"},
                      {HVXMLDocument::kNodeElement, "r", ""},
                      {HVXMLDocument::kNodeWhitespace, "#text", "\n"}});
    EXPECT_EQ(doc.GetNodeType(), HVXMLDocument::kNodeWhitespace);   // stays on the last node

    ASSERT_TRUE(doc.FindElem(u"/r"));
    ASSERT_TRUE(doc.IntoElem());
    ExpectNodes(doc, {{HVXMLDocument::kNodeText, "#text", "t & u"},
                      {HVXMLDocument::kNodeComment, "#comment", "c"},
                      {HVXMLDocument::kNodeCData, "#cdata-section", "d<"},
                      {HVXMLDocument::kNodeElement, "e", "x"},
                      {HVXMLDocument::kNodeWhitespace, "#text", " "},
                      {HVXMLDocument::kNodeLoneEndTag, "x", "x"},
                      {HVXMLDocument::kNodeProcessingInstruction, "pi", "pi data"}});

    // A mask skips what it doesn't name; FindElem goes on after a non-element node.
    doc.ResetMainPos();
    EXPECT_EQ(doc.FindNode(HVXMLDocument::kNodeComment | HVXMLDocument::kNodeLoneEndTag),
              HVXMLDocument::kNodeComment);
    EXPECT_TRUE(doc.GetTagName().IsEmpty());
    EXPECT_TRUE(doc.FindElem());
    EXPECT_EQ(doc.GetTagName(), u"e");
    EXPECT_EQ(doc.FindNode(HVXMLDocument::kNodeLoneEndTag), HVXMLDocument::kNodeLoneEndTag);
    EXPECT_FALSE(doc.FindElem());
}

TEST(HVXMLDocumentTest, NotEndedContentIsWalkedAfterTheEmptyElement)
{
    HVXMLDocument doc;
    doc.SetDoc(u"<a><b>text</a>");
    ASSERT_TRUE(doc.FindElem(u"/a"));
    ASSERT_TRUE(doc.IntoElem());
    ExpectNodes(doc, {{HVXMLDocument::kNodeElement, "b", ""}, {HVXMLDocument::kNodeText, "#text", "text"}});

    // Unreadable constructs come back as text, never past the end.
    doc.SetDoc(u"<r>a<1b>c<!-- open");
    ASSERT_TRUE(doc.FindElem(u"/r"));
    ASSERT_TRUE(doc.IntoElem());
    EXPECT_EQ(doc.FindNode(), 0);   // r is not ended: what followed its start tag is its siblings
    doc.ResetPos();
    std::string kinds;
    while (int kind = doc.FindNode())
        kinds += std::to_string(kind) + ":" + U8(doc.GetData()) + "|";
    EXPECT_EQ(kinds, "1:|2:a|2:<1b>c|2:<!-- open|");
}

TEST(HVXMLDocumentTest, SetDocReplacesDocumentAndCursor)
{
    HVXMLDocument doc;
    EXPECT_FALSE(doc.IsWellFormed());
    EXPECT_FALSE(doc.FindElem());
    EXPECT_EQ(doc.FindNode(), 0);
    ASSERT_TRUE(doc.SetDoc(u"<a><b/></a>"));
    ASSERT_TRUE(doc.FindElem(u"/a/b"));
    ASSERT_FALSE(doc.SetDoc(u"<x><y>"));
    EXPECT_TRUE(doc.GetTagName().IsEmpty());
    EXPECT_TRUE(doc.FindElem());
    EXPECT_EQ(doc.GetTagName(), u"x");
    EXPECT_EQ(U8(doc.GetError()),
              "Element 'y' at offset 3 not ended, Element 'x' at offset 0 not ended, Root element has sibling");
    ASSERT_TRUE(doc.SetDoc(u"<ok/>"));
    EXPECT_TRUE(doc.GetError().IsEmpty());
    EXPECT_EQ(doc.GetDoc(), u"<ok/>");
}
}   // namespace
