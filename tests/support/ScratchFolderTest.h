#pragma once

// A fixture for the Windows tests that work on real files: an empty folder of the test's own
// under the build tree, the few file operations that arrange and inspect it, and the lines the
// code under test logged meanwhile.

#include "foundation/win/HVFileSystem.h"

#include "RecordingLogger.h"
#include "TestPaths.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

class ScratchFolderTest : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(Empty()); }

    // Starts over with an empty folder; `root` ends in a backslash.
    bool Empty()
    {
        const ::testing::TestInfo& info = *::testing::UnitTest::GetInstance()->current_test_info();
        const std::string name = std::string(info.test_suite_name()) + "." + info.name();
        root = HVString(e2e::ScratchFolder(std::wstring(name.begin(), name.end())).c_str());
        return !root.IsEmpty();
    }
    // Makes the file's folder when it is missing; `attributes` (read-only, say) are set after.
    void Write(const HVString& path, const std::string& content, DWORD attributes = FILE_ATTRIBUTE_NORMAL)
    {
        ASSERT_TRUE(HVFileSystem::MakeDirectoryTree(HVFileSystemPath::GetFolder(path))) << path.ToUtf8();
        ASSERT_TRUE(HVFileSystem::WriteFile(path, content.data(), content.size())) << path.ToUtf8();
        if (attributes != FILE_ATTRIBUTE_NORMAL) {
            ASSERT_TRUE(::SetFileAttributesW(HVFileSystemPath::ToLongPath(path).w(), attributes)) << path.ToUtf8();
        }
    }
    std::string Read(const HVString& path)
    {
        std::vector<uint8_t> data;
        if (!HVFileSystem::ReadFile(path, data))
            return "<unreadable>";
        return std::string(data.begin(), data.end());
    }
    // A folder held open without sharing, for as long as the handle lives: it can't be opened
    // or listed, but files can still be made in it.
    static HVFileHandle HoldWithoutSharing(const HVString& folder)
    {
        return HVFileHandle(::CreateFileW(folder.w(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    }
    // The names in a folder, sorted.
    std::vector<std::string> Names(const HVString& folder)
    {
        std::vector<HVFileSystem::Entry> entries;
        HVFileSystem::EnumerateFolder(folder, entries);
        std::vector<std::string> names;
        for (const auto& e : entries)
            names.push_back(e.name.ToUtf8());
        std::sort(names.begin(), names.end());
        return names;
    }

    HVString root;
    RecordingLogger log;
};
