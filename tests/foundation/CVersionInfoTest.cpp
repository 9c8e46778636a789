#include "foundation/CVersionInfo.h"

#include <gtest/gtest.h>

namespace
{
TEST(CVersionInfoTest, DottedTextsParseIntoFourNumbersAndJunkIsRefused)
{
    const struct { const char16_t* text; uint16_t parts[4]; } good[] = {
        {u"5.0", {5, 0, 0, 0}}, {u"5.0.0.0", {5, 0, 0, 0}}, {u"11.0.22000.1", {11, 0, 22000, 1}},
        {u"7", {7, 0, 0, 0}}, {u" 1.2.3 ", {1, 2, 3, 0}}, {u"65535.65535.65535.65535", {65535, 65535, 65535, 65535}},
        {u"007.010", {7, 10, 0, 0}},
    };
    for (const auto& c : good) {
        CVersionInfo v;
        ASSERT_TRUE(CVersionInfo::Parse(c.text, v)) << HVString(c.text).ToUtf8();
        EXPECT_EQ(v, CVersionInfo(c.parts[0], c.parts[1], c.parts[2], c.parts[3])) << HVString(c.text).ToUtf8();
    }
    // Junk is refused and leaves the target alone.
    for (const char16_t* text : {u"", u"  ", u".", u"5.", u".5", u"1..2", u"1.2.3.4.5", u"a.b", u"1.2b", u"65536",
                                 u"1.-2", u"1,2", u"99999999999999999999"}) {
        CVersionInfo v(9, 9, 9, 9);
        EXPECT_FALSE(CVersionInfo::Parse(text, v)) << HVString(text).ToUtf8();
        EXPECT_EQ(v, CVersionInfo(9, 9, 9, 9));
    }
}

TEST(CVersionInfoTest, VersionsCompareAsNumbersNotText)
{
    const struct { CVersionInfo lower; CVersionInfo higher; } cases[] = {
        {{9, 9, 0, 0}, {10, 0, 0, 0}}, {{1, 2, 3, 4}, {1, 2, 3, 5}}, {{1, 2, 65535, 65535}, {1, 3, 0, 0}},
        {{0, 0, 0, 0}, {0, 0, 0, 1}}, {{5, 0, 0, 0}, {11, 0, 22000, 1}},
    };
    for (const auto& c : cases) {
        EXPECT_LT(c.lower, c.higher);
        EXPECT_EQ(c.lower.Compare(c.higher), -1);
        EXPECT_EQ(c.higher.Compare(c.lower), 1);
        EXPECT_EQ(c.lower.Compare(c.lower), 0);
    }
    EXPECT_TRUE(CVersionInfo().IsZero());
    EXPECT_FALSE(CVersionInfo(0, 0, 0, 1).IsZero());
}
}
