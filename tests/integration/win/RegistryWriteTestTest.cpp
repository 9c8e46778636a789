#include "integration/win/RegistryWriteTest.h"

#include "foundation/win/HVRegKey.h"

#include <gtest/gtest.h>

namespace
{
const char16_t* const kHalvard = u"Software\\Halvard";
const char16_t* const kCheck = u"Software\\Halvard\\Rights Check";
}

TEST(RegistryWriteTest, PassesWithRightsAndLeavesNothingBehindEvenAfterAnEarlierRun)
{
    ASSERT_TRUE(RegistryWriteTest());
    EXPECT_FALSE(HVRegKey::KeyExists(HKEY_LOCAL_MACHINE, kCheck));

    // On a machine without the product not even "Software\Halvard" stays; with it, it does.
    const bool hadHalvard = HVRegKey::KeyExists(HKEY_LOCAL_MACHINE, kHalvard);
    ASSERT_TRUE(RegistryWriteTest());
    EXPECT_EQ(HVRegKey::KeyExists(HKEY_LOCAL_MACHINE, kHalvard), hadHalvard);
    HVRegKey product;
    ASSERT_TRUE(product.Create(HKEY_LOCAL_MACHINE, u"Software\\Halvard\\Corvale"));
    product.Close();
    ASSERT_TRUE(RegistryWriteTest());
    EXPECT_TRUE(HVRegKey::KeyExists(HKEY_LOCAL_MACHINE, u"Software\\Halvard\\Corvale"));
    if (!hadHalvard) {
        HVRegKey halvard;
        ASSERT_TRUE(halvard.Open(HKEY_LOCAL_MACHINE, kHalvard, KEY_READ | KEY_WRITE));
        halvard.DeleteSubKey(u"Corvale");
        halvard.Close();
        ::RegDeleteKeyW(HKEY_LOCAL_MACHINE, L"Software\\Halvard");
    }

    // A leftover key from an earlier run does not make it fail, and goes too.
    HVRegKey leftover;
    ASSERT_TRUE(leftover.Create(HKEY_LOCAL_MACHINE, kCheck));
    ASSERT_TRUE(leftover.SetString(u"Rights Check (12345)", u"Rights OK"));
    leftover.Close();
    EXPECT_TRUE(RegistryWriteTest());
    EXPECT_FALSE(HVRegKey::KeyExists(HKEY_LOCAL_MACHINE, kCheck));
}
