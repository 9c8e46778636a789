// The installer ended at any moment of a large copy (a crash, a power cut, the task manager)
// leaves every installed file whole, as it was or as it is meant to be, and the next run
// completes the install and leaves nothing of its own behind.
#include "E2ESupport.h"
#include "InstallRecordFile.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>

namespace
{
constexpr uint32_t kOldEdition = 1;
constexpr uint32_t kNewEdition = 2;

std::vector<e2e::GeneratedFile> OldEdition()
{
    std::vector<e2e::GeneratedFile> files = e2e::PlanTree({.files = 300, .totalBytes = 30 << 20});
    // Files that take a while to copy, so that the test can catch one half copied.
    for (int i = 0; i < 2; ++i)
        files.push_back({L"Bulk\\Video\\Intro" + std::to_wstring(i) + L".bin", 48u << 20});
    return files;
}

class InterruptedCopy : public e2e::FreshMachineTest
{
protected:
    // Every generated file as installed: its edition, or 0 when it is neither.
    std::vector<uint32_t> InstalledEditions() const
    {
        return e2e::EditionsFound(installed_, oldFiles_, kOldEdition, newFiles_, kNewEdition);
    }

    const std::wstring installed_ = e2e::ScratchFolder(L"InterruptedCopyInstalled");
    const std::wstring setup_ = e2e::CopySampleSetupInstallingInto(L"InterruptedCopy", installed_);
    const std::vector<e2e::GeneratedFile> oldFiles_ = OldEdition();
    // A third of the files change their size.
    const std::vector<e2e::GeneratedFile> newFiles_ = e2e::ResizeSome(oldFiles_, 3);
    const FILETIME oldStamp_ = e2e::EditionStamp(2020);
    const FILETIME newStamp_ = e2e::EditionStamp(2024);
};

TEST_F(InterruptedCopy, LeavesEachFileOldOrNewAndARerunCompletesTheInstall)
{
    ASSERT_FALSE(setup_.empty() || installed_.empty());
    ASSERT_TRUE(e2e::WriteGeneratedTree(setup_ + L"Listenwell\\", oldFiles_, kOldEdition, &oldStamp_));
    const e2e::RunResult first = e2e::RunSilentUntil(setup_);
    ASSERT_TRUE(first.ExitedWith(0)) << first.Describe();
    std::vector<std::wstring> cleanInstall = e2e::ListTree(installed_, e2e::TreeEntries::FilesAndFolders);
    // Every later install finds this one recorded and asks its service to stop; the sample
    // service notes that in a file beside itself.
    cleanInstall.push_back(L"HVService.stop.txt");
    const std::vector<uint32_t> before = InstalledEditions();
    ASSERT_EQ(std::count(before.begin(), before.end(), kOldEdition), static_cast<long>(before.size()));

    ASSERT_TRUE(e2e::WriteGeneratedTree(setup_ + L"Listenwell\\", newFiles_, kNewEdition, &newStamp_));
    const std::wstring bulk = installed_ + L"Bulk\\";
    const auto newFilesInPlace = [&](DWORD) { return e2e::CountFiles(bulk, [&](auto& f) { return e2e::HasStamp(f, newStamp_); }); };
    // A file of neither edition is being written just now; among the big ones, the end comes
    // before it is done.
    const auto bigFileBeingWritten = [&](DWORD) {
        const auto neither = [&](auto& f) { return !e2e::HasStamp(f, oldStamp_) && !e2e::HasStamp(f, newStamp_); };
        return e2e::CountFiles(bulk + L"Video\\", neither) > 0;
    };
    const struct { const char* when; std::function<bool(DWORD)> reached; bool leavesAPartialFile = false; } ends[] = {
        // A later count each time: the files already new from the run before count again.
        {"after 30 new files", [&](DWORD pid) { return newFilesInPlace(pid) >= 30; }},
        {"after 270 new files", [&](DWORD pid) { return newFilesInPlace(pid) >= 270; }},
        {"while a big file is being written", bigFileBeingWritten, true},
    };
    bool sawMixture = false;
    size_t killed = 0;
    for (const auto& end : ends) {
        SCOPED_TRACE(std::string("ended ") + end.when);
        const e2e::RunResult run = e2e::RunSilentUntil(setup_, end.reached);
        ASSERT_EQ(run.outcome, e2e::RunOutcome::EndedByTest) << run.Describe();

        const std::vector<uint32_t> editions = InstalledEditions();
        for (size_t i = 0; i < editions.size(); ++i)
            EXPECT_NE(editions[i], 0u) << e2e::Utf8(oldFiles_[i].path) << " is neither old nor new";
        sawMixture = sawMixture || std::count(editions.begin(), editions.end(), kNewEdition) < static_cast<long>(editions.size());
        const e2e::TreeDifference diff = e2e::CompareTree(installed_, cleanInstall, e2e::TreeEntries::FilesAndFolders);
        EXPECT_TRUE(diff.missing.empty()) << diff.Describe();

        // The record reads back but for the torn last line of each ended run, and names every
        // file the run left half written.
        const CInstallRecord::Contents record = e2e::ReadInstallRecord(installed_);
        EXPECT_TRUE(record.problem.IsEmpty()) << record.problem.ToUtf8();
        EXPECT_LE(record.damagedLines, ++killed);
        EXPECT_TRUE(!end.leavesAPartialFile || !diff.extra.empty()) << diff.Describe();
        for (const std::wstring& left : diff.extra) {
            const HVString path((installed_ + left).c_str());
            EXPECT_TRUE(std::any_of(record.changes.begin(), record.changes.end(), [&](const InstallChange& change) {
                return change.kind == InstallChange::Kind::FileStarted && path.EqualsNoCase(change.path);
            })) << e2e::Utf8(left);
        }
    }
    EXPECT_TRUE(sawMixture) << "every end came after the copy: the test proves nothing";

    const e2e::RunResult rerun = e2e::RunSilentUntil(setup_);
    ASSERT_TRUE(rerun.ExitedWith(0)) << rerun.Describe();
    const std::vector<uint32_t> editions = InstalledEditions();
    EXPECT_EQ(std::count(editions.begin(), editions.end(), kNewEdition), static_cast<long>(editions.size()));
    // The same files and folders as after an install that was never ended: no temporary copy
    // is left anywhere.
    EXPECT_TRUE(e2e::TreeMatches(installed_, cleanInstall, e2e::TreeEntries::FilesAndFolders));
}
}
