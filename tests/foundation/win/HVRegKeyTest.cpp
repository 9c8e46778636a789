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
    HVRegKey k64, k32;
    ASSERT_TRUE(k64.Create(HKEY_LOCAL_MACHINE, u"Software\\IW Unit Tests\\HVRegKey", KEY_ALL_ACCESS, HVRegView::Key64));
    ASSERT_TRUE(k32.Create(HKEY_LOCAL_MACHINE, u"Software\\IW Unit Tests\\HVRegKey", KEY_ALL_ACCESS, HVRegView::Key32));
    ASSERT_TRUE(k64.SetString(u"Path", u"64"));
    ASSERT_TRUE(k32.SetString(u"Path", u"32"));
    HVString a, b;
    HVRegKey r64, r32;
    ASSERT_TRUE(r64.Open(HKEY_LOCAL_MACHINE, u"Software\\IW Unit Tests\\HVRegKey", KEY_READ, HVRegView::Native));
    ASSERT_TRUE(r32.Open(HKEY_LOCAL_MACHINE, u"Software\\WOW6432Node\\IW Unit Tests\\HVRegKey"));
    EXPECT_TRUE(r64.QueryString(u"Path", a));
    EXPECT_TRUE(r32.QueryString(u"Path", b));
    EXPECT_EQ(a, u"64");
    EXPECT_EQ(b, u"32");
    for (HVRegView view : {HVRegView::Key64, HVRegView::Key32}) {
        HVRegKey parent;
        ASSERT_TRUE(parent.Open(HKEY_LOCAL_MACHINE, u"Software\\IW Unit Tests", KEY_ALL_ACCESS, view));
        EXPECT_TRUE(parent.DeleteSubKeyTree(u"HVRegKey"));
        EXPECT_FALSE(HVRegKey::KeyExists(HKEY_LOCAL_MACHINE, u"Software\\IW Unit Tests\\HVRegKey", view));
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
