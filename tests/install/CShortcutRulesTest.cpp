#include "install/CShortcutRules.h"

#include "OptionsOf.h"

#include <gtest/gtest.h>

namespace
{
constexpr int32_t kVersion = 0x20010064;

TEST(CShortcutRules, DefaultsFollowTheKindOfInstall)
{
    const struct { const char* name; InstallOptions options; int32_t startMenuVersion, windows;
                   bool startMenu, desktop, quickLaunch; } cases[] = {
        {"first install on XP", {}, -1, 1006, true, true, true},
        {"first install, this version's Start Menu exists", {}, kVersion, 1012, false, true, false},
        {"reinstall asks for nothing", OptionsOf("earlier"), kVersion - 1, 1006, false, false, false},
        {"express reinstall, other version", OptionsOf("express earlier"), kVersion - 1, 1012, true, false, false},
        {"express reinstall, same version", OptionsOf("express earlier"), kVersion, 1012, false, false, false},
        {"portable over an earlier installation", OptionsOf("portable earlier"), -1, 1006, true, true, true},
        {"unknown Windows keeps Quick Launch", {}, -1, 0, true, true, true},
        {"Vista: no Quick Launch", {}, -1, 1008, true, true, false},
        {"a code beyond the Windows range", {}, -1, 2000, true, true, true},
    };
    for (const auto& c : cases) {
        const CShortcutRules::Choice choice = CShortcutRules::Defaults(c.options, c.startMenuVersion, kVersion, c.windows);
        EXPECT_EQ(choice.startMenu, c.startMenu) << c.name;
        EXPECT_EQ(choice.desktop, c.desktop) << c.name;
        EXPECT_EQ(choice.quickLaunch, c.quickLaunch) << c.name;
    }
    // An answer file's boxes win over every default; Quick Launch still only where it is offered.
    InstallOptions answered;
    answered.answers.shortcuts = InstallAnswers::Shortcuts{true, false, true};
    const CShortcutRules::Choice choice = CShortcutRules::Defaults(answered, kVersion, kVersion, 1008);
    EXPECT_TRUE(choice.startMenu && !choice.desktop && !choice.quickLaunch);
}
}
