// Documents at the sizes where a naive parser recurses too deep, walks too far or overflows a
// field: a million levels, a million siblings, tags longer than their packed length fields.
#include "foundation/HVXMLDocument.h"
#include "foundation/HVXMLParser.h"
#include "foundation/HVXMLRecordStore.h"

#include <gtest/gtest.h>

#include <string>

namespace
{
constexpr int kMillion = 1000000;

HVString Repeat(std::u16string_view piece, int times, std::u16string_view before = {}, std::u16string_view after = {})
{
    std::u16string text;
    text.reserve(before.size() + piece.size() * static_cast<size_t>(times) + after.size());
    text += before;
    for (int i = 0; i < times; ++i)
        text += piece;
    text += after;
    return HVString(text);
}

TEST(HVXMLScaleTest, AMillionNestedElementsClosedProperly)
{
    HVXMLDocument doc;
    const HVString text = Repeat(u"<a>", kMillion) + Repeat(u"</a>", kMillion);
    ASSERT_TRUE(doc.SetDoc(text));
    EXPECT_EQ(doc.GetElemCount(), static_cast<uint32_t>(kMillion));
    HVXMLDocument::Elem e = 0;
    int depth = 0;
    for (HVXMLDocument::Elem c = doc.Select(u"/a"); c != 0; e = c, c = doc.GetFirstChild(c), ++depth)
        ASSERT_FALSE(doc.GetRecord(c)->IsNotEnded());
    EXPECT_EQ(depth, kMillion);
    EXPECT_EQ(doc.GetRecord(e)->Level(), HVXMLElementRecord::kLevelMask);   // saturated, not wrapped
    EXPECT_EQ(doc.GetRecord(e)->start, 3 * (kMillion - 1));
    EXPECT_EQ(doc.GetRecord(e)->length, 7u);
    EXPECT_EQ(doc.Select(u"//a[1000000]"), e);
    EXPECT_EQ(doc.Select(u"//a[1000001]"), 0u);
    ASSERT_TRUE(doc.SetElem(e));
    EXPECT_TRUE(doc.GetData().IsEmpty());
    EXPECT_EQ(doc.FindNode(), 0);
}

// <r><a><a>...</r>: the one end tag closes a million elements as not ended at once, and they
// become the root's children.
TEST(HVXMLScaleTest, EndTagFarDownTheStackClosesAMillionElementsAboveIt)
{
    HVXMLDocument doc;
    EXPECT_FALSE(doc.SetDoc(Repeat(u"<a>", kMillion, u"<r>", u"</r>")));
    const HVXMLDocument::Elem root = doc.Select(u"/r");
    ASSERT_NE(root, 0u);
    EXPECT_EQ(doc.GetNextSibling(root), 0u);
    int count = 0;
    HVXMLDocument::Elem last = 0;
    for (HVXMLDocument::Elem e = doc.GetFirstChild(root); e != 0; e = doc.GetNextSibling(e), ++count) {
        last = e;
        ASSERT_EQ(doc.GetParent(e), root);
        ASSERT_TRUE(doc.GetRecord(e)->IsNotEnded());
        ASSERT_EQ(doc.GetFirstChild(e), 0u);
    }
    EXPECT_EQ(count, kMillion);
    EXPECT_EQ(doc.GetRecord(doc.GetFirstChild(root))->prevSibling, last);
    // Innermost first; the text stops growing at its limit.
    EXPECT_TRUE(doc.GetError().StartsWith(u"End tag 'r' at offset 3000004 does not match start tag 'a' at offset "
                                          u"3000000, End tag 'r' at offset 3000004 does not match start tag 'a' at "
                                          u"offset 2999997, "));
    EXPECT_LE(doc.GetError().GetLength(), HVXMLParser::kMaxErrorText + 100);
    // Left open to the end of the document, the same million: each is not ended.
    EXPECT_FALSE(doc.SetDoc(Repeat(u"<a>", kMillion)));
    EXPECT_TRUE(doc.GetError().StartsWith(u"Element 'a' at offset 2999997 not ended, "));
    EXPECT_LE(doc.GetError().GetLength(), HVXMLParser::kMaxErrorText + 100);
}

// How long the walk takes is the benchmark's to measure; here, that the count does not wrap.
TEST(HVXMLScaleTest, AMillionChildrenAreFoundByPosition)
{
    HVXMLDocument doc;
    ASSERT_TRUE(doc.SetDoc(Repeat(u"<i/>", kMillion, u"<r>", u"<last>end</last></r>")));
    const HVXMLDocument::Elem last = doc.Select(u"/r/last");
    ASSERT_NE(last, 0u);
    EXPECT_EQ(doc.GetPrevSibling(last), doc.Select(u"/r/i[1000000]"));
    EXPECT_EQ(doc.Select(u"/r/i[1000001]"), 0u);
    EXPECT_EQ(doc.Select(u"/r/*[1000001]"), last);
}

TEST(HVXMLScaleTest, TagsLongerThanTheirPackedFields)
{
    // A start tag past 22 bits and an end tag past 10 bits keep their true lengths.
    const int valueLength = 5 * 1024 * 1024;
    const std::u16string name(2000, u'n');
    std::u16string text = u"<r><" + name + u" v='" + std::u16string(static_cast<size_t>(valueLength), u'x') +
                          u"' w='after'>data</" + name + u"><z/></r>";
    HVXMLDocument doc;
    ASSERT_TRUE(doc.SetDoc(HVString(text)));
    const HVXMLDocument::Elem e = doc.Select(u"/r/*");
    ASSERT_NE(e, 0u);
    EXPECT_EQ(doc.GetRecord(e)->PackedStartTag(), HVXMLElementRecord::kStartTagMax);
    EXPECT_EQ(doc.GetRecord(e)->PackedEndTag(), HVXMLElementRecord::kEndTagMax);
    EXPECT_EQ(doc.GetStartTagLength(e), static_cast<uint32_t>(1 + 2000 + 4 + valueLength + 12));
    EXPECT_EQ(doc.GetEndTagLength(e), 2003u);
    EXPECT_EQ(doc.GetElemAttrib(e, u"v").GetLength(), valueLength);
    EXPECT_EQ(doc.GetElemAttrib(e, u"w"), u"after");
    EXPECT_EQ(doc.GetElemData(e), u"data");
    EXPECT_EQ(doc.GetElemTagName(e).GetLength(), 2000);
    EXPECT_NE(doc.Select(u"/r/z"), 0u);
}

TEST(HVXMLScaleTest, RecordStoreGrowsByPagesWithoutMovingFullOnes)
{
    HVXMLRecordStore store;
    ASSERT_TRUE(store.Reset(10));
    EXPECT_EQ(store.GetCount(), 1u);
    EXPECT_EQ(store.GetCapacity(), 10u);
    EXPECT_EQ(store[0].flags, 0u);
    const HVXMLElementRecord* firstPageRecord = nullptr;
    for (uint32_t i = 1; i < 300000; ++i) {
        ASSERT_EQ(store.Add(), i);
        store[i].start = static_cast<int32_t>(i);
        if (i == HVXMLRecordStore::kPageSize)
            firstPageRecord = &store[5];
        // Never more than one page past the page in use.
        const uint32_t usedPages = (store.GetCount() - 1) / HVXMLRecordStore::kPageSize + 1;
        ASSERT_LE(store.GetCapacity(), (usedPages + 1) * HVXMLRecordStore::kPageSize);
    }
    EXPECT_EQ(&store[5], firstPageRecord);
    EXPECT_EQ(store[299999].start, 299999);
    EXPECT_EQ(store[65536].start, 65536);
    EXPECT_EQ(store.GetPageCount(), (store.GetCapacity() - 1) / HVXMLRecordStore::kPageSize + 1);

    // A document sizes its store for one record per 64 characters, plus 8.
    HVXMLDocument doc;
    ASSERT_TRUE(doc.SetDoc(Repeat(u" ", 6400 - 7, u"<a>", u"</a>")));
    EXPECT_EQ(doc.GetIndexBytes(), (6400u / 64 + 8) * sizeof(HVXMLElementRecord));
}
}   // namespace
