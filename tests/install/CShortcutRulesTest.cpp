#include "install/CShortcutRules.h"

#include <gtest/gtest.h>

namespace
{
constexpr int32_t kVersion = 0x20010064;

TEST(CShortcutRules, DefaultsFollowTheKindOfInstall)
{
    const struct
    {
        const char* name;
        bool earlier, portable, express;
        int32_t startMenuVersion;
        int32_t windows;
        bool startMenu, desktop, quickLaunch;
    } cases[] = {
        {"first install on XP", false, false, false, -1, 1006, true, true, true},
        {"first install, this version's Start Menu exists", false, false, false, kVersion, 1012, false, true, false},
        {"reinstall asks for nothing", true, false, false, kVersion - 1, 1006, false, false, false},
        {"express reinstall, other version", true, false, true, kVersion - 1, 1012, true, false, false},
        {"express reinstall, same version", true, false, true, kVersion, 1012, false, false, false},
        {"portable over an earlier installation", true, true, false, -1, 1006, true, true, true},
        {"unknown Windows keeps Quick Launch", false, false, false, -1, 0, true, true, true},
        {"Vista: no Quick Launch", false, false, false, -1, 1008, true, true, false},
        {"a code beyond the Windows range", false, false, false, -1, 2000, true, true, true},
    };
    for (const auto& c : cases) {
        InstallOptions options;
        options.earlierInstallationFound = c.earlier;
        options.portable = c.portable;
        options.express = c.express;
        const CShortcutRules::Choice choice = CShortcutRules::Defaults(options, c.startMenuVersion, kVersion, c.windows);
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
