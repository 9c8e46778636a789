#include "integration/win/ApplyRegistryLines.h"

#include "changes/CInstallChangeLog.h"
#include "foundation/win/HVRegKey.h"
#include "integration/FileTypeModel.h"
#include "integration/win/CShellContext.h"
#include "product/win/CProductIdentity.h"

#include "TestRegistry.h"

#include <gtest/gtest.h>

namespace
{
const std::wstring kKey = L"Software\\Halvard\\ApplyRegistryLinesTest";

// How a line's name, type and number are read is the line parser's test; here, what each action does.
TEST(ApplyRegistryLinesTest, ActionsOnWinesRegistry)
{
    e2e::RegDeleteKeyTree(HKEY_CURRENT_USER, kKey);
    ASSERT_TRUE(e2e::RegSetString(HKEY_CURRENT_USER, kKey, L"Kept", L"there"));
    ASSERT_TRUE(e2e::RegSetString(HKEY_CURRENT_USER, kKey, L"Empty", L""));
    ASSERT_TRUE(e2e::RegSetDword(HKEY_CURRENT_USER, kKey, L"Zero", 0));
    ASSERT_TRUE(e2e::RegSetString(HKEY_CURRENT_USER, kKey, L"Text", L"t"));
    ASSERT_TRUE(e2e::RegSetString(HKEY_CURRENT_USER, kKey, L"Gone", L"g"));

    CInstallChangeLog changes;
    const CProductIdentity product(u"");
    FileTypeModel model;
    const CShellContext context{changes, product, u"C:\\P\\", u"C:\\S\\", model};
    ShellRegistration record;
    record.productWithVersion = u"Sonora32";
    const HVString key(kKey.c_str());
    ApplyRegistryLines(record,
                       {u"HKEY_CURRENT_USER",
                        key + u"|Kept|new|STRING|CREATE",
                        key + u"|Empty|filled|STRING|CREATE",
                        key + u"|Missing|made|STRING|CREATE",
                        key + u"|Zero|5|STRING|CREATE",
                        key + u"|Text|7|DWORD|CREATE",
                        key + u"|Default|[PRODUCTWITHVERSION]|STRING|MODIFY",
                        key + u"|Gone||STRING|DELETE",
                        key + u"\\New|Nothing||STRING|DELETE",
                        key + u"|Marker|x|STRING|MODIFY|extra",
                        u"HKEY_LOCAL_MACHINE ",
                        key + u"|Still|user|STRING|MODIFY"},
                       context);

    EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kKey, L"Kept"), L"there");
    EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kKey, L"Empty"), L"filled");
    EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kKey, L"Missing"), L"made");
    EXPECT_EQ(e2e::RegDword(HKEY_CURRENT_USER, kKey, L"Zero"), 0u);
    EXPECT_EQ(e2e::RegDword(HKEY_CURRENT_USER, kKey, L"Text"), 7u);
    EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kKey, L""), L"Sonora32");
    EXPECT_FALSE(e2e::RegValueExists(HKEY_CURRENT_USER, kKey, L"Gone"));
    EXPECT_TRUE(e2e::RegKeyExists(HKEY_CURRENT_USER, kKey + L"\\New"));
    EXPECT_FALSE(e2e::RegValueExists(HKEY_CURRENT_USER, kKey, L"Marker"));
    EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kKey, L"Still"), L"user");

    // What an uninstall undoes: each write with what was there before.
    size_t written = 0;
    for (const InstallChange& change : changes.Changes())
        if (change.kind == InstallChange::Kind::ValueWritten && change.name == u"Empty")
            written += change.existedBefore ? 1 : 0;
    EXPECT_EQ(written, 1u);
    EXPECT_EQ(changes.Count(InstallChange::Kind::ValueDeleted), 1u);
    EXPECT_EQ(changes.Count(InstallChange::Kind::KeyCreated), 1u);

    // Under WOW64 an AutoPlay line is written a second time, into the 64-bit view; others once.
    for (const bool wow64 : {false, true}) {
        CInstallChangeLog twice;
        const CShellContext other{twice, product, u"C:\\P\\", u"C:\\S\\", model};
        ApplyRegistryLines(record, {u"HKEY_CURRENT_USER", u"[AUTOPLAYKEY]IWTest|Seen|1|DWORD|MODIFY", key + u"|Once|1|DWORD|MODIFY"},
                           other, wow64);
        EXPECT_EQ(e2e::RegDword(HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\AutoplayHandlers\\IWTest",
                                L"Seen", HVRegView::Key64), 1u);
        EXPECT_EQ(twice.Count(InstallChange::Kind::ValueWritten), wow64 ? 3u : 2u);
        e2e::RegDeleteKeyTree(HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\AutoplayHandlers\\IWTest");
    }
    e2e::RegDeleteKeyTree(HKEY_CURRENT_USER, kKey);
}
}
