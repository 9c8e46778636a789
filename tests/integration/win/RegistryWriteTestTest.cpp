#include "integration/win/RegistryWriteTest.h"

#include "FreshMachineTest.h"
#include "TestRegistry.h"

#include <gtest/gtest.h>

namespace
{
const wchar_t* const kHalvard = L"Software\\Halvard";
const wchar_t* const kCheck = L"Software\\Halvard\\Rights Check";

using RegistryWriteTestTest = e2e::FreshMachineTest;
}

TEST_F(RegistryWriteTestTest, PassesWithRightsAndLeavesNothingBehindEvenAfterAnEarlierRun)
{
    // On a machine without the product not even "Software\Halvard" stays; with it, it does.
    ASSERT_TRUE(RegistryWriteTest());
    EXPECT_FALSE(e2e::RegKeyExists(HKEY_LOCAL_MACHINE, kHalvard));
    ASSERT_TRUE(e2e::RegSetString(HKEY_LOCAL_MACHINE, L"Software\\Halvard\\Corvale", L"", L""));
    ASSERT_TRUE(RegistryWriteTest());
    EXPECT_TRUE(e2e::RegKeyExists(HKEY_LOCAL_MACHINE, L"Software\\Halvard\\Corvale"));
    EXPECT_FALSE(e2e::RegKeyExists(HKEY_LOCAL_MACHINE, kCheck));

    // A leftover key from an earlier run does not make it fail, and goes too.
    ASSERT_TRUE(e2e::RegSetString(HKEY_LOCAL_MACHINE, kCheck, L"Rights Check (12345)", L"Rights OK"));
    EXPECT_TRUE(RegistryWriteTest());
    EXPECT_FALSE(e2e::RegKeyExists(HKEY_LOCAL_MACHINE, kCheck));
}
