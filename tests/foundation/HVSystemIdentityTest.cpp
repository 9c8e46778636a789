#include "foundation/HVSystemIdentity.h"

#include <gtest/gtest.h>

namespace
{
using Platform = HVSystemIdentity::Platform;

struct Row
{
    Platform platform;
    uint32_t major;
    uint32_t minor;
    uint32_t build;
    const char16_t* service;
    int32_t code;
    const char16_t* name;
};

TEST(HVSystemIdentityTest, EveryRowOfTheTable)
{
    const Row rows[] = {
        {Platform::Windows9x, 4, 0, 950, u"", 1000, u"Microsoft Windows 95"},
        {Platform::Windows9x, 4, 10, 1998, u"", 1001, u"Microsoft Windows 98"},
        {Platform::Windows9x, 4, 10, 1998, u" B", 1001, u"Microsoft Windows 98"},
        {Platform::Windows9x, 4, 10, 1998, u"A", 1001, u"Microsoft Windows 98"},
        {Platform::Windows9x, 4, 10, 2222, u" A", 1002, u"Microsoft Windows 98"},
        {Platform::Windows9x, 4, 90, 3000, u"", 1003, u"Microsoft Windows ME"},
        {Platform::Windows9x, 4, 20, 0, u"", 0, u"Unknown OS"},
        {Platform::Windows9x, 5, 0, 0, u"", 0, u"Unknown OS"},
        {Platform::NT, 3, 51, 1057, u"", 1004, u"Microsoft Windows NT"},
        {Platform::NT, 4, 0, 1381, u"Service Pack 6", 1004, u"Microsoft Windows NT"},
        {Platform::NT, 5, 0, 2195, u"", 1005, u"Microsoft Windows 2000"},
        {Platform::NT, 5, 1, 2600, u"Service Pack 3", 1006, u"Microsoft Windows XP"},
        {Platform::NT, 5, 2, 3790, u"", 1007, u"Microsoft Windows Server 2003"},
        {Platform::NT, 5, 3, 0, u"", 1007, u"Microsoft Windows New (5.3)"},
        {Platform::NT, 5, 9, 0, u"", 1007, u"Microsoft Windows New (5.9)"},
        {Platform::NT, 6, 0, 6002, u"", 1008, u"Microsoft Windows Vista"},
        {Platform::NT, 6, 1, 7601, u"Service Pack 1", 1009, u"Microsoft Windows 7"},
        {Platform::NT, 6, 2, 9200, u"", 1010, u"Microsoft Windows 8"},
        {Platform::NT, 6, 3, 9600, u"", 1011, u"Microsoft Windows 8.1"},
        {Platform::NT, 6, 4, 9841, u"", 1014, u"Microsoft Windows New (6.4)"},
        {Platform::NT, 6, 9, 0, u"", 1014, u"Microsoft Windows New (6.9)"},
        {Platform::NT, 7, 0, 0, u"", 1014, u"Microsoft Windows New (7.0)"},
        {Platform::NT, 9, 5, 0, u"", 1014, u"Microsoft Windows New (9.5)"},
        {Platform::NT, 10, 0, 10240, u"", 1012, u"Microsoft Windows 10"},
        {Platform::NT, 10, 0, 21999, u"", 1012, u"Microsoft Windows 10"},
        {Platform::NT, 10, 0, 22000, u"", 1013, u"Microsoft Windows 11"},
        {Platform::NT, 10, 0, 26100, u"", 1013, u"Microsoft Windows 11"},
        {Platform::NT, 10, 1, 0, u"", 1014, u"Microsoft Windows New (10.1)"},
        {Platform::NT, 11, 0, 30000, u"", 1014, u"Microsoft Windows New (11.0)"},
        {Platform::Win32s, 3, 10, 0, u"", 0, u"Unknown OS"},
        {static_cast<Platform>(7), 10, 0, 0, u"", 0, u"Unknown OS"},
    };
    for (const Row& r : rows) {
        const HVSystemIdentity id = HVSystemIdentity::FromVersion(r.platform, r.major, r.minor, r.build, r.service);
        EXPECT_EQ(id.GetCode(), r.code) << r.major << "." << r.minor << "." << r.build;
        EXPECT_EQ(id.GetName().ToUtf8(), HVString(r.name).ToUtf8()) << r.major << "." << r.minor;
        EXPECT_EQ(id.GetMajor(), r.major);
        EXPECT_EQ(id.GetMinor(), r.minor);
        EXPECT_EQ(id.GetBuild(), r.build);
    }
}

TEST(HVSystemIdentityTest, CodesRiseWithTheReleases)
{
    // Other code compares ranges of codes, so a later Windows must never get a lower code.
    const uint32_t versions[][3] = {{5, 0, 0}, {5, 1, 0}, {5, 2, 0}, {5, 3, 0}, {6, 0, 0}, {6, 1, 0}, {6, 2, 0},
                                    {6, 3, 0}, {6, 4, 0}, {10, 0, 0}, {10, 0, 22000}, {10, 1, 0}};
    int32_t previous = HVSystemIdentity::kWindowsME;
    for (const auto& v : versions) {
        const int32_t code = HVSystemIdentity::FromVersion(Platform::NT, v[0], v[1], v[2], u"").GetCode();
        EXPECT_GE(code, previous) << v[0] << "." << v[1] << "." << v[2];
        previous = code == HVSystemIdentity::kWindowsNew ? previous : code;
    }
}

TEST(HVSystemIdentityTest, UnreadableVersionIsUnknown)
{
    const HVSystemIdentity unknown = HVSystemIdentity::Unknown();
    EXPECT_EQ(unknown.GetCode(), 0);
    EXPECT_EQ(unknown.GetName(), u"Unknown OS");
    EXPECT_EQ(HVSystemIdentity().GetName(), u"Unknown OS");
}
}
