#include "engine/CSharedFileRules.h"

#include <gtest/gtest.h>

namespace
{
TEST(CSharedFileRulesTest, OnlyFilesInTheSystemFoldersAreShared)
{
    const std::vector<HVString> system = {u"C:\\Windows\\System32", u"C:\\Windows\\SysWOW64\\", HVString()};
    EXPECT_TRUE(CSharedFileRules::IsShared(u"c:\\windows\\system32\\HVCodec.dll", system));
    EXPECT_TRUE(CSharedFileRules::IsShared(u"C:\\Windows\\SysWOW64\\drivers\\hv.sys", system));
    EXPECT_FALSE(CSharedFileRules::IsShared(u"C:\\Windows\\System32Extra\\a.dll", system));
    EXPECT_FALSE(CSharedFileRules::IsShared(u"C:\\Windows\\System32\\", system));
    EXPECT_FALSE(CSharedFileRules::IsShared(u"C:\\Program Files\\Halvard\\a.dll", system));
}
}
