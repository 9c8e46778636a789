#include "foundation/win/HVRegKey.h"

#include "FreshMachineTest.h"

#include <gtest/gtest.h>

#include <optional>

namespace
{
// Each test works below a key of the product's own, which a fresh machine doesn't have: the
// fixture removes it, in every hive and view, before and after.
class HVRegKeyTest : public e2e::FreshMachineTest
{
protected:
    const HVString root = u"Software\\Halvard\\IW Unit Tests\\HVRegKey";
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
    // Pairs with an empty second string, as the pending file renames hold them.
    ASSERT_TRUE(key.SetMultiString(u"Pairs", {u"a", u"", u"b", u"c"}));
    const uint8_t bytes[] = {1, 2, 3};
    ASSERT_TRUE(key.SetBinary(u"Bytes", bytes, sizeof bytes));

    HVRegKey reader;
    ASSERT_TRUE(reader.Open(HKEY_CURRENT_USER, root));
    // What a query gives, or nothing when it fails.
    const auto read = [&reader]<typename T>(bool (HVRegKey::*query)(const HVString&, T&) const, const char16_t* name) {
        T value{};
        return (reader.*query)(name, value) ? std::optional<T>(value) : std::nullopt;
    };
    EXPECT_EQ(read(&HVRegKey::QueryString, u"Text"), HVString(u"Sonora \u00e9"));
    EXPECT_EQ(read(&HVRegKey::QueryString, u""), HVString(u"default value"));
    EXPECT_EQ(read(&HVRegKey::QueryDWORD, u"Number"), 0xDEADBEEFu);
    EXPECT_EQ(read(&HVRegKey::QueryQWORD, u"Big"), 0x123456789ABCull);
    EXPECT_EQ(read(&HVRegKey::QueryMultiString, u"List"), (std::vector<HVString>{u"one", u"two"}));
    EXPECT_EQ(read(&HVRegKey::QueryMultiString, u"Pairs"), (std::vector<HVString>{u"a", u"", u"b", u"c"}));
    EXPECT_EQ(read(&HVRegKey::QueryBinary, u"Bytes"), (std::vector<uint8_t>{1, 2, 3}));
    // An empty list empties what the caller passed in.
    std::vector<HVString> list = {u"stale"};
    ASSERT_TRUE(key.SetMultiString(u"Empty", {}));
    EXPECT_TRUE(reader.QueryMultiString(u"Empty", list));
    EXPECT_TRUE(list.empty());

    // A value of another type is treated as absent.
    EXPECT_FALSE(read(&HVRegKey::QueryDWORD, u"Text"));
    EXPECT_FALSE(read(&HVRegKey::QueryString, u"Number"));
    EXPECT_FALSE(read(&HVRegKey::QueryString, u"Missing"));
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
    for (const auto& [path, value] :
         {std::pair{root, u"64"}, {HVString(u"Software\\WOW6432Node\\Halvard\\IW Unit Tests\\HVRegKey"), u"32"}}) {
        HVRegKey key;
        HVString text;
        ASSERT_TRUE(key.Open(HKEY_LOCAL_MACHINE, path, KEY_READ, HVRegView::Native));
        EXPECT_TRUE(key.QueryString(u"Path", text));
        EXPECT_EQ(text, value);
    }
    for (HVRegView view : {HVRegView::Key64, HVRegView::Key32}) {
        HVRegKey parent;
        ASSERT_TRUE(parent.Open(HKEY_LOCAL_MACHINE, u"Software\\Halvard\\IW Unit Tests", KEY_ALL_ACCESS, view));
        EXPECT_TRUE(parent.DeleteSubKeyTree(u"HVRegKey"));
        EXPECT_FALSE(HVRegKey::KeyExists(HKEY_LOCAL_MACHINE, root, view));
    }
}

TEST_F(HVRegKeyTest, PlainDeleteKeepsKeysWithSubkeys)
{
    ASSERT_TRUE(HVRegKey().Create(HKEY_CURRENT_USER, root + u"\\Parent\\Child"));
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
