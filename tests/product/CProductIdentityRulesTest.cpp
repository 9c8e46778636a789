#include "product/CProductIdentityRules.h"

#include <gtest/gtest.h>

namespace
{
using Features = std::vector<int32_t>;

TEST(CProductIdentityRulesTest, DefaultFeaturesDependOnTheEdition)
{
    EXPECT_EQ(CProductIdentityRules::DefaultFeatures(u"Sonora.exe"), (Features{24, 173, 176}));
    EXPECT_EQ(CProductIdentityRules::DefaultFeatures(u"Sonora Dynamo.exe"), (Features{24, 104, 173, 176}));
    EXPECT_EQ(CProductIdentityRules::DefaultFeatures(u"SONORA DYNAMO.EXE"), (Features{24, 104, 173, 176}));
    EXPECT_EQ(CProductIdentityRules::DefaultFeatures(u"Dynam.exe"), (Features{24, 173, 176}));
    EXPECT_EQ(CProductIdentityRules::DefaultFeatures(u""), (Features{24, 173, 176}));
}

TEST(CProductIdentityRulesTest, DistributorListReplacesTheSet)
{
    const struct { const char16_t* text; const char16_t* launcher; Features expected; } cases[] = {
        {u"176", u"Sonora.exe", {176}},
        {u" 173 ; 176 ;", u"Sonora.exe", {173, 176}},
        {u"176;176;24", u"Sonora.exe", {24, 176}},
        {u"24;1.5;-3;173", u"Sonora.exe", {24, 173}},
        {u"0", u"Sonora.exe", {0}},
        // The server edition gets 104 only from its defaults, not on top of a distributor's list.
        {u"24", u"Sonora Dynamo.exe", {24}},
        // Nothing usable: the defaults stay.
        {u"", u"Sonora.exe", {24, 173, 176}},
        {u";;", u"Sonora.exe", {24, 173, 176}},
        {u"junk", u"Sonora Dynamo.exe", {24, 104, 173, 176}},
        {u"12345678901", u"Sonora.exe", {24, 173, 176}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(CProductIdentityRules::ParseFeatures(c.text, c.launcher), c.expected) << HVString(c.text).ToUtf8();
}

TEST(CProductIdentityRulesTest, VersionIntegerKeepsTheOrderAndStaysPositive)
{
    EXPECT_EQ(CProductIdentityRules::VersionInteger(CVersionInfo(32, 0, 0, 0)), 32 << 24);
    EXPECT_EQ(CProductIdentityRules::VersionInteger(CVersionInfo(32, 1, 174, 3)), (32 << 24) | (1 << 16) | 174);
    // The revision doesn't count.
    EXPECT_EQ(CProductIdentityRules::VersionInteger(CVersionInfo(32, 1, 174, 3)),
              CProductIdentityRules::VersionInteger(CVersionInfo(32, 1, 174, 9)));
    const CVersionInfo ordered[] = {{31, 255, 65535, 0}, {32, 0, 0, 0}, {32, 0, 1, 0}, {32, 1, 0, 0}, {33, 0, 0, 0}};
    for (size_t i = 1; i < std::size(ordered); ++i)
        EXPECT_LT(CProductIdentityRules::VersionInteger(ordered[i - 1]), CProductIdentityRules::VersionInteger(ordered[i]));
    // Out-of-range numbers are capped, never turned into -1 ("absent") or another negative.
    EXPECT_GT(CProductIdentityRules::VersionInteger(CVersionInfo(65535, 65535, 65535, 65535)), 0);
}
}
