#pragma once

// A fixture for tests that read other programs' uninstall entries: entries written with an
// InstallLocation in either root and either registry view, all removed when the test ends.
// Names start with `prefix` (the process id in it), so that nobody else's entry is touched.
// Header-only; for the Windows test programs.

#include "install/win/CProtectedFolders.h"

#include "foundation/win/HVRegKey.h"

#include <gtest/gtest.h>

#include <vector>

class UninstallEntriesTest : public ::testing::Test
{
protected:
    const HVString prefix = HVString::Format(u"IW Test %d ", ::GetCurrentProcessId());

    void Add(HKEY root, HVRegView view, const HVString& name, const HVString& location, DWORD type = REG_SZ)
    {
        HVRegKey key;
        ASSERT_TRUE(key.Create(root, HVString(CProtectedFolders::kUninstallKey) + u"\\" + name, KEY_ALL_ACCESS, view));
        ASSERT_TRUE(key.SetString(u"InstallLocation", location, type));
        added_.push_back({root, view, name});
    }
    void TearDown() override
    {
        for (const Added& a : added_) {
            HVRegKey parent;
            if (parent.Open(a.root, CProtectedFolders::kUninstallKey, KEY_ALL_ACCESS, a.view))
                parent.DeleteSubKeyTree(a.name);
        }
    }

private:
    struct Added { HKEY root; HVRegView view; HVString name; };
    std::vector<Added> added_;
};
