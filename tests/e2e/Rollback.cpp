// An install that fails, is cancelled or is stopped over an earlier installation leaves the
// machine as it was: each failure point is a row, each compared with a snapshot of everything an
// install touches, taken before.
#include "E2ESupport.h"

#include "changes/CInstallRecord.h"
#include "foundation/win/HVFileSystem.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <memory>

namespace
{
const std::wstring kSharedDlls = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\SharedDLLs";

class Rollback : public ::testing::Test
{
protected:
    void TearDown() override
    {
        for (const wchar_t* name : {L"IW_TEST_ONLY_FAIL_COPY_AT", L"IW_TEST_ONLY_FAIL_STEP"})
            ::SetEnvironmentVariableW(name, nullptr);
        e2e::ResetToFreshMachine();
    }

    // An earlier installation of the sample in the default folder, with ".mp3" another player's
    // before it, and the snapshot of the machine it leaves.
    void EarlierInstallation()
    {
        std::vector<std::wstring> problems;
        ASSERT_TRUE(e2e::ResetToFreshMachine(&problems)) << e2e::Utf8(problems.empty() ? L"" : problems.front());
        for (const std::wstring& name : e2e::RegValueNames(HKEY_LOCAL_MACHINE, kSharedDlls))
            e2e::RegDeleteValueIfPresent(HKEY_LOCAL_MACHINE, kSharedDlls, name);
        ASSERT_TRUE(e2e::RegSetString(HKEY_CLASSES_ROOT, L".mp3", L"", L"OtherPlayer.mp3"));
        const e2e::SetupRun earlier = e2e::RunSetup({}, L"/Silent /SuppressMessages");
        ASSERT_TRUE(earlier.result.ExitedWith(0)) << earlier.Describe();
        // A file of the user's and a later choice of theirs: both must outlive the failed run.
        ASSERT_TRUE(e2e::WriteFileBytes(dest_ + L"Data\\My Notes.txt", "mine"));
        ASSERT_TRUE(e2e::RegSetDword(HKEY_CURRENT_USER, e2e::kPropertiesKey, L"Startup - Page", 5));
        before_ = e2e::MachineSnapshot();
    }

    void ExpectAsBefore(const e2e::SetupRun& run)
    {
        const std::vector<std::wstring> after = e2e::MachineSnapshot();
        // Only what differs, for a failure message one can read.
        std::wstring differences;
        // The package installer keeps a log of its own beside itself, which grows with every
        // call; it is the helper's, not a change the install made.
        const auto missingFrom = [&](const std::vector<std::wstring>& lines, const std::vector<std::wstring>& other,
                                     const wchar_t* sign) {
            for (const std::wstring& line : lines)
                if (std::find(other.begin(), other.end(), line) == other.end() &&
                    line.find(L"\\PackageInstaller.log") == std::wstring::npos)
                    differences += sign + line + L"\n";
        };
        missingFrom(after, before_, L"+ ");
        missingFrom(before_, after, L"- ");
        EXPECT_TRUE(differences.empty()) << e2e::Utf8(differences) << e2e::Utf8(run.log);
        std::string notes;
        EXPECT_TRUE(e2e::ReadFileBytes(dest_ + L"Data\\My Notes.txt", notes) && notes == "mine");
        // The earlier launcher is whole where it was, the earlier record readable to its end.
        std::string launcher, original;
        EXPECT_TRUE(e2e::ReadFileBytes(dest_ + L"Sonora.exe", launcher) &&
                    e2e::ReadFileBytes(e2e::MediaFolder() + L"Listenwell\\Sonora.exe", original) && launcher == original);
        std::string record;
        ASSERT_TRUE(e2e::ReadFileBytes(dest_ + L"Install Record.txt", record));
        const CInstallRecord::Contents read = CInstallRecord::Parse(record);
        EXPECT_TRUE(read.problem.IsEmpty() && !read.runs.empty() && read.runs.back().ended) << read.problem.ToUtf8();
    }

    const std::wstring dest_ = e2e::DefaultDestination();
    std::vector<std::wstring> before_;
};

TEST_F(Rollback, EveryFailurePointLeavesTheMachineAsItWas)
{
    // The launcher and the main program come first, then the whole tree, those two again.
    const size_t programFiles = 2 + e2e::ListTree(e2e::MediaFolder() + L"Listenwell").size();
    std::unique_ptr<e2e::HeldFileLock> lock;
    const struct
    {
        const char* what;
        const wchar_t* variable;
        std::wstring value;
        std::wstring commandLine;
        DWORD exitCode;
        std::function<void()> arrange = {};
        std::vector<e2e::DialogRule> rules = {};
    } rows[] = {
        {"the disk fills up at the first program file", L"IW_TEST_ONLY_FAIL_COPY_AT", L"1", L"/Silent /SuppressMessages", 1603},
        {"the disk fills up at the first file of the tree", L"IW_TEST_ONLY_FAIL_COPY_AT", L"3", L"/Silent /SuppressMessages", 1603},
        {"the disk fills up half way", L"IW_TEST_ONLY_FAIL_COPY_AT", std::to_wstring(programFiles / 2),
         L"/Silent /SuppressMessages", 1603},
        {"the disk fills up at the last program file", L"IW_TEST_ONLY_FAIL_COPY_AT", std::to_wstring(programFiles),
         L"/Silent /SuppressMessages", 1603},
        {"the records can't be written", L"IW_TEST_ONLY_FAIL_STEP", L"records", L"/Silent /SuppressMessages", 1603},
        {"the shell step fails", L"IW_TEST_ONLY_FAIL_STEP", L"shell", L"/Silent /SuppressMessages", 1603},
        {"the plug-in step fails", L"IW_TEST_ONLY_FAIL_STEP", L"plugins", L"/Silent /SuppressMessages", 1603},
        {"Cancel in the copy box", nullptr, L"", L"/Silent", 1603,
         [&] { lock = std::make_unique<e2e::HeldFileLock>(dest_ + L"Sonora.exe"); },
         {{.title = L"Failure Copying System File", .text = L"Please ensure that the file", .match = e2e::TextMatch::StartsWith,
           .button = IDCANCEL, .times = 1}}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        ASSERT_NO_FATAL_FAILURE(EarlierInstallation());
        if (row.arrange)
            row.arrange();
        if (row.variable)
            ::SetEnvironmentVariableW(row.variable, row.value.c_str());
        const e2e::SetupRun run = e2e::RunSetup({}, row.commandLine, row.rules);
        if (row.variable)
            ::SetEnvironmentVariableW(row.variable, nullptr);
        lock.reset();
        EXPECT_TRUE(run.result.ExitedWith(row.exitCode)) << run.Describe();
        EXPECT_TRUE(run.Logged(L"Setup did not complete. Your computer was returned to the state it was in before.")) << run.Describe();
        ExpectAsBefore(run);
    }
}

// Stopped at three points (a crash, a power cut), the install is undone by "/Rollback".
TEST_F(Rollback, AStoppedInstallIsUndoneByRollback)
{
    const std::wstring setup = e2e::CopySampleSetup(L"RollbackStopped");
    ASSERT_FALSE(setup.empty());
    ASSERT_TRUE(e2e::WriteGeneratedTree(setup + L"Listenwell\\", e2e::PlanTree({.files = 200, .totalBytes = 20 << 20}), 1));
    for (const size_t files : {3u, 60u, 180u}) {
        SCOPED_TRACE(files);
        ASSERT_NO_FATAL_FAILURE(EarlierInstallation());
        const auto earlierFiles = static_cast<size_t>(e2e::CountFiles(dest_, [](const WIN32_FIND_DATAW&) { return true; }));
        e2e::RunOptions options;
        options.setupFolder = setup;
        options.commandLine = L"/Silent /SuppressMessages";
        options.roundMs = 5;
        options.endWhen = [&](DWORD) {
            return static_cast<size_t>(e2e::CountFiles(dest_, [](const WIN32_FIND_DATAW&) { return true; })) >= earlierFiles + files;
        };
        const e2e::RunResult stopped = e2e::RunSetup(std::move(options)).result;
        ASSERT_EQ(stopped.outcome, e2e::RunOutcome::EndedByTest) << stopped.Describe();
        const e2e::SetupRun run = e2e::RunSetup(setup, L"/Rollback /Silent /SuppressMessages");
        EXPECT_TRUE(run.result.ExitedWith(0)) << run.Describe();
        ExpectAsBefore(run);
    }
}
}

namespace
{
// Run by scripts/full-disk-test.sh with a 48 MB drive: room enough for the destination page
// (30 MB), not for the program files of this setup, which the install adds up and refuses at
// once, before it changes anything.
TEST(RollbackFullDisk, ADriveWithoutRoomIsRefusedAtOnce)
{
    const char* drive = std::getenv("IW_FULL_DISK_DRIVE");
    if (!drive)
        GTEST_SKIP() << "needs the small drive of scripts/full-disk-test.sh";
    std::vector<std::wstring> problems;
    ASSERT_TRUE(e2e::ResetToFreshMachine(&problems)) << e2e::Utf8(problems.empty() ? L"" : problems.front());
    const std::wstring setup = e2e::CopySampleSetup(L"RollbackFullDisk");
    ASSERT_TRUE(e2e::WriteGeneratedTree(setup + L"Listenwell\\", e2e::PlanTree({.files = 20, .totalBytes = 40 << 20}), 1));
    const std::wstring root = e2e::Wide(drive);
    uint64_t free = 0;
    ASSERT_TRUE(HVFileSystem::GetFreeDiskSpace(root.c_str(), free) && free > 36u << 20);
    ASSERT_TRUE(e2e::WriteFileBytes(root + L"filler", std::string(free - (35u << 20), 'f')));
    const std::vector<std::wstring> before = e2e::MachineSnapshot();
    const e2e::SetupRun run = e2e::RunSetup(setup, L"/Silent /SuppressMessages /NoDependencies /Dir=\"" + root + L"Sonora\"");
    EXPECT_TRUE(run.result.ExitedWith(1603)) << run.Describe();
    EXPECT_TRUE(run.Logged(L"There is not enough space on drive " + root.substr(0, 2))) << run.Describe();
    EXPECT_TRUE(e2e::TreeMatches(root, {L"filler"}));
    EXPECT_EQ(e2e::MachineSnapshot(), before);
    ::DeleteFileW((root + L"filler").c_str());
    e2e::ResetToFreshMachine();
}
}
