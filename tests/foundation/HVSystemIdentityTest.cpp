#include "foundation/HVSystemIdentity.h"

#include <gtest/gtest.h>

namespace
{
using Platform = HVSystemIdentity::Platform;
using P = Platform;

struct Row
{
    Platform platform;
    uint32_t major, minor, build;
    const char16_t* service;
    int32_t code;
    const char16_t* name;   // after "Microsoft Windows "; a code of 0 is "Unknown OS"
};

// Other code compares ranges of codes: a later Windows never gets a lower code, apart from
// the "New" code for versions the table doesn't know.
TEST(HVSystemIdentityTest, EveryRowOfTheTable)
{
    const Row rows[] = {
        {P::Windows9x, 4, 0, 950, u"", 1000, u"95"}, {P::Windows9x, 4, 10, 1998, u"", 1001, u"98"},
        {P::Windows9x, 4, 10, 1998, u" B", 1001, u"98"}, {P::Windows9x, 4, 10, 1998, u"A", 1001, u"98"},
        {P::Windows9x, 4, 10, 2222, u" A", 1002, u"98"}, {P::Windows9x, 4, 90, 3000, u"", 1003, u"ME"},
        {P::Windows9x, 4, 20, 0, u"", 0, u""}, {P::Windows9x, 5, 0, 0, u"", 0, u""},
        {P::NT, 3, 51, 1057, u"", 1004, u"NT"}, {P::NT, 4, 0, 1381, u"Service Pack 6", 1004, u"NT"},
        {P::NT, 5, 0, 2195, u"", 1005, u"2000"}, {P::NT, 5, 1, 2600, u"Service Pack 3", 1006, u"XP"},
        {P::NT, 5, 2, 3790, u"", 1007, u"Server 2003"}, {P::NT, 5, 3, 0, u"", 1007, u"New (5.3)"},
        {P::NT, 5, 9, 0, u"", 1007, u"New (5.9)"}, {P::NT, 6, 0, 6002, u"", 1008, u"Vista"},
        {P::NT, 6, 1, 7601, u"Service Pack 1", 1009, u"7"}, {P::NT, 6, 2, 9200, u"", 1010, u"8"},
        {P::NT, 6, 3, 9600, u"", 1011, u"8.1"}, {P::NT, 6, 4, 9841, u"", 1014, u"New (6.4)"},
        {P::NT, 6, 9, 0, u"", 1014, u"New (6.9)"}, {P::NT, 7, 0, 0, u"", 1014, u"New (7.0)"},
        {P::NT, 9, 5, 0, u"", 1014, u"New (9.5)"}, {P::NT, 10, 0, 10240, u"", 1012, u"10"},
        {P::NT, 10, 0, 21999, u"", 1012, u"10"}, {P::NT, 10, 0, 22000, u"", 1013, u"11"},
        {P::NT, 10, 0, 26100, u"", 1013, u"11"}, {P::NT, 10, 1, 0, u"", 1014, u"New (10.1)"},
        {P::NT, 11, 0, 30000, u"", 1014, u"New (11.0)"}, {P::Win32s, 3, 10, 0, u"", 0, u""},
        {static_cast<Platform>(7), 10, 0, 0, u"", 0, u""},
    };
    for (const Row& r : rows) {
        const HVSystemIdentity id = HVSystemIdentity::FromVersion(r.platform, r.major, r.minor, r.build, r.service);
        EXPECT_EQ(id.GetCode(), r.code) << r.major << "." << r.minor << "." << r.build;
        const HVString name = r.code ? u"Microsoft Windows " + HVString(r.name) : HVString(u"Unknown OS");
        EXPECT_EQ(id.GetName().ToUtf8(), name.ToUtf8()) << r.major << "." << r.minor;
    }
    // An unreadable version is unknown.
    for (const HVSystemIdentity& unknown : {HVSystemIdentity::Unknown(), HVSystemIdentity()}) {
        EXPECT_EQ(unknown.GetCode(), 0);
        EXPECT_EQ(unknown.GetName(), u"Unknown OS");
    }
}
}
