#include "changes/CComponentRules.h"

#include <gtest/gtest.h>

namespace
{
TEST(CComponentRulesTest, DriverVersionComesFromTheVersionSection)
{
    const struct { const char16_t* inf; const char* version; } cases[] = {
        {u"[Version]\r\nSignature=\"$WINDOWS NT$\"\r\nDriverVer=03/14/2026,2.4.0.12\r\n", "2.4.0.12"},
        {u"[version]\n  driverver = 01/01/2020 , 1.2 ; comment\n", "1.2.0.0"},
        {u"[Strings]\nDriverVer=03/14/2026,9.9.9.9\n[Version]\nDriverVer=03/14/2026,1.0.0.1\n", "1.0.0.1"},
        {u"[Version]\nDriverVer=03/14/2026\n", ""},
        {u"[Version]\nDriverVer=03/14/2026,abc\n", ""},
        {u"", ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(CComponentRules::DriverVersion(c.inf).ToUtf8(), c.version) << HVString(c.inf).ToUtf8();
}

TEST(CComponentRulesTest, DriverInstallsOnlyOverNothingOrOlder)
{
    const struct
    {
        const char16_t* setup;
        const char16_t* installed;
        bool install;
    } cases[] = {{u"2.4.0.12", u"", true},         {u"2.4.0.12", u"2.3.1.7", true}, {u"2.4.0.12", u"2.4.0.12", false},
                 {u"2.4.0.12", u"3.0.0.0", false}, {u"2.4.0.12", u"junk", true},    {u"", u"", false}};
    for (const auto& c : cases)
        EXPECT_EQ(CComponentRules::DriverNeedsInstall(c.setup, c.installed), c.install)
            << HVString(c.setup).ToUtf8() << " over " << HVString(c.installed).ToUtf8();
}
}
