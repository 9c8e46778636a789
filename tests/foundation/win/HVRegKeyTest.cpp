#include "foundation/win/HVRegKey.h"

#include <gtest/gtest.h>

namespace
{
// Each test works below its own key, outside the product's "Software\\Halvard" (which other
// tests expect to find as a fresh machine has it), and removes it afterwards.
class HVRegKeyTest : public ::testing::Test
{
protected:
    const HVString root = u"Software\\IW Unit Tests\\HVRegKey";
    void TearDown() override
    {
        for (HKEY hive : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
            for (HVRegView view : {HVRegView::Key64, HVRegView::Key32}) {
                HVRegKey software;
                if (software.Open(hive, u"Software", KEY_ALL_ACCESS, view))
                    software.DeleteSubKeyTree(u"IW Unit Tests");
            }
        }
    }
};

TEST_F(HVRegKeyTest, ValuesRoundTripByType)
{
    HVRegKey key;
    bool created = false;
    ASSERT_TRUE(key.Create(HKEY_CURRENT_USER, root, KEY_ALL_ACCESS, HVRegView::Native, &created));
    EXPECT_TRUE(created);
    ASSERT_TRUE(key.SetString(u"Text", u"Sonora \u00e9"));
    ASSERT_TRUE(key.SetString(u"", u"default value"));
    ASSERT_TRUE(key.SetDWORD(u"Number", 0xDEADBEEF));
    ASSERT_TRUE(key.SetQWORD(u"Big", 0x123456789ABCull));
    ASSERT_TRUE(key.SetMultiString(u"List", {u"one", u"two"}));
    const uint8_t bytes[] = {1, 2, 3};
    ASSERT_TRUE(key.SetBinary(u"Bytes", bytes, sizeof bytes));

    HVRegKey reader;
    ASSERT_TRUE(reader.Open(HKEY_CURRENT_USER, root));
    HVString text;
    DWORD number = 0;
    uint64_t big = 0;
    std::vector<HVString> list;
    std::vector<uint8_t> data;
    EXPECT_TRUE(reader.QueryString(u"Text", text));
    EXPECT_EQ(text, u"Sonora \u00e9");
    EXPECT_TRUE(reader.QueryString(u"", text));
    EXPECT_EQ(text, u"default value");
    EXPECT_TRUE(reader.QueryDWORD(u"Number", number));
    EXPECT_EQ(number, 0xDEADBEEFu);
    EXPECT_TRUE(reader.QueryQWORD(u"Big", big));
    EXPECT_EQ(big, 0x123456789ABCull);
    EXPECT_TRUE(reader.QueryMultiString(u"List", list));
    EXPECT_EQ(list, (std::vector<HVString>{u"one", u"two"}));
    // Pairs with an empty second string, as the pending file renames hold them.
    ASSERT_TRUE(key.SetMultiString(u"Pairs", {u"a", u"", u"b", u"c"}));
    EXPECT_TRUE(reader.QueryMultiString(u"Pairs", list));
    EXPECT_EQ(list, (std::vector<HVString>{u"a", u"", u"b", u"c"}));
    ASSERT_TRUE(key.SetMultiString(u"Empty", {}));
    EXPECT_TRUE(reader.QueryMultiString(u"Empty", list));
    EXPECT_TRUE(list.empty());
    EXPECT_TRUE(reader.QueryBinary(u"Bytes", data));
    EXPECT_EQ(data, (std::vector<uint8_t>{1, 2, 3}));

    // A value of another type is treated as absent.
    EXPECT_FALSE(reader.QueryDWORD(u"Text", number));
    EXPECT_FALSE(reader.QueryString(u"Number", text));
    EXPECT_FALSE(reader.QueryString(u"Missing", text));
    EXPECT_FALSE(reader.HasValue(u"Missing"));
    EXPECT_TRUE(reader.HasValue(u"Number"));
}

TEST_F(HVRegKeyTest, ViewsAreSeparate)
{
    for (const auto& [view, value] : {std::pair{HVRegView::Key64, u"64"}, {HVRegView::Key32, u"32"}}) {
        HVRegKey key;
        ASSERT_TRUE(key.Create(HKEY_LOCAL_MACHINE, root, KEY_ALL_ACCESS, view));
        ASSERT_TRUE(key.SetString(u"Path", value));
    }
    // The native view is the 64-bit one; the 32-bit one is seen under WOW6432Node.
    for (const auto& [path, value] : {std::pair{root, u"64"}, {HVString(u"Software\\WOW6432Node\\IW Unit Tests\\HVRegKey"), u"32"}}) {
        HVRegKey key;
        HVString text;
        ASSERT_TRUE(key.Open(HKEY_LOCAL_MACHINE, path, KEY_READ, HVRegView::Native));
        EXPECT_TRUE(key.QueryString(u"Path", text));
        EXPECT_EQ(text, value);
    }
    for (HVRegView view : {HVRegView::Key64, HVRegView::Key32}) {
        HVRegKey parent;
        ASSERT_TRUE(parent.Open(HKEY_LOCAL_MACHINE, u"Software\\IW Unit Tests", KEY_ALL_ACCESS, view));
        EXPECT_TRUE(parent.DeleteSubKeyTree(u"HVRegKey"));
        EXPECT_FALSE(HVRegKey::KeyExists(HKEY_LOCAL_MACHINE, root, view));
    }
}

TEST_F(HVRegKeyTest, PlainDeleteKeepsKeysWithSubkeys)
{
    HVRegKey key;
    ASSERT_TRUE(key.Create(HKEY_CURRENT_USER, root + u"\\Parent\\Child"));
    key.Close();
    HVRegKey top;
    ASSERT_TRUE(top.Open(HKEY_CURRENT_USER, root, KEY_ALL_ACCESS));
    EXPECT_FALSE(top.DeleteSubKey(u"Parent"));
    EXPECT_TRUE(HVRegKey::KeyExists(HKEY_CURRENT_USER, root + u"\\Parent"));
    EXPECT_EQ(top.EnumSubKeys(), std::vector<HVString>{u"Parent"});
    EXPECT_TRUE(top.DeleteSubKeyTree(u"Parent"));
    EXPECT_FALSE(HVRegKey::KeyExists(HKEY_CURRENT_USER, root + u"\\Parent"));
    EXPECT_FALSE(top.DeleteSubKey(u"Parent"));
}

TEST_F(HVRegKeyTest, ClosedKeyFailsQuietly)
{
    HVRegKey key;
    HVString text;
    EXPECT_FALSE(key.QueryString(u"x", text));
    EXPECT_FALSE(key.SetString(u"x", u"y"));
    EXPECT_FALSE(key.Open(HKEY_CURRENT_USER, root + u"\\Does\\Not\\Exist"));
    EXPECT_TRUE(key.EnumSubKeys().empty());
    HVRegKey moved(std::move(key));
    EXPECT_FALSE(moved.IsOpen());
}
}   // namespace
