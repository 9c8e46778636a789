#include "engine/CDependencyRules.h"

#include <gtest/gtest.h>

namespace
{
TEST(CDependencyRulesTest, WebView2RuntimeCountsFrom119_0_2151_40)
{
    const struct { const char16_t* pv; bool present; } cases[] = {
        {u"119.0.2151.40", true},  {u"119.0.2151.39", false}, {u"120.0.0.0", true},    {u"119.0.2152.0", true},
        {u"119.1.0.0", true},      {u"119.0.2150.99", false}, {u"118.9.9999.99", false}, {u"", false},
        {u"abc", false},           {u"119.0", false},         {u"119.0.2151.40.1", false}, {u"119.0.2151.", false},
        {u" 120.0.0.0", false},    {u"120.0.0.0x", false},    {u"-1.0.0.0", false},     {u"9999999999.0.0.0", false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(CDependencyRules::EdgeRuntimePresent(c.pv), c.present) << HVString(c.pv).ToUtf8();
}

TEST(CDependencyRulesTest, NamesOfADownload)
{
    EXPECT_EQ(CDependencyRules::DownloadAddress(u"https://host/deps", u"a.exe").ToUtf8(), "https://host/deps/a.exe");
    EXPECT_EQ(CDependencyRules::DownloadAddress(u" http://127.0.0.1:9/ ", u"a.exe").ToUtf8(), "http://127.0.0.1:9/a.exe");
    EXPECT_EQ(CDependencyRules::DescribeBytes(1000, 0).ToUtf8(), "1 KB");
    EXPECT_EQ(CDependencyRules::DescribeBytes(3 << 20, 12 << 20).ToUtf8(), "3.0 MB of 12.0 MB");
}
}
