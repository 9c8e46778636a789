#include "engine/CDependencyRules.h"

#include <gtest/gtest.h>

namespace
{
TEST(CDependencyRulesTest, WebView2RuntimeCountsFrom119_0_2151_40)
{
    const struct
    {
        const char16_t* pv;
        bool present;
    } cases[] = {
        {u"119.0.2151.40", true},  {u"119.0.2151.39", false}, {u"120.0.0.0", true},    {u"119.0.2152.0", true},
        {u"119.1.0.0", true},      {u"119.0.2150.99", false}, {u"118.9.9999.99", false}, {u"", false},
        {u"abc", false},           {u"119.0", false},         {u"119.0.2151.40.1", false}, {u"119.0.2151.", false},
        {u" 120.0.0.0", false},    {u"120.0.0.0x", false},    {u"-1.0.0.0", false},     {u"9999999999.0.0.0", false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(CDependencyRules::EdgeRuntimePresent(c.pv), c.present) << HVString(c.pv).ToUtf8();
}

TEST(CDependencyRulesTest, WindowsVersionsThatGetEachComponent)
{
    const struct
    {
        int32_t code;
        bool directX;
        bool edge;
    } cases[] = {{1000, false, false}, {1005, false, false}, {1006, true, false},
                 {1008, true, false},  {1009, true, true},   {1014, true, true}};
    for (const auto& c : cases) {
        EXPECT_EQ(CDependencyRules::DirectXConsidered(c.code), c.directX) << c.code;
        EXPECT_EQ(CDependencyRules::EdgeConsidered(c.code), c.edge) << c.code;
    }
}

TEST(CDependencyRulesTest, NamesOfADownload)
{
    EXPECT_EQ(CDependencyRules::DownloadAddress(u"https://host/deps", u"a.exe").ToUtf8(), "https://host/deps/a.exe");
    EXPECT_EQ(CDependencyRules::DownloadAddress(u" http://127.0.0.1:9/ ", u"a.exe").ToUtf8(), "http://127.0.0.1:9/a.exe");
    EXPECT_EQ(CDependencyRules::TemporaryDownloadPath(u"C:\\Temp\\", 3).ToUtf8(), "C:\\Temp\\HV Download (3).dat");
    EXPECT_EQ(CDependencyRules::DescribeBytes(1000, 0).ToUtf8(), "1 KB");
    EXPECT_EQ(CDependencyRules::DescribeBytes(3 << 20, 12 << 20).ToUtf8(), "3.0 MB of 12.0 MB");
}
}
