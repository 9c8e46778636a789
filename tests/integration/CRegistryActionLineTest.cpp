#include "integration/CRegistryActionLine.h"
#include "integration/CRegistryActionTable.h"
#include "integration/CRegistryMacros.h"

#include <gtest/gtest.h>

namespace
{
TEST(CRegistryActionLineTest, RootMarkersAreWholeLinesWithCase)
{
    using Root = CRegistryActionLine::Root;
    struct Case { const char16_t* line; std::optional<Root> root; };
    for (const Case& c : {Case{u"HKEY_CLASSES_ROOT", Root::ClassesRoot}, Case{u"HKEY_CURRENT_USER", Root::CurrentUser},
                          Case{u"HKEY_LOCAL_MACHINE", Root::LocalMachine}, Case{u"HKEY_LOCAL_MACHINE ", std::nullopt},
                          Case{u" HKEY_CURRENT_USER", std::nullopt}, Case{u"hkey_local_machine", std::nullopt}})
        EXPECT_EQ(CRegistryActionLine::RootMarker(c.line), c.root) << HVString(c.line).ToUtf8();
}

TEST(CRegistryActionLineTest, FieldsTypesAndActions)
{
    using Action = CRegistryActionLine::Action;
    struct Case { const char16_t* line; bool parses; const char16_t* name; const char16_t* data; bool isString; Action action; };
    const Case cases[] = {
        {u"K|Default|v|STRING|MODIFY", true, u"", u"v", true, Action::Set},
        {u"K|default|v|STRING|MODIFY", true, u"default", u"v", true, Action::Set},
        {u"K|||STRING|MODIFY", true, u"", u"", true, Action::Set},
        {u"K|N||STRING|CREATE", true, u"N", u"", true, Action::Create},
        {u"K|N|12|string|MODIFY", true, u"N", u"12", false, Action::Set},
        {u"K|N|x|DWORD|DELETE", true, u"N", u"x", false, Action::Delete},
        {u"K|N|x|STRING|delete", true, u"N", u"x", true, Action::Set},
        {u"K|N|x|STRING", false, u"", u"", false, Action::Set},
        {u"K|N|x|STRING|MODIFY|", false, u"", u"", false, Action::Set},
        {u"HKEY_LOCAL_MACHINE ", false, u"", u"", false, Action::Set}, {u"", false, u"", u"", false, Action::Set},
    };
    for (const Case& c : cases) {
        const auto line = CRegistryActionLine::Parse(c.line);
        ASSERT_EQ(line.has_value(), c.parses) << HVString(c.line).ToUtf8();
        if (!line)
            continue;
        EXPECT_EQ(line->keyPath, u"K");
        EXPECT_EQ(line->valueName, c.name) << HVString(c.line).ToUtf8();
        EXPECT_EQ(line->data, c.data);
        EXPECT_EQ(line->isString, c.isString) << HVString(c.line).ToUtf8();
        EXPECT_EQ(line->action, c.action) << HVString(c.line).ToUtf8();
    }
}

TEST(CRegistryActionLineTest, DwordDataIsItsLeadingNumber)
{
    struct Case { const char16_t* data; int32_t number; };
    for (const Case& c : {Case{u"12abc", 12}, Case{u"abc", 0}, Case{u"", 0}, Case{u"-7", -7}, Case{u"65536", 65536},
                          Case{u"4294967295", -1}, Case{u" 8", 8}})
        EXPECT_EQ(CRegistryActionLine::Number(c.data), c.number) << HVString(c.data).ToUtf8();
}

TEST(CRegistryMacrosTest, ExpandsInOrderAndOnlyTheFirstArt)
{
    CRegistryMacros macros;
    // Values that hold other macros: one expanded later is expanded in them, one expanded
    // earlier stays as written.
    macros.installDir = u"C:\\[PRODUCTNAME]\\";
    macros.productName = u"Sonora";
    macros.productWithVersion = u"Sonora32";
    macros.exePath = u"C:\\P\\Sonora 32.exe";
    macros.launcherPath = u"C:\\P\\Sonora.exe";
    macros.launcherName = u"[INSTALLDIR]Sonora.exe";
    macros.findArt = [](const HVString& name) { return u"C:\\Art\\" + name; };
    struct Case { const char16_t* line; const char16_t* expanded; };
    const Case cases[] = {
        {u"[PRODUCTWITHVERSION].File|Default|[PRODUCTNAME] file|STRING|MODIFY", u"Sonora32.File|Default|Sonora file|STRING|MODIFY"},
        {u"[AUTOPLAYKEY]Handlers", u"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\AutoplayHandlers\\Handlers"},
        {u"\"[LAUNCHERPATH]\" [LAUNCHERPATH]", u"\"C:\\P\\Sonora.exe\" C:\\P\\Sonora.exe"},
        {u"\"[CUSTOMART]a.ico\",\"[CUSTOMART]b.ico\"", u"\"C:\\Art\\a.ico\",\"[CUSTOMART]b.ico\""},
        {u"[CUSTOMART]x.ico", u"C:\\Art\\x.ico"},
        {u"[exepath] [EXEPATH]", u"[exepath] C:\\P\\Sonora 32.exe"},
        {u"[INSTALLDIR]|[LAUNCHERNAME]", u"C:\\Sonora\\|[INSTALLDIR]Sonora.exe"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(macros.Expand(c.line), c.expanded) << HVString(c.line).ToUtf8();
    EXPECT_TRUE(CRegistryMacros::NeedsBothViews(u"[AUTOPLAYKEY]X|A|B|STRING|MODIFY"));
    EXPECT_FALSE(CRegistryMacros::NeedsBothViews(u"X|[PRODUCTNAME]|B|STRING|MODIFY"));
}

TEST(CRegistryActionTableTest, LauncherLinesOnlyWithALauncher)
{
    const std::vector<HVString> full = CRegistryActionTable::Lines(true);
    const std::vector<HVString> without = CRegistryActionTable::Lines(false);
    // 104 rows under five root markers.
    ASSERT_EQ(full.size(), 109u);
    ASSERT_EQ(without.size(), full.size() - 5);
    for (const HVString& line : without)
        EXPECT_FALSE(line.StartsWith(u"Applications\\")) << line.ToUtf8();
    size_t parsed = 0;
    for (const HVString& line : full)
        parsed += CRegistryActionLine::Parse(line).has_value() ? 1 : 0;
    EXPECT_EQ(parsed, 104u);
}
}
